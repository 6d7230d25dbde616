#include "ui/Accessible.h"
#include "ui/SessionSupport.h"

#include "support/JDEInstallation.h"
#include "ui/app/CustomizeDlg.h"
#include "ui/app/FrameToolBars.h"
#include "ui/app/OptionsDlg.h"
#include "ui/app/Requests.h"
#include "ui/cachebrowser/CacheDlg.h"
#include "ui/cachebrowser/CacheDocument.h"
#include "ui/cachebrowser/CacheFrame.h"
#include "ui/kit/PlainText.h"
#include "ui/kit/ToolBar.h"
#include "ui/kit/WindowsDlg.h"
#include "ui/tools/GBLTables.h"
#include "ui/tools/Settings.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QLabel>
#include <QListWidget>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QStatusBar>
#include <QTabBar>
#include <QTimer>
#include <QToolTip>
#include <QTreeWidget>

#ifndef Q_OS_WIN
#include <sys/stat.h>
#endif

using namespace carvelot;
using namespace carvelot::test;

namespace {

// Markup, an entity, a mark of a key, the sign for unsaved changes, a place for an argument. It can be a
// file's name and a word of a log.
const QString kHostile = QStringLiteral("<b>R&D<i>&lt;[*]%1%2&Co");
const std::string kHostileUtf8 = ToUtf8(kHostile);
// As much of it as the name of a file can hold.
#ifdef Q_OS_WIN
const QString kHostileName = QStringLiteral("R&D&lt;b&gt;%1%2&Co");
#else
const QString kHostileName = kHostile;
#endif
// A bracket would end a cache's name.
const QString kCache = QStringLiteral("<b>R&D<i>&lt;%1%2&Co");
const std::string kCacheUtf8 = ToUtf8(kCache);

QMenu* MenuOf(CMainFrame& frame, const char* title) {
    for (QAction* action : frame.menuBar()->actions()) {
        if (action->text().remove(QLatin1Char('&')) == QLatin1String(title)) {
            return action->menu();
        }
    }
    return nullptr;
}

QStringList SaidOfMenu(QMenu& menu) {
    menu.popup(QPoint(10, 10));
    const QStringList said = SaidOfParts(&menu);
    menu.close();
    return said;
}

std::vector<std::string> Log() {
    return DebugLog({Line("10:00:00.000001", ("SELECT " + kHostileUtf8 + " FROM " + kHostileUtf8).c_str()),
                     Line("10:00:02.000001", "Exiting DBPerformRequest"),
                     Line("10:00:05.000001", ("ERROR: " + kHostileUtf8).c_str()),
                     Line("10:00:05.250007", ("Entering jdeCacheInit - Name:[" + kCacheUtf8 + "]").c_str()),
                     Line("10:00:05.250008", "Created new cache - hCache:[e5762678]"),
                     Line("10:00:05.250009", "Calling Business function F from Level 1 (BSFNLevel = 1)")});
}

} // namespace

class PlainTextTest : public CSessionTest {
    Q_OBJECT

private slots:
    void init() { StartRun(); }
    void cleanup() {
        QToolTip::hideText();
        EndRun();
    }

    void aLogsNameStandsAsItIsInTitlesTabsMenusAndTheListOfWindows() {
        CMainFrame& frame = m_pRun->Frame();
        const QString path = m_pRun->Path(kHostileName + QStringLiteral(".log"));
        CChildFrame* child = m_pRun->Open(kHostileName + QStringLiteral(".log"), Log());
        QVERIFY(child != nullptr);
        QCOMPARE(Said(&frame), path + QStringLiteral(" - Carvelot"));
        auto* tabs = frame.ClientArea().findChild<QTabBar*>();
        QCOMPARE(SaidOfParts(tabs).value(0), path);
        QCOMPARE(SaidByTip(*tabs, tabs->tabRect(0).center()), path);

        // Menus cut a path in its middle.
        const auto entry = [&frame](const QString& text) {
            return QStringLiteral("1 ") + frame.fontMetrics().elidedText(text, Qt::ElideMiddle, 420);
        };
        QVERIFY(SaidOfMenu(*MenuOf(frame, "File")).contains(entry(QDir::toNativeSeparators(path))));
        QVERIFY(SaidOfMenu(*MenuOf(frame, "Window")).contains(entry(path)));

        CWindowsDlg dialog(frame.ClientArea());
        dialog.show();
        auto& list = *dialog.findChild<QTreeWidget*>();
        QCOMPARE(SaidCell(list, 0, 0), path);
        QCOMPARE(SaidCell(list, 0, 1), path);
        QCOMPARE(SaidByTip(list, 0, 0), path);
    }

