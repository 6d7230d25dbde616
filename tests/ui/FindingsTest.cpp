// The window "Findings", and the steps through all that asks for a look.
#include "ui/ExploreSupport.h"
#include "ui/explore/FindingsFrame.h"

#include <QLabel>

using namespace carvelot;
using namespace carvelot::test;

namespace {

QString Said(const QWidget& window, const char* name) {
    for (const QLabel* label : window.findChildren<QLabel*>()) {
        if (label->accessibleName() == QLatin1String(name)) {
            return label->text();
        }
    }
    return {};
}

// The numbers of the records that a finding of the log has.
std::vector<std::uint32_t> RecordsOf(const CExploration& exploration, std::size_t finding) {
    return Numbers(exploration.Findings()[finding].records);
}

} // namespace

class FindingsTest : public CSessionTest {
    Q_OBJECT

private:
    CFindingsFrame* OpenFindings(CChildFrame* session) {
        return OpenExplore<CFindingsFrame>(*m_pRun, *session, ID_EXPLORE_FINDINGS);
    }

private slots:
    void init() { StartRun(); }
    void cleanup() { EndRun(); }

    void showsFindingsBySeverityWithTheirRecords() {
        CChildFrame* const session = m_pRun->Open(Sample("order-fails.log"));
        auto* const window = OpenFindings(session);
        QVERIFY(window != nullptr);
        QCOMPARE(Said(*window, "Findings by severity"),
                 QStringLiteral("\u25CF 2 errors   \u25B2 3 warnings   \u25A0 4 notes"));
        CListCtrl& findings = List(*window, "Findings");
        const QStringList rows = Rows(findings);
        QCOMPARE(rows.size(), 9);
        QVERIFY2(rows[0].startsWith(QStringLiteral("\u25CF error|F4211FSEndDoc failed: ")),
                 qPrintable(rows[0]));
        QVERIFY2(rows[0].contains(QStringLiteral("|1|12.127711|")), qPrintable(rows[0]));
        QVERIFY(
            rows[2].startsWith(QStringLiteral("\u25B2 warning|F4211FSCancelDoc never returned|1|2.558052|")));
        QVERIFY(rows[5].startsWith(QStringLiteral("\u25A0 note|")));
        QCOMPARE(Said(*window, "Meaning of the finding"),
                 QStringLiteral("The function failed; the first record names what went wrong first in it.   "
                                "1 time, 12.127711 s; 2 records"));
        QCOMPARE(List(*window, "Records of the finding").Model().rowCount(), 2);
        // One without records.
        Click(findings, findings.Model().index(7, 0));
        QCOMPARE(List(*window, "Records of the finding").Model().rowCount(), 0);
        QVERIFY(
            Said(*window, "Meaning of the finding").endsWith(QStringLiteral("; no record stands for it")));
    }

    void sortingKeepsTheSeveritiesTogether() {
        CChildFrame* const session = m_pRun->Open(Sample("order-fails.log"));
        auto* const window = OpenFindings(session);
        QVERIFY(window != nullptr);
        CListCtrl& findings = List(*window, "Findings");
        ClickHeader(findings, FindingRow::SENTENCE);
        QStringList severities;
        for (int row = 0; row < findings.Model().rowCount(); ++row) {
            severities << findings.Model().index(row, 0).data().toString().mid(2);
        }
        QCOMPARE(severities.join(QLatin1Char(' ')),
                 QStringLiteral("error error warning warning warning note note note note"));
    }

    void aDoubleClickWalksThroughTheRecordsOfAFinding() {
        CChildFrame* const session = m_pRun->Open(Sample("order-fails.log"));
        auto* const window = OpenFindings(session);
        QVERIFY(window != nullptr);
        CExploration& exploration = window->Exploration();
        CListCtrl& findings = List(*window, "Findings");
        std::vector<std::uint32_t> visited;
        for (int n = 0; n < 3; ++n) {
            m_pRun->Frame().ClientArea().Activate(*window);
            DoubleClick(findings, 0);
            QCOMPARE(m_pRun->Frame().ActiveChild(), static_cast<CMDIChildWnd*>(session));
            visited.push_back(Number(*exploration.Selected()));
        }
        QCOMPARE(visited, (std::vector<std::uint32_t>{658, 599, 658}));
        QCOMPARE(List(*window, "Records of the finding").SelectedRow(), 0);
    }

