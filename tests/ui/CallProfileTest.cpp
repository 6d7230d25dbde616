// The window "Call Profile": functions with who calls them and whom they call, and the tree of all calls.
#include "ui/ExploreSupport.h"
#include "ui/explore/CallProfileFrame.h"
#include "ui/explore/OverviewFrame.h"

#include <QComboBox>
#include <QHeaderView>
#include <QLabel>

using namespace carvelot;
using namespace carvelot::test;

namespace {

int RowOf(CListCtrl& list, const QString& name) {
    for (int row = 0; row < list.Model().rowCount(); ++row) {
        if (list.Model().index(row, 0).data().toString() == name) {
            return row;
        }
    }
    return -1;
}

// A real double click in the middle of a row's first cell.
void DoubleClickRow(QTreeView& view, const QModelIndex& index) {
    view.scrollTo(index);
    const QPoint place = view.visualRect(index).center();
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, place);
    QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, place);
    CSessionRun::Settle();
}

void Click(CListCtrl& list, int row) {
    list.scrollTo(list.Model().index(row, 0));
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {},
                      list.visualRect(list.Model().index(row, 0)).center());
}

bool ShowsText(const QWidget& window, const QString& text) {
    const auto labels = window.findChildren<QLabel*>();
    return std::any_of(labels.begin(), labels.end(),
                       [&](const QLabel* label) { return label->isVisible() && label->text() == text; });
}

} // namespace

class CallProfileTest : public CSessionTest {
    Q_OBJECT

private slots:
    void init() { StartRun(); }
    void cleanup() { EndRun(); }

    void theWidthsOfTheCallTreeAreFoundAgain() {
        auto& tree = View<CReportView>(*Open(ExploredLines()), "Call tree");
        const int before = tree.columnWidth(1);
        WidenColumn(tree, 1, 40);
        const int after = tree.columnWidth(1);
        QVERIFY(after > before);
        m_pRun->Restart();
        QCOMPARE(View<CReportView>(*Open(ExploredLines()), "Call tree").columnWidth(1), after);
    }

    void listsFunctionsBySelfTime() {
        CCallProfileFrame* const profile = Open(ExploredLines());
        QCOMPARE(
            Rows(List(*profile, "Functions")),
            (QStringList{
                "F  OuterCall|2.000000|4.000000|1|0|0|0|4.000000|4.000000|4.000000|4.000000",
                "F  LastCall|2.000000|2.000000|1|0|0|0|2.000000|2.000000|2.000000|2.000000",
                "F  InnerCall|1.994000|2.000000|1|1|0|0|2.000000|2.000000|2.000000|2.000000",
                "S  SELECT PRODDTA.F4101|0.006000|0.006000|12|0|0|0|0.000500|0.000500|0.000500|0.000500"}));
        CListCtrl& functions = List(*profile, "Functions");
        QCOMPARE(functions.Model().index(0, 1).data(kShareRole).toDouble(), 1.0);
        QCOMPARE(functions.Model().index(2, 2).data(kShareRole).toDouble(), 0.5);
        QCOMPARE(functions.Model().index(0, 3).data(kShareRole).toDouble(), 0.0);
        QCOMPARE(m_pRun->Frame().windowTitle(), QStringLiteral("Call Profile - order.log - Carvelot"));
    }

    void showsCallersAndCalleesOfTheSelectedFunctionAndWalksAlongThem() {
        CCallProfileFrame* const profile = Open(ExploredLines());
        CListCtrl& functions = List(*profile, "Functions");
        // At first it is the costliest one.
        QCOMPARE(functions.SelectedRow(), 0);
        QCOMPARE(Rows(List(*profile, "Callees")), QStringList{"F  InnerCall|1|2.000000"});
        Click(functions, RowOf(functions, "F  InnerCall"));
        QCOMPARE(Rows(List(*profile, "Callers")), QStringList{"F  OuterCall|1|2.000000"});
        QCOMPARE(Rows(List(*profile, "Callees")), QStringList{"S  SELECT PRODDTA.F4101|12|0.006000"});
        CListCtrl& callers = List(*profile, "Callers");
        DoubleClickRow(callers, callers.Model().index(0, 0));
        QCOMPARE(functions.SelectedRow(), RowOf(functions, "F  OuterCall"));
        QCOMPARE(Rows(callers), QStringList{"(top)|1|4.000000"});
        QCOMPARE(Rows(List(*profile, "Callees")), QStringList{"F  InnerCall|1|2.000000"});
        // Nobody is no function.
        DoubleClickRow(callers, callers.Model().index(0, 0));
        QCOMPARE(functions.SelectedRow(), RowOf(functions, "F  OuterCall"));
    }

