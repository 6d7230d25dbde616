#include "ui/UiSupport.h"

#include "platform/Registry.h"
#include "ui/app/CustomizeDlg.h"
#include "ui/app/FrameToolBars.h"
#include "ui/kit/Icons.h"
#include "ui/kit/LookStyle.h"
#include "ui/kit/ToolBar.h"
#include "ui/kit/WindowsDlg.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QCryptographicHash>
#include <QFile>
#include <QLabel>
#include <QListWidget>
#include <QMimeData>
#include <QPainter>
#include <QPushButton>
#include <QSet>
#include <QStatusBar>
#include <QStyleOption>
#include <QTabBar>
#include <QTreeWidget>

#include <algorithm>

using namespace carvelot;
using namespace carvelot::test;

namespace {

QStringList DockTabs(const CMainFrame& frame, QString* pCurrent = nullptr) {
    for (QTabBar* pBar : frame.findChildren<QTabBar*>()) {
        if (pBar->isVisible() && pBar->count() == 9) {
            QStringList listTexts;
            for (int n = 0; n < pBar->count(); ++n)
                listTexts << pBar->tabText(n);
            if (pCurrent != nullptr)
                *pCurrent = pBar->tabText(pBar->currentIndex());
            return listTexts;
        }
    }
    return {};
}

const QStringList kPaneOrder{"JDE Processes", "SQL Table Access", "Timing Gaps",
                             "Find",          "Long Tasks",       "Raw Data",
                             "Cache Details", "Errors/Warnings",  "BSFN Calls"};

// A person's hands in the Customize dialog, on a toolbar of the person's own.
class CCustomizeHands {
public:
    CCustomizeHands(CMainFrame& frame, CFakeInterface& user) : m_frame(frame) {
        frame.RunCommand(ID_VIEW_CUSTOMIZE);
        m_pDialog = frame.CustomizeDialog();
        user.m_strTextAnswer = QStringLiteral("Mine");
        Press("New");
    }
    CToolBar& ToolBar() const { return *m_frame.Bars().All().constLast(); }
    QPushButton& Button(const char* pszName) const { return *m_pDialog->findChild<QPushButton*>(pszName); }
    QListWidget& List(const char* pszName) const { return *m_pDialog->findChild<QListWidget*>(pszName); }
    void Press(const char* pszName) const { QTest::mouseClick(&Button(pszName), Qt::LeftButton); }
    QListWidgetItem* Choose(const char* pszList, const char* pszText) const {
        const QList<QListWidgetItem*> listItems =
            List(pszList).findItems(QLatin1String(pszText), Qt::MatchExactly);
        List(pszList).setCurrentItem(listItems.value(0));
        return listItems.value(0);
    }
    void Add(const char* pszCommand) const {
        Choose("Commands", pszCommand);
        Press("Add");
    }
    // The buttons as the dialog lists them, and as they stand on the toolbar from its beginning.
    QStringList Listed() const {
        QStringList listTexts;
        for (int n = 0; n < List("Buttons").count(); ++n)
            listTexts << List("Buttons").item(n)->text();
        return listTexts;
    }
    QStringList Standing() const {
        QCoreApplication::processEvents();
        QMap<int, QString> mapTexts;
        for (const QAction* pAction : ToolBar().actions()) {
            const QWidget* pButton = ToolBar().widgetForAction(const_cast<QAction*>(pAction));
            if (pAction->isSeparator())
                mapTexts[pButton->x()] = QStringLiteral("(Separator)");
            else if (!pAction->text().isEmpty())
                mapTexts[pButton->x()] = pAction->text().remove(u'&');
        }
        return mapTexts.values();
    }

private:
    CMainFrame& m_frame;
    CCustomizeDlg* m_pDialog;
};

void StoreText(const char* pszName, const std::string& strText) { WriteWorkspaceString(pszName, strText); }

} // namespace

class MainFrameTest : public QObject {
    Q_OBJECT

private slots:
    void init() { m_pFolder = std::make_unique<QTemporaryDir>(); }

    void withoutLibrariesOneMessageComesBeforeTheWindowAndOneAfter() {
        CFakeInterface user;
        const CRun run(*m_pFolder);
        QVERIFY(run.m_bStarted);
        QCOMPARE(user.m_listMessages,
                 (QStringList{"Cannot Load Skelmond.DLL Error: 126", "Cannot Load jdekrnl.DLL"}));
        QCOMPARE(user.m_listWindowShown, (QList<bool>{false, true}));
    }

    void aFailureOfOleEndsTheRunWithItsMessage() {
        CFakeInterface user;
        theApp().m_fnInitializeOle = [] { return false; };
        const CRun run(*m_pFolder);
        theApp().m_fnInitializeOle = [] { return true; };
        QVERIFY(!run.m_bStarted);
        QVERIFY(MainFrame() == nullptr);
        QCOMPARE(
            user.m_listMessages,
            QStringList{
                "OLE initialization failed.  Make sure that the OLE libraries are the correct version."});
    }

    void anEmptyWindowStartsWithTheKeyboardInItsMiddle() {
        CFakeInterface user;
        const CRun run(*m_pFolder);
        QApplication::setActiveWindow(&run.Frame());
        QCOMPARE(QApplication::focusWidget(), static_cast<QWidget*>(&run.Frame().ClientArea()));
    }

    void anEmptyCommandLineOpensNoDocument() {
        CFakeInterface user;
        const CRun run(*m_pFolder);
        QVERIFY(run.Area().Children().isEmpty());
        QCOMPARE(run.Frame().windowTitle(), QStringLiteral("Carvelot"));
    }

    void aFileOnTheCommandLineIsOpen() {
        CFakeInterface user;
        const CRun run(*m_pFolder, {"a.log"});
        QCOMPARE(run.Area().Children().size(), 1);
        QCOMPARE(run.Frame().windowTitle(), QStringLiteral("a.log - Carvelot"));
    }

    void aFileOnTheCommandLineThatCannotBeOpenedEndsTheRunBeforeTheWindowShows() {
        CFakeInterface user;
        const CRun run(*m_pFolder, {"bad"});
        QVERIFY(!run.m_bStarted);
        QCOMPARE(user.m_listWindowShown, QList<bool>{false});
    }

