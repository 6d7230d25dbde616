// Document.h - documents, their templates and their windows in the main frame.
#pragma once

#include "settings/Commands.h"
#include "ui/kit/CommandTarget.h"

#include <QIcon>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QWidget>

#include <functional>
#include <memory>
#include <vector>

namespace carvelot {

class CDocTemplate;
class CMDIChildWnd;

// What a document window shows. A template owns it from its creation to the closing of its window.
class CDocument : public QObject, public CCommandTarget {
    Q_OBJECT

public:
    CDocument() = default;

    // Fills a new document; false ends its life again without a window.
    virtual bool OnNewDocument() { return true; }
    virtual bool OnOpenDocument(const QString& path) = 0;

    // Closes the document without asking its window: window and document go at the next turn of the event
    // loop.
    void OnCloseDocument();

    const QString& GetTitle() const { return m_strTitle; }
    // The window's caption, its tab and, while it is in front, the main window's title follow.
    void SetTitle(const QString& title);
    // The file that the document was opened from; empty when there is none. Opening that file again activates
    // it.
    const QString& GetPathName() const { return m_strPathName; }
    void SetPathName(const QString& path) { m_strPathName = path; }

    // The path that the title may begin with.
    virtual QString PathInTitle() const { return m_strPathName; }

    CDocTemplate* GetDocTemplate() const { return m_pTemplate; }
    CMDIChildWnd* GetFrame() const { return m_pFrame; }
    // The further windows that show, in the order in which they came.
    const std::vector<CMDIChildWnd*>& FurtherWindows() const { return m_listFurther; }

signals:
    void TitleChanged(const QString& title);

private:
    friend class CDocTemplate;
    friend class CMDIChildWnd;
    QString m_strTitle;
    QString m_strPathName;
    CDocTemplate* m_pTemplate = nullptr;
    CMDIChildWnd* m_pFrame = nullptr;
    std::vector<CMDIChildWnd*> m_listFurther;
};

// A window of one document, a tab of the main frame. With the document's own window the document closes; a
// further window goes alone, and with the document at the latest.
class CMDIChildWnd : public QWidget, public CCommandTarget {
    Q_OBJECT

public:
    enum class EWindow { Own, Further };
    explicit CMDIChildWnd(CDocument& document, EWindow window = EWindow::Own);
    ~CMDIChildWnd() override;

    CDocument* GetActiveDocument() const { return m_pDocument; }
    // The parts that F6 walks through, from left to right.
    virtual QList<QWidget*> WindowPanes() const { return {}; }
    // Runs each time when the window comes to the front or is clicked there.
    virtual void OnSetFocus() {}
    // Runs when the user closes this window, before the document goes. Close All does not run it.
    virtual void OnClose() {}

    // What the tip of its tab says below the title; empty for nothing.
    void SetTipNote(const QString& note);
    QString TabTip() const;

    // Closes the window as a user does.
    void CloseWindow();
    void FocusLastPane();

signals:
    void TabTipChanged();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    friend class CDocTemplate;
    friend class CTabbedClientArea;
    // It leaves the screen now and memory later.
    void LeaveScreen();

    CDocument* m_pDocument;
    QString m_strTipNote;
    QPointer<QWidget> m_pLastFocus;
};

// Makes documents of one kind and their windows, and owns the documents.
class CDocTemplate {
public:
    using FDocument = std::function<std::unique_ptr<CDocument>()>;
    using FFrame = std::function<std::unique_ptr<CMDIChildWnd>(CDocument&)>;

    CDocTemplate(EMenuState menuState, QIcon icon, FDocument document, FFrame frame);
    ~CDocTemplate();

    // A document without a window yet.
    CDocument* CreateNewDocument();
    // Its window, which is not shown before InitialUpdateFrame; null when it cannot be made.
    CMDIChildWnd* CreateNewFrame(CDocument& document);
    void InitialUpdateFrame(CMDIChildWnd& frame);
    // Ends a document and its window, shown or not.
    void CloseDocument(CDocument& document);
    // Opens the path, or without one runs a new document's own way. Null when that fails: nothing is left
    // then.
    CDocument* OpenDocumentFile(const QString& path);
    // The same in a way of the caller's, which is false where it fails. The document has no path of its own.
    CDocument* OpenDocument(const std::function<bool(CDocument&)>& open);
    CDocument* FindDocument(const QString& path) const;
    std::vector<CDocument*> Documents() const;

    EMenuState MenuState() const { return m_nMenuState; }
    const QIcon& Icon() const { return m_icon; }

private:
    EMenuState m_nMenuState;
    QIcon m_icon;
    FDocument m_fnDocument;
    FFrame m_fnFrame;
    std::vector<std::unique_ptr<CDocument>> m_listDocuments;
};

} // namespace carvelot