    void aLogsTextsStandAsTheyAreInTreesListsAndTheirTips() {
        CMainFrame& frame = m_pRun->Frame();
        CChildFrame* child = m_pRun->Open(QStringLiteral("a.log"), Log());
        Select(child, "Process - 5");
        CDetailView& calls = child->DetailView();
        const QString statement = QStringLiteral("SELECT %1 FROM %2").arg(kHostile, kHostile);
        QCoreApplication::processEvents();
        QVERIFY(SaidCell(calls, 0, 0).endsWith(statement));
        frame.resize(420, 600);
        QVERIFY(SaidByTip(calls, 0, 0).endsWith(statement));
        Click(calls, calls.Model().index(0, 0));
        QCOMPARE(Said(&frame.m_wndRawDataPane.Edit(), QAccessible::Value), statement);

        frame.m_wndFindPane.SearchEdit().setText(kHostile);
        frame.m_wndFindPane.OnFind();
        QCOMPARE(Said(&frame.m_wndFindPane.SearchEdit(), QAccessible::Value), kHostile);
        const auto checkList = [](CDockablePane& pane, CListCtrl& list, int column, const QString& text) {
            CSessionRun::ShowPane(pane);
            QCOMPARE(SaidCell(list, 0, column), text);
            list.header()->resizeSection(column, 30);
            QCOMPARE(SaidByTip(list, 0, column), text);
        };
        checkList(frame.m_wndFindPane, frame.m_wndFindPane.List(), 2, statement);
        checkList(frame.m_wndSQLPane, frame.m_wndSQLPane.List(), 0, kHostile);
        checkList(frame.m_wndLongTasksPane, frame.m_wndLongTasksPane.List(), 3, statement);
        checkList(frame.m_wndErrorPane, frame.m_wndErrorPane.List(), 2, QStringLiteral("ERROR: ") + kHostile);
        checkList(frame.m_wndTimingGapsPane, frame.m_wndTimingGapsPane.List(), 3,
                  QStringLiteral("ERROR: ") + kHostile);

        CSessionRun::ShowPane(frame.m_wndCachePane);
        CCacheTree& caches = frame.m_wndCachePane.Tree();
        const QString cache = kCache + QStringLiteral(" Handle:[e5762678] Instance:[]");
        QCOMPARE(SaidCell(caches, 0, 0), cache);
        frame.m_wndCachePane.setFloating(true);
        frame.m_wndCachePane.resize(120, 200);
        QCoreApplication::processEvents();
        QCOMPARE(SaidByTip(caches, 0, 0), cache);
    }

    void aProcessesAndAUsersNameStandAsTheyAre() {
        CMainFrame& frame = m_pRun->Frame();
        theApp().AnalyzeProcess(kHostile, m_pRun->Write(QStringLiteral("a.log"), Log()), 5);
        auto* child = qobject_cast<CChildFrame*>(frame.ActiveChild());
        const QString node = QStringLiteral("Process - 5 - %1 (5.250008)").arg(kHostile);
        QCOMPARE(SaidCell(child->ThreadView(), 0, 0), node);
        QCOMPARE(SaidByTip(child->ThreadView(), 0, 0), node);

        child =
            m_pRun->Open(QStringLiteral("jas.log"), JASLog({JASLine("09:00:01,000", "<b>&R[*]%1<i>", "x")}));
        const QString user = QStringLiteral("<b>&R[*]%1<i>");
        Select(child, "<b>");
        QVERIFY(frame.m_wndErrorPane.GetCaption().endsWith(user));
        QLineEdit* caption = frame.m_wndErrorPane.findChild<QLineEdit*>();
        QCOMPARE(Said(caption, QAccessible::Value), QStringLiteral(" User: ") + user);
        QVERIFY(Said(&frame).endsWith(QStringLiteral(" - User: %1 - Carvelot").arg(user)));

        frame.m_wndProcessPane.m_fnEnumerateProcesses = [](std::vector<platform::ProcessEntry>& found) {
            found = {{4711, kHostileUtf8}};
            return true;
        };
        theApp().m_traceApps.push_back({kHostileUtf8, true});
        frame.m_wndProcessPane.RefreshProcessList();
        CSessionRun::ShowPane(frame.m_wndProcessPane);
        CListCtrl& processes = frame.m_wndProcessPane.List();
        QCOMPARE(SaidCell(processes, 0, 1), kHostile);
        processes.header()->resizeSection(1, 30);
        QCOMPARE(SaidByTip(processes, 0, 1), kHostile);

        m_pRun->m_user.m_fnInDialog = [](QDialog& dialog) {
            QCOMPARE(SaidCell(*dialog.findChild<QTreeWidget*>(), 0, 0), kHostile);
            dialog.reject();
        };
        frame.RunCommand(ID_TOOLS_OPTIONS);
        QCOMPARE(m_pRun->m_user.m_nDialogs, 1);
    }

