#include "ui/Accessible.h"
#include "ui/SessionSupport.h"

#include "support/Sanitizer.h"
#include "ui/kit/DockablePane.h"
#include "ui/kit/Icons.h"

#include <QDialogButtonBox>
#include <QDir>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalSpy>
#include <QSplitter>
#include <QTabBar>
#include <QToolButton>

using namespace carvelot;
using namespace carvelot::test;

namespace {

// Process 1 with its one line, process 5 with threads 6 and 7, process 9 with thread 1.
std::vector<std::string> Log() {
    return DebugLog({
        Line("10:00:00.000001", "Calling Business function A from Level 1 (BSFNLevel = 1)"),
        Line("10:00:00.000002", "IN->[  1] first"),
        Line("10:00:00.000003", "IN->[  2] second"),
        Line("10:00:00.000004", "SELECT X FROM T1"),
        Line("10:00:02.500004", "Exiting DBPerformRequest"),
        Line("10:00:02.500005", "OUT->[  1] third"),
        Line("10:00:02.500006", "Return value is 2 for A. (BSFNLevel = 1)"),
        Line("10:00:02.500007", "INSERT INTO T2 (A) VALUES (1)", "5/7"),
        Line("10:00:02.500008", "UPDATE T3 SET A = 1", "9/1"),
        Line("10:00:06.000008", "JDB9900168 - Failed to update", "9/1"),
    });
}

std::vector<std::string> JasLog() {
    return JASLog({
        JASLine("09:00:01,000", "ANNIKA", "Branch record invalid", "WARN  "),
        JASLine("09:00:02,000", "", "Starting the queue", "WARN  "),
        JASLine("09:00:03,000", "TOMAS", "Item record invalid", "SEVERE"),
    });
}

// A second, or what a sanitizer makes of it.

const QString kProcess5{"Process - 5 (2.500006)"};
const QString kThread6{"Thread - 6 (2.500005)"};

} // namespace

class SessionWindowTest : public CSessionTest {
    Q_OBJECT

private slots:
    void init() { StartRun(); }
    void cleanup() { EndRun(); }

    // --- opening
    // ------------------------------------------------------------------------------------------------

    void openShowsTheProcessesWithTheirThreadsAndNothingSelected() {
        CChildFrame* pFrame = m_pRun->Open("a.log", Log());
        QVERIFY(pFrame != nullptr);
        QCOMPARE(TreeText(pFrame->ThreadView().Model()), QStringLiteral("Process - 1 (0.000000)\n"
                                                                        " Thread - 1 (0.000000)\n"
                                                                        "Process - 5 (2.500006)\n"
                                                                        " Thread - 6 (2.500005)\n"
                                                                        " Thread - 7 (0.000000)\n"
                                                                        "Process - 9 (3.500000)\n"
                                                                        " Thread - 1 (3.500000)\n"));
        for (int nRow = 0; nRow < 3; ++nRow)
            QVERIFY(pFrame->ThreadView().isExpanded(pFrame->ThreadView().Model().index(nRow, 0)));
        QVERIFY(!pFrame->ThreadView().SelectedIndex().isValid());
        QCOMPARE(pFrame->DetailView().Model().rowCount(), 0);
        QCOMPARE(pFrame->windowTitle(), m_pRun->Path("a.log"));
        QCOMPARE(m_pRun->Frame().windowTitle(), m_pRun->Path("a.log") + " - Carvelot");
        QCOMPARE(theApp().m_recentFiles.m_listPaths,
                 std::vector<std::string>{ToUtf8(QDir::toNativeSeparators(m_pRun->Path("a.log")))});
    }

    void theWindowIsSplitWith200PixelsForTheThreadTree() {
        CChildFrame* pFrame = m_pRun->Open("a.log", Log());
        QCOMPARE(pFrame->findChild<QSplitter*>()->sizes().constFirst(), 200);
        QCOMPARE(pFrame->findChild<QSplitter*>()->orientation(), Qt::Horizontal);
        QVERIFY(pFrame->SessionDocument().Session().m_pThreadView == &pFrame->ThreadView());
        QVERIFY(pFrame->SessionDocument().Session().m_pDetailView == &pFrame->DetailView());
    }

    void theWidthToWhichTheThreadTreeIsDraggedHoldsForLaterSessionsAndStarts() {
        const auto fnWidth = [](CChildFrame* pFrame) {
            return pFrame->findChild<QSplitter*>()->sizes().constFirst();
        };
        CChildFrame* pFrame = m_pRun->Open("a.log", Log());
        QWidget* pHandle = pFrame->findChild<QSplitter*>()->handle(1);
        // A click alone is no drag, and what a narrow window takes away is no wish.
        m_pRun->Frame().resize(300, 600);
        QCoreApplication::processEvents();
        QTest::mouseClick(pHandle, Qt::LeftButton);
        m_pRun->Frame().resize(1200, 800);
        QCoreApplication::processEvents();
        CChildFrame* pSecond = m_pRun->Open("b.log", Log());
        QCOMPARE(fnWidth(pSecond), 200);

        pHandle = pSecond->findChild<QSplitter*>()->handle(1);
        const QPoint from = pHandle->rect().center();
        QTest::mousePress(pHandle, Qt::LeftButton, {}, from);
        QTest::mouseMove(pHandle, from + QPoint(90, 0));
        QTest::mouseRelease(pHandle, Qt::LeftButton);
        const int nDragged = fnWidth(pSecond);
        QVERIFY(nDragged > 230);
        QCOMPARE(fnWidth(m_pRun->Open("c.log", Log())), nDragged);
        for (int nStart = 0; nStart < 2; ++nStart) {
            m_pRun->Restart();
            QCOMPARE(fnWidth(m_pRun->Open(m_pRun->Path("a.log"))), nDragged);
        }
    }

