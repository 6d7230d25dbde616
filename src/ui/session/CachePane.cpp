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

CCacheTree::CCacheTree(CCacheTreeModel& model, const QString& accessibleName, QWidget* parent)
    : CTreeCtrl(accessibleName, parent), m_model(model) {
    setExpandsOnDoubleClick(false);
    setModel(&model);
}

void CCacheTree::ShowGrowth() {
    ChangeInPlace([this] { m_model.ShowGrowth(); });
}

void CCacheTree::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::RightButton) {
        CTreeCtrl::mousePressEvent(event);
        return;
    }
    event->accept();
    OfferMenu(indexAt(event->position().toPoint()), event->globalPosition().toPoint());
}

void CCacheTree::contextMenuEvent(QContextMenuEvent* event) {
    event->accept();
    // The mouse has had its menu when its button went down.
    if (event->reason() == QContextMenuEvent::Keyboard) {
        OfferMenu(SelectedIndex(), MenuPoint(SelectedIndex()));
    }
}

void CCacheTree::OfferMenu(const QModelIndex& index, const QPoint& screen) {
    const CCacheAnalysis::CCache* const cache = m_model.Cache(index);
    if (cache == nullptr) {
        return;
    }
    SelectIndex(index);
    if (!m_fnIsLive || !m_fnIsLive(*cache)) {
        return;
    }
    QMenu menu;
    QAction* const browse = menu.addAction(CommandIcon(ID_CACHE_BROWSE_DATA), QStringLiteral("Browse Data"));
    browse->setData(ID_CACHE_BROWSE_DATA);
    if (UserInterface().RunMenu(menu, screen) == browse) {
        OnBrowseData();
    }
}

void CCacheTree::OnBrowseData() {
    const CCacheAnalysis::CCache* const cache = m_model.Cache(SelectedIndex());
    if (cache != nullptr && m_fnBrowse) {
        m_fnBrowse(*cache);
    }
}

void CCacheTree::mouseDoubleClickEvent(QMouseEvent* event) {
    CTreeCtrl::mouseDoubleClickEvent(event);
    if (event->button() == Qt::LeftButton && indexAt(event->position().toPoint()).isValid()) {
        OpenSelected();
    }
}

void CCacheTree::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        OpenSelected();
        event->accept();
        return;
    }
    CTreeCtrl::keyPressEvent(event);
}

void CCacheTree::OpenSelected() {
    const auto* operation = m_model.Operation(SelectedIndex());
    if (operation != nullptr && operation->m_pRecord != kNoRecord && m_fnOpenRecord) {
        m_fnOpenRecord(operation->m_pRecord);
    }
}

CCachePane::CCachePane() : CDockablePane(tr("Cache Details"), QStringLiteral("CachePane"), {100, 100}) {
    AddCaption();
    if (!LoadImageStrip("cacheicons", m_listImages)) {
        UserInterface().ShowMessage(QStringLiteral("Failed to load cacheicons bmp"));
    }
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

void CCachePane::ShowGrowth(const CCarvelotDoc& session) {
    if (m_pModel->Session() == &session) {
        m_pTree->ShowGrowth();
    }
}

void CCachePane::LetGo(const CCarvelotDoc& session) {
    if (m_pModel->Session() == &session) {
        ClearTree();
    }
}

void CCachePane::OnSize(int width, int height) {
    const int top = LayOutCaption(width);
    m_pTree->setGeometry(0, top, width, std::max(0, height - top));
}

} // namespace carvelot
