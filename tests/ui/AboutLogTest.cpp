// The window "About This Log", and the ways by which a log gets its dialects.
#include "ui/ExploreSupport.h"
#include "ui/app/StatusBar.h"
#include "ui/explore/AboutLogFrame.h"
#include "ui/explore/DialectChoice.h"
#include "ui/explore/OverviewFrame.h"

#include <QCheckBox>
#include <QPushButton>
#include <QToolButton>

using namespace carvelot;
using namespace carvelot::test;

namespace {

constexpr const char* kFrench = "15 janv. 2024 09:12:03,250 [APP   ] ANNE - [BASE] x y";
constexpr CDialects kMonths{Dialect::Months};

// Six English lines and some French ones.
std::vector<std::string> MixedLines(int french) {
    std::vector<std::string> lines = JASLog({});
    lines.insert(lines.end(), static_cast<std::size_t>(french), kFrench);
    return lines;
}
std::vector<std::string> FrenchLines() { return std::vector<std::string>(8, kFrench); }

std::size_t Records(CChildFrame& session) { return session.SessionDocument().Session().m_listDetails.Size(); }

} // namespace

class AboutLogTest : public CSessionTest {
    Q_OBJECT

    CAboutLogFrame* OpenAbout(CChildFrame& session) {
        m_pRun->Frame().ClientArea().Activate(session);
        m_pRun->Frame().RunCommand(ID_EXPLORE_ABOUT_LOG);
        return qobject_cast<CAboutLogFrame*>(m_pRun->Frame().ActiveChild());
    }
    QToolButton& Unread() { return m_pRun->Frame().StatusBar().UnreadButton(); }

private slots:
    void init() { StartRun(); }
    void cleanup() { EndRun(); }

    void tellsTheFactsAndTheFirstLinesThatAreNoRecords() {
        CChildFrame* const session = m_pRun->Open(QStringLiteral("jas.log"), MixedLines(5));
        CAboutLogFrame* const about = OpenAbout(*session);
        QVERIFY(about != nullptr);
        QCOMPARE(about->windowTitle(), QStringLiteral("About This Log - jas.log"));
        const QString text = ShownText(*about);
        for (const char* fact : {"Size:", "Lines:\n11", "Records:\n6", "Format:\nJAS log", "Pieces:\n1",
                                 "Dialect:\nnone", "5: the second word is no month"}) {
            QVERIFY2(text.contains(QLatin1String(fact)), qPrintable(text));
        }
        const QStringList rows = Rows(List(*about, "First lines that are no records"));
        QCOMPARE(rows.size(), 3);
        QCOMPARE(rows[0], QStringLiteral("7|the second word is no month|") + QLatin1String(kFrench));
        // One window a log, however often it is asked for.
        QCOMPARE(OpenAbout(*session), about);
    }

    void readsTheLogWithWhatIsOfferedThere() {
        CChildFrame* const session = m_pRun->Open(QStringLiteral("jas.log"), MixedLines(5));
        CAboutLogFrame* const about = OpenAbout(*session);
        auto* const months = about->findChild<QCheckBox*>(QStringLiteral("months"));
        auto* const numbered = about->findChild<QCheckBox*>(QStringLiteral("numbered"));
        QVERIFY(months->isChecked() && months->text().contains(QStringLiteral("reads more of this log")));
        QVERIFY(!numbered->isChecked() && !numbered->text().contains(QStringLiteral("reads more")));
        auto* const anew = about->findChild<QPushButton*>();
        QVERIFY(anew->isEnabled());
        QCOMPARE(Records(*session), 6U);
        anew->click();
        QCOMPARE(Records(*session), 11U);
        QCOMPARE(session->SessionDocument().Session().m_dialects, kMonths);
        QVERIFY(ShownText(*OpenAbout(*session)).contains(QStringLiteral("Dialect:\nmonths")));
        QVERIFY(Rows(List(*about, "First lines that are no records")).isEmpty());
        QVERIFY(months->isChecked() && !anew->isEnabled());
        // And back.
        months->click();
        QVERIFY(anew->isEnabled());
        anew->click();
        QCOMPARE(Records(*session), 6U);
    }

    void theStatusBarSaysWhenManyLinesOfTheLogInFrontAreNotRead() {
        QVERIFY(Unread().isHidden());
        CChildFrame* const many = m_pRun->Open(QStringLiteral("many.log"), MixedLines(1));
        QVERIFY(!Unread().isHidden());
        QCOMPARE(Unread().text(), QStringLiteral("Many lines are not read"));
        CChildFrame* const few = m_pRun->Open(QStringLiteral("few.log"), JASLog({}));
        QVERIFY(Unread().isHidden());
        m_pRun->Frame().ClientArea().Activate(*many);
        QVERIFY(!Unread().isHidden());
        Unread().click();
        auto* const about = qobject_cast<CAboutLogFrame*>(m_pRun->Frame().ActiveChild());
        QVERIFY(about != nullptr);
        QCOMPARE(about->GetActiveDocument(), &many->SessionDocument());
        QVERIFY(!Unread().isHidden());
        about->findChild<QPushButton*>()->click();
        QVERIFY(Unread().isHidden());
        few->CloseWindow();
        many->CloseWindow();
        CSessionRun::Settle();
        QVERIFY(Unread().isHidden());
    }