    void aDoubleClickOnAFunctionLeadsToItsLongestCall() {
        CCallProfileFrame* const profile = Open(ExploredLines());
        CListCtrl& functions = List(*profile, "Functions");
        QSignalSpy wanted(&profile->Exploration(), &CExploration::RecordWanted);
        DoubleClickRow(functions, functions.Model().index(RowOf(functions, "F  LastCall"), 0));
        QCOMPARE(wanted.size(), 1);
        const auto record = profile->Exploration().Selected();
        QVERIFY(record.has_value());
        QVERIFY(profile->Exploration().Session().m_listDetails.Text(*record).find("LastCall") !=
                std::string_view::npos);
    }

    void showsTheTreeOfCallsWithBars() {
        CCallProfileFrame* const profile = Open(ExploredLines());
        auto& tree = View<CReportView>(*profile, "Call tree");
        QAbstractItemModel& model = *tree.model();
        const auto text = [&](const QModelIndex& row) {
            QStringList cells;
            for (int column = 0; column < model.columnCount(); ++column) {
                cells << row.siblingAtColumn(column).data().toString();
            }
            return cells.join(QLatin1Char('|'));
        };
        QCOMPARE(model.rowCount(), 2);
        const QModelIndex outer = model.index(0, 0);
        QCOMPARE(text(outer), QStringLiteral("F  OuterCall|4.000000|2.000000|1"));
        QCOMPARE(outer.siblingAtColumn(1).data(kShareRole).toDouble(), 4.0 / 6);
        QCOMPARE(text(model.index(1, 0)), QStringLiteral("F  LastCall|2.000000|2.000000|1"));
        tree.setFocus();
        tree.setCurrentIndex(outer);
        QTest::keyClick(&tree, Qt::Key_Right);
        QVERIFY(tree.isExpanded(outer));
        const QModelIndex inner = model.index(0, 0, outer);
        QCOMPARE(text(inner), QStringLiteral("F  InnerCall|2.000000|1.994000|1"));
        QCOMPARE(inner.parent(), outer);
        QCOMPARE(text(model.index(0, 0, inner)),
                 QStringLiteral("S  SELECT PRODDTA.F4101|0.006000|0.006000|12"));
        DoubleClickRow(tree, inner);
        CListCtrl& functions = List(*profile, "Functions");
        QCOMPARE(functions.SelectedRow(), RowOf(functions, "F  InnerCall"));
        // Right of the last column there is no node.
        for (int column = 0; column < model.columnCount(); ++column) {
            tree.setColumnWidth(column, 40);
        }
        const QPoint beside(tree.viewport()->width() - 5, tree.visualRect(outer).center().y());
        QVERIFY(!tree.indexAt(beside).isValid());
        QTest::mouseClick(tree.viewport(), Qt::LeftButton, {}, beside);
        QTest::mouseDClick(tree.viewport(), Qt::LeftButton, {}, beside);
        QCOMPARE(functions.SelectedRow(), RowOf(functions, "F  InnerCall"));
    }

