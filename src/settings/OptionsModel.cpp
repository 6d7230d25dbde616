#include "settings/OptionsModel.h"

#include "records/NodeText.h"
#include "text/Integers.h"
#include "text/TypedNumber.h"

namespace carvelot {

COptionsModel::COptionsModel(const CAppSettings& settings) {
    for (const tagTraceApp& app : settings.m_traceApps) {
        m_listRows.insert(m_listRows.begin(), {app.m_strName, app.m_bEnabled ? "On" : "Off", false});
    }
    m_bAutoRefresh = settings.m_bAutoRefresh;
    m_bRateEnabled = settings.m_bAutoRefresh;
    m_strRate = std::to_string(settings.m_nRefreshRate);
    m_strFontName = settings.m_strFontName;
    m_strFontHeight = std::to_string(settings.m_nFontHeight);
    m_strThreshold = SecondsText(settings.m_fThreshold);
}

void COptionsModel::Add(std::string_view application) {
    if (!application.empty()) {
        m_listRows.insert(m_listRows.begin(), {std::string(application), "On", false});
    }
}

std::optional<std::size_t> COptionsModel::NextSelected(std::size_t from) const {
    for (std::size_t n = from; n < m_listRows.size(); ++n) {
        if (m_listRows[n].m_bSelected) {
            return n;
        }
    }
    return std::nullopt;
}

void COptionsModel::Remove() {
    std::optional<std::size_t> row = NextSelected(0);
    while (row) {
        const std::optional<std::size_t> next = NextSelected(*row + 1);
        if (*row < m_listRows.size()) {
            m_listRows.erase(m_listRows.begin() + static_cast<std::ptrdiff_t>(*row));
        }
        row = next;
    }
}

void COptionsModel::ToggleStatus() {
    for (CRow& row : m_listRows) {
        if (row.m_bSelected) {
            row.m_strStatus = row.m_strStatus == "On" ? "Off" : "On";
        }
    }
}

void COptionsModel::Commit(CAppSettings& settings) const {
    settings.ClearTraceApps();
    for (const CRow& row : m_listRows) {
        settings.m_traceApps.push_back({row.m_strApplication, row.m_strStatus == "On"});
    }
    settings.m_bAutoRefresh = m_bAutoRefresh;
    settings.m_nRefreshRate = ReadInteger(m_strRate);
    settings.m_fThreshold = static_cast<float>(TextToDouble(m_strThreshold));
    settings.SaveOptions();
    settings.m_strFontName = m_strFontName;
    settings.m_nFontHeight = ReadInteger(m_strFontHeight);
}

} // namespace carvelot
