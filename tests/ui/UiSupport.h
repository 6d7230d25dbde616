// What the window's tests share: an interface that answers in the user's place, a start of the program with a
// settings store of its own, and documents that need no log.
#pragma once

#include "support/MachineState.h"
#include "ui/app/CarvelotApp.h"
#include "ui/app/MainFrame.h"
#include "ui/kit/Document.h"
#include "ui/kit/PersonalMenu.h"
#include "ui/kit/TabbedClientArea.h"
#include "ui/kit/Text.h"
#include "ui/kit/UserInterface.h"

#include <QAction>
#include <QDialog>
#include <QDragEnterEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>
#include <QVBoxLayout>

#include <functional>

namespace carvelot::test {

class CFakeInterface final : public CUserInterface {
public:
    CFakeInterface() { SetUserInterface(this); }
    ~CFakeInterface() override { SetUserInterface(nullptr); }

    void ShowMessage(const QString& text) override {
        m_listMessages << text;
        m_listWindowShown << (MainFrame() != nullptr && MainFrame()->isVisible());
    }
    std::optional<QString> AskOpenFile(const CFileQuestion& question) override {
        m_listQuestions.push_back(question);
        return m_strOpenAnswer;
    }
    QStringList AskOpenFiles(const CFileQuestion& question) override {
        m_listQuestions.push_back(question);
        return m_listOpenAnswers;
    }
    std::optional<int> AskChoice(const QString& text, const QStringList& answers) override {
        m_listMessages << text;
        m_listChoices = answers;
        return m_nChoiceAnswer;
    }
    std::optional<QString> AskSaveFile(const CFileQuestion& question) override {
        m_listQuestions.push_back(question);
        if (m_fnInQuestion) {
            m_fnInQuestion();
        }
        return m_strSaveAnswer;
    }
    std::optional<QString> AskText(const QString&, const QString&, const QString&) override {
        return m_strTextAnswer;
    }
    std::optional<QFont> AskFont(const QFont& initial) override {
        m_askedFont = initial;
        return m_fontAnswer;
    }
    // Shows the dialog, lets the test work in it, and returns its result.
    int RunDialog(QDialog& dialog) override {
        ++m_nDialogs;
        dialog.show();
        if (m_fnInDialog) {
            m_fnInDialog(dialog);
        }
        return dialog.result();
    }
    QAction* RunMenu(QMenu& menu, const QPoint&) override {
        m_listMenuTexts.clear();
        for (QAction* action : menu.actions()) {
            m_listMenuTexts << action->text();
            if (action->text() == m_strMenuChoice && action->isEnabled()) {
                action->trigger();
                return action;
            }
        }
        return nullptr;
    }

    QStringList m_listMessages;
    QList<bool> m_listWindowShown; // was the main window on the screen at each message
    std::vector<CFileQuestion> m_listQuestions;
    std::optional<QString> m_strOpenAnswer;
    QStringList m_listOpenAnswers;
    QStringList m_listChoices; // of the latest question
    std::optional<int> m_nChoiceAnswer;
    std::optional<QString> m_strSaveAnswer;
    std::optional<QString> m_strTextAnswer;
    std::optional<QFont> m_fontAnswer;
    QFont m_askedFont;
    std::function<void(QDialog&)> m_fnInDialog;
    std::function<void()> m_fnInQuestion; // what goes on while it is asked where to save
    QString m_strMenuChoice;
    QStringList m_listMenuTexts;
    int m_nDialogs = 0;
};

// A document that opens any path but those that end in "bad".
class CTestDocument : public CDocument {
public:
    bool OnNewDocument() override {
        SetTitle(QStringLiteral("new"));
        return true;
    }
    bool OnOpenDocument(const QString& path) override {
        SetTitle(path);
        theApp().AddToRecentFileList(path);
        return !path.endsWith(QLatin1String("bad"));
    }
};

class CTestFrame : public CMDIChildWnd {
public:
    explicit CTestFrame(CDocument& document) : CMDIChildWnd(document) {
        auto* layout = new QVBoxLayout(this);
        for (QLineEdit*& edit : m_edits) {
            edit = new QLineEdit;
            layout->addWidget(edit);
        }
    }
    ~CTestFrame() override { ++s_nDestroyed; }
    QList<QWidget*> WindowPanes() const override { return {m_edits[0], m_edits[1]}; }
    void OnSetFocus() override { ++m_nFocused; }
    void OnClose() override { ++s_nClosed; }

