// OptionsModel.h - what the Options dialog holds and does, without its window.
#pragma once

#include "settings/AppSettings.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace carvelot {

// The dialog works on copies; only Commit changes the settings. All texts are as the user typed them.
class COptionsModel {
public:
    struct CRow {
        std::string m_strApplication;
        std::string m_strStatus; // "On" or "Off"
        bool m_bSelected = false;
    };

    // Fills the dialog. Each application goes above the earlier ones, so the list shows the stored order
    // reversed.
    explicit COptionsModel(const CAppSettings& settings);

    // Puts an application on top, switched on. An empty text does nothing.
    void Add(std::string_view application);
    // Removes selected rows, each time with the number of the next selected row taken before the deletion:
    // with several rows selected every row after the first is missed by one, as it has always been.
    void Remove();
    void ToggleStatus();

    // Takes everything over into the settings and stores what is stored: not the font, which lasts for the
    // run.
    void Commit(CAppSettings& settings) const;

    std::vector<CRow> m_listRows;
    bool m_bAutoRefresh = false;
    bool m_bRateEnabled = false; // decided once, when the dialog opens
    std::string m_strRate;
    std::string m_strThreshold;
    std::string m_strFontName;
    std::string m_strFontHeight;

private:
    std::optional<std::size_t> NextSelected(std::size_t from) const;
};

} // namespace carvelot
