#include "ui/UiSupport.h"

#include "ui/kit/LookStyle.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QPaintDevice>
#include <QPaintEngine>
#include <QScopeGuard>
#include <QStyleOptionTab>

#include <algorithm>
#include <cmath>

using namespace carvelot;
using namespace carvelot::test;

namespace {

// "a b | c": the groups and their tabs.
QString Groups(const CTabbedClientArea& area) {
    QStringList groups;
    for (const CTabGroup* group : area.Groups()) {
        QStringList tabs;
        for (int n = 0; n < group->count(); ++n) {
            tabs << group->tabText(n);
        }
        groups << tabs.join(QLatin1Char(' '));
    }
    return groups.join(QLatin1String(" | "));
}

void Drag(CTabBar& bar, int tab, const QPoint& screen) {
    const QPoint from = bar.tabRect(tab).center();
    QTest::mousePress(&bar, Qt::LeftButton, {}, from);
    const QPoint to = bar.mapFromGlobal(screen);
    for (const QPoint& point : {from + QPoint(0, 60), to}) {
        QMouseEvent move(QEvent::MouseMove, QPointF(point), QPointF(bar.mapToGlobal(point)), Qt::NoButton,
                         Qt::LeftButton, {});
        QCoreApplication::sendEvent(&bar, &move);
    }
    QMouseEvent release(QEvent::MouseButtonRelease, QPointF(to), QPointF(screen), Qt::LeftButton,
                        Qt::NoButton, {});
    QCoreApplication::sendEvent(&bar, &release);
}

// A paper that keeps the texts written on it, and where.
class CTextPaper : public QPaintDevice {
public:
    struct CText {
        QString m_strText;
        QRectF m_rect;
    };
    QList<CText> m_listTexts;

    QPaintEngine* paintEngine() const override { return &m_engine; }

protected:
    int metric(PaintDeviceMetric which) const override {
        switch (which) {
        case PdmWidth:
        case PdmHeight:
            return 4000;
        case PdmDpiX:
        case PdmDpiY:
        case PdmPhysicalDpiX:
        case PdmPhysicalDpiY:
            return 96;
        case PdmDevicePixelRatio:
            return 1;
        case PdmDevicePixelRatioScaled:
            return static_cast<int>(devicePixelRatioFScale());
        case PdmDepth:
            return 32;
        default:
            return 0;
        }
    }

private:
    class CEngine : public QPaintEngine {
    public:
        explicit CEngine(CTextPaper& paper) : QPaintEngine(AllFeatures), m_paper(paper) {}
        bool begin(QPaintDevice*) override { return true; }
        bool end() override { return true; }
        void updateState(const QPaintEngineState& state) override {
            if (state.state() & DirtyTransform) {
                m_transform = state.transform();
            }
        }
        void drawPixmap(const QRectF&, const QPixmap&, const QRectF&) override {}
        void drawPath(const QPainterPath&) override {}
        void drawPolygon(const QPointF*, int, PolygonDrawMode) override {}
        void drawTextItem(const QPointF& point, const QTextItem& item) override {
            const QRectF rect(point.x(), point.y() - item.ascent(), item.width(),
                              item.ascent() + item.descent());
            m_paper.m_listTexts << CText{item.text(), m_transform.mapRect(rect)};
        }
        Type type() const override { return User; }

    private:
        CTextPaper& m_paper;
        QTransform m_transform;
    };
    mutable CEngine m_engine{*this};
};

// What is to be read in this part of a widget, as it is drawn.
QString TextIn(QWidget& widget, const QRect& part) {
    CTextPaper paper;
    widget.render(&paper, {}, {}, QWidget::DrawChildren);
    QString text;
    for (const CTextPaper::CText& drawn : paper.m_listTexts) {
        if (QRectF(part).contains(drawn.m_rect)) {
            text += drawn.m_strText;
        }
    }
    return text;
}

} // namespace

