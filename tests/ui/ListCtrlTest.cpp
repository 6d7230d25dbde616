#include "ui/kit/ListCtrl.h"

#include "settings/Commands.h"
#include "ui/Accessible.h"
#include "ui/kit/LookStyle.h"
#include "ui/kit/Text.h"

#include <QAbstractItemModelTester>
#include <QApplication>
#include <QHeaderView>
#include <QHelpEvent>
#include <QSignalSpy>
#include <QTest>
#include <QToolTip>

#include <algorithm>
#include <functional>
#include <utility>

using namespace carvelot;

namespace {

struct CTestRow {
    std::string m_strName;
    int m_nCalls;
};

// A vector of rows and, for each column, how a row prints and compares.
template <typename TRow> class CRowList : public CListSource {
public:
    struct CColumn {
        std::function<std::string(const TRow&)> m_fnText;
        std::function<int(const TRow&, const TRow&)> m_fnCompare;
    };

    explicit CRowList(std::vector<CColumn> columns) : m_listColumns(std::move(columns)) {}

    std::size_t RowCount() const override { return m_listRows.size(); }
    std::string Text(std::size_t row, int column) const override {
        return m_listColumns[static_cast<std::size_t>(column)].m_fnText(m_listRows[row]);
    }
    void Sort(std::vector<std::size_t>& order, int column, bool descending) const override {
        const auto& compare = m_listColumns[static_cast<std::size_t>(column)].m_fnCompare;
        std::ranges::stable_sort(order, [&](std::size_t a, std::size_t b) {
            return descending ? compare(m_listRows[b], m_listRows[a]) < 0
                              : compare(m_listRows[a], m_listRows[b]) < 0;
        });
    }

    std::vector<TRow> m_listRows;

private:
    std::vector<CColumn> m_listColumns;
};

const CColumnSpec kColumns[] = {{"Name", 200, EAlign::Left, true}, {"Calls", 70, EAlign::Right, true}};

CRowList<CTestRow> Rows() {
    CRowList<CTestRow> rows(
        {{[](const CTestRow& row) { return row.m_strName; },
          [](const CTestRow& a, const CTestRow& b) { return a.m_strName.compare(b.m_strName); }},
         {[](const CTestRow& row) { return std::to_string(row.m_nCalls); },
          // As number columns compare: never equal.
          [](const CTestRow& a, const CTestRow& b) { return a.m_nCalls < b.m_nCalls ? -1 : 1; }}});
    rows.m_listRows = {{"b", 10}, {"a", 9}, {"d", 9}, {"c", 100}};
    return rows;
}

QString Shown(CListCtrl& list) {
    QStringList rows;
    for (int n = 0; n < list.Model().rowCount(); ++n) {
        rows << list.Model().index(n, 0).data().toString() + list.Model().index(n, 1).data().toString();
    }
    return rows.join(QLatin1Char(' '));
}

void ClickHeader(CListCtrl& list, int column) {
    const QHeaderView& header = *list.header();
    QTest::mouseClick(
        header.viewport(), Qt::LeftButton, {},
        QPoint(header.sectionViewportPosition(column) + header.sectionSize(column) / 2, header.height() / 2));
}

} // namespace

class ListCtrlTest : public QObject {
    Q_OBJECT

private slots:
    void init() {
        m_pList = std::make_unique<CListCtrl>(kColumns, QStringLiteral("Test"), nullptr);
        m_pTester = std::make_unique<QAbstractItemModelTester>(
            &m_pList->Model(), QAbstractItemModelTester::FailureReportingMode::QtTest);
        m_pList->resize(500, 300);
        m_pList->show();
    }
    void cleanup() {
        m_pTester.reset();
        m_pList.reset();
    }

    void columnsHaveTheirTitlesAndWidths() {
        QCOMPARE(m_pList->header()->sectionSize(0), 200);
        QCOMPARE(m_pList->header()->sectionSize(1), 70);
        QCOMPARE(m_pList->Model().headerData(1, Qt::Horizontal, Qt::DisplayRole).toString(),
                 QStringLiteral("Calls"));
    }

