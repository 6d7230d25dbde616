#include "views/ThreadTree.h"

#include "logcore/NodeText.h"
#include "views/DetailTree.h"

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

std::string ProcessTitle(const CCarvelotDoc& session, const CProcess& process) {
    return session.m_strLogPath + " - Process: " + IdText(process.m_nProcessID);
}

std::string ThreadTitle(const CCarvelotDoc& session, const CThread& thread) {
    return session.m_strLogPath + " - Process: " + IdText(thread.m_nProcessID) +
           " Thread: " + IdText(thread.m_nThreadID);
}

std::string UserTitle(const CCarvelotDoc& session, const CJASUser& user) {
    return session.m_strLogPath + " - User: " + user.m_strUser;
}

std::string ProcessCaption(const CProcess& process) { return " Process: " + IdText(process.m_nProcessID); }

std::string ThreadCaption(const CThread& thread) {
    return " Process: " + IdText(thread.m_nProcessID) + " Thread: " + IdText(thread.m_nThreadID);
}

std::string UserCaption(const CJASUser& user) { return " User: " + user.m_strUser; }

} // namespace carvelot