    void ninePanesStandAsOneGroupOfTabsWithBsfnCallsInFront() {
        CFakeInterface user;
        const CRun run(*m_pFolder);
        QString strCurrent;
        QCOMPARE(DockTabs(run.Frame(), &strCurrent), kPaneOrder);
        QCOMPARE(strCurrent, QStringLiteral("BSFN Calls"));
    }

    void aPaneThatWasClosedComesBackFromTheViewMenu() {
        CFakeInterface user;
        const CRun run(*m_pFolder);
        CMainFrame& frame = run.Frame();
        frame.m_wndFindPane.close();
        QVERIFY(frame.m_wndFindPane.isHidden());
        CPersonalMenu* pView = run.OpenMenu("View");
        QMenu* pBars = Entry(*pView, "&Toolbars and Docking Windows")->menu();
        emit pBars->aboutToShow();
        QVERIFY(!Entry(*pBars, "Find")->isChecked());
        Entry(*pBars, "Find")->trigger();
        pView->close();
        QVERIFY(!frame.m_wndFindPane.isHidden());
    }

    void theLayoutIsKeptBetweenRuns() {
        CFakeInterface user;
        {
            CRun run(*m_pFolder);
            run.Frame().m_wndFindPane.close();
            run.Frame().m_wndRawDataPane.setFloating(true);
            run.Frame().statusBar()->hide();
        }
        const CRun run(*m_pFolder);
        QVERIFY(run.Frame().m_wndFindPane.isHidden());
        QVERIFY(run.Frame().m_wndRawDataPane.isFloating());
        QVERIFY(run.Frame().statusBar()->isHidden());
        run.Frame().RunCommand(ID_VIEW_RESTORE_LAYOUT);
        QTest::qWait(50);
        QString strCurrent;
        QCOMPARE(DockTabs(run.Frame(), &strCurrent), kPaneOrder);
        QCOMPARE(strCurrent, QStringLiteral("BSFN Calls"));
        QVERIFY(!run.Frame().statusBar()->isHidden());
    }

    void theNameOnAPanesSelectedTabIsWholeWhereAnotherTabsWouldBe() {
        int nOffice2007 = ID_APPLOOK_OFFICE_2007_BLUE;
        const CLookStyle style(LookOf(ID_APPLOOK_VS_2008, nOffice2007));
        const auto fnPicture = [&style](const char* pszName) {
            QStyleOptionTab option;
            option.shape = QTabBar::RoundedSouth;
            option.state = QStyle::State_Enabled | QStyle::State_Selected;
            option.text = QString::fromLatin1(pszName);
            option.fontMetrics = QFontMetrics(QApplication::font());
            constexpr int kBesideTheName = 14;
            option.rect =
                QRect(0, 0, option.fontMetrics.horizontalAdvance(option.text) + kBesideTheName + 2, 24);
            QImage image(option.rect.size(), QImage::Format_RGB32);
            image.fill(Qt::white);
            QPainter painter(&image);
            painter.setFont(QApplication::font());
            style.drawControl(QStyle::CE_TabBarTabLabel, &option, &painter, nullptr);
            return image;
        };
        // Names whose middle differs look alike once it is left out.
        QCOMPARE(fnPicture("Cache bd Details").size(), fnPicture("Cache db Details").size());
        QVERIFY(fnPicture("Cache bd Details") != fnPicture("Cache db Details"));
    }

    void aPaneThatFloatsForTheFirstTimeStandsElsewhereAndNoLarger() {
        CFakeInterface user;
        CRun run(*m_pFolder);
        run.Frame().resize(1200, 800);
        QCoreApplication::processEvents();
        CDockablePane& pane = run.Frame().m_wndBSFNPane;
        const QRect docked(pane.mapToGlobal(QPoint()), pane.size());
        auto* pFloat = pane.findChild<QAbstractButton*>(QStringLiteral("qt_dockwidget_floatbutton"));
        QVERIFY(pFloat != nullptr);
        QTest::mouseClick(pFloat, Qt::LeftButton);
        QVERIFY(pane.isFloating());
        QVERIFY(pane.geometry().topLeft() != docked.topLeft());
        QVERIFY(pane.width() < docked.width() && pane.height() <= docked.height());
        QVERIFY(pane.screen()->availableGeometry().contains(pane.geometry()));
        // Back again, and it floats where the user left it.
        pane.setGeometry(100, 100, 500, 250);
        QTest::mouseClick(pFloat, Qt::LeftButton);
        QVERIFY(!pane.isFloating());
        QTest::mouseClick(pFloat, Qt::LeftButton);
        QCOMPARE(pane.geometry(), QRect(100, 100, 500, 250));
    }

    // A window manager keeps a floating pane before a main window that it knows already.
    void floatingPanesComeUpAfterTheMainWindow() {
        CFakeInterface user;
        {
            CRun run(*m_pFolder);
            run.Frame().m_wndRawDataPane.setFloating(true);
            run.Frame().m_wndFindPane.setFloating(true);
            run.Frame().m_wndFindPane.close();
        }
        class CWatch : public QObject {
        public:
            bool eventFilter(QObject* pObject, QEvent* pEvent) override {
                if (pEvent->type() == QEvent::Show && pObject->isWidgetType() &&
                    static_cast<QWidget*>(pObject)->isWindow() &&
                    !static_cast<QWidget*>(pObject)->testAttribute(Qt::WA_DontShowOnScreen))
                    m_listShown << pObject->metaObject()->className();
                return false;
            }
            QStringList m_listShown;
        } watch;
        qApp->installEventFilter(&watch);
        CRun run(*m_pFolder);
        QTRY_VERIFY(run.Frame().m_wndRawDataPane.isVisible());
        QCOMPARE(watch.m_listShown, (QStringList{"carvelot::CMainFrame", "carvelot::CRawDataPane"}));
        QVERIFY(run.Frame().m_wndRawDataPane.isFloating());
        QVERIFY(run.Frame().m_wndFindPane.isHidden());
    }

    void aDamagedLayoutIsIgnored_data() {
        QTest::addColumn<QString>("damage");
        for (const char* pszKind : {"empty", "text", "version", "truncated", "flipped", "sealed garbage"})
            QTest::newRow(pszKind) << pszKind;
    }

