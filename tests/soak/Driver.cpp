#include "soak/Driver.h"

#include "settings/Commands.h"
#include "soak/WindowState.h"
#include "support/Sanitizer.h"
#include "ui/app/CarvelotApp.h"
#include "ui/app/CustomizeDlg.h"
#include "ui/app/FrameLayout.h"
#include "ui/app/FrameToolBars.h"
#include "ui/app/MainFrame.h"
#include "ui/cachebrowser/CacheDlg.h"
#include "ui/kit/AutoHide.h"
#include "ui/kit/DockablePane.h"
#include "ui/kit/TabbedClientArea.h"
#include "ui/kit/Text.h"
#include "ui/kit/ToolBar.h"
#include "ui/session/ChildFrame.h"
#include "ui/session/Following.h"

#include <QAbstractButton>
#include <QApplication>
#include <QClipboard>
#include <QDir>
#include <QDragEnterEvent>
#include <QFile>
#include <QFileDialog>
#include <QHeaderView>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QProgressDialog>
#include <QPushButton>
#include <QRegularExpression>
#include <QSpinBox>
#include <QTabBar>
#include <QThread>
#include <QToolBar>
#include <QUrl>

#include <cstdio>
#include <cstring>
#include <sys/stat.h>
#include <unistd.h>

namespace carvelot::soak {

namespace {

// A moment is enough for what the hand does to come to the window.
constexpr int kTick = 4; // milliseconds
// After a start the window finds its place on the screen, which takes a maximized one a second.
constexpr int kSettle = 1500;

// How much more there may be after the last three quarters of a run, in MB. The toolkit keeps the fonts that
// it has drawn with, some MB before it lets any go, and for each tree of a pane as much room as its largest
// session took, 4 MB for 60,000 rows: a run that has just met more of these holds so much more.
constexpr double kMostResident = 12;
constexpr double kMostHeap = 8;

constexpr char kStructures[] =
    "typedef struct { JCHAR szCustomer[21]; MATH_NUMERIC mnOrder; JDEDATE jdEntered; } OrderHeader;";

QRect RectOnScreen(const QWidget& widget) { return {widget.mapToGlobal(QPoint()), widget.size()}; }

QString NameOf(const QWidget& widget) {
    QString name = QLatin1String(widget.metaObject()->className());
    name.remove(QStringLiteral("carvelot::"));
    return widget.objectName().isEmpty() ? name : name + u' ' + widget.objectName();
}

} // namespace

CDriver::CDriver(const COptions& options, CScratch& scratch)
    : m_options(options), m_scratch(scratch), m_random(options.m_nSeed), m_log(options.m_strLog) {
    (void)m_log.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered);
    Note(QStringLiteral("seed %1").arg(options.m_nSeed));
    m_clock.start();
    m_fNextCheckpoint = m_options.m_fCheckpoint / 2;
    m_fNextExit = m_options.m_fExit / 2;
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &CDriver::Tick);
    m_timer.start(kTick); // a start may have messages
}

CDriver::~CDriver() = default;

int CDriver::Random(int below) {
    return below <= 1 ? 0 : static_cast<int>(m_random() % static_cast<std::mt19937::result_type>(below));
}

void CDriver::Note(const QString& line) {
    m_log.write(QStringLiteral("%1 %2 %3\n")
                    .arg(m_clock.isValid() ? Seconds() : 0.0, 0, 'f', 3)
                    .arg(m_nActions)
                    .arg(line)
                    .toUtf8());
}

void CDriver::Did(const QString& kind, const QString& what) {
    ++m_nActions;
    ++m_mapKinds[kind];
    Note(what.isEmpty() ? kind : kind + QStringLiteral(": ") + what);
}

void CDriver::Fail(const QString& what) {
    const QString whole =
        QStringLiteral("action %1, %2 s: %3").arg(m_nActions).arg(Seconds(), 0, 'f', 1).arg(what);
    Note(QStringLiteral("DOES NOT HOLD ") + whole);
    m_failures << whole;
}

std::map<QString, int> CDriver::Commands() const {
    std::map<QString, int> commands;
    for (const CCommandInfo& command : AllCommands()) {
        const auto found = m_mapCommands.find(command.m_nId);
        commands[ToQString(command.m_strText).remove(u'&')] +=
            found != m_mapCommands.end() ? found->second : 0;
    }
    return commands;
}

// --- starts and ends

void CDriver::Started() {
    CMainFrame* const frame = MainFrame();
    frame->installEventFilter(this);
    for (const CCommandInfo& command : AllCommands()) {
        connect(frame->CommandAction(command.m_nId), &QAction::triggered, this, [this, id = command.m_nId] {
            ++m_mapCommands[id];
            Note(QStringLiteral("command %1").arg(ToQString(FindCommand(id)->m_strText)));
        });
    }
    m_steps.clear();
    m_bLeaving = false;
    m_bRunning = true;
    m_bTop = false;
    m_pTop = nullptr;
    m_nWaitUntil = 0;
    Wait(kSettle);
    if (!m_left.isEmpty()) {
        Then([this] { CompareStates(); });
    }
}

void CDriver::CompareStates() {
    if (m_options.m_mistake == EMistake::Forget) {
        MainFrame()->RunCommand(ID_VIEW_STATUS_BAR);
    }
    const QStringList differences = Differences(m_left, StateOf(*MainFrame()));
    if (!differences.isEmpty()) {
        Fail(QStringLiteral("the window does not come back as it was left: ") +
             differences.join(QStringLiteral(" | ")));
    }
    m_left.clear();
}

bool CDriver::eventFilter(QObject* object, QEvent* event) {
    if (event->type() == QEvent::Close && object == MainFrame() && m_bRunning) {
        m_left = StateOf(*MainFrame());
        m_bLeaving = true;
        Note(QStringLiteral("the window closes"));
    }
    return QObject::eventFilter(object, event);
}

bool CDriver::Ended() {
    m_bRunning = false;
    m_steps.clear();
    m_hand.LetGo();
    StillThere();
    if (!m_bLeaving) {
        Fail(QStringLiteral("the program ended by itself"));
    }
    m_bLeaving = false;
    if (m_bOver) {
        Judge();
        return false;
    }
    ++m_nRestarts;
    return true;
}

// --- a moment

