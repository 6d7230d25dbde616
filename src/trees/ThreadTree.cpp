#include "trees/ThreadTree.h"

#include "records/NodeText.h"
#include "trees/DetailTree.h"

namespace carvelot {

namespace {

std::string WithElapsed(std::string text, std::uint64_t end, std::uint64_t start) {
    const float seconds = ElapsedSeconds(end, start);
    return text.append(" (").append(SecondsText(seconds)).append(")");
}

} // namespace

std::string ProcessNodeText(const CCarvelotDoc& session, const CProcess& process) {
    std::string text = "Process - " + IdText(process.m_nProcessID);
    if (IsAboveBlank(session.m_strProcessName)) {
        text.append(" - ").append(session.m_strProcessName);
    }
    return WithElapsed(std::move(text), process.m_nEndTime, process.m_nStartTime);
}

std::string ThreadNodeText(const CThread& thread) {
    return WithElapsed("Thread - " + IdText(thread.m_nThreadID), thread.m_nEndTime, thread.m_nStartTime);
}

std::vector<int> UserImages(const CCarvelotDoc& session) {
    std::vector<int> images;
    int image = IMAGE_USER;
    for (const auto& user : session.m_listUsers) {
        if (user->m_strUser == kSystemLevelUser) {
            image = IMAGE_SYSTEM_LEVEL;
        }
        images.push_back(image);
    }
    return images;
}

std::string TitleOf(const CCarvelotDoc& session, const Selection& selection) {
    std::string title = session.m_strLogPath;
    if (const CProcess* const process = selection.Process()) {
        title += " - Process: " + IdText(process->m_nProcessID);
    } else if (const CThread* const thread = selection.Thread()) {
        title += " - Process: " + IdText(thread->m_nProcessID) + " Thread: " + IdText(thread->m_nThreadID);
    } else if (const CJASUser* const user = selection.User()) {
        title += " - User: " + user->m_strUser;
    }
    return title;
}

} // namespace carvelot