    void aJasLogShowsItsUsersFlatAndTheImageStaysFromSystemLevelOn() {
        CChildFrame* pFrame = m_pRun->Open("jas.log", JasLog());
        CThreadTreeModel& model = pFrame->ThreadView().Model();
        QCOMPARE(TreeText(model), QStringLiteral("INIT\nANNIKA\nSYSTEM LEVEL\nTOMAS\n"));
        QList<QIcon> listImages;
        QVERIFY(LoadImageStrip("TreeImages", listImages));
        QCOMPARE(listImages.size(), 23);
        const auto fnSame = [&](int nRow, int nImage) {
            return qvariant_cast<QIcon>(model.index(nRow, 0).data(Qt::DecorationRole))
                       .pixmap(16, 15)
                       .toImage() == listImages[nImage].pixmap(16, 15).toImage();
        };
        QVERIFY(fnSame(0, 13));
        QVERIFY(fnSame(1, 13));
        QVERIFY(fnSame(2, 14));
        QVERIFY(fnSame(3, 14));
    }

    void processesShowImage9AndThreadsImage8() {
        CChildFrame* pFrame = m_pRun->Open("a.log", Log());
        QList<QIcon> listImages;
        QVERIFY(LoadImageStrip("TreeImages", listImages));
        const QModelIndex process = pFrame->ThreadView().Model().index(1, 0);
        const auto fnImage = [](const QModelIndex& index) {
            return qvariant_cast<QIcon>(index.data(Qt::DecorationRole)).pixmap(16, 15).toImage();
        };
        QCOMPARE(fnImage(process), listImages[9].pixmap(16, 15).toImage());
        QCOMPARE(fnImage(pFrame->ThreadView().Model().index(0, 0, process)),
                 listImages[8].pixmap(16, 15).toImage());
    }

    void aFileThatCannotBeOpenedLeavesNoWindowAndTheOtherSessionAsItWas() {
        CChildFrame* pFrame = m_pRun->Open("a.log", Log());
        Select(pFrame, "Thread - 6");
        QVERIFY(m_pRun->Open(m_pRun->Path("missing.log")) == nullptr);
        QCOMPARE(m_pRun->m_user.m_listMessages, QStringList{"Failed to open file."});
        QCOMPARE(m_pRun->Frame().ClientArea().Children().size(), 1);
        QVERIFY(m_pRun->Frame().ActiveChild() == pFrame);
        QCOMPARE(SelectedText(pFrame->ThreadView()), kThread6);
        QCOMPARE(Rows(m_pRun->Frame().m_wndSQLPane.List()), QStringList{"T1|1|0|0|0"});
        QCOMPARE(theApp().DocTemplates().front()->Documents().size(), 1U);
    }

    void aFileThatIsNoLogLeavesNoWindow() {
        QVERIFY(m_pRun->Open(m_pRun->WriteBytes("no.log", "hello\nworld\n")) == nullptr);
        QVERIFY(m_pRun->Open(m_pRun->WriteBytes("empty.log", "")) == nullptr);
        QCOMPARE(m_pRun->m_user.m_listMessages, (QStringList{"Error: Cannot determine tracing log format",
                                                             "Error: Cannot determine tracing log format"}));
        QVERIFY(m_pRun->Frame().ClientArea().Children().isEmpty());
        QVERIFY(theApp().m_recentFiles.m_listPaths.empty());
    }

    void fileNewAsksForALogAndOpensIt() {
        m_pRun->m_user.m_strOpenAnswer.reset();
        m_pRun->Frame().RunCommand(ID_FILE_NEW);
        QVERIFY(m_pRun->Frame().ClientArea().Children().isEmpty());
        QCOMPARE(m_pRun->m_user.m_listQuestions.size(), 1U);
        QCOMPARE(m_pRun->m_user.m_listQuestions[0].m_strDefaultExtension, QStringLiteral("log"));
        QCOMPARE(m_pRun->m_user.m_listQuestions[0].m_strFilter,
                 QStringLiteral("Debug Log Files (*.log)|*.log|All Files (*.*)|*.*||"));
        m_pRun->m_user.m_strOpenAnswer = m_pRun->Write("a.log", Log());
        QTest::keyClick(&m_pRun->Frame(), Qt::Key_N, Qt::ControlModifier);
        QCOMPARE(m_pRun->Frame().ClientArea().Children().size(), 1);
        QCOMPARE(m_pRun->Frame().windowTitle(), m_pRun->Path("a.log") + " - Carvelot");
    }