void CDriver::LookAtErrors() {
    struct stat file {};
    if (fstat(STDERR_FILENO, &file) != 0 || !S_ISREG(file.st_mode) || file.st_size <= m_nErrorBytes) {
        return;
    }
    // The program itself may only write to it.
    QFile written(QStringLiteral("/proc/self/fd/%1").arg(STDERR_FILENO));
    QByteArray said("what can't be read");
    if (written.open(QIODevice::ReadOnly) && written.seek(m_nErrorBytes)) {
        said = written.read(2000);
    }
    m_nErrorBytes = file.st_size;
    // What the toolkit's dialog of fonts says of this machine's, where a writing system is chosen in it that
    // they lack.
    QStringList lines = QString::fromUtf8(said).split(u'\n', Qt::SkipEmptyParts);
    lines.removeIf([](const QString& line) {
        return line.trimmed().startsWith(QStringLiteral("OpenType support missing for "));
    });
    if (!lines.isEmpty() && m_failures.size() < 50) {
        Fail(QStringLiteral("on standard error: ") + lines.join(u'\n').trimmed());
    }
}

void CDriver::Tick() {
    // Ahead of all else: what follows may be a dialog's event loop.
    m_timer.start(kTick);
    const qint64 now = m_clock.elapsed();
    m_nBeat = now;
    LookAtErrors();
    if (m_bRunning && MainFrame()->Following().Followed() != nullptr) {
        m_nFollowed += now - m_nLastTick;
    }
    m_nLastTick = now;
    if (now < m_nWaitUntil) {
        return;
    }
    QWidget* const popup = QApplication::activePopupWidget();
    QWidget* const top = popup != nullptr ? popup : QApplication::activeModalWidget();
    if ((top != nullptr) != m_bTop || top != m_pTop) {
        // What was begun ends where something else comes up.
        m_steps.clear();
        m_hand.LetGo();
        m_bTop = top != nullptr;
        m_pTop = top;
        m_nInTop = 0;
        m_nPatience = Random(8);
        return;
    }
    m_nPopups = popup != nullptr ? m_nPopups + 1 : 0;
    if (!m_steps.empty() && !m_bLeaving) {
        const FStep step = std::move(m_steps.front());
        m_steps.pop_front();
        step();
        return;
    }
    if (popup != nullptr) {
        InPopup(*popup);
    } else if (top != nullptr) {
        if (auto* const dialog = qobject_cast<QDialog*>(top)) {
            InDialog(*dialog);
        } else {
            top->close();
        }
    } else if (m_bRunning && !m_bLeaving) {
        Act();
    }
}

void CDriver::Act() {
    switch (m_options.m_mistake) {
    case EMistake::Leak:
        std::memset(new char[1 << 20], 1, 1 << 20);
        break;
    case EMistake::Noise:
        if (m_nActions > 10) {
            m_options.m_mistake = EMistake::None;
            std::fputs("a word where none should be\n", stderr);
        }
        break;
    case EMistake::Hang:
        if (m_nActions > 50) {
            QThread::sleep(1000);
        }
        break;
    default:
        break;
    }
    m_nAway = QApplication::activeWindow() == nullptr ? m_nAway + 1 : 0;
    if (m_nAway > 20) {
        MainFrame()->activateWindow();
        MainFrame()->raise();
        m_nAway = 0;
    }
    if (Seconds() > m_options.m_fSeconds) {
        m_bOver = true;
        Checkpoint();
        Then([] { MainFrame()->close(); });
        return;
    }
    if (Seconds() > m_fNextCheckpoint) {
        m_fNextCheckpoint = Seconds() + m_options.m_fCheckpoint;
        Checkpoint();
        return;
    }
    if (Seconds() > m_fNextExit) {
        m_fNextExit = Seconds() + m_options.m_fExit * (20 + Random(160)) / 100;
        DoExit();
        return;
    }
    struct CWay {
        int m_nWeight;
        void (CDriver::*m_fnDo)();
    };
    static constexpr CWay ways[] = {
        {20, &CDriver::DoClick},     {6, &CDriver::DoDoubleClick}, {6, &CDriver::DoRightClick},
        {8, &CDriver::DoWheel},      {16, &CDriver::DoKey},        {4, &CDriver::DoShortcut},
        {4, &CDriver::DoType},       {6, &CDriver::DoDrag},        {14, &CDriver::DoRow},
        {4, &CDriver::DoHeader},     {4, &CDriver::DoDragPane},    {3, &CDriver::DoPaneTab},
        {3, &CDriver::DoPaneButton}, {3, &CDriver::DoShowPane},    {3, &CDriver::DoFoldedTab},
        {3, &CDriver::DoDragTab},    {5, &CDriver::DoMenu},        {6, &CDriver::DoCommand},
        {3, &CDriver::DoDrop},       {2, &CDriver::DoOpenDialog},  {5, &CDriver::DoOpen},
        {2, &CDriver::DoRecent},     {3, &CDriver::DoClose},       {7, &CDriver::DoExplore},
        {3, &CDriver::DoFind},       {2, &CDriver::DoFollow},      {2, &CDriver::DoProcess},
        {2, &CDriver::DoCache},      {2, &CDriver::DoWindow},
    };
    int all = 0;
    for (const CWay& way : ways) {
        all += way.m_nWeight;
    }
    int chosen = Random(all);
    for (const CWay& way : ways) {
        chosen -= way.m_nWeight;
        if (chosen < 0) {
            (this->*way.m_fnDo)();
            return;
        }
    }
}

