#include "ui/kit/ReportView.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyledItemDelegate>
#include <QToolTip>

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace carvelot {

namespace {

constexpr qsizetype kLongestTip = 1000;

bool DividesCells(QChar c) {
    return c == u'\t' || c == u'\n' || c == u'\r' || c == QChar::LineSeparator ||
           c == QChar::ParagraphSeparator;
}

QString OneLine(QString text) {
    std::ranges::replace_if(text, DividesCells, QChar(u' '));
    return text;
}

// Rows with a little air between their texts.
class CRowDelegate : public QStyledItemDelegate {
public:
    CRowDelegate(QObject* parent, qsizetype mostDrawn)
        : QStyledItemDelegate(parent), m_nMostDrawn(mostDrawn) {}

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
        return QStyledItemDelegate::sizeHint(option, index) + QSize(0, 3);
    }
    // Blanks at a text's end take no room from what can be seen of it.
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
        QStyledItemDelegate::initStyleOption(option, index);
        if (m_nMostDrawn != 0) {
            option->text = OneLine(index.data().toString().left(m_nMostDrawn));
        }
        DropTrailingBlanks(option->text);
    }
    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override {
        // Below the text, and above what marks a selected row.
        const double share = index.data(kShareRole).toDouble();
        if (share == 0) {
            QStyledItemDelegate::paint(painter, option, index);
            return;
        }
        QStyleOptionViewItem text = option;
        if (option.state.testFlag(QStyle::State_Selected)) {
            option.widget->style()->drawPrimitive(QStyle::PE_PanelItemViewItem, &option, painter,
                                                  option.widget);
            text.state.setFlag(QStyle::State_Selected, false);
            for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
                text.palette.setColor(group, QPalette::Text,
                                      option.palette.color(group, QPalette::HighlightedText));
            }
        }
        PaintShare(*painter, option.rect, share, index.data(kSignedShareRole).toBool());
        QStyledItemDelegate::paint(painter, text, index);
    }
    // A cell that is too narrow for its text tells it below the pointer.
    bool helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                   const QModelIndex& index) override {
        if (event->type() != QEvent::ToolTip) {
            return QStyledItemDelegate::helpEvent(event, view, option, index);
        }
        QString text = index.data().toString();
        DropTrailingBlanks(text);
        const int margins = 2 * (view->style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, view) + 1);
        const bool cut = std::ranges::any_of(text, DividesCells) ||
                         option.fontMetrics.horizontalAdvance(text) + margins > option.rect.width();
        QToolTip::showText(event->globalPos(), cut ? text.left(kLongestTip) : QString(), view);
        return true;
    }

private:
    // Bars of one column start at one edge; where numbers fall and rise, in the middle.
    static void PaintShare(QPainter& painter, const QRect& cell, double share, bool isSigned) {
        if (share == 0) {
            return;
        }
        const double whole = (cell.width() - 2) / (isSigned ? 2.0 : 1.0);
        const double length = std::max(1.0, std::min(1.0, std::abs(share)) * whole);
        const double edge = cell.left() + 1.0 + (isSigned ? whole : 0.0);
        const QRectF bar(share < 0 ? edge - length : edge, cell.top() + 1.0, length, cell.height() - 2.0);
        constexpr QColor more(0xE6, 0x9F, 0x00, 110);
        constexpr QColor less(0x00, 0x72, 0xB2, 110);
        painter.fillRect(bar, share < 0 ? less : more);
    }
    static void DropTrailingBlanks(QString& text) {
        while (text.endsWith(QLatin1Char(' '))) {
            text.chop(1);
        }
    }

    qsizetype m_nMostDrawn;
};

// A title that is too wide for its column tells itself below the pointer: the columns have the widths that
// they are given, whatever the font.
class CReportHeader : public QHeaderView {
public:
    explicit CReportHeader(QWidget* parent) : QHeaderView(Qt::Horizontal, parent) {
        setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    }

protected:
    bool viewportEvent(QEvent* event) override {
        if (event->type() != QEvent::ToolTip) {
            return QHeaderView::viewportEvent(event);
        }
        const auto& help = static_cast<const QHelpEvent&>(*event);
        const int section = logicalIndexAt(help.pos());
        const bool cut = section >= 0 && sectionSizeFromContents(section).width() > sectionSize(section);
        QToolTip::showText(help.globalPos(),
                           cut ? model()->headerData(section, Qt::Horizontal).toString() : QString(), this);
        return true;
    }
};

class CRowCopier : public QObject {
public:
    explicit CRowCopier(QAbstractItemView& view) : QObject(&view), m_view(view) {}

protected:
    bool eventFilter(QObject* object, QEvent* event) override {
        const bool key = event->type() == QEvent::KeyPress || event->type() == QEvent::ShortcutOverride;
        if (!key || !static_cast<QKeyEvent*>(event)->matches(QKeySequence::Copy)) {
            return QObject::eventFilter(object, event);
        }
        event->accept();
        if (event->type() == QEvent::KeyPress) {
            CopySelectedRows(m_view);
        }
        return true;
    }

private:
    QAbstractItemView& m_view;
};

} // namespace

CReportView::CReportView(const QString& accessibleName, QWidget* parent, qsizetype mostDrawn)
    : QTreeView(parent) {
    setHeader(new CReportHeader(this));
    setItemDelegate(new CRowDelegate(this, mostDrawn));
    setAccessibleName(accessibleName);
    setRootIsDecorated(false);
    setItemsExpandable(false);
    setUniformRowHeights(true);
    setAllColumnsShowFocus(true);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setTextElideMode(Qt::ElideRight);
    setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    setTabKeyNavigation(false);
    header()->setStretchLastSection(false);
    header()->setSectionsMovable(false);
    header()->setHighlightSections(false);
    header()->setMinimumSectionSize(16);
    CopyRowsByKey(*this);
}

// The toolkit tells of a place right of the columns, too, and then of no cell.
void CReportView::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && indexAt(event->position().toPoint()).isValid()) {
        QTreeView::mouseDoubleClickEvent(event);
    }
}

void CopySelectedRows(const QAbstractItemView& view) {
    const QAbstractItemModel& model = *view.model();
    std::vector<QModelIndex> rows; // their first cells
    for (const QItemSelectionRange& range : view.selectionModel()->selection()) {
        for (int rowNumber = range.top(); rowNumber <= range.bottom(); ++rowNumber) {
            rows.push_back(model.index(rowNumber, 0, range.parent()));
        }
    }
    if (rows.empty()) {
        return;
    }
    // In the order of the list, whatever the order of the clicks.
    std::ranges::sort(rows, {}, &QModelIndex::row);
    const auto* tree = qobject_cast<const QTreeView*>(&view);
    QString text;
    for (const QModelIndex& row : rows) {
        if (!text.isEmpty()) {
            text += QLatin1Char('\n');
        }
        bool first = true;
        for (int column = 0; column < model.columnCount(row.parent()); ++column) {
            if (tree != nullptr && tree->isColumnHidden(column)) {
                continue;
            }
            if (!std::exchange(first, false)) {
                text += QLatin1Char('\t');
            }
            text += OneLine(row.siblingAtColumn(column).data().toString());
        }
    }
    QGuiApplication::clipboard()->setText(text);
}

void CopyRowsByKey(QAbstractItemView& view) { view.installEventFilter(new CRowCopier(view)); }

} // namespace carvelot