class TabGroupsTest : public QObject {
    Q_OBJECT

private slots:
    void init() {
        m_pFolder = std::make_unique<QTemporaryDir>();
        m_pUser = std::make_unique<CFakeInterface>();
        m_pRun = std::make_unique<CRun>(*m_pFolder);
    }
    void cleanup() {
        m_pRun.reset();
        m_pUser.reset();
    }

    void aNewWindowComesBehindTheOthersOfItsGroupAndToTheFront() {
        m_pRun->Open("a");
        CTestFrame* second = m_pRun->Open("b");
        QCOMPARE(Groups(Area()), QStringLiteral("a b"));
        QCOMPARE(Area().ActiveChild(), second);
        QCOMPARE(second->m_nFocused, 1);
    }

    void theCloseButtonStandsClearOfPictureAndText_data() {
        QTest::addColumn<Qt::LayoutDirection>("direction");
        QTest::newRow("left to right") << Qt::LeftToRight;
        QTest::newRow("right to left") << Qt::RightToLeft;
    }
    void theCloseButtonStandsClearOfPictureAndText() {
        QFETCH(Qt::LayoutDirection, direction);
        const auto restore = qScopeGuard([] { QApplication::setLayoutDirection(Qt::LeftToRight); });
        QApplication::setLayoutDirection(direction);
        m_pRun->Open("a");
        m_pRun->Open("b");
        auto* const bar = Area().findChild<CTabBar*>();
        QCOMPARE(bar->layoutDirection(), direction);
        for (const int tab : {0, 1}) {
            QStyleOptionTab option;
            option.initFrom(bar);
            option.rect = bar->tabRect(tab);
            option.shape = bar->shape();
            const QRect close = bar->tabButton(tab, QTabBar::RightSide)->geometry();
            option.rightButtonSize = close.size();
            const QRect text = bar->style()->subElementRect(QStyle::SE_TabBarTabText, &option, bar);
            QVERIFY2(close.center().x() > text.right() && close.right() <= option.rect.right(),
                     qPrintable(QStringLiteral("%1: %2 %3").arg(tab).arg(text.right()).arg(close.left())));
        }
    }

    void withoutASessionTheWindowSaysHowToOpenOne() {
        const QString hint = QStringLiteral("Open a debug log with Ctrl+O, or drop one here.");
        QCOMPARE(QAccessible::queryAccessibleInterface(&Area())->text(QAccessible::Name), hint);
        const auto showsText = [this] {
            const QImage picture = Area().grab().toImage();
            const QRgb text = CurrentLook().m_workspaceText.rgb();
            for (int y = 0; y < picture.height(); ++y) {
                for (int x = 0; x < picture.width(); ++x) {
                    if (picture.pixel(x, y) == text) {
                        return true;
                    }
                }
            }
            return false;
        };
        QVERIFY(showsText());
        CTestFrame* child = m_pRun->Open("a");
        QCOMPARE(QAccessible::queryAccessibleInterface(&Area())->text(QAccessible::Name), QString());
        child->close();
        QCOMPARE(QAccessible::queryAccessibleInterface(&Area())->text(QAccessible::Name), hint);
        QVERIFY(showsText());
    }

    // The contrast is that of the guidelines for accessible contents.
    void whatTheEmptyWindowSaysIsLegibleInEveryLook() {
        const auto light = [](const QColor& color) {
            const auto part = [](float fraction) {
                return fraction <= 0.04045F ? fraction / 12.92F
                                            : std::pow((fraction + 0.055F) / 1.055F, 2.4F);
            };
            return 0.2126F * part(color.redF()) + 0.7152F * part(color.greenF()) +
                   0.0722F * part(color.blueF());
        };
        for (const int id : LookIds()) {
            Frame().OnApplicationLook(id);
            const CLook& look = CurrentLook();
            for (const QColor& back : {look.m_workspace.m_from, look.m_workspace.m_to}) {
                const auto [darkest, lightest] = std::minmax({light(look.m_workspaceText), light(back)});
                const float contrast = (lightest + 0.05F) / (darkest + 0.05F);
                QVERIFY2(contrast >= 4.5F, qPrintable(QStringLiteral("%1: %2").arg(id).arg(contrast)));
            }
        }
    }