    void aDamagedLayoutIsIgnored() {
        QFETCH(QString, damage);
        CFakeInterface user;
        {
            CRun run(*m_pFolder);
            run.Frame().m_wndFindPane.close();
        }
        QByteArray layout = QByteArray::fromStdString(GetWorkspaceString("Layout", ""));
        QVERIFY(layout.size() > 100);
        if (damage == "empty")
            layout.clear();
        else if (damage == "text")
            layout = "no layout";
        else if (damage == "version")
            layout.replace(0, 1, "9");
        else if (damage == "truncated")
            layout.chop(layout.size() / 2);
        else if (damage == "flipped")
            layout[layout.size() / 2] = layout[layout.size() / 2] == 'A' ? 'B' : 'A';
        else // the check sum of "garbage"
            layout = "1:" + QCryptographicHash::hash("garbage", QCryptographicHash::Sha1).toHex().left(12) +
                     ":" + QByteArray("garbage").toBase64();
        StoreText("Layout", layout.toStdString());
        StoreText("Geometry", layout.toStdString());
        const CRun run(*m_pFolder);
        QVERIFY(run.m_bStarted);
        QCOMPARE(DockTabs(run.Frame()), kPaneOrder);
    }

    void theMenusFollowTheWindowInFront() {
        CFakeInterface user;
        CRun run(*m_pFolder);
        QCOMPARE(run.Menus(), (QStringList{"File", "Tools", "View", "Help"}));
        CTestFrame* pSession = run.Open("a.log");
        QCOMPARE(run.Menus(), (QStringList{"File", "Session", "Tools", "View", "Window", "Help"}));
        CTestFrame* pCache = run.OpenCache();
        QCOMPARE(run.Menus(), (QStringList{"File", "Cache", "Tools", "View", "Window", "Help"}));
        run.Area().Activate(*pSession);
        QCOMPARE(run.Menus(), (QStringList{"File", "Session", "Tools", "View", "Window", "Help"}));
        pSession->CloseWindow();
        pCache->CloseWindow();
        QCOMPARE(run.Menus(), (QStringList{"File", "Tools", "View", "Help"}));
    }

    void aMenuShowsItsBasicCommandsFirstAndAllWhenExpanded() {
        CFakeInterface user;
        CRun run(*m_pFolder);
        run.Open("a.log");
        CPersonalMenu* pFile = run.OpenMenu("File");
        QVERIFY(!pFile->IsExpanded());
        QVERIFY(Entry(*pFile, "&Open...")->isVisible());
        QVERIFY(Entry(*pFile, "E&xit")->isVisible());
        QVERIFY(!Entry(*pFile, "&Close")->isVisible());
        QTRY_VERIFY_WITH_TIMEOUT(pFile->IsExpanded(), 3000);
        QVERIFY(Entry(*pFile, "&Close")->isVisible());
        pFile->close();
        CPersonalMenu* pSession = run.OpenMenu("Session"); // nothing basic in it
        QCOMPARE(VisibleTexts(*pSession), (QStringList{"Analyze", "Clear Debug File", "Open as Text"}));
        pSession->close();
    }

    void theLetterOfAHiddenCommandReachesItAtOnce() {
        CFakeInterface user;
        CRun run(*m_pFolder);
        run.Open("a.log");
        CPersonalMenu* pFile = run.OpenMenu("File");
        QVERIFY(!Entry(*pFile, "&Close")->isVisible());
        QTest::keyClick(pFile, Qt::Key_O, Qt::ShiftModifier); // of an entry that shows: nothing more comes up
        QVERIFY(!pFile->IsExpanded());
        pFile = run.OpenMenu("File");
        QTest::keyClick(pFile, Qt::Key_C);
        QVERIFY(!pFile->isVisible());
        QVERIFY(run.Area().Children().isEmpty());
    }

    void aCommandThatWasUsedStaysInTheShortMenu() {
        CFakeInterface user;
        CRun run(*m_pFolder);
        run.Open("a.log");
        CPersonalMenu* pFile = run.OpenMenu("File");
        Entry(*pFile, "&Close")->trigger();
        pFile->close();
        pFile = run.OpenMenu("File");
        QVERIFY(Entry(*pFile, "&Close")->isVisible());
        pFile->close();
    }

    void theChevronExpandsAMenuByMouseWithoutClosingIt() {
        CFakeInterface user;
        CRun run(*m_pFolder);
        CPersonalMenu* pFile = run.OpenMenu("File");
        QAction* pChevron = Entry(*pFile, "\u00BB");
        if (pChevron == nullptr)
            pChevron = pFile->actions().constLast();
        QTest::mouseClick(pFile, Qt::LeftButton, {}, pFile->actionGeometry(pChevron).center());
        QVERIFY(pFile->isVisible());
        QVERIFY(pFile->IsExpanded());
        pFile->close();
    }

    void theTipsOfEntriesStandInTheStatusLineAndOnButtons() {
        CFakeInterface user;
        const CRun run(*m_pFolder);
        const QAction& open = *run.Frame().CommandAction(ID_FILE_OPEN);
        QCOMPARE(open.statusTip(), QStringLiteral("Open debug log file"));
        QCOMPARE(open.toolTip(), QStringLiteral("Open"));
        QCOMPARE(open.shortcut(), QKeySequence(QStringLiteral("Ctrl+O")));
        QMenuBar& bar = *run.Frame().menuBar();
        bar.setActiveAction(bar.actions().constFirst());
        QMenu* pFile = bar.actions().constFirst()->menu();
        QTest::keyClick(pFile, Qt::Key_Down);
        QCOMPARE(pFile->activeAction(), Entry(*pFile, "&Open..."));
        QCOMPARE(run.Frame().statusBar()->currentMessage(), QStringLiteral("Open debug log file"));
        pFile->close();
    }

    void sessionCommandsAreEnabledOnlyWhereADocumentAnswersThem() {
        CFakeInterface user;
        CRun run(*m_pFolder);
        CTestFrame* pFirst = run.Open("a.log");
        CTestFrame* pSecond = run.Open("b.log");
        int nAnalyzed = 0;
        pFirst->GetActiveDocument()->AddCommand(ID_SESSION_ANALYZE, [&nAnalyzed] { ++nAnalyzed; });
        run.Frame().UpdateCommands();
        QVERIFY(!run.Frame().CommandAction(ID_SESSION_ANALYZE)->isEnabled());
        run.Area().Activate(*pFirst);
        QVERIFY(run.Frame().CommandAction(ID_SESSION_ANALYZE)->isEnabled());
        run.Frame().CommandAction(ID_SESSION_ANALYZE)->trigger();
        QCOMPARE(nAnalyzed, 1);
        QVERIFY(pSecond != nullptr);
    }