    void aRecordLeadsToItsLineByMouseAndByKeyboard() {
        CChildFrame* const session = m_pRun->Open(Sample("order-fails.log"));
        auto* const window = OpenFindings(session);
        QVERIFY(window != nullptr);
        CListCtrl& records = List(*window, "Records of the finding");
        DoubleClick(records, 1);
        QCOMPARE(m_pRun->Frame().ActiveChild(), static_cast<CMDIChildWnd*>(session));
        QVERIFY2(SelectedText(session->DetailView()).contains(QStringLiteral("F4211FSEndDoc")),
                 qPrintable(SelectedText(session->DetailView())));
        m_pRun->Frame().ClientArea().Activate(*window);
        records.setFocus(Qt::TabFocusReason);
        QTest::keyClick(&records, Qt::Key_Home);
        QTest::keyClick(&records, Qt::Key_Return);
        QCOMPARE(window->Exploration().Selected(), std::optional(RecordIndex{658}));
        QCOMPARE(m_pRun->Frame().ActiveChild(), static_cast<CMDIChildWnd*>(session));
    }

    void enterOnAFindingWalksAsADoubleClick() {
        CChildFrame* const session = m_pRun->Open(Sample("order-fails.log"));
        auto* const window = OpenFindings(session);
        QVERIFY(window != nullptr);
        CListCtrl& findings = List(*window, "Findings");
        for (const std::uint32_t record : {667U, 673U, 667U}) {
            m_pRun->Frame().ClientArea().Activate(*window);
            findings.setFocus(Qt::TabFocusReason);
            QTest::keyClick(&findings, Qt::Key_Home);
            QTest::keyClick(&findings, Qt::Key_Down);
            QTest::keyClick(&findings, Qt::Key_Return);
            QCOMPARE(window->Exploration().Selected(), std::optional(RecordIndex{record}));
        }
    }

    void menusLeadToRecordsAsADoubleClickDoes() {
        CChildFrame* const session = m_pRun->Open(Sample("order-fails.log"));
        auto* const window = OpenFindings(session);
        QVERIFY(window != nullptr);
        CListCtrl& findings = List(*window, "Findings");
        CListCtrl& records = List(*window, "Records of the finding");
        m_pRun->m_user.m_strMenuChoice = QStringLiteral("Show Next Record");
        for (const std::uint32_t record : {658U, 599U, 658U}) {
            m_pRun->Frame().ClientArea().Activate(*window);
            Click(findings, findings.Model().index(0, 0));
            PressMenuKey(findings);
            QCOMPARE(window->Exploration().Selected(), std::optional(RecordIndex{record}));
            QCOMPARE(m_pRun->Frame().ActiveChild(), static_cast<CMDIChildWnd*>(session));
        }
        m_pRun->Frame().ClientArea().Activate(*window);
        m_pRun->m_user.m_strMenuChoice = QStringLiteral("Show in Session");
        Click(records, records.Model().index(1, 0));
        PressMenuKey(records);
        QCOMPARE(window->Exploration().Selected(), std::optional(RecordIndex{599}));
        QCOMPARE(m_pRun->Frame().ActiveChild(), static_cast<CMDIChildWnd*>(session));
        // The walk goes on from there.
        m_pRun->Frame().RunCommand(ID_EXPLORE_NEXT_FINDING);
        QCOMPARE(window->Exploration().Selected(), std::optional(RecordIndex{667}));
    }

    void aRecordThatIsSelectedElsewhereIsSelectedInItsFinding() {
        CChildFrame* const session = m_pRun->Open(Sample("order-fails.log"));
        auto* const window = OpenFindings(session);
        QVERIFY(window != nullptr);
        CListCtrl& findings = List(*window, "Findings");
        CListCtrl& records = List(*window, "Records of the finding");
        Click(findings, findings.Model().index(0, 0));
        QCOMPARE(Rows(records).size(), 2);
        window->Exploration().Select(RecordIndex{599});
        QCOMPARE(records.SelectedRow(), 1);
        window->Exploration().Select(RecordIndex{658});
        QCOMPARE(records.SelectedRow(), 0);
        // One of another finding moves nothing.
        window->Exploration().Select(RecordIndex{673});
        QCOMPARE(records.SelectedRow(), 0);
        QCOMPARE(findings.SelectedRow(), 0);
    }

    void stepsGoThroughAllRecordsFromAnywhere() {
        CChildFrame* const session = m_pRun->Open(Sample("order-fails.log"));
        auto* const window = OpenFindings(session);
        QVERIFY(window != nullptr);
        CExploration& exploration = window->Exploration();
        m_pRun->Frame().ClientArea().Activate(*session);
        std::vector<std::uint32_t> all;
        for (std::size_t n = 0; n < exploration.Findings().size(); ++n) {
            const std::vector<std::uint32_t> records = RecordsOf(exploration, n);
            all.insert(all.end(), records.begin(), records.end());
        }
        std::vector<std::uint32_t> visited;
        for (std::size_t n = 0; n < all.size(); ++n) {
            m_pRun->Frame().RunCommand(ID_EXPLORE_NEXT_FINDING);
            visited.push_back(Number(*exploration.Selected()));
        }
        QCOMPARE(visited, all);
        // Round again, and back.
        m_pRun->Frame().RunCommand(ID_EXPLORE_NEXT_FINDING);
        QCOMPARE(Number(*exploration.Selected()), all.front());
        m_pRun->Frame().RunCommand(ID_EXPLORE_PREVIOUS_FINDING);
        QCOMPARE(Number(*exploration.Selected()), all.back());
        // The window shows where the walk stands.
        QCOMPARE(List(*window, "Findings").SelectedRow(), 8);
        QCOMPARE(List(*window, "Records of the finding").SelectedRow(), 0);
    }

