// UserInterface.h - the one way by which the program stops and asks the user something.
#pragma once

#include <QFont>
#include <QPoint>
#include <QString>
#include <QStringList>

#include <optional>

class QAction;
class QDialog;
class QMenu;

namespace carvelot {

// What is asked for: each begins in the folder of its last answer, also after a restart.
enum class EFiles { Logs, Exports, Definitions };

// A question for a file's name. The filter is "Text|mask|Text|mask||"; the first one decides the default
// extension.
struct CFileQuestion {
    EFiles m_nFiles = EFiles::Logs;
    QString m_strTitle;
    QString m_strDefaultExtension; // without the dot
    QString m_strInitialName;
    QString m_strFilter;
};

inline constexpr char kNewLogFilter[] = "Debug Log Files (*.log)|*.log|All Files (*.*)|*.*||";
inline constexpr char kLogFilter[] =
    "Logs (*.log *.txt *.gz *.zst *.zip)|*.log;*.txt;*.gz;*.zst;*.zip|All files (*.*)|*.*||";

// Every message box, file dialog, modal dialog and pop-up menu goes through here, so that a test can answer
// it.
class CUserInterface {
public:
    virtual ~CUserInterface() = default;
    // A box with the text and an OK button.
    virtual void ShowMessage(const QString& text) = 0;
    // The chosen path, or nothing when the user cancels. Open insists on an existing file, Save asks before
    // it overwrites.
    virtual std::optional<QString> AskOpenFile(const CFileQuestion& question) = 0;
    // The same for one file or more; none when the user cancels.
    virtual QStringList AskOpenFiles(const CFileQuestion& question) = 0;
    virtual std::optional<QString> AskSaveFile(const CFileQuestion& question) = 0;
    // The number of the answer chosen, or nothing when the user cancels. The first one is the usual one.
    virtual std::optional<int> AskChoice(const QString& text, const QStringList& answers) = 0;
    virtual std::optional<QString> AskText(const QString& title, const QString& label,
                                           const QString& text) = 0;
    virtual std::optional<QFont> AskFont(const QFont& initial) = 0;
    // Runs the dialog modally and returns its result.
    virtual int RunDialog(QDialog& dialog) = 0;
    // Shows the menu at a screen position and returns the entry chosen, which has then been triggered, or
    // null.
    virtual QAction* RunMenu(QMenu& menu, const QPoint& point) = 0;
};

CUserInterface& UserInterface();
// Puts another interface in the place of the real one; null brings the real one back.
void SetUserInterface(CUserInterface* userInterface);

// "Text (*.a)|*.a|...||" as the toolkit wants it: "Text (*.a);;...".
QString ToolkitFilter(const QString& filter);

} // namespace carvelot