    QLineEdit* m_edits[2];
    int m_nFocused = 0;
    static inline int s_nClosed = 0;
    static inline int s_nDestroyed = 0;
};

inline std::unique_ptr<CDocTemplate> TestTemplate(EMenuState state) {
    return std::make_unique<CDocTemplate>(
        state, QIcon(), [] { return std::unique_ptr<CDocument>(new CTestDocument); },
        [](CDocument& document) { return std::unique_ptr<CMDIChildWnd>(new CTestFrame(document)); });
}

// One run of the program. The settings store is that of the folder, so that a second run finds what the first
// left.
class CRun {
public:
    explicit CRun(const QTemporaryDir& folder, std::vector<std::string> arguments = {}) {
        UseSettingsStore(ToUtf8(folder.filePath(QStringLiteral("registry.ini"))));
        theApp().m_fnAddDocTemplates = [](CCarvelotApp& app) {
            app.AddDocTemplate(TestTemplate(EMenuState::Session));
            app.m_pCacheTemplate = &app.AddDocTemplate(TestTemplate(EMenuState::Cache));
        };
        m_bStarted = theApp().InitInstance(arguments);
        if (m_bStarted) {
            (void)QTest::qWaitForWindowExposed(MainFrame());
        }
    }
    ~CRun() { Stop(); }
    void Stop() {
        if (m_bStarted && MainFrame() != nullptr) {
            MainFrame()->close();
        }
        theApp().ExitInstance();
        m_bStarted = false;
    }

    CMainFrame& Frame() const { return *MainFrame(); }
    CTabbedClientArea& Area() const { return MainFrame()->ClientArea(); }
    CTestFrame* Open(const char* path) {
        CDocument* document = theApp().OpenDocumentFile(QString::fromLatin1(path));
        return document != nullptr ? static_cast<CTestFrame*>(document->GetFrame()) : nullptr;
    }
    CTestFrame* OpenCache() {
        return static_cast<CTestFrame*>(theApp().m_pCacheTemplate->OpenDocumentFile({})->GetFrame());
    }
    // The titles of the menus that are there, without mnemonics.
    QStringList Menus() const {
        QStringList titles;
        for (const QAction* action : MainFrame()->menuBar()->actions()) {
            if (action->isVisible()) {
                titles << action->text().remove(QLatin1Char('&'));
            }
        }
        return titles;
    }
    // Opens a menu by its title and gives it; close it again.
    CPersonalMenu* OpenMenu(const char* title) const {
        for (QAction* action : MainFrame()->menuBar()->actions()) {
            if (action->text().remove(QLatin1Char('&')) == QLatin1String(title)) {
                auto* menu = static_cast<CPersonalMenu*>(action->menu());
                menu->popup(MainFrame()->mapToGlobal(QPoint(10, 10)));
                return menu;
            }
        }
        return nullptr;
    }

    bool m_bStarted = false;
};

// What becomes of a log that a file manager, which offers its text as well, drags over each visible part of
// the window: the classes of those that do not take it as a copy.
inline QStringList PartsThatTakeNoCopy(CMainFrame& frame) {
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(QStringLiteral("/a.log"))});
    data.setText(QStringLiteral("file:///a.log"));
    QStringList parts;
    for (QWidget* part : frame.findChildren<QWidget*>()) {
        if (!part->isVisible() || part->isWindow()) {
            continue;
        }
        QDragEnterEvent enter(QPoint(2, 2), Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton,
                              Qt::ShiftModifier);
        enter.setDropAction(Qt::MoveAction);
        QCoreApplication::sendEvent(part, &enter);
        if (!enter.isAccepted() || enter.dropAction() != Qt::CopyAction) {
            parts << QStringLiteral("%1 %2").arg(part->metaObject()->className(), part->objectName());
        }
    }
    return parts;
}

inline QStringList VisibleTexts(const QMenu& menu) {
    QStringList texts;
    for (const QAction* action : menu.actions()) {
        if (action->isVisible()) {
            texts << (action->isSeparator() ? QStringLiteral("-") : action->text());
        }
    }
    return texts;
}

inline QAction* Entry(const QMenu& menu, const char* text) {
    for (QAction* action : menu.actions()) {
        if (action->text() == QLatin1String(text)) {
            return action;
        }
    }
    return nullptr;
}

} // namespace carvelot::test
