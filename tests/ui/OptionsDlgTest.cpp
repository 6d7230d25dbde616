#include "ui/UiSupport.h"

#include "ui/app/OptionsDlg.h"

#include <QCheckBox>
#include <QPushButton>
#include <QTreeWidget>

using namespace carvelot;
using namespace carvelot::test;

class OptionsDlgTest : public QObject {
    Q_OBJECT

private slots:
    void init() {
        m_pFolder = std::make_unique<QTemporaryDir>();
        UseSettingsStore(ToUtf8(m_pFolder->filePath("registry.ini")));
        m_settings = CAppSettings();
        m_settings.LoadSettings();
        m_settings.LoadTraceApps();
        m_settings.LoadFontAndAnalysis();
        m_strLastStored = ToQString(m_settings.m_traceApps.back().m_strName);
#ifndef Q_OS_WIN // Wine's registry sorts
        QCOMPARE(m_strLastStored, QStringLiteral("BusBuild+.exe"));
#endif
        m_pDialog = std::make_unique<COptionsDlg>(m_settings);
        m_pDialog->show();
    }
    void cleanup() { m_pDialog.reset(); }

    void theDialogShowsTheSettings() {
        QCOMPARE(m_pDialog->windowTitle(), QStringLiteral("Carvelot Options"));
        QVERIFY(m_pDialog->findChild<QCheckBox*>("AutoRefresh")->isChecked());
        QCOMPARE(Text("Rate"), QStringLiteral("10"));
        QCOMPARE(Text("Threshold"), QStringLiteral("1.000000"));
        QCOMPARE(Text("FontName"), QStringLiteral("Courier New"));
        QCOMPARE(Text("FontHeight"), QStringLiteral("14"));
        QCOMPARE(List().topLevelItemCount(), 6);
        QCOMPARE(List().topLevelItem(0)->text(0), m_strLastStored);
        QCOMPARE(List().topLevelItem(0)->text(1), QStringLiteral("On"));
        QCOMPARE(List().columnWidth(0), 200);
        QCOMPARE(List().columnWidth(1), 300);
        QVERIFY(m_pDialog->findChild<QLineEdit*>("FontName")->isReadOnly());
    }

    void theCheckBoxDoesNotSwitchTheRateWhileTheDialogIsOpen() {
        auto* box = m_pDialog->findChild<QCheckBox*>("AutoRefresh");
        box->click();
        QVERIFY(m_pDialog->findChild<QLineEdit*>("Rate")->isEnabled());
        m_settings.m_bAutoRefresh = false;
        COptionsDlg again(m_settings);
        QVERIFY(!again.findChild<QLineEdit*>("Rate")->isEnabled());
        again.findChild<QCheckBox*>("AutoRefresh")->click();
        QVERIFY(!again.findChild<QLineEdit*>("Rate")->isEnabled());
    }

    void addPutsTheTypedNameOnTopAndTheEditKeepsIt() {
        QTest::keyClicks(m_pDialog->findChild<QLineEdit*>("Application"), QStringLiteral("mine.exe"));
        Click("Add");
        QCOMPARE(List().topLevelItem(0)->text(0), QStringLiteral("mine.exe"));
        QCOMPARE(List().topLevelItem(0)->text(1), QStringLiteral("On"));
        QCOMPARE(Text("Application"), QStringLiteral("mine.exe"));
    }

    void removeOfRowsTwoAndThreeTakesTwoAndFour() {
        const QString stays = List().topLevelItem(3)->text(0);
        List().topLevelItem(2)->setSelected(true);
        List().topLevelItem(3)->setSelected(true);
        Click("Remove");
        QCOMPARE(List().topLevelItemCount(), 4);
        QCOMPARE(List().topLevelItem(2)->text(0), stays);
    }

    void toggleTurnsTheSelectedRowsAndKeepsThemSelected() {
        List().topLevelItem(1)->setSelected(true);
        Click("ToggleStatus");
        QCOMPARE(List().topLevelItem(1)->text(1), QStringLiteral("Off"));
        Click("ToggleStatus");
        QCOMPARE(List().topLevelItem(1)->text(1), QStringLiteral("On"));
    }

    void aChosenFontIsShownWithItsSizeInWholePoints() {
        CFakeInterface user;
        m_settings.m_nFontHeight = 12;
        QFont answer(QStringLiteral("DejaVu Sans Mono"));
        answer.setPointSizeF(10.9);
        user.m_fontAnswer = answer;
        Click("ChooseFont");
        QCOMPARE(user.m_askedFont.family(), QStringLiteral("Courier New"));
        QCOMPARE(user.m_askedFont.pointSize(), 12);
        QCOMPARE(Text("FontName"), QStringLiteral("DejaVu Sans Mono"));
        QCOMPARE(Text("FontHeight"), QStringLiteral("10"));
    }

    void okTakesEverythingOver() {
        m_pDialog->findChild<QLineEdit*>("Rate")->setText(QStringLiteral("abc"));
        m_pDialog->findChild<QLineEdit*>("Threshold")->setText(QStringLiteral("0.5"));
        m_pDialog->findChild<QCheckBox*>("AutoRefresh")->setChecked(false);
        QTest::keyClick(m_pDialog.get(), Qt::Key_Return);
        QCOMPARE(m_pDialog->result(), static_cast<int>(QDialog::Accepted));
        QCOMPARE(m_settings.m_nRefreshRate, 0);
        QCOMPARE(m_settings.m_fThreshold, 0.5F);
        QVERIFY(!m_settings.m_bAutoRefresh);
        QCOMPARE(ToQString(m_settings.m_traceApps.front().m_strName), m_strLastStored);
        CAppSettings read;
        read.LoadSettings();
        QCOMPARE(read.m_fThreshold, 0.5F);
    }

    void cancelChangesNothing() {
        m_pDialog->findChild<QLineEdit*>("Threshold")->setText(QStringLiteral("9"));
        QTest::keyClick(m_pDialog.get(), Qt::Key_Escape);
        QCOMPARE(m_settings.m_fThreshold, 1.0F);
        QCOMPARE(m_settings.m_traceApps.front().m_strName, std::string("activconsole.exe"));
    }

private:
    QString Text(const char* name) const { return m_pDialog->findChild<QLineEdit*>(name)->text(); }
    QTreeWidget& List() const { return *m_pDialog->findChild<QTreeWidget*>("Applications"); }
    void Click(const char* name) const {
        QTest::mouseClick(m_pDialog->findChild<QPushButton*>(name), Qt::LeftButton);
    }

    std::unique_ptr<QTemporaryDir> m_pFolder;
    CAppSettings m_settings;
    QString m_strLastStored;
    std::unique_ptr<COptionsDlg> m_pDialog;
};

QTEST_MAIN(OptionsDlgTest)
#include "OptionsDlgTest.moc"
