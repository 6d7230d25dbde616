#include "ui/kit/ReportView.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QStyledItemDelegate>
#include <QToolTip>

#include <algorithm>
#include <utility>
#include <vector>

namespace carvelot {

namespace {

constexpr qsizetype kLongestTip = 1000;

bool DividesCells(QChar c) {
    return c == u'\t' || c == u'\n' || c == u'\r' || c == QChar::LineSeparator ||
           c == QChar::ParagraphSeparator;
}

QString OneLine(QString strText) {
    std::ranges::replace_if(strText, DividesCells, QChar(u' '));
    return strText;
}

// Rows with a little air between their texts.
class CRowDelegate : public QStyledItemDelegate {
public:
    CRowDelegate(QObject* pParent, qsizetype nMostDrawn)
        : QStyledItemDelegate(pParent), m_nMostDrawn(nMostDrawn) {}

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
        return QStyledItemDelegate::sizeHint(option, index) + QSize(0, 3);
    }
    // Blanks at a text's end take no room from what can be seen of it.
    void initStyleOption(QStyleOptionViewItem* pOption, const QModelIndex& index) const override {
        QStyledItemDelegate::initStyleOption(pOption, index);
        if (m_nMostDrawn != 0)
            pOption->text = OneLine(index.data().toString().left(m_nMostDrawn));
        DropTrailingBlanks(pOption->text);
    }
    // A cell that is too narrow for its text tells it below the pointer.
    bool helpEvent(QHelpEvent* pEvent, QAbstractItemView* pView, const QStyleOptionViewItem& option,
                   const QModelIndex& index) override {
        if (pEvent->type() != QEvent::ToolTip)
            return QStyledItemDelegate::helpEvent(pEvent, pView, option, index);
        QString strText = index.data().toString();
        DropTrailingBlanks(strText);
        const int nMargins =
            2 * (pView->style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, pView) + 1);
        const bool bCut = std::ranges::any_of(strText, DividesCells) ||
                          option.fontMetrics.horizontalAdvance(strText) + nMargins > option.rect.width();
        QToolTip::showText(pEvent->globalPos(), bCut ? strText.left(kLongestTip) : QString(), pView);
        return true;
    }

private:
    static void DropTrailingBlanks(QString& strText) {
        while (strText.endsWith(QLatin1Char(' ')))
            strText.chop(1);
    }

    qsizetype m_nMostDrawn;
};

// A title that is too wide for its column tells itself below the pointer: the columns have the widths that
// they are given, whatever the font.
class CReportHeader : public QHeaderView {
public:
    explicit CReportHeader(QWidget* pParent) : QHeaderView(Qt::Horizontal, pParent) {
        setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    }

protected:
    bool viewportEvent(QEvent* pEvent) override {
        if (pEvent->type() != QEvent::ToolTip)
            return QHeaderView::viewportEvent(pEvent);
        const auto& help = static_cast<const QHelpEvent&>(*pEvent);
        const int nSection = logicalIndexAt(help.pos());
        const bool bCut = nSection >= 0 && sectionSizeFromContents(nSection).width() > sectionSize(nSection);
        QToolTip::showText(help.globalPos(),
                           bCut ? model()->headerData(nSection, Qt::Horizontal).toString() : QString(), this);
        return true;
    }
};

class CRowCopier : public QObject {
public:
    explicit CRowCopier(QAbstractItemView& view) : QObject(&view), m_view(view) {}

protected:
    bool eventFilter(QObject* pObject, QEvent* pEvent) override {
        const bool bKey = pEvent->type() == QEvent::KeyPress || pEvent->type() == QEvent::ShortcutOverride;
        if (!bKey || !static_cast<QKeyEvent*>(pEvent)->matches(QKeySequence::Copy))
            return QObject::eventFilter(pObject, pEvent);
        pEvent->accept();
        if (pEvent->type() == QEvent::KeyPress)
            Copy();
        return true;
    }

private:
    void Copy() const {
        const QAbstractItemModel& model = *m_view.model();
        std::vector<QModelIndex> listRows; // their first cells
        for (const QItemSelectionRange& range : m_view.selectionModel()->selection()) {
            for (int nRow = range.top(); nRow <= range.bottom(); ++nRow)
                listRows.push_back(model.index(nRow, 0, range.parent()));
        }
        if (listRows.empty())
            return;
        // In the order of the list, whatever the order of the clicks.
        std::ranges::sort(listRows, {}, &QModelIndex::row);
        const auto* pTree = qobject_cast<const QTreeView*>(&m_view);
        QString strText;
        for (const QModelIndex& row : listRows) {
            if (!strText.isEmpty())
                strText += QLatin1Char('\n');
            bool bFirst = true;
            for (int nColumn = 0; nColumn < model.columnCount(row.parent()); ++nColumn) {
                if (pTree != nullptr && pTree->isColumnHidden(nColumn))
                    continue;
                if (!std::exchange(bFirst, false))
                    strText += QLatin1Char('\t');
                strText += OneLine(row.siblingAtColumn(nColumn).data().toString());
            }
        }
        QGuiApplication::clipboard()->setText(strText);
    }

    QAbstractItemView& m_view;
};

} // namespace

CReportView::CReportView(const QString& strAccessibleName, QWidget* pParent, qsizetype nMostDrawn)
    : QTreeView(pParent) {
    setHeader(new CReportHeader(this));
    setItemDelegate(new CRowDelegate(this, nMostDrawn));
    setAccessibleName(strAccessibleName);
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

void CopyRowsByKey(QAbstractItemView& view) { view.installEventFilter(new CRowCopier(view)); }

} // namespace carvelot