    void aFileThatIsOpenAlreadyIsActivated() {
        const QString logPath = m_pFolder->filePath(QStringLiteral("log"));
        QFile file(logPath);
        QVERIFY(file.open(QIODevice::WriteOnly));
        CDocument* first = theApp().OpenDocumentFile(logPath);
        m_pRun->Open("b");
        QCOMPARE(theApp().OpenDocumentFile(logPath), first);
        QCOMPARE(Area().ActiveChild(), first->GetFrame());
        QCOMPARE(Area().Children().size(), 2);
    }

    void aSingleTabCannotBeDivided() {
        m_pRun->Open("a");
        QVERIFY(!Area().CanMakeGroup(Qt::Horizontal));
        QVERIFY(!Area().CanMakeGroup(Qt::Vertical));
        QVERIFY(!Frame().CommandAction(ID_WINDOW_NEW_HORIZONTAL_GROUP)->isEnabled());
    }

    void aHorizontalGroupStandsBelow() {
        m_pRun->Open("a");
        m_pRun->Open("b");
        Frame().CommandAction(ID_WINDOW_NEW_HORIZONTAL_GROUP)->trigger();
        QCOMPARE(Groups(Area()), QStringLiteral("a | b"));
        QTest::qWait(20);
        QVERIFY(Area().Groups()[1]->y() > Area().Groups()[0]->y());
        QCOMPARE(Area().Groups()[1]->x(), Area().Groups()[0]->x());
    }

    void aVerticalGroupStandsBesideAndTheOtherDirectionIsThenShut() {
        m_pRun->Open("a");
        m_pRun->Open("b");
        m_pRun->Open("c");
        Frame().CommandAction(ID_WINDOW_NEW_VERTICAL_GROUP)->trigger();
        QCOMPARE(Groups(Area()), QStringLiteral("a b | c"));
        QTest::qWait(20);
        QVERIFY(Area().Groups()[1]->x() > Area().Groups()[0]->x());
        Area().Activate(*Area().Children()[0]);
        QVERIFY(Area().CanMakeGroup(Qt::Vertical));
        QVERIFY(!Area().CanMakeGroup(Qt::Horizontal));
    }

    void aGroupThatLosesItsLastTabGoes() {
        m_pRun->Open("a");
        CTestFrame* second = m_pRun->Open("b");
        Area().MakeGroup(Qt::Vertical);
        second->CloseWindow();
        QCOMPARE(Groups(Area()), QStringLiteral("a"));
        QCOMPARE(Area().ActiveChild()->windowTitle(), QStringLiteral("a"));
    }

    void aTabDraggedOverAnotherGroupMovesThere() {
        m_pRun->Open("a");
        m_pRun->Open("b");
        CTestFrame* third = m_pRun->Open("c");
        Area().MakeGroup(Qt::Vertical);
        QTest::qWait(20);
        CTabGroup& second = *Area().Groups()[1];
        Drag(Area().Groups()[0]->Bar(), 0, second.mapToGlobal(second.rect().center()));
        QCOMPARE(Groups(Area()), QStringLiteral("b | c a"));
        QCOMPARE(Area().ActiveChild()->windowTitle(), QStringLiteral("a"));
        QVERIFY(third != nullptr);
    }

    void theLastTabOfAGroupCanBeDraggedAwayToo() {
        m_pRun->Open("a");
        m_pRun->Open("b");
        Area().MakeGroup(Qt::Vertical);
        QTest::qWait(20);
        CTabGroup& first = *Area().Groups()[0];
        Drag(Area().Groups()[1]->Bar(), 0, first.mapToGlobal(first.rect().center()));
        QCOMPARE(Groups(Area()), QStringLiteral("a b"));
    }

