// SessionHost.h - what a session asks of the program around it, answered by the window.
#pragma once

#include "session/SessionHost.h"
#include "ui/kit/WaitBox.h"

#include <optional>

namespace carvelot {

class CSessionDocument;

class CSessionHost final : public ISessionHost {
public:
    explicit CSessionHost(CSessionDocument& document) : m_document(document) {}
    ~CSessionHost() override;

    void ShowMessage(std::string_view text) override;
    void PrintOutput(std::string_view text) override;
    void BeginWaitCursor() override;
    void EndWaitCursor() override;
    void LoadProgress(std::uint64_t done, std::uint64_t total) override;
    void EndLoadProgress() override;
    void ClearPanes() override;
    void SetTitle(CCarvelotDoc& session, const std::string& title) override;
    void AddToRecentFileList(const std::string& path) override;
    std::optional<std::string> AskForLog() override;
    std::vector<std::size_t> ChooseMembers(const CCarvelotDoc& session,
                                           const std::vector<PackedMember>& members) override;
    void OpenInShell(const std::string& path) override;
    void ActivateSession(CCarvelotDoc& session) override;

private:
    CSessionDocument& m_document;
    std::optional<CWaitBox> m_waitBox;
};

} // namespace carvelot
