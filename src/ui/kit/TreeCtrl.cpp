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

QString Head(std::string_view text, qsizetype most) {
    // A character takes at most three bytes for each of its units: what lies behind them need not be decoded.
    std::string_view head = text.substr(0, static_cast<std::size_t>(most) * 3 + 3);
    while (head.size() < text.size() && !head.empty() &&
           (static_cast<unsigned char>(text[head.size()]) & 0xC0U) == 0x80U) {
        head.remove_suffix(1);
    }
    return ToQString(head).left(most);
}

} // namespace

QString NodeDisplayText(std::string_view text) {
    QString shown = Head(text, kMaximumText);
    std::replace_if(shown.begin(), shown.end(), IsLineBreak, QChar(u' '));
    return shown;
}

QString NodeTipText(std::string_view text) { return Head(text, kLongestTip); }

CTreeCtrl::CTreeCtrl(const QString& accessibleName, QWidget* parent) : QTreeView(parent) {
    setAccessibleName(accessibleName);
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

void CTreeCtrl::setModel(QAbstractItemModel* model) {
    QTreeView::setModel(model);
    if (model != nullptr) {
        connect(model, &QAbstractItemModel::modelReset, this, &CTreeCtrl::StartColumn);
    }
    connect(selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] {
        if (SelectedIndex().isValid()) {
            OnSelectionChanged();
        }
    });
}

QModelIndex CTreeCtrl::SelectedIndex() const {
    const QModelIndexList selected = selectionModel()->selectedIndexes();
    return selected.isEmpty() ? QModelIndex() : selected.constFirst();
}

void CTreeCtrl::SelectIndex(const QModelIndex& index) {
    selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect);
    scrollTo(index);
}

void CTreeCtrl::scrollTo(const QModelIndex& index, ScrollHint hint) {
    QScrollBar* bar = horizontalScrollBar();
    const int before = bar->value();
    QTreeView::scrollTo(index, hint);
    FitColumn();
    // A column wider than the view would jump back to its left edge at each step: it moves only when the
    // start of the node is not on the screen.
    const QRect node = visualRect(index);
    if (!node.isValid()) {
        return;
    }
    const int left = node.left() + bar->value();
    const int width = viewport()->width();
    const bool seen = left >= before && left <= before + width * 2 / 3;
    bar->setValue(seen ? before : std::max(0, left - width / 4));
}

bool CTreeCtrl::viewportEvent(QEvent* event) {
    if (event->type() != QEvent::ToolTip) {
        return QTreeView::viewportEvent(event);
    }
    const auto& help = static_cast<const QHelpEvent&>(*event);
    const QModelIndex index = indexAt(help.pos());
    QToolTip::showText(help.globalPos(), IsCut(index) ? index.data(Qt::ToolTipRole).toString() : QString(),
                       viewport(), visualRect(index));
    return true;
}

bool CTreeCtrl::IsCut(const QModelIndex& index) const {
    if (!index.isValid()) {
        return false;
    }
    const int left = visualRect(index).left();
    return left < 0 || left + sizeHintForIndex(index).width() > viewport()->width() ||
           index.data(Qt::ToolTipRole).toString().size() > index.data().toString().size();
}

QItemSelectionModel::SelectionFlags CTreeCtrl::selectionCommand(const QModelIndex& index,
                                                                const QEvent* event) const {
    // A node is selected when the button goes down, and by nothing that follows.
    if (event != nullptr &&
        (event->type() == QEvent::MouseButtonRelease || event->type() == QEvent::MouseMove)) {
        return QItemSelectionModel::NoUpdate;
    }
    const QItemSelectionModel::SelectionFlags flags = QTreeView::selectionCommand(index, event);
    return !index.isValid() || (flags & QItemSelectionModel::Deselect) ? QItemSelectionModel::NoUpdate
                                                                       : flags;
}

void CTreeCtrl::mouseMoveEvent(QMouseEvent* event) {
    // Dragging selects nothing: each selection would refill half the screen.
    if (event->buttons() == Qt::NoButton) {
        QTreeView::mouseMoveEvent(event);
    }
}

void CTreeCtrl::resizeEvent(QResizeEvent* event) {
    QTreeView::resizeEvent(event);
    FitColumn();
}

void CTreeCtrl::changeEvent(QEvent* event) {
    QTreeView::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
        FitColumnLater();
    }
}

