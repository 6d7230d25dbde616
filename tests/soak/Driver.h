// Driver.h - works in the window at random, as a hand does: a click, a key, a drop, a pane that is dragged, a
// session that is opened, a log that is followed, one after the other, for as long as it is told to.
//
// All choices come from one seed. The window's own clocks (a list that refreshes, a log that grows) are not
// its.
#pragma once

#include "soak/Gauge.h"
#include "soak/Hand.h"
#include "soak/Scratch.h"

#include <QElapsedTimer>
#include <QFile>
#include <QObject>
#include <QPointer>
#include <QStringList>
#include <QTimer>

#include <atomic>
#include <deque>
#include <functional>
#include <map>
#include <random>
#include <vector>

class QAbstractItemView;
class QDialog;
class QFileDialog;
class QMenu;
class QWidget;

namespace carvelot {
class CDockablePane;
class CMainFrame;
} // namespace carvelot

namespace carvelot::soak {

// What shows that the checks can fail.
enum class EMistake { None, Leak, Noise, Hang, Forget };

struct COptions {
    std::uint32_t m_nSeed = 1;
    double m_fSeconds = 60;
    double m_fCheckpoint = 60; // seconds from one to the next
    double m_fExit = 300;      // seconds on average from one end of the program to the next, or less
    EMistake m_mistake = EMistake::None;
    QString m_strLog;
};

class CDriver : public QObject {
    Q_OBJECT

public:
    CDriver(const COptions& options, CScratch& scratch);
    ~CDriver() override;

    // To be called when the program has started, and each time when it has ended. Whether it is to start
    // again.
    void Started();
    bool Ended();
    // What is wrong, also found by others.
    void Fail(const QString& what);
    // What the program left, to be held against what another process of it found.
    const QStringList& Left() const { return m_left; }
    bool IsThere() const { return m_hand.IsThere(); }

    const QStringList& Failures() const { return m_failures; }
    const std::vector<CSample>& Samples() const { return m_samples; }
    const std::map<QString, int>& Kinds() const { return m_mapKinds; }
    // How often each of the table's commands ran, by its name.
    std::map<QString, int> Commands() const;
    int Actions() const { return m_nActions; }
    int Restarts() const { return m_nRestarts; }
    double Seconds() const { return static_cast<double>(m_clock.elapsed()) / 1000; }
    double Followed() const { return static_cast<double>(m_nFollowed) / 1000; }
    // Milliseconds on Seconds' clock when it last was at work.
    qint64 Beat() const { return m_nBeat; }
    void StillThere() { m_nBeat = m_clock.elapsed(); }
    qint64 SinceBeat() const { return m_clock.elapsed() - m_nBeat; }
    // All that the log has until now, for whoever looks at a program that hangs.
    int LogHandle() const { return m_log.handle(); }

protected:
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    using FStep = std::function<void()>;

    void Tick();
    void Act();
    void InPopup(QWidget& popup);
    void InMenu(QMenu& menu);
    void InDialog(QDialog& dialog);
    void InFileDialog(QFileDialog& dialog);
    void LeaveDialog(QDialog& dialog);
    void LookAtErrors();
    void CompareStates();
    void Checkpoint();
    void Judge();

    // What there is to do; each says what it does by Did.
    void DoClick();
    void DoDoubleClick();
    void DoRightClick();
    void DoWheel();
    void DoKey();
    void DoShortcut();
    void DoType();
    void DoDrag();
    void DoRow();
    void DoHeader();
    void DoDragPane();
    void DoPaneTab();
    void DoPaneButton();
    void DoShowPane();
    void DoFoldedTab();
    void DoDragTab();
    void DoMenu();
    void DoCommand();
    void DoDrop();
    void DoOpenDialog();
    void DoOpen();
    void DoRecent();
    void DoClose();
    void DoExplore();
    void DoFind();
    void DoFollow();
    void DoProcess();
    void DoCache();
    void DoWindow();
    void DoExit();

    void Did(const QString& kind, const QString& what = {});
    void Note(const QString& line);
    int Random(int below);
    bool Chance(int percent) { return Random(100) < percent; }
    template <class T> T OneOf(const QList<T>& list) { return list[Random(static_cast<int>(list.size()))]; }

    // Input, an event a step.
    void Then(FStep step) { m_steps.push_back(std::move(step)); }
    void Wait(int milliseconds);
    void ClickAt(QWidget& widget, QPoint place, CHand::EButton button = CHand::Left,
                 Qt::KeyboardModifiers keys = {}, int times = 1);
    void DragFrom(QPoint from, QPoint to, int steps = 8);
    void Press(Qt::Key key, Qt::KeyboardModifiers keys = {});
    void Type(const QString& text);
    void Trigger(int command);

    QList<QWidget*> Widgets(QWidget* within = nullptr);
    QWidget* RandomWidget(QWidget* within = nullptr);
    QPoint RandomPoint(const QWidget& widget);
    QPoint RandomPlace(); // on or beside the main window
    QList<QAbstractItemView*> Lists(QWidget* within = nullptr);
    CDockablePane* FrontPane();
    QString RandomLog();
    QString RandomWord();

    COptions m_options;
    CScratch& m_scratch;
    CHand m_hand;
    std::mt19937 m_random;
    QTimer m_timer;
    QElapsedTimer m_clock;
    QFile m_log;
    std::deque<FStep> m_steps;
    qint64 m_nWaitUntil = 0;
    QPointer<QWidget> m_pTop; // the popup or dialog in front
    bool m_bTop = false;
    int m_nInTop = 0; // actions there
    int m_nPatience = 0;
    int m_nPopups = 0; // ticks on end with one
    int m_nAway = 0;   // ticks on end without the keyboard
    int m_nActions = 0;
    int m_nRestarts = 0;
    bool m_bRunning = false;
    bool m_bLeaving = false; // the window has closed
    bool m_bOver = false;
    double m_fNextCheckpoint = 0;
    double m_fNextExit = 0;
    qint64 m_nErrorBytes = 0;
    qint64 m_nFollowed = 0;
    qint64 m_nLastTick = 0;
    std::atomic<qint64> m_nBeat = 0;
    QStringList m_left; // the state when the window closed
    QStringList m_failures;
    std::vector<CSample> m_samples;
    std::map<QString, int> m_mapKinds;
    std::map<int, int> m_mapCommands;
};

} // namespace carvelot::soak
