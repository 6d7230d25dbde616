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

    void openShowsTheProcessesWithTheirThreadsAndNothingSelected() {
        CChildFrame* frame = m_pRun->Open("a.log", Log());
        QVERIFY(frame != nullptr);
        QCOMPARE(TreeText(frame->ThreadView().Model()), QStringLiteral("Process - 1 (0.000000)\n"
                                                                       " Thread - 1 (0.000000)\n"
                                                                       "Process - 5 (2.500006)\n"
                                                                       " Thread - 6 (2.500005)\n"
                                                                       " Thread - 7 (0.000000)\n"
                                                                       "Process - 9 (3.500000)\n"
                                                                       " Thread - 1 (3.500000)\n"));
        for (int row = 0; row < 3; ++row) {
            QVERIFY(frame->ThreadView().isExpanded(frame->ThreadView().Model().index(row, 0)));
        }
        QVERIFY(!frame->ThreadView().SelectedIndex().isValid());
        QCOMPARE(frame->DetailView().Model().rowCount(), 0);
        QCOMPARE(frame->windowTitle(), m_pRun->Path("a.log"));
        QCOMPARE(m_pRun->Frame().windowTitle(), m_pRun->Path("a.log") + " - Carvelot");
        QCOMPARE(theApp().m_recentFiles.m_listPaths,
                 std::vector<std::string>{ToUtf8(QDir::toNativeSeparators(m_pRun->Path("a.log")))});
    }

    void theWindowIsSplitWith200PixelsForTheThreadTree() {
        CChildFrame* frame = m_pRun->Open("a.log", Log());
        QCOMPARE(frame->findChild<QSplitter*>()->sizes().constFirst(), 200);
        QCOMPARE(frame->findChild<QSplitter*>()->orientation(), Qt::Horizontal);
        QVERIFY(frame->SessionDocument().Session().m_pThreadView == &frame->ThreadView());
        QVERIFY(frame->SessionDocument().Session().m_pDetailView == &frame->DetailView());
    }

    void theWidthToWhichTheThreadTreeIsDraggedHoldsForLaterSessionsAndStarts() {
        const auto width = [](CChildFrame* frame) {
            return frame->findChild<QSplitter*>()->sizes().constFirst();
        };
        CChildFrame* frame = m_pRun->Open("a.log", Log());
        QWidget* handle = frame->findChild<QSplitter*>()->handle(1);
        // A click alone is no drag, and what a narrow window takes away is no wish.
        m_pRun->Frame().resize(300, 600);
        QCoreApplication::processEvents();
        QTest::mouseClick(handle, Qt::LeftButton);
        m_pRun->Frame().resize(1200, 800);
        QCoreApplication::processEvents();
        CChildFrame* second = m_pRun->Open("b.log", Log());
        QCOMPARE(width(second), 200);

        handle = second->findChild<QSplitter*>()->handle(1);
        const QPoint from = handle->rect().center();
        QTest::mousePress(handle, Qt::LeftButton, {}, from);
        QTest::mouseMove(handle, from + QPoint(90, 0));
        QTest::mouseRelease(handle, Qt::LeftButton);
        const int dragged = width(second);
        QVERIFY(dragged > 230);
        QCOMPARE(width(m_pRun->Open("c.log", Log())), dragged);
        for (int start = 0; start < 2; ++start) {
            m_pRun->Restart();
            QCOMPARE(width(m_pRun->Open(m_pRun->Path("a.log"))), dragged);
        }
    }

    void aJasLogShowsItsUsersFlatAndTheImageStaysFromSystemLevelOn() {
        CChildFrame* frame = m_pRun->Open("jas.log", JasLog());
        CThreadTreeModel& model = frame->ThreadView().Model();
        QCOMPARE(TreeText(model), QStringLiteral("INIT\nANNIKA\nSYSTEM LEVEL\nTOMAS\n"));
        QList<QIcon> images;
        QVERIFY(LoadImageStrip("TreeImages", images));
        QCOMPARE(images.size(), 23);
        const auto same = [&](int row, int image) {
            return qvariant_cast<QIcon>(model.index(row, 0).data(Qt::DecorationRole))
                       .pixmap(16, 15)
                       .toImage() == images[image].pixmap(16, 15).toImage();
        };
        QVERIFY(same(0, 13));
        QVERIFY(same(1, 13));
        QVERIFY(same(2, 14));
        QVERIFY(same(3, 14));
    }

    void processesShowImage9AndThreadsImage8() {
        CChildFrame* frame = m_pRun->Open("a.log", Log());
        QList<QIcon> images;
        QVERIFY(LoadImageStrip("TreeImages", images));
        const QModelIndex process = frame->ThreadView().Model().index(1, 0);
        const auto imageOf = [](const QModelIndex& index) {
            return qvariant_cast<QIcon>(index.data(Qt::DecorationRole)).pixmap(16, 15).toImage();
        };
        QCOMPARE(imageOf(process), images[9].pixmap(16, 15).toImage());
        QCOMPARE(imageOf(frame->ThreadView().Model().index(0, 0, process)),
                 images[8].pixmap(16, 15).toImage());
    }

    void aFileThatCannotBeOpenedLeavesNoWindowAndTheOtherSessionAsItWas() {
        CChildFrame* frame = m_pRun->Open("a.log", Log());
        Select(frame, "Thread - 6");
        QVERIFY(m_pRun->Open(m_pRun->Path("missing.log")) == nullptr);
        QCOMPARE(m_pRun->m_user.m_listMessages, QStringList{"Failed to open file."});
        QCOMPARE(m_pRun->Frame().ClientArea().Children().size(), 1);
        QVERIFY(m_pRun->Frame().ActiveChild() == frame);
        QCOMPARE(SelectedText(frame->ThreadView()), kThread6);
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
        CChildFrame* frame = m_pRun->Open("a.log", Log());
        frame->CloseWindow();
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

    void analyzeReadsTheFileAnewAndEmptiesWhatIsShown() {
        CChildFrame* frame = m_pRun->Open("a.log", Log());
        Select(frame, "Thread - 6");
        frame->DetailView().setFocus();
        std::vector<std::string> lines = Log();
        lines.push_back(Line("10:00:07.000000", "On something", "12/3"));
        m_pRun->Write("a.log", lines);
        m_pRun->Frame().RunCommand(ID_SESSION_ANALYZE);
        QVERIFY(FindNode(frame->ThreadView().Model(), "Process - 12").isValid());
        QVERIFY(frame->ThreadView().isExpanded(FindNode(frame->ThreadView().Model(), "Process - 12")));
        QVERIFY(!frame->ThreadView().SelectedIndex().isValid());
        QCOMPARE(frame->DetailView().Model().rowCount(), 0);
        QVERIFY(Rows(m_pRun->Frame().m_wndSQLPane.List()).isEmpty());
        QCOMPARE(m_pRun->Frame().m_wndSQLPane.GetCaption(), QString());
        QVERIFY(frame->ThreadView().hasFocus());
        Select(frame, "Thread - 3");
        QCOMPARE(TreeText(frame->DetailView().Model()), QStringLiteral("10:00:07.000000    On something\n"));
    }

    void analyzeAfterClearDebugFileReportsTheFormatAndLeavesAnEmptySession() {
        CChildFrame* frame = m_pRun->Open("a.log", Log());
        Select(frame, "Process - 5");
        m_pRun->Frame().RunCommand(ID_SESSION_CLEAR_DEBUG_FILE);
        QCOMPARE(m_pRun->Read("a.log"), QByteArray());
        QCOMPARE(SelectedText(frame->ThreadView()), kProcess5);
        QVERIFY(m_pRun->m_user.m_listMessages.isEmpty());
        m_pRun->Frame().RunCommand(ID_SESSION_ANALYZE);
        QCOMPARE(m_pRun->m_user.m_listMessages, QStringList{"Error: Cannot determine tracing log format"});
        QCOMPARE(frame->ThreadView().Model().rowCount(), 0);
        QCOMPARE(frame->DetailView().Model().rowCount(), 0);
        QVERIFY(Rows(m_pRun->Frame().m_wndBSFNPane.List()).isEmpty());
        QCOMPARE(m_pRun->Frame().m_wndCachePane.Model().rowCount(), 0);
    }

    void analyzeOfAFileThatIsGoneKeepsTheSession() {
        CChildFrame* frame = m_pRun->Open("a.log", Log());
        Select(frame, "Process - 5");
        QVERIFY(QFile::remove(m_pRun->Path("a.log")));
        m_pRun->Frame().RunCommand(ID_SESSION_ANALYZE);
        QCOMPARE(m_pRun->m_user.m_listMessages, QStringList{"Failed to open file."});
        QCOMPARE(frame->ThreadView().Model().rowCount(), 3);
        QVERIFY(!frame->ThreadView().SelectedIndex().isValid());
        Select(frame, "Thread - 7");
        QCOMPARE(TreeText(frame->DetailView().Model()),
                 QStringLiteral("10:00:02.500007    INSERT INTO T2 (A) VALUES (1)\n"));
    }

    void aLoadShowsItsProgressAndHidesItAtTheEnd() {
        auto* bar = m_pRun->Frame().findChild<QProgressBar*>();
        int steps = 0;
        bool shown = true;
        connect(bar, &QProgressBar::valueChanged, this, [&](int value) {
            ++steps;
            shown = shown && !bar->isHidden() && value <= 100;
        });
        std::string bytes = TestSession::Joined(Log());
        while (bytes.size() < 10U << 20U) {
            bytes += Line("10:00:07.000000", "On something that fills the line a little more") + "\n";
        }
        QVERIFY(m_pRun->Open(m_pRun->WriteBytes("big.log", bytes)) != nullptr);
        QVERIFY(steps >= 2);
        QVERIFY(shown);
        QVERIFY(bar->isHidden());
    }

    // --- the thread tree

    void aThreadShowsItsCallTreeAndSetsTheTitle() {
        CChildFrame* frame = m_pRun->Open("a.log", Log());
        Select(frame, "Thread - 6");
        QCOMPARE(frame->windowTitle(), m_pRun->Path("a.log") + " - Process: 5 Thread: 6");
        QCOMPARE(m_pRun->Frame().windowTitle(), m_pRun->Path("a.log") + " - Process: 5 Thread: 6 - Carvelot");
        QCOMPARE(
            TreeText(frame->DetailView().Model()),
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
        QVERIFY(!frame->DetailView().isExpanded(frame->DetailView().Model().index(0, 0)));
    }

    void aProcessShowsItsThreadsOneAfterTheOtherWithTheirNumbers() {
        CChildFrame* frame = m_pRun->Open("a.log", Log());
        Select(frame, "Process - 5");
        QCOMPARE(frame->windowTitle(), m_pRun->Path("a.log") + " - Process: 5");
        CDetailTreeModel& model = frame->DetailView().Model();
        QCOMPARE(model.rowCount(), 2);
        QCOMPARE(model.index(0, 0).data().toString(),
                 QStringLiteral("(6)10:00:00.000001    (2.500005) Calling Business function A from Level 1 "
                                "(BSFNLevel = 1)"));
        QCOMPARE(model.index(1, 0).data().toString(),
                 QStringLiteral("(7)10:00:02.500007    INSERT INTO T2 (A) VALUES (1)"));
        QVERIFY(frame->ThreadView().IsProcessSelected(5));
        QVERIFY(!frame->ThreadView().IsProcessSelected(9));
        Select(frame, "Thread - 7");
        QVERIFY(!frame->ThreadView().IsProcessSelected(5));
        QCOMPARE(TreeText(model), QStringLiteral("10:00:02.500007    INSERT INTO T2 (A) VALUES (1)\n"));
    }

    void aUserSetsTheTitleAndShowsSources() {
        CChildFrame* frame = m_pRun->Open("jas.log", JasLog());
        Select(frame, "ANNIKA");
        QCOMPARE(frame->windowTitle(), m_pRun->Path("jas.log") + " - User: ANNIKA");
        QCOMPARE(TreeText(frame->DetailView().Model()),
                 QStringLiteral("09:00:01.000000    [RUNTIME] Branch record invalid\n"));
    }

    void aRightClickOnAThreadSelectsItAndOffersWriteMessage() {
        CChildFrame* frame = m_pRun->Open("a.log", Log());
        CThreadView& tree = frame->ThreadView();
        Click(tree, FindNode(tree.Model(), "Thread - 6"), Qt::RightButton);
        QCOMPARE(SelectedText(tree), kThread6);
        QCOMPARE(m_pRun->m_user.m_listMenuTexts, QStringList{"Write Message"});
        QCOMPARE(frame->windowTitle(), m_pRun->Path("a.log") + " - Process: 5 Thread: 6");
        m_pRun->m_user.m_listMenuTexts.clear();
        AskForMenu(*tree.viewport(), PointOf(tree, tree.SelectedIndex()), QContextMenuEvent::Mouse);
        QVERIFY(m_pRun->m_user.m_listMenuTexts.isEmpty());
        AskForMenu(*tree.viewport(), QPoint(), QContextMenuEvent::Keyboard);
        QCOMPARE(m_pRun->m_user.m_listMenuTexts, QStringList{"Write Message"});
    }

    void aWrittenMessageComesBackAfterAnalyze() {
        CChildFrame* frame = m_pRun->Open("a.log", Log());
        CThreadView& tree = frame->ThreadView();
        m_pRun->m_user.m_strMenuChoice = "Write Message";
        m_pRun->m_user.m_fnInDialog = [](QDialog& dialog) {
            QCOMPARE(dialog.windowTitle(), QStringLiteral("Carvelot Message"));
            auto* edit = dialog.findChild<QPlainTextEdit*>();
            QVERIFY(edit != nullptr);
            QTest::keyClicks(edit, "hello");
            dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok)->click();
        };
        Click(tree, FindNode(tree.Model(), "Thread - 6"), Qt::RightButton);
        m_pRun->m_user.m_strMenuChoice.clear();
        QCOMPARE(m_pRun->m_user.m_nDialogs, 1);
        const CCarvelotDoc& session = static_cast<CSessionDocument*>(frame->GetActiveDocument())->Session();
        const std::size_t before = session.m_listDetails.Size(); // the model waits for Analyze
        MainFrame()->RunCommand(ID_SESSION_ANALYZE);
        QCOMPARE(session.m_listDetails.Size(), before + 1);
        const CLogDetail written = session.m_listDetails[RecordIndex{static_cast<std::uint32_t>(before)}];
        QCOMPARE(static_cast<int>(written.m_nKind), static_cast<int>(LOG_MESSAGE));
        QCOMPARE(written.m_nProcessID, 5U);
        QCOMPARE(written.m_nThreadID, 6U);
    }

    void aRightClickOnAProcessOrAUserOrNoNodeDoesNothing() {
        CChildFrame* frame = m_pRun->Open("a.log", Log());
        CThreadView& tree = frame->ThreadView();
        Select(frame, "Thread - 6");
        Click(tree, FindNode(tree.Model(), "Process - 9"), Qt::RightButton);
        QTest::mouseClick(tree.viewport(), Qt::RightButton, {},
                          tree.viewport()->rect().bottomRight() - QPoint(3, 3));
        QCOMPARE(SelectedText(tree), kThread6);
        QVERIFY(m_pRun->m_user.m_listMenuTexts.isEmpty());
        CChildFrame* jas = m_pRun->Open("jas.log", JasLog());
        Click(jas->ThreadView(), jas->ThreadView().Model().index(0, 0), Qt::RightButton);
        QVERIFY(!jas->ThreadView().SelectedIndex().isValid());
        QVERIFY(m_pRun->m_user.m_listMenuTexts.isEmpty());
    }

    void theFocusAloneSelectsNothing() {
        CChildFrame* frame = m_pRun->Open("a.log", Log());
        frame->ThreadView().setFocus(Qt::TabFocusReason);
        QVERIFY(!frame->ThreadView().SelectedIndex().isValid());
        QCOMPARE(frame->DetailView().Model().rowCount(), 0);
        QCOMPARE(frame->windowTitle(), m_pRun->Path("a.log"));
    }

    void arrowKeysSelectFromNodeToNode() {
        CChildFrame* frame = m_pRun->Open("a.log", Log());
        Select(frame, "Process - 5");
        QTest::keyClick(&frame->ThreadView(), Qt::Key_Down);
        QCOMPARE(SelectedText(frame->ThreadView()), kThread6);
        QCOMPARE(frame->windowTitle(), m_pRun->Path("a.log") + " - Process: 5 Thread: 6");
    }

    void aSelectionIsNotTakenBackByClicksNorByDragging() {
        CChildFrame* frame = m_pRun->Open("a.log", Log());
        CThreadView& tree = frame->ThreadView();
        Select(frame, "Thread - 6");
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
        CChildFrame* frame = m_pRun->Open("a.log", Log());
        Select(frame, "Thread - 6");
        frame->ThreadView().collapse(FindNode(frame->ThreadView().Model(), "Process - 5"));
        QCOMPARE(SelectedText(frame->ThreadView()), kProcess5);
        QCOMPARE(frame->windowTitle(), m_pRun->Path("a.log") + " - Process: 5");
    }

    // --- the detail tree

    void aSelectedNodeShowsItsWholeStatementInRawData() {
        const std::string longer = "SELECT " + std::string(400, 'X') + " FROM T9";
        std::vector<std::string> lines = Log();
        lines.push_back(Line("10:00:08.000000", longer.c_str(), "12/3"));
        CChildFrame* frame = m_pRun->Open("a.log", lines);
        Select(frame, "Thread - 3");
        const QModelIndex node = frame->DetailView().Model().index(0, 0);
        QCOMPARE(node.data().toString().size(), 260);
        QCOMPARE(node.data().toString(),
                 (QStringLiteral("10:00:08.000000    ") + ToQString(longer)).left(260));
        Click(frame->DetailView(), node);
        QCOMPARE(m_pRun->Frame().m_wndRawDataPane.Edit().toPlainText(), ToQString(longer));
    }

    void nodesWithoutARecordShowTheirWordsInRawData() {
        CChildFrame* frame = m_pRun->Open("a.log", Log());
        Select(frame, "Thread - 6");
        CDetailView& tree = frame->DetailView();
        tree.expandAll();
        QPlainTextEdit& edit = m_pRun->Frame().m_wndRawDataPane.Edit();
        Click(tree, FindNode(tree.Model(), "PARMS OUT"));
        QCOMPARE(edit.toPlainText(), QStringLiteral("PARMS OUT"));
        Click(tree, FindNode(tree.Model(), "PARMS IN"));
        QCOMPARE(edit.toPlainText(), QStringLiteral("IN->[  1] first"));
        Select(frame, "Thread - 7"); // a refill selects nothing and writes nothing
        QCOMPARE(edit.toPlainText(), QStringLiteral("IN->[  1] first"));
    }

    void imagesTellHowACallEnded() {
        CChildFrame* frame = m_pRun->Open("a.log", Log());
        Select(frame, "Thread - 6");
        CDetailTreeModel& model = frame->DetailView().Model();
        QList<QIcon> images;
        QVERIFY(LoadImageStrip("TreeImages", images));
        const auto imageOf = [&](const char* text) {
            const QImage image =
                qvariant_cast<QIcon>(FindNode(model, QLatin1String(text)).data(Qt::DecorationRole))
                    .pixmap(16, 15)
                    .toImage();
            for (int n = 0; n < images.size(); ++n) {
                if (images[n].pixmap(16, 15).toImage() == image) {
                    return n;
                }
            }
            return -1;
        };
        QCOMPARE(imageOf("Calling"), 0);
        QCOMPARE(imageOf("PARMS IN"), 4);
        QCOMPARE(imageOf("SELECT"), 3);
        QCOMPARE(imageOf("PARMS OUT"), 5);
        QCOMPARE(imageOf("Return"), 0);
    }

    void copyParmsCopiesTheGroupOfInputParameters() {
        CChildFrame* frame = m_pRun->Open("a.log", Log());
        Select(frame, "Thread - 6");
        CDetailView& tree = frame->DetailView();
        tree.expandAll();
        m_pRun->m_user.m_strMenuChoice = "Copy Parms";
        for (const char* node : {"PARMS IN", "second"}) {
            QGuiApplication::clipboard()->setText("before");
            Click(tree, FindNode(tree.Model(), QLatin1String(node)), Qt::RightButton);
            QVERIFY(m_pRun->m_user.m_listMenuTexts.isEmpty());
            AskForMenu(*tree.viewport(), PointOf(tree, tree.SelectedIndex()), QContextMenuEvent::Mouse);
            QCOMPARE(m_pRun->m_user.m_listMenuTexts, QStringList{"Copy Parms"});
            QCOMPARE(QGuiApplication::clipboard()->text(),
                     QStringLiteral("   IN->[  1] first   IN->[  2] second  "));
            m_pRun->m_user.m_listMenuTexts.clear();
        }
    }

    void onlyInputParametersOfferCopyParms() {
        CChildFrame* frame = m_pRun->Open("a.log", Log());
        Select(frame, "Thread - 6");
        CDetailView& tree = frame->DetailView();
        tree.expandAll();
        for (const char* node : {"PARMS OUT", "third", "Calling", "SELECT"}) {
            Click(tree, FindNode(tree.Model(), QLatin1String(node)), Qt::RightButton);
            QVERIFY(SelectedText(tree).contains(QLatin1String(node)));
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
        CChildFrame* frame = m_pRun->Open("a.log", Log());
        Select(frame, "Process - 5");
        QCOMPARE(frame->DetailView().font(), CellFont("Courier New", 14));
        theApp().m_nFontHeight = 22;
        Select(frame, "Process - 9");
        QCOMPARE(frame->DetailView().font(), CellFont("Courier New", 14));
        Select(frame, "Thread - 6");
        QCOMPARE(frame->DetailView().font(), CellFont("Courier New", 22));
        theApp().m_nFontHeight = 14;
    }

    void theTreesScrollSidewaysToTheEndOfTheirLongestNode() {
        std::vector<std::string> lines = Log();
        lines.push_back(
            Line("10:00:08.000000", ("SELECT " + std::string(240, 'X') + " FROM T9").c_str(), "12/3"));
        CChildFrame* frame = m_pRun->Open("a.log", lines);
        CDetailView& tree = frame->DetailView();
        Select(frame, "Thread - 3");
        QTRY_VERIFY(tree.horizontalScrollBar()->maximum() > 0);
        const QModelIndex node = tree.Model().index(0, 0);
        QVERIFY(tree.horizontalScrollBar()->maximum() + tree.viewport()->width() >=
                tree.visualRect(node).left() + tree.fontMetrics().horizontalAdvance(node.data().toString()));
        Select(frame, "Thread - 7");
        QTRY_COMPARE(tree.horizontalScrollBar()->maximum(), 0);
    }

    // --- models

    void aNodeThatIsCutTellsItsTextBelowThePointerAndAWholeOneNothing() {
        const std::string longer = "ERROR " + std::string(300, 'x') + " end";
        CChildFrame* frame = m_pRun->Open(
            "a.log", DebugLog({Line("10:00:00.000001", "ERROR a"), Line("10:00:00.000002", longer.c_str())}));
        m_pRun->Frame().resize(1200, 800);
        Select(frame, "Thread - 6");
        CDetailView& calls = frame->DetailView();
        QCoreApplication::processEvents();
        QCOMPARE(SaidByTip(calls, 0, 0), QString());
        // A tree shows 260 characters.
        QCOMPARE(SaidByTip(calls, 1, 0), ToQString("10:00:00.000002    " + longer));
        // At the left edge.
        calls.horizontalScrollBar()->setValue(40);
        const QPoint middle(10, calls.visualRect(calls.Model().index(0, 0)).center().y());
        QCOMPARE(SaidByTip(*calls.viewport(), middle), QStringLiteral("10:00:00.000001    ERROR a"));
        QCOMPARE(SaidByTip(*calls.viewport(), QPoint(10, calls.viewport()->height() - 2)), QString());

        CThreadView& threads = frame->ThreadView();
        auto& splitter = *frame->findChild<QSplitter*>();
        splitter.setSizes({400, 600});
        QCOMPARE(SaidByTip(threads, 1, 0), QString());
        splitter.setSizes({90, 900});
        QCOMPARE(SaidByTip(threads, 1, 0), threads.model()->index(1, 0).data().toString());
    }

    void theModelsKeepTheToolkitsRules() {
        CChildFrame* frame = m_pRun->Open("a.log", Log());
        const QAbstractItemModelTester threads(&frame->ThreadView().Model(),
                                               QAbstractItemModelTester::FailureReportingMode::QtTest);
        const QAbstractItemModelTester details(&frame->DetailView().Model(),
                                               QAbstractItemModelTester::FailureReportingMode::QtTest);
        Select(frame, "Thread - 6");
        Select(frame, "Process - 5");
        m_pRun->Frame().RunCommand(ID_SESSION_ANALYZE);
        Select(frame, "Process - 9");
        CChildFrame* jas = m_pRun->Open("jas.log", JasLog());
        const QAbstractItemModelTester users(&jas->ThreadView().Model(),
                                             QAbstractItemModelTester::FailureReportingMode::QtTest);
        Select(jas, "TOMAS");
        QCOMPARE(jas->DetailView().Model().rowCount(), 1);
    }

    void aMillionRecordsOfOneThreadShowAndTheLastIsFound() {
        std::string bytes = TestSession::Joined(Log());
        bytes.reserve(80U << 20U);
        for (int n = 0; n < 1000000; ++n) {
            bytes += DebugLine("10:00:07.000000", "SELECT A FROM T" + std::to_string(n % 100), "12/3") + "\n";
        }
        bytes += DebugLine("10:00:08.000000", "JDB1 - the end", "12/3") + "\n";
        CChildFrame* frame = m_pRun->Open(m_pRun->WriteBytes("big.log", bytes));
        QVERIFY(frame != nullptr);
        Select(frame, "Thread - 3");
        QCoreApplication::processEvents();
        const CCarvelotDoc& session = frame->SessionDocument().Session();
        frame->SessionDocument().Session().ShowDetail(
            RecordIndex{static_cast<std::uint32_t>(session.m_listDetails.Size() - 1)});
        QCoreApplication::processEvents();
        QCOMPARE(SelectedText(frame->DetailView()), QStringLiteral("10:00:08.000000    JDB1 - the end"));
        QVERIFY(frame->DetailView().viewport()->rect().intersects(
            frame->DetailView().visualRect(frame->DetailView().SelectedIndex())));
    }

    void aLogThatOpensLevelsWithoutEndShowsTheDeepestSideBySide() {
        std::string bytes = TestSession::Joined(Log());
        for (int n = 0; n < 100000; ++n) {
            bytes += DebugLine("10:00:07.000000", "On step " + std::to_string(n), "12/3") + "\n";
        }
        CChildFrame* frame = m_pRun->Open(m_pRun->WriteBytes("deep.log", bytes));
        Select(frame, "Thread - 3");
        CCarvelotDoc& session = frame->SessionDocument().Session();
        CDetailTreeModel& model = frame->DetailView().Model();
        const auto last = static_cast<std::uint32_t>(session.m_listDetails.Size() - 1);
        session.ShowDetail(RecordIndex{last});
        QCoreApplication::processEvents();
        QCOMPARE(SelectedText(frame->DetailView()), QStringLiteral("10:00:07.000000    On step 99999"));
        const auto depthOf = [](QModelIndex index) {
            int depth = 0;
            for (; index.isValid(); index = index.parent()) {
                ++depth;
            }
            return depth;
        };
        QCOMPARE(depthOf(frame->DetailView().SelectedIndex()), 500);
        QCOMPARE(model.rowCount(frame->DetailView().SelectedIndex().parent()), 100000 - 499);
        session.ShowDetail(RecordIndex{last - 100000 + 499}); // step 498
        QCOMPARE(depthOf(frame->DetailView().SelectedIndex()), 499);
        QCOMPARE(model.index(0, 0, frame->DetailView().SelectedIndex()).data().toString(),
                 QStringLiteral("10:00:07.000000    On step 499"));
        frame->DetailView().expandAll();
        QCoreApplication::processEvents();
        QCOMPARE(m_pRun->Frame().m_wndRawDataPane.Edit().toPlainText(), QStringLiteral("On step 498"));
    }

    void aTreeThatIsTooDeepKeepsTheToolkitsRules() {
        std::string bytes = TestSession::Joined(Log());
        for (int n = 0; n < 520; ++n) {
            bytes += DebugLine("10:00:07.000000", "On step " + std::to_string(n), "12/3") + "\n";
        }
        CChildFrame* frame = m_pRun->Open(m_pRun->WriteBytes("deep.log", bytes));
        const QAbstractItemModelTester details(&frame->DetailView().Model(),
                                               QAbstractItemModelTester::FailureReportingMode::QtTest);
        Select(frame, "Thread - 3");
        QCOMPARE(TreeText(frame->DetailView().Model()).count(QLatin1Char('\n')), 520);
    }

    // --- the session in front

    void thePanesFollowTheSessionInFront() {
        CChildFrame* first = m_pRun->Open("a.log", Log());
        Select(first, "Thread - 6");
        CChildFrame* second = m_pRun->Open("jas.log", JasLog());
        QCOMPARE(m_pRun->Frame().m_wndErrorPane.GetCaption(), QString());
        QVERIFY(Rows(m_pRun->Frame().m_wndErrorPane.List()).isEmpty());
        Select(second, "TOMAS");
        QCOMPARE(Rows(m_pRun->Frame().m_wndErrorPane.List()), QStringList{"TOMAS|ERROR|Item record invalid"});
        ClickTab(first);
        QCOMPARE(Rows(m_pRun->Frame().m_wndErrorPane.List()),
                 QStringList{"5/6|BSFN Error|Return value is 2 for A. (BSFNLevel = 1)"});
        QCOMPARE(m_pRun->Frame().m_wndErrorPane.GetCaption(), QStringLiteral(" Process: 5 Thread: 6"));
        ClickTab(second);
        QCOMPARE(m_pRun->Frame().m_wndErrorPane.GetCaption(), QStringLiteral(" User: TOMAS"));
    }

    void closingTheSessionInFrontShowsTheNextOnesSelection() {
        CChildFrame* first = m_pRun->Open("a.log", Log());
        Select(first, "Thread - 6");
        CChildFrame* second = m_pRun->Open("jas.log", JasLog());
        Select(second, "TOMAS");
        second->CloseWindow();
        CSessionRun::Settle();
        QVERIFY(m_pRun->Frame().ActiveChild() == first);
        QCOMPARE(m_pRun->Frame().m_wndSQLPane.GetCaption(), QStringLiteral(" Process: 5 Thread: 6"));
        QCOMPARE(Rows(m_pRun->Frame().m_wndSQLPane.List()), QStringList{"T1|1|0|0|0"});
        first->CloseWindow();
        CSessionRun::Settle();
        QCOMPARE(m_pRun->Frame().m_wndSQLPane.GetCaption(), QString());
        QVERIFY(Rows(m_pRun->Frame().m_wndSQLPane.List()).isEmpty());
    }

    void closingASessionBehindEmptiesThePanesUntilTheOneInFrontIsUsed() {
        CChildFrame* first = m_pRun->Open("a.log", Log());
        CChildFrame* second = m_pRun->Open("jas.log", JasLog());
        Select(second, "TOMAS");
        first->CloseWindow();
        CSessionRun::Settle();
        QVERIFY(m_pRun->Frame().ActiveChild() == second);
        QVERIFY(Rows(m_pRun->Frame().m_wndErrorPane.List()).isEmpty());
        QCOMPARE(m_pRun->Frame().m_wndErrorPane.GetCaption(), QString());
        QTest::mouseClick(second->DetailView().viewport(), Qt::LeftButton, {},
                          second->DetailView().viewport()->rect().bottomRight() - QPoint(3, 3));
        QCOMPARE(Rows(m_pRun->Frame().m_wndErrorPane.List()), QStringList{"TOMAS|ERROR|Item record invalid"});
        QCOMPARE(m_pRun->Frame().m_wndErrorPane.GetCaption(), QStringLiteral(" User: TOMAS"));
    }

    void closeAllClosesEverySessionAndEmptiesThePanes() {
        CChildFrame* first = m_pRun->Open("a.log", Log());
        Select(first, "Process - 5");
        CChildFrame* second = m_pRun->Open("jas.log", JasLog());
        Select(second, "TOMAS");
        m_pRun->Frame().m_wndRawDataPane.SetText("stays");
        m_pRun->Frame().RunCommand(ID_WINDOW_CLOSE_ALL);
        CSessionRun::Settle();
        QVERIFY(m_pRun->Frame().ClientArea().Children().isEmpty());
        CMainFrame& frame = m_pRun->Frame();
        for (CListCtrl* list :
             {&frame.m_wndSQLPane.List(), &frame.m_wndBSFNPane.List(), &frame.m_wndLongTasksPane.List(),
              &frame.m_wndErrorPane.List(), &frame.m_wndTimingGapsPane.List()}) {
            QVERIFY(Rows(*list).isEmpty());
        }
        QCOMPARE(frame.m_wndCachePane.Model().rowCount(), 0);
        for (CDockablePane* pane : std::initializer_list<CDockablePane*>{
                 &frame.m_wndBSFNPane, &frame.m_wndSQLPane, &frame.m_wndCachePane, &frame.m_wndLongTasksPane,
                 &frame.m_wndErrorPane}) {
            QCOMPARE(pane->GetCaption(), QString());
        }
        QCOMPARE(frame.m_wndRawDataPane.Edit().toPlainText(), QStringLiteral("stays"));
    }

    void rawDataOutlivesTheSession() {
        CChildFrame* frame = m_pRun->Open("a.log", Log());
        Select(frame, "Thread - 7");
        Click(frame->DetailView(), frame->DetailView().Model().index(0, 0));
        frame->CloseWindow();
        CSessionRun::Settle();
        QCOMPARE(m_pRun->Frame().m_wndRawDataPane.Edit().toPlainText(),
                 QStringLiteral("INSERT INTO T2 (A) VALUES (1)"));
    }

    void windowsHaveAccessibleNamesAndF6LeadsThroughThem() {
        CChildFrame* frame = m_pRun->Open("a.log", Log());
        QVERIFY(!frame->ThreadView().accessibleName().isEmpty());
        QVERIFY(!frame->DetailView().accessibleName().isEmpty());
        QVERIFY(!m_pRun->Frame().m_wndCachePane.Tree().accessibleName().isEmpty());
        QVERIFY(!m_pRun->Frame().m_wndFindPane.SearchEdit().accessibleName().isEmpty());
        frame->ThreadView().setFocus();
        QTest::keyClick(&m_pRun->Frame(), Qt::Key_F6);
        QVERIFY(frame->DetailView().hasFocus());
        QTest::keyClick(&m_pRun->Frame(), Qt::Key_F6, Qt::ShiftModifier);
        QVERIFY(frame->ThreadView().hasFocus());
    }

private:
    void ClickTab(CChildFrame* frame) {
        CTabBar& bar = m_pRun->Frame().ClientArea().GroupOf(*frame)->Bar();
        const int tab = m_pRun->Frame().ClientArea().GroupOf(*frame)->indexOf(frame);
        QTest::mouseClick(&bar, Qt::LeftButton, {}, bar.tabRect(tab).center());
    }
};

QTEST_MAIN(SessionWindowTest)
#include "SessionWindowTest.moc"
