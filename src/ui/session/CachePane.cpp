#include "ui/session/CachePane.h"

#include "settings/Commands.h"
#include "ui/kit/Icons.h"
#include "ui/kit/Text.h"
#include "ui/kit/UserInterface.h"

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>

namespace carvelot {

CCacheTree::CCacheTree(CCacheTreeModel& model, const QString& strAccessibleName, QWidget* pParent)
    : CTreeCtrl(strAccessibleName, pParent), m_model(model) {
    setExpandsOnDoubleClick(false);
    setModel(&model);
}

void CCacheTree::mousePressEvent(QMouseEvent* pEvent) {
    if (pEvent->button() != Qt::RightButton) {
        CTreeCtrl::mousePressEvent(pEvent);
        return;
    }
    pEvent->accept();
    OfferMenu(indexAt(pEvent->position().toPoint()), pEvent->globalPosition().toPoint());
}

void CCacheTree::contextMenuEvent(QContextMenuEvent* pEvent) {
    pEvent->accept();
    // The mouse has had its menu when its button went down.
    if (pEvent->reason() == QContextMenuEvent::Keyboard)
        OfferMenu(SelectedIndex(), MenuPoint(SelectedIndex()));
}

void CCacheTree::OfferMenu(const QModelIndex& index, const QPoint& screen) {
    const CCacheAnalysis::CCache* const pCache = m_model.Cache(index);
    if (pCache == nullptr)
        return;
    SelectIndex(index);
    if (!m_fnIsLive || !m_fnIsLive(*pCache))
        return;
    QMenu menu;
    QAction* const pBrowse = menu.addAction(CommandIcon(ID_CACHE_BROWSE_DATA), QStringLiteral("Browse Data"));
    pBrowse->setData(ID_CACHE_BROWSE_DATA);
    if (UserInterface().RunMenu(menu, screen) == pBrowse)
        OnBrowseData();
}

void CCacheTree::OnBrowseData() {
    const CCacheAnalysis::CCache* const pCache = m_model.Cache(SelectedIndex());
    if (pCache != nullptr && m_fnBrowse)
        m_fnBrowse(*pCache);
}

void CCacheTree::mouseDoubleClickEvent(QMouseEvent* pEvent) {
    CTreeCtrl::mouseDoubleClickEvent(pEvent);
    if (pEvent->button() == Qt::LeftButton && indexAt(pEvent->position().toPoint()).isValid())
        OpenSelected();
}

void CCacheTree::keyPressEvent(QKeyEvent* pEvent) {
    if (pEvent->key() == Qt::Key_Return || pEvent->key() == Qt::Key_Enter) {
        OpenSelected();
        pEvent->accept();
        return;
    }
    CTreeCtrl::keyPressEvent(pEvent);
}

void CCacheTree::OpenSelected() {
    const auto* pOperation = m_model.Operation(SelectedIndex());
    if (pOperation != nullptr && pOperation->m_pRecord != kNoRecord && m_fnOpenRecord)
        m_fnOpenRecord(pOperation->m_pRecord);
}

CCachePane::CCachePane() : CDockablePane(tr("Cache Details"), QStringLiteral("CachePane"), {100, 100}) {
    AddCaption();
    if (!LoadImageStrip("cacheicons", m_listImages))
        UserInterface().ShowMessage(QStringLiteral("Failed to load cacheicons bmp"));
    m_pModel = std::make_unique<CCacheTreeModel>(m_listImages);
    m_pTree = new CCacheTree(*m_pModel, windowTitle(), Client());
    m_pTree->m_fnOpenRecord = [this](RecordIndex record) {
        const CSessionReference session = m_session; // the way to the record can refill this tree
        session.ShowDetail(record);
    };
}

CCachePane::~CCachePane() {
    m_pTree->setModel(nullptr); // the model goes before the tree
}

void CCachePane::FillTree(CSessionDocument& document, const CCacheAnalysis& analysis) {
    m_session = CSessionReference(document);
    m_pTree->setUpdatesEnabled(false);
    m_pModel->Show(document.Session(), analysis);
    m_pTree->setUpdatesEnabled(true);
}

void CCachePane::ClearTree() {
    m_session = {};
    m_pTree->setUpdatesEnabled(false);
    m_pModel->Clear();
    m_pTree->setUpdatesEnabled(true);
}

void CCachePane::LetGo(const CCarvelotDoc& session) {
    if (m_pModel->Session() == &session)
        ClearTree();
}

void CCachePane::OnSize(int nWidth, int nHeight) {
    const int top = LayOutCaption(nWidth);
    m_pTree->setGeometry(0, top, nWidth, std::max(0, nHeight - top));
}

} // namespace carvelot