    void aLoadThatLeftNoRecordAsks() {
        CDialects marked;
        m_pRun->m_user.m_fnInDialog = [&marked](QDialog& dialog) {
            marked = dynamic_cast<CDialectsDlg&>(dialog).Chosen();
            dialog.accept();
        };
        CChildFrame* const session = m_pRun->Open(QStringLiteral("french.log"), FrenchLines());
        CSessionRun::Settle();
        QCOMPARE(m_pRun->m_user.m_nDialogs, 1);
        QCOMPARE(marked, kMonths);
        QCOMPARE(Records(*session), 8U);
        QVERIFY(Unread().isHidden());
    }

    void whoSaysNoIsNotAskedTwice() {
        CChildFrame* const session = m_pRun->Open(QStringLiteral("french.log"), FrenchLines());
        CSessionRun::Settle();
        QCOMPARE(m_pRun->m_user.m_nDialogs, 1);
        QCOMPARE(Records(*session), 0U);
        QVERIFY(session->SessionDocument().Session().m_dialects.Empty());
        QVERIFY(!Unread().isHidden());
        QVERIFY(OpenAbout(*session)->findChild<QPushButton*>()->isEnabled());
    }

    void nobodyIsAskedWhereThereAreRecords() {
        m_pRun->Open(QStringLiteral("mixed.log"), MixedLines(50));
        CSessionRun::Settle();
        QCOMPARE(m_pRun->m_user.m_nDialogs, 0);
    }

    void whatWasChosenIsKeptWithTheRecentFileAndShownInTheTip() {
        const QString path = m_pRun->Write(QStringLiteral("jas.log"), MixedLines(5));
        CChildFrame* session = m_pRun->Open(path);
        QVERIFY(!session->TabTip().contains(QStringLiteral("Dialect")));
        session->SessionDocument().ReadWith(kMonths);
        QCOMPARE(session->TabTip(), session->windowTitle() + QStringLiteral("\nDialect: months"));
        session->CloseWindow();
        CSessionRun::Settle();
        session = m_pRun->Open(path);
        QCOMPARE(Records(*session), 11U);
        m_pRun->Restart();
        session = m_pRun->Open(path);
        QVERIFY(session != nullptr);
        QCOMPARE(Records(*session), 11U);
        QCOMPARE(session->TabTip(), session->windowTitle() + QStringLiteral("\nDialect: months"));
        // Analyze reads with it too, and another file does not.
        m_pRun->Frame().RunCommand(ID_SESSION_ANALYZE);
        QCOMPARE(Records(*session), 11U);
        QCOMPARE(Records(*m_pRun->Open(QStringLiteral("other.log"), MixedLines(5))), 6U);
        // Without one again.
        session->SessionDocument().ReadWith({});
        m_pRun->Restart();
        session = m_pRun->Open(path);
        QCOMPARE(Records(*session), 6U);
        QCOMPARE(session->TabTip(), session->windowTitle());
    }

    // Where no stamp was read they stood by name.
    void piecesStandByTheStampsThatADialectReads() {
        std::string atEight = kFrench;
        atEight.replace(atEight.find("09:"), 3, "08:");
        const QString later = m_pRun->Write(QStringLiteral("a.log"), FrenchLines());
        const QString earlier = m_pRun->Write(QStringLiteral("b.log"), std::vector<std::string>(4, atEight));
        QVERIFY(theApp().OpenPieces({later, earlier}) != nullptr);
        CSessionRun::Settle();
        auto* const session = qobject_cast<CChildFrame*>(m_pRun->Frame().ActiveChild());
        const auto paths = [session] {
            QStringList list;
            for (const LogPiece& piece : session->SessionDocument().Session().m_listPieces) {
                list.append(ToQString(piece.path));
            }
            return list;
        };
        QCOMPARE(paths(), (QStringList{later, earlier}));
        QCOMPARE(Records(*session), 0U);
        session->SessionDocument().ReadWith(kMonths);
        QCOMPARE(paths(), (QStringList{earlier, later}));
        QCOMPARE(Records(*session), 12U);
        QCOMPARE(session->SessionDocument().Session().m_listPieces[1].firstRecord, 4U);
    }

    void theOverviewLeadsThere() {
        CChildFrame* const session = m_pRun->Open(QStringLiteral("order.log"), ExploredLines());
        auto* const overview = OpenExplore<COverviewFrame>(*m_pRun, *session, ID_EXPLORE_OVERVIEW);
        for (QToolButton* const button : overview->findChildren<QToolButton*>()) {
            if (button->text() == QStringLiteral("About This Log")) {
                button->click();
            }
        }
        QVERIFY(qobject_cast<CAboutLogFrame*>(m_pRun->Frame().ActiveChild()) != nullptr);
    }

    void goesWithItsSession() {
        CChildFrame* const session = m_pRun->Open(QStringLiteral("jas.log"), MixedLines(5));
        QPointer<CAboutLogFrame> about = OpenAbout(*session);
        QVERIFY(about != nullptr);
        session->CloseWindow();
        CSessionRun::Settle();
        QVERIFY(about == nullptr);
    }
};

QTEST_MAIN(AboutLogTest)
#include "AboutLogTest.moc"
