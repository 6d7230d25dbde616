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

CMDIChildWnd* Child(QWidget* widget) { return qobject_cast<CMDIChildWnd*>(widget); }

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

CMDIChildWnd* CTabBar::ChildAt(int tab) const {
    return Child(static_cast<CTabGroup*>(parentWidget())->widget(tab));
}

QString CTabBar::ShortText(int tab, const QFontMetrics& metrics, int width) const {
    const CMDIChildWnd* child = ChildAt(tab);
    const CDocument* document = child != nullptr ? child->GetActiveDocument() : nullptr;
    if (document == nullptr) {
        return {};
    }
    const QString title = child->windowTitle();
    const QString path = document->PathInTitle();
    if (path.isEmpty() || !title.startsWith(path)) {
        return metrics.elidedText(title, Qt::ElideMiddle, width);
    }
    const QString text = metrics.elidedText(title, Qt::ElideLeft, width);
    const qsizetype name = path.size() - QFileInfo(path).fileName().size();
    return text.size() > title.size() - name ? text : u'\u2026' + title.mid(name);
}

QSize CTabBar::tabSizeHint(int index) const {
    QSize size = QTabBar::tabSizeHint(index);
    if (size.width() <= kMaximumTab) {
        return size;
    }
    QFont font = this->font();
    font.setBold(CurrentLook().m_bBoldActiveTab);
    const QFontMetrics metrics(font);
    const int cut = metrics.horizontalAdvance(ShortText(index, metrics, QWIDGETSIZE_MAX)) -
                    metrics.horizontalAdvance(ShortText(index, metrics, 0));
    size.setWidth(std::max(kMaximumTab, size.width() - cut));
    return size;
}

QSize CTabBar::minimumTabSizeHint(int index) const { return tabSizeHint(index); }

void CTabBar::mousePressEvent(QMouseEvent* event) {
    const int tab = tabAt(event->position().toPoint());
    if (event->button() == Qt::MiddleButton && tab >= 0) {
        if (CMDIChildWnd* child = ChildAt(tab)) {
            child->CloseWindow();
        }
        return;
    }
    m_pDragged = event->button() == Qt::LeftButton && tab >= 0 ? ChildAt(tab) : nullptr;
    m_bOutside = false;
    QTabBar::mousePressEvent(event);
    if (CMDIChildWnd* child = Child(m_pDragged)) {
        m_area.Activate(*child);
    }
}

void CTabBar::mouseMoveEvent(QMouseEvent* event) {
    if (m_pDragged == nullptr || !(event->buttons() & Qt::LeftButton)) {
        QTabBar::mouseMoveEvent(event);
        return;
    }
    if (!IsNearBar(*this, event->position().toPoint())) {
        m_bOutside = true;
        m_area.ShowDropMark(event->globalPosition().toPoint());
        return;
    }
    if (m_bOutside) {
        m_bOutside = false;
        m_area.HideDropMark();
    }
    QTabBar::mouseMoveEvent(event);
}

void CTabBar::mouseReleaseEvent(QMouseEvent* event) {
    const QPointer<QWidget> dragged = m_pDragged;
    const bool outside = m_bOutside;
    m_pDragged = nullptr;
    m_bOutside = false;
    QTabBar::mouseReleaseEvent(event);
    m_area.HideDropMark();
    CTabbedClientArea& area = m_area; // this bar may go with its last tab
    if (CMDIChildWnd* child = Child(dragged); child != nullptr && outside) {
        area.DropTab(*child, event->globalPosition().toPoint());
    }
}

void CTabBar::contextMenuEvent(QContextMenuEvent* event) {
    const int tab = tabAt(event->pos());
    CMDIChildWnd* child = ChildAt(tab);
    if (child == nullptr) {
        return;
    }
    m_area.Activate(*child);
    QMenu menu;
    QAction* close = menu.addAction(ToQString(FindCommand(ID_FILE_CLOSE)->m_strText));
    connect(close, &QAction::triggered, child, [child] { child->CloseWindow(); });
    menu.addSeparator();
    m_area.FillGroupMenu(menu);
    UserInterface().RunMenu(menu, event->globalPos());
}

CTabGroup::CTabGroup(CTabbedClientArea& area) {
    setTabBar(new CTabBar(area));
    setDocumentMode(false);
    setTabPosition(QTabWidget::North);
    connect(this, &QTabWidget::tabCloseRequested, &area, [this](int tab) {
        if (CMDIChildWnd* child = Child(widget(tab))) {
            child->CloseWindow();
        }
    });
    connect(this, &QTabWidget::currentChanged, &area, [this, &area](int) {
        if (CMDIChildWnd* child = Child(currentWidget()); child != nullptr && !area.m_bChanging) {
            area.Activate(*child);
        }
    });
}

CTabBar& CTabGroup::Bar() const { return *static_cast<CTabBar*>(tabBar()); }

CTabbedClientArea::CTabbedClientArea() : m_pSplitter(new QSplitter) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_pSplitter);
    m_pSplitter->setChildrenCollapsible(false);
    setMinimumSize(160, 90);
    OnGroupsChanged();
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) { OnFocusChanged(now); });
}

