#include "settings/Commands.h"

#include <algorithm>
#include <array>

namespace carvelot {

namespace {

constexpr CCommandInfo kCommands[] = {
    {ID_FILE_NEW, "File", "&New", "Create a new document\nNew", "Ctrl+N"},
    {ID_FILE_OPEN, "File", "&Open...", "Open debug log file\nOpen", "Ctrl+O"},
    {ID_FILE_CLOSE, "File", "&Close", "Close the active document\nClose", ""},
    {ID_FILE_SAVE, "File", "&Save", "Save the active document\nSave", "Ctrl+S"},
    {ID_FILE_PRINT, "File", "&Print...", "Print the active document\nPrint", "Ctrl+P"},
    {ID_APP_EXIT, "File", "E&xit", "Quit the application; prompts to save documents\nExit", ""},
    {ID_EDIT_UNDO, "Edit", "&Undo", "Undo the last action\nUndo", "Ctrl+Z", true},
    {ID_EDIT_CUT, "Edit", "Cu&t", "Cut the selection and put it on the Clipboard\nCut", "Ctrl+X", true},
    {ID_EDIT_COPY, "Edit", "&Copy", "Copy the selection and put it on the Clipboard\nCopy", "Ctrl+C", true},
    {ID_EDIT_PASTE, "Edit", "&Paste", "Insert Clipboard contents\nPaste", "Ctrl+V", true},
    {ID_SESSION_ANALYZE, "Session", "Analyze", "Analyze File\nAnalyze", ""},
    {ID_SESSION_CLEAR_DEBUG_FILE, "Session", "Clear Debug File", "Clear Debug File\nClear", ""},
    {ID_SESSION_OPEN_AS_TEXT, "Session", "Open as Text", "Open Current Session in Text Editor\nOpen as Text",
     ""},
    {ID_EXPLORE_OVERVIEW, "Explore", "&Overview", "Tell what the log is and where its time went\nOverview",
     "Ctrl+E"},
    {ID_EXPLORE_TIMELINE, "Explore", "&Timeline", "Show calls and statements over time\nTimeline", ""},
    {ID_EXPLORE_CALL_PROFILE, "Explore", "Call &Profile",
     "Show what each function took, and who called it\nCall Profile", ""},
    {ID_EXPLORE_FLAME_GRAPH, "Explore", "&Flame Graph", "Show the tree of all calls by time\nFlame Graph",
     ""},
    {ID_EXPLORE_STATEMENTS, "Explore", "&SQL Statements",
     "Show statements that differ in their values only\nSQL Statements", ""},
    {ID_EXPLORE_FINDINGS, "Explore", "F&indings", "Show what asks for a look\nFindings", ""},
    {ID_EXPLORE_ABOUT_LOG, "Explore", "About This &Log",
     "Tell how the log was read, and read it with a dialect\nAbout This Log", ""},
    {ID_EXPLORE_NEXT_FINDING, "Explore", "&Next Finding", "Go to the next record of a finding\nNext Finding",
     "F4"},
    {ID_EXPLORE_PREVIOUS_FINDING, "Explore", "Pre&vious Finding",
     "Go back to the previous record of a finding\nPrevious Finding", "Shift+F4"},
    {ID_EXPLORE_COMPARE, "Explore", "&Compare With...", "Compare with another log\nCompare", ""},
    {ID_EXPLORE_EXPORT_PROFILE, "Explore", "&Export Profile...",
     "Write the profile as a file for another tool\nExport Profile", ""},
    {ID_EXPLORE_SAVE_PICTURE, "Explore", "S&ave Picture...", "Save what is shown as a picture\nSave Picture",
     ""},
    {ID_EXPLORE_OPEN_PIECES, "Explore", "Open Lo&g in Pieces...",
     "Open several files as one log, in the order of their times\nOpen Log in Pieces", ""},
    {ID_EXPLORE_FOLLOW, "Explore", "Follo&w", "Read on while the log grows\nFollow", ""},
    {ID_CACHE_DEFINE_STRUCTURE, "Cache", "Define Structure",
     "Define Cache Columns and Structure\nDefine Cache", ""},
    {ID_CACHE_REFRESH_DATA, "Cache", "Refresh Data", "Refresh Cache Data\nRefresh", ""},
    {ID_TOOLS_GLOBAL_TABLES, "Tools", "Global Tables", "Manage Global Tables\nGlobal tables", ""},
    {ID_TOOLS_CONVERT_DATES, "Tools", "Convert Dates",
     "Convert Julian and Gregorian Dates\nDate Conversion Tool", ""},
    {ID_TOOLS_JDE_SETTINGS, "Tools", "JDE Settings", "JDE Client Workstation settings\nJDE Config Settings",
     ""},
    {ID_TOOLS_OPTIONS, "Tools", "Options", "Carvelot Options\nOptions", ""},
    {ID_VIEW_TOOLBAR, "View", "&Toolbar", "Show or hide the toolbar\nToggle ToolBar", ""},
    {ID_VIEW_STATUS_BAR, "View", "&Status Bar", "Show or hide the status bar\nToggle Status Bar", ""},
    {ID_VIEW_CUSTOMIZE, "View", "Customize...", "", ""},
    {ID_VIEW_RESTORE_LAYOUT, "View", "&Restore Default Layout",
     "Put all panes and toolbars back where they first stood\nRestore Default Layout", ""},
    {ID_APPLOOK_WINDOWS_2000, "Application Look", "Windows &2000", "", ""},
    {ID_APPLOOK_OFFICE_XP, "Application Look", "Office &XP", "", ""},
    {ID_APPLOOK_WINDOWS_XP, "Application Look", "&Windows XP", "", ""},
    {ID_APPLOOK_OFFICE_2003, "Application Look", "Office 200&3", "", ""},
    {ID_APPLOOK_VS_2005, "Application Look", "Visual Studio 200&5", "", ""},
    {ID_APPLOOK_VS_2008, "Application Look", "Visual Studio 200&8", "", ""},
    {ID_APPLOOK_OFFICE_2007_BLUE, "Application Look", "&Blue Style", "", ""},
    {ID_APPLOOK_OFFICE_2007_BLACK, "Application Look", "B&lack Style", "", ""},
    {ID_APPLOOK_OFFICE_2007_SILVER, "Application Look", "&Silver Style", "", ""},
    {ID_APPLOOK_OFFICE_2007_AQUA, "Application Look", "&Aqua Style", "", ""},
    {ID_APPLOOK_WINDOWS_7, "Application Look", "Win&dows 7", "", ""},
    {ID_WINDOW_NEW_HORIZONTAL_GROUP, "Window", "New Horizontal Tab Group", "", ""},
    {ID_WINDOW_NEW_VERTICAL_GROUP, "Window", "New Vertical Tab Group", "", ""},
    {ID_WINDOW_CLOSE_ALL, "Window", "Close All", "", ""},
    {ID_WINDOW_WINDOWS, "Window", "Windows ...", "", ""},
    {ID_WINDOW_NEXT_PANE, "Window", "Ne&xt Pane", "Switch to the next window pane\nNext Pane", "F6"},
    {ID_WINDOW_PREV_PANE, "Window", "&Previous Pane",
     "Switch back to the previous window pane\nPrevious Pane", "Shift+F6"},
    {ID_APP_ABOUT, "Help", "&About Carvelot...", "", ""},
};

constexpr int kStandardToolBar[] = {ID_FILE_OPEN,
                                    ID_SESSION_ANALYZE,
                                    ID_SESSION_CLEAR_DEBUG_FILE,
                                    ID_SESSION_OPEN_AS_TEXT,
                                    ID_SEPARATOR,
                                    ID_TOOLS_GLOBAL_TABLES,
                                    ID_TOOLS_CONVERT_DATES,
                                    ID_TOOLS_OPTIONS,
                                    ID_TOOLS_JDE_SETTINGS,
                                    ID_SEPARATOR,
                                    ID_APP_ABOUT};
constexpr int kCacheToolBar[] = {ID_CACHE_DEFINE_STRUCTURE, ID_CACHE_REFRESH_DATA};

constexpr int kBasicCommands[] = {ID_FILE_NEW,
                                  ID_FILE_OPEN,
                                  ID_FILE_SAVE,
                                  ID_FILE_PRINT,
                                  ID_APP_EXIT,
                                  ID_EDIT_CUT,
                                  ID_EDIT_PASTE,
                                  ID_EDIT_UNDO,
                                  ID_APP_ABOUT,
                                  ID_VIEW_STATUS_BAR,
                                  ID_VIEW_TOOLBAR,
                                  ID_APPLOOK_OFFICE_2003,
                                  ID_APPLOOK_VS_2005,
                                  ID_APPLOOK_OFFICE_2007_BLUE,
                                  ID_APPLOOK_OFFICE_2007_SILVER,
                                  ID_APPLOOK_OFFICE_2007_BLACK,
                                  ID_APPLOOK_OFFICE_2007_AQUA,
                                  ID_APPLOOK_WINDOWS_7};

constexpr EMenu kNoWindowMenus[] = {EMenu::File, EMenu::Tools, EMenu::View, EMenu::Help};
constexpr EMenu kSessionMenus[] = {EMenu::File, EMenu::Session, EMenu::Explore, EMenu::Tools,
                                   EMenu::View, EMenu::Window,  EMenu::Help};
constexpr EMenu kCacheMenus[] = {EMenu::File, EMenu::Cache,  EMenu::Tools,
                                 EMenu::View, EMenu::Window, EMenu::Help};

} // namespace

std::span<const CCommandInfo> AllCommands() { return kCommands; }

const CCommandInfo* FindCommand(int id) {
    const auto it = std::ranges::find(kCommands, id, &CCommandInfo::m_nId);
    return it != std::end(kCommands) ? &*it : nullptr;
}

std::string_view StatusTip(const CCommandInfo& command) {
    return command.m_strTip.substr(0, command.m_strTip.find('\n'));
}

std::string_view ToolTip(const CCommandInfo& command) {
    const std::size_t lineEnd = command.m_strTip.find('\n');
    return lineEnd == std::string_view::npos ? std::string_view() : command.m_strTip.substr(lineEnd + 1);
}

std::span<const EMenu> MenusOf(EMenuState state) {
    switch (state) {
    case EMenuState::Session:
        return kSessionMenus;
    case EMenuState::Cache:
        return kCacheMenus;
    case EMenuState::NoWindow:
        break;
    }
    return kNoWindowMenus;
}

std::string_view MenuText(EMenu menu) {
    switch (menu) {
    case EMenu::File:
        return "&File";
    case EMenu::Session:
        return "&Session";
    case EMenu::Explore:
        return "&Explore";
    case EMenu::Cache:
        return "&Cache";
    case EMenu::Tools:
        return "&Tools";
    case EMenu::View:
        return "&View";
    case EMenu::Window:
        return "&Window";
    case EMenu::Help:
        break;
    }
    return "&Help";
}

std::span<const int> StandardToolBar() { return kStandardToolBar; }

std::span<const int> CacheToolBar() { return kCacheToolBar; }

bool IsBasicCommand(int id) { return std::ranges::find(kBasicCommands, id) != std::end(kBasicCommands); }

} // namespace carvelot
