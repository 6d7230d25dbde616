// Commands.h - the commands of the window: their numbers, texts, tips and keys, and what menus and toolbars
// hold.
#pragma once

#include <cstddef>
#include <span>
#include <string_view>

namespace carvelot {

// Numbers that other parts or stored toolbars name stay as they are.
enum ECommand : int {
    ID_SEPARATOR = 0,
    ID_VIEW_CUSTOMIZE = 126,
    ID_WINDOW_WINDOWS = 131,
    ID_APPLOOK_FIRST = 205,
    ID_APPLOOK_WINDOWS_2000 = 205,
    ID_APPLOOK_OFFICE_XP = 206,
    ID_APPLOOK_WINDOWS_XP = 207,
    ID_APPLOOK_OFFICE_2003 = 208,
    ID_APPLOOK_VS_2005 = 209,
    ID_APPLOOK_VS_2008 = 210,
    ID_APPLOOK_OFFICE_2007_BLUE = 215,
    ID_APPLOOK_OFFICE_2007_BLACK = 216,
    ID_APPLOOK_OFFICE_2007_SILVER = 217,
    ID_APPLOOK_OFFICE_2007_AQUA = 218,
    ID_APPLOOK_WINDOWS_7 = 219,
    ID_APPLOOK_LAST = 219,
    ID_TOOLBAR_CACHE = 334,
    ID_SESSION_ANALYZE = 32788,
    ID_SESSION_CLEAR_DEBUG_FILE = 32789,
    ID_SESSION_OPEN_AS_TEXT = 32790,
    ID_CACHE_BROWSE_DATA = 32795,
    ID_GAPS_EXPORT = 32796,
    ID_FIND_FIND = 32797,
    ID_CACHE_REFRESH_DATA = 32800,
    ID_CACHE_DEFINE_STRUCTURE = 32801,
    ID_TOOLS_GLOBAL_TABLES = 32803,
    ID_TOOLS_CONVERT_DATES,
    ID_TOOLS_JDE_SETTINGS,
    ID_TOOLS_OPTIONS,
    ID_PROCESS_ANALYZE,
    ID_PROCESS_REFRESH,
    ID_PROCESS_TOGGLE,
    ID_PROCESS_TRUNC,
    ID_PROCESS_CLEAR_CACHE,
    ID_WINDOW_CLOSE_ALL,
    ID_WINDOW_NEW_HORIZONTAL_GROUP,
    ID_WINDOW_NEW_VERTICAL_GROUP,
    ID_VIEW_RESTORE_LAYOUT,
    ID_WINDOW_NEXT_PANE,
    ID_WINDOW_PREV_PANE,
    ID_VIEW_TOOLBAR,
    ID_VIEW_STATUS_BAR,
    ID_EXPLORE_OVERVIEW,
    ID_EXPLORE_TIMELINE,
    ID_EXPLORE_CALL_PROFILE,
    ID_EXPLORE_FLAME_GRAPH,
    ID_EXPLORE_STATEMENTS,
    ID_EXPLORE_FINDINGS,
    ID_EXPLORE_NEXT_FINDING,
    ID_EXPLORE_PREVIOUS_FINDING,
    ID_EXPLORE_COMPARE,
    ID_EXPLORE_EXPORT_PROFILE,
    ID_EXPLORE_SAVE_PICTURE,
    ID_EXPLORE_ABOUT_LOG,
    ID_EXPLORE_OPEN_PIECES,
    ID_EXPLORE_FOLLOW,
    ID_FILE_NEW = 57600,
    ID_FILE_OPEN,
    ID_FILE_CLOSE,
    ID_FILE_SAVE,
    ID_FILE_PRINT = 57607,
    ID_EDIT_COPY = 57634,
    ID_EDIT_CUT,
    ID_EDIT_PASTE = 57637,
    ID_EDIT_UNDO = 57643,
    ID_APP_ABOUT = 57664,
    ID_APP_EXIT = 57665,
    ID_TOOLBAR_STANDARD = 59392,
    ID_TOOLBAR_USER_FIRST = 59432,
    ID_TOOLBAR_USER_LAST = 59441,
};

struct CCommandInfo {
    int m_nId;
    std::string_view m_strCategory; // in the Customize dialog
    std::string_view m_strText;     // menu text with its mnemonic
    std::string_view m_strTip;      // "status line tip\ntooltip", or empty
    std::string_view m_strShortcut; // portable key text, or empty
    // Keys that edit controls answer themselves are shown beside the command and never taken from the
    // control.
    bool m_bShortcutShownOnly = false;
};

// Every command of menus and toolbars, in the order of the Customize dialog.
std::span<const CCommandInfo> AllCommands();
const CCommandInfo* FindCommand(int id);

// The text before and after the line break of a tip.
std::string_view StatusTip(const CCommandInfo& command);
std::string_view ToolTip(const CCommandInfo& command);

// Which menu the window shows: it follows the document window in front.
enum class EMenuState { NoWindow, Session, Cache };

enum class EMenu { File, Session, Explore, Cache, Tools, View, Window, Help };
std::span<const EMenu> MenusOf(EMenuState state);
std::string_view MenuText(EMenu menu);

// Button orders of the two fixed toolbars, 0 standing for a separator.
std::span<const int> StandardToolBar();
std::span<const int> CacheToolBar();

// Whether menus show a command before they are expanded.
bool IsBasicCommand(int id);

} // namespace carvelot
