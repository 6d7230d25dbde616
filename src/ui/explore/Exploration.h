// Exploration.h - what is explored of one session, for all windows that show it.
#pragma once

#include "explore/ExploredSession.h"
#include "explore/Findings.h"
#include "explore/lists/FindingWalk.h"
#include "records/AnalysisSettings.h"
#include "ui/kit/BackgroundWork.h"

#include <QObject>
#include <QString>
#include <QTimer>

#include <memory>
#include <optional>
#include <vector>

namespace carvelot {

class CDocument;

// Belongs to the session's document. The exploring runs beside the windows; they hear when it is done. Scope,
// range and the selected record are one for all windows.
class CExploration : public QObject {
    Q_OBJECT

public:
    // The session's load has ended, and will not begin again before EndsWithRecords.
    CExploration(CDocument& document, const CCarvelotDoc& session, const AnalysisSettings& settings);
    ~CExploration() override;

    enum class State {
        Nothing, // not asked for yet, or the session's records went
        Running,
        Done,
        Ended, // by the user
        NoMemory,
    };
    State GetState() const { return m_state; }
    // Starts exploring where that is not done and not running.
    void Start();
    // The same, but where the user has ended it once that stands.
    void StartFirst();
    // Ends what runs: the exploring, or the counting of a scope (then the whole log is shown again).
    void Stop();
    // 0 to 100 of what runs, or -1.
    int Progress() const { return m_nProgress; }

    CDocument& Document() const { return m_document; }
    const CCarvelotDoc& Session() const { return m_session; }
    // "order.log"
    QString LogName() const;

    // The next four only in state Done.
    const ExploredSession& Explored() const { return *m_pExplored; }
    const std::vector<Finding>& Findings() const { return m_findings; }
    // What the scope and range in force add up to; null while that is being counted.
    const ExploredScope* Scope() const { return m_pScope.get(); }
    std::shared_ptr<const ExploredScope> SharedScope() const { return m_pScope; }

    const Selection& ScopeSelection() const { return m_scope; }
    const ClockRange& Range() const { return m_range; }
    void SetScope(const Selection& scope);
    void SetRange(const ClockRange& range);
    // Whether the scope follows what is selected in the session's tree.
    bool FollowsSession() const { return m_bFollows; }
    void SetFollowsSession(bool follows);
    // What is selected in the session's tree.
    void TakeSessionSelection(const Selection& selection);

    // The record that is marked in all windows.
    std::optional<RecordIndex> Selected() const { return m_selected; }
    // Marks a record here; one that came after the exploring began marks none.
    void Select(std::optional<RecordIndex> record);
    // Brings a record up in the session's trees.
    void ShowInSession(RecordIndex record);

    // The way through the records of all findings; it stands nowhere until one was gone to.
    CFindingWalk& Walk() { return m_walk; }
    // Goes on to the next record of all findings, or back to the one before; explores first where that is not
    // done. False where there is none, or none yet.
    bool StepFinding(bool forward);

    // To be called before the session's records go: all work has ended when it returns, and nothing refers to
    // them any more.
    void EndWithRecords();
    // The session was read again: what windows show is explored anew.
    void TakeNewRecords();

signals:
    void StateChanged();
    // To be obeyed at once: whatever refers to what was explored lets go of it.
    void ResultsGo();
    void ProgressChanged(int percent);
    // Another scope or range is in force, or one was counted: see Scope().
    void ScopeChanged();
    void SelectedChanged();
    // The walk through the findings' records went on.
    void FindingStepped();
    // What the session's window is to do.
    void RecordWanted(RecordIndex record);

private:
    struct Result;
    void OnExplored(Result& result);
    void CountScope();
    void SetProgress(int percent);
    void EndWork();
    void OnWorkDone();

    void Let(State state); // go of all results, into that state
    void TakeScopeOfSession();

    CDocument& m_document;
    const CCarvelotDoc& m_session;
    const AnalysisSettings& m_settingsNow;
    AnalysisSettings m_settings; // those in force when exploring began
    std::size_t m_nRecords = 0;  // that there were then
    State m_state = State::Nothing;
    int m_nProgress = -1;
    std::unique_ptr<ExploredSession> m_pExplored;
    std::vector<Finding> m_findings;
    CFindingWalk m_walk;              // through them
    std::optional<bool> m_stepWanted; // when exploring is done: forward or back
    std::shared_ptr<const ExploredScope> m_pScope;
    Selection m_scope;
    Selection m_sessionSelection;
    ClockRange m_range;
    bool m_bFollows = false;
    bool m_bWanted = false; // a window has asked for it
    std::optional<RecordIndex> m_selected;
    std::shared_ptr<CExploreProgress> m_pProgress; // of what runs
    QTimer m_progressTimer;
    std::unique_ptr<CBackgroundWork> m_pWork; // the last member: it ends first
};

} // namespace carvelot