    void aLogDroppedOnAPaneOpens() {
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(m_pRun->Write("a.log", Log()))});
        QDropEvent event(QPointF(20, 20), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QDragEnterEvent enter(QPoint(20, 20), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&m_pRun->Frame(), &enter);
        QVERIFY(enter.isAccepted());
        QApplication::sendEvent(&m_pRun->Frame(), &event);
        QTRY_COMPARE(m_pRun->Frame().ClientArea().Children().size(), 1);
        QVERIFY(!m_pRun->Frame().m_wndFindPane.SearchEdit().acceptDrops());
    }

    void aRecentFileOpensAgain() {
        CChildFrame* pFrame = m_pRun->Open("a.log", Log());
        pFrame->CloseWindow();
        CSessionRun::Settle();
        QVERIFY(theApp().OpenDocumentFile(ToQString(theApp().m_recentFiles.m_listPaths.at(0))) != nullptr);
        QCOMPARE(m_pRun->Frame().ClientArea().Children().size(), 1);
    }

    void aLogOnTheCommandLineIsOpenAndABadOneEndsTheStart() {
        const QTemporaryDir folder;
        QFile file(folder.filePath("c.log"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(QByteArray::fromStdString(TestSession::Joined(Log())));
        file.close();
        m_pRun.reset();
        {
            const CSessionRun run({ToUtf8(file.fileName())});
            QVERIFY(run.m_bStarted);
            QCOMPARE(run.Frame().windowTitle(), file.fileName() + " - Carvelot");
        }
        const CSessionRun run({ToUtf8(folder.filePath("missing.log"))});
        QVERIFY(!run.m_bStarted);
        QVERIFY(run.m_user.m_listMessages.contains("Failed to open file."));
    }

    // --- the commands of a session
    // ------------------------------------------------------------------------------

    void analyzeReadsTheFileAnewAndEmptiesWhatIsShown() {
        CChildFrame* pFrame = m_pRun->Open("a.log", Log());
        Select(pFrame, "Thread - 6");
        pFrame->DetailView().setFocus();
        std::vector<std::string> listLines = Log();
        listLines.push_back(Line("10:00:07.000000", "On something", "12/3"));
        m_pRun->Write("a.log", listLines);
        m_pRun->Frame().RunCommand(ID_SESSION_ANALYZE);
        QVERIFY(FindNode(pFrame->ThreadView().Model(), "Process - 12").isValid());
        QVERIFY(pFrame->ThreadView().isExpanded(FindNode(pFrame->ThreadView().Model(), "Process - 12")));
        QVERIFY(!pFrame->ThreadView().SelectedIndex().isValid());
        QCOMPARE(pFrame->DetailView().Model().rowCount(), 0);
        QVERIFY(Rows(m_pRun->Frame().m_wndSQLPane.List()).isEmpty());
        QCOMPARE(m_pRun->Frame().m_wndSQLPane.GetCaption(), QString());
        QVERIFY(pFrame->ThreadView().hasFocus());
        Select(pFrame, "Thread - 3");
        QCOMPARE(TreeText(pFrame->DetailView().Model()), QStringLiteral("10:00:07.000000    On something\n"));
    }

    void analyzeAfterClearDebugFileReportsTheFormatAndLeavesAnEmptySession() {
        CChildFrame* pFrame = m_pRun->Open("a.log", Log());
        Select(pFrame, "Process - 5");
        m_pRun->Frame().RunCommand(ID_SESSION_CLEAR_DEBUG_FILE);
        QCOMPARE(m_pRun->Read("a.log"), QByteArray());
        QCOMPARE(SelectedText(pFrame->ThreadView()), kProcess5);
        QVERIFY(m_pRun->m_user.m_listMessages.isEmpty());
        m_pRun->Frame().RunCommand(ID_SESSION_ANALYZE);
        QCOMPARE(m_pRun->m_user.m_listMessages, QStringList{"Error: Cannot determine tracing log format"});
        QCOMPARE(pFrame->ThreadView().Model().rowCount(), 0);
        QCOMPARE(pFrame->DetailView().Model().rowCount(), 0);
        QVERIFY(Rows(m_pRun->Frame().m_wndBSFNPane.List()).isEmpty());
        QCOMPARE(m_pRun->Frame().m_wndCachePane.Model().rowCount(), 0);
    }

    void analyzeOfAFileThatIsGoneKeepsTheSession() {
        CChildFrame* pFrame = m_pRun->Open("a.log", Log());
        Select(pFrame, "Process - 5");
        QVERIFY(QFile::remove(m_pRun->Path("a.log")));
        m_pRun->Frame().RunCommand(ID_SESSION_ANALYZE);
        QCOMPARE(m_pRun->m_user.m_listMessages, QStringList{"Failed to open file."});
        QCOMPARE(pFrame->ThreadView().Model().rowCount(), 3);
        QVERIFY(!pFrame->ThreadView().SelectedIndex().isValid());
        Select(pFrame, "Thread - 7");
        QCOMPARE(TreeText(pFrame->DetailView().Model()),
                 QStringLiteral("10:00:02.500007    INSERT INTO T2 (A) VALUES (1)\n"));
    }

    void aLoadShowsItsProgressAndHidesItAtTheEnd() {
        auto* pBar = m_pRun->Frame().findChild<QProgressBar*>();
        int nSteps = 0;
        bool bShown = true;
        connect(pBar, &QProgressBar::valueChanged, this, [&](int nValue) {
            ++nSteps;
            bShown = bShown && !pBar->isHidden() && nValue <= 100;
        });
        std::string strBytes = TestSession::Joined(Log());
        while (strBytes.size() < 10U << 20U)
            strBytes += Line("10:00:07.000000", "On something that fills the line a little more") + "\n";
        QVERIFY(m_pRun->Open(m_pRun->WriteBytes("big.log", strBytes)) != nullptr);
        QVERIFY(nSteps >= 2);
        QVERIFY(bShown);
        QVERIFY(pBar->isHidden());
    }

    // --- the thread tree
    // ----------------------------------------------------------------------------------------

    void aThreadShowsItsCallTreeAndSetsTheTitle() {
        CChildFrame* pFrame = m_pRun->Open("a.log", Log());
        Select(pFrame, "Thread - 6");
        QCOMPARE(pFrame->windowTitle(), m_pRun->Path("a.log") + " - Process: 5 Thread: 6");
        QCOMPARE(m_pRun->Frame().windowTitle(), m_pRun->Path("a.log") + " - Process: 5 Thread: 6 - Carvelot");
        QCOMPARE(
            TreeText(pFrame->DetailView().Model()),
            QStringLiteral(
                "10:00:00.000001    (2.500005) Calling Business function A from Level 1 (BSFNLevel = 1)\n"
                " PARMS IN\n"
                "  IN->[  1] first\n"
                "  IN->[  2] second\n"
                " 10:00:00.000004    (2.500000) SELECT X FROM T1\n"
                " 10:00:02.500004    Exiting DBPerformRequest\n"
                " PARMS OUT\n"
                "  OUT->[  1] third\n"
                " 10:00:02.500006    Return value is 2 for A. (BSFNLevel = 1)\n"));
        QVERIFY(!pFrame->DetailView().isExpanded(pFrame->DetailView().Model().index(0, 0)));
    }

    void aProcessShowsItsThreadsOneAfterTheOtherWithTheirNumbers() {
        CChildFrame* pFrame = m_pRun->Open("a.log", Log());
        Select(pFrame, "Process - 5");
        QCOMPARE(pFrame->windowTitle(), m_pRun->Path("a.log") + " - Process: 5");
        CDetailTreeModel& model = pFrame->DetailView().Model();
        QCOMPARE(model.rowCount(), 2);
        QCOMPARE(model.index(0, 0).data().toString(),
                 QStringLiteral("(6)10:00:00.000001    (2.500005) Calling Business function A from Level 1 "
                                "(BSFNLevel = 1)"));
        QCOMPARE(model.index(1, 0).data().toString(),
                 QStringLiteral("(7)10:00:02.500007    INSERT INTO T2 (A) VALUES (1)"));
        QVERIFY(pFrame->ThreadView().IsProcessSelected(5));
        QVERIFY(!pFrame->ThreadView().IsProcessSelected(9));
        Select(pFrame, "Thread - 7");
        QVERIFY(!pFrame->ThreadView().IsProcessSelected(5));
        QCOMPARE(TreeText(model), QStringLiteral("10:00:02.500007    INSERT INTO T2 (A) VALUES (1)\n"));
    }

    void aUserSetsTheTitleAndShowsSources() {
        CChildFrame* pFrame = m_pRun->Open("jas.log", JasLog());
        Select(pFrame, "ANNIKA");
        QCOMPARE(pFrame->windowTitle(), m_pRun->Path("jas.log") + " - User: ANNIKA");
        QCOMPARE(TreeText(pFrame->DetailView().Model()),
                 QStringLiteral("09:00:01.000000    [RUNTIME] Branch record invalid\n"));
    }

    void aRightClickOnAThreadSelectsItAndOffersWriteMessage() {
        CChildFrame* pFrame = m_pRun->Open("a.log", Log());
        CThreadView& tree = pFrame->ThreadView();
        Click(tree, FindNode(tree.Model(), "Thread - 6"), Qt::RightButton);
        QCOMPARE(SelectedText(tree), kThread6);
        QCOMPARE(m_pRun->m_user.m_listMenuTexts, QStringList{"Write Message"});
        QCOMPARE(pFrame->windowTitle(), m_pRun->Path("a.log") + " - Process: 5 Thread: 6");
        m_pRun->m_user.m_listMenuTexts.clear();
        AskForMenu(*tree.viewport(), PointOf(tree, tree.SelectedIndex()), QContextMenuEvent::Mouse);
        QVERIFY(m_pRun->m_user.m_listMenuTexts.isEmpty());
        AskForMenu(*tree.viewport(), QPoint(), QContextMenuEvent::Keyboard);
        QCOMPARE(m_pRun->m_user.m_listMenuTexts, QStringList{"Write Message"});
    }

    void aWrittenMessageComesBackAfterAnalyze() {
        CChildFrame* pFrame = m_pRun->Open("a.log", Log());
        CThreadView& tree = pFrame->ThreadView();
        m_pRun->m_user.m_strMenuChoice = "Write Message";
        m_pRun->m_user.m_fnInDialog = [](QDialog& dialog) {
            QCOMPARE(dialog.windowTitle(), QStringLiteral("Carvelot Message"));
            auto* pEdit = dialog.findChild<QPlainTextEdit*>();
            QVERIFY(pEdit != nullptr);
            QTest::keyClicks(pEdit, "hello");
            dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok)->click();
        };
        Click(tree, FindNode(tree.Model(), "Thread - 6"), Qt::RightButton);
        m_pRun->m_user.m_strMenuChoice.clear();
        QCOMPARE(m_pRun->m_user.m_nDialogs, 1);
        const CCarvelotDoc& session = static_cast<CSessionDocument*>(pFrame->GetActiveDocument())->Session();
        const std::size_t nBefore = session.m_listDetails.Size(); // the model waits for Analyze
        MainFrame()->RunCommand(ID_SESSION_ANALYZE);
        QCOMPARE(session.m_listDetails.Size(), nBefore + 1);
        const CLogDetail written = session.m_listDetails[RecordIndex{static_cast<std::uint32_t>(nBefore)}];
        QCOMPARE(static_cast<int>(written.m_nKind), static_cast<int>(LOG_MESSAGE));
        QCOMPARE(written.m_nProcessID, 5U);
        QCOMPARE(written.m_nThreadID, 6U);
    }

    void aRightClickOnAProcessOrAUserOrNoNodeDoesNothing() {
        CChildFrame* pFrame = m_pRun->Open("a.log", Log());
        CThreadView& tree = pFrame->ThreadView();
        Select(pFrame, "Thread - 6");
        Click(tree, FindNode(tree.Model(), "Process - 9"), Qt::RightButton);
        QTest::mouseClick(tree.viewport(), Qt::RightButton, {},
                          tree.viewport()->rect().bottomRight() - QPoint(3, 3));
        QCOMPARE(SelectedText(tree), kThread6);
        QVERIFY(m_pRun->m_user.m_listMenuTexts.isEmpty());
        CChildFrame* pJas = m_pRun->Open("jas.log", JasLog());
        Click(pJas->ThreadView(), pJas->ThreadView().Model().index(0, 0), Qt::RightButton);
        QVERIFY(!pJas->ThreadView().SelectedIndex().isValid());
        QVERIFY(m_pRun->m_user.m_listMenuTexts.isEmpty());
    }

    void theFocusAloneSelectsNothing() {
        CChildFrame* pFrame = m_pRun->Open("a.log", Log());
        pFrame->ThreadView().setFocus(Qt::TabFocusReason);
        QVERIFY(!pFrame->ThreadView().SelectedIndex().isValid());
        QCOMPARE(pFrame->DetailView().Model().rowCount(), 0);
        QCOMPARE(pFrame->windowTitle(), m_pRun->Path("a.log"));
    }

    void arrowKeysSelectFromNodeToNode() {
        CChildFrame* pFrame = m_pRun->Open("a.log", Log());
        Select(pFrame, "Process - 5");
        QTest::keyClick(&pFrame->ThreadView(), Qt::Key_Down);
        QCOMPARE(SelectedText(pFrame->ThreadView()), kThread6);
        QCOMPARE(pFrame->windowTitle(), m_pRun->Path("a.log") + " - Process: 5 Thread: 6");
    }

    void aSelectionIsNotTakenBackByClicksNorByDragging() {
        CChildFrame* pFrame = m_pRun->Open("a.log", Log());
        CThreadView& tree = pFrame->ThreadView();
        Select(pFrame, "Thread - 6");
        Click(tree, tree.SelectedIndex(), Qt::LeftButton, Qt::ControlModifier);
        QCOMPARE(SelectedText(tree), kThread6);
        QTest::mouseClick(tree.viewport(), Qt::LeftButton, {},
                          tree.viewport()->rect().bottomRight() - QPoint(3, 3));
        QCOMPARE(SelectedText(tree), kThread6);
        QTest::mousePress(tree.viewport(), Qt::LeftButton, {}, PointOf(tree, tree.SelectedIndex()));
        QTest::mouseMove(tree.viewport(), PointOf(tree, FindNode(tree.Model(), "Process - 9")));
        QTest::mouseRelease(tree.viewport(), Qt::LeftButton, {},
                            PointOf(tree, FindNode(tree.Model(), "Process - 9")));
        QCOMPARE(SelectedText(tree), kThread6);
    }

    void foldingANodeOverTheSelectionSelectsTheNode() {
        CChildFrame* pFrame = m_pRun->Open("a.log", Log());
        Select(pFrame, "Thread - 6");
        pFrame->ThreadView().collapse(FindNode(pFrame->ThreadView().Model(), "Process - 5"));
        QCOMPARE(SelectedText(pFrame->ThreadView()), kProcess5);
        QCOMPARE(pFrame->windowTitle(), m_pRun->Path("a.log") + " - Process: 5");
    }

    // --- the detail tree
    // ----------------------------------------------------------------------------------------

    void aSelectedNodeShowsItsWholeStatementInRawData() {
        const std::string strLong = "SELECT " + std::string(400, 'X') + " FROM T9";
        std::vector<std::string> listLines = Log();
        listLines.push_back(Line("10:00:08.000000", strLong.c_str(), "12/3"));
        CChildFrame* pFrame = m_pRun->Open("a.log", listLines);
        Select(pFrame, "Thread - 3");
        const QModelIndex node = pFrame->DetailView().Model().index(0, 0);
        QCOMPARE(node.data().toString().size(), 260);
        QCOMPARE(node.data().toString(),
                 (QStringLiteral("10:00:08.000000    ") + ToQString(strLong)).left(260));
        Click(pFrame->DetailView(), node);
        QCOMPARE(m_pRun->Frame().m_wndRawDataPane.Edit().toPlainText(), ToQString(strLong));
    }

    void nodesWithoutARecordShowTheirWordsInRawData() {
        CChildFrame* pFrame = m_pRun->Open("a.log", Log());
        Select(pFrame, "Thread - 6");
        CDetailView& tree = pFrame->DetailView();
        tree.expandAll();
        QPlainTextEdit& edit = m_pRun->Frame().m_wndRawDataPane.Edit();
        Click(tree, FindNode(tree.Model(), "PARMS OUT"));
        QCOMPARE(edit.toPlainText(), QStringLiteral("PARMS OUT"));
        Click(tree, FindNode(tree.Model(), "PARMS IN"));
        QCOMPARE(edit.toPlainText(), QStringLiteral("IN->[  1] first"));
        Select(pFrame, "Thread - 7"); // a refill selects nothing and writes nothing
        QCOMPARE(edit.toPlainText(), QStringLiteral("IN->[  1] first"));
    }

    void imagesTellHowACallEnded() {
        CChildFrame* pFrame = m_pRun->Open("a.log", Log());
        Select(pFrame, "Thread - 6");
        CDetailTreeModel& model = pFrame->DetailView().Model();
        QList<QIcon> listImages;
        QVERIFY(LoadImageStrip("TreeImages", listImages));
        const auto fnImage = [&](const char* pszText) {
            const QImage image =
                qvariant_cast<QIcon>(FindNode(model, QLatin1String(pszText)).data(Qt::DecorationRole))
                    .pixmap(16, 15)
                    .toImage();
            for (int n = 0; n < listImages.size(); ++n) {
                if (listImages[n].pixmap(16, 15).toImage() == image)
                    return n;
            }
            return -1;
        };
        QCOMPARE(fnImage("Calling"), 0);
        QCOMPARE(fnImage("PARMS IN"), 4);
        QCOMPARE(fnImage("SELECT"), 3);
        QCOMPARE(fnImage("PARMS OUT"), 5);
        QCOMPARE(fnImage("Return"), 0);
    }

    void copyParmsCopiesTheGroupOfInputParameters() {
        CChildFrame* pFrame = m_pRun->Open("a.log", Log());
        Select(pFrame, "Thread - 6");
        CDetailView& tree = pFrame->DetailView();
        tree.expandAll();
        m_pRun->m_user.m_strMenuChoice = "Copy Parms";
        for (const char* pszNode : {"PARMS IN", "second"}) {
            QGuiApplication::clipboard()->setText("before");
            Click(tree, FindNode(tree.Model(), QLatin1String(pszNode)), Qt::RightButton);
            QVERIFY(m_pRun->m_user.m_listMenuTexts.isEmpty());
            AskForMenu(*tree.viewport(), PointOf(tree, tree.SelectedIndex()), QContextMenuEvent::Mouse);
            QCOMPARE(m_pRun->m_user.m_listMenuTexts, QStringList{"Copy Parms"});
            QCOMPARE(QGuiApplication::clipboard()->text(),
                     QStringLiteral("   IN->[  1] first   IN->[  2] second  "));
            m_pRun->m_user.m_listMenuTexts.clear();
        }
    }

    void onlyInputParametersOfferCopyParms() {
        CChildFrame* pFrame = m_pRun->Open("a.log", Log());
        Select(pFrame, "Thread - 6");
        CDetailView& tree = pFrame->DetailView();
        tree.expandAll();
        for (const char* pszNode : {"PARMS OUT", "third", "Calling", "SELECT"}) {
            Click(tree, FindNode(tree.Model(), QLatin1String(pszNode)), Qt::RightButton);
            QVERIFY(SelectedText(tree).contains(QLatin1String(pszNode)));
            AskForMenu(*tree.viewport(), PointOf(tree, tree.SelectedIndex()), QContextMenuEvent::Mouse);
            QVERIFY(m_pRun->m_user.m_listMenuTexts.isEmpty());
        }
        // The menu goes by what is selected, wherever the pointer is.
        Click(tree, FindNode(tree.Model(), "first"));
        AskForMenu(*tree.viewport(), tree.viewport()->rect().bottomRight() - QPoint(3, 3),
                   QContextMenuEvent::Mouse);
        QCOMPARE(m_pRun->m_user.m_listMenuTexts, QStringList{"Copy Parms"});
        m_pRun->m_user.m_listMenuTexts.clear();
        AskForMenu(*tree.viewport(), QPoint(), QContextMenuEvent::Keyboard);
        QCOMPARE(m_pRun->m_user.m_listMenuTexts, QStringList{"Copy Parms"});
    }

    void theFontIsTakenFromTheSettingsAtEachFillOfASingleThread() {
        CChildFrame* pFrame = m_pRun->Open("a.log", Log());
        Select(pFrame, "Process - 5");
        QCOMPARE(pFrame->DetailView().font(), CellFont("Courier New", 14));
        theApp().m_nFontHeight = 22;
        Select(pFrame, "Process - 9");
        QCOMPARE(pFrame->DetailView().font(), CellFont("Courier New", 14));
        Select(pFrame, "Thread - 6");
        QCOMPARE(pFrame->DetailView().font(), CellFont("Courier New", 22));
        theApp().m_nFontHeight = 14;
    }

    void theTreesScrollSidewaysToTheEndOfTheirLongestNode() {
        std::vector<std::string> listLines = Log();
        listLines.push_back(
            Line("10:00:08.000000", ("SELECT " + std::string(240, 'X') + " FROM T9").c_str(), "12/3"));
        CChildFrame* pFrame = m_pRun->Open("a.log", listLines);
        CDetailView& tree = pFrame->DetailView();
        Select(pFrame, "Thread - 3");
        QTRY_VERIFY(tree.horizontalScrollBar()->maximum() > 0);
        const QModelIndex node = tree.Model().index(0, 0);
        QVERIFY(tree.horizontalScrollBar()->maximum() + tree.viewport()->width() >=
                tree.visualRect(node).left() + tree.fontMetrics().horizontalAdvance(node.data().toString()));
        Select(pFrame, "Thread - 7");
        QTRY_COMPARE(tree.horizontalScrollBar()->maximum(), 0);
    }

    // --- models
    // -------------------------------------------------------------------------------------------------

    void aNodeThatIsCutTellsItsTextBelowThePointerAndAWholeOneNothing() {
        const std::string strLong = "ERROR " + std::string(300, 'x') + " end";
        CChildFrame* pFrame = m_pRun->Open("a.log", DebugLog({Line("10:00:00.000001", "ERROR a"),
                                                              Line("10:00:00.000002", strLong.c_str())}));
        m_pRun->Frame().resize(1200, 800);
        Select(pFrame, "Thread - 6");
        CDetailView& calls = pFrame->DetailView();
        QCoreApplication::processEvents();
        QCOMPARE(SaidByTip(calls, 0, 0), QString());
        // A tree shows 260 characters.
        QCOMPARE(SaidByTip(calls, 1, 0), ToQString("10:00:00.000002    " + strLong));
        // At the left edge.
        calls.horizontalScrollBar()->setValue(40);
        const QPoint middle(10, calls.visualRect(calls.Model().index(0, 0)).center().y());
        QCOMPARE(SaidByTip(*calls.viewport(), middle), QStringLiteral("10:00:00.000001    ERROR a"));
        QCOMPARE(SaidByTip(*calls.viewport(), QPoint(10, calls.viewport()->height() - 2)), QString());

        CThreadView& threads = pFrame->ThreadView();
        auto& splitter = *pFrame->findChild<QSplitter*>();
        splitter.setSizes({400, 600});
        QCOMPARE(SaidByTip(threads, 1, 0), QString());
        splitter.setSizes({90, 900});
        QCOMPARE(SaidByTip(threads, 1, 0), threads.model()->index(1, 0).data().toString());
    }

    void theModelsKeepTheToolkitsRules() {
        CChildFrame* pFrame = m_pRun->Open("a.log", Log());
        const QAbstractItemModelTester threads(&pFrame->ThreadView().Model(),
                                               QAbstractItemModelTester::FailureReportingMode::QtTest);
        const QAbstractItemModelTester details(&pFrame->DetailView().Model(),
                                               QAbstractItemModelTester::FailureReportingMode::QtTest);
        Select(pFrame, "Thread - 6");
        Select(pFrame, "Process - 5");
        m_pRun->Frame().RunCommand(ID_SESSION_ANALYZE);
        Select(pFrame, "Process - 9");
        CChildFrame* pJas = m_pRun->Open("jas.log", JasLog());
        const QAbstractItemModelTester users(&pJas->ThreadView().Model(),
                                             QAbstractItemModelTester::FailureReportingMode::QtTest);
        Select(pJas, "TOMAS");
        QCOMPARE(pJas->DetailView().Model().rowCount(), 1);
    }

    void aMillionRecordsOfOneThreadShowAndTheLastIsFound() {
        std::string strBytes = TestSession::Joined(Log());
        strBytes.reserve(80U << 20U);
        for (int n = 0; n < 1000000; ++n)
            strBytes +=
                DebugLine("10:00:07.000000", "SELECT A FROM T" + std::to_string(n % 100), "12/3") + "\n";
        strBytes += DebugLine("10:00:08.000000", "JDB1 - the end", "12/3") + "\n";
        CChildFrame* pFrame = m_pRun->Open(m_pRun->WriteBytes("big.log", strBytes));
        QVERIFY(pFrame != nullptr);
        Select(pFrame, "Thread - 3");
        QCoreApplication::processEvents();
        const CCarvelotDoc& session = pFrame->SessionDocument().Session();
        pFrame->SessionDocument().Session().ShowDetail(
            RecordIndex{static_cast<std::uint32_t>(session.m_listDetails.Size() - 1)});
        QCoreApplication::processEvents();
        QCOMPARE(SelectedText(pFrame->DetailView()), QStringLiteral("10:00:08.000000    JDB1 - the end"));
        QVERIFY(pFrame->DetailView().viewport()->rect().intersects(
            pFrame->DetailView().visualRect(pFrame->DetailView().SelectedIndex())));
    }

    void aLogThatOpensLevelsWithoutEndShowsTheDeepestSideBySide() {
        std::string strBytes = TestSession::Joined(Log());
        for (int n = 0; n < 100000; ++n)
            strBytes += DebugLine("10:00:07.000000", "On step " + std::to_string(n), "12/3") + "\n";
        CChildFrame* pFrame = m_pRun->Open(m_pRun->WriteBytes("deep.log", strBytes));
        Select(pFrame, "Thread - 3");
        CCarvelotDoc& session = pFrame->SessionDocument().Session();
        CDetailTreeModel& model = pFrame->DetailView().Model();
        const auto nLast = static_cast<std::uint32_t>(session.m_listDetails.Size() - 1);
        session.ShowDetail(RecordIndex{nLast});
        QCoreApplication::processEvents();
        QCOMPARE(SelectedText(pFrame->DetailView()), QStringLiteral("10:00:07.000000    On step 99999"));
        const auto fnDepth = [](QModelIndex index) {
            int nDepth = 0;
            for (; index.isValid(); index = index.parent())
                ++nDepth;
            return nDepth;
        };
        QCOMPARE(fnDepth(pFrame->DetailView().SelectedIndex()), 500);
        QCOMPARE(model.rowCount(pFrame->DetailView().SelectedIndex().parent()), 100000 - 499);
        session.ShowDetail(RecordIndex{nLast - 100000 + 499}); // step 498
        QCOMPARE(fnDepth(pFrame->DetailView().SelectedIndex()), 499);
        QCOMPARE(model.index(0, 0, pFrame->DetailView().SelectedIndex()).data().toString(),
                 QStringLiteral("10:00:07.000000    On step 499"));
        pFrame->DetailView().expandAll();
        QCoreApplication::processEvents();
        QCOMPARE(m_pRun->Frame().m_wndRawDataPane.Edit().toPlainText(), QStringLiteral("On step 498"));
    }

    void aTreeThatIsTooDeepKeepsTheToolkitsRules() {
        std::string strBytes = TestSession::Joined(Log());
        for (int n = 0; n < 520; ++n)
            strBytes += DebugLine("10:00:07.000000", "On step " + std::to_string(n), "12/3") + "\n";
        CChildFrame* pFrame = m_pRun->Open(m_pRun->WriteBytes("deep.log", strBytes));
        const QAbstractItemModelTester details(&pFrame->DetailView().Model(),
                                               QAbstractItemModelTester::FailureReportingMode::QtTest);
        Select(pFrame, "Thread - 3");
        QCOMPARE(TreeText(pFrame->DetailView().Model()).count(QLatin1Char('\n')), 520);
    }

    // --- the session in front
    // -----------------------------------------------------------------------------------

    void thePanesFollowTheSessionInFront() {
        CChildFrame* pFirst = m_pRun->Open("a.log", Log());
        Select(pFirst, "Thread - 6");
        CChildFrame* pSecond = m_pRun->Open("jas.log", JasLog());
        QCOMPARE(m_pRun->Frame().m_wndErrorPane.GetCaption(), QString());
        QVERIFY(Rows(m_pRun->Frame().m_wndErrorPane.List()).isEmpty());
        Select(pSecond, "TOMAS");
        QCOMPARE(Rows(m_pRun->Frame().m_wndErrorPane.List()), QStringList{"TOMAS|ERROR|Item record invalid"});
        ClickTab(pFirst);
        QCOMPARE(Rows(m_pRun->Frame().m_wndErrorPane.List()),
                 QStringList{"5/6|BSFN Error|Return value is 2 for A. (BSFNLevel = 1)"});
        QCOMPARE(m_pRun->Frame().m_wndErrorPane.GetCaption(), QStringLiteral(" Process: 5 Thread: 6"));
        ClickTab(pSecond);
        QCOMPARE(m_pRun->Frame().m_wndErrorPane.GetCaption(), QStringLiteral(" User: TOMAS"));
    }

    void closingTheSessionInFrontShowsTheNextOnesSelection() {
        CChildFrame* pFirst = m_pRun->Open("a.log", Log());
        Select(pFirst, "Thread - 6");
        CChildFrame* pSecond = m_pRun->Open("jas.log", JasLog());
        Select(pSecond, "TOMAS");
        pSecond->CloseWindow();
        CSessionRun::Settle();
        QVERIFY(m_pRun->Frame().ActiveChild() == pFirst);
        QCOMPARE(m_pRun->Frame().m_wndSQLPane.GetCaption(), QStringLiteral(" Process: 5 Thread: 6"));
        QCOMPARE(Rows(m_pRun->Frame().m_wndSQLPane.List()), QStringList{"T1|1|0|0|0"});
        pFirst->CloseWindow();
        CSessionRun::Settle();
        QCOMPARE(m_pRun->Frame().m_wndSQLPane.GetCaption(), QString());
        QVERIFY(Rows(m_pRun->Frame().m_wndSQLPane.List()).isEmpty());
    }

    void closingASessionBehindEmptiesThePanesUntilTheOneInFrontIsUsed() {
        CChildFrame* pFirst = m_pRun->Open("a.log", Log());
        CChildFrame* pSecond = m_pRun->Open("jas.log", JasLog());
        Select(pSecond, "TOMAS");
        pFirst->CloseWindow();
        CSessionRun::Settle();
        QVERIFY(m_pRun->Frame().ActiveChild() == pSecond);
        QVERIFY(Rows(m_pRun->Frame().m_wndErrorPane.List()).isEmpty());
        QCOMPARE(m_pRun->Frame().m_wndErrorPane.GetCaption(), QString());
        QTest::mouseClick(pSecond->DetailView().viewport(), Qt::LeftButton, {},
                          pSecond->DetailView().viewport()->rect().bottomRight() - QPoint(3, 3));
        QCOMPARE(Rows(m_pRun->Frame().m_wndErrorPane.List()), QStringList{"TOMAS|ERROR|Item record invalid"});
        QCOMPARE(m_pRun->Frame().m_wndErrorPane.GetCaption(), QStringLiteral(" User: TOMAS"));
    }

    void closeAllClosesEverySessionAndEmptiesThePanes() {
        CChildFrame* pFirst = m_pRun->Open("a.log", Log());
        Select(pFirst, "Process - 5");
        CChildFrame* pSecond = m_pRun->Open("jas.log", JasLog());
        Select(pSecond, "TOMAS");
        m_pRun->Frame().m_wndRawDataPane.SetText("stays");
        m_pRun->Frame().RunCommand(ID_WINDOW_CLOSE_ALL);
        CSessionRun::Settle();
        QVERIFY(m_pRun->Frame().ClientArea().Children().isEmpty());
        CMainFrame& frame = m_pRun->Frame();
        for (CListCtrl* pList :
             {&frame.m_wndSQLPane.List(), &frame.m_wndBSFNPane.List(), &frame.m_wndLongTasksPane.List(),
              &frame.m_wndErrorPane.List(), &frame.m_wndTimingGapsPane.List()})
            QVERIFY(Rows(*pList).isEmpty());
        QCOMPARE(frame.m_wndCachePane.Model().rowCount(), 0);
        for (CDockablePane* pPane : std::initializer_list<CDockablePane*>{
                 &frame.m_wndBSFNPane, &frame.m_wndSQLPane, &frame.m_wndCachePane, &frame.m_wndLongTasksPane,
                 &frame.m_wndErrorPane})
            QCOMPARE(pPane->GetCaption(), QString());
        QCOMPARE(frame.m_wndRawDataPane.Edit().toPlainText(), QStringLiteral("stays"));
    }

    void rawDataOutlivesTheSession() {
        CChildFrame* pFrame = m_pRun->Open("a.log", Log());
        Select(pFrame, "Thread - 7");
        Click(pFrame->DetailView(), pFrame->DetailView().Model().index(0, 0));
        pFrame->CloseWindow();
        CSessionRun::Settle();
        QCOMPARE(m_pRun->Frame().m_wndRawDataPane.Edit().toPlainText(),
                 QStringLiteral("INSERT INTO T2 (A) VALUES (1)"));
    }

    void windowsHaveAccessibleNamesAndF6LeadsThroughThem() {
        CChildFrame* pFrame = m_pRun->Open("a.log", Log());
        QVERIFY(!pFrame->ThreadView().accessibleName().isEmpty());
        QVERIFY(!pFrame->DetailView().accessibleName().isEmpty());
        QVERIFY(!m_pRun->Frame().m_wndCachePane.Tree().accessibleName().isEmpty());
        QVERIFY(!m_pRun->Frame().m_wndFindPane.SearchEdit().accessibleName().isEmpty());
        pFrame->ThreadView().setFocus();
        QTest::keyClick(&m_pRun->Frame(), Qt::Key_F6);
        QVERIFY(pFrame->DetailView().hasFocus());
        QTest::keyClick(&m_pRun->Frame(), Qt::Key_F6, Qt::ShiftModifier);
        QVERIFY(pFrame->ThreadView().hasFocus());
    }

private:
    void ClickTab(CChildFrame* pFrame) {
        CTabBar& bar = m_pRun->Frame().ClientArea().GroupOf(*pFrame)->Bar();
        const int nTab = m_pRun->Frame().ClientArea().GroupOf(*pFrame)->indexOf(pFrame);
        QTest::mouseClick(&bar, Qt::LeftButton, {}, bar.tabRect(nTab).center());
    }
};

QTEST_MAIN(SessionWindowTest)
#include "SessionWindowTest.moc"
