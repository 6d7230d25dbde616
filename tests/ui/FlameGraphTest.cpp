// The window "Flame Graph", by mouse and keys.
#include "ui/ExploreSupport.h"
#include "ui/explore/FlameGraphFrame.h"

#include <QAccessible>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QScrollBar>
#include <QToolButton>
#include <QToolTip>

using namespace carvelot;
using namespace carvelot::test;

class FlameGraphTest : public CSessionTest {
    Q_OBJECT

private slots:
    void init() { StartRun(); }
    void cleanup() { EndRun(); }

    void aClickZoomsIntoACallAndTheKeysGoBack() {
        Open(ExploredLines());
        QCOMPARE(ZoomedName(), QStringLiteral("Whole log"));
        QCOMPARE(Path(), QStringList{"Whole log"});
        Click("F OuterCall");
        QCOMPARE(ZoomedName(), QStringLiteral("F OuterCall"));
        QCOMPARE(Path(), (QStringList{"Whole log", "F OuterCall"}));
        // It takes the whole width now.
        QCOMPARE(Picture().RectOf(Place("F OuterCall")).width, double(m_pView->viewport()->width()));
        Click("F InnerCall");
        QCOMPARE(Path(), (QStringList{"Whole log", "F OuterCall", "F InnerCall"}));
        QTest::keyClick(m_pView, Qt::Key_Backspace);
        QCOMPARE(ZoomedName(), QStringLiteral("F OuterCall"));
        QTest::keyClick(m_pView, Qt::Key_Escape);
        QCOMPARE(ZoomedName(), QStringLiteral("Whole log"));
        QTest::keyClick(m_pView, Qt::Key_Backspace);
        QCOMPARE(ZoomedName(), QStringLiteral("Whole log"));
    }

    void thePathLeadsBackUp() {
        Open(ExploredLines());
        Click("F OuterCall");
        Click("F InnerCall");
        const auto steps = Steps();
        QCOMPARE(steps.size(), 3);
        QTest::mouseClick(steps[1], Qt::LeftButton);
        QCOMPARE(ZoomedName(), QStringLiteral("F OuterCall"));
        QTest::mouseClick(Steps()[0], Qt::LeftButton);
        QCOMPARE(ZoomedName(), QStringLiteral("Whole log"));
    }

    void aDoubleClickZoomsOnce() {
        Open(ExploredLines());
        const QPoint place = PointOf("F InnerCall");
        QTest::mouseClick(m_pView->viewport(), Qt::LeftButton, {}, place);
        QTest::mouseDClick(m_pView->viewport(), Qt::LeftButton, {}, place);
        QCOMPARE(ZoomedName(), QStringLiteral("F InnerCall"));
    }

    void theArrowsWalkAndEnterZooms() {
        Open(ExploredLines());
        m_pView->setFocus();
        QCOMPARE(FocusName(), QStringLiteral("Whole log"));
        QTest::keyClick(m_pView, Qt::Key_Down);
        QCOMPARE(FocusName(), QStringLiteral("F OuterCall"));
        QTest::keyClick(m_pView, Qt::Key_Right);
        QCOMPARE(FocusName(), QStringLiteral("F LastCall"));
        QTest::keyClick(m_pView, Qt::Key_Right);
        QCOMPARE(FocusName(), QStringLiteral("F LastCall"));
        QTest::keyClick(m_pView, Qt::Key_Left);
        QTest::keyClick(m_pView, Qt::Key_Down);
        QCOMPARE(FocusName(), QStringLiteral("F InnerCall"));
        QTest::keyClick(m_pView, Qt::Key_Return);
        QCOMPARE(ZoomedName(), QStringLiteral("F InnerCall"));
        // Out of sight the focus does not go.
        QTest::keyClick(m_pView, Qt::Key_Up);
        QCOMPARE(FocusName(), QStringLiteral("F InnerCall"));
        QTest::keyClick(m_pView, Qt::Key_Home);
        QCOMPARE(ZoomedName(), QStringLiteral("Whole log"));
    }