    void aTabDroppedOnItsOwnPageOffersANewGroup() {
        m_pRun->Open("a");
        m_pRun->Open("b");
        QTest::qWait(20);
        m_pUser->m_strMenuChoice = QStringLiteral("New Vertical Tab Group");
        CTabGroup& group = *Area().Groups()[0];
        Drag(group.Bar(), 0, group.mapToGlobal(group.rect().center()));
        QCOMPARE(Groups(Area()), QStringLiteral("b | a"));
    }

    void tabsMoveInsideTheirBar() {
        m_pRun->Open("a");
        m_pRun->Open("b");
        QVERIFY(Area().Groups()[0]->Bar().isMovable());
        Area().Groups()[0]->Bar().moveTab(0, 1);
        QCOMPARE(Groups(Area()), QStringLiteral("b a"));
        QCOMPARE(Area().Children()[0]->windowTitle(), QStringLiteral("b"));
    }

    void aClickOnATabActivatesItsWindow() {
        CTestFrame* first = m_pRun->Open("a");
        m_pRun->Open("b");
        CTabBar& bar = Area().Groups()[0]->Bar();
        const int before = first->m_nFocused;
        QTest::mouseClick(&bar, Qt::LeftButton, {}, bar.tabRect(0).center());
        QCOMPARE(Area().ActiveChild(), first);
        QVERIFY(first->m_nFocused > before);
        QCOMPARE(Frame().windowTitle(), QStringLiteral("a - Carvelot"));
    }

    void focusInAnotherGroupBringsItsWindowToTheFront() {
        CTestFrame* first = m_pRun->Open("a");
        m_pRun->Open("b");
        Area().MakeGroup(Qt::Vertical);
        Frame().activateWindow();
        first->m_edits[1]->setFocus();
        QCOMPARE(Area().ActiveChild(), first);
        // Coming back later, the focus is where it was.
        Area().ActivateNext(true);
        Area().Activate(*first);
        QCOMPARE(QApplication::focusWidget(), first->m_edits[1]);
    }

    void theTabsMenuClosesItsWindow() {
        m_pRun->Open("a");
        m_pRun->Open("b");
        const int closed = CTestFrame::s_nClosed;
        m_pUser->m_strMenuChoice = QStringLiteral("&Close");
        CTabBar& bar = Area().Groups()[0]->Bar();
        QContextMenuEvent event(QContextMenuEvent::Mouse, bar.tabRect(0).center(),
                                bar.mapToGlobal(QPoint(0, 0)));
        QCoreApplication::sendEvent(&bar, &event);
        QCOMPARE(Groups(Area()), QStringLiteral("b"));
        QCOMPARE(CTestFrame::s_nClosed, closed + 1);
        QCOMPARE(m_pUser->m_listMenuTexts.size(), 1);
    }

    void aTitleThatChangesShowsOnTabWindowAndFrame() {
        CTestFrame* first = m_pRun->Open("a");
        first->GetActiveDocument()->SetTitle(QStringLiteral("a - Process: 1 & 2"));
        QCOMPARE(Area().Groups()[0]->tabText(0), QStringLiteral("a - Process: 1 && 2"));
        QCOMPARE(Area().Groups()[0]->tabToolTip(0), QStringLiteral("a - Process: 1 & 2"));
        QCOMPARE(Frame().windowTitle(), QStringLiteral("a - Process: 1 & 2 - Carvelot"));
    }