    void theToolsMenuOffersAllWorkstationTools() {
        CFakeInterface user;
        const CRun run(*m_pFolder);
        CPersonalMenu* pTools = run.OpenMenu("Tools");
        QCOMPARE(VisibleTexts(*pTools),
                 (QStringList{"Global Tables", "Convert Dates", "JDE Settings", "Options"}));
        for (const char* pszText : {"Global Tables", "Convert Dates", "JDE Settings", "Options"})
            QVERIFY2(Entry(*pTools, pszText)->isEnabled(), pszText);
        pTools->close();
    }

    void ctrlOAsksForALogAndOpensIt() {
        CFakeInterface user;
        const CRun run(*m_pFolder);
        user.m_strOpenAnswer = QStringLiteral("chosen.log");
        run.Frame().activateWindow();
        QTest::keyClick(&run.Frame(), Qt::Key_O, Qt::ControlModifier);
        QCOMPARE(user.m_listQuestions.size(), 1U);
        QCOMPARE(run.Frame().windowTitle(), QStringLiteral("chosen.log - Carvelot"));
    }

    void ctrlNRunsFileNew() {
        CFakeInterface user;
        const CRun run(*m_pFolder);
        run.Frame().activateWindow();
        QTest::keyClick(&run.Frame(), Qt::Key_N, Qt::ControlModifier);
        QCOMPARE(run.Frame().windowTitle(), QStringLiteral("new - Carvelot"));
    }

    void aFailedOpenLeavesNoWindow() {
        CFakeInterface user;
        CRun run(*m_pFolder);
        const int nDestroyed = CTestFrame::s_nDestroyed;
        QVERIFY(run.Open("bad") == nullptr);
        QVERIFY(run.Area().Children().isEmpty());
        QVERIFY(theApp().FirstDocTemplate()->Documents().empty());
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCOMPARE(CTestFrame::s_nDestroyed, nDestroyed + 1);
    }

    void theBitnessStandsInTheStatusBarAndInAbout() {
        CFakeInterface user;
        const CRun run(*m_pFolder);
        const QString strBitness = sizeof(void*) == 8 ? QStringLiteral("64 bit") : QStringLiteral("32 bit");
        QCOMPARE(run.Frame().statusBar()->findChild<QLabel*>("Bitness")->text(), strBitness);
        user.m_fnInDialog = [&](QDialog& dialog) {
            QCOMPARE(dialog.windowTitle(), QStringLiteral("About Carvelot"));
            QCOMPARE(dialog.findChild<QLabel*>("Version")->text(),
                     QStringLiteral("Carvelot, Version: 2.0.0.0"));
            QCOMPARE(dialog.findChild<QLabel*>("Bitness")->text(), strBitness);
            int nLinks = 0;
            for (const QLabel* pLabel : dialog.findChildren<QLabel*>())
                nLinks += pLabel->openExternalLinks() ? 1 : 0;
            QCOMPARE(nLinks, 2);
        };
        run.Frame().RunCommand(ID_APP_ABOUT);
        QCOMPARE(user.m_nDialogs, 1);
    }

    void aLookIsStoredAndMarked() {
        CFakeInterface user;
        const CRun run(*m_pFolder);
        CPersonalMenu* pView = run.OpenMenu("View");
        auto* pLooks = static_cast<CPersonalMenu*>(Entry(*pView, "&Application Look")->menu());
        emit pLooks->aboutToShow();
        QVERIFY(Entry(*pLooks, "Visual Studio 200&8")->isChecked());
        Entry(*pLooks, "Office 200&3")->trigger();
        pView->close();
        QCOMPARE(GetWorkspaceInt("ApplicationLook", 0), 208);
        QVERIFY(Entry(*pLooks, "Office 200&3")->isChecked());
        QVERIFY(!Entry(*pLooks, "Visual Studio 200&8")->isChecked());
        QCOMPARE(CurrentLook().m_nId, 208);
        Entry(*pLooks, "Office 200&3")->trigger(); // once more: the mark stays
        QVERIFY(Entry(*pLooks, "Office 200&3")->isChecked());
    }

    void theViewMenuHasTenLooksAndNotTheEleventh() {
        CFakeInterface user;
        const CRun run(*m_pFolder);
        CPersonalMenu* pView = run.OpenMenu("View");
        QMenu* pLooks = Entry(*pView, "&Application Look")->menu();
        QList<int> listIds;
        for (QMenu* pMenu : {pLooks, Entry(*pLooks, "Office 200&7")->menu()}) {
            for (const QAction* pAction : pMenu->actions()) {
                if (pAction->data().toInt() != 0)
                    listIds << pAction->data().toInt();
            }
        }
        pView->close();
        QCOMPARE(listIds, (QList<int>{205, 206, 207, 208, 209, 210, 215, 216, 217, 218}));
    }

    void aStoredLookWithoutANameTakesOffice2007AndMarksNothing() {
        CFakeInterface user;
        UseSettingsStore(ToUtf8(m_pFolder->filePath("registry.ini")));
        WriteWorkspaceInt("ApplicationLook", 211);
        const CRun run(*m_pFolder);
        QCOMPARE(CurrentLook().m_nId, 215);
        for (int nId = ID_APPLOOK_FIRST; nId <= ID_APPLOOK_LAST; ++nId) {
            if (const QAction* pAction = run.Frame().CommandAction(nId))
                QVERIFY(!pAction->isChecked());
        }
        run.Frame().OnApplicationLook(217);
        run.Frame().OnApplicationLook(212); // leaves the style of Office 2007 as it is
        QCOMPARE(CurrentLook().m_nId, 217);
        QCOMPARE(GetWorkspaceInt("ApplicationLook", 0), 212);
    }

