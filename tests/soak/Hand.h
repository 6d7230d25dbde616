// Hand.h - a hand at the mouse and the keyboard of an X screen: what it does comes to the window from the X
// server, as everyone's input does.
#pragma once

#include <QPoint>
#include <QString>
#include <Qt>

#include <cstdint>
#include <map>
#include <set>

struct xcb_connection_t;

namespace carvelot::soak {

class CHand {
public:
    // Buttons as the server numbers them; the wheel is four more.
    enum EButton : std::uint8_t { Left = 1, Middle, Right, WheelUp, WheelDown, WheelLeft, WheelRight };

    CHand();
    ~CHand();
    CHand(const CHand&) = delete;
    CHand& operator=(const CHand&) = delete;

    // False where there is no screen that takes input from programs.
    bool IsThere() const { return m_pConnection != nullptr; }
    void Move(QPoint place);
    void Press(EButton button);
    void Release(EButton button);
    void Click(EButton button, Qt::KeyboardModifiers keys = {});
    // Presses a key and lets it go, with Shift, Ctrl and Alt as said. One that the keyboard lacks is let be.
    void Key(Qt::Key key, Qt::KeyboardModifiers keys = {});
    // Plain ASCII.
    void Type(QChar letter);
    // Lets everything go that is still held.
    void LetGo();

private:
    struct CPlace {
        std::uint8_t m_nCode = 0;
        bool m_bShift = false;
    };

    void ReadKeyboard();
    void Send(std::uint8_t kind, std::uint8_t detail, QPoint place = {});
    void Hold(Qt::KeyboardModifiers keys, bool down);
    void Symbol(std::uint32_t symbol, Qt::KeyboardModifiers keys);

    xcb_connection_t* m_pConnection = nullptr;
    std::uint32_t m_nRoot = 0;
    std::map<std::uint32_t, CPlace> m_mapKeys; // by the symbol on them
    std::set<std::uint8_t> m_setButtons;       // that are held
};

} // namespace carvelot::soak
