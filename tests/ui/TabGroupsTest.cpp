#include "ui/UiSupport.h"

#include "ui/kit/LookStyle.h"

#include <QAccessible>
#include <QPaintDevice>
#include <QPaintEngine>

#include <algorithm>
#include <cmath>

using namespace carvelot;
using namespace carvelot::test;

namespace {

// "a b | c": the groups and their tabs.
QString Groups(const CTabbedClientArea& area) {
    QStringList listGroups;
    for (const CTabGroup* pGroup : area.Groups()) {
        QStringList listTabs;
        for (int n = 0; n < pGroup->count(); ++n)
            listTabs << pGroup->tabText(n);
        listGroups << listTabs.join(QLatin1Char(' '));
    }
    return listGroups.join(QLatin1String(" | "));
}

void Drag(CTabBar& bar, int nTab, const QPoint& screen) {
    const QPoint from = bar.tabRect(nTab).center();
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
    int metric(PaintDeviceMetric nMetric) const override {
        switch (nMetric) {
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
            if (state.state() & DirtyTransform)
                m_transform = state.transform();
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
    QString strText;
    for (const CTextPaper::CText& text : paper.m_listTexts) {
        if (QRectF(part).contains(text.m_rect))
            strText += text.m_strText;
    }
    return strText;
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
        CTestFrame* pSecond = m_pRun->Open("b");
        QCOMPARE(Groups(Area()), QStringLiteral("a b"));
        QCOMPARE(Area().ActiveChild(), pSecond);
        QCOMPARE(pSecond->m_nFocused, 1);
    }

    void withoutASessionTheWindowSaysHowToOpenOne() {
        const QString strHint = QStringLiteral("Open a debug log with Ctrl+O, or drop one here.");
        QCOMPARE(QAccessible::queryAccessibleInterface(&Area())->text(QAccessible::Name), strHint);
        const auto fnShowsText = [this] {
            const QImage picture = Area().grab().toImage();
            const QRgb nText = CurrentLook().m_workspaceText.rgb();
            for (int nY = 0; nY < picture.height(); ++nY) {
                for (int nX = 0; nX < picture.width(); ++nX) {
                    if (picture.pixel(nX, nY) == nText)
                        return true;
                }
            }
            return false;
        };
        QVERIFY(fnShowsText());
        CTestFrame* pChild = m_pRun->Open("a");
        QCOMPARE(QAccessible::queryAccessibleInterface(&Area())->text(QAccessible::Name), QString());
        pChild->close();
        QCOMPARE(QAccessible::queryAccessibleInterface(&Area())->text(QAccessible::Name), strHint);
        QVERIFY(fnShowsText());
    }

    // The contrast is that of the guidelines for accessible contents.
    void whatTheEmptyWindowSaysIsLegibleInEveryLook() {
        const auto fnLight = [](const QColor& color) {
            const auto fnPart = [](float fPart) {
                return fPart <= 0.04045F ? fPart / 12.92F : std::pow((fPart + 0.055F) / 1.055F, 2.4F);
            };
            return 0.2126F * fnPart(color.redF()) + 0.7152F * fnPart(color.greenF()) +
                   0.0722F * fnPart(color.blueF());
        };
        for (const int nId : LookIds()) {
            Frame().OnApplicationLook(nId);
            const CLook& look = CurrentLook();
            for (const QColor& back : {look.m_workspace.m_from, look.m_workspace.m_to}) {
                const auto [fDark, fLight] = std::minmax({fnLight(look.m_workspaceText), fnLight(back)});
                const float fContrast = (fLight + 0.05F) / (fDark + 0.05F);
                QVERIFY2(fContrast >= 4.5F, qPrintable(QStringLiteral("%1: %2").arg(nId).arg(fContrast)));
            }
        }
    }

    void aFileThatIsOpenAlreadyIsActivated() {
        const QString strPath = m_pFolder->filePath(QStringLiteral("log"));
        QFile file(strPath);
        QVERIFY(file.open(QIODevice::WriteOnly));
        CDocument* pFirst = theApp().OpenDocumentFile(strPath);
        m_pRun->Open("b");
        QCOMPARE(theApp().OpenDocumentFile(strPath), pFirst);
        QCOMPARE(Area().ActiveChild(), pFirst->GetFrame());
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
        CTestFrame* pSecond = m_pRun->Open("b");
        Area().MakeGroup(Qt::Vertical);
        pSecond->CloseWindow();
        QCOMPARE(Groups(Area()), QStringLiteral("a"));
        QCOMPARE(Area().ActiveChild()->windowTitle(), QStringLiteral("a"));
    }

    void aTabDraggedOverAnotherGroupMovesThere() {
        m_pRun->Open("a");
        m_pRun->Open("b");
        CTestFrame* pThird = m_pRun->Open("c");
        Area().MakeGroup(Qt::Vertical);
        QTest::qWait(20);
        CTabGroup& second = *Area().Groups()[1];
        Drag(Area().Groups()[0]->Bar(), 0, second.mapToGlobal(second.rect().center()));
        QCOMPARE(Groups(Area()), QStringLiteral("b | c a"));
        QCOMPARE(Area().ActiveChild()->windowTitle(), QStringLiteral("a"));
        QVERIFY(pThird != nullptr);
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
        CTestFrame* pFirst = m_pRun->Open("a");
        m_pRun->Open("b");
        CTabBar& bar = Area().Groups()[0]->Bar();
        const int nBefore = pFirst->m_nFocused;
        QTest::mouseClick(&bar, Qt::LeftButton, {}, bar.tabRect(0).center());
        QCOMPARE(Area().ActiveChild(), pFirst);
        QVERIFY(pFirst->m_nFocused > nBefore);
        QCOMPARE(Frame().windowTitle(), QStringLiteral("a - Carvelot"));
    }

    void focusInAnotherGroupBringsItsWindowToTheFront() {
        CTestFrame* pFirst = m_pRun->Open("a");
        m_pRun->Open("b");
        Area().MakeGroup(Qt::Vertical);
        Frame().activateWindow();
        pFirst->m_edits[1]->setFocus();
        QCOMPARE(Area().ActiveChild(), pFirst);
        // Coming back later, the focus is where it was.
        Area().ActivateNext(true);
        Area().Activate(*pFirst);
        QCOMPARE(QApplication::focusWidget(), pFirst->m_edits[1]);
    }

    void theTabsMenuClosesItsWindow() {
        m_pRun->Open("a");
        m_pRun->Open("b");
        const int nClosed = CTestFrame::s_nClosed;
        m_pUser->m_strMenuChoice = QStringLiteral("&Close");
        CTabBar& bar = Area().Groups()[0]->Bar();
        QContextMenuEvent event(QContextMenuEvent::Mouse, bar.tabRect(0).center(),
                                bar.mapToGlobal(QPoint(0, 0)));
        QCoreApplication::sendEvent(&bar, &event);
        QCOMPARE(Groups(Area()), QStringLiteral("b"));
        QCOMPARE(CTestFrame::s_nClosed, nClosed + 1);
        QCOMPARE(m_pUser->m_listMenuTexts.size(), 1);
    }

    void aTitleThatChangesShowsOnTabWindowAndFrame() {
        CTestFrame* pFirst = m_pRun->Open("a");
        pFirst->GetActiveDocument()->SetTitle(QStringLiteral("a - Process: 1 & 2"));
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
        const QString strPath =
            QStringLiteral("/home/annika/jde/logs/of/the/enterprise/server/in/the/cellar/") + name;
        const QByteArray path = strPath.toUtf8();
        CTestFrame* pChild = m_pRun->Open(path);
        pChild->GetActiveDocument()->SetTitle(strPath + selected);
        m_pRun->Open("other");
        for (const int nId : LookIds()) {
            Frame().OnApplicationLook(nId);
            for (const bool bFront : {true, false}) {
                if (bFront)
                    Area().Activate(*pChild);
                CTabBar& bar = Area().GroupOf(*pChild)->Bar();
                const QString strShown = TextIn(bar, bar.tabRect(0));
                QVERIFY2(strShown.startsWith(u'\u2026'), qPrintable(strShown));
                QVERIFY2((strPath + selected).endsWith(strShown.mid(1)), qPrintable(strShown));
                QVERIFY2(strShown.endsWith(name + selected), qPrintable(strShown));
                QCOMPARE(bar.tabToolTip(0), strPath + selected);
                Area().Activate(*Area().Children().constLast());
            }
        }
    }

    void aClosedWindowTakesItsDocumentAlong() {
        CTestFrame* pFirst = m_pRun->Open("a");
        const QPointer<CDocument> pDocument = pFirst->GetActiveDocument();
        pFirst->close();
        QVERIFY(Area().Children().isEmpty());
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(pDocument.isNull());
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
