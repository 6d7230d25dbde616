// StoredLayout.h - what the window keeps of its arrangement from run to run, as texts: read into values that
// are checked, and written. Nothing here needs a window. Whatever stands in a text, reading it gives values
// that can be applied, and what makes no sense is left out.
#pragma once

#include "settings/AppSettings.h"

#include <QByteArray>
#include <QString>

#include <limits>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace carvelot {

// Layouts of another version are not applied.
inline constexpr int kLayoutVersion = 1;

// A block of the toolkit's, as "version:check sum:content". What was not sealed so gives an empty block.
std::string Seal(const QByteArray& block);
QByteArray Unseal(std::string_view stored);

// Command numbers, 0 standing for a separator: "32788,0,57601". What is no number counts as 0.
inline constexpr std::size_t kMostToolBarCommands = 200;
std::vector<int> ReadCommands(std::string_view stored,
                              std::size_t most = std::numeric_limits<std::size_t>::max());
template <class TNumbers> std::string WriteCommands(const TNumbers& commands) {
    std::string stored;
    for (const int command : commands) {
        stored.append(stored.empty() ? "" : ",").append(std::to_string(command));
    }
    return stored;
}

// The commands of a toolbar that the user changed: as above, "none" where there are none left, and nothing
// for one that is as the program made it.
std::optional<std::vector<int>> ReadChangedCommands(std::string_view stored);
std::string WriteChangedCommands(const std::optional<std::vector<int>>& commands);

// The workspace's text of that name as read makes it. What read leaves out, and write so does not give back,
// is not lost: the text is set aside, and what there is of it takes its place.
template <class TRead, class TWrite>
auto ReadWorkspace(const std::string& name, const TRead& read, const TWrite& write) {
    const std::string stored = GetWorkspaceString(name, "");
    auto value = read(stored);
    if (const std::string rest = write(value); rest != stored) {
        SetAsideWorkspaceValue(name, rest);
    }
    return value;
}

// A toolbar that the user made: "title|32788,0,57601". A title may hold bars; without one there is no
// toolbar.
struct StoredToolBar {
    QString m_strTitle;
    std::vector<int> m_listCommands;
};
std::optional<StoredToolBar> ReadToolBar(std::string_view stored);
std::string WriteToolBar(const StoredToolBar& toolBar);

// Which of the user's images each command has: "57600=1,57601=0". The last word on a command counts.
std::map<int, int> ReadUserImages(std::string_view stored);
std::string WriteUserImages(const std::map<int, int>& images);

// Panes that are folded away together: "bottom:240:FindPane,RawDataPane;left:...".
struct StoredFold {
    static constexpr int kLeast = 80; // pixels
    static constexpr int kMost = 10000;

    Qt::DockWidgetArea m_nEdge = Qt::BottomDockWidgetArea;
    int m_nThickness = 0;             // from kLeast to kMost
    std::vector<QString> m_listPanes; // at least one; each stands in one fold only
};
std::vector<StoredFold> ReadFolds(std::string_view stored);
std::string WriteFolds(const std::vector<StoredFold>& folds);

// "left", "right", "top", "bottom".
const char* EdgeName(Qt::DockWidgetArea edge);

} // namespace carvelot
