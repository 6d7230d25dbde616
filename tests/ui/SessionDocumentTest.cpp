#include "ui/UiSupport.h"

#include "ui/kit/PathText.h"
#include "ui/session/SessionDocument.h"
#include "ui/session/SessionPanes.h"

#include <QDir>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFile>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QUrl>

#include <filesystem>

using namespace carvelot;
using namespace carvelot::test;

namespace {

// The program as it is, with its own templates.
class CRealRun {
public:
    explicit CRealRun(const QTemporaryDir& folder, std::vector<std::string> arguments = {}) {
        UseSettingsStore(ToUtf8(folder.filePath(QStringLiteral("registry.ini"))));
        theApp().m_fnAddDocTemplates = AddDocTemplates;
        m_bStarted = theApp().InitInstance(arguments);
    }
    ~CRealRun() {
        if (m_bStarted) {
            MainFrame()->close();
        }
        theApp().ExitInstance();
    }
    bool m_bStarted = false;
};

} // namespace

class SessionDocumentTest : public QObject {
    Q_OBJECT

    // Two files, cut between lines.
    QStringList HalvesOfTheLog() const {
        QFile whole(m_strLog);
        whole.open(QIODevice::ReadOnly);
        const QByteArray bytes = whole.readAll();
        const qsizetype cut = bytes.indexOf('\n', bytes.size() / 2) + 1;
        const QStringList paths{m_pFolder->filePath(QStringLiteral("b.log")),
                                m_pFolder->filePath(QStringLiteral("a.log"))};
        for (const int half : {0, 1}) {
            QFile file(paths[half]);
            file.open(QIODevice::WriteOnly);
            file.write(half == 0 ? bytes.first(cut) : bytes.sliced(cut));
        }
        return paths;
    }

private slots:
    void init() {
        m_pFolder = std::make_unique<QTemporaryDir>();
        m_strLog = m_pFolder->filePath(QStringLiteral("order.log"));
        QVERIFY(QFile::copy(QStringLiteral(CARVELOT_SOURCE_FOLDER "/samples/order-entry.log"), m_strLog));
        QFile::setPermissions(m_strLog, QFile::ReadOwner | QFile::WriteOwner);
    }

    void aLogOnTheCommandLineOpensAsASession() {
        CFakeInterface user;
        const CRealRun run(*m_pFolder, {m_strLog.toStdString()});
        QVERIFY(run.m_bStarted);
        QCOMPARE(MainFrame()->windowTitle(), m_strLog + QStringLiteral(" - Carvelot"));
        QCOMPARE(MainFrame()->MenuState(), EMenuState::Session);
        QVERIFY(Session().m_listDetails.Size() > 0);
        QCOMPARE(theApp().m_recentFiles.m_listPaths.front(), ToUtf8(QDir::toNativeSeparators(m_strLog)));
    }

#ifndef Q_OS_WIN
    void aNameThatIsNoUtf8OpensFromEverywhere() {
        const std::string name = m_pFolder->path().toStdString() + "/\xff\xc3\xa4\xe2\x82.log";
        std::filesystem::copy_file(m_strLog.toStdString(), name);
        CFakeInterface user;
        {
            const CRealRun run(*m_pFolder, {name});
            QVERIFY(run.m_bStarted);
            QCOMPARE(Session().m_strLogPath, name);
            QCOMPARE(theApp().m_recentFiles.m_listPaths.front(), name);
            const CDocument* document = MainFrame()->ActiveChild()->GetActiveDocument();
            QCOMPARE(theApp().OpenDocumentFile(PathToQString(name)), document); // it is open already
        }
        // After a restart from the recent files, then as a drop brings it.
        const CRealRun run(*m_pFolder);
        QCOMPARE(theApp().m_recentFiles.m_listPaths.front(), name);
        QVERIFY(theApp().OpenDocumentFile(PathToQString(theApp().m_recentFiles.m_listPaths.front())) !=
                nullptr);
        QCOMPARE(Session().m_strLogPath, name);
        const QByteArray address =
            "file://" + QByteArray::fromStdString(m_pFolder->path().toStdString()) + "/%ff%c3%a4%e2%82.log";
        QCOMPARE(PathOf(PathOfUrl(QUrl::fromEncoded(address))), name);
        QVERIFY(user.m_listMessages.filter(QStringLiteral("Failed")).isEmpty());
        std::filesystem::remove(name); // the toolkit cannot
    }

