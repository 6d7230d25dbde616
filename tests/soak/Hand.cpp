#include "soak/Hand.h"

#include <xcb/xcb.h>
#include <xcb/xtest.h>

#include <cstdlib>
#include <utility>

namespace carvelot::soak {

namespace {

constexpr std::uint32_t kShift = 0xffe1;
constexpr std::uint32_t kControl = 0xffe3;
constexpr std::uint32_t kAlt = 0xffe9;

// The symbol of a key that bears no letter, or 0.
std::uint32_t SymbolOf(Qt::Key key) {
    static const std::map<Qt::Key, std::uint32_t> symbols = {
        {Qt::Key_Backspace, 0xff08}, {Qt::Key_Tab, 0xff09},      {Qt::Key_Return, 0xff0d},
        {Qt::Key_Escape, 0xff1b},    {Qt::Key_Home, 0xff50},     {Qt::Key_Left, 0xff51},
        {Qt::Key_Up, 0xff52},        {Qt::Key_Right, 0xff53},    {Qt::Key_Down, 0xff54},
        {Qt::Key_PageUp, 0xff55},    {Qt::Key_PageDown, 0xff56}, {Qt::Key_End, 0xff57},
        {Qt::Key_Menu, 0xff67},      {Qt::Key_Delete, 0xffff},   {Qt::Key_Plus, '+'},
        {Qt::Key_Minus, '-'},        {Qt::Key_Asterisk, '*'},    {Qt::Key_Space, ' '},
    };
    if (key >= Qt::Key_F1 && key <= Qt::Key_F12) {
        return 0xffbe + static_cast<std::uint32_t>(key - Qt::Key_F1);
    }
    if (key >= Qt::Key_A && key <= Qt::Key_Z) {
        return 'a' + static_cast<std::uint32_t>(key - Qt::Key_A);
    }
    if (key >= Qt::Key_0 && key <= Qt::Key_9) {
        return '0' + static_cast<std::uint32_t>(key - Qt::Key_0);
    }
    const auto found = symbols.find(key);
    return found != symbols.end() ? found->second : 0;
}

} // namespace

CHand::CHand() {
    int screen = 0;
    m_pConnection = xcb_connect(nullptr, &screen);
    const xcb_query_extension_reply_t* const test = xcb_connection_has_error(m_pConnection) == 0
                                                        ? xcb_get_extension_data(m_pConnection, &xcb_test_id)
                                                        : nullptr;
    if (test == nullptr || test->present == 0) {
        xcb_disconnect(m_pConnection);
        m_pConnection = nullptr;
        return;
    }
    xcb_screen_iterator_t screens = xcb_setup_roots_iterator(xcb_get_setup(m_pConnection));
    for (; screen > 0; --screen) {
        xcb_screen_next(&screens);
    }
    m_nRoot = screens.data->root;
    ReadKeyboard();
}

CHand::~CHand() {
    if (IsThere()) {
        LetGo();
        xcb_disconnect(m_pConnection);
    }
}

void CHand::ReadKeyboard() {
    const xcb_setup_t& setup = *xcb_get_setup(m_pConnection);
    const auto count = static_cast<std::uint8_t>(setup.max_keycode - setup.min_keycode + 1);
    xcb_get_keyboard_mapping_reply_t* const reply = xcb_get_keyboard_mapping_reply(
        m_pConnection, xcb_get_keyboard_mapping(m_pConnection, setup.min_keycode, count), nullptr);
    if (reply == nullptr) {
        return;
    }
    const xcb_keysym_t* const symbols = xcb_get_keyboard_mapping_keysyms(reply);
    for (int key = 0; key < count; ++key) {
        for (int level = 0; level < 2 && level < reply->keysyms_per_keycode; ++level) {
            const std::uint32_t symbol = symbols[key * reply->keysyms_per_keycode + level];
            // The first key that bears it.
            m_mapKeys.emplace(symbol, CPlace{static_cast<std::uint8_t>(setup.min_keycode + key), level == 1});
        }
    }
    std::free(reply);
}

void CHand::Send(std::uint8_t kind, std::uint8_t detail, QPoint place) {
    xcb_test_fake_input(m_pConnection, kind, detail, XCB_CURRENT_TIME,
                        kind == XCB_MOTION_NOTIFY ? m_nRoot : XCB_NONE, static_cast<std::int16_t>(place.x()),
                        static_cast<std::int16_t>(place.y()), 0);
    xcb_flush(m_pConnection);
}

void CHand::Move(QPoint place) { Send(XCB_MOTION_NOTIFY, 0, place); }

void CHand::Press(EButton button) {
    m_setButtons.insert(button);
    Send(XCB_BUTTON_PRESS, button);
}

void CHand::Release(EButton button) {
    m_setButtons.erase(button);
    Send(XCB_BUTTON_RELEASE, button);
}

void CHand::Click(EButton button, Qt::KeyboardModifiers keys) {
    Hold(keys, true);
    Press(button);
    Release(button);
    Hold(keys, false);
}

void CHand::Hold(Qt::KeyboardModifiers keys, bool down) {
    for (const auto& [modifier, symbol] :
         {std::pair(Qt::ShiftModifier, kShift), std::pair(Qt::ControlModifier, kControl),
          std::pair(Qt::AltModifier, kAlt)}) {
        if (keys.testFlag(modifier)) {
            Send(down ? XCB_KEY_PRESS : XCB_KEY_RELEASE, m_mapKeys[symbol].m_nCode);
        }
    }
}

void CHand::Symbol(std::uint32_t symbol, Qt::KeyboardModifiers keys) {
    const auto found = m_mapKeys.find(symbol);
    if (found == m_mapKeys.end()) {
        return;
    }
    keys.setFlag(Qt::ShiftModifier, keys.testFlag(Qt::ShiftModifier) || found->second.m_bShift);
    Hold(keys, true);
    Send(XCB_KEY_PRESS, found->second.m_nCode);
    Send(XCB_KEY_RELEASE, found->second.m_nCode);
    Hold(keys, false);
}

void CHand::Key(Qt::Key key, Qt::KeyboardModifiers keys) {
    if (const std::uint32_t symbol = SymbolOf(key); symbol != 0) {
        Symbol(symbol, keys);
    }
}

void CHand::Type(QChar letter) { Symbol(letter.unicode(), {}); }

void CHand::LetGo() {
    for (const std::uint8_t button : std::exchange(m_setButtons, {})) {
        Send(XCB_BUTTON_RELEASE, button);
    }
}

} // namespace carvelot::soak