    void searchSumsItsHitsAndF3WalksThem() {
        Open(ExploredLines());
        m_pView->setFocus();
        QTest::keyClick(m_pView, Qt::Key_Slash);
        QVERIFY(m_pSearch->hasFocus());
        QVERIFY(m_pSearch->text().isEmpty());
        QTest::keyClicks(m_pSearch, QStringLiteral("CALL"));
        QVERIFY2(Shows("3 hits, 6.000000 s (100.0 %)"), qPrintable(m_pSearch->text()));
        m_pSearch->clear();
        QTest::keyClicks(m_pSearch, QStringLiteral("inner"));
        QVERIFY(Shows("1 hit, 2.000000 s (33.3 %)"));
        m_pSearch->clear();
        QTest::keyClicks(m_pSearch, QStringLiteral("call"));
        QTest::keyClick(m_pSearch, Qt::Key_Return);
        QVERIFY(m_pView->hasFocus());
        QCOMPARE(FocusName(), QStringLiteral("F OuterCall"));
        QTest::keyClick(m_pView, Qt::Key_F3);
        QCOMPARE(FocusName(), QStringLiteral("F InnerCall"));
        QTest::keyClick(m_pView, Qt::Key_F3);
        QCOMPARE(FocusName(), QStringLiteral("F LastCall"));
        QTest::keyClick(m_pView, Qt::Key_F3);
        QCOMPARE(FocusName(), QStringLiteral("F OuterCall"));
        QTest::keyClick(m_pView, Qt::Key_F3, Qt::ShiftModifier);
        QCOMPARE(FocusName(), QStringLiteral("F LastCall"));
        // Ctrl+F comes back to the line, Esc lets go of the search.
        QTest::keyClick(m_pView, Qt::Key_F, Qt::ControlModifier);
        QVERIFY(m_pSearch->hasFocus());
        QTest::keyClick(m_pSearch, Qt::Key_Escape);
        QVERIFY(m_pSearch->text().isEmpty());
        QVERIFY(!Picture().m_search.IsOn());
    }

    void aHitThatIsTooNarrowIsZoomedTo() {
        std::vector<std::string> lines = ExploredLines();
        lines.push_back(Line("08:30:00.000000",
                             "Calling Business function Long for JSMITH from CALLBSFN.DLL. (BSFNLevel = 1)"));
        lines.push_back(Line("09:30:00.000000", "Return value is 0 for Long. (BSFNLevel = 1)"));
        Open(lines);
        m_pSearch->setText(QStringLiteral("inner"));
        m_pView->setFocus();
        QTest::keyClick(m_pView, Qt::Key_F3);
        QCOMPARE(FocusName(), QStringLiteral("F InnerCall"));
        QVERIFY(Picture().RectOf(Picture().m_focus).width >= 8);
        QCOMPARE(ZoomedName(), QStringLiteral("F OuterCall"));
    }

    void isColoredByKindOrBySelfTime() {
        Open(ExploredLines());
        auto* const coloring = ColoringBox();
        QCOMPARE(Picture().m_coloring, CFlamePicture::Coloring::Kind);
        coloring->setFocus();
        QTest::keyClick(coloring, Qt::Key_Down);
        QCOMPARE(Picture().m_coloring, CFlamePicture::Coloring::Self);
        // The next window begins with it.
        m_pFrame->CloseWindow();
        CSessionRun::Settle();
        m_pFrame = OpenExplore<CFlameGraphFrame>(*m_pRun, *m_pSession, ID_EXPLORE_FLAME_GRAPH);
        m_pView = m_pFrame->findChild<CFlameView*>();
        QCOMPARE(Picture().m_coloring, CFlamePicture::Coloring::Self);
        QCOMPARE(ColoringBox()->currentText(), QStringLiteral("By self time"));
    }

