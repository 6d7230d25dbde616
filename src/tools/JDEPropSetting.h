// JDEPropSetting.h - the rows of the settings grid, each of which knows where it is written back to.
#pragma once

#include "tools/JDESettings.h"

#include <string>
#include <string_view>
#include <vector>

namespace carvelot {

// A row, or a group of rows. A row's key in its file is its label.
class CJDEPropSetting {
public:
    // A group has rows below it and no value.
    static CJDEPropSetting Group(std::string label);
    CJDEPropSetting(std::string label, std::string value, std::string description, std::string file,
                    std::string section);

    // Values to choose from; without typing nothing else is taken.
    CJDEPropSetting& SetOptions(std::vector<std::string> options, bool allowEdit);

    const std::string& GetValue() const { return m_strValue; }
    // False, with nothing changed, for a value that the row does not take. A row holds one line: a value ends
    // at its first line break or NUL.
    bool SetValue(std::string_view value);
    // Whether the value is another than at the opening, or was written since: a value that was applied and
    // then typed back has to go back into the file too.
    bool IsModified() const { return !m_bGroup && (m_bWritten || m_strValue != m_strOriginal); }
    // Writes the value into the file, whether or not that succeeds.
    void Write();

    std::string m_strLabel;
    std::string m_strDescription;
    std::string m_strFile;
    std::string m_strSection;
    std::vector<std::string> m_listOptions;
    bool m_bAllowEdit = true;
    bool m_bGroup = false;
    std::vector<CJDEPropSetting> m_listChildren;

private:
    std::string m_strValue;
    std::string m_strOriginal;
    bool m_bWritten = false;
};

// The rows of the grid, from what the store holds.
std::vector<CJDEPropSetting> MakeSettingsRows(const CJDESettings& settings);

// Writes the modified rows below the top level, depth first, what is below a row before the row itself. They
// stay modified.
void WriteModifiedRows(std::vector<CJDEPropSetting>& top);

} // namespace carvelot
