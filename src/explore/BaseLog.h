// A log that another one is compared with: read and explored for itself, without any window.
#pragma once

#include "explore/ExploreProgress.h"
#include "explore/ExploredSession.h"
#include "explore/Findings.h"
#include "session/SessionHost.h"

#include <atomic>
#include <optional>
#include <string>
#include <vector>

namespace carvelot {

class CBaseLog final : ISessionHost {
public:
    // Every base is read with a memory of its own for what a JAS log's last statement awaits.
    CBaseLog(std::string path, const AnalysisSettings& settings, CDialects dialects = {});

    // Reads and explores the log; may run beside the windows. False where that failed or was ended.
    bool Load();
    // From any thread: ends the load soon.
    void End();
    // 0 to 100.
    int Percent() const;

    const std::string& Path() const { return m_session.m_strLogPath; }
    // Why it could not be read; empty when it was ended.
    const std::string& Failure() const { return m_strFailure; }

    // Only after a Load that went well.
    const ExploredSession& Explored() const { return *m_explored; }
    const std::vector<Finding>& Findings() const { return m_findings; }

private:
    void ShowMessage(std::string_view text) override;
    void PrintOutput(std::string_view text) override;
    std::vector<std::size_t> ChooseMembers(const CCarvelotDoc& session,
                                           const std::vector<PackedMember>& members) override;
    void LoadProgress(std::uint64_t done, std::uint64_t total) override;

    const AnalysisSettings m_settings;
    PendingStatement m_pending;
    CCarvelotDoc m_session;
    std::optional<ExploredSession> m_explored;
    std::vector<Finding> m_findings;
    std::string m_strFailure;
    std::atomic<int> m_nLoaded = 0; // of 100
    CExploreProgress m_exploring{ExploreParts::kAll - ExploreParts::kScope};
};

} // namespace carvelot