    void aTabThatIsTooNarrowLosesThePathsBeginningAndNeverTheFilesName_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("selected");
        QTest::newRow("a path") << "jdedebug_4120.log"
                                << "";
        QTest::newRow("a path and a thread") << "jdedebug_4120.log"
                                             << " - Process: 4120 Thread: 3388";
        QTest::newRow("a user with a domain") << "e1root.log"
                                              << " - User: HOME/ANNIKA";
        QTest::newRow("a name that is longer than a tab should be")
            << QString(60, u'n') + QStringLiteral(".log") << " - Process: 4120 Thread: 3388";
        QTest::newRow("a name with an ampersand") << "a&b.log"
                                                  << "";
    }

    void aTabThatIsTooNarrowLosesThePathsBeginningAndNeverTheFilesName() {
        QFETCH(QString, name);
        QFETCH(QString, selected);
        const QString logPath =
            QStringLiteral("/home/annika/jde/logs/of/the/enterprise/server/in/the/cellar/") + name;
        const QByteArray path = logPath.toUtf8();
        CTestFrame* child = m_pRun->Open(path);
        child->GetActiveDocument()->SetTitle(logPath + selected);
        m_pRun->Open("other");
        for (const int id : LookIds()) {
            Frame().OnApplicationLook(id);
            for (const bool front : {true, false}) {
                if (front) {
                    Area().Activate(*child);
                }
                CTabBar& bar = Area().GroupOf(*child)->Bar();
                const QString shown = TextIn(bar, bar.tabRect(0));
                QVERIFY2(shown.startsWith(u'\u2026'), qPrintable(shown));
                QVERIFY2((logPath + selected).endsWith(shown.mid(1)), qPrintable(shown));
                QVERIFY2(shown.endsWith(name + selected), qPrintable(shown));
                QCOMPARE(bar.tabToolTip(0), logPath + selected);
                Area().Activate(*Area().Children().constLast());
            }
        }
    }

    void theMiddleButtonAndTheCloseButtonOfATabCloseItsWindow() {
        for (const char* title : {"a", "b", "c"}) {
            m_pRun->Open(title);
        }
        CTabBar& bar = Area().Groups().constFirst()->Bar();
        QTest::mouseClick(&bar, Qt::MiddleButton, {}, bar.tabRect(1).center());
        QCOMPARE(Groups(Area()), QStringLiteral("a c"));
        auto* const close = qobject_cast<QAbstractButton*>(bar.tabButton(0, QTabBar::RightSide));
        QVERIFY(close != nullptr);
        close->click();
        QCOMPARE(Groups(Area()), QStringLiteral("c"));
    }

    void aTabIsDraggedAlongItsBarAndBackIntoItFromOutside() {
        for (const char* title : {"a", "b", "c"}) {
            m_pRun->Open(title);
        }
        CTabBar& bar = Area().Groups().constFirst()->Bar();
        const QPoint from = bar.tabRect(0).center();
        const QPoint to = bar.tabRect(2).center() + QPoint(10, 0);
        const auto moveTo = [&bar](const QPoint& point, Qt::MouseButtons buttons) {
            QMouseEvent move(QEvent::MouseMove, QPointF(point), QPointF(bar.mapToGlobal(point)), Qt::NoButton,
                             buttons, {});
            QCoreApplication::sendEvent(&bar, &move);
        };
        moveTo(to, Qt::NoButton); // a pointer that only passes
        QCOMPARE(Groups(Area()), QStringLiteral("a b c"));
        QTest::mousePress(&bar, Qt::LeftButton, {}, from);
        moveTo(from + QPoint(0, 200), Qt::LeftButton);
        for (int step = 0; step <= 10; ++step) {
            moveTo(from + (to - from) * step / 10, Qt::LeftButton);
        }
        QTest::mouseRelease(&bar, Qt::LeftButton, {}, to);
        QCOMPARE(Groups(Area()), QStringLiteral("b c a"));
        QCOMPARE(Area().ActiveChild()->windowTitle(), QStringLiteral("a"));
    }

    void aClosedWindowTakesItsDocumentAlong() {
        CTestFrame* first = m_pRun->Open("a");
        const QPointer<CDocument> document = first->GetActiveDocument();
        first->close();
        QVERIFY(Area().Children().isEmpty());
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(document.isNull());
    }

private:
    CTabbedClientArea& Area() const { return m_pRun->Area(); }
    CMainFrame& Frame() const { return m_pRun->Frame(); }

    std::unique_ptr<QTemporaryDir> m_pFolder;
    std::unique_ptr<CFakeInterface> m_pUser;
    std::unique_ptr<CRun> m_pRun;
};

QTEST_MAIN(TabGroupsTest)
#include "TabGroupsTest.moc"