    void columnsKeepTheirWidthsWhateverTheTitlesFontAndACutTitleTellsItself() {
        const QFont before = QApplication::font();
        QFont large = before;
        large.setPointSizeF(before.pointSizeF() * 3);
        QApplication::setFont(large);
        CListCtrl list(kColumns, QStringLiteral("large"), nullptr);
        list.show();
        QVERIFY(QTest::qWaitForWindowExposed(&list));
        QVERIFY(list.header()->fontMetrics().horizontalAdvance(QStringLiteral("Calls")) > 70);
        QCOMPARE(list.header()->sectionSize(0), 200);
        QCOMPARE(list.header()->sectionSize(1), 70);
        list.SetColumnWidth(1, 0);
        list.SetColumnWidth(1, 60);
        QCOMPARE(list.header()->sectionSize(1), 60);
        QCOMPARE(test::SaidByTip(*list.header(), 1), QStringLiteral("Calls"));
        QCOMPARE(test::SaidByTip(*list.header(), 0), QString());
        QApplication::setFont(before);
    }

    void aSortedColumnShowsItsWholeTitleBelowAnArrowThatTellsTheOrder() {
        const QPalette palette = QApplication::palette();
        int office2007 = ID_APPLOOK_OFFICE_2007_BLUE;
        for (const int id : {ID_APPLOOK_WINDOWS_2000, ID_APPLOOK_VS_2008, ID_APPLOOK_WINDOWS_7}) {
            ApplyLook(LookOf(id, office2007));
            const CRowList<CTestRow> rows = Rows();
            m_pList->Fill(&rows);
            QHeaderView& header = *m_pList->header();
            header.resizeSection(1, header.fontMetrics().horizontalAdvance(QStringLiteral("Calls")) + 16);
            const QRect title(header.sectionViewportPosition(1), 0, header.sectionSize(1), header.height());
            const auto picture = [&] { return header.viewport()->grab(title).toImage(); };
            const int arrow = 5; // the rows above the title
            const QRect below(0, arrow, title.width(), title.height() - arrow);
            const auto darkAt = [&](const QImage& image, int y) {
                int dark = 0;
                for (int x = 0; x < image.width(); ++x) {
                    dark += qGray(image.pixel(x, y)) < 128 ? 1 : 0;
                }
                return dark;
            };
            const QImage unsorted = picture();
            m_pList->SortBy(1, Qt::AscendingOrder);
            const QImage ascending = picture();
            m_pList->SortBy(1, Qt::DescendingOrder);
            const QImage descending = picture();
            QVERIFY(ascending.copy(below) == unsorted.copy(below));
            QVERIFY(descending.copy(below) == unsorted.copy(below));
            QVERIFY(darkAt(ascending, 3) > darkAt(ascending, 1) + 3);
            QVERIFY(darkAt(descending, 1) > darkAt(descending, 3) + 3);
            QVERIFY(darkAt(unsorted, 1) == darkAt(unsorted, 3));
            m_pList->Fill(nullptr);
        }
        QApplication::setStyle(QStringLiteral("fusion"));
        QApplication::setPalette(palette);
    }

    // Time stamps end in blanks, and stand in a column that is just wide enough without them.
    void blanksAtTheEndOfATextHideNothingOfIt() {
        const QString stamp = QStringLiteral("10:56:21.513222");
        CRowList<CTestRow> rows = Rows();
        rows.m_listRows = {{ToUtf8(stamp), 1}, {ToUtf8(stamp) + "    ", 1}};
        m_pList->Fill(&rows);
        m_pList->header()->resizeSection(0, m_pList->fontMetrics().horizontalAdvance(stamp) + 10);
        m_pList->setCurrentIndex({});
        const auto picture = [this](int row) {
            return m_pList->viewport()->grab(m_pList->visualRect(m_pList->Model().index(row, 0))).toImage();
        };
        QVERIFY(picture(0) == picture(1));
        QCOMPARE(m_pList->Model().index(1, 0).data().toString(), stamp + QStringLiteral("    "));
    }