    void theFirstStepExploresTheLog() {
        CChildFrame* const session = m_pRun->Open(Sample("order-fails.log"));
        CExploration& exploration = ExplorationOf(*session);
        m_pRun->Frame().RunCommand(ID_EXPLORE_NEXT_FINDING);
        QVERIFY(WaitForResults(exploration));
        QCOMPARE(exploration.Selected(), std::optional(RecordIndex{658}));
        QCOMPARE(m_pRun->Frame().ActiveChild(), static_cast<CMDIChildWnd*>(session));
    }

    void stepsGoOnFromARecordThatTheUserOpened() {
        CChildFrame* const session = m_pRun->Open(Sample("order-fails.log"));
        auto* const window = OpenFindings(session);
        QVERIFY(window != nullptr);
        CListCtrl& findings = List(*window, "Findings");
        Click(findings, findings.Model().index(1, 0));
        DoubleClick(List(*window, "Records of the finding"), 0);
        m_pRun->Frame().RunCommand(ID_EXPLORE_NEXT_FINDING);
        QCOMPARE(window->Exploration().Selected(), std::optional(RecordIndex{673}));
    }

    void aCalmLogAsksForNoLook() {
        CChildFrame* const session = m_pRun->Open(
            QStringLiteral("calm.log"),
            DebugLog({Line("09:00:00.000000", "Calling Business function A from X. (BSFNLevel = 1)"),
                      Line("09:00:00.500000", "Return value is 0 for A. (BSFNLevel = 1)")}));
        auto* const window = OpenFindings(session);
        QVERIFY(window != nullptr);
        QStringList texts;
        for (const QLabel* label : window->findChildren<QLabel*>()) {
            if (label->isVisible()) {
                texts << label->text();
            }
        }
        QVERIFY2(texts.contains(QStringLiteral("Nothing asks for a look.")),
                 qPrintable(texts.join(QLatin1Char('\n'))));
        QVERIFY(!window->Exploration().StepFinding(true));
    }

    void exportWritesFindingsAndRecords() {
        CChildFrame* const session = m_pRun->Open(QStringLiteral("order.log"), ExploredLines());
        auto* const window = OpenFindings(session);
        QVERIFY(window != nullptr);
        m_pRun->m_user.m_strMenuChoice = QStringLiteral("Export...");
        m_pRun->m_user.m_strSaveAnswer = m_pRun->Path(QStringLiteral("findings.csv"));
        CListCtrl& findings = List(*window, "Findings");
        AskForMenu(findings, findings.rect().center(), QContextMenuEvent::Keyboard);
        const QByteArray bytes = m_pRun->Read(QStringLiteral("findings.csv"));
        QVERIFY2(bytes.startsWith(
                     "Severity,Finding,Count,Cost (s),Meaning\r\n\xE2\x97\x8F error,InnerCall failed: "
                     "Return value is 2 for InnerCall. (BSFNLevel = 2),1,2.000000,The function "
                     "failed; the first record names what went wrong first in it.\r\n"),
                 bytes.constData());
    }

    void analysingAnewBeginsTheWalkAnew() {
        CChildFrame* const session = m_pRun->Open(QStringLiteral("order.log"), ExploredLines());
        auto* const window = OpenFindings(session);
        QVERIFY(window != nullptr);
        m_pRun->Frame().RunCommand(ID_EXPLORE_NEXT_FINDING);
        QVERIFY(window->Exploration().Walk().Standing().has_value());
        m_pRun->Write(QStringLiteral("order.log"),
                      DebugLog({Line("09:00:00.000000", "Return value is 0 for A. (BSFNLevel = 1)")}));
        m_pRun->Frame().RunCommand(ID_SESSION_ANALYZE);
        m_pRun->Frame().ClientArea().Activate(*window);
        QVERIFY(WaitForResults(window->Exploration()));
        QVERIFY(!window->Exploration().Walk().Standing().has_value());
        const QStringList rows = Rows(List(*window, "Findings"));
        QCOMPARE(rows.size(), 1);
        QVERIFY(rows[0].contains(QStringLiteral("A returned without a call")));
    }
};

QTEST_MAIN(FindingsTest)
#include "FindingsTest.moc"
