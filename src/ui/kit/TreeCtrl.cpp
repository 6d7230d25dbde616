#include "ui/kit/TreeCtrl.h"

#include "ui/kit/Icons.h"
#include "ui/kit/Text.h"

#include <QHeaderView>
#include <QHelpEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QStyleOption>
#include <QToolTip>

#include <algorithm>

namespace carvelot {

namespace {

constexpr qsizetype kMaximumText = 260;
constexpr qsizetype kLongestTip = 1000;

bool IsLineBreak(QChar c) {
    return c == u'\n' || c == u'\r' || c == QChar::LineSeparator || c == QChar::ParagraphSeparator;
}

QString Head(std::string_view strText, qsizetype nMost) {
    // A character takes at most three bytes for each of its units: what lies behind them need not be decoded.
    std::string_view strHead = strText.substr(0, static_cast<std::size_t>(nMost) * 3 + 3);
    while (strHead.size() < strText.size() && !strHead.empty() &&
           (static_cast<unsigned char>(strText[strHead.size()]) & 0xC0U) == 0x80U)
        strHead.remove_suffix(1);
    return ToQString(strHead).left(nMost);
}

} // namespace

QString NodeDisplayText(std::string_view strText) {
    QString strShown = Head(strText, kMaximumText);
    std::replace_if(strShown.begin(), strShown.end(), IsLineBreak, QChar(u' '));
    return strShown;
}

QString NodeTipText(std::string_view strText) { return Head(strText, kLongestTip); }

CTreeCtrl::CTreeCtrl(const QString& strAccessibleName, QWidget* pParent) : QTreeView(pParent) {
    setAccessibleName(strAccessibleName);
    setHeaderHidden(true);
    setUniformRowHeights(true);
    setIconSize(kStripImageSize);
    setEditTriggers(NoEditTriggers);
    setSelectionMode(SingleSelection);
    setHorizontalScrollMode(ScrollPerPixel);
    setTextElideMode(Qt::ElideNone);
    setFrameShape(QFrame::StyledPanel);
    setDragDropMode(NoDragDrop);
    header()->setStretchLastSection(false);
    header()->setMinimumSectionSize(1);
    header()->setResizeContentsPrecision(0); // a column's width is asked of what is on the screen only
    connect(this, &QTreeView::expanded, this, &CTreeCtrl::FitColumnLater);
    connect(this, &QTreeView::collapsed, this, [this](const QModelIndex& index) {
        // What is selected stays on the screen.
        for (QModelIndex above = SelectedIndex().parent(); above.isValid(); above = above.parent()) {
            if (above == index) {
                SelectIndex(index);
                return;
            }
        }
    });
}

void CTreeCtrl::setModel(QAbstractItemModel* pModel) {
    QTreeView::setModel(pModel);
    if (pModel != nullptr)
        connect(pModel, &QAbstractItemModel::modelReset, this, &CTreeCtrl::StartColumn);
    connect(selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] {
        if (SelectedIndex().isValid())
            OnSelectionChanged();
    });
}

QModelIndex CTreeCtrl::SelectedIndex() const {
    const QModelIndexList listSelected = selectionModel()->selectedIndexes();
    return listSelected.isEmpty() ? QModelIndex() : listSelected.constFirst();
}

void CTreeCtrl::SelectIndex(const QModelIndex& index) {
    selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect);
    scrollTo(index);
}

void CTreeCtrl::scrollTo(const QModelIndex& index, ScrollHint nHint) {
    QScrollBar* pBar = horizontalScrollBar();
    const int nBefore = pBar->value();
    QTreeView::scrollTo(index, nHint);
    FitColumn();
    // A column wider than the view would jump back to its left edge at each step: it moves only when the
    // start of the node is not on the screen.
    const QRect node = visualRect(index);
    if (!node.isValid())
        return;
    const int nLeft = node.left() + pBar->value();
    const int nWidth = viewport()->width();
    const bool bSeen = nLeft >= nBefore && nLeft <= nBefore + nWidth * 2 / 3;
    pBar->setValue(bSeen ? nBefore : std::max(0, nLeft - nWidth / 4));
}

bool CTreeCtrl::viewportEvent(QEvent* pEvent) {
    if (pEvent->type() != QEvent::ToolTip)
        return QTreeView::viewportEvent(pEvent);
    const auto& help = static_cast<const QHelpEvent&>(*pEvent);
    const QModelIndex index = indexAt(help.pos());
    QToolTip::showText(help.globalPos(), IsCut(index) ? index.data(Qt::ToolTipRole).toString() : QString(),
                       viewport(), visualRect(index));
    return true;
}

bool CTreeCtrl::IsCut(const QModelIndex& index) const {
    if (!index.isValid())
        return false;
    const int nLeft = visualRect(index).left();
    return nLeft < 0 || nLeft + sizeHintForIndex(index).width() > viewport()->width() ||
           index.data(Qt::ToolTipRole).toString().size() > index.data().toString().size();
}