    void aFillShowsTheRowsInTheirOwnOrder() {
        const CRowList<CTestRow> rows = Rows();
        m_pList->Fill(&rows);
        QCOMPARE(Shown(*m_pList), QStringLiteral("b10 a9 d9 c100"));
    }

    void aClickOnAHeaderSortsByTheRawValueAndASecondOneTurnsRound() {
        const CRowList<CTestRow> rows = Rows();
        m_pList->Fill(&rows);
        ClickHeader(*m_pList, 1);
        QCOMPARE(Shown(*m_pList), QStringLiteral("a9 d9 b10 c100"));
        ClickHeader(*m_pList, 1);
        QCOMPARE(Shown(*m_pList), QStringLiteral("c100 b10 a9 d9"));
        ClickHeader(*m_pList, 0);
        QCOMPARE(Shown(*m_pList), QStringLiteral("a9 b10 c100 d9"));
    }

    void aFillForgetsTheSorting() {
        const CRowList<CTestRow> rows = Rows();
        m_pList->Fill(&rows);
        ClickHeader(*m_pList, 0);
        m_pList->Fill(&rows);
        QCOMPARE(Shown(*m_pList), QStringLiteral("b10 a9 d9 c100"));
        QVERIFY(!m_pList->header()->isSortIndicatorShown());
        ClickHeader(*m_pList, 0);
        QCOMPARE(Shown(*m_pList), QStringLiteral("a9 b10 c100 d9"));
    }

    void theSelectionStaysWithItsRowWhenTheListIsSorted() {
        const CRowList<CTestRow> rows = Rows();
        m_pList->Fill(&rows);
        m_pList->setCurrentIndex(m_pList->Model().index(3, 0));
        ClickHeader(*m_pList, 0);
        QCOMPARE(m_pList->SelectedRow(), 2);
        QCOMPARE(m_pList->Model().SourceRow(2), 3U);
    }

    void aListThatDoesNotSortKeepsItsRows() {
        const CRowList<CTestRow> rows = Rows();
        const CColumnSpec columns[] = {{"Name", 200}, {"Calls", 70}};
        m_pList->SetColumns(columns);
        m_pList->Fill(&rows);
        ClickHeader(*m_pList, 0);
        QCOMPARE(Shown(*m_pList), QStringLiteral("b10 a9 d9 c100"));
    }

    void aDoubleClickAndEnterOpenTheSelectedRow() {
        const CRowList<CTestRow> rows = Rows();
        m_pList->Fill(&rows);
        QList<int> opened;
        m_pList->m_fnOpenRow = [&](int row) { opened << row; };
        const QPoint point = m_pList->visualRect(m_pList->Model().index(1, 0)).center();
        QTest::mouseClick(m_pList->viewport(), Qt::LeftButton, {}, point);
        QTest::mouseDClick(m_pList->viewport(), Qt::LeftButton, {}, point);
        QTest::keyClick(m_pList.get(), Qt::Key_Return);
        QCOMPARE(opened, (QList<int>{1, 1}));
        // Neither right of the columns nor by another button.
        const QPoint beside(m_pList->viewport()->width() - 5, point.y());
        QVERIFY(!m_pList->indexAt(beside).isValid());
        const QSignalSpy told(m_pList.get(), &QAbstractItemView::doubleClicked);
        QTest::mouseClick(m_pList->viewport(), Qt::LeftButton, {}, beside);
        QTest::mouseDClick(m_pList->viewport(), Qt::LeftButton, {}, beside);
        QTest::mouseClick(m_pList->viewport(), Qt::MiddleButton, {}, point);
        QTest::mouseDClick(m_pList->viewport(), Qt::MiddleButton, {}, point);
        QCOMPARE(opened, (QList<int>{1, 1}));
        QCOMPARE(told.count(), 0);
    }