    void openAsTextHandsTheWholePathToTheSystem() {
        CFakeInterface user;
        QFile program(m_pFolder->filePath(QStringLiteral("xdg-open")));
        QVERIFY(program.open(QIODevice::WriteOnly));
        program.write(
            "#!/bin/sh\nprintf '%s' \"$1\" > \"${0%/*}/part\"; mv \"${0%/*}/part\" \"${0%/*}/called\"\n");
        program.close();
        program.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        const QByteArray oldPath = qgetenv("PATH");
        qputenv("PATH", m_pFolder->path().toUtf8() + ":" + oldPath);
        const QString oldFolder = QDir::currentPath();
        QDir::setCurrent(m_pFolder->path());
        const QString name = QStringLiteral("http:%2e #x?.log");
        QVERIFY(QFile::copy(m_strLog, name));
        {
            const CRealRun run(*m_pFolder, {name.toStdString()});
            QVERIFY(run.m_bStarted);
            MainFrame()->RunCommand(ID_SESSION_OPEN_AS_TEXT);
            QFile called(m_pFolder->filePath(QStringLiteral("called")));
            QTRY_VERIFY(called.exists());
            QVERIFY(called.open(QIODevice::ReadOnly));
            QCOMPARE(QString::fromUtf8(called.readAll()), QDir::currentPath() + QLatin1Char('/') + name);
        }
        QDir::setCurrent(oldFolder);
        qputenv("PATH", oldPath);
    }
#endif

    void aLogOnTheCommandLineThatIsMissingEndsTheRun() {
        CFakeInterface user;
        const CRealRun run(*m_pFolder, {m_pFolder->filePath("missing.log").toStdString()});
        QVERIFY(!run.m_bStarted);
        QVERIFY(user.m_listMessages.contains(QStringLiteral("Failed to open file.")));
        QVERIFY(!user.m_listWindowShown.contains(true));
    }

    void analyzeAfterClearDebugFileFindsAnEmptyFile() {
        CFakeInterface user;
        const CRealRun run(*m_pFolder, {m_strLog.toStdString()});
        MainFrame()->CommandAction(ID_SESSION_CLEAR_DEBUG_FILE)->trigger();
        QCOMPARE(QFile(m_strLog).size(), 0);
        QVERIFY(Session().m_listDetails.Size() > 0);
        MainFrame()->CommandAction(ID_SESSION_ANALYZE)->trigger();
        QCOMPARE(user.m_listMessages.constLast(),
                 QStringLiteral("Error: Cannot determine tracing log format"));
        QCOMPARE(Session().m_listDetails.Size(), 0U);
    }

    void fileNewAsksForALogWithItsFilter() {
        CFakeInterface user;
        const CRealRun run(*m_pFolder);
        MainFrame()->RunCommand(ID_FILE_NEW); // cancelled
        QVERIFY(MainFrame()->ClientArea().Children().isEmpty());
        user.m_strOpenAnswer = m_strLog;
        MainFrame()->RunCommand(ID_FILE_NEW);
        QCOMPARE(MainFrame()->ClientArea().Children().size(), 1);
        QCOMPARE(user.m_listQuestions.back().m_strFilter,
                 QStringLiteral("Debug Log Files (*.log)|*.log|All Files (*.*)|*.*||"));
        QCOMPARE(user.m_listQuestions.back().m_strDefaultExtension, QStringLiteral("log"));
    }