// Everything closed and put back, as if the program had just been started: what is held then should not grow.
void CDriver::Checkpoint() {
    Did(QStringLiteral("checkpoint"));
    Then([] {
        CMainFrame& frame = *MainFrame();
        if (frame.CustomizeDialog() != nullptr) {
            frame.CustomizeDialog()->close();
        }
        frame.RunCommand(ID_WINDOW_CLOSE_ALL);
        frame.ClearPanes();
        frame.RestoreDefaultLayout();
        for (CToolBar* const bar : frame.Bars().All()) {
            if (bar->IsUserToolBar()) {
                frame.Bars().Delete(bar);
            }
        }
    });
    Wait(700);
    Then([this] {
        QApplication::clipboard()->clear();
        for (const auto& documentTemplate : theApp().DocTemplates()) {
            if (!documentTemplate->Documents().empty()) {
                Fail(QStringLiteral("%1 documents are there though all were closed")
                         .arg(documentTemplate->Documents().size()));
            }
        }
        CSample sample = TakeSample();
        sample.m_fSeconds = Seconds();
        sample.m_nActions = m_nActions;
        m_samples.push_back(sample);
        const QString line =
            QStringLiteral("%1 s, %2 actions: resident %3 MB, heap %4 MB, %5 files, %6 threads, "
                           "%7 widgets, %8 objects")
                .arg(sample.m_fSeconds, 0, 'f', 0)
                .arg(m_nActions)
                .arg(sample.m_fResident, 0, 'f', 1)
                .arg(sample.m_fHeap, 0, 'f', 2)
                .arg(sample.m_nFiles)
                .arg(sample.m_nThreads)
                .arg(sample.m_nWidgets)
                .arg(sample.m_nObjects);
        Note(line);
        Note(CountedClasses());
        std::puts(line.toUtf8().constData());
        std::fflush(stdout);
    });
}

void CDriver::Judge() {
    const auto most = [this](const char* what, double (*number)(const CSample&), double bound) {
        const double rise = Rise(m_samples, number);
        Note(QStringLiteral("%1: rises by %2 in the last three quarters").arg(QLatin1String(what)).arg(rise));
        if (rise > bound) {
            Fail(QStringLiteral("%1 rises by %2 in the last three quarters, and by no more than %3 it may")
                     .arg(QLatin1String(what))
                     .arg(rise)
                     .arg(bound));
        }
    };
    // A sanitizer holds freed memory back.
    if (!test::kSanitized) {
        most(
            "resident memory (MB)", [](const CSample& sample) { return sample.m_fResident; }, kMostResident);
        most(
            "heap (MB)", [](const CSample& sample) { return sample.m_fHeap; }, kMostHeap);
    }
    most(
        "open files", [](const CSample& sample) { return double(sample.m_nFiles); }, 2);
    most(
        "threads", [](const CSample& sample) { return double(sample.m_nThreads); }, 2);
    most(
        "widgets", [](const CSample& sample) { return double(sample.m_nWidgets); }, 20);
    // Menus keep the entries that they last showed: recent files, windows, tool bars, some ninety at most. A
    // minute has too few samples to see past them.
    most(
        "objects", [](const CSample& sample) { return double(sample.m_nObjects); }, 150);
}

// --- input

void CDriver::Wait(int milliseconds) {
    Then([this, milliseconds] { m_nWaitUntil = m_clock.elapsed() + milliseconds; });
}

void CDriver::ClickAt(QWidget& widget, QPoint place, CHand::EButton button, Qt::KeyboardModifiers keys,
                      int times) {
    Then([this, widget = QPointer<QWidget>(&widget), place] {
        if (widget != nullptr) {
            m_hand.Move(widget->mapToGlobal(place));
        }
    });
    Then([this, button, keys, times] {
        for (int n = 0; n < times; ++n) {
            m_hand.Click(button, keys);
        }
    });
}

void CDriver::DragFrom(QPoint from, QPoint to, int steps) {
    Then([this, from] { m_hand.Move(from); });
    Then([this] { m_hand.Press(CHand::Left); });
    for (int n = 1; n <= steps; ++n) {
        Then([this, at = from + (to - from) * n / steps] { m_hand.Move(at); });
        Wait(15);
    }
    Then([this] { m_hand.Release(CHand::Left); });
    Wait(30);
}

void CDriver::Press(Qt::Key key, Qt::KeyboardModifiers keys) {
    Then([this, key, keys] { m_hand.Key(key, keys); });
}

void CDriver::Type(const QString& text) {
    for (const QChar letter : text) {
        Then([this, letter] { m_hand.Type(letter); });
    }
}

void CDriver::Trigger(int command) {
    Then([command] {
        MainFrame()->UpdateCommands();
        if (QAction* const action = MainFrame()->CommandAction(command);
            action != nullptr && action->isEnabled()) {
            action->trigger();
        }
    });
}

// --- where

QList<QWidget*> CDriver::Widgets(QWidget* within) {
    QList<QWidget*> widgets;
    for (QWidget* const widget :
         within != nullptr ? within->findChildren<QWidget*>() : QApplication::allWidgets()) {
        const Qt::WindowType type = widget->window()->windowType();
        if (widget->isVisible() && type != Qt::ToolTip && type != Qt::Popup &&
            !widget->visibleRegion().isEmpty()) {
            widgets << widget;
        }
    }
    // Their order is that of their addresses, which the next run has others of.
    std::ranges::sort(widgets, [](const QWidget* one, const QWidget* other) {
        const QRect first = RectOnScreen(*one);
        const QRect second = RectOnScreen(*other);
        return std::tuple(first.top(), first.left(), first.width(), first.height()) <
               std::tuple(second.top(), second.left(), second.width(), second.height());
    });
    return widgets;
}

QWidget* CDriver::RandomWidget(QWidget* within) {
    const QList<QWidget*> widgets = Widgets(within);
    return !widgets.isEmpty() ? OneOf(widgets) : within != nullptr ? within : MainFrame();
}

QPoint CDriver::RandomPoint(const QWidget& widget) {
    const QRect rect =
        widget.visibleRegion().isEmpty() ? widget.rect() : widget.visibleRegion().boundingRect();
    return rect.topLeft() + QPoint(Random(rect.width()), Random(rect.height()));
}

QPoint CDriver::RandomPlace() {
    const QRect rect = RectOnScreen(*MainFrame()).adjusted(-60, -40, 60, 40);
    return rect.topLeft() + QPoint(Random(rect.width()), Random(rect.height()));
}

QList<QAbstractItemView*> CDriver::Lists(QWidget* within) {
    QList<QAbstractItemView*> lists;
    for (QWidget* const widget : Widgets(within)) {
        auto* const view = qobject_cast<QAbstractItemView*>(widget);
        if (view != nullptr && qobject_cast<QHeaderView*>(view) == nullptr && view->model() != nullptr) {
            lists << view;
        }
    }
    return lists;
}

CDockablePane* CDriver::FrontPane() {
    QList<CDockablePane*> panes;
    for (CDockablePane* const pane : MainFrame()->Panes()) {
        if (pane->IsInFront()) {
            panes << pane;
        }
    }
    return panes.isEmpty() ? nullptr : OneOf(panes);
}