    void keepsItsFunctionInAnotherScope() {
        std::vector<std::string> lines = ExploredLines();
        lines.push_back(
            Line("08:00:08.000000",
                 "Calling Business function InnerCall for JSMITH from CALLBSFN.DLL. (BSFNLevel = 1)", "5/9"));
        lines.push_back(Line("08:00:09.000000", "Return value is 0 for InnerCall. (BSFNLevel = 1)", "5/9"));
        CCallProfileFrame* const profile = Open(lines);
        CListCtrl& functions = List(*profile, "Functions");
        Click(functions, RowOf(functions, "F  InnerCall"));
        QCOMPARE(Rows(List(*profile, "Callers")).size(), 2);
        auto* const scope = profile->findChild<QComboBox*>();
        scope->setFocus();
        QTest::keyClick(scope, Qt::Key_End);
        QTest::keyClick(scope, Qt::Key_Return);
        QVERIFY(WaitForResults(profile->Exploration()));
        QCOMPARE(Rows(functions).size(), 1);
        QCOMPARE(functions.SelectedRow(), 0);
        QCOMPARE(Rows(List(*profile, "Callers")), QStringList{"(top)|1|1.000000"});
        QCOMPARE(View<CReportView>(*profile, "Call tree").model()->rowCount(), 1);
    }

    void marksTheFunctionOfTheRecordThatIsSelectedElsewhere() {
        CCallProfileFrame* const profile = Open(ExploredLines());
        CListCtrl& functions = List(*profile, "Functions");
        const CFrames& frames = profile->Exploration().Explored().frames;
        profile->Exploration().Select(frames[1].record);
        QCOMPARE(functions.SelectedRow(), RowOf(functions, "F  InnerCall"));
    }

    void opensWithTheFunctionThatTheOverviewLeadsTo() {
        CChildFrame* const session = m_pRun->Open(QStringLiteral("order.log"), ExploredLines());
        auto* const overview = OpenExplore<COverviewFrame>(*m_pRun, *session, ID_EXPLORE_OVERVIEW);
        CListCtrl& costs = List(*overview, "Functions by own time");
        DoubleClickRow(costs, costs.Model().index(1, 0));
        auto* const profile = qobject_cast<CCallProfileFrame*>(m_pRun->Frame().ActiveChild());
        QVERIFY(profile != nullptr);
        QVERIFY(WaitForResults(profile->Exploration()));
        CListCtrl& functions = List(*profile, "Functions");
        QCOMPARE(functions.SelectedRow(), RowOf(functions, "F  LastCall"));
    }

    void saysWhyThereIsNothing() {
        CCallProfileFrame* const empty = Open(DebugLog({}));
        QVERIFY(ShowsText(*empty, QStringLiteral("This log holds no calls.")));
        EndRun();
        StartRun();
        CCallProfileFrame* const profile = Open(ExploredLines());
        profile->Exploration().SetRange({100'000'000, 200'000'000});
        QVERIFY(WaitForResults(profile->Exploration()));
        QVERIFY(ShowsText(*profile, QStringLiteral("Nothing lies in this scope and range.")));
        profile->Exploration().SetRange({});
        QVERIFY(WaitForResults(profile->Exploration()));
        QVERIFY(List(*profile, "Functions").isVisible());
    }

    void goesWithItsRecordsAndComesAnew() {
        CCallProfileFrame* const profile = Open(ExploredLines());
        auto& tree = View<CReportView>(*profile, "Call tree");
        tree.expandAll();
        for (int n = 0; n < 5; ++n) {
            m_pRun->Frame().RunCommand(ID_SESSION_ANALYZE);
            QCOMPARE(tree.model()->rowCount(), 0);
        }
        QVERIFY(WaitForResults(profile->Exploration()));
        QCOMPARE(tree.model()->rowCount(), 2);
        QCOMPARE(Rows(List(*profile, "Functions")).size(), 4);
    }

    void f6LeadsThroughListsAndTree() {
        auto* const profile = Open(ExploredLines());
        List(*profile, "Functions").setFocus();
        for (QWidget* const pane : profile->WindowPanes().mid(1)) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_F6);
            QCOMPARE(QApplication::focusWidget(), pane);
        }
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_F6, Qt::ShiftModifier);
        QCOMPARE(QApplication::focusWidget(), &List(*profile, "Callees"));
    }

private:
    CCallProfileFrame* Open(const std::vector<std::string>& lines) {
        CChildFrame* const session = m_pRun->Open(QStringLiteral("order.log"), lines);
        return OpenExplore<CCallProfileFrame>(*m_pRun, *session, ID_EXPLORE_CALL_PROFILE);
    }
};

QTEST_MAIN(CallProfileTest)
#include "CallProfileTest.moc"