    void aColumnOfNumbersAndItsTitleStandOnTheRight() {
        const CRowList<CTestRow> rows = Rows();
        m_pList->Fill(&rows);
        const auto alignment = [this](int column) {
            const CListModel& model = m_pList->Model();
            return std::pair(
                model.index(0, column).data(Qt::TextAlignmentRole).value<Qt::Alignment>(),
                model.headerData(column, Qt::Horizontal, Qt::TextAlignmentRole).value<Qt::Alignment>());
        };
        const Qt::Alignment left = Qt::AlignLeft | Qt::AlignVCenter;
        const Qt::Alignment right = Qt::AlignRight | Qt::AlignVCenter;
        QCOMPARE(alignment(0), std::pair(left, left));
        QCOMPARE(alignment(1), std::pair(right, right));
    }

    void otherColumnsTakeThePlaceOfAllAndTheRowsGo() {
        const CRowList<CTestRow> rows = Rows();
        m_pList->Fill(&rows);
        ClickHeader(*m_pList, 1);
        const CColumnSpec columns[] = {{"One", 40}, {"Two", 50}, {"Three", 60}};
        m_pList->SetColumns(columns);
        QCOMPARE(m_pList->Model().rowCount(), 0);
        QCOMPARE(m_pList->Model().columnCount(), 3);
        QVERIFY(!m_pList->header()->isSortIndicatorShown());
        for (int column = 0; column < 3; ++column) {
            QCOMPARE(m_pList->header()->sectionSize(column), 40 + 10 * column);
        }
    }

    void aListTakesInTheRowsThatItsSourceGrowsBy() {
        CRowList<CTestRow> rows = Rows();
        const CColumnSpec columns[] = {{"Name", 200}, {"Calls", 70}};
        m_pList->SetColumns(columns);
        m_pList->Model().TakeNewRows(rows);
        QCOMPARE(Shown(*m_pList), QStringLiteral("b10 a9 d9 c100"));
        m_pList->setCurrentIndex(m_pList->Model().index(1, 0));
        rows.m_listRows.push_back({"e", 5});
        m_pList->Model().TakeNewRows(rows);
        QCOMPARE(Shown(*m_pList), QStringLiteral("b10 a9 d9 c100 e5"));
        QCOMPARE(m_pList->SelectedRow(), 1);
        m_pList->Model().DropRows();
        QCOMPARE(m_pList->Model().rowCount(), 0);
    }

    void aColumnOfWidthZeroIsHidden() {
        m_pList->SetColumnWidth(1, 0);
        QVERIFY(m_pList->header()->isSectionHidden(1));
        m_pList->SetColumnWidth(1, 60);
        QVERIFY(!m_pList->header()->isSectionHidden(1));
        QCOMPARE(m_pList->header()->sectionSize(1), 60);
    }

    void aCellThatIsTooNarrowTellsItsTextAndAWideOneNothing() {
        CRowList<CTestRow> rows = Rows();
        rows.m_listRows[1].m_strName = std::string(100, 'w');
        m_pList->Fill(&rows);
        const auto tip = [this](int row) {
            const QPoint point = m_pList->visualRect(m_pList->Model().index(row, 0)).center();
            QHelpEvent event(QEvent::ToolTip, point, m_pList->viewport()->mapToGlobal(point));
            QApplication::sendEvent(m_pList->viewport(), &event);
            return QToolTip::isVisible() ? QToolTip::text() : QString();
        };
        QCOMPARE(tip(0), QString());
        QCOMPARE(tip(1), QString(100, QLatin1Char('w')));
    }

private:
    std::unique_ptr<CListCtrl> m_pList;
    std::unique_ptr<QAbstractItemModelTester> m_pTester;
};

QTEST_MAIN(ListCtrlTest)
#include "ListCtrlTest.moc"