QString CDriver::RandomLog() {
    const QString log = Chance(8) ? m_scratch.GrowingLog() : OneOf(m_scratch.Logs());
    m_scratch.Mend(log);
    return log;
}

QString CDriver::RandomWord() {
    return OneOf(QStringList{QStringLiteral("JDB"), QStringLiteral("F4211"), QStringLiteral("select"),
                             QStringLiteral("5"), QStringLiteral("0.25"), QStringLiteral("1"),
                             QStringLiteral("<b>x"), QStringLiteral("30"), QStringLiteral("fda.exe"),
                             QStringLiteral("no such text"), QStringLiteral("e")});
}

// --- in the window

void CDriver::DoClick() {
    QWidget& widget = *RandomWidget();
    Did(QStringLiteral("click"), NameOf(widget));
    const Qt::KeyboardModifiers keys = Chance(6)   ? Qt::ControlModifier
                                       : Chance(6) ? Qt::ShiftModifier
                                                   : Qt::NoModifier;
    ClickAt(widget, RandomPoint(widget), Chance(3) ? CHand::Middle : CHand::Left, keys);
}

void CDriver::DoDoubleClick() {
    QWidget& widget = *RandomWidget();
    Did(QStringLiteral("double click"), NameOf(widget));
    ClickAt(widget, RandomPoint(widget), CHand::Left, {}, 2);
}

void CDriver::DoRightClick() {
    QWidget& widget = *RandomWidget();
    Did(QStringLiteral("context menu"), NameOf(widget));
    if (Chance(20)) {
        Press(Qt::Key_Menu);
    } else {
        ClickAt(widget, RandomPoint(widget), CHand::Right);
    }
    Wait(20);
}

void CDriver::DoWheel() {
    const QList<QAbstractItemView*> lists = Lists();
    QWidget& widget = Chance(60) && !lists.isEmpty() ? *OneOf(lists) : *RandomWidget();
    Did(QStringLiteral("wheel"), NameOf(widget));
    const CHand::EButton wheel =
        OneOf(QList{CHand::WheelUp, CHand::WheelDown, CHand::WheelDown, CHand::WheelLeft, CHand::WheelRight});
    ClickAt(widget, RandomPoint(widget), wheel, Chance(25) ? Qt::ControlModifier : Qt::NoModifier,
            1 + Random(8));
}

void CDriver::DoKey() {
    static const QList<Qt::Key> keys = {
        Qt::Key_Up,     Qt::Key_Down,     Qt::Key_Down,   Qt::Key_Left,   Qt::Key_Right,     Qt::Key_Right,
        Qt::Key_PageUp, Qt::Key_PageDown, Qt::Key_Home,   Qt::Key_End,    Qt::Key_Tab,       Qt::Key_Tab,
        Qt::Key_Return, Qt::Key_Space,    Qt::Key_Escape, Qt::Key_Delete, Qt::Key_Backspace, Qt::Key_Plus,
        Qt::Key_Minus,  Qt::Key_Asterisk, Qt::Key_Menu};
    const int sort = Random(10);
    const Qt::Key key = sort < 6   ? OneOf(keys)
                        : sort < 8 ? static_cast<Qt::Key>(Qt::Key_A + Random(26))
                        : sort < 9 ? static_cast<Qt::Key>(Qt::Key_F1 + Random(12))
                                   : static_cast<Qt::Key>(Qt::Key_0 + Random(10));
    Qt::KeyboardModifiers with;
    with.setFlag(Qt::ControlModifier, Chance(15));
    with.setFlag(Qt::ShiftModifier, Chance(15));
    with.setFlag(Qt::AltModifier, Chance(6) && key != Qt::Key_F4);
    Did(QStringLiteral("key"), QKeySequence(QKeyCombination(with, key)).toString());
    const int times = Chance(20) ? 1 + Random(10) : 1;
    for (int n = 0; n < times; ++n) {
        Press(key, with);
    }
}

void CDriver::DoShortcut() {
    QStringList shortcuts = {QStringLiteral("Ctrl+Tab"), QStringLiteral("Ctrl+Shift+Tab"),
                             QStringLiteral("Ctrl+F"),   QStringLiteral("F3"),
                             QStringLiteral("Shift+F3"), QStringLiteral("Ctrl+A")};
    for (const CCommandInfo& command : AllCommands()) {
        if (!command.m_strShortcut.empty()) {
            shortcuts << ToQString(command.m_strShortcut);
        }
    }
    const QString shortcut = OneOf(shortcuts);
    Did(QStringLiteral("shortcut"), shortcut);
    const QKeyCombination keys = QKeySequence(shortcut)[0];
    Press(keys.key(), keys.keyboardModifiers());
}

void CDriver::DoType() {
    QList<QWidget*> edits;
    for (QWidget* const widget : Widgets()) {
        if (qobject_cast<QLineEdit*>(widget) != nullptr || qobject_cast<QPlainTextEdit*>(widget) != nullptr) {
            edits << widget;
        }
    }
    const QString word = RandomWord();
    Did(QStringLiteral("typing"), word);
    if (!edits.isEmpty()) {
        QWidget& edit = *OneOf(edits);
        ClickAt(edit, RandomPoint(edit));
        if (Chance(50)) {
            Press(Qt::Key_A, Qt::ControlModifier);
        }
    }
    Type(word);
    if (Chance(40)) {
        Press(Qt::Key_A, Qt::ControlModifier);
        // Cut, paste and undo are there only now.
        Trigger(OneOf(QList<int>{ID_EDIT_COPY, ID_EDIT_CUT, ID_EDIT_PASTE, ID_EDIT_UNDO}));
        Wait(20);
        Trigger(OneOf(QList<int>{ID_EDIT_COPY, ID_EDIT_CUT, ID_EDIT_PASTE, ID_EDIT_UNDO}));
    } else if (Chance(50)) {
        Press(Qt::Key_Return);
    }
}

void CDriver::DoDrag() {
    QWidget& widget = *RandomWidget();
    Did(QStringLiteral("drag"), NameOf(widget));
    DragFrom(widget.mapToGlobal(RandomPoint(widget)),
             Chance(70) ? widget.mapToGlobal(RandomPoint(widget)) : RandomPlace(), 3 + Random(6));
}