    void everyLookPaintsTheWindowInItsOwnWay() {
        CFakeInterface user;
        CRun run(*m_pFolder);
        run.Open("a.log");
        QSet<QByteArray> setPictures;
        for (const int nId : LookIds()) {
            run.Frame().OnApplicationLook(nId);
            QTest::qWait(10);
            const QImage picture = run.Frame().grab().toImage();
            setPictures << QCryptographicHash::hash(
                QByteArray::fromRawData(reinterpret_cast<const char*>(picture.constBits()),
                                        picture.sizeInBytes()),
                QCryptographicHash::Sha1);
        }
        QCOMPARE(setPictures.size(), 11);
    }

    void theSignsInAPanesTitleHaveTheTitlesColorInEveryLook() {
        CFakeInterface user;
        CRun run(*m_pFolder);
        CMainFrame& frame = run.Frame();
        CDockablePane& pane = frame.m_wndBSFNPane;
        CTestFrame* pChild = run.Open("a");
        // The colours of one button, drawn so large that its lines are whole.
        const auto fnColors = [&pane](const QWidget& button) {
            constexpr int kScale = 6;
            QPixmap picture(pane.size() * kScale);
            picture.setDevicePixelRatio(kScale);
            pane.render(&picture);
            const QRect rect(button.pos() * kScale, button.size() * kScale);
            const QImage image = picture.copy(rect).toImage();
            QSet<QRgb> setColors;
            for (int nY = 0; nY < image.height(); ++nY) {
                for (int nX = 0; nX < image.width(); ++nX)
                    setColors << (image.pixel(nX, nY) & RGB_MASK);
            }
            return setColors;
        };
        for (const int nId : LookIds()) {
            frame.OnApplicationLook(nId);
            const QRgb nCalm = CurrentLook().m_titleText.rgb() & RGB_MASK;
            const QRgb nActive = CurrentLook().m_activeTitleText.rgb() & RGB_MASK;
            QVERIFY(nCalm != nActive);
            for (const bool bActive : {true, false}) {
                (bActive ? pane.MainControl() : pChild->m_edits[0])->setFocus();
                QCoreApplication::processEvents();
                for (const char* pszName :
                     {"qt_dockwidget_floatbutton", "qt_dockwidget_closebutton", "PinButton"}) {
                    const auto* pButton = pane.findChild<QAbstractButton*>(QLatin1String(pszName));
                    const QSet<QRgb> setColors = fnColors(*pButton);
                    const QByteArray where = QByteArray(pszName) + " in look " + QByteArray::number(nId);
                    QVERIFY2(setColors.contains(bActive ? nActive : nCalm), where);
                    QVERIFY2(!setColors.contains(bActive ? nCalm : nActive), where);
                }
            }
        }
    }

    void f6WalksThroughTheWindowsPanesAndShiftF6Back() {
        CFakeInterface user;
        CRun run(*m_pFolder);
        CTestFrame* pChild = run.Open("a.log");
        run.Frame().activateWindow();
        pChild->m_edits[0]->setFocus();
        QCOMPARE(QApplication::focusWidget(), pChild->m_edits[0]);
        QTest::keyClick(&run.Frame(), Qt::Key_F6);
        QCOMPARE(QApplication::focusWidget(), pChild->m_edits[1]);
        QTest::keyClick(&run.Frame(), Qt::Key_F6);
        QCOMPARE(QApplication::focusWidget(), run.Frame().m_wndBSFNPane.MainControl());
        QTest::keyClick(&run.Frame(), Qt::Key_F6);
        QCOMPARE(QApplication::focusWidget(), pChild->m_edits[0]);
        QTest::keyClick(&run.Frame(), Qt::Key_F6, Qt::ShiftModifier);
        QCOMPARE(QApplication::focusWidget(), run.Frame().m_wndBSFNPane.MainControl());
    }

    void theEditMenuActsOnTheEditWithTheFocus() {
        CFakeInterface user;
        CRun run(*m_pFolder);
        CTestFrame* pChild = run.Open("a.log");
        run.Frame().activateWindow();
        pChild->m_edits[0]->setText(QStringLiteral("words"));
        pChild->m_edits[0]->selectAll();
        pChild->m_edits[0]->setFocus();
        user.m_strMenuChoice = QStringLiteral("Cu&t");
        run.Frame().ShowEditMenu({});
        QCOMPARE(pChild->m_edits[0]->text(), QString());
        user.m_strMenuChoice = QStringLiteral("&Paste");
        run.Frame().ShowEditMenu({});
        QCOMPARE(pChild->m_edits[0]->text(), QStringLiteral("words"));
        QCOMPARE(user.m_listMenuTexts.constFirst(), QStringLiteral("&Undo"));
    }

    void closeAllClosesEveryWindowWithoutAskingAndEmptiesTheCaptions() {
        CFakeInterface user;
        CRun run(*m_pFolder);
        run.Open("a.log");
        run.Open("b.log");
        run.Frame().m_wndBSFNPane.SetCaption(QStringLiteral(" Process: 1"));
        const int nClosed = CTestFrame::s_nClosed;
        run.Frame().RunCommand(ID_WINDOW_CLOSE_ALL);
        QVERIFY(run.Area().Children().isEmpty());
        QCOMPARE(CTestFrame::s_nClosed, nClosed);
        QCOMPARE(run.Frame().m_wndBSFNPane.GetCaption(), QString());
    }

    void theWindowsDialogActivatesAndCloses() {
        CFakeInterface user;
        CRun run(*m_pFolder);
        CTestFrame* pFirst = run.Open("a.log");
        run.Open("b.log");
        user.m_fnInDialog = [](QDialog& dialog) {
            auto* pList = dialog.findChild<QTreeWidget*>("Windows");
            QCOMPARE(pList->topLevelItemCount(), 2);
            pList->clearSelection();
            pList->topLevelItem(0)->setSelected(true);
            QTest::mouseClick(dialog.findChild<QPushButton*>("Activate"), Qt::LeftButton);
        };
        run.Frame().RunCommand(ID_WINDOW_WINDOWS);
        QCOMPARE(run.Area().ActiveChild(), pFirst);
        user.m_fnInDialog = [](QDialog& dialog) {
            dialog.findChild<QTreeWidget*>("Windows")->selectAll();
            QTest::mouseClick(dialog.findChild<QPushButton*>("CloseWindows"), Qt::LeftButton);
            QCOMPARE(dialog.findChild<QTreeWidget*>("Windows")->topLevelItemCount(), 0);
        };
        run.Frame().RunCommand(ID_WINDOW_WINDOWS);
        QVERIFY(run.Area().Children().isEmpty());
    }