    void f6LeadsFromTheSearchToThePictureAndBack() {
        Open(ExploredLines());
        auto* const search = m_pFrame->findChild<QLineEdit*>();
        search->setFocus();
        QTest::keyClick(search, Qt::Key_F6);
        QVERIFY(m_pView->hasFocus());
        QTest::keyClick(m_pView, Qt::Key_F6, Qt::ShiftModifier);
        QVERIFY(search->hasFocus());
    }

    void readersHearTheCallWithTheFocus() {
        Open(ExploredLines());
        m_pView->setFocus();
        QAccessibleInterface* const view = QAccessible::queryAccessibleInterface(m_pView);
        QVERIFY(view != nullptr);
        QCOMPARE(view->childCount(), 1);
        QTest::keyClick(m_pView, Qt::Key_Down);
        QAccessibleInterface* const call = view->child(0);
        QCOMPARE(call->text(QAccessible::Name),
                 QStringLiteral("F OuterCall, 1 call, total 4.000000 s (66.7 %), self 2.000000 s"));
        QVERIFY(call->state().focused);
        QCOMPARE(call->parent(), view);
        QCOMPARE(view->focusChild(), call);
        QVERIFY(!call->rect().isEmpty());
        for (QToolButton* const step : Steps()) {
            QVERIFY(!step->accessibleName().isEmpty());
        }
    }

    void readersFindTheCallByPlaceAndItHasNoParts() {
        Open(ExploredLines());
        m_pView->setFocus();
        QTest::keyClick(m_pView, Qt::Key_Down);
        QAccessibleInterface* const view = QAccessible::queryAccessibleInterface(m_pView);
        QAccessibleInterface* const call = view->child(0);
        const QPoint middle = call->rect().center();
        QCOMPARE(view->childAt(middle.x(), middle.y()), call);
        QCOMPARE(view->childAt(-50, -50), nullptr);
        QCOMPARE(view->indexOfChild(call), 0);
        QCOMPARE(view->indexOfChild(view), -1);
        QVERIFY(call->isValid());
        QCOMPARE(call->role(), QAccessible::ListItem);
        QCOMPARE(call->window(), m_pView->window()->windowHandle());
        QCOMPARE(call->childCount(), 0);
        QCOMPARE(call->child(0), nullptr);
        QCOMPARE(call->childAt(middle.x(), middle.y()), nullptr);
        QCOMPARE(call->indexOfChild(view), -1);
        QCOMPARE(call->text(QAccessible::Description), QString());
        call->setText(QAccessible::Name, QStringLiteral("another"));
        QVERIFY(call->text(QAccessible::Name).startsWith(QLatin1String("F OuterCall, ")));
    }

    void anotherFontMakesOtherRows() {
        Open(ExploredLines());
        const double before = Picture().RectOf(Picture().Zoomed()).height;
        QFont font = m_pView->font();
        font.setPixelSize(3 * QFontInfo(font).pixelSize());
        m_pView->setFont(font);
        QVERIFY2(Picture().RectOf(Picture().Zoomed()).height > 2 * before,
                 qPrintable(QString::number(Picture().RectOf(Picture().Zoomed()).height)));
    }

    void withoutResultsKeysDoNothing() {
        Open(ExploredLines());
        QAccessibleInterface* const view = QAccessible::queryAccessibleInterface(m_pView);
        QAccessibleInterface* const call = view->child(0);
        m_pFrame->Exploration().EndWithRecords();
        QCOMPARE(m_pView->Shown(), nullptr);
        for (const int key : {Qt::Key_Down, Qt::Key_Return, Qt::Key_Home, Qt::Key_F3}) {
            QTest::keyClick(m_pView, static_cast<Qt::Key>(key));
        }
        QCOMPARE(m_pView->Shown(), nullptr);
        QCOMPARE(view->childCount(), 0);
        QCOMPARE(view->child(0), nullptr);
        QCOMPARE(call->text(QAccessible::Name), QString());
        QVERIFY(call->rect().isNull());
    }

