#include "ui/kit/TabbedClientArea.h"

#include "settings/Commands.h"
#include "ui/kit/Document.h"
#include "ui/kit/LookStyle.h"
#include "ui/kit/PlainText.h"
#include "ui/kit/Text.h"
#include "ui/kit/UserInterface.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QFileInfo>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QRubberBand>
#include <QScopedValueRollback>
#include <QSplitter>
#include <QVBoxLayout>

#include <algorithm>

namespace carvelot {

namespace {

constexpr int kDragMargin = 14;  // how far a tab leaves its bar before it is dragged out
constexpr int kMaximumTab = 320; // a longer title is shortened

QString Hint() { return CTabbedClientArea::tr("Open a debug log with Ctrl+O, or drop one here."); }

CMDIChildWnd* Child(QWidget* pWidget) { return qobject_cast<CMDIChildWnd*>(pWidget); }

} // namespace

bool IsNearBar(const QTabBar& bar, const QPoint& point) {
    return bar.rect().adjusted(-kDragMargin, -kDragMargin, kDragMargin, kDragMargin).contains(point);
}

CTabBar::CTabBar(CTabbedClientArea& area) : m_area(area) {
    setMovable(true);
    setTabsClosable(true);
    setElideMode(Qt::ElideNone); // the look asks for a text that fits
    setUsesScrollButtons(true);
    setDocumentMode(false);
    setExpanding(false);
    setAccessibleName(tr("Open windows"));
}

CMDIChildWnd* CTabBar::ChildAt(int nTab) const {
    return Child(static_cast<CTabGroup*>(parentWidget())->widget(nTab));
}

QString CTabBar::ShortText(int nTab, const QFontMetrics& metrics, int nWidth) const {
    const CMDIChildWnd* pChild = ChildAt(nTab);
    const CDocument* pDocument = pChild != nullptr ? pChild->GetActiveDocument() : nullptr;
    if (pDocument == nullptr)
        return {};
    const QString& strTitle = pDocument->GetTitle();
    const QString strPath = pDocument->PathInTitle();
    if (strPath.isEmpty() || !strTitle.startsWith(strPath))
        return metrics.elidedText(strTitle, Qt::ElideMiddle, nWidth);
    const QString strText = metrics.elidedText(strTitle, Qt::ElideLeft, nWidth);
    const qsizetype nName = strPath.size() - QFileInfo(strPath).fileName().size();
    return strText.size() > strTitle.size() - nName ? strText : u'\u2026' + strTitle.mid(nName);
}

QSize CTabBar::tabSizeHint(int nIndex) const {
    QSize size = QTabBar::tabSizeHint(nIndex);
    if (size.width() <= kMaximumTab)
        return size;
    QFont font = this->font();
    font.setBold(CurrentLook().m_bBoldActiveTab);
    const QFontMetrics metrics(font);
    const int nCut = metrics.horizontalAdvance(ShortText(nIndex, metrics, QWIDGETSIZE_MAX)) -
                     metrics.horizontalAdvance(ShortText(nIndex, metrics, 0));
    size.setWidth(std::max(kMaximumTab, size.width() - nCut));
    return size;
}

QSize CTabBar::minimumTabSizeHint(int nIndex) const { return tabSizeHint(nIndex); }

void CTabBar::mousePressEvent(QMouseEvent* pEvent) {
    const int nTab = tabAt(pEvent->position().toPoint());
    if (pEvent->button() == Qt::MiddleButton && nTab >= 0) {
        if (CMDIChildWnd* pChild = ChildAt(nTab))
            pChild->CloseWindow();
        return;
    }
    m_pDragged = pEvent->button() == Qt::LeftButton && nTab >= 0 ? ChildAt(nTab) : nullptr;
    m_bOutside = false;
    QTabBar::mousePressEvent(pEvent);
    if (CMDIChildWnd* pChild = Child(m_pDragged))
        m_area.Activate(*pChild);
}

void CTabBar::mouseMoveEvent(QMouseEvent* pEvent) {
    if (m_pDragged == nullptr || !(pEvent->buttons() & Qt::LeftButton)) {
        QTabBar::mouseMoveEvent(pEvent);
        return;
    }
    if (!IsNearBar(*this, pEvent->position().toPoint())) {
        m_bOutside = true;
        m_area.ShowDropMark(pEvent->globalPosition().toPoint());
        return;
    }
    if (m_bOutside) {
        m_bOutside = false;
        m_area.HideDropMark();
    }
    QTabBar::mouseMoveEvent(pEvent);
}

void CTabBar::mouseReleaseEvent(QMouseEvent* pEvent) {
    const QPointer<QWidget> pDragged = m_pDragged;
    const bool bOutside = m_bOutside;
    m_pDragged = nullptr;
    m_bOutside = false;
    QTabBar::mouseReleaseEvent(pEvent);
    m_area.HideDropMark();
    CTabbedClientArea& area = m_area; // this bar may go with its last tab
    if (CMDIChildWnd* pChild = Child(pDragged); pChild != nullptr && bOutside)
        area.DropTab(*pChild, pEvent->globalPosition().toPoint());
}

void CTabBar::contextMenuEvent(QContextMenuEvent* pEvent) {
    const int nTab = tabAt(pEvent->pos());
    CMDIChildWnd* pChild = ChildAt(nTab);
    if (pChild == nullptr)
        return;
    m_area.Activate(*pChild);
    QMenu menu;
    QAction* pClose = menu.addAction(ToQString(FindCommand(ID_FILE_CLOSE)->m_strText));
    connect(pClose, &QAction::triggered, pChild, [pChild] { pChild->CloseWindow(); });
    menu.addSeparator();
    m_area.FillGroupMenu(menu);
    UserInterface().RunMenu(menu, pEvent->globalPos());
}

CTabGroup::CTabGroup(CTabbedClientArea& area) {
    setTabBar(new CTabBar(area));
    setDocumentMode(false);
    setTabPosition(QTabWidget::North);
    connect(this, &QTabWidget::tabCloseRequested, &area, [this](int nTab) {
        if (CMDIChildWnd* pChild = Child(widget(nTab)))
            pChild->CloseWindow();
    });
    connect(this, &QTabWidget::currentChanged, &area, [this, &area](int) {
        if (CMDIChildWnd* pChild = Child(currentWidget()); pChild != nullptr && !area.m_bChanging)
            area.Activate(*pChild);
    });
}

CTabBar& CTabGroup::Bar() const { return *static_cast<CTabBar*>(tabBar()); }

CTabbedClientArea::CTabbedClientArea() : m_pSplitter(new QSplitter) {
    auto* pLayout = new QVBoxLayout(this);
    pLayout->setContentsMargins(0, 0, 0, 0);
    pLayout->addWidget(m_pSplitter);
    m_pSplitter->setChildrenCollapsible(false);
    setMinimumSize(160, 90);
    OnGroupsChanged();
    connect(qApp, &QApplication::focusChanged, this,
            [this](QWidget*, QWidget* pNow) { OnFocusChanged(pNow); });
}

CTabbedClientArea::~CTabbedClientArea() {
    disconnect(qApp, nullptr, this, nullptr);
    m_bChanging = true;
}

CTabGroup* CTabbedClientArea::NewGroup(int nIndex) {
    auto* pGroup = new CTabGroup(*this);
    m_pSplitter->insertWidget(nIndex, pGroup);
    pGroup->show();
    OnGroupsChanged();
    return pGroup;
}

QList<CTabGroup*> CTabbedClientArea::Groups() const {
    QList<CTabGroup*> listGroups;
    for (int n = 0; n < m_pSplitter->count(); ++n) {
        auto* pGroup = qobject_cast<CTabGroup*>(m_pSplitter->widget(n));
        if (pGroup != nullptr && !pGroup->isHidden())
            listGroups << pGroup;
    }
    return listGroups;
}

QList<CMDIChildWnd*> CTabbedClientArea::Children() const {
    QList<CMDIChildWnd*> listChildren;
    for (const CTabGroup* pGroup : Groups()) {
        for (int n = 0; n < pGroup->count(); ++n)
            listChildren << Child(pGroup->widget(n));
    }
    return listChildren;
}

CTabGroup* CTabbedClientArea::GroupOf(const CMDIChildWnd& child) const {
    for (CTabGroup* pGroup : Groups()) {
        if (pGroup->indexOf(&const_cast<CMDIChildWnd&>(child)) >= 0)
            return pGroup;
    }
    return nullptr;
}

void CTabbedClientArea::AddChild(CMDIChildWnd& child, const QIcon& icon) {
    CTabGroup* pGroup = m_pActive != nullptr ? GroupOf(*m_pActive) : nullptr;
    if (pGroup == nullptr)
        pGroup = Groups().isEmpty() ? NewGroup(0) : Groups().constFirst();
    {
        const QScopedValueRollback changing(m_bChanging, true);
        child.setWindowIcon(icon);
        pGroup->addTab(&child, icon, child.windowTitle());
        RefreshTab(child);
    }
    connect(&child, &QWidget::windowTitleChanged, this, [this, &child] { RefreshTab(child); });
    Activate(child);
}

void CTabbedClientArea::RemoveChild(CMDIChildWnd& child) {
    CTabGroup* pGroup = GroupOf(child);
    if (pGroup == nullptr)
        return;
    disconnect(&child, nullptr, this, nullptr);
    {
        const QScopedValueRollback changing(m_bChanging, true);
        pGroup->removeTab(pGroup->indexOf(&child));
        child.hide();
        child.setParent(nullptr);
    }
    const bool bWasActive = m_pActive == &child;
    CMDIChildWnd* pNext = Child(pGroup->currentWidget());
    DropEmptyGroup(pGroup);
    if (!bWasActive)
        return;
    m_pActive = nullptr;
    if (pNext == nullptr && !Groups().isEmpty())
        pNext = Child(Groups().constFirst()->currentWidget());
    if (pNext != nullptr)
        Activate(*pNext);
    else
        emit ActiveChildChanged();
}

void CTabbedClientArea::DropEmptyGroup(CTabGroup* pGroup) {
    if (pGroup->count() != 0)
        return;
    // The call may come from the group's own tab bar.
    pGroup->hide();
    pGroup->setParent(nullptr);
    pGroup->deleteLater();
    OnGroupsChanged();
}

// Without a window the area says how one is opened, to screen readers too.
void CTabbedClientArea::OnGroupsChanged() {
    const bool bEmpty = Groups().isEmpty();
    m_pSplitter->setVisible(!bEmpty);
    setAccessibleName(bEmpty ? Hint() : QString());
    update();
}

void CTabbedClientArea::Activate(CMDIChildWnd& child) {
    CTabGroup* pGroup = GroupOf(child);
    if (pGroup == nullptr)
        return;
    {
        const QScopedValueRollback changing(m_bChanging, true);
        pGroup->setCurrentWidget(&child);
    }
    if (!child.isAncestorOf(QApplication::focusWidget())) {
        const QScopedValueRollback changing(m_bChanging, true); // activated once, below
        child.FocusLastPane();
    }
    SetActive(&child, true);
}

void CTabbedClientArea::SetActive(CMDIChildWnd* pChild, bool bAgain) {
    if (pChild == m_pActive && !bAgain)
        return;
    const bool bChanged = pChild != m_pActive;
    m_pActive = pChild;
    for (CTabGroup* pGroup : Groups()) {
        // Of several groups only the active one shows its tab in bold.
        pGroup->Bar().setProperty("calm", pChild != nullptr && pGroup->indexOf(pChild) < 0);
        pGroup->Bar().update();
    }
    if (bChanged)
        emit ActiveChildChanged();
    if (pChild != nullptr)
        pChild->OnSetFocus();
}

void CTabbedClientArea::OnFocusChanged(QWidget* pNow) {
    if (m_bChanging || pNow == nullptr || !isAncestorOf(pNow))
        return;
    for (QWidget* pWidget = pNow; pWidget != nullptr; pWidget = pWidget->parentWidget()) {
        if (CMDIChildWnd* pChild = Child(pWidget)) {
            if (pNow != pChild)
                pChild->m_pLastFocus = pNow;
            SetActive(pChild, false);
            return;
        }
    }
}

void CTabbedClientArea::RefreshTab(CMDIChildWnd& child) {
    CTabGroup* pGroup = GroupOf(child);
    if (pGroup == nullptr)
        return;
    const int nTab = pGroup->indexOf(&child);
    pGroup->setTabText(nTab, PlainCaption(child.windowTitle()));
    pGroup->setTabToolTip(nTab, child.windowTitle());
    if (&child == m_pActive)
        emit ActiveChildChanged();
}

void CTabbedClientArea::ActivateNext(bool bForward) {
    const QList<CMDIChildWnd*> listChildren = Children();
    if (listChildren.size() < 2 || m_pActive == nullptr)
        return;
    const qsizetype nNow = listChildren.indexOf(m_pActive);
    Activate(*listChildren[(nNow + (bForward ? 1 : listChildren.size() - 1)) % listChildren.size()]);
}

bool CTabbedClientArea::CanMakeGroup(Qt::Orientation nDirection) const {
    const CTabGroup* pGroup = m_pActive != nullptr ? GroupOf(*m_pActive) : nullptr;
    if (pGroup == nullptr || pGroup->count() < 2)
        return false;
    // A horizontal group lies below its neighbour: the splitter between them runs the other way.
    return Groups().size() < 2 || m_pSplitter->orientation() != nDirection;
}

void CTabbedClientArea::MakeGroup(Qt::Orientation nDirection) {
    if (!CanMakeGroup(nDirection))
        return;
    CMDIChildWnd& child = *m_pActive;
    m_pSplitter->setOrientation(nDirection == Qt::Horizontal ? Qt::Vertical : Qt::Horizontal);
    CTabGroup* pGroup = NewGroup(m_pSplitter->indexOf(GroupOf(child)) + 1);
    MoveToGroup(child, *pGroup, 0);
    const int nExtent =
        m_pSplitter->orientation() == Qt::Horizontal ? m_pSplitter->width() : m_pSplitter->height();
    m_pSplitter->setSizes(QList<int>(m_pSplitter->count(), nExtent / m_pSplitter->count()));
}

void CTabbedClientArea::MoveToGroup(CMDIChildWnd& child, CTabGroup& group, int nIndex) {
    CTabGroup* pFrom = GroupOf(child);
    if (pFrom == nullptr || pFrom == &group)
        return;
    {
        const QScopedValueRollback changing(m_bChanging, true);
        pFrom->removeTab(pFrom->indexOf(&child));
        group.insertTab(nIndex < 0 ? group.count() : nIndex, &child, child.windowIcon(), child.windowTitle());
        RefreshTab(child);
        DropEmptyGroup(pFrom);
    }
    Activate(child);
}

CTabGroup* CTabbedClientArea::GroupAt(const QPoint& screen) const {
    for (CTabGroup* pGroup : Groups()) {
        if (pGroup->rect().contains(pGroup->mapFromGlobal(screen)))
            return pGroup;
    }
    return nullptr;
}

void CTabbedClientArea::ShowDropMark(const QPoint& screen) {
    CTabGroup* pGroup = GroupAt(screen);
    if (pGroup == nullptr) {
        HideDropMark();
        return;
    }
    if (m_pDropMark == nullptr)
        m_pDropMark = new QRubberBand(QRubberBand::Rectangle, this);
    m_pDropMark->setGeometry(QRect(pGroup->mapTo(this, QPoint(0, 0)), pGroup->size()));
    m_pDropMark->show();
    m_pDropMark->raise();
}

void CTabbedClientArea::HideDropMark() {
    if (m_pDropMark != nullptr)
        m_pDropMark->hide();
}

void CTabbedClientArea::DropTab(CMDIChildWnd& child, const QPoint& screen) {
    CTabGroup* pTarget = GroupAt(screen);
    if (pTarget == nullptr)
        return;
    if (pTarget != GroupOf(child)) {
        const CTabBar& bar = pTarget->Bar();
        const QPoint point = bar.mapFromGlobal(screen);
        MoveToGroup(child, *pTarget, bar.rect().contains(point) ? bar.tabAt(point) : -1);
        return;
    }
    if (pTarget->count() < 2)
        return;
    QMenu menu;
    FillGroupMenu(menu);
    UserInterface().RunMenu(menu, screen);
}

void CTabbedClientArea::FillGroupMenu(QMenu& menu) {
    for (const Qt::Orientation nDirection : {Qt::Horizontal, Qt::Vertical}) {
        const int nId =
            nDirection == Qt::Horizontal ? ID_WINDOW_NEW_HORIZONTAL_GROUP : ID_WINDOW_NEW_VERTICAL_GROUP;
        QAction* pAction = menu.addAction(ToQString(FindCommand(nId)->m_strText));
        pAction->setEnabled(CanMakeGroup(nDirection));
        connect(pAction, &QAction::triggered, this, [this, nDirection] { MakeGroup(nDirection); });
    }
}

void CTabbedClientArea::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    CurrentLook().FillWorkspace(painter, rect());
    if (!Groups().isEmpty())
        return;
    painter.setPen(CurrentLook().m_workspaceText);
    painter.drawText(rect().adjusted(16, 16, -16, -16), Qt::AlignCenter | Qt::TextWordWrap, Hint());
}

} // namespace carvelot
