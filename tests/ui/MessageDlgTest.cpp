#include "ui/UiSupport.h"

#include "ui/session/MessageDlg.h"

#include <QDialogButtonBox>
#include <QFile>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRegularExpression>

using namespace carvelot;
using namespace carvelot::test;

class MessageDlgTest : public QObject {
    Q_OBJECT

private slots:
    void init() {
        m_pFolder = std::make_unique<QTemporaryDir>();
        m_strLog = m_pFolder->filePath(QStringLiteral("jdedebug.log"));
        QFile log(m_strLog);
        QVERIFY(log.open(QIODevice::WriteOnly));
        log.write("before\n");
    }

    void okAppendsOneLineOfTheThread() {
        CFakeInterface user;
        user.m_fnInDialog = [](QDialog& dialog) {
            QCOMPARE(dialog.windowTitle(), QStringLiteral("Carvelot Message"));
            auto* edit = dialog.findChild<QPlainTextEdit*>();
            QTest::keyClicks(edit, QStringLiteral("hello"));
            Press(dialog, QDialogButtonBox::Ok);
            QCOMPARE(static_cast<CMessageDlg&>(dialog).m_strMessage, QStringLiteral("hello"));
        };
        WriteTraceMessage(m_strLog.toStdString(), 1234, 5678);
        const QRegularExpression expected(
            QStringLiteral("\\Abefore\n[A-Z][a-z][a-z] \\d\\d \\d\\d:\\d\\d:\\d\\d\\.\\d{3}000 - 1234/5678 "
                           "\\[CARVELOT MESSAGE\\] - \t\\[CARVELOT MESSAGE\\]hello\n\\z"));
        QVERIFY2(expected.match(Content()).hasMatch(), qPrintable(Content()));
    }

    void theLineBearsTheTimeOfTheCommandAndNotOfOK() {
        CFakeInterface user;
        platform::LocalTime clock{2025, 11, 9, 8, 7, 6, 5};
        user.m_fnInDialog = [&clock](QDialog& dialog) {
            clock = {2026, 1, 1, 0, 0, 0, 0};
            Press(dialog, QDialogButtonBox::Ok);
        };
        WriteTraceMessage(m_strLog.toStdString(), 1, 2, [&clock] { return clock; });
        QCOMPARE(Content().section(QLatin1Char('\n'), 1, 1).left(22),
                 QStringLiteral("Nov 09 08:07:06.005000"));
    }

    void lineBreaksOfTheTextBecomeLinesOfTheLog() {
        CFakeInterface user;
        user.m_fnInDialog = [](QDialog& dialog) {
            dialog.findChild<QPlainTextEdit*>()->setPlainText(QStringLiteral("one\ntwo"));
            Press(dialog, QDialogButtonBox::Ok);
        };
        WriteTraceMessage(m_strLog.toStdString(), 1, 2);
        QCOMPARE(Content().count('\n'), 3);
        QVERIFY(Content().endsWith(QStringLiteral("two\n")));
    }

    void cancelLeavesTheLogAsItIs() {
        CFakeInterface user;
        user.m_fnInDialog = [](QDialog& dialog) {
            dialog.findChild<QPlainTextEdit*>()->setPlainText(QStringLiteral("hello"));
            Press(dialog, QDialogButtonBox::Cancel);
            QVERIFY(static_cast<CMessageDlg&>(dialog).m_strMessage.isEmpty());
        };
        WriteTraceMessage(m_strLog.toStdString(), 1, 2);
        QCOMPARE(Content(), QStringLiteral("before\n"));
        QCOMPARE(user.m_nDialogs, 1);
    }

    void aLogThatCannotBeOpenedIsReportedBeforeAnyDialog() {
        CFakeInterface user;
        WriteTraceMessage(m_pFolder->path().toStdString(), 1, 2);
        QCOMPARE(user.m_listMessages, QStringList{"Failed to open file for writing"});
        QCOMPARE(user.m_nDialogs, 0);
    }

private:
    static void Press(QDialog& dialog, QDialogButtonBox::StandardButton button) {
        QTest::mouseClick(dialog.findChild<QDialogButtonBox*>()->button(button), Qt::LeftButton);
    }
    QString Content() const {
        QFile log(m_strLog);
        return log.open(QIODevice::ReadOnly) ? QString::fromUtf8(log.readAll()) : QString();
    }

    std::unique_ptr<QTemporaryDir> m_pFolder;
    QString m_strLog;
};

QTEST_MAIN(MessageDlgTest)
#include "MessageDlgTest.moc"