CTabbedClientArea::~CTabbedClientArea() {
    disconnect(qApp, nullptr, this, nullptr);
    m_bChanging = true;
}

CTabGroup* CTabbedClientArea::NewGroup(int index) {
    auto* group = new CTabGroup(*this);
    m_pSplitter->insertWidget(index, group);
    group->show();
    OnGroupsChanged();
    return group;
}

QList<CTabGroup*> CTabbedClientArea::Groups() const {
    QList<CTabGroup*> groups;
    for (int n = 0; n < m_pSplitter->count(); ++n) {
        auto* group = qobject_cast<CTabGroup*>(m_pSplitter->widget(n));
        if (group != nullptr && !group->isHidden()) {
            groups << group;
        }
    }
    return groups;
}

QList<CMDIChildWnd*> CTabbedClientArea::Children() const {
    QList<CMDIChildWnd*> children;
    for (const CTabGroup* group : Groups()) {
        for (int n = 0; n < group->count(); ++n) {
            children << Child(group->widget(n));
        }
    }
    return children;
}

CTabGroup* CTabbedClientArea::GroupOf(const CMDIChildWnd& child) const {
    for (CTabGroup* group : Groups()) {
        if (group->indexOf(&const_cast<CMDIChildWnd&>(child)) >= 0) {
            return group;
        }
    }
    return nullptr;
}

void CTabbedClientArea::AddChild(CMDIChildWnd& child, const QIcon& icon) {
    CTabGroup* group = m_pActive != nullptr ? GroupOf(*m_pActive) : nullptr;
    if (group == nullptr) {
        group = Groups().isEmpty() ? NewGroup(0) : Groups().constFirst();
    }
    {
        const QScopedValueRollback changing(m_bChanging, true);
        child.setWindowIcon(icon);
        group->addTab(&child, icon, child.windowTitle());
        RefreshTab(child);
    }
    connect(&child, &QWidget::windowTitleChanged, this, [this, &child] { RefreshTab(child); });
    connect(&child, &CMDIChildWnd::TabTipChanged, this, [this, &child] { RefreshTab(child); });
    Activate(child);
}

void CTabbedClientArea::RemoveChild(CMDIChildWnd& child) {
    CTabGroup* group = GroupOf(child);
    if (group == nullptr) {
        return;
    }
    disconnect(&child, nullptr, this, nullptr);
    {
        const QScopedValueRollback changing(m_bChanging, true);
        group->removeTab(group->indexOf(&child));
        child.hide();
        child.setParent(nullptr);
    }
    const bool wasActive = m_pActive == &child;
    CMDIChildWnd* next = Child(group->currentWidget());
    DropEmptyGroup(group);
    if (!wasActive) {
        return;
    }
    m_pActive = nullptr;
    if (next == nullptr && !Groups().isEmpty()) {
        next = Child(Groups().constFirst()->currentWidget());
    }
    if (next != nullptr) {
        Activate(*next);
    } else {
        emit ActiveChildChanged();
    }
}

void CTabbedClientArea::DropEmptyGroup(CTabGroup* group) {
    if (group->count() != 0) {
        return;
    }
    // The call may come from the group's own tab bar.
    group->hide();
    group->setParent(nullptr);
    group->deleteLater();
    OnGroupsChanged();
}

// Without a window the area says how one is opened, to screen readers too.
void CTabbedClientArea::OnGroupsChanged() {
    const bool empty = Groups().isEmpty();
    m_pSplitter->setVisible(!empty);
    setAccessibleName(empty ? Hint() : QString());
    update();
}

void CTabbedClientArea::Activate(CMDIChildWnd& child) {
    CTabGroup* group = GroupOf(child);
    if (group == nullptr) {
        return;
    }
    {
        const QScopedValueRollback changing(m_bChanging, true);
        group->setCurrentWidget(&child);
    }
    if (!child.isAncestorOf(QApplication::focusWidget())) {
        const QScopedValueRollback changing(m_bChanging, true); // activated once, below
        child.FocusLastPane();
    }
    SetActive(&child, true);
}

void CTabbedClientArea::SetActive(CMDIChildWnd* child, bool again) {
    if (child == m_pActive && !again) {
        return;
    }
    const bool changed = child != m_pActive;
    m_pActive = child;
    for (CTabGroup* group : Groups()) {
        // Of several groups only the active one shows its tab in bold.
        group->Bar().setProperty("calm", child != nullptr && group->indexOf(child) < 0);
        group->Bar().update();
    }
    if (changed) {
        emit ActiveChildChanged();
    }
    if (child != nullptr) {
        child->OnSetFocus();
    }
}

void CTabbedClientArea::OnFocusChanged(QWidget* now) {
    if (m_bChanging || now == nullptr || !isAncestorOf(now)) {
        return;
    }
    for (QWidget* widget = now; widget != nullptr; widget = widget->parentWidget()) {
        if (CMDIChildWnd* child = Child(widget)) {
            if (now != child) {
                child->m_pLastFocus = now;
            }
            SetActive(child, false);
            return;
        }
    }
}