    void severalFilesDroppedAreOneLogOrManyAsTheUserSays() {
        const QStringList paths = HalvesOfTheLog();
        const auto drop = [&paths] {
            QMimeData data;
            data.setUrls({QUrl::fromLocalFile(paths[1]), QUrl::fromLocalFile(paths[0])});
            QDragEnterEvent enter(QPoint(60, 60), Qt::CopyAction, &data, Qt::LeftButton, {});
            QCoreApplication::sendEvent(MainFrame(), &enter);
            QDropEvent event(QPointF(60, 60), Qt::CopyAction, &data, Qt::LeftButton, {});
            QCoreApplication::sendEvent(MainFrame(), &event);
            QVERIFY(event.isAccepted());
            QCoreApplication::processEvents();
        };
        CFakeInterface user;
        const CRealRun run(*m_pFolder);
        drop();
        QCOMPARE(user.m_listMessages.last(), QStringLiteral("Are these 2 files one log in pieces?"));
        QCOMPARE(user.m_listChoices,
                 (QStringList{QStringLiteral("One Log in &Pieces"), QStringLiteral("&Each for Itself")}));
        QCOMPARE(MainFrame()->ClientArea().Children().size(), 0); // the question was cancelled

        user.m_nChoiceAnswer = 0;
        drop();
        QCOMPARE(MainFrame()->ClientArea().Children().size(), 1);
        QCOMPARE(Session().m_listPieces.size(), 2U);
        QCOMPARE(Session().m_strLogPath, PathOf(paths[0])); // by time
        QCOMPARE(MainFrame()->windowTitle(), paths[0] + QStringLiteral(" and 1 more - Carvelot"));

        user.m_nChoiceAnswer = 1;
        drop();
        QCOMPARE(MainFrame()->ClientArea().Children().size(), 3);
        QVERIFY(Session().m_listPieces.empty());
    }

    void openLogInPiecesMakesOneSessionWhoseRecordsTellTheirPiece() {
        const QStringList paths = HalvesOfTheLog();
        CFakeInterface user;
        const CRealRun run(*m_pFolder);
        MainFrame()->CommandAction(ID_EXPLORE_OPEN_PIECES)->trigger();
        QCOMPARE(user.m_listQuestions.size(), 1U);
        QCOMPARE(user.m_listQuestions.front().m_strFilter, QString::fromLatin1(kLogFilter));
        QCOMPARE(MainFrame()->ClientArea().Children().size(), 0);

        user.m_listOpenAnswers = {paths[1], paths[0]};
        MainFrame()->CommandAction(ID_EXPLORE_OPEN_PIECES)->trigger();
        QCOMPARE(MainFrame()->ClientArea().Children().size(), 1);
        const auto& pieces = Session().m_listPieces;
        QCOMPARE(pieces.size(), 2U);
        const QPlainTextEdit& raw = SessionPanes()->m_wndRawDataPane.Edit();
        Session().ShowDetail(RecordIndex{0});
        QCOMPARE(raw.toolTip(), paths[0]);
        const RecordIndex later = Session().FindDetails("SELECT").back();
        QVERIFY(Number(later) >= pieces[1].firstRecord);
        Session().ShowDetail(later);
        QCOMPARE(raw.toolTip(), paths[1]);

        // A log that is one file has nothing to tell.
        QVERIFY(theApp().OpenDocumentFile(m_strLog) != nullptr);
        Session().ShowDetail(RecordIndex{0});
        QCOMPARE(raw.toolTip(), QString());
    }

    void analyzeReadsAllPiecesAgain() {
        const QStringList paths = HalvesOfTheLog();
        CFakeInterface user;
        const CRealRun run(*m_pFolder);
        QVERIFY(theApp().OpenPieces(paths) != nullptr);
        const std::size_t records = Session().m_listDetails.Size();
        MainFrame()->CommandAction(ID_SESSION_ANALYZE)->trigger();
        QCOMPARE(Session().m_listDetails.Size(), records);
        QCOMPARE(Session().m_listPieces.size(), 2U);
    }

    void closingASessionEmptiesItsFindRowsAndTheCaptions() {
        CFakeInterface user;
        const CRealRun run(*m_pFolder, {m_strLog.toStdString()});
        CMDIChildWnd* child = MainFrame()->ActiveChild();
        CFindPane& find = MainFrame()->m_wndFindPane;
        find.OnFind(); // without a text: everything
        QVERIFY(find.List().Model().rowCount() > 0);
        MainFrame()->m_wndErrorPane.SetCaption(QStringLiteral(" Process: 1"));
        child->CloseWindow();
        QCOMPARE(find.List().Model().rowCount(), 0);
        QCOMPARE(MainFrame()->m_wndErrorPane.GetCaption(), QString());
        QCOMPARE(MainFrame()->MenuState(), EMenuState::NoWindow);
    }

private:
    static CCarvelotDoc& Session() {
        return static_cast<CSessionDocument*>(MainFrame()->ActiveChild()->GetActiveDocument())->Session();
    }

    std::unique_ptr<QTemporaryDir> m_pFolder;
    QString m_strLog;
};

QTEST_MAIN(SessionDocumentTest)
#include "SessionDocumentTest.moc"