    void theWindowMenuListsTheFirstNineWindowsAndMarksTheOneInFront() {
        CFakeInterface user;
        CRun run(*m_pFolder);
        const auto fnListed = [&run] {
            CPersonalMenu* pMenu = run.OpenMenu("Window");
            QStringList listTexts;
            for (const QAction* pAction : pMenu->actions()) {
                if (pAction->isCheckable() && pAction->isVisible())
                    listTexts << pAction->text() + (pAction->isChecked() ? QStringLiteral(" *") : QString());
            }
            pMenu->close();
            return listTexts;
        };
        run.Open("a");
        run.Open("R&D.log");
        QCOMPARE(fnListed(), (QStringList{"&1 a", "&2 R&&D.log *"}));
        for (const char* pszName : {"c", "d", "e", "f", "g", "h", "i", "j"})
            run.Open(pszName);
        // The tenth is in front, and not in the list.
        QCOMPARE(fnListed(), (QStringList{"&1 a", "&2 R&&D.log", "&3 c", "&4 d", "&5 e", "&6 f", "&7 g",
                                          "&8 h", "&9 i"}));
        CPersonalMenu* pMenu = run.OpenMenu("Window");
        QAction* pThird = Entry(*pMenu, "&3 c");
        QCOMPARE(pThird->statusTip(), QStringLiteral("Activate this window"));
        // They stand between the commands and "Windows ...".
        const QList<QAction*> listActions = pMenu->actions();
        QVERIFY(listActions.indexOf(Entry(*pMenu, "Close All")) < listActions.indexOf(pThird));
        QVERIFY(listActions.indexOf(pThird) < listActions.indexOf(Entry(*pMenu, "Windows ...")));
        pThird->trigger();
        pMenu->close();
        QCOMPARE(run.Area().ActiveChild()->windowTitle(), QStringLiteral("c"));
        QVERIFY(fnListed().contains(QLatin1String("&3 c *")));
        // A window that goes leaves the list, and the tenth comes in.
        run.Frame().RunCommand(ID_FILE_CLOSE);
        QCOMPARE(fnListed().size(), 9);
        QVERIFY(!fnListed().join(u' ').contains(QLatin1String("&3 c")));
        QCOMPARE(fnListed().constLast().left(4), QStringLiteral("&9 j"));
        // A title that changes is listed as it stands.
        run.Area().Children().constFirst()->GetActiveDocument()->SetTitle(QStringLiteral("a - Process: 5"));
        QCOMPARE(fnListed().constFirst(), QStringLiteral("&1 a - Process: 5"));
    }

    void recentFilesStandInTheFileMenuAndOpen() {
        CFakeInterface user;
        CRun run(*m_pFolder);
        run.Open("a.log");
        run.Open("b.log");
        run.Frame().RunCommand(ID_WINDOW_CLOSE_ALL);
        CPersonalMenu* pFile = run.OpenMenu("File");
        QAction* pSecond = nullptr;
        for (QAction* pAction : pFile->actions()) {
            if (pAction->text().startsWith(QLatin1String("&2 ")))
                pSecond = pAction;
        }
        QVERIFY(pSecond != nullptr && pSecond->isVisible());
        QCOMPARE(pSecond->statusTip(), QStringLiteral("Open this document"));
        pSecond->trigger();
        pFile->close();
        QVERIFY(run.Frame().windowTitle().endsWith(QLatin1String("a.log - Carvelot")));
        run.Stop();
        QCOMPARE(theApp().m_recentFiles.m_listPaths.size(), 2U);
    }

    void aUserMakesAToolbarOfAnyCommandsAndFindsItAgainAtTheNextStart() {
        CFakeInterface user;
        {
            CRun run(*m_pFolder);
            run.Frame().RunCommand(ID_VIEW_CUSTOMIZE);
            CCustomizeDlg* pDialog = run.Frame().CustomizeDialog();
            QVERIFY(pDialog != nullptr && !pDialog->isModal());
            user.m_strTextAnswer = QStringLiteral("Mine | 1");
            QTest::mouseClick(pDialog->findChild<QPushButton*>("New"), Qt::LeftButton);
            auto* pCommands = pDialog->findChild<QListWidget*>("Commands");
            QCOMPARE(pCommands->count(), static_cast<int>(AllCommands().size()));
            for (int n = 0; n < pCommands->count(); ++n) {
                if (pCommands->item(n)->text() == QLatin1String("Windows 7"))
                    pCommands->setCurrentRow(n);
            }
            QTest::mouseClick(pDialog->findChild<QPushButton*>("Add"), Qt::LeftButton);
            QTest::mouseClick(pDialog->findChild<QPushButton*>("Separator"), Qt::LeftButton);
        }
        const CRun run(*m_pFolder);
        QCOMPARE(run.Frame().Bars().All().size(), 3);
        CToolBar* pMine = run.Frame().Bars().All().constLast();
        QCOMPARE(pMine->windowTitle(), QStringLiteral("Mine | 1"));
        QCOMPARE(pMine->Commands(), (std::vector<int>{ID_APPLOOK_WINDOWS_7, ID_SEPARATOR}));
        pMine->actions().constFirst()->trigger();
        QCOMPARE(theApp().m_nAppLook, 219);
    }

