// Archives in the window: opened, chosen from, and never written to.
#include "support/Archives.h"
#include "ui/SessionSupport.h"
#include "ui/kit/WaitBox.h"
#include "ui/session/ChooseMembersDlg.h"

#include <QDialogButtonBox>
#include <QDragEnterEvent>
#include <QLabel>
#include <QMimeData>
#include <QProgressDialog>
#include <QPushButton>
#include <QRadioButton>
#include <QScopeGuard>
#include <QTimer>
#include <QTreeWidget>

#include <utility>

using namespace carvelot;
using namespace carvelot::test;

namespace {

std::string LogText() {
    return TestSession::Joined(
        DebugLog({Line("10:00:00.000001", "Entering JDB_X"), Line("10:00:01.000001", "On x")}));
}

const CCarvelotDoc& SessionOf(CMDIChildWnd* frame) {
    return static_cast<CSessionDocument*>(frame->GetActiveDocument())->Session();
}

QPushButton* Button(QDialog& dialog, QDialogButtonBox::StandardButton button) {
    return dialog.findChild<QDialogButtonBox*>()->button(button);
}

} // namespace

class PackedLogsTest : public CSessionTest {
    Q_OBJECT

private slots:
    void init() { StartRun(); }
    void cleanup() { EndRun(); }

    void everyKindOpensAsTheLogInside() {
        const std::string log = LogText();
        const QString plain =
            TreeText(m_pRun->Open(m_pRun->WriteBytes("plain.log", log))->ThreadView().Model());
        for (const std::string& archive : {Gzip(log), Zstd(log), Zip({{"a.log", log}})}) {
            CChildFrame* frame = m_pRun->Open(m_pRun->WriteBytes("packed", archive));
            QVERIFY(frame != nullptr);
            QCOMPARE(TreeText(frame->ThreadView().Model()), plain);
            frame->CloseWindow();
            CSessionRun::Settle();
        }
        QVERIFY(m_pRun->m_user.m_listMessages.isEmpty());
        QCOMPARE(m_pRun->m_user.m_nDialogs, 0);
    }

    void theTitleNamesTheArchiveAndItsMember() {
        const QString gzip = m_pRun->WriteBytes("a.gz", Gzip(LogText()));
        QCOMPARE(m_pRun->Open(gzip)->windowTitle(), gzip);
        const QString zip = m_pRun->WriteBytes("a.zip", Zip({{"logs/a.log", LogText()}}));
        CChildFrame* frame = m_pRun->Open(zip);
        QCOMPARE(frame->windowTitle(), zip + "!logs/a.log");
        QCOMPARE(theApp().m_recentFiles.m_listPaths.front(), ToUtf8(QDir::toNativeSeparators(zip)));
        QCOMPARE(theApp().OpenDocumentFile(zip), frame->GetActiveDocument()); // it is open already
    }

