#include "ui/UiSupport.h"

#include "platform/Registry.h"
#include "ui/app/CustomizeDlg.h"
#include "ui/app/FrameToolBars.h"
#include "ui/kit/AutoHide.h"
#include "ui/kit/Icons.h"
#include "ui/kit/LookStyle.h"
#include "ui/kit/ToolBar.h"
#include "ui/kit/WindowsDlg.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QComboBox>
#include <QCryptographicHash>
#include <QFile>
#include <QHelpEvent>
#include <QLabel>
#include <QListWidget>
#include <QMenu>
#include <QMimeData>
#include <QPainter>
#include <QPushButton>
#include <QRegularExpression>
#include <QSet>
#include <QSignalSpy>
#include <QStatusBar>
#include <QStyleOption>
#include <QTabBar>
#include <QToolButton>
#include <QToolTip>
#include <QTreeWidget>

#include <algorithm>

using namespace carvelot;
using namespace carvelot::test;

namespace {

QStringList DockTabs(const CMainFrame& frame, QString* current = nullptr) {
    for (QTabBar* bar : frame.findChildren<QTabBar*>()) {
        if (bar->isVisible() && bar->count() == 9) {
            QStringList texts;
            for (int n = 0; n < bar->count(); ++n) {
                texts << bar->tabText(n);
            }
            if (current != nullptr) {
                *current = bar->tabText(bar->currentIndex());
            }
            return texts;
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
    QPushButton& Button(const char* name) const { return *m_pDialog->findChild<QPushButton*>(name); }
    QListWidget& List(const char* name) const { return *m_pDialog->findChild<QListWidget*>(name); }
    void Press(const char* name) const { QTest::mouseClick(&Button(name), Qt::LeftButton); }
    QListWidgetItem* Choose(const char* list, const char* text) const {
        const QList<QListWidgetItem*> items = List(list).findItems(QLatin1String(text), Qt::MatchExactly);
        List(list).setCurrentItem(items.value(0));
        return items.value(0);
    }
    void Add(const char* command) const {
        Choose("Commands", command);
        Press("Add");
    }
    // The buttons as the dialog lists them, and as they stand on the toolbar from its beginning.
    QStringList Listed() const {
        QStringList texts;
        for (int n = 0; n < List("Buttons").count(); ++n) {
            texts << List("Buttons").item(n)->text();
        }
        return texts;
    }
    QStringList Standing() const {
        QCoreApplication::processEvents();
        QMap<int, QString> texts;
        for (const QAction* action : ToolBar().actions()) {
            const QWidget* widget = ToolBar().widgetForAction(const_cast<QAction*>(action));
            if (action->isSeparator()) {
                texts[widget->x()] = QStringLiteral("(Separator)");
            } else if (!action->text().isEmpty()) {
                texts[widget->x()] = action->text().remove(u'&');
            }
        }
        return texts.values();
    }

private:
    CMainFrame& m_frame;
    CCustomizeDlg* m_pDialog;
};

void StoreText(const char* name, const std::string& text) { WriteWorkspaceString(name, text); }

std::string Damaged(const std::string& stored, const QString& damage) {
    QByteArray layout = QByteArray::fromStdString(stored);
    if (damage == "empty") {
        layout.clear();
    } else if (damage == "text") {
        layout = "no layout";
    } else if (damage == "version") {
        layout.replace(0, 1, "9");
    } else if (damage == "truncated") {
        layout.chop(layout.size() / 2);
    } else if (damage == "flipped") {
        layout[layout.size() / 2] = layout[layout.size() / 2] == 'A' ? 'B' : 'A';
    } else { // the check sum of "garbage"
        layout = "1:" + QCryptographicHash::hash("garbage", QCryptographicHash::Sha1).toHex().left(12) + ":" +
                 QByteArray("garbage").toBase64();
    }
    return layout.toStdString();
}

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
        QString current;
        QCOMPARE(DockTabs(run.Frame(), &current), kPaneOrder);
        QCOMPARE(current, QStringLiteral("BSFN Calls"));
    }

    void aPaneThatWasClosedComesBackFromTheViewMenu() {
        CFakeInterface user;
        const CRun run(*m_pFolder);
        CMainFrame& frame = run.Frame();
        frame.m_wndFindPane.close();
        QVERIFY(frame.m_wndFindPane.isHidden());
        CPersonalMenu* view = run.OpenMenu("View");
        QMenu* bars = Entry(*view, "&Toolbars and Docking Windows")->menu();
        emit bars->aboutToShow();
        QVERIFY(!Entry(*bars, "Find")->isChecked());
        Entry(*bars, "Find")->trigger();
        view->close();
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
        QString current;
        QCOMPARE(DockTabs(run.Frame(), &current), kPaneOrder);
        QCOMPARE(current, QStringLiteral("BSFN Calls"));
        QVERIFY(!run.Frame().statusBar()->isHidden());
    }

    void theNameOnAPanesSelectedTabIsWholeWhereAnotherTabsWouldBe() {
        int office2007 = ID_APPLOOK_OFFICE_2007_BLUE;
        const CLookStyle style(LookOf(ID_APPLOOK_VS_2008, office2007));
        const auto picture = [&style](const char* name) {
            QStyleOptionTab option;
            option.shape = QTabBar::RoundedSouth;
            option.state = QStyle::State_Enabled | QStyle::State_Selected;
            option.text = QString::fromLatin1(name);
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
        QCOMPARE(picture("Cache bd Details").size(), picture("Cache db Details").size());
        QVERIFY(picture("Cache bd Details") != picture("Cache db Details"));
    }

    void aPaneThatFloatsForTheFirstTimeStandsElsewhereAndNoLarger() {
        CFakeInterface user;
        CRun run(*m_pFolder);
        run.Frame().resize(1200, 800);
        QCoreApplication::processEvents();
        CDockablePane& pane = run.Frame().m_wndBSFNPane;
        const QRect docked(pane.mapToGlobal(QPoint()), pane.size());
        auto* floatButton = pane.findChild<QAbstractButton*>(QStringLiteral("qt_dockwidget_floatbutton"));
        QVERIFY(floatButton != nullptr);
        QTest::mouseClick(floatButton, Qt::LeftButton);
        QVERIFY(pane.isFloating());
        QVERIFY(pane.geometry().topLeft() != docked.topLeft());
        QVERIFY(pane.width() < docked.width() && pane.height() <= docked.height());
        QVERIFY(pane.screen()->availableGeometry().contains(pane.geometry()));
        // Back again, and it floats where the user left it.
        pane.setGeometry(100, 100, 500, 250);
        QTest::mouseClick(floatButton, Qt::LeftButton);
        QVERIFY(!pane.isFloating());
        QTest::mouseClick(floatButton, Qt::LeftButton);
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
            bool eventFilter(QObject* object, QEvent* event) override {
                if (event->type() == QEvent::Show && object->isWidgetType() &&
                    static_cast<QWidget*>(object)->isWindow() &&
                    !static_cast<QWidget*>(object)->testAttribute(Qt::WA_DontShowOnScreen)) {
                    m_listShown << object->metaObject()->className();
                }
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
        for (const char* kind : {"empty", "text", "version", "truncated", "flipped", "sealed garbage"}) {
            QTest::newRow(kind) << kind;
        }
    }

    void aDamagedLayoutIsIgnored() {
        QFETCH(QString, damage);
        CFakeInterface user;
        {
            CRun run(*m_pFolder);
            run.Frame().m_wndFindPane.close();
        }
        const std::string layout = GetWorkspaceString("Layout", "");
        QVERIFY(layout.size() > 100);
        StoreText("Layout", Damaged(layout, damage));
        StoreText("Geometry", Damaged(layout, damage));
        const CRun run(*m_pFolder);
        QVERIFY(run.m_bStarted);
        QCOMPARE(DockTabs(run.Frame()), kPaneOrder);
    }

    void whatADamagedLayoutWasIsKeptAndOneLineSaysSo_data() { aDamagedLayoutIsIgnored_data(); }

    void whatADamagedLayoutWasIsKeptAndOneLineSaysSo() {
        QFETCH(QString, damage);
        CFakeInterface user;
        { const CRun run(*m_pFolder); }
        const std::string layout = Damaged(GetWorkspaceString("Layout", ""), damage);
        StoreText("Layout", layout);
        StoreText("Geometry", "no geometry");
        StoreText("AutoHide", "left:240:SQLPane");
        const auto messages = user.m_listMessages.size();
        {
            const CRun run(*m_pFolder);
            const QString said = run.Frame().statusBar()->currentMessage();
            QVERIFY2(said.startsWith(QStringLiteral("Settings that could not be read were set aside as "
                                                    "Geometry.damaged, ") +
                                     QLatin1String(layout.empty() ? "" : "Layout.damaged, ") +
                                     QStringLiteral("AutoHide.damaged in ")),
                     qPrintable(said));
#ifdef Q_OS_WIN
            QVERIFY(said.endsWith(QLatin1String("\\Software\\Tamrisk\\Carvelot\\Workspace")));
#else
            QVERIFY(said.endsWith(m_pFolder->filePath(QStringLiteral("registry.ini"))));
#endif
            QCOMPARE(run.Frame().statusBar()->toolTip(), said);
            QCOMPARE(user.m_listMessages.size(), messages + 2); // those of the libraries, as at every start
            // Until the next message takes its place.
            run.Frame().statusBar()->showMessage(QStringLiteral("next"));
            QCOMPARE(run.Frame().statusBar()->currentMessage(), QStringLiteral("next"));
            QCOMPARE(run.Frame().statusBar()->toolTip(), QString());
        }
        QCOMPARE(GetWorkspaceString("Layout.damaged", ""), layout);
        QCOMPARE(GetWorkspaceString("Geometry.damaged", ""), std::string("no geometry"));
        QCOMPARE(GetWorkspaceString("AutoHide.damaged", ""), std::string("left:240:SQLPane"));
        const CRun run(*m_pFolder);
        QCOMPARE(run.Frame().statusBar()->currentMessage(), QString());
    }

    void aToolbarThatTheUserEmptiedStaysEmpty() {
        CFakeInterface user;
        const auto cacheBar = [](const CRun& run) { return run.Frame().Bars().All().at(1); };
        std::vector<int> own;
        {
            const CRun run(*m_pFolder);
            own = cacheBar(run)->Commands();
            QVERIFY(!own.empty());
            cacheBar(run)->SetCommands({});
        }
        {
            const CRun run(*m_pFolder);
            QCOMPARE(cacheBar(run)->Commands(), std::vector<int>());
            QVERIFY(!run.Frame().Bars().All().at(0)->IsChanged());
            cacheBar(run)->Reset();
        }
        const CRun run(*m_pFolder);
        QCOMPARE(cacheBar(run)->Commands(), own);
    }

    void ofADamagedTextWhatCouldBeReadIsTaken() {
        CFakeInterface user;
        { const CRun run(*m_pFolder); }
        const std::string mine = "UserToolBar" + std::to_string(ID_TOOLBAR_USER_FIRST);
        const std::string other = "UserToolBar" + std::to_string(ID_TOOLBAR_USER_LAST);
        StoreText("ToolBarStandard", "57601,x,57600");
        StoreText(mine.c_str(), "Mine|57601,,");
        StoreText(other.c_str(), "neither title nor commands");
        StoreText("UserImages", "57600=1,57601=?");
        StoreText("UsedCommands", "57601;57600");
        StoreText("AutoHide", "left:240:SQLPane;middle:240:FindPane");
        {
            const CRun run(*m_pFolder);
            QCOMPARE(run.Frame().Bars().All().constFirst()->Commands(), (std::vector<int>{57601, 0, 57600}));
            QCOMPARE(run.Frame().Bars().All().size(), 3);
            QVERIFY(run.Frame().AutoHide().IsFolded(run.Frame().m_wndSQLPane));
            QVERIFY(run.Frame().statusBar()->currentMessage().contains(mine.c_str()));
        }
        QCOMPARE(GetWorkspaceString("ToolBarStandard.damaged", ""), std::string("57601,x,57600"));
        QCOMPARE(GetWorkspaceString(mine + ".damaged", ""), std::string("Mine|57601,,"));
        QCOMPARE(GetWorkspaceString(mine, ""), std::string("Mine|57601"));
        QCOMPARE(GetWorkspaceString(other + ".damaged", ""), std::string("neither title nor commands"));
        QCOMPARE(GetWorkspaceString("UserImages.damaged", ""), std::string("57600=1,57601=?"));
        QCOMPARE(GetWorkspaceString("UserImages", ""), std::string("57600=1"));
        QCOMPARE(GetWorkspaceString("UsedCommands.damaged", ""), std::string("57601;57600"));
        QCOMPARE(GetWorkspaceString("AutoHide.damaged", ""),
                 std::string("left:240:SQLPane;middle:240:FindPane"));
        QVERIFY(GetWorkspaceString("AutoHide", "").find("SQLPane") != std::string::npos);
    }

#ifndef Q_OS_WIN
    void aDamagedSettingsFileIsKeptAndOneLineSaysWhere() {
        CFakeInterface user;
        const QString path = m_pFolder->filePath(QStringLiteral("registry.ini"));
        const auto write = [](const QString& name, const QByteArray& bytes) {
            QFile file(name);
            return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
        };
        const auto read = [](const QString& name) {
            QFile file(name);
            return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("cannot be read");
        };
        for (const char* aside : {"registry.ini.damaged", "registry.ini.2.damaged"}) {
            const QByteArray damaged = QByteArray(100, '\0') + aside;
            QVERIFY(write(path, damaged));
            const CRun run(*m_pFolder);
            QCOMPARE(run.Frame().statusBar()->currentMessage(),
                     QStringLiteral("Settings that could not be read were set aside as %1 in %2")
                         .arg(QLatin1String(aside), m_pFolder->path()));
            QCOMPARE(read(m_pFolder->filePath(QLatin1String(aside))), damaged);
        }
    }
#endif

    void theMenusFollowTheWindowInFront() {
        CFakeInterface user;
        CRun run(*m_pFolder);
        QCOMPARE(run.Menus(), (QStringList{"File", "Tools", "View", "Help"}));
        CTestFrame* session = run.Open("a.log");
        QCOMPARE(run.Menus(), (QStringList{"File", "Session", "Explore", "Tools", "View", "Window", "Help"}));
        CTestFrame* cache = run.OpenCache();
        QCOMPARE(run.Menus(), (QStringList{"File", "Cache", "Tools", "View", "Window", "Help"}));
        run.Area().Activate(*session);
        QCOMPARE(run.Menus(), (QStringList{"File", "Session", "Explore", "Tools", "View", "Window", "Help"}));
        session->CloseWindow();
        cache->CloseWindow();
        QCOMPARE(run.Menus(), (QStringList{"File", "Tools", "View", "Help"}));
    }

    void aMenuShowsItsBasicCommandsFirstAndAllWhenExpanded() {
        CFakeInterface user;
        CRun run(*m_pFolder);
        run.Open("a.log");
        CPersonalMenu* file = run.OpenMenu("File");
        QVERIFY(!file->IsExpanded());
        QVERIFY(Entry(*file, "&Open...")->isVisible());
        QVERIFY(Entry(*file, "E&xit")->isVisible());
        QVERIFY(!Entry(*file, "&Close")->isVisible());
        QTRY_VERIFY_WITH_TIMEOUT(file->IsExpanded(), 3000);
        QVERIFY(Entry(*file, "&Close")->isVisible());
        file->close();
        CPersonalMenu* session = run.OpenMenu("Session"); // nothing basic in it
        QCOMPARE(VisibleTexts(*session), (QStringList{"Analyze", "Clear Debug File", "Open as Text"}));
        session->close();
    }

    void theLetterOfAHiddenCommandReachesItAtOnce() {
        CFakeInterface user;
        CRun run(*m_pFolder);
        run.Open("a.log");
        CPersonalMenu* file = run.OpenMenu("File");
        QVERIFY(!Entry(*file, "&Close")->isVisible());
        QTest::keyClick(file, Qt::Key_O, Qt::ShiftModifier); // of an entry that shows: nothing more comes up
        QVERIFY(!file->IsExpanded());
        file = run.OpenMenu("File");
        QTest::keyClick(file, Qt::Key_C);
        QVERIFY(!file->isVisible());
        QVERIFY(run.Area().Children().isEmpty());
    }

    void aCommandThatWasUsedStaysInTheShortMenu() {
        CFakeInterface user;
        CRun run(*m_pFolder);
        run.Open("a.log");
        CPersonalMenu* file = run.OpenMenu("File");
        Entry(*file, "&Close")->trigger();
        file->close();
        file = run.OpenMenu("File");
        QVERIFY(Entry(*file, "&Close")->isVisible());
        file->close();
    }

    void theChevronExpandsAMenuByMouseWithoutClosingIt() {
        CFakeInterface user;
        CRun run(*m_pFolder);
        CPersonalMenu* file = run.OpenMenu("File");
        QAction* chevron = Entry(*file, "\u00BB");
        if (chevron == nullptr) {
            chevron = file->actions().constLast();
        }
        QTest::mouseClick(file, Qt::LeftButton, {}, file->actionGeometry(chevron).center());
        QVERIFY(file->isVisible());
        QVERIFY(file->IsExpanded());
        file->close();
    }

    void theChevronExpandsAMenuByKeysWithoutClosingIt() {
        CFakeInterface user;
        CRun run(*m_pFolder);
        for (const int key : {Qt::Key_Return, Qt::Key_Space, Qt::Key_Down}) {
            CPersonalMenu* file = run.OpenMenu("File");
            QVERIFY(!file->IsExpanded());
            file->setActiveAction(file->actions().constLast());
            QTest::keyClick(file, static_cast<Qt::Key>(key));
            QVERIFY(file->isVisible());
            QVERIFY(file->IsExpanded());
            file->close();
        }
    }

    void anEntryIsChosenByTheMouse() {
        CFakeInterface user;
        CRun run(*m_pFolder);
        run.Open("a.log");
        CPersonalMenu* file = run.OpenMenu("File");
        QTRY_VERIFY_WITH_TIMEOUT(file->IsExpanded(), 3000);
        QTest::mouseClick(file, Qt::LeftButton, {}, file->actionGeometry(Entry(*file, "&Close")).center());
        QVERIFY(!file->isVisible());
        QVERIFY(run.Area().Children().isEmpty());
    }

    void aToolbarsMenuTakesItsButtonsOffAndPutsThemBack() {
        CFakeInterface user;
        const CRun run(*m_pFolder);
        CToolBar& toolBar = *run.Frame().Bars().All().constFirst();
        const std::vector<int> all = toolBar.Commands();
        const auto entry = [&](const QString& text) -> QAction* {
            for (QToolButton* button : toolBar.findChildren<QToolButton*>()) {
                if (button->menu() != nullptr) {
                    emit button->menu()->aboutToShow();
                    for (QAction* action : button->menu()->actions()) {
                        if (action->text() == text) {
                            return action;
                        }
                    }
                }
            }
            return nullptr;
        };
        const QString open = run.Frame().CommandAction(ID_FILE_OPEN)->text();
        QVERIFY(entry(open) != nullptr && entry(open)->isChecked());
        QVERIFY(!entry(QStringLiteral("&Reset Toolbar"))->isEnabled());
        entry(open)->trigger();
        QTRY_VERIFY(!toolBar.HasCommand(ID_FILE_OPEN));
        QCOMPARE(toolBar.Commands().size(), all.size() - 1);
        QVERIFY(entry(QStringLiteral("&Reset Toolbar"))->isEnabled());
        entry(open)->trigger();
        QTRY_COMPARE(toolBar.Commands(), all);
        // What a user has added is offered, too.
        std::vector<int> more = all;
        more.push_back(ID_APPLOOK_WINDOWS_7);
        toolBar.SetCommands(more);
        const QString added = run.Frame().CommandAction(ID_APPLOOK_WINDOWS_7)->text();
        QVERIFY(entry(added) != nullptr && entry(added)->isChecked());
        entry(added)->trigger();
        QTRY_COMPARE(toolBar.Commands(), all);
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
        QMenu* file = bar.actions().constFirst()->menu();
        QTest::keyClick(file, Qt::Key_Down);
        QCOMPARE(file->activeAction(), Entry(*file, "&Open..."));
        QCOMPARE(run.Frame().statusBar()->currentMessage(), QStringLiteral("Open debug log file"));
        file->close();
    }

    void sessionCommandsAreEnabledOnlyWhereADocumentAnswersThem() {
        CFakeInterface user;
        CRun run(*m_pFolder);
        CTestFrame* first = run.Open("a.log");
        CTestFrame* second = run.Open("b.log");
        int analyzed = 0;
        first->GetActiveDocument()->AddCommand(ID_SESSION_ANALYZE, [&analyzed] { ++analyzed; });
        run.Frame().UpdateCommands();
        QVERIFY(!run.Frame().CommandAction(ID_SESSION_ANALYZE)->isEnabled());
        run.Area().Activate(*first);
        QVERIFY(run.Frame().CommandAction(ID_SESSION_ANALYZE)->isEnabled());
        run.Frame().CommandAction(ID_SESSION_ANALYZE)->trigger();
        QCOMPARE(analyzed, 1);
        QVERIFY(second != nullptr);
    }

    void theToolsMenuOffersAllWorkstationTools() {
        CFakeInterface user;
        const CRun run(*m_pFolder);
        CPersonalMenu* tools = run.OpenMenu("Tools");
        QCOMPARE(VisibleTexts(*tools),
                 (QStringList{"Global Tables", "Convert Dates", "JDE Settings", "Options"}));
        for (const char* text : {"Global Tables", "Convert Dates", "JDE Settings", "Options"}) {
            QVERIFY2(Entry(*tools, text)->isEnabled(), text);
        }
        tools->close();
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

    // The entry in the menu bears the same key.
    void aCommandsKeyIsItsOwnWhileTheMenuBarHasTheKeyboard() {
        CFakeInterface user;
        const CRun run(*m_pFolder);
        user.m_strOpenAnswer = QStringLiteral("chosen.log");
        run.Frame().activateWindow();
        QMenuBar& bar = *run.Frame().menuBar();
        bar.setFocus(Qt::MenuBarFocusReason);
        QCOMPARE(QApplication::focusWidget(), &bar);
        QTest::failOnWarning(QRegularExpression(QStringLiteral("Ambiguous")));
        QTest::keyClick(&run.Frame(), Qt::Key_O, Qt::ControlModifier);
        QCOMPARE(run.Frame().windowTitle(), QStringLiteral("chosen.log - Carvelot"));
        // There it is to be seen.
        QMenu* file = bar.actions().constFirst()->menu();
        QSignalSpy closed(file, &QMenu::aboutToHide);
        file->popup(run.Frame().mapToGlobal(QPoint(10, 10)));
        QCOMPARE(Entry(*file, "&Open...")->shortcut(), QKeySequence(QStringLiteral("Ctrl+O")));
        file->close();
        QCOMPARE(closed.size(), 1);
        QTest::keyClick(&run.Frame(), Qt::Key_N, Qt::ControlModifier);
        QCOMPARE(run.Frame().windowTitle(), QStringLiteral("new - Carvelot"));
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
        const int destroyed = CTestFrame::s_nDestroyed;
        QVERIFY(run.Open("bad") == nullptr);
        QVERIFY(run.Area().Children().isEmpty());
        QVERIFY(theApp().FirstDocTemplate()->Documents().empty());
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCOMPARE(CTestFrame::s_nDestroyed, destroyed + 1);
    }

    void theBitnessStandsInTheStatusBarAndInAbout() {
        CFakeInterface user;
        const CRun run(*m_pFolder);
        const QString bitness = sizeof(void*) == 8 ? QStringLiteral("64 bit") : QStringLiteral("32 bit");
        QCOMPARE(run.Frame().statusBar()->findChild<QLabel*>("Bitness")->text(), bitness);
        user.m_fnInDialog = [&](QDialog& dialog) {
            QCOMPARE(dialog.windowTitle(), QStringLiteral("About Carvelot"));
            QCOMPARE(dialog.findChild<QLabel*>("Version")->text(),
                     QStringLiteral("Carvelot, Version: 2.0.0.0"));
            QCOMPARE(dialog.findChild<QLabel*>("Bitness")->text(), bitness);
            int links = 0;
            for (const QLabel* label : dialog.findChildren<QLabel*>()) {
                links += label->openExternalLinks() ? 1 : 0;
            }
            QCOMPARE(links, 2);
        };
        run.Frame().RunCommand(ID_APP_ABOUT);
        QCOMPARE(user.m_nDialogs, 1);
    }

    void aLookIsStoredAndMarked() {
        CFakeInterface user;
        const CRun run(*m_pFolder);
        CPersonalMenu* view = run.OpenMenu("View");
        auto* looks = static_cast<CPersonalMenu*>(Entry(*view, "&Application Look")->menu());
        emit looks->aboutToShow();
        QVERIFY(Entry(*looks, "Visual Studio 200&8")->isChecked());
        Entry(*looks, "Office 200&3")->trigger();
        view->close();
        QCOMPARE(GetWorkspaceInt("ApplicationLook", 0), 208);
        QVERIFY(Entry(*looks, "Office 200&3")->isChecked());
        QVERIFY(!Entry(*looks, "Visual Studio 200&8")->isChecked());
        QCOMPARE(CurrentLook().m_nId, 208);
        Entry(*looks, "Office 200&3")->trigger(); // once more: the mark stays
        QVERIFY(Entry(*looks, "Office 200&3")->isChecked());
    }

    void theViewMenuHasTenLooksAndNotTheEleventh() {
        CFakeInterface user;
        const CRun run(*m_pFolder);
        CPersonalMenu* view = run.OpenMenu("View");
        QMenu* looks = Entry(*view, "&Application Look")->menu();
        QList<int> ids;
        for (QMenu* menu : {looks, Entry(*looks, "Office 200&7")->menu()}) {
            for (const QAction* action : menu->actions()) {
                if (action->data().toInt() != 0) {
                    ids << action->data().toInt();
                }
            }
        }
        view->close();
        QCOMPARE(ids, (QList<int>{205, 206, 207, 208, 209, 210, 215, 216, 217, 218}));
    }

    void aStoredLookWithoutANameTakesOffice2007AndMarksNothing() {
        CFakeInterface user;
        UseSettingsStore(ToUtf8(m_pFolder->filePath("registry.ini")));
        WriteWorkspaceInt("ApplicationLook", 211);
        const CRun run(*m_pFolder);
        QCOMPARE(CurrentLook().m_nId, 215);
        for (int id = ID_APPLOOK_FIRST; id <= ID_APPLOOK_LAST; ++id) {
            if (const QAction* action = run.Frame().CommandAction(id)) {
                QVERIFY(!action->isChecked());
            }
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
        for (const int id : LookIds()) {
            run.Frame().OnApplicationLook(id);
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
        CTestFrame* child = run.Open("a");
        // The colours of one button, drawn so large that its lines are whole.
        const auto colors = [&pane](const QWidget& button) {
            constexpr int kScale = 6;
            QPixmap picture(pane.size() * kScale);
            picture.setDevicePixelRatio(kScale);
            pane.render(&picture);
            const QRect rect(button.pos() * kScale, button.size() * kScale);
            const QImage image = picture.copy(rect).toImage();
            QSet<QRgb> setColors;
            for (int y = 0; y < image.height(); ++y) {
                for (int x = 0; x < image.width(); ++x) {
                    setColors << (image.pixel(x, y) & RGB_MASK);
                }
            }
            return setColors;
        };
        for (const int id : LookIds()) {
            frame.OnApplicationLook(id);
            const QRgb calm = CurrentLook().m_titleText.rgb() & RGB_MASK;
            const QRgb active = CurrentLook().m_activeTitleText.rgb() & RGB_MASK;
            QVERIFY(calm != active);
            for (const bool isActive : {true, false}) {
                (isActive ? pane.MainControl() : child->m_edits[0])->setFocus();
                QCoreApplication::processEvents();
                for (const char* name :
                     {"qt_dockwidget_floatbutton", "qt_dockwidget_closebutton", "PinButton"}) {
                    const auto* widget = pane.findChild<QAbstractButton*>(QLatin1String(name));
                    const QSet<QRgb> setColors = colors(*widget);
                    const QByteArray where = QByteArray(name) + " in look " + QByteArray::number(id);
                    QVERIFY2(setColors.contains(isActive ? active : calm), where);
                    QVERIFY2(!setColors.contains(isActive ? calm : active), where);
                }
            }
        }
    }

    void f6WalksThroughTheWindowsPanesAndShiftF6Back() {
        CFakeInterface user;
        CRun run(*m_pFolder);
        CTestFrame* child = run.Open("a.log");
        run.Frame().activateWindow();
        child->m_edits[0]->setFocus();
        QCOMPARE(QApplication::focusWidget(), child->m_edits[0]);
        QTest::keyClick(&run.Frame(), Qt::Key_F6);
        QCOMPARE(QApplication::focusWidget(), child->m_edits[1]);
        QTest::keyClick(&run.Frame(), Qt::Key_F6);
        QCOMPARE(QApplication::focusWidget(), run.Frame().m_wndBSFNPane.MainControl());
        QTest::keyClick(&run.Frame(), Qt::Key_F6);
        QCOMPARE(QApplication::focusWidget(), child->m_edits[0]);
        QTest::keyClick(&run.Frame(), Qt::Key_F6, Qt::ShiftModifier);
        QCOMPARE(QApplication::focusWidget(), run.Frame().m_wndBSFNPane.MainControl());
    }

    void theEditMenuActsOnTheEditWithTheFocus() {
        CFakeInterface user;
        CRun run(*m_pFolder);
        CTestFrame* child = run.Open("a.log");
        run.Frame().activateWindow();
        child->m_edits[0]->setText(QStringLiteral("words"));
        child->m_edits[0]->selectAll();
        child->m_edits[0]->setFocus();
        user.m_strMenuChoice = QStringLiteral("Cu&t");
        run.Frame().ShowEditMenu({});
        QCOMPARE(child->m_edits[0]->text(), QString());
        user.m_strMenuChoice = QStringLiteral("&Paste");
        run.Frame().ShowEditMenu({});
        QCOMPARE(child->m_edits[0]->text(), QStringLiteral("words"));
        QCOMPARE(user.m_listMenuTexts.constFirst(), QStringLiteral("&Undo"));
    }

    void closeAllClosesEveryWindowWithoutAskingAndEmptiesTheCaptions() {
        CFakeInterface user;
        CRun run(*m_pFolder);
        run.Open("a.log");
        run.Open("b.log");
        run.Frame().m_wndBSFNPane.SetCaption(QStringLiteral(" Process: 1"));
        const int closed = CTestFrame::s_nClosed;
        run.Frame().RunCommand(ID_WINDOW_CLOSE_ALL);
        QVERIFY(run.Area().Children().isEmpty());
        QCOMPARE(CTestFrame::s_nClosed, closed);
        QCOMPARE(run.Frame().m_wndBSFNPane.GetCaption(), QString());
    }

    void theWindowsDialogActivatesAndCloses() {
        CFakeInterface user;
        CRun run(*m_pFolder);
        CTestFrame* first = run.Open("a.log");
        run.Open("b.log");
        user.m_fnInDialog = [](QDialog& dialog) {
            auto* list = dialog.findChild<QTreeWidget*>("Windows");
            QCOMPARE(list->topLevelItemCount(), 2);
            list->clearSelection();
            list->topLevelItem(0)->setSelected(true);
            QTest::mouseClick(dialog.findChild<QPushButton*>("Activate"), Qt::LeftButton);
        };
        run.Frame().RunCommand(ID_WINDOW_WINDOWS);
        QCOMPARE(run.Area().ActiveChild(), first);
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
        const auto listed = [&run] {
            CPersonalMenu* menu = run.OpenMenu("Window");
            QStringList texts;
            for (const QAction* action : menu->actions()) {
                if (action->isCheckable() && action->isVisible()) {
                    texts << action->text() + (action->isChecked() ? QStringLiteral(" *") : QString());
                }
            }
            menu->close();
            return texts;
        };
        run.Open("a");
        run.Open("R&D.log");
        QCOMPARE(listed(), (QStringList{"&1 a", "&2 R&&D.log *"}));
        for (const char* name : {"c", "d", "e", "f", "g", "h", "i", "j"}) {
            run.Open(name);
        }
        // The tenth is in front, and not in the list.
        QCOMPARE(listed(), (QStringList{"&1 a", "&2 R&&D.log", "&3 c", "&4 d", "&5 e", "&6 f", "&7 g", "&8 h",
                                        "&9 i"}));
        CPersonalMenu* menu = run.OpenMenu("Window");
        QAction* third = Entry(*menu, "&3 c");
        QCOMPARE(third->statusTip(), QStringLiteral("Activate this window"));
        // They stand between the commands and "Windows ...".
        const QList<QAction*> actions = menu->actions();
        QVERIFY(actions.indexOf(Entry(*menu, "Close All")) < actions.indexOf(third));
        QVERIFY(actions.indexOf(third) < actions.indexOf(Entry(*menu, "Windows ...")));
        third->trigger();
        menu->close();
        QCOMPARE(run.Area().ActiveChild()->windowTitle(), QStringLiteral("c"));
        QVERIFY(listed().contains(QLatin1String("&3 c *")));
        // A window that goes leaves the list, and the tenth comes in.
        run.Frame().RunCommand(ID_FILE_CLOSE);
        QCOMPARE(listed().size(), 9);
        QVERIFY(!listed().join(u' ').contains(QLatin1String("&3 c")));
        QCOMPARE(listed().constLast().left(4), QStringLiteral("&9 j"));
        // A title that changes is listed as it stands.
        run.Area().Children().constFirst()->GetActiveDocument()->SetTitle(QStringLiteral("a - Process: 5"));
        QCOMPARE(listed().constFirst(), QStringLiteral("&1 a - Process: 5"));
    }

    void recentFilesStandInTheFileMenuAndOpen() {
        CFakeInterface user;
        CRun run(*m_pFolder);
        run.Open("a.log");
        run.Open("b.log");
        run.Frame().RunCommand(ID_WINDOW_CLOSE_ALL);
        CPersonalMenu* file = run.OpenMenu("File");
        QAction* second = nullptr;
        for (QAction* action : file->actions()) {
            if (action->text().startsWith(QLatin1String("&2 "))) {
                second = action;
            }
        }
        QVERIFY(second != nullptr && second->isVisible());
        QCOMPARE(second->statusTip(), QStringLiteral("Open this document"));
        second->trigger();
        file->close();
        QVERIFY(run.Frame().windowTitle().endsWith(QLatin1String("a.log - Carvelot")));
        run.Stop();
        QCOMPARE(theApp().m_recentFiles.m_listPaths.size(), 2U);
    }

    void aUserMakesAToolbarOfAnyCommandsAndFindsItAgainAtTheNextStart() {
        CFakeInterface user;
        {
            CRun run(*m_pFolder);
            run.Frame().RunCommand(ID_VIEW_CUSTOMIZE);
            CCustomizeDlg* dialog = run.Frame().CustomizeDialog();
            QVERIFY(dialog != nullptr && !dialog->isModal());
            user.m_strTextAnswer = QStringLiteral("Mine | 1");
            QTest::mouseClick(dialog->findChild<QPushButton*>("New"), Qt::LeftButton);
            auto* commands = dialog->findChild<QListWidget*>("Commands");
            QCOMPARE(commands->count(), static_cast<int>(AllCommands().size()));
            for (int n = 0; n < commands->count(); ++n) {
                if (commands->item(n)->text() == QLatin1String("Windows 7")) {
                    commands->setCurrentRow(n);
                }
            }
            QTest::mouseClick(dialog->findChild<QPushButton*>("Add"), Qt::LeftButton);
            QTest::mouseClick(dialog->findChild<QPushButton*>("Separator"), Qt::LeftButton);
        }
        const CRun run(*m_pFolder);
        QCOMPARE(run.Frame().Bars().All().size(), 3);
        CToolBar* mine = run.Frame().Bars().All().constLast();
        QCOMPARE(mine->windowTitle(), QStringLiteral("Mine | 1"));
        QCOMPARE(mine->Commands(), (std::vector<int>{ID_APPLOOK_WINDOWS_7, ID_SEPARATOR}));
        mine->actions().constFirst()->trigger();
        QCOMPARE(theApp().m_nAppLook, 219);
    }

    void aToolbarIsHiddenShownResetAndDeletedOnItsPage() {
        CFakeInterface user;
        const CRun run(*m_pFolder);
        const CCustomizeHands hands(run.Frame(), user); // which make one of their own
        const QList<CToolBar*> all = run.Frame().Bars().All();
        QCOMPARE(all.size(), 3);
        QListWidget& listed = hands.List("ToolBars");
        QCOMPARE(listed.count(), 3);
        listed.item(1)->setCheckState(Qt::Unchecked);
        QVERIFY(all[1]->isHidden() && !all[0]->isHidden());
        listed.item(1)->setCheckState(Qt::Checked);
        QVERIFY(!all[1]->isHidden());
        // One of the user's own can be deleted, one of the program's reset.
        const std::vector<int> standard = all[0]->Commands();
        listed.setCurrentRow(0);
        QVERIFY(!hands.Button("Delete").isEnabled());
        all[0]->SetCommands({ID_TOOLS_OPTIONS});
        hands.Press("Reset");
        QCOMPARE(all[0]->Commands(), standard);
        listed.setCurrentRow(2);
        QVERIFY(!hands.Button("Reset").isEnabled());
        hands.Press("Delete");
        QCOMPARE(run.Frame().Bars().All(), all.mid(0, 2));
        QCOMPARE(listed.count(), 2);
        // Without an answer, or with a title of blanks alone, none is made.
        for (const std::optional<QString>& title : {std::optional<QString>(), std::optional<QString>("  ")}) {
            user.m_strTextAnswer = title;
            hands.Press("New");
            QCOMPARE(listed.count(), 2);
        }
        listed.item(1)->setCheckState(Qt::Unchecked);
        hands.Press("RestoreLayout");
        QCOMPARE(listed.item(1)->checkState(), all[1]->isHidden() ? Qt::Unchecked : Qt::Checked);
        // Ten, and no more.
        user.m_listMessages.clear();
        user.m_strTextAnswer = QStringLiteral("Mine");
        for (int n = 0; n < 10; ++n) {
            hands.Press("New");
        }
        QCOMPARE(user.m_listMessages, QStringList());
        hands.Press("New");
        QCOMPARE(user.m_listMessages, QStringList("There can be ten toolbars of your own."));
        QCOMPARE(listed.count(), 12);
    }

    void habitsOfMenusAndTipsAreChangedOnTheirPage() {
        CFakeInterface user;
        const CRun run(*m_pFolder);
        const CCustomizeHands hands(run.Frame(), user);
        const CMenuHabits& habits = run.Frame().MenuHabits();
        auto* const shorter = run.Frame().CustomizeDialog()->findChild<QCheckBox*>("RecentlyUsedMenus");
        auto* const delay = run.Frame().CustomizeDialog()->findChild<QCheckBox*>("FullMenusAfterDelay");
        auto* const tips = run.Frame().CustomizeDialog()->findChild<QCheckBox*>("ToolTips");
        QCOMPARE(shorter->isChecked(), habits.m_bRecentlyUsedMenus);
        for (int turn = 0; turn < 2; ++turn) {
            const bool before = habits.m_bRecentlyUsedMenus;
            shorter->click();
            QCOMPARE(habits.m_bRecentlyUsedMenus, !before);
            QCOMPARE(delay->isEnabled(), !before);
        }
        // What a button of a toolbar has to say, heard or not.
        CToolBar* const toolBar = run.Frame().Bars().All().constFirst();
        QWidget* const button = toolBar->widgetForAction(toolBar->actions().constFirst());
        const auto isAnswered = [button] {
            QHelpEvent event(QEvent::ToolTip, QPoint(4, 4), button->mapToGlobal(QPoint(4, 4)));
            QApplication::sendEvent(button, &event);
            const bool isShown = QToolTip::isVisible();
            QToolTip::hideText();
            for (QWidget* window : QApplication::topLevelWidgets()) {
                if (window->inherits("QTipLabel")) {
                    window->hide();
                }
            }
            return isShown;
        };
        QVERIFY(tips->isChecked() && isAnswered());
        tips->click();
        QVERIFY(!run.Frame().Bars().ShowsToolTips() && !isAnswered());
        tips->click();
        QVERIFY(run.Frame().Bars().ShowsToolTips() && isAnswered());
    }

    void commandsAreListedByTheirCategory() {
        CFakeInterface user;
        const CRun run(*m_pFolder);
        const CCustomizeHands hands(run.Frame(), user);
        auto* const categories = run.Frame().CustomizeDialog()->findChild<QComboBox*>("Categories");
        QVERIFY(categories != nullptr);
        int sum = 0;
        for (int category = 1; category < categories->count(); ++category) {
            categories->setCurrentIndex(category);
            int expected = 0;
            for (const CCommandInfo& command : AllCommands()) {
                expected += ToQString(command.m_strCategory) == categories->itemText(category) ? 1 : 0;
            }
            QCOMPARE(hands.List("Commands").count(), expected);
            sum += expected;
        }
        QCOMPARE(sum, static_cast<int>(AllCommands().size()));
        categories->setCurrentIndex(0);
        QCOMPARE(hands.List("Commands").count(), sum);
    }

    void removeAndMoveChangeTheToolbarAtOnce() {
        CFakeInterface user;
        const CRun run(*m_pFolder);
        const CCustomizeHands hands(run.Frame(), user);
        for (const char* command : {"Open...", "Options", "Convert Dates"}) {
            hands.Add(command);
        }
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
        for (int n = 0; n < 3; ++n) {
            hands.Press("Remove");
        }
        QCOMPARE(hands.Listed(), QStringList());
        QCOMPARE(hands.Standing(), QStringList());
        for (const char* button : {"Remove", "Up", "Down"}) {
            QVERIFY(!hands.Button(button).isEnabled());
        }
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
            QListWidgetItem* item = hands.Choose("Commands", "Options");
            QVERIFY(!hands.Button("Add").isEnabled());
            emit hands.List("Commands").itemDoubleClicked(item);
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
        const std::string options = std::to_string(ID_TOOLS_OPTIONS);
        StoreText("UserToolBar59432", "Mine|" + options + ",0," + options + ",0");
        const CRun run(*m_pFolder);
        const std::vector<int> commands = run.Frame().Bars().All().constLast()->Commands();
        QCOMPARE(std::ranges::count(commands, int(ID_TOOLS_OPTIONS)), 1);
        QCOMPARE(std::ranges::count(commands, int(ID_SEPARATOR)), 2);
    }

    void atMostTenToolbarsOfAUsersOwn() {
        CFakeInterface user;
        const CRun run(*m_pFolder);
        for (int n = 0; n < 10; ++n) {
            QVERIFY(run.Frame().Bars().New(QString::number(n)) != nullptr);
        }
        QVERIFY(run.Frame().Bars().New(QStringLiteral("eleventh")) == nullptr);
        QCOMPARE(run.Frame().Bars().All().constLast()->Id(), 59441);
    }

    void userImagesAreTakenFromTheCurrentFolder() {
        CFakeInterface user;
        const QString before = QDir::currentPath();
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
            const CCustomizeHands hands(run.Frame(), user);
            hands.Choose("Commands", "Options");
            auto* const image = run.Frame().CustomizeDialog()->findChild<QComboBox*>("Image");
            QCOMPARE(image->count(), 4); // the command's own ahead of them
            emit image->activated(3);
            QCOMPARE(run.Frame().Bars().UserImage(ID_TOOLS_OPTIONS), 2);
            QCOMPARE(image->currentIndex(), 3);
            emit image->activated(0);
            QCOMPARE(run.Frame().Bars().UserImage(ID_TOOLS_OPTIONS), -1);
        }
        {
            const CRun run(*m_pFolder);
            QCOMPARE(run.Frame().Bars().UserImage(ID_FILE_OPEN), 1);
        }
        QDir::setCurrent(before);
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
        const bool isMove = keys == Qt::ShiftModifier;
        const auto propose = [&](QDropEvent& event) {
            event.setDropAction(isMove ? Qt::MoveAction : event.proposedAction());
            QCoreApplication::sendEvent(&run.Frame(), &event);
            QVERIFY(event.isAccepted());
            QCOMPARE(event.dropAction(), Qt::CopyAction);
        };
        QDragEnterEvent enter(QPoint(50, 50), offered, &data, Qt::LeftButton, keys);
        propose(enter);
        QDragMoveEvent move(QPoint(60, 60), offered, &data, Qt::LeftButton, keys);
        propose(move);
        QDropEvent drop(QPointF(60, 60), offered, &data, Qt::LeftButton, keys);
        propose(drop);
        QTRY_COMPARE(run.Area().Children().size(), 1);
    }

    void aFileDroppedOnAFloatingPaneOpensToo() {
        CFakeInterface user;
        const CRun run(*m_pFolder);
        CDockablePane* const pane = run.Frame().Panes().first();
        pane->setFloating(true);
        QVERIFY(pane->isWindow());
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(m_pFolder->filePath("dropped.log"))});
        // What is under the pointer hears first.
        QWidget* const under = pane->widget();
        QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, {});
        QCoreApplication::sendEvent(under, &enter);
        QVERIFY(enter.isAccepted());
        QDragMoveEvent move(QPoint(6, 6), Qt::CopyAction, &data, Qt::LeftButton, {});
        QCoreApplication::sendEvent(under, &move);
        QVERIFY(move.isAccepted());
        QDropEvent drop(QPointF(6, 6), Qt::CopyAction, &data, Qt::LeftButton, {});
        QCoreApplication::sendEvent(under, &drop);
        QVERIFY(drop.isAccepted());
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
        int refreshed = 0;
        pane.m_fnRefresh = [&refreshed] { ++refreshed; };
        theApp().m_nRefreshRate = 3;
        run.Frame().RunCommand(ID_TOOLS_OPTIONS); // cancelled
        QCOMPARE(pane.TimerPeriod(), 3000);
        QCOMPARE(refreshed, 1);
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
        QStringList steps;
        auto made = std::make_unique<CStore>();
        CStore& store = *made;
        store.m_pSteps = &steps;
        std::unique_ptr<CJDESettingsStore> before = std::exchange(theApp().m_pJDESettings, std::move(made));
        user.m_fnInDialog = [&](QDialog&) { steps << "dialog"; };
        run.Frame().RunCommand(ID_TOOLS_JDE_SETTINGS);
        QCOMPARE(steps, (QStringList{"dialog made", "properties", "ini", "dialog", "properties", "ini"}));
        steps.clear();
        store.m_bWeb = false;
        run.Frame().RunCommand(ID_TOOLS_JDE_SETTINGS);
        QCOMPARE(steps, (QStringList{"dialog made", "ini", "dialog", "ini"}));
        theApp().m_pJDESettings = std::move(before);
    }

private:
    std::unique_ptr<QTemporaryDir> m_pFolder;
};

QTEST_MAIN(MainFrameTest)
#include "MainFrameTest.moc"