    void removeAndMoveChangeTheToolbarAtOnce() {
        CFakeInterface user;
        const CRun run(*m_pFolder);
        const CCustomizeHands hands(run.Frame(), user);
        for (const char* pszCommand : {"Open...", "Options", "Convert Dates"})
            hands.Add(pszCommand);
        hands.Press("Separator");
        QCOMPARE(hands.Listed(), (QStringList{"Open...", "Options", "Convert Dates", "(Separator)"}));
        QCOMPARE(hands.Standing(), hands.Listed());
        // The last one goes up by one place, the first one down.
        QVERIFY(!hands.Button("Down").isEnabled());
        hands.Press("Up");
        QCOMPARE(hands.Listed(), (QStringList{"Open...", "Options", "(Separator)", "Convert Dates"}));
        QCOMPARE(hands.List("Buttons").currentRow(), 2);
        hands.Choose("Buttons", "Open...");
        QVERIFY(!hands.Button("Up").isEnabled());
        hands.Press("Down");
        QCOMPARE(hands.Listed(), (QStringList{"Options", "Open...", "(Separator)", "Convert Dates"}));
        QCOMPARE(hands.List("Buttons").currentRow(), 1);
        QCOMPARE(hands.Standing(), hands.Listed());
        hands.Press("Remove");
        QCOMPARE(hands.Listed(), (QStringList{"Options", "(Separator)", "Convert Dates"}));
        QCOMPARE(hands.Standing(), hands.Listed());
        for (int n = 0; n < 3; ++n)
            hands.Press("Remove");
        QCOMPARE(hands.Listed(), QStringList());
        QCOMPARE(hands.Standing(), QStringList());
        for (const char* pszButton : {"Remove", "Up", "Down"})
            QVERIFY(!hands.Button(pszButton).isEnabled());
    }

    void renameGivesAToolbarItsNewNameForGood() {
        CFakeInterface user;
        {
            const CRun run(*m_pFolder);
            const CCustomizeHands hands(run.Frame(), user);
            hands.Add("Options");
            user.m_strTextAnswer = QStringLiteral("  Dates & more ");
            hands.Press("Rename");
            QCOMPARE(hands.ToolBar().windowTitle(), QStringLiteral("Dates & more"));
            QCOMPARE(hands.ToolBar().accessibleName(), QStringLiteral("Dates & more"));
            QVERIFY(hands.Choose("ToolBars", "Dates & more") != nullptr);
            // No name is no answer.
            user.m_strTextAnswer = QStringLiteral("   ");
            hands.Press("Rename");
            user.m_strTextAnswer.reset();
            hands.Press("Rename");
            QCOMPARE(hands.ToolBar().windowTitle(), QStringLiteral("Dates & more"));
            // The program's own toolbars keep theirs.
            hands.Choose("ToolBars", "Standard");
            QVERIFY(!hands.Button("Rename").isEnabled());
        }
        const CRun run(*m_pFolder);
        QCOMPARE(run.Frame().Bars().All().constLast()->windowTitle(), QStringLiteral("Dates & more"));
        QCOMPARE(run.Frame().Bars().All().constLast()->Commands(), std::vector<int>{ID_TOOLS_OPTIONS});
    }

    void customizeDoesNotTakeACommandTwice() {
        CFakeInterface user;
        {
            const CRun run(*m_pFolder);
            const CCustomizeHands hands(run.Frame(), user);
            hands.Add("Options");
            hands.Add("Convert Dates");
            hands.Press("Separator");
            hands.Press("Separator");
            QListWidgetItem* pItem = hands.Choose("Commands", "Options");
            QVERIFY(!hands.Button("Add").isEnabled());
            emit hands.List("Commands").itemDoubleClicked(pItem);
            QCOMPARE(hands.Listed(), (QStringList{"Options", "Convert Dates", "(Separator)", "(Separator)"}));
            QCOMPARE(hands.Standing(), hands.Listed());
            // It shows where the command stands.
            QCOMPARE(hands.List("Buttons").currentRow(), 0);
            // What was taken off can be had again.
            hands.Press("Remove");
            QVERIFY(hands.Button("Add").isEnabled());
            hands.Press("Add");
            QCOMPARE(hands.Listed().count(QLatin1String("Options")), 1);
        }
        // Nor does a stored toolbar.
        const std::string strOptions = std::to_string(ID_TOOLS_OPTIONS);
        StoreText("UserToolBar59432", "Mine|" + strOptions + ",0," + strOptions + ",0");
        const CRun run(*m_pFolder);
        const std::vector<int> listCommands = run.Frame().Bars().All().constLast()->Commands();
        QCOMPARE(std::ranges::count(listCommands, int(ID_TOOLS_OPTIONS)), 1);
        QCOMPARE(std::ranges::count(listCommands, int(ID_SEPARATOR)), 2);
    }

    void atMostTenToolbarsOfAUsersOwn() {
        CFakeInterface user;
        const CRun run(*m_pFolder);
        for (int n = 0; n < 10; ++n)
            QVERIFY(run.Frame().Bars().New(QString::number(n)) != nullptr);
        QVERIFY(run.Frame().Bars().New(QStringLiteral("eleventh")) == nullptr);
        QCOMPARE(run.Frame().Bars().All().constLast()->Id(), 59441);
    }

    void userImagesAreTakenFromTheCurrentFolder() {
        CFakeInterface user;
        const QString strBefore = QDir::currentPath();
        QDir::setCurrent(m_pFolder->path());
        QImage strip(48, 16, QImage::Format_RGB32);
        strip.fill(Qt::red);
        QVERIFY(strip.save(QStringLiteral("UserImages.bmp"), "BMP"));
        {
            const CRun run(*m_pFolder);
            QCOMPARE(run.Frame().Bars().UserImages().Count(), 3);
            run.Frame().Bars().SetUserImage(ID_FILE_OPEN, 1);
            QCOMPARE(run.Frame().CommandAction(ID_FILE_OPEN)->icon().pixmap(16).toImage().pixelColor(8, 8),
                     QColor(Qt::red));
        }
        {
            const CRun run(*m_pFolder);
            QCOMPARE(run.Frame().Bars().UserImage(ID_FILE_OPEN), 1);
        }
        QDir::setCurrent(strBefore);
    }