    void aCachesAndADefinitionsTextsStandAsTheyAre() {
        CMainFrame& frame = m_pRun->Frame();
        m_pRun->m_user.m_fnInDialog = [](QDialog& dialog) {
            QCOMPARE(Said(dialog.findChild<QLineEdit*>(QStringLiteral("CacheName")), QAccessible::Value),
                     kHostile);
            QCOMPARE(Said(dialog.findChild<QLineEdit*>(QStringLiteral("Instance")), QAccessible::Value),
                     kHostile);
            dialog.findChild<QLineEdit*>(QStringLiteral("ColumnName"))
                ->setText(QStringLiteral("<b>R&D<i>%1"));
            dialog.findChild<QComboBox*>()->setCurrentText(QStringLiteral("int"));
            QTest::mouseClick(dialog.findChild<QPushButton*>(QStringLiteral("Add")), Qt::LeftButton);
            QCOMPARE(SaidCell(*dialog.findChild<CListCtrl*>(), 0, 0), QStringLiteral("<b>R&D<i>%1"));
            QTest::mouseClick(dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok),
                              Qt::LeftButton);
        };
        BrowseCache(5, kHostileUtf8, kHostileUtf8, kHostileUtf8);
        auto* child = qobject_cast<CCacheFrame*>(frame.ActiveChild());
        QVERIFY(child != nullptr);
        const QString title = QStringLiteral("Cache Browser: ") + kHostile;
        QCOMPARE(Said(&frame), title + QStringLiteral(" - Carvelot"));
        QCOMPARE(SaidOfParts(frame.ClientArea().findChild<QTabBar*>()).value(0), title);
        QCOMPARE(Said(child->DSView().findChild<QLineEdit*>(QStringLiteral("Handle")), QAccessible::Value),
                 kHostile);
        QCOMPARE(SaidCell(child->DSView().List(), 0, 0), QStringLiteral("<b>R&D<i>%1"));
        const QString column = QStringLiteral("<b>R&D<i>%1 4 1");
        QCOMPARE(SaidOfParts(&child->DataView()).value(0), column);
        QCOMPARE(SaidByTip(*child->DataView().header(), 0), column);
    }

    void aSettingStandsAsItIsInTheGridAndItsDescription() {
        CJDESettings settings;
        settings.m_strDebugFile = kHostileUtf8;
        CJASLogProperties properties;
        properties.m_strSection = kHostileUtf8;
        properties.m_strFile = kHostileUtf8;
        settings.m_logProperties = {properties};
        CSettings dialog(settings);
        dialog.show();
        auto& grid = *dialog.findChild<QTreeWidget*>(QStringLiteral("Grid"));
        QTreeWidgetItem* group = grid.findItems(kHostile, Qt::MatchExactly | Qt::MatchRecursive, 0).value(0);
        QVERIFY(group != nullptr);
        grid.setCurrentItem(group);
        QStringList labels;
        for (QLabel* label : dialog.findChildren<QLabel*>()) {
            labels << Said(label);
        }
        QVERIFY(labels.contains(kHostile));
        QTreeWidgetItem* file = grid.findItems(kHostile, Qt::MatchExactly | Qt::MatchRecursive, 1).value(0);
        QVERIFY(file != nullptr);
        grid.setCurrentItem(file);
        grid.editItem(file, 1);
        auto* edit = grid.viewport()->findChild<QLineEdit*>();
        QVERIFY(edit != nullptr);
        QCOMPARE(Said(edit, QAccessible::Value), kHostile);
    }

    void aSpecFilesPathStandsAsItIs() {
        const JDEIni ini;
        const TestFolder folder;
        WriteBelow(folder, "jde/" + ToUtf8(kHostileName) + "/spec/glbltbl.xdb", "x");
        ini.Write("[INSTALL]\nB9=" + folder.Path("jde") + "\n");
        CGBLTables dialog;
        dialog.show();
        auto& list = *dialog.findChild<CListCtrl*>();
        QVERIFY(SaidCell(list, 0, 0).contains(kHostileName));
        list.header()->resizeSection(0, 60);
        QCOMPARE(SaidByTip(list, 0, 0), SaidCell(list, 0, 0));
    }

    void aToolbarsNameStandsAsItIs() {
        CMainFrame& frame = m_pRun->Frame();
        CToolBar* toolBar = frame.Bars().New(kHostile);
        QCOMPARE(Said(toolBar), kHostile);
        const std::unique_ptr<QMenu> menu(frame.createPopupMenu());
        QVERIFY(SaidOfMenu(*menu).contains(kHostile));
        QVERIFY(SaidOfMenu(*menu).contains(QStringLiteral("Errors/Warnings")));
        CCustomizeDlg dialog(frame);
        dialog.show();
        QVERIFY(SaidOfParts(dialog.findChild<QListWidget*>(QStringLiteral("ToolBars"))).contains(kHostile));
        auto* choice = dialog.findChild<QComboBox*>(QStringLiteral("ToolBarChoice"));
        choice->setCurrentIndex(choice->count() - 1);
        QCOMPARE(Said(choice, QAccessible::Value), kHostile);
        // Also after it got another one.
        m_pRun->m_user.m_strTextAnswer = kHostile + QLatin1Char('2');
        auto* toolBars = dialog.findChild<QListWidget*>(QStringLiteral("ToolBars"));
        toolBars->setCurrentRow(toolBars->count() - 1);
        dialog.findChild<QPushButton*>(QStringLiteral("Rename"))->click();
        QVERIFY(SaidOfMenu(*std::unique_ptr<QMenu>(frame.createPopupMenu()))
                    .contains(kHostile + QLatin1Char('2')));
    }

    void aMessageAndTheStatusBarShowTheirTextsAsTheyAre() {
        SetUserInterface(nullptr); // the real one
        QString said;
        QTimer::singleShot(0, this, [&said] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            if (box == nullptr) {
                return;
            }
            for (QLabel* label : box->findChildren<QLabel*>()) {
                if (!label->text().isEmpty()) {
                    said = Said(label);
                }
            }
            box->button(QMessageBox::Ok)->click();
        });
        UserInterface().ShowMessage(kHostile);
        SetUserInterface(&m_pRun->m_user);
        QCOMPARE(said, kHostile);

        m_pRun->Frame().statusBar()->showMessage(kHostile);
        QCOMPARE(Said(m_pRun->Frame().statusBar()), kHostile);
    }

    void aMessageOfAFailedExportNamesTheFileAsItIs() {
        CMainFrame& frame = m_pRun->Frame();
        Select(m_pRun->Open(QStringLiteral("a.log"), Log()), "Process - 5");
        CListCtrl& list = frame.m_wndTimingGapsPane.List();
        list.setCurrentIndex(list.Model().index(0, 0));
        const QString path =
            m_pRun->Path(QStringLiteral("missing")) + QLatin1Char('/') + kHostile + QStringLiteral(".csv");
        m_pRun->m_user.m_strSaveAnswer = path;
        m_pRun->m_user.m_strMenuChoice = QStringLiteral("Export");
        emit list.customContextMenuRequested(QPoint(5, 5));
        QVERIFY(m_pRun->m_user.m_listMessages.constLast().contains(path));
    }