void CDriver::DoRow() {
    const QList<QAbstractItemView*> lists = Lists();
    if (lists.isEmpty()) {
        return;
    }
    QAbstractItemView& list = *OneOf(lists);
    Did(QStringLiteral("row"), list.accessibleName());
    QWidget& inside = *list.viewport();
    const QPoint place(Random(std::max(inside.width() / 2, 1)), Random(inside.height()));
    const Qt::KeyboardModifiers keys = Chance(15)   ? Qt::ControlModifier
                                       : Chance(15) ? Qt::ShiftModifier
                                                    : Qt::NoModifier;
    switch (Random(6)) {
    case 0:
        ClickAt(inside, place, CHand::Left, {}, 2);
        break;
    case 1:
        ClickAt(inside, place);
        ClickAt(inside, place, CHand::Right);
        Wait(20);
        break;
    case 2:
        ClickAt(inside, place);
        for (int n = Random(12); n >= 0; --n) {
            Press(OneOf(QList{Qt::Key_Down, Qt::Key_Down, Qt::Key_Right, Qt::Key_Up, Qt::Key_Left,
                              Qt::Key_PageDown}),
                  keys);
        }
        break;
    case 3:
        ClickAt(inside, place);
        Press(OneOf(QList{Qt::Key_Return, Qt::Key_Asterisk, Qt::Key_C, Qt::Key_A}),
              Chance(50) ? Qt::ControlModifier : Qt::NoModifier);
        break;
    default:
        ClickAt(inside, place, CHand::Left, keys);
        break;
    }
}

void CDriver::DoHeader() {
    // What shows of a header is its viewport.
    QList<QHeaderView*> headers;
    for (const QWidget* const widget : Widgets()) {
        auto* const header = qobject_cast<QHeaderView*>(widget->parentWidget());
        if (header != nullptr && header->viewport() == widget && header->count() > 0) {
            headers << header;
        }
    }
    if (headers.isEmpty()) {
        return;
    }
    QHeaderView& header = *OneOf(headers);
    const int section = Random(header.count());
    const int begin = header.sectionViewportPosition(section);
    const int middle = header.height() / 2;
    Did(QStringLiteral("header"),
        QStringLiteral("%1 of %2").arg(section).arg(NameOf(*header.parentWidget())));
    QWidget& inside = *header.viewport();
    const int end = begin + header.sectionSize(section) - 1;
    switch (Random(4)) {
    case 0:
        ClickAt(inside, {end, middle}, CHand::Left, {}, 2);
        break;
    case 1:
        DragFrom(inside.mapToGlobal(QPoint(end, middle)),
                 inside.mapToGlobal(QPoint(end + Random(160) - 80, middle)), 4);
        break;
    default:
        ClickAt(inside, {(begin + end) / 2, middle}, Chance(15) ? CHand::Right : CHand::Left);
        break;
    }
}

void CDriver::DoDragPane() {
    CDockablePane* const pane = FrontPane();
    if (pane == nullptr) {
        return;
    }
    const int title = std::max(pane->widget()->y(), 8);
    const QPoint from = pane->mapToGlobal(QPoint(12 + Random(std::max(pane->width() / 3, 1)), title / 2));
    const QRect window = RectOnScreen(*MainFrame());
    QPoint to = RandomPlace();
    QString where = QStringLiteral("anywhere");
    switch (Random(6)) {
    case 0:
        to = {window.left() + 8, window.center().y()};
        where = QStringLiteral("the left edge");
        break;
    case 1:
        to = {window.right() - 8, window.center().y()};
        where = QStringLiteral("the right edge");
        break;
    case 2:
        to = {window.center().x(), window.bottom() - 30};
        where = QStringLiteral("the lower edge");
        break;
    case 3:
        to = {window.center().x(), window.top() + 70};
        where = QStringLiteral("the upper edge");
        break;
    case 4:
        if (CDockablePane* const other = FrontPane()) {
            to = RectOnScreen(*other).center();
            where = other->objectName();
        }
        break;
    default:
        break;
    }
    Did(QStringLiteral("pane dragged"), QStringLiteral("%1 to %2").arg(pane->objectName(), where));
    DragFrom(from, to, 10);
    Wait(150);
}

void CDriver::DoPaneTab() {
    QList<QTabBar*> bars;
    for (QTabBar* const bar : MainFrame()->findChildren<QTabBar*>()) {
        if (bar->isVisible() && bar->count() > 0 && bar->parentWidget() == MainFrame()) {
            bars << bar;
        }
    }
    if (bars.isEmpty()) {
        return;
    }
    QTabBar& bar = *OneOf(bars);
    const QPoint place = bar.tabRect(Random(bar.count())).center();
    if (Chance(60)) {
        Did(QStringLiteral("pane's tab"), QStringLiteral("click"));
        ClickAt(bar, place);
    } else {
        Did(QStringLiteral("pane's tab"), QStringLiteral("drag"));
        DragFrom(bar.mapToGlobal(place),
                 Chance(50) ? bar.mapToGlobal(bar.tabRect(Random(bar.count())).center()) : RandomPlace());
        Wait(100);
    }
}

void CDriver::DoPaneButton() {
    CDockablePane* const pane = FrontPane();
    if (pane == nullptr) {
        return;
    }
    QList<QAbstractButton*> buttons;
    for (QAbstractButton* const button : pane->findChildren<QAbstractButton*>(Qt::FindDirectChildrenOnly)) {
        if (button->isVisible()) {
            buttons << button;
        }
    }
    if (buttons.isEmpty() || Chance(15)) {
        Did(QStringLiteral("pane's title"), pane->objectName());
        ClickAt(*pane, {20, std::max(pane->widget()->y(), 8) / 2}, CHand::Left, {}, 2);
    } else {
        QAbstractButton& button = *OneOf(buttons);
        Did(QStringLiteral("pane's button"), NameOf(*pane) + u' ' + NameOf(button));
        ClickAt(button, button.rect().center());
    }
    Wait(100);
}

void CDriver::DoShowPane() {
    CDockablePane* const pane = OneOf(MainFrame()->Panes());
    Did(QStringLiteral("pane shown"), pane->objectName());
    Then([pane = QPointer(pane)] { MainFrame()->Arrangement().ShowPane(*pane); });
}

