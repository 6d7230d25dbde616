#include "explore/BaseLog.h"

#include "text/TextColumns.h"

#include <algorithm>
#include <new>
#include <stdexcept>
#include <utility>

namespace carvelot {

CBaseLog::CBaseLog(std::string path, const AnalysisSettings& settings, CDialects dialects)
    : m_settings(settings), m_session(m_settings, m_pending, *this) {
    m_session.m_strLogPath = std::move(path);
    m_session.m_dialects = dialects;
}

bool CBaseLog::Load() {
    try {
        if (!m_session.LoadLog()) {
            return false;
        }
        m_nLoaded.store(100, std::memory_order_relaxed);
        m_exploring.Check();
        m_explored.emplace(m_session, m_settings, &m_exploring);
        m_findings = FindAll(*m_explored, &m_exploring);
        return true;
    } catch (const ExploringEnded&) {
    } catch (const std::bad_alloc&) {
        m_strFailure = "There is not enough memory for this log.";
    } catch (const std::length_error&) {
        m_strFailure = "This log is too large: it holds more than a session can.";
    }
    m_findings.clear();
    m_explored.reset();
    m_session.ClearSession();
    return false;
}

void CBaseLog::End() { m_exploring.End(); }

int CBaseLog::Percent() const {
    return (m_nLoaded.load(std::memory_order_relaxed) + m_exploring.Percent()) / 2;
}

void CBaseLog::ShowMessage(std::string_view text) { m_strFailure = text; }

void CBaseLog::PrintOutput(std::string_view text) { m_strFailure = TrimRight(text, "\n"); }

std::vector<std::size_t> CBaseLog::ChooseMembers(const CCarvelotDoc&, const std::vector<PackedMember>&) {
    m_strFailure = "The archive holds several members.";
    return {};
}

void CBaseLog::LoadProgress(std::uint64_t done, std::uint64_t total) {
    m_exploring.Check();
    if (total != 0) {
        m_nLoaded.store(static_cast<int>(std::min(done, total) * 100 / total), std::memory_order_relaxed);
    }
}

} // namespace carvelot
