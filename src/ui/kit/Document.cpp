#include "ui/kit/Document.h"

#include "ui/kit/MainWindow.h"
#include "ui/kit/PathText.h"
#include "ui/kit/TabbedClientArea.h"

#include <QCloseEvent>

#include <algorithm>

namespace carvelot {

void CDocument::OnCloseDocument() {
    if (m_pTemplate != nullptr)
        m_pTemplate->CloseDocument(*this);
}

void CDocument::SetTitle(const QString& strTitle) {
    m_strTitle = strTitle;
    if (m_pFrame != nullptr)
        m_pFrame->setWindowTitle(strTitle);
    emit TitleChanged(strTitle);
}

CMDIChildWnd::CMDIChildWnd(CDocument& document) : m_pDocument(&document) {
    document.m_pFrame = this;
    setWindowTitle(document.GetTitle());
}

CMDIChildWnd::~CMDIChildWnd() {
    if (m_pDocument != nullptr)
        m_pDocument->m_pFrame = nullptr;
}

void CMDIChildWnd::CloseWindow() {
    if (m_pDocument == nullptr)
        return;
    OnClose();
    m_pDocument->OnCloseDocument();
}

void CMDIChildWnd::FocusLastPane() {
    const QList<QWidget*> listPanes = WindowPanes();
    if (m_pLastFocus != nullptr && isAncestorOf(m_pLastFocus))
        m_pLastFocus->setFocus(Qt::OtherFocusReason);
    else if (!listPanes.isEmpty())
        listPanes.constFirst()->setFocus(Qt::OtherFocusReason);
    else
        setFocus(Qt::OtherFocusReason);
}

void CMDIChildWnd::closeEvent(QCloseEvent* pEvent) {
    pEvent->ignore(); // the document takes its window along
    CloseWindow();
}

CDocTemplate::CDocTemplate(EMenuState nMenuState, QIcon icon, FDocument fnDocument, FFrame fnFrame)
    : m_nMenuState(nMenuState), m_icon(std::move(icon)), m_fnDocument(std::move(fnDocument)),
      m_fnFrame(std::move(fnFrame)) {}

CDocTemplate::~CDocTemplate() {
    for (const auto& pDocument : m_listDocuments)
        delete pDocument->m_pFrame;
}

CDocument* CDocTemplate::CreateNewDocument() {
    std::unique_ptr<CDocument> pDocument = m_fnDocument();
    if (pDocument == nullptr)
        return nullptr;
    pDocument->m_pTemplate = this;
    m_listDocuments.push_back(std::move(pDocument));
    return m_listDocuments.back().get();
}

CMDIChildWnd* CDocTemplate::CreateNewFrame(CDocument& document) { return m_fnFrame(document).release(); }

void CDocTemplate::InitialUpdateFrame(CMDIChildWnd& frame) {
    if (CMainWindow* const pMain = MainWindow())
        pMain->ClientArea().AddChild(frame, m_icon);
}

void CDocTemplate::CloseDocument(CDocument& document) {
    const auto it = std::ranges::find(m_listDocuments, &document, &std::unique_ptr<CDocument>::get);
    if (it == m_listDocuments.end())
        return;
    std::unique_ptr<CDocument> pDocument = std::move(*it);
    m_listDocuments.erase(it);
    pDocument->m_pTemplate = nullptr;
    // The call may come from inside the window that goes: it leaves the screen now and memory later, always
    // before the document that its views look at.
    if (CMDIChildWnd* pFrame = pDocument->m_pFrame) {
        if (CMainWindow* const pMain = MainWindow())
            pMain->ClientArea().RemoveChild(*pFrame);
        pFrame->deleteLater();
    }
    pDocument.release()->deleteLater();
}

CDocument* CDocTemplate::OpenDocumentFile(const QString& strPath) {
    CDocument* pDocument = CreateNewDocument();
    if (pDocument == nullptr)
        return nullptr;
    CMDIChildWnd* pFrame = CreateNewFrame(*pDocument);
    const bool bOpened = pFrame != nullptr && (strPath.isEmpty() ? pDocument->OnNewDocument()
                                                                 : pDocument->OnOpenDocument(strPath));
    if (!bOpened) {
        CloseDocument(*pDocument);
        return nullptr;
    }
    if (!strPath.isEmpty())
        pDocument->SetPathName(strPath);
    InitialUpdateFrame(*pFrame);
    return pDocument;
}

CDocument* CDocTemplate::FindDocument(const QString& strPath) const {
    for (const auto& pDocument : m_listDocuments) {
        if (IsSameFile(strPath, pDocument->GetPathName()))
            return pDocument.get();
    }
    return nullptr;
}

std::vector<CDocument*> CDocTemplate::Documents() const {
    std::vector<CDocument*> listDocuments;
    for (const auto& pDocument : m_listDocuments)
        listDocuments.push_back(pDocument.get());
    return listDocuments;
}

} // namespace carvelot