void CDriver::DoFoldedTab() {
    QList<QWidget*> tabs;
    for (CDockablePane* const pane : MainFrame()->Panes()) {
        if (auto* const tab = MainFrame()->AutoHide().Tab(*pane); tab != nullptr && tab->isVisible()) {
            tabs << tab;
        }
    }
    if (tabs.isEmpty()) {
        // Then one is folded away.
        if (CDockablePane* const pane = FrontPane(); pane != nullptr && pane->PinButton()->isVisible()) {
            Did(QStringLiteral("pane folded"), pane->objectName());
            ClickAt(*pane->PinButton(), pane->PinButton()->rect().center());
            Wait(100);
        }
        return;
    }
    QWidget& tab = *OneOf(tabs);
    if (Chance(50)) {
        Did(QStringLiteral("folded tab"), QStringLiteral("click"));
        ClickAt(tab, tab.rect().center());
    } else {
        Did(QStringLiteral("folded tab"), QStringLiteral("hover"));
        Then([this, place = tab.mapToGlobal(tab.rect().center())] { m_hand.Move(place); });
        Wait(700);
    }
}

void CDriver::DoDragTab() {
    QList<CTabGroup*> groups;
    for (CTabGroup* const group : MainFrame()->ClientArea().Groups()) {
        if (group->Bar().count() > 0 && group->Bar().isVisible()) {
            groups << group;
        }
    }
    if (groups.isEmpty()) {
        DoOpen();
        return;
    }
    CTabBar& bar = OneOf(groups)->Bar();
    const QPoint place = bar.tabRect(Random(bar.count())).center();
    const int sort = Random(4);
    if (sort == 0) {
        Did(QStringLiteral("tab"), QStringLiteral("context menu"));
        ClickAt(bar, place, CHand::Right);
        Wait(20);
    } else if (sort == 1) {
        Did(QStringLiteral("tab"), QStringLiteral("click"));
        ClickAt(bar, place, Chance(20) ? CHand::Middle : CHand::Left);
    } else {
        Did(QStringLiteral("tab"), QStringLiteral("drag"));
        QWidget& area = MainFrame()->ClientArea();
        DragFrom(bar.mapToGlobal(place), sort == 2 ? area.mapToGlobal(RandomPoint(area)) : RandomPlace());
    }
}

void CDriver::DoMenu() {
    QMenuBar& bar = *MainFrame()->menuBar();
    QList<QAction*> menus;
    for (QAction* const action : bar.actions()) {
        if (action->isVisible() && !bar.actionGeometry(action).isEmpty()) {
            menus << action;
        }
    }
    if (menus.isEmpty()) {
        return;
    }
    const QAction& menu = *OneOf(menus);
    Did(QStringLiteral("menu"), menu.text());
    ClickAt(bar, bar.actionGeometry(const_cast<QAction*>(&menu)).center());
    Wait(20);
}

void CDriver::DoCommand() {
    QList<int> commands;
    int least = std::numeric_limits<int>::max();
    MainFrame()->UpdateCommands();
    for (const CCommandInfo& command : AllCommands()) {
        if (command.m_nId != ID_APP_EXIT && MainFrame()->CommandAction(command.m_nId)->isEnabled()) {
            commands << command.m_nId;
            least = std::min(least, m_mapCommands[command.m_nId]);
        }
    }
    if (Chance(50)) {
        // One of those that have run least.
        commands.removeIf([&](int id) { return m_mapCommands[id] > least; });
    }
    const int command = OneOf(commands);
    Did(QStringLiteral("command"), ToQString(FindCommand(command)->m_strText));
    Trigger(command);
}

void CDriver::DoDrop() {
    QStringList paths;
    if (Chance(25)) {
        paths = m_scratch.Pieces();
        for (const QString& piece : paths) {
            m_scratch.Mend(piece);
        }
    } else {
        for (int count = Chance(15) ? 1 + Random(3) : 1; count > 0; --count) {
            paths << RandomLog();
        }
    }
    QStringList names;
    for (const QString& path : paths) {
        names << QFileInfo(path).fileName();
    }
    QWidget* const target = Chance(50) ? static_cast<QWidget*>(MainFrame()) : RandomWidget();
    Did(QStringLiteral("drop"), names.join(u' ') + QStringLiteral(" on ") + NameOf(*target));
    Then([target = QPointer<QWidget>(target), paths] {
        if (target == nullptr) {
            return;
        }
        QMimeData data;
        QList<QUrl> urls;
        for (const QString& path : paths) {
            urls << QUrl::fromLocalFile(path);
        }
        data.setUrls(urls);
        data.setText(paths.join(u'\n'));
        QDragEnterEvent enter(QPoint(2, 2), Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, {});
        QCoreApplication::sendEvent(target, &enter);
        if (!enter.isAccepted()) {
            QDragLeaveEvent leave;
            QCoreApplication::sendEvent(target, &leave);
            return;
        }
        QDragMoveEvent move(QPoint(3, 3), Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, {});
        QCoreApplication::sendEvent(target, &move);
        QDropEvent drop(QPointF(3, 3), Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, {});
        QCoreApplication::sendEvent(target, &drop);
    });
    Wait(20);
}

void CDriver::DoOpenDialog() {
    Did(QStringLiteral("open by the dialog"));
    Press(Qt::Key_O, Qt::ControlModifier);
    Wait(50);
}

void CDriver::DoOpen() {
    const QString log = RandomLog();
    Did(QStringLiteral("open"), QFileInfo(log).fileName());
    Then([log] { theApp().OpenDocumentFile(log); });
}

void CDriver::DoRecent() {
    Did(QStringLiteral("recent file"));
    for (const std::string& path : theApp().m_recentFiles.m_listPaths) {
        m_scratch.Mend(ToQString(path));
    }
    Press(Qt::Key_F, Qt::AltModifier);
    Wait(40);
    // The menu takes the keyboard: what follows is done there, at once.
    const auto digit = static_cast<Qt::Key>(Qt::Key_1 + Random(4));
    QTimer::singleShot(60, this, [this, digit] {
        if (qobject_cast<QMenu*>(QApplication::activePopupWidget()) != nullptr) {
            m_hand.Key(digit);
        }
    });
}

void CDriver::DoClose() {
    Did(QStringLiteral("close"));
    Press(Qt::Key_F4, Qt::ControlModifier);
}