    void aTipTellsTheCallAndItsNumbersAsTheyStand() {
        std::vector<std::string> lines = ExploredLines();
        lines.push_back(
            Line("08:00:08.000000",
                 "Calling Business function A<b>&C for JSMITH from CALLBSFN.DLL. (BSFNLevel = 1)"));
        lines.push_back(Line("08:00:10.000000", "Return value is 0 for A<b>&C. (BSFNLevel = 1)"));
        Open(lines);
        const QPoint place = PointOf("F A<b>&C");
        QHelpEvent help(QEvent::ToolTip, place, m_pView->viewport()->mapToGlobal(place));
        QApplication::sendEvent(m_pView->viewport(), &help);
        QCOMPARE(QToolTip::text(),
                 QStringLiteral("F A<b>&C, 1 call, total 2.000000 s (25.0 %), self 2.000000 s"));
        Click("F A<b>&C");
        QCOMPARE(Steps().constLast()->toolTip(), QStringLiteral("F A<b>&C"));
        QCOMPARE(Steps().constLast()->text(), QStringLiteral("> F A<b>&&C"));
    }

    void aDeepGraphScrollsWithTheWheelAndTheFocus() {
        std::vector<std::string> lines = DebugLog({});
        for (int i = 1; i <= 200; ++i) {
            const std::string text = "Calling Business function F" + std::to_string(i) +
                                     " for JSMITH from CALLBSFN.DLL. (BSFNLevel = " + std::to_string(i) + ")";
            lines.push_back(Line("08:00:01.000000", text.c_str()));
        }
        lines.push_back(Line("08:00:09.000000", "Entering JDB_OpenTable"));
        Open(lines);
        QScrollBar& bar = *m_pView->verticalScrollBar();
        QVERIFY(bar.maximum() > 0);
        const QPointF middle = m_pView->viewport()->rect().center();
        QWheelEvent wheel(middle, m_pView->viewport()->mapToGlobal(middle), {}, QPoint(0, -120), Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(m_pView->viewport(), &wheel);
        QVERIFY(bar.value() > 0);
        bar.setValue(0);
        m_pView->setFocus();
        for (int i = 0; i < 200; ++i) {
            QTest::keyClick(m_pView, Qt::Key_Down);
        }
        QCOMPARE(FocusName(), QStringLiteral("F F200"));
        const PictureRect rect = m_pView->RectOnScreen(Picture().m_focus);
        QVERIFY(rect.y >= 0 && rect.Bottom() <= m_pView->viewport()->height());
        QCOMPARE(bar.value(), bar.maximum());
        // A long path shows its end, and where it is cut.
        QTest::keyClick(m_pView, Qt::Key_Return);
        QCOMPARE(Path().constFirst(), QStringLiteral("Whole log"));
        QCOMPARE(Path().constLast(), QStringLiteral("F F200"));
        QCOMPARE(Path().size(), 5);
        QVERIFY(m_pFrame->minimumSizeHint().width() < 800);
    }

    void showsTheCallOfTheRecordThatIsSelectedElsewhere() {
        Open(ExploredLines());
        m_pFrame->Exploration().Select(m_pFrame->Exploration().Explored().frames[1].record);
        QCOMPARE(FocusName(), QStringLiteral("F InnerCall"));
    }

    void isTheSameScopeAndRangeAsTheOthers() {
        Open(ExploredLines());
        Click("F LastCall");
        m_pFrame->Exploration().SetRange({0, 3'000'000});
        QVERIFY(WaitForResults(m_pFrame->Exploration()));
        QCOMPARE(ZoomedName(), QStringLiteral("Whole log"));
        QCOMPARE(Picture().Layout().Total(0), std::int64_t{3'000'000});
        m_pFrame->Exploration().SetRange({100'000'000, 200'000'000});
        QVERIFY(WaitForResults(m_pFrame->Exploration()));
        QVERIFY(Shows("Nothing lies in this scope and range."));
    }

    void ofALogWithoutCallsSaysSo() {
        Open(DebugLog({}));
        QVERIFY(Shows("This log holds no calls."));
    }

    void goesWithItsRecordsAndComesAnew() {
        Open(ExploredLines());
        Click("F OuterCall");
        for (int n = 0; n < 5; ++n) {
            m_pRun->Frame().RunCommand(ID_SESSION_ANALYZE);
            QVERIFY(m_pView->Shown() == nullptr);
            QVERIFY(m_pFrame->Picture() == nullptr);
            m_pView->grab();
        }
        QVERIFY(WaitForResults(m_pFrame->Exploration()));
        QCOMPARE(ZoomedName(), QStringLiteral("Whole log"));
        QVERIFY(!m_pView->grab().isNull());
    }

private:
    void Open(const std::vector<std::string>& lines) {
        m_pSession = m_pRun->Open(QStringLiteral("order.log"), lines);
        m_pFrame = OpenExplore<CFlameGraphFrame>(*m_pRun, *m_pSession, ID_EXPLORE_FLAME_GRAPH);
        m_pView = m_pFrame->findChild<CFlameView*>();
        m_pSearch = nullptr;
        for (QLineEdit* line : m_pFrame->findChildren<QLineEdit*>()) {
            if (line->accessibleName() == QLatin1String("Search for names")) {
                m_pSearch = line;
            }
        }
        QVERIFY(m_pSearch != nullptr);
    }
    const CFlamePicture& Picture() const { return *m_pView->Shown(); }
    CFlamePicture::Place Place(const char* name) const {
        for (CFlamePicture::Place place = 0; place < Picture().Layout().Count(); ++place) {
            if (Picture().Name(place) == name) {
                return place;
            }
        }
        return CFlameLayout::kNoPlace;
    }
    QPoint PointOf(const char* name) const {
        const PictureRect rect = m_pView->RectOnScreen(Place(name));
        return {static_cast<int>(rect.x + rect.width / 2), static_cast<int>(rect.y + rect.height / 2)};
    }
    void Click(const char* name) {
        QTest::mouseClick(m_pView->viewport(), Qt::LeftButton, {}, PointOf(name));
    }
    QString ZoomedName() const { return QString::fromStdString(Picture().Name(Picture().Zoomed())); }
    QString FocusName() const { return QString::fromStdString(Picture().Name(Picture().m_focus)); }
    QList<QToolButton*> Steps() const {
        for (QWidget* part : m_pFrame->findChildren<QWidget*>()) {
            if (part->accessibleName() == QLatin1String("Path to what is shown")) {
                return part->findChildren<QToolButton*>();
            }
        }
        return {};
    }
    QStringList Path() const {
        QStringList names;
        for (const QToolButton* step : Steps()) {
            names << step->accessibleName();
        }
        return names;
    }
    QComboBox* ColoringBox() const {
        for (QComboBox* box : m_pFrame->findChildren<QComboBox*>()) {
            if (box->accessibleName() == QLatin1String("Color")) {
                return box;
            }
        }
        return nullptr;
    }
    bool Shows(const char* text) const {
        const auto labels = m_pFrame->findChildren<QLabel*>();
        return std::any_of(labels.begin(), labels.end(), [&](const QLabel* label) {
            return label->isVisible() && label->text() == QLatin1String(text);
        });
    }

    CChildFrame* m_pSession = nullptr;
    CFlameGraphFrame* m_pFrame = nullptr;
    CFlameView* m_pView = nullptr;
    QLineEdit* m_pSearch = nullptr;
};

QTEST_MAIN(FlameGraphTest)
#include "FlameGraphTest.moc"
