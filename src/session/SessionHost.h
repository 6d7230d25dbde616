// What a session asks of the program around it. The window implements these; the command line and tests do
// too.
#pragma once

#include "records/LogDetail.h"
#include "sources/PackedFile.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace carvelot {

class CCarvelotDoc;
class CJASUser;
class CThread;

// Thrown by LoadProgress, it ends the load: the session is then empty, and nothing more is said.
struct LoadEnded {};

class ISessionHost {
public:
    virtual ~ISessionHost() = default;

    // A message box with an OK button.
    virtual void ShowMessage(std::string_view text) = 0;
    // A line for standard output; ends with its own line feed.
    virtual void PrintOutput(std::string_view text) = 0;
    virtual void BeginWaitCursor() {}
    virtual void EndWaitCursor() {}
    // Bytes of the file that have been parsed, of 0 where nobody knows how many there are; called now and
    // then during a load, in which the session must be left alone.
    virtual void LoadProgress(std::uint64_t /*done*/, std::uint64_t /*total*/) {}
    // Of a load that has told of its progress there is no more.
    virtual void EndLoadProgress() {}
    // The shared panes must let go of the session's records now.
    virtual void ClearPanes() {}
    virtual void SetTitle(CCarvelotDoc& /*session*/, const std::string& /*title*/) {}
    virtual void AddToRecentFileList(const std::string& /*path*/) {}
    // File New's open-file dialog; nothing when it was cancelled.
    virtual std::optional<std::string> AskForLog() { return std::nullopt; }
    // Which members of a zip archive are the log, one after the other, by their places in the list; none when
    // the user wants none of them.
    virtual std::vector<std::size_t> ChooseMembers(const CCarvelotDoc& /*session*/,
                                                   const std::vector<PackedMember>& /*members*/) {
        return {};
    }
    virtual void OpenInShell(const std::string& /*path*/) {}
    // Gives the focus to the frame of the session's first view and then to the thread view.
    virtual void ActivateSession(CCarvelotDoc& /*session*/) {}
};

// The session's tree of processes and threads, or of users.
class IThreadTreeView {
public:
    virtual ~IThreadTreeView() = default;

    // Empties the tree; called before the records and owners that it shows go away.
    virtual void ClearTree() = 0;
    virtual void FillProcessTree() = 0;
    virtual void FillUserTree() = 0;
    // True while a process is selected, so that the detail tree holds all of its threads.
    virtual bool IsProcessSelected(std::uint32_t processID) const = 0;
    virtual void SelectThread(const CThread& thread) = 0;
    virtual void SelectUser(const CJASUser& user) = 0;
};

// The session's call tree.
class IDetailTreeView {
public:
    virtual ~IDetailTreeView() = default;

    virtual void ResetTree() = 0;
    // Selects the record's node and makes it visible; nothing when the tree has none.
    virtual void SelectRecord(RecordIndex record) = 0;
    virtual void SetFocusToTree() = 0;
};

} // namespace carvelot
