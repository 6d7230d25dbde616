#include "ui/explore/Exploration.h"

#include "ui/kit/Document.h"
#include "ui/kit/MainWindow.h"
#include "ui/kit/Text.h"

#include <future>
#include <new>
#include <utility>

namespace carvelot {

namespace {

constexpr int kProgressInterval = 50; // milliseconds

} // namespace

// What a run beside the windows brings back.
struct CExploration::Result {
    State state = State::Done;
    std::unique_ptr<ExploredSession> explored;
    std::vector<Finding> findings;
    std::shared_ptr<const ExploredScope> scope;

    template <class Work> void Fill(Work work) {
        try {
            work();
        } catch (const ExploringEnded&) {
            state = State::Ended;
        } catch (const std::bad_alloc&) {
            state = State::NoMemory;
        }
    }
};

CExploration::CExploration(CDocument& document, const CCarvelotDoc& session, const AnalysisSettings& settings)
    : QObject(&document), m_document(document), m_session(session), m_settingsNow(settings) {
    m_progressTimer.setInterval(kProgressInterval);
    connect(&m_progressTimer, &QTimer::timeout, this, [this] { SetProgress(m_pProgress->Percent()); });
}

CExploration::~CExploration() { EndWork(); }

QString CExploration::LogName() const {
    const std::string& path = m_session.m_strLogPath;
    return ToQString(std::string_view(path).substr(path.find_last_of("/\\") + 1));
}

void CExploration::Start() {
    if (m_state == State::Running || m_state == State::Done) {
        return;
    }
    m_bWanted = true;
    m_settings = m_settingsNow;
    m_nRecords = m_session.m_listDetails.Size();
    m_pProgress = std::make_shared<CExploreProgress>();
    auto result = std::make_shared<Result>();
    const auto work = [this, result, progress = m_pProgress] {
        result->Fill([&] {
            result->explored = std::make_unique<ExploredSession>(m_session, m_settings, progress.get());
            const ExploredSession& explored = *result->explored;
            std::future<std::vector<Finding>> findings =
                std::async([&explored, progress] { return FindAll(explored, progress.get()); });
            result->scope =
                std::make_shared<ExploredScope>(explored, Selection(), ClockRange(), progress.get());
            result->findings = findings.get();
        });
    };
    m_state = State::Running;
    SetProgress(0);
    m_progressTimer.start();
    emit StateChanged();
    m_pWork = std::make_unique<CBackgroundWork>(
        work, [progress = m_pProgress] { progress->End(); }, [this, result] { OnExplored(*result); });
}

void CExploration::StartFirst() {
    if (m_state == State::Nothing) {
        Start();
    }
}

void CExploration::TakeNewRecords() {
    if (m_bWanted) {
        StartFirst();
    }
}

void CExploration::OnExplored(Result& result) {
    OnWorkDone();
    if (result.state != State::Done) {
        Let(result.state);
        return;
    }
    m_pExplored = std::move(result.explored);
    m_findings = std::move(result.findings);
    m_walk.Begin(m_findings);
    m_pScope = std::move(result.scope);
    m_state = State::Done;
    emit StateChanged();
    if (const auto forward = std::exchange(m_stepWanted, std::nullopt)) {
        StepFinding(*forward);
    }
    if (m_bFollows) {
        TakeScopeOfSession();
    }
}

void CExploration::Stop() {
    if (m_state == State::Running) {
        EndWork();
        Let(State::Ended);
    } else if (m_pWork != nullptr) {
        // What is counted is not wanted: back to the whole log.
        m_scope = {};
        m_range = {};
        m_bFollows = false;
        CountScope();
    }
}

void CExploration::EndWork() {
    m_pWork.reset();
    m_progressTimer.stop();
    SetProgress(-1);
}

// The call comes from inside the work that is done.
void CExploration::OnWorkDone() {
    m_pWork.release()->deleteLater();
    EndWork();
}

void CExploration::Let(State state) {
    if (m_pExplored != nullptr) {
        emit ResultsGo();
    }
    m_pScope.reset();
    m_walk.Drop();
    m_stepWanted.reset();
    m_findings.clear();
    m_pExplored.reset();
    m_state = state;
    emit StateChanged();
}

void CExploration::SetScope(const Selection& scope) {
    m_scope = scope;
    CountScope();
}

void CExploration::SetRange(const ClockRange& range) {
    if (range.from == m_range.from && range.to == m_range.to) {
        return;
    }
    m_range = range;
    CountScope();
}

void CExploration::SetFollowsSession(bool follows) {
    if (follows == m_bFollows) {
        return;
    }
    m_bFollows = follows;
    if (follows) {
        TakeScopeOfSession();
    }
    emit ScopeChanged();
}

void CExploration::TakeSessionSelection(const Selection& selection) {
    m_sessionSelection = selection;
    if (m_bFollows) {
        TakeScopeOfSession();
    }
}

void CExploration::TakeScopeOfSession() {
    if (m_sessionSelection.What() != Selection::Kind::Nothing && m_sessionSelection != m_scope) {
        SetScope(m_sessionSelection);
    }
}

void CExploration::CountScope() {
    if (m_state != State::Done) {
        emit ScopeChanged(); // counted when exploring is done
        return;
    }
    EndWork();
    m_pScope.reset();
    m_pProgress = std::make_shared<CExploreProgress>(ExploreParts::kScope);
    auto result = std::make_shared<Result>();
    const auto work = [this, result, scope = m_scope, range = m_range, progress = m_pProgress] {
        result->Fill([&] {
            result->scope = std::make_shared<ExploredScope>(*m_pExplored, scope, range, progress.get());
        });
    };
    SetProgress(0);
    m_progressTimer.start();
    emit ScopeChanged();
    m_pWork = std::make_unique<CBackgroundWork>(
        work, [progress = m_pProgress] { progress->End(); },
        [this, result] {
            OnWorkDone();
            if (result->state == State::NoMemory) {
                Let(State::NoMemory);
                return;
            }
            m_pScope = std::move(result->scope);
            emit ScopeChanged();
        });
}

void CExploration::Select(std::optional<RecordIndex> record) {
    const bool isExplored = m_state == State::Running || m_state == State::Done;
    if (isExplored && record && Number(*record) >= m_nRecords) {
        record.reset();
    }
    if (record != m_selected) {
        m_selected = record;
        emit SelectedChanged();
    }
}

void CExploration::ShowInSession(RecordIndex record) {
    Select(record);
    emit RecordWanted(record);
}

bool CExploration::StepFinding(bool forward) {
    if (m_state != State::Done) {
        m_stepWanted = forward;
        StartFirst();
        return false;
    }
    const std::optional<CFindingWalk::Place> place = m_walk.Step(forward);
    if (!place) {
        return false;
    }
    const RecordIndex record = m_walk.RecordAt(*place);
    emit FindingStepped();
    ShowInSession(record);
    return true;
}

void CExploration::EndWithRecords() {
    EndWork();
    m_scope = {};
    m_sessionSelection = {};
    m_range = {};
    m_selected.reset();
    Let(State::Nothing);
}

void CExploration::SetProgress(int percent) {
    if (percent == m_nProgress) {
        return;
    }
    m_nProgress = percent;
    if (CMainWindow* const main = MainWindow()) {
        main->ShowProgress(percent);
    }
    emit ProgressChanged(percent);
}

} // namespace carvelot
