// A log made of the lines of a test, and the session that reads it.
#pragma once

#include "platform/SharedFile.h"
#include "platform/TemporaryFile.h"
#include "session/CarvelotDoc.h"

#include <cstdio>
#include <fstream>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace carvelot::test {

// A file that is gone after the test.
class TestFile {
public:
    explicit TestFile(std::string_view content = {}) : m_path(platform::MakeTemporaryName("TST").value()) {
        Write(content);
    }
    ~TestFile() { platform::DeleteFileAt(m_path); }
    TestFile(const TestFile&) = delete;
    TestFile& operator=(const TestFile&) = delete;

    void Write(std::string_view content) const {
        std::ofstream(m_path, std::ios::binary | std::ios::trunc)
            .write(content.data(), static_cast<std::streamsize>(content.size()));
    }
    const std::string& Path() const { return m_path; }

private:
    std::string m_path;
};

// Remembers what the session said.
class RecordingHost : public ISessionHost {
public:
    void ShowMessage(std::string_view text) override { m_messages.emplace_back(text); }
    void PrintOutput(std::string_view text) override { m_output.append(text); }
    void BeginWaitCursor() override { ++m_nWaits; }
    void EndWaitCursor() override { --m_nWaits; }
    void ClearPanes() override { m_events.emplace_back("clear panes"); }
    void SetTitle(CCarvelotDoc& /*session*/, const std::string& title) override {
        m_events.push_back("title " + title);
    }
    void AddToRecentFileList(const std::string& path) override { m_events.push_back("recent " + path); }
    std::optional<std::string> AskForLog() override { return m_answer; }
    void OpenInShell(const std::string& path) override { m_events.push_back("shell " + path); }
    void ActivateSession(CCarvelotDoc& /*session*/) override { m_events.emplace_back("activate"); }

    std::vector<std::string> m_messages;
    std::vector<std::string> m_events;
    std::string m_output;
    std::optional<std::string> m_answer;
    int m_nWaits = 0;
};

class TestSession {
public:
    // Loads the lines, each ended by a line feed.
    explicit TestSession(const std::vector<std::string>& lines, AnalysisSettings settings = {})
        : TestSession(Joined(lines), settings) {}
    explicit TestSession(std::string_view content, AnalysisSettings settings = {})
        : m_settings(settings), m_file(content) {
        m_doc.m_strLogPath = m_file.Path();
        m_bLoaded = m_doc.LoadLog();
    }

    static std::string Joined(const std::vector<std::string>& lines) {
        std::string content;
        for (const std::string& line : lines) {
            content.append(line).push_back('\n');
        }
        return content;
    }

    std::size_t Count() const { return m_doc.m_listDetails.Size(); }
    CLogDetail Record(std::uint32_t i) const { return m_doc.m_listDetails[RecordIndex{i}]; }
    CLogDetail Last() const { return Record(static_cast<std::uint32_t>(Count() - 1)); }
    LogKind Kind(std::uint32_t i) const { return m_doc.m_listDetails.Kind(RecordIndex{i}); }
    std::string Text(std::uint32_t i) const { return std::string(m_doc.m_listDetails.Text(RecordIndex{i})); }
    std::vector<std::string> Texts() const {
        std::vector<std::string> texts;
        for (std::uint32_t i = 0; i < Count(); ++i) {
            texts.push_back(Text(i));
        }
        return texts;
    }
    const CProcess& Process(std::uint32_t id) const { return *m_doc.FindProcess(id); }
    const CThread& Thread(std::uint32_t process, std::uint32_t thread) const {
        return *Process(process).m_mapThreads.at(thread);
    }
    const CJASUser& User(std::string_view name) const { return *m_doc.FindUser(name); }

    AnalysisSettings m_settings;
    PendingStatement m_pending;
    RecordingHost m_host;
    TestFile m_file;
    CCarvelotDoc m_doc{m_settings, m_pending, m_host};
    bool m_bLoaded = false;
};

// The numbers of a list of records.
template <class List> std::vector<std::uint32_t> Numbers(const List& records) {
    std::vector<std::uint32_t> numbers;
    for (const RecordIndex record : records) {
        numbers.push_back(Number(record));
    }
    return numbers;
}

// A debug line of the newer form; `text` stands behind the tab that the first line of DebugLog teaches.
inline std::string DebugLine(std::string_view time, std::string_view text,
                             std::string_view ids = "4120/3388") {
    return std::string("Jan 15 ").append(time).append(" - ").append(ids).append(" Worker\t").append(text);
}

// Lines that make a debug log: the first one tells the format and puts the statement text behind the first
// tab. It is record 0, of a process and thread of its own.
inline std::vector<std::string> DebugLog(std::initializer_list<std::string> lines) {
    std::vector<std::string> log{DebugLine("08:00:00.000001", "Entering JDB_OpenTable", "1/1")};
    log.insert(log.end(), lines.begin(), lines.end());
    return log;
}

inline std::string JASLine(std::string_view time, std::string_view user, std::string_view text,
                           std::string_view level = "APP   ", std::string_view source = "RUNTIME") {
    return std::string("15 Jan 2024 ")
        .append(time)
        .append(" [")
        .append(level)
        .append("] ")
        .append(user)
        .append(user.empty() ? "" : " ")
        .append("- [")
        .append(source)
        .append("] ")
        .append(text);
}

// Lines that make a JAS log: the first six tell the format; they are records 0 to 5 of the user INIT.
inline constexpr std::uint32_t kJASLead = 6;
inline std::vector<std::string> JASLog(std::initializer_list<std::string> lines) {
    std::vector<std::string> log(kJASLead, JASLine("08:00:00,000", "INIT", "starting"));
    log.insert(log.end(), lines.begin(), lines.end());
    return log;
}

} // namespace carvelot::test