void CDriver::DoExplore() {
    if (MainFrame()->ActiveChild() == nullptr) {
        DoOpen();
        return;
    }
    const int command =
        MainFrame()->MenuState() == EMenuState::Cache
            ? OneOf(QList<int>{ID_CACHE_DEFINE_STRUCTURE, ID_CACHE_REFRESH_DATA})
            : OneOf(QList<int>{ID_EXPLORE_OVERVIEW, ID_EXPLORE_TIMELINE, ID_EXPLORE_CALL_PROFILE,
                               ID_EXPLORE_FLAME_GRAPH, ID_EXPLORE_STATEMENTS, ID_EXPLORE_FINDINGS,
                               ID_EXPLORE_COMPARE, ID_EXPLORE_ABOUT_LOG, ID_EXPLORE_NEXT_FINDING,
                               ID_EXPLORE_SAVE_PICTURE, ID_EXPLORE_EXPORT_PROFILE});
    Did(QStringLiteral("explore"), ToQString(FindCommand(command)->m_strText));
    Trigger(command);
    if (Chance(60)) {
        Wait(200);
    }
}

void CDriver::DoFind() {
    const QString word = RandomWord();
    Did(QStringLiteral("find"), word);
    Press(Qt::Key_F, Qt::ControlModifier);
    Type(word);
    Press(Qt::Key_Return);
    for (int n = Random(4); n > 0; --n) {
        Press(Qt::Key_F3, Chance(30) ? Qt::ShiftModifier : Qt::NoModifier);
    }
}

void CDriver::DoFollow() {
    Did(QStringLiteral("follow"));
    Then([this] { theApp().OpenDocumentFile(m_scratch.GrowingLog()); });
    Then([] {
        CMainFrame& frame = *MainFrame();
        frame.UpdateCommands();
        if (frame.Following().Followed() == nullptr) {
            frame.CommandAction(ID_EXPLORE_FOLLOW)->trigger();
        }
    });
    Wait(20);
}

void CDriver::DoProcess() {
    CProcessPane& pane = MainFrame()->m_wndProcessPane;
    Did(QStringLiteral("process"));
    Then([] { MainFrame()->Arrangement().ShowPane(MainFrame()->m_wndProcessPane); });
    Wait(20);
    const QList<QAbstractItemView*> lists = pane.findChildren<QAbstractItemView*>();
    const QList<QToolBar*> bars = pane.findChildren<QToolBar*>();
    if (lists.isEmpty() || bars.isEmpty()) {
        return;
    }
    QWidget& inside = *lists.front()->viewport();
    ClickAt(inside, {30, 8 + Random(60)});
    QList<QAction*> actions = bars.front()->actions();
    QAction* const action = OneOf(actions);
    Then([action = QPointer(action)] {
        if (action != nullptr && action->isEnabled()) {
            action->trigger();
        }
    });
}

// The caches of a process that runs: its log is analysed, its process selected, a cache's menu asked for.
void CDriver::DoCache() {
    Did(QStringLiteral("cache"));
    Then([] {
        CProcessPane& pane = MainFrame()->m_wndProcessPane;
        MainFrame()->Arrangement().ShowPane(pane);
        pane.RefreshProcessList();
    });
    Wait(20);
    Then([this] {
        CProcessPane& pane = MainFrame()->m_wndProcessPane;
        QAbstractItemView& list = *pane.findChildren<QAbstractItemView*>().front();
        if (list.model()->rowCount() == 0) {
            return;
        }
        const QModelIndex row = list.model()->index(Random(list.model()->rowCount()), 0);
        ClickAt(*list.viewport(), list.visualRect(row).center());
        Then([] {
            for (QAction* const action : MainFrame()->m_wndProcessPane.findChildren<QAction*>()) {
                if (action->data().toInt() == ID_PROCESS_ANALYZE) {
                    action->trigger();
                    return;
                }
            }
        });
        Wait(100);
        Then([this] {
            auto* const session = qobject_cast<CChildFrame*>(MainFrame()->ActiveChild());
            if (session == nullptr) {
                return;
            }
            QWidget& threads = *session->ThreadView().viewport();
            ClickAt(threads, {40, 8});
            Then([] { MainFrame()->Arrangement().ShowPane(MainFrame()->m_wndCachePane); });
            Wait(50);
            Then([this] {
                QWidget& caches = *MainFrame()->m_wndCachePane.Tree().viewport();
                ClickAt(caches, {30, 8 + Random(36)}, CHand::Right);
                Wait(50);
            });
        });
    });
}

void CDriver::DoWindow() {
    const int sort = Random(5);
    Did(QStringLiteral("window"), QString::number(sort));
    CMainFrame& frame = *MainFrame();
    if (sort == 0) {
        Then([&frame] { frame.isMaximized() ? frame.showNormal() : frame.showMaximized(); });
        Wait(1200);
    } else if (!frame.isMaximized()) {
        Then([&frame, size = QSize(500 + Random(760), 380 + Random(480))] { frame.resize(size); });
        Then([&frame, place = QPoint(Random(200), Random(100))] { frame.move(place); });
        Wait(100);
    }
}

void CDriver::DoExit() {
    if (Chance(50)) {
        Did(QStringLiteral("exit"), QStringLiteral("Alt+F4"));
        Then([] { MainFrame()->activateWindow(); });
        Wait(100);
        Press(Qt::Key_F4, Qt::AltModifier);
        Wait(300);
    } else {
        Did(QStringLiteral("exit"), QStringLiteral("File, Exit"));
        Trigger(ID_APP_EXIT);
    }
}

// --- in menus and dialogs

void CDriver::InPopup(QWidget& popup) {
    ++m_nInTop;
    if (m_nPopups > 400 || m_nInTop > 60) {
        Note(QStringLiteral("a popup stays: ") + NameOf(popup));
        popup.close();
        return;
    }
    if (auto* const menu = qobject_cast<QMenu*>(&popup)) {
        InMenu(*menu);
        return;
    }
    if (Chance(60)) {
        Did(QStringLiteral("list of a box"), NameOf(popup));
        ClickAt(popup, RandomPoint(popup));
    } else {
        Did(QStringLiteral("list of a box"), QStringLiteral("Esc"));
        Press(Qt::Key_Escape);
    }
    Wait(30);
}

