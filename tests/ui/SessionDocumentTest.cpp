#include "ui/UiSupport.h"

#include "views/ui/SessionDocument.h"

#include <QDir>
#include <QFile>

using namespace carvelot;
using namespace carvelot::test;

namespace {

// The program as it is, with its own templates.
class CRealRun {
public:
    explicit CRealRun(const QTemporaryDir& folder, std::vector<std::string> listArguments = {}) {
        UseSettingsStore(ToUtf8(folder.filePath(QStringLiteral("registry.ini"))));
        theApp().m_fnAddDocTemplates = AddDocTemplates;
        m_bStarted = theApp().InitInstance(listArguments);
    }
    ~CRealRun() {
        if (m_bStarted)
            MainFrame()->close();
        theApp().ExitInstance();
    }
    bool m_bStarted = false;
};

} // namespace

class SessionDocumentTest : public QObject {
    Q_OBJECT

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

    void closingASessionEmptiesItsFindRowsAndTheCaptions() {
        CFakeInterface user;
        const CRealRun run(*m_pFolder, {m_strLog.toStdString()});
        CMDIChildWnd* pChild = MainFrame()->ActiveChild();
        CFindPane& find = MainFrame()->m_wndFindPane;
        find.OnFind(); // without a text: everything
        QVERIFY(find.List().Model().rowCount() > 0);
        MainFrame()->m_wndErrorPane.SetCaption(QStringLiteral(" Process: 1"));
        pChild->CloseWindow();
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