void CTabbedClientArea::RefreshTab(CMDIChildWnd& child) {
    CTabGroup* group = GroupOf(child);
    if (group == nullptr) {
        return;
    }
    const int tab = group->indexOf(&child);
    group->setTabText(tab, PlainCaption(child.windowTitle()));
    group->setTabToolTip(tab, child.TabTip());
    if (&child == m_pActive) {
        emit ActiveChildChanged();
    }
}

void CTabbedClientArea::ActivateNext(bool forward) {
    const QList<CMDIChildWnd*> children = Children();
    if (children.size() < 2 || m_pActive == nullptr) {
        return;
    }
    const qsizetype now = children.indexOf(m_pActive);
    Activate(*children[(now + (forward ? 1 : children.size() - 1)) % children.size()]);
}

bool CTabbedClientArea::CanMakeGroup(Qt::Orientation direction) const {
    const CTabGroup* group = m_pActive != nullptr ? GroupOf(*m_pActive) : nullptr;
    if (group == nullptr || group->count() < 2) {
        return false;
    }
    // A horizontal group lies below its neighbour: the splitter between them runs the other way.
    return Groups().size() < 2 || m_pSplitter->orientation() != direction;
}

void CTabbedClientArea::MakeGroup(Qt::Orientation direction) {
    if (!CanMakeGroup(direction)) {
        return;
    }
    CMDIChildWnd& child = *m_pActive;
    m_pSplitter->setOrientation(direction == Qt::Horizontal ? Qt::Vertical : Qt::Horizontal);
    CTabGroup* group = NewGroup(m_pSplitter->indexOf(GroupOf(child)) + 1);
    MoveToGroup(child, *group, 0);
    const int extent =
        m_pSplitter->orientation() == Qt::Horizontal ? m_pSplitter->width() : m_pSplitter->height();
    m_pSplitter->setSizes(QList<int>(m_pSplitter->count(), extent / m_pSplitter->count()));
}

void CTabbedClientArea::MoveToGroup(CMDIChildWnd& child, CTabGroup& group, int index) {
    CTabGroup* from = GroupOf(child);
    if (from == nullptr || from == &group) {
        return;
    }
    {
        const QScopedValueRollback changing(m_bChanging, true);
        from->removeTab(from->indexOf(&child));
        group.insertTab(index < 0 ? group.count() : index, &child, child.windowIcon(), child.windowTitle());
        RefreshTab(child);
        DropEmptyGroup(from);
    }
    Activate(child);
}

CTabGroup* CTabbedClientArea::GroupAt(const QPoint& screen) const {
    for (CTabGroup* group : Groups()) {
        if (group->rect().contains(group->mapFromGlobal(screen))) {
            return group;
        }
    }
    return nullptr;
}

void CTabbedClientArea::ShowDropMark(const QPoint& screen) {
    CTabGroup* group = GroupAt(screen);
    if (group == nullptr) {
        HideDropMark();
        return;
    }
    if (m_pDropMark == nullptr) {
        m_pDropMark = new QRubberBand(QRubberBand::Rectangle, this);
    }
    m_pDropMark->setGeometry(QRect(group->mapTo(this, QPoint(0, 0)), group->size()));
    m_pDropMark->show();
    m_pDropMark->raise();
}

void CTabbedClientArea::HideDropMark() {
    if (m_pDropMark != nullptr) {
        m_pDropMark->hide();
    }
}

void CTabbedClientArea::DropTab(CMDIChildWnd& child, const QPoint& screen) {
    CTabGroup* target = GroupAt(screen);
    if (target == nullptr) {
        return;
    }
    if (target != GroupOf(child)) {
        const CTabBar& bar = target->Bar();
        const QPoint point = bar.mapFromGlobal(screen);
        MoveToGroup(child, *target, bar.rect().contains(point) ? bar.tabAt(point) : -1);
        return;
    }
    if (target->count() < 2) {
        return;
    }
    QMenu menu;
    FillGroupMenu(menu);
    UserInterface().RunMenu(menu, screen);
}

void CTabbedClientArea::FillGroupMenu(QMenu& menu) {
    for (const Qt::Orientation direction : {Qt::Horizontal, Qt::Vertical}) {
        const int id =
            direction == Qt::Horizontal ? ID_WINDOW_NEW_HORIZONTAL_GROUP : ID_WINDOW_NEW_VERTICAL_GROUP;
        QAction* action = menu.addAction(ToQString(FindCommand(id)->m_strText));
        action->setEnabled(CanMakeGroup(direction));
        connect(action, &QAction::triggered, this, [this, direction] { MakeGroup(direction); });
    }
}

void CTabbedClientArea::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    CurrentLook().FillWorkspace(painter, rect());
    if (!Groups().isEmpty()) {
        return;
    }
    painter.setPen(CurrentLook().m_workspaceText);
    painter.drawText(rect().adjusted(16, 16, -16, -16), Qt::AlignCenter | Qt::TextWordWrap, Hint());
}

} // namespace carvelot