    void aUserImagesFileThatIsTooLargeIsNotTaken() {
        QFile file(m_pFolder->filePath("big.bmp"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(QByteArray(819201, 'x'));
        file.close();
        CToolBarImages images;
        QVERIFY(!images.Load(file.fileName()));
        QVERIFY(!images.Load(m_pFolder->filePath("missing.bmp")));
    }

    void aFileDroppedOnTheWindowOpensAsACopyWhateverItsSourceProposes_data() {
        QTest::addColumn<Qt::DropActions>("offered");
        QTest::addColumn<Qt::KeyboardModifiers>("keys");
        QTest::newRow("a copy") << Qt::DropActions(Qt::CopyAction) << Qt::KeyboardModifiers();
        QTest::newRow("a copy or a move, a move with Shift")
            << (Qt::CopyAction | Qt::MoveAction) << Qt::KeyboardModifiers(Qt::ShiftModifier);
        QTest::newRow("anything, a link with Ctrl and Shift")
            << (Qt::CopyAction | Qt::MoveAction | Qt::LinkAction)
            << (Qt::ControlModifier | Qt::ShiftModifier);
    }

    void aFileDroppedOnTheWindowOpensAsACopyWhateverItsSourceProposes() {
        QFETCH(Qt::DropActions, offered);
        QFETCH(Qt::KeyboardModifiers, keys);
        CFakeInterface user;
        const CRun run(*m_pFolder);
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(m_pFolder->filePath("dropped.log"))});
        const bool bMove = keys == Qt::ShiftModifier;
        const auto fnPropose = [&](QDropEvent& event) {
            event.setDropAction(bMove ? Qt::MoveAction : event.proposedAction());
            QCoreApplication::sendEvent(&run.Frame(), &event);
            QVERIFY(event.isAccepted());
            QCOMPARE(event.dropAction(), Qt::CopyAction);
        };
        QDragEnterEvent enter(QPoint(50, 50), offered, &data, Qt::LeftButton, keys);
        fnPropose(enter);
        QDragMoveEvent move(QPoint(60, 60), offered, &data, Qt::LeftButton, keys);
        fnPropose(move);
        QDropEvent drop(QPointF(60, 60), offered, &data, Qt::LeftButton, keys);
        fnPropose(drop);
        QTRY_COMPARE(run.Area().Children().size(), 1);
    }

    // Who offers a move alone deletes the file when it is taken.
    void aSourceThatOffersNoCopyIsRefused_data() {
        QTest::addColumn<Qt::DropActions>("offered");
        QTest::newRow("a move") << Qt::DropActions(Qt::MoveAction);
        QTest::newRow("a move or a link") << (Qt::MoveAction | Qt::LinkAction);
    }

    void aSourceThatOffersNoCopyIsRefused() {
        QFETCH(Qt::DropActions, offered);
        CFakeInterface user;
        const CRun run(*m_pFolder);
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(m_pFolder->filePath("dropped.log"))});
        QDragEnterEvent enter(QPoint(50, 50), offered, &data, Qt::LeftButton, {});
        QCoreApplication::sendEvent(&run.Frame(), &enter);
        QVERIFY(!enter.isAccepted());
        QDragMoveEvent move(QPoint(60, 60), offered, &data, Qt::LeftButton, {});
        QCoreApplication::sendEvent(&run.Frame(), &move);
        QVERIFY(!move.isAccepted());
        QDropEvent drop(QPointF(60, 60), offered, &data, Qt::LeftButton, {});
        QCoreApplication::sendEvent(&run.Frame(), &drop);
        QVERIFY(!drop.isAccepted());
        QCoreApplication::processEvents();
        QCOMPARE(run.Area().Children().size(), 0);
    }

    void whatIsNoFileIsRefused() {
        CFakeInterface user;
        const CRun run(*m_pFolder);
        QMimeData data;
        data.setUrls({QUrl(QStringLiteral("https://example.org/a.log"))});
        QDragEnterEvent enter(QPoint(50, 50), Qt::CopyAction, &data, Qt::LeftButton, {});
        QCoreApplication::sendEvent(&run.Frame(), &enter);
        QVERIFY(!enter.isAccepted());
    }

    void theOptionsCommandRestartsTheTimerAndRefreshesWhateverTheAnswer() {
        CFakeInterface user;
        const CRun run(*m_pFolder);
        CProcessPane& pane = run.Frame().m_wndProcessPane;
        QVERIFY(pane.IsTimerRunning());
        QCOMPARE(pane.TimerPeriod(), 10000);
        int nRefreshed = 0;
        pane.m_fnRefresh = [&nRefreshed] { ++nRefreshed; };
        theApp().m_nRefreshRate = 3;
        run.Frame().RunCommand(ID_TOOLS_OPTIONS); // cancelled
        QCOMPARE(pane.TimerPeriod(), 3000);
        QCOMPARE(nRefreshed, 1);
        theApp().m_nRefreshRate = 0;
        run.Frame().RunCommand(ID_TOOLS_OPTIONS);
        QCOMPARE(pane.TimerPeriod(), 10);
        theApp().m_bAutoRefresh = false;
        run.Frame().RunCommand(ID_TOOLS_OPTIONS);
        QVERIFY(!pane.IsTimerRunning());
        pane.m_fnRefresh = {};
    }

    void jdeSettingsAreReadBeforeAndAfterTheirDialog() {
        struct CStore : CJDESettingsStore {
            bool HasWebApplication() const override { return m_bWeb; }
            void ReadLogProperties() override { *m_pSteps << "properties"; }
            void ReadIni() override { *m_pSteps << "ini"; }
            std::unique_ptr<QDialog> MakeDialog() override {
                *m_pSteps << "dialog made";
                return std::make_unique<QDialog>();
            }
            bool m_bWeb = true;
            QStringList* m_pSteps = nullptr;
        };
        CFakeInterface user;
        const CRun run(*m_pFolder);
        QStringList listSteps;
        auto pStore = std::make_unique<CStore>();
        CStore& store = *pStore;
        store.m_pSteps = &listSteps;
        std::unique_ptr<CJDESettingsStore> pBefore =
            std::exchange(theApp().m_pJDESettings, std::move(pStore));
        user.m_fnInDialog = [&](QDialog&) { listSteps << "dialog"; };
        run.Frame().RunCommand(ID_TOOLS_JDE_SETTINGS);
        QCOMPARE(listSteps, (QStringList{"dialog made", "properties", "ini", "dialog", "properties", "ini"}));
        listSteps.clear();
        store.m_bWeb = false;
        run.Frame().RunCommand(ID_TOOLS_JDE_SETTINGS);
        QCOMPARE(listSteps, (QStringList{"dialog made", "ini", "dialog", "ini"}));
        theApp().m_pJDESettings = std::move(pBefore);
    }

private:
    std::unique_ptr<QTemporaryDir> m_pFolder;
};

QTEST_MAIN(MainFrameTest)
#include "MainFrameTest.moc"