#ifndef Q_OS_WIN
    // Markup would look for its picture: at a pipe, for as long as nobody writes to it.
    void aTipFetchesNoPicture() {
        const QString pipe = m_pRun->Path(QStringLiteral("pipe"));
        QCOMPARE(mkfifo(pipe.toLocal8Bit().constData(), 0600), 0);
        const QString text = QStringLiteral("ERROR: <img src='%1'>").arg(pipe);
        Select(m_pRun->Open(QStringLiteral("a.log"),
                            DebugLog({Line("10:00:00.000001", text.toUtf8().constData())})),
               "Process - 5");
        CErrorPane& pane = m_pRun->Frame().m_wndErrorPane;
        CSessionRun::ShowPane(pane);
        pane.List().header()->resizeSection(2, 30);
        QCOMPARE(SaidByTip(pane.List(), 0, 2), text);
    }
#endif

    void aCaptionIsOneLineWithEveryMarkDoubled() {
        QCOMPARE(PlainCaption(QStringLiteral("a&b\tc\nd&&")), QStringLiteral("a&&b c d&&&&"));
        QCOMPARE(PlainTitle(QStringLiteral("a[*]b")), QStringLiteral("a[*][*]b"));
    }
};

QTEST_MAIN(PlainTextTest)
#include "PlainTextTest.moc"