    void aDroppedArchiveOpensAndIsARecentFile() {
        const QString path = m_pRun->WriteBytes("a.zip", Zip({{"logs/a.log", LogText()}}));
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(path)});
        QDragEnterEvent enter(QPoint(50, 50), Qt::CopyAction, &data, Qt::LeftButton, {});
        QCoreApplication::sendEvent(&m_pRun->Frame(), &enter);
        QVERIFY(enter.isAccepted());
        QDropEvent drop(QPointF(60, 60), Qt::CopyAction, &data, Qt::LeftButton, {});
        QCoreApplication::sendEvent(&m_pRun->Frame(), &drop);
        QTRY_VERIFY(m_pRun->Frame().ActiveChild() != nullptr);
        QCOMPARE(SessionOf(m_pRun->Frame().ActiveChild()).m_listDetails.Size(), std::size_t{3});
        m_pRun->Frame().ActiveChild()->CloseWindow();
        CSessionRun::Settle();
        // After a restart too.
        m_pRun->Restart();
        QCOMPARE(theApp().m_recentFiles.m_listPaths.front(), ToUtf8(QDir::toNativeSeparators(path)));
        QVERIFY(theApp().OpenDocumentFile(ToQString(theApp().m_recentFiles.m_listPaths.front())) != nullptr);
        QCOMPARE(m_pRun->Frame().ActiveChild()->windowTitle(),
                 QDir::toNativeSeparators(path) + "!logs/a.log");
        QCOMPARE(SessionOf(m_pRun->Frame().ActiveChild()).m_listDetails.Size(), std::size_t{3});
    }

    void theOpenDialogNamesTheKinds() {
        m_pRun->m_user.m_strOpenAnswer.reset();
        m_pRun->Frame().RunCommand(ID_FILE_OPEN);
        const QString filter = m_pRun->m_user.m_listQuestions.back().m_strFilter;
        QVERIFY(ToolkitFilter(filter).startsWith("Logs (*.log *.txt *.gz *.zst *.zip);;All files (*"));
    }

    void chosenMembersAreOneLog() {
        const QString path = WriteSeveral();
        m_pRun->m_user.m_fnInDialog = [](QDialog& dialog) {
            QCOMPARE(dialog.windowTitle(), QStringLiteral("Choose Members"));
            auto* list = dialog.findChild<QTreeWidget*>();
            QCOMPARE(list->topLevelItemCount(), 3);
            QCOMPARE(list->topLevelItem(1)->text(0), QStringLiteral("logs/b.log"));
            QCOMPARE(list->topLevelItem(1)->text(1), dialog.locale().toString(qulonglong(LogText().size())));
            QVERIFY(!list->topLevelItem(1)->text(2).isEmpty());
            QCOMPARE(list->topLevelItem(2)->text(0), QStringLiteral("<b>c</b> .log")); // text, in one line
            list->topLevelItem(2)->setCheckState(0, Qt::Unchecked);
            Button(dialog, QDialogButtonBox::Ok)->click();
        };
        CChildFrame* frame = m_pRun->Open(path);
        QVERIFY(frame != nullptr);
        QCOMPARE(SessionOf(frame).m_listDetails.Size(), std::size_t{6});
        QCOMPARE(frame->windowTitle(), path + "!a.log, logs/b.log");
        m_pRun->m_user.m_nDialogs = 0;
        m_pRun->Frame().RunCommand(ID_SESSION_ANALYZE);
        QCOMPARE(SessionOf(frame).m_listDetails.Size(), std::size_t{6});
        QCOMPARE(m_pRun->m_user.m_nDialogs, 0);
    }

    void chosenMembersAreLogsEachForItself() {
        const QString path = WriteSeveral();
        m_pRun->m_user.m_fnInDialog = [](QDialog& dialog) {
            dialog.findChildren<QRadioButton*>().back()->click();
            Button(dialog, QDialogButtonBox::Ok)->click();
        };
        QVERIFY(m_pRun->Open(path) != nullptr);
        QTRY_COMPARE(m_pRun->Frame().ClientArea().Children().size(), 3);
        QStringList titles;
        for (CMDIChildWnd* child : m_pRun->Frame().ClientArea().Children()) {
            titles << child->windowTitle().remove(path);
            QCOMPARE(SessionOf(child).m_listDetails.Size(), std::size_t{3});
        }
        titles.sort();
        QCOMPARE(titles[1], QStringLiteral("!a.log"));
        QCOMPARE(titles[2], QStringLiteral("!logs/b.log"));
        QCOMPARE(m_pRun->m_user.m_nDialogs, 1);
    }

    void noMemberIsNoLogAndNoMessage() {
        const QString path = WriteSeveral();
        m_pRun->m_user.m_fnInDialog = [](QDialog& dialog) {
            auto* list = dialog.findChild<QTreeWidget*>();
            for (int i = 0; i < list->topLevelItemCount(); ++i) {
                QVERIFY(Button(dialog, QDialogButtonBox::Ok)->isEnabled());
                list->topLevelItem(i)->setCheckState(0, Qt::Unchecked);
            }
            QVERIFY(!Button(dialog, QDialogButtonBox::Ok)->isEnabled());
            Button(dialog, QDialogButtonBox::Cancel)->click();
        };
        QVERIFY(m_pRun->Open(path) == nullptr);
        QVERIFY(m_pRun->m_user.m_listMessages.isEmpty());
    }

    void aDamagedArchiveIsWhatCameOutAndAMessage() {
        const std::string archive = Gzip(LogText());
        CChildFrame* frame = m_pRun->Open(m_pRun->WriteBytes("a.gz", archive.substr(0, archive.size() - 4)));
        QVERIFY(frame != nullptr);
        QCOMPARE(SessionOf(frame).m_listDetails.Size(), std::size_t{3});
        QCOMPARE(
            m_pRun->m_user.m_listMessages,
            QStringList{QStringLiteral("The archive is damaged: %1 bytes were read.").arg(LogText().size())});
    }

    void escEndsALongLoad() {
        // Long enough to tell more than once how far it has come.
        std::string bytes = Gzip(LogText());
        const std::string tenMegabytes = Gzip(std::string(10 << 20, 'x'));
        bytes.append(tenMegabytes).append(tenMegabytes);
        const QString bomb = m_pRun->WriteBytes("bomb.gz", bytes);
        const auto patience = std::exchange(CWaitBox::s_nPatience, 0);
        const auto restore = qScopeGuard([patience] { CWaitBox::s_nPatience = patience; });
        QString label;
        const auto press = [&label](Qt::Key key) {
            QTimer::singleShot(0, qApp, [&label, key] {
                auto* box = qobject_cast<QProgressDialog*>(QApplication::activeModalWidget());
                QVERIFY(box != nullptr);
                label = box->findChild<QLabel*>()->text();
                QCOMPARE(QApplication::overrideCursor()->shape(), Qt::ArrowCursor);
                QTest::keyClick(box, key);
            });
        };
        press(Qt::Key_Escape);
        QVERIFY(m_pRun->Open(bomb) == nullptr);
        QCOMPARE(label, "Reading " + bomb);
        QVERIFY(QApplication::overrideCursor() == nullptr);
        QVERIFY(QApplication::activeModalWidget() == nullptr);
        QVERIFY(m_pRun->m_user.m_listMessages.isEmpty());

        // Waited for, it opens.
        CChildFrame* const frame = m_pRun->Open(bomb);
        QVERIFY(frame != nullptr);
        const std::size_t all = SessionOf(frame).m_listDetails.Size();
        QVERIFY(all >= 3);

        // A second analysis that is ended leaves the session empty and open.
        press(Qt::Key_Escape);
        m_pRun->Frame().RunCommand(ID_SESSION_ANALYZE);
        QCOMPARE(SessionOf(frame).m_listDetails.Size(), std::size_t{0});
        QCOMPARE(frame->ThreadView().model()->rowCount(), 0);
        QCOMPARE(m_pRun->Frame().ClientArea().Children().size(), 1);
        m_pRun->Frame().RunCommand(ID_SESSION_ANALYZE);
        QCOMPARE(SessionOf(frame).m_listDetails.Size(), all);
        QVERIFY(m_pRun->m_user.m_listMessages.isEmpty());
    }

    void anArchiveInAnArchiveOpensNothing() {
        QVERIFY(m_pRun->Open(m_pRun->WriteBytes("a.gz", Gzip(Gzip(LogText())))) == nullptr);
        QCOMPARE(m_pRun->m_user.m_listMessages, QStringList{"An archive in an archive can't be read."});
    }

    void nothingIsOfferedThatWritesToAnArchive() {
        const std::string archive = Gzip(LogText());
        const QString path = m_pRun->WriteBytes("a.gz", archive);
        CChildFrame* frame = m_pRun->Open(path);
        m_pRun->Frame().UpdateCommands();
        QVERIFY(!m_pRun->Frame().CommandAction(ID_SESSION_CLEAR_DEBUG_FILE)->isEnabled());
        m_pRun->Frame().RunCommand(ID_SESSION_CLEAR_DEBUG_FILE);
        m_pRun->m_user.m_strMenuChoice = "Write Message";
        CThreadView& tree = frame->ThreadView();
        Click(tree, FindNode(tree.Model(), "Thread - 6"), Qt::RightButton);
        QCOMPARE(m_pRun->m_user.m_listMenuTexts, QStringList{"Write Message"});
        QCOMPARE(m_pRun->m_user.m_nDialogs, 0);
        QCOMPARE(m_pRun->Read("a.gz").toStdString(), archive);

        m_pRun->Open(m_pRun->WriteBytes("plain.log", LogText()));
        m_pRun->Frame().UpdateCommands();
        QVERIFY(m_pRun->Frame().CommandAction(ID_SESSION_CLEAR_DEBUG_FILE)->isEnabled());
    }

private:
    QString WriteSeveral() const {
        return m_pRun->WriteBytes(
            "several.zip",
            Zip({{"a.log", LogText()}, {"logs/b.log", LogText()}, {"<b>c</b>\n.log", LogText()}}));
    }
};

QTEST_MAIN(PackedLogsTest)
#include "PackedLogsTest.moc"
