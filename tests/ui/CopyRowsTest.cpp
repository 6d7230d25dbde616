// Ctrl+C in every list of the program.
#include "ui/SessionSupport.h"
#include "ui/app/Requests.h"

#include "support/JDEInstallation.h"
#include "ui/app/OptionsDlg.h"
#include "ui/cachebrowser/CacheDocument.h"
#include "ui/cachebrowser/CacheFrame.h"
#include "ui/kit/WindowsDlg.h"
#include "ui/tools/GBLTables.h"
#include "ui/tools/Settings.h"

#include <QDialogButtonBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QToolBar>
#include <QTreeWidget>

using namespace carvelot;
using namespace carvelot::test;

namespace {

// What stands on the clipboard after Ctrl+C in the view.
QString Copied(QAbstractItemView& view) {
    QGuiApplication::clipboard()->setText(QStringLiteral("before"));
    view.setFocus();
    QTest::keyClick(&view, Qt::Key_C, Qt::ControlModifier);
    return QGuiApplication::clipboard()->text();
}

std::vector<std::string> Log() {
    return DebugLog({Line("10:00:00.000001", "SELECT X FROM T"),
                     Line("10:00:02.000001", "Exiting DBPerformRequest"),
                     Line("10:00:02.000002", "Calling Business function F from Level 1 (BSFNLevel = 1)"),
                     Line("10:00:02.500002", "Return value is 2 for F. (BSFNLevel = 1)")});
}

} // namespace

class CopyRowsTest : public CSessionTest {
    Q_OBJECT

private slots:
    void init() { StartRun(); }
    void cleanup() { EndRun(); }

    void aListOfASelectionCopiesItsSelectedRowAndNothingWithoutOne() {
        CMainFrame& frame = m_pRun->Frame();
        Select(m_pRun->Open(QStringLiteral("a.log"), Log()), "Process - 5");
        const auto check = [](CDockablePane& pane, CListCtrl& list, const QString& row) {
            CSessionRun::ShowPane(pane);
            QCOMPARE(Copied(list), QStringLiteral("before"));
            Click(list, list.Model().index(0, 0));
            QCOMPARE(Copied(list), row);
        };
        check(frame.m_wndBSFNPane, frame.m_wndBSFNPane.List(),
              QStringLiteral("F\t1\t0.500000\t0.500000\t0.500000\t0.500000"));
        check(frame.m_wndSQLPane, frame.m_wndSQLPane.List(), QStringLiteral("T\t1\t0\t0\t0"));
        check(frame.m_wndLongTasksPane, frame.m_wndLongTasksPane.List(),
              QStringLiteral("5/6\tSQL\t2.000000\tSELECT X FROM T"));
        check(frame.m_wndErrorPane, frame.m_wndErrorPane.List(),
              QStringLiteral("5/6\tBSFN Error\tReturn value is 2 for F. (BSFNLevel = 1)"));
        check(frame.m_wndTimingGapsPane, frame.m_wndTimingGapsPane.List(),
              QStringLiteral("5/6\t10:00:02.000001    \t2.000000\tExiting DBPerformRequest"));
        frame.m_wndFindPane.SearchEdit().setText(QStringLiteral("select"));
        frame.m_wndFindPane.OnFind();
        check(frame.m_wndFindPane, frame.m_wndFindPane.List(), QStringLiteral("5\t6\tSELECT X FROM T"));
    }

    void aColumnThatIsHiddenIsLeftOut() {
        CFindPane& find = m_pRun->Frame().m_wndFindPane;
        Select(m_pRun->Open(QStringLiteral("jas.log"), JASLog({JASLine("09:00:01,000", "ANNIKA", "first")})),
               "ANNIKA");
        CSessionRun::ShowPane(find);
        find.SearchEdit().setText(QStringLiteral("first"));
        find.OnFind();
        Click(find.List(), find.List().Model().index(0, 0));
        QCOMPARE(Copied(find.List()), QStringLiteral("ANNIKA\tfirst"));
    }

    // What would divide cells and rows is a blank within one.
    void aRowIsOneLineWhateverItsTextsHold() {
        CErrorPane& pane = m_pRun->Frame().m_wndErrorPane;
        Select(m_pRun->Open(QStringLiteral("a.log"), DebugLog({Line("10:00:00.000001", "ERROR: a\tb")})),
               "Process - 5");
        CSessionRun::ShowPane(pane);
        Click(pane.List(), pane.List().Model().index(0, 0));
        QCOMPARE(Copied(pane.List()), QStringLiteral("5/6\tGBR Error\tERROR: a b"));
    }

