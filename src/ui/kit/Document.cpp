#include "ui/kit/Document.h"

#include "ui/kit/MainWindow.h"
#include "ui/kit/PathText.h"
#include "ui/kit/TabbedClientArea.h"

#include <QCloseEvent>

#include <algorithm>

namespace carvelot {

void CDocument::OnCloseDocument() {
    if (m_pTemplate != nullptr) {
        m_pTemplate->CloseDocument(*this);
    }
}

void CDocument::SetTitle(const QString& title) {
    m_strTitle = title;
    if (m_pFrame != nullptr) {
        m_pFrame->setWindowTitle(title);
    }
    emit TitleChanged(title);
}

CMDIChildWnd::CMDIChildWnd(CDocument& document, EWindow window) : m_pDocument(&document) {
    if (window == EWindow::Further) {
        document.m_listFurther.push_back(this);
    } else {
        document.m_pFrame = this;
    }
    setWindowTitle(document.GetTitle());
}

CMDIChildWnd::~CMDIChildWnd() {
    if (m_pDocument == nullptr) {
        return;
    }
    std::erase(m_pDocument->m_listFurther, this);
    if (m_pDocument->m_pFrame == this) {
        m_pDocument->m_pFrame = nullptr;
    }
}

void CMDIChildWnd::SetTipNote(const QString& note) {
    m_strTipNote = note;
    emit TabTipChanged();
}

QString CMDIChildWnd::TabTip() const {
    return m_strTipNote.isEmpty() ? windowTitle() : windowTitle() + QLatin1Char('\n') + m_strTipNote;
}

void CMDIChildWnd::CloseWindow() {
    if (m_pDocument == nullptr) {
        return;
    }
    OnClose();
    if (m_pDocument->m_pFrame == this) {
        m_pDocument->OnCloseDocument();
    } else {
        LeaveScreen();
    }
}

void CMDIChildWnd::LeaveScreen() {
    std::erase(m_pDocument->m_listFurther, this);
    if (CMainWindow* const main = MainWindow()) {
        main->ClientArea().RemoveChild(*this);
    }
    deleteLater();
}

void CMDIChildWnd::FocusLastPane() {
    const QList<QWidget*> panes = WindowPanes();
    if (m_pLastFocus != nullptr && isAncestorOf(m_pLastFocus)) {
        m_pLastFocus->setFocus(Qt::OtherFocusReason);
    } else if (!panes.isEmpty()) {
        panes.constFirst()->setFocus(Qt::OtherFocusReason);
    } else {
        setFocus(Qt::OtherFocusReason);
    }
}

void CMDIChildWnd::closeEvent(QCloseEvent* event) {
    event->ignore(); // the document takes its window along
    CloseWindow();
}

CDocTemplate::CDocTemplate(EMenuState menuState, QIcon icon, FDocument document, FFrame frame)
    : m_nMenuState(menuState), m_icon(std::move(icon)), m_fnDocument(std::move(document)),
      m_fnFrame(std::move(frame)) {}

CDocTemplate::~CDocTemplate() {
    for (const auto& open : m_listDocuments) {
        while (!open->m_listFurther.empty()) {
            delete open->m_listFurther.back();
        }
        delete open->m_pFrame;
    }
}

CDocument* CDocTemplate::CreateNewDocument() {
    std::unique_ptr<CDocument> open = m_fnDocument();
    if (open == nullptr) {
        return nullptr;
    }
    open->m_pTemplate = this;
    m_listDocuments.push_back(std::move(open));
    return m_listDocuments.back().get();
}

CMDIChildWnd* CDocTemplate::CreateNewFrame(CDocument& document) { return m_fnFrame(document).release(); }

void CDocTemplate::InitialUpdateFrame(CMDIChildWnd& frame) {
    if (CMainWindow* const main = MainWindow()) {
        main->ClientArea().AddChild(frame, m_icon);
    }
}

void CDocTemplate::CloseDocument(CDocument& document) {
    const auto it = std::ranges::find(m_listDocuments, &document, &std::unique_ptr<CDocument>::get);
    if (it == m_listDocuments.end()) {
        return;
    }
    std::unique_ptr<CDocument> open = std::move(*it);
    m_listDocuments.erase(it);
    open->m_pTemplate = nullptr;
    // The call may come from inside the window that goes: it leaves the screen now and memory later, always
    // before the document that its views look at.
    while (!open->m_listFurther.empty()) {
        open->m_listFurther.back()->LeaveScreen();
    }
    if (CMDIChildWnd* const frame = open->m_pFrame) {
        frame->LeaveScreen();
    }
    open.release()->deleteLater();
}

CDocument* CDocTemplate::OpenDocumentFile(const QString& path) {
    return OpenDocument([&path](CDocument& document) {
        if (path.isEmpty()) {
            return document.OnNewDocument();
        }
        const bool opened = document.OnOpenDocument(path);
        document.SetPathName(path);
        return opened;
    });
}

CDocument* CDocTemplate::OpenDocument(const std::function<bool(CDocument&)>& open) {
    CDocument* const document = CreateNewDocument();
    if (document == nullptr) {
        return nullptr;
    }
    CMDIChildWnd* const frame = CreateNewFrame(*document);
    if (frame == nullptr || !open(*document)) {
        CloseDocument(*document);
        return nullptr;
    }
    InitialUpdateFrame(*frame);
    return document;
}

CDocument* CDocTemplate::FindDocument(const QString& path) const {
    for (const auto& open : m_listDocuments) {
        if (IsSameFile(path, open->GetPathName())) {
            return open.get();
        }
    }
    return nullptr;
}

std::vector<CDocument*> CDocTemplate::Documents() const {
    std::vector<CDocument*> documents;
    for (const auto& open : m_listDocuments) {
        documents.push_back(open.get());
    }
    return documents;
}

} // namespace carvelot