void CTreeCtrl::scrollContentsBy(int x, int y) {
    QTreeView::scrollContentsBy(x, y);
    if (y != 0) {
        FitColumnLater();
    }
}

void CTreeCtrl::drawBranches(QPainter* painter, const QRect& rect, const QModelIndex& index) const {
    // Dotted lines from node to node, below the buttons, at every other pixel of the whole tree.
    QColor line = palette().color(QPalette::Text);
    line.setAlpha(110);
    const int indent = indentation();
    const int middle = rect.center().y();
    const int even =
        (rect.top() + verticalOffset() * (verticalScrollMode() == ScrollPerItem ? rect.height() : 1)) & 1;
    QList<QPoint> dots;
    const auto down = [&](int x, int from, int to) {
        for (int y = from + ((from - rect.top() + even) & 1); y <= to; y += 2) {
            dots << QPoint(x, y);
        }
    };
    int x = rect.right() + 1 - indent / 2;
    for (int to = x + 1; to <= rect.right() - 1; to += 2) {
        dots << QPoint(to, middle);
    }
    const auto hasNext = [](const QModelIndex& node) {
        return node.row() + 1 < node.model()->rowCount(node.parent());
    };
    const bool first = !index.parent().isValid() && index.row() == 0;
    down(x, first ? middle : rect.top(), hasNext(index) ? rect.bottom() : middle);
    // Of a deep node, only the lines on the screen count.
    for (QModelIndex above = index.parent(); above.isValid() && x >= 0; above = above.parent()) {
        x -= indent;
        if (x < viewport()->width() && hasNext(above)) {
            down(x, rect.top(), rect.bottom());
        }
    }
    painter->save();
    painter->setPen(line);
    painter->drawPoints(dots.constData(), static_cast<int>(dots.size()));
    painter->restore();
    if (!model()->hasChildren(index)) {
        return;
    }
    // The button stands on ground of its own.
    QStyleOption button;
    button.initFrom(this);
    button.rect = QRect(rect.right() + 1 - indent, rect.top(), indent, rect.height());
    button.state = QStyle::State_Item | QStyle::State_Children |
                   (isEnabled() ? QStyle::State_Enabled : QStyle::State_None) |
                   (isExpanded(index) ? QStyle::State_Open : QStyle::State_None);
    const QPoint centre(rect.right() + 1 - indent / 2, middle);
    painter->fillRect(QRect(centre - QPoint(5, 5), QSize(11, 11)), palette().brush(QPalette::Base));
    style()->drawPrimitive(QStyle::PE_IndicatorBranch, &button, painter, this);
}

QPoint CTreeCtrl::MenuPoint(const QModelIndex& index) const {
    const QRect node = visualRect(index);
    const QRect area = viewport()->rect();
    const QPoint point(std::clamp(node.left() + iconSize().width(), 0, area.right()),
                       std::clamp(node.bottom(), 0, area.bottom()));
    return viewport()->mapToGlobal(point);
}

void CTreeCtrl::ChangeInPlace(const std::function<void()>& change) {
    QScrollBar* const down = verticalScrollBar();
    const bool atEnd = down->value() == down->maximum();
    const int across = horizontalScrollBar()->value();
    const QPersistentModelIndex top = indexAt(QPoint(0, 0));
    setUpdatesEnabled(false);
    change();
    executeDelayedItemsLayout();
    updateGeometries();
    if (atEnd) {
        down->setValue(down->maximum());
    } else if (top.isValid()) {
        QTreeView::scrollTo(top, PositionAtTop);
    }
    horizontalScrollBar()->setValue(across);
    setUpdatesEnabled(true);
    FitColumnLater();
}

void CTreeCtrl::StartColumn() {
    m_nWidest = 0;
    horizontalScrollBar()->setValue(0);
    FitColumnLater();
}

void CTreeCtrl::FitColumnLater() {
    if (m_bFitLater) {
        return;
    }
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
    if (m_bFitting || model() == nullptr || header()->count() == 0) {
        return;
    }
    const QScopedValueRollback fitting(m_bFitting, true);
    m_nWidest = std::max(m_nWidest, sizeHintForColumn(0) + 4);
    const int width = std::max(viewport()->width(), m_nWidest);
    if (width != header()->sectionSize(0)) {
        header()->resizeSection(0, width);
    }
}

} // namespace carvelot