    void theProcessListCopiesAllSelectedRowsInTheirOrder() {
        CProcessPane& pane = m_pRun->Frame().m_wndProcessPane;
        theApp().m_bAutoRefresh = false;
        pane.RestartTimer();
        theApp().m_pfnGetSetProcInfo = nullptr;
        theApp().m_traceApps = {{"a.exe", true}};
        pane.m_fnEnumerateProcesses = [](std::vector<platform::ProcessEntry>& processes) {
            processes = {{3, "a.exe"}, {7, "a.exe"}, {5, "a.exe"}};
            return true;
        };
        pane.RefreshProcessList();
        CSessionRun::ShowPane(pane);
        Click(pane.List(), pane.List().Model().index(2, 0));
        Click(pane.List(), pane.List().Model().index(0, 0), Qt::LeftButton, Qt::ControlModifier);
        QCOMPARE(Copied(pane.List()), QStringLiteral("3\ta.exe\tOff\tUndetermined\t-1\t\t\n"
                                                     "5\ta.exe\tOff\tUndetermined\t-1\t\t"));
    }

    void theCacheBrowserCopiesItsSelectedRowsAndItsMembers() {
        m_pRun.reset();
        UseLibraryFolder(CARVELOT_MANY_ROWS);
        qputenv("CARVELOT_MANY_ROWS", "4");
        StartRun();
        m_pRun->m_user.m_fnInDialog = [](QDialog& dialog) {
            dialog.findChild<QPlainTextEdit*>()->setPlainText(QStringLiteral("int a; JCHAR b[16];"));
            QTest::mouseClick(dialog.findChild<QPushButton*>(QStringLiteral("Parse")), Qt::LeftButton);
            auto& list = *dialog.findChild<CListCtrl*>();
            Click(list, list.Model().index(1, 0));
            QCOMPARE(Copied(list), QStringLiteral("b\tJCHAR\t16"));
            QTest::mouseClick(dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok),
                              Qt::LeftButton);
        };
        BrowseCache(static_cast<std::uint32_t>(-7), "1A", "Orders", "9Orders");
        m_pRun->Frame().RunCommand(ID_CACHE_REFRESH_DATA);
        auto* frame = qobject_cast<CCacheFrame*>(m_pRun->Frame().ActiveChild());
        QVERIFY(frame != nullptr);
        CCacheDataView& rows = frame->DataView();
        QCOMPARE(rows.model()->rowCount(), 4);
        Click(rows, rows.model()->index(3, 0));
        Click(rows, rows.model()->index(1, 0), Qt::LeftButton, Qt::ControlModifier);
        QCOMPARE(Copied(rows), QStringLiteral("1\trow 1\n3\trow 3"));
        rows.selectAll();
        QCOMPARE(Copied(rows), QStringLiteral("0\trow 0\n1\trow 1\n2\trow 2\n3\trow 3"));
        CListCtrl& members = frame->DSView().List();
        Click(members, members.Model().index(0, 0));
        QCOMPARE(Copied(members), QStringLiteral("a\tint\t1"));
        UseLibraryFolder(CARVELOT_SIMULATOR "/libraries");
    }

    void theListsOfDialogsCopyTheirSelectedRows() {
        const JDEIni ini;
        const TestFolder folder;
        WriteBelow(folder, "jde/a/spec/glbltbl.xdb", "123");
        WriteBelow(folder, "jde/b/spec/glbltbl.xdb", "1");
        ini.Write("[INSTALL]\nB9=" + folder.Path("jde") + "\n");
        CGBLTables tables;
        tables.show();
        auto& files = *tables.findChild<CListCtrl*>();
        QCOMPARE(Copied(files), files.Model().index(0, 0).data().toString() + QStringLiteral("\t3\n") +
                                    files.Model().index(1, 0).data().toString() + QStringLiteral("\t1"));

        theApp().m_traceApps = {{"a.exe", true}, {"b.exe", false}};
        COptionsDlg options(theApp());
        options.show();
        auto& applications = *options.findChild<QTreeWidget*>();
        applications.selectAll();
        QCOMPARE(Copied(applications), QStringLiteral("b.exe\tOff\na.exe\tOn"));

        const QString log = m_pRun->Write(QStringLiteral("a.log"), Log());
        m_pRun->Open(log);
        CWindowsDlg windows(m_pRun->Frame().ClientArea());
        windows.show();
        QCOMPARE(Copied(*windows.findChild<QTreeWidget*>()), log + QLatin1Char('\t') + log);

        CJDESettings store;
        store.m_strOutput = "FILE";
        CSettings settings(store);
        settings.show();
        auto& grid = *settings.findChild<QTreeWidget*>(QStringLiteral("Grid"));
        grid.setCurrentItem(
            grid.findItems(QStringLiteral("Output"), Qt::MatchExactly | Qt::MatchRecursive).value(0));
        QCOMPARE(Copied(grid), QStringLiteral("Output\tFILE"));
    }
};

QTEST_MAIN(CopyRowsTest)
#include "CopyRowsTest.moc"