QItemSelectionModel::SelectionFlags CTreeCtrl::selectionCommand(const QModelIndex& index,
                                                                const QEvent* pEvent) const {
    // A node is selected when the button goes down, and by nothing that follows.
    if (pEvent != nullptr &&
        (pEvent->type() == QEvent::MouseButtonRelease || pEvent->type() == QEvent::MouseMove))
        return QItemSelectionModel::NoUpdate;
    const QItemSelectionModel::SelectionFlags nFlags = QTreeView::selectionCommand(index, pEvent);
    return !index.isValid() || (nFlags & QItemSelectionModel::Deselect) ? QItemSelectionModel::NoUpdate
                                                                        : nFlags;
}

void CTreeCtrl::mouseMoveEvent(QMouseEvent* pEvent) {
    // Dragging selects nothing: each selection would refill half the screen.
    if (pEvent->buttons() == Qt::NoButton)
        QTreeView::mouseMoveEvent(pEvent);
}

void CTreeCtrl::resizeEvent(QResizeEvent* pEvent) {
    QTreeView::resizeEvent(pEvent);
    FitColumn();
}

void CTreeCtrl::changeEvent(QEvent* pEvent) {
    QTreeView::changeEvent(pEvent);
    if (pEvent->type() == QEvent::FontChange || pEvent->type() == QEvent::StyleChange)
        FitColumnLater();
}

void CTreeCtrl::scrollContentsBy(int nX, int nY) {
    QTreeView::scrollContentsBy(nX, nY);
    if (nY != 0)
        FitColumnLater();
}

void CTreeCtrl::drawBranches(QPainter* pPainter, const QRect& rect, const QModelIndex& index) const {
    // Dotted lines from node to node, below the buttons, at every other pixel of the whole tree.
    QColor line = palette().color(QPalette::Text);
    line.setAlpha(110);
    const int nIndent = indentation();
    const int nMiddle = rect.center().y();
    const int nEven =
        (rect.top() + verticalOffset() * (verticalScrollMode() == ScrollPerItem ? rect.height() : 1)) & 1;
    QList<QPoint> listDots;
    const auto fnDown = [&](int nX, int nFrom, int nTo) {
        for (int nY = nFrom + ((nFrom - rect.top() + nEven) & 1); nY <= nTo; nY += 2)
            listDots << QPoint(nX, nY);
    };
    int nX = rect.right() + 1 - nIndent / 2;
    for (int nTo = nX + 1; nTo <= rect.right() - 1; nTo += 2)
        listDots << QPoint(nTo, nMiddle);
    const auto fnHasNext = [](const QModelIndex& node) {
        return node.row() + 1 < node.model()->rowCount(node.parent());
    };
    const bool bFirst = !index.parent().isValid() && index.row() == 0;
    fnDown(nX, bFirst ? nMiddle : rect.top(), fnHasNext(index) ? rect.bottom() : nMiddle);
    // Of a deep node, only the lines on the screen count.
    for (QModelIndex above = index.parent(); above.isValid() && nX >= 0; above = above.parent()) {
        nX -= nIndent;
        if (nX < viewport()->width() && fnHasNext(above))
            fnDown(nX, rect.top(), rect.bottom());
    }
    pPainter->save();
    pPainter->setPen(line);
    pPainter->drawPoints(listDots.constData(), static_cast<int>(listDots.size()));
    pPainter->restore();
    if (!model()->hasChildren(index))
        return;
    // The button stands on ground of its own.
    QStyleOption button;
    button.initFrom(this);
    button.rect = QRect(rect.right() + 1 - nIndent, rect.top(), nIndent, rect.height());
    button.state = QStyle::State_Item | QStyle::State_Children |
                   (isEnabled() ? QStyle::State_Enabled : QStyle::State_None) |
                   (isExpanded(index) ? QStyle::State_Open : QStyle::State_None);
    const QPoint centre(rect.right() + 1 - nIndent / 2, nMiddle);
    pPainter->fillRect(QRect(centre - QPoint(5, 5), QSize(11, 11)), palette().brush(QPalette::Base));
    style()->drawPrimitive(QStyle::PE_IndicatorBranch, &button, pPainter, this);
}

QPoint CTreeCtrl::MenuPoint(const QModelIndex& index) const {
    const QRect node = visualRect(index);
    const QRect area = viewport()->rect();
    const QPoint point(std::clamp(node.left() + iconSize().width(), 0, area.right()),
                       std::clamp(node.bottom(), 0, area.bottom()));
    return viewport()->mapToGlobal(point);
}

void CTreeCtrl::StartColumn() {
    m_nWidest = 0;
    horizontalScrollBar()->setValue(0);
    FitColumnLater();
}

void CTreeCtrl::FitColumnLater() {
    if (m_bFitLater)
        return;
    m_bFitLater = true;
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_bFitLater = false;
            FitColumn();
        },
        Qt::QueuedConnection);
}

void CTreeCtrl::FitColumn() {
    if (m_bFitting || model() == nullptr || header()->count() == 0)
        return;
    const QScopedValueRollback fitting(m_bFitting, true);
    m_nWidest = std::max(m_nWidest, sizeHintForColumn(0) + 4);
    const int nWidth = std::max(viewport()->width(), m_nWidest);
    if (nWidth != header()->sectionSize(0))
        header()->resizeSection(0, nWidth);
}

} // namespace carvelot