void CDriver::InMenu(QMenu& menu) {
    QList<QAction*> entries;
    for (QAction* const action : menu.actions()) {
        if (action->isVisible() && action->isEnabled() && !action->isSeparator() &&
            !(action->text().contains(QStringLiteral("xit")) && Chance(90))) {
            entries << action;
        }
    }
    const int sort = Random(100);
    if (entries.isEmpty() || sort < 20) {
        Did(QStringLiteral("menu left"), QStringLiteral("Esc"));
        Press(Qt::Key_Escape);
    } else if (sort < 75) {
        QAction* const entry = OneOf(entries);
        Did(QStringLiteral("menu entry"), entry->text());
        ClickAt(menu, menu.actionGeometry(entry).center());
    } else if (sort < 92) {
        Did(QStringLiteral("menu key"));
        for (int n = Random(6); n >= 0; --n) {
            Press(OneOf(
                QList{Qt::Key_Down, Qt::Key_Down, Qt::Key_Up, Qt::Key_Right, Qt::Key_Left, Qt::Key_Home}));
        }
        if (menu.activeAction() == nullptr || !menu.activeAction()->text().contains(QStringLiteral("xit"))) {
            Press(Qt::Key_Return);
        }
    } else {
        Did(QStringLiteral("menu left"), QStringLiteral("click elsewhere"));
        Then([this, place = RandomPlace()] { m_hand.Move(place); });
        Then([this] { m_hand.Click(CHand::Left); });
    }
    Wait(40);
}

void CDriver::InDialog(QDialog& dialog) {
    ++m_nInTop;
    if (auto* const files = qobject_cast<QFileDialog*>(&dialog)) {
        InFileDialog(*files);
        return;
    }
    if (qobject_cast<QProgressDialog*>(&dialog) != nullptr) {
        if (Chance(2)) {
            Did(QStringLiteral("wait ended"));
            Press(Qt::Key_Escape);
        }
        return;
    }
    if (m_nInTop > m_nPatience) {
        LeaveDialog(dialog);
        return;
    }
    if (auto* const cache = qobject_cast<CCacheDlg*>(&dialog); cache != nullptr && Chance(50)) {
        Did(QStringLiteral("cache structure"));
        if (auto* const text = cache->findChild<QPlainTextEdit*>(QStringLiteral("Structure"))) {
            text->setPlainText(QLatin1String(kStructures));
        }
        if (auto* const parse = cache->findChild<QPushButton*>(QStringLiteral("Parse"))) {
            ClickAt(*parse, parse->rect().center());
        }
        Wait(30);
        Press(Qt::Key_Return);
        return;
    }
    QWidget& widget = *RandomWidget(&dialog);
    Did(QStringLiteral("in a dialog"), NameOf(dialog) + QStringLiteral(", ") + NameOf(widget));
    switch (Random(5)) {
    case 0:
        Type(RandomWord());
        break;
    case 1:
        Press(OneOf(QList{Qt::Key_Tab, Qt::Key_Down, Qt::Key_Space, Qt::Key_Up, Qt::Key_Delete}));
        break;
    case 2:
        ClickAt(widget, RandomPoint(widget), CHand::Left, {}, 2);
        break;
    default:
        ClickAt(widget, RandomPoint(widget), Chance(5) ? CHand::Right : CHand::Left);
        break;
    }
    Wait(20);
}

void CDriver::LeaveDialog(QDialog& dialog) {
    if (m_nInTop > m_nPatience + 25) {
        Note(QStringLiteral("a dialog stays: ") + NameOf(dialog));
        dialog.reject();
        return;
    }
    QList<QPushButton*> buttons;
    for (QWidget* const widget : Widgets(&dialog)) {
        if (auto* const button = qobject_cast<QPushButton*>(widget);
            button != nullptr && button->isEnabled()) {
            buttons << button;
        }
    }
    const int sort = Random(10);
    if (sort < 3 || buttons.isEmpty()) {
        Did(QStringLiteral("dialog left"), NameOf(dialog) + QStringLiteral(", Esc"));
        Press(Qt::Key_Escape);
    } else if (sort < 5) {
        Did(QStringLiteral("dialog left"), NameOf(dialog) + QStringLiteral(", Return"));
        Press(Qt::Key_Return);
    } else {
        QPushButton& button = *OneOf(buttons);
        Did(QStringLiteral("dialog left"), NameOf(dialog) + QStringLiteral(", ") + button.text());
        ClickAt(button, button.rect().center());
    }
    Wait(50);
}

// A hand could go anywhere from here: it names a file of the soak's, or leaves.
void CDriver::InFileDialog(QFileDialog& dialog) {
    auto* const edit = dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
    if (edit == nullptr || Chance(25) || m_nInTop > 4) {
        Did(QStringLiteral("file dialog"), QStringLiteral("cancelled"));
        if (m_nInTop > 8) {
            dialog.reject();
        } else {
            Press(Qt::Key_Escape);
        }
        Wait(80);
        return;
    }
    QString name;
    if (dialog.acceptMode() == QFileDialog::AcceptSave) {
        name = QStringLiteral("%1/export%2").arg(m_scratch.Path("exports")).arg(Random(5));
        static const QRegularExpression ending(QStringLiteral("\\*(\\.\\w+)"));
        if (const auto match = ending.match(OneOf(dialog.nameFilters())); match.hasMatch() && Chance(70)) {
            name += match.captured(1);
        }
    } else if (dialog.fileMode() == QFileDialog::ExistingFiles) {
        for (const QString& piece : m_scratch.Pieces()) {
            m_scratch.Mend(piece);
            name += u'"' + piece + QStringLiteral("\" ");
        }
    } else {
        name = RandomLog();
        const QStringList definitions =
            QDir(m_scratch.Path("exports")).entryList({QStringLiteral("*.cds")}, QDir::Files, QDir::Name);
        if (!definitions.isEmpty() && dialog.nameFilters().join(u' ').contains(QStringLiteral("cds"))) {
            name = m_scratch.Path("exports") + u'/' + OneOf(definitions);
        }
    }
    Did(QStringLiteral("file dialog"), name);
    edit->setFocus();
    edit->setText(name);
    Wait(30);
    Press(Qt::Key_Return);
    Wait(80);
}

} // namespace carvelot::soak
