// What all dialogs share: Enter presses the default button wherever the focus has been, every list and edit
// has a name for those who cannot see it, and every model keeps the toolkit's rules.
#include "ui/UiSupport.h"

#include "cachebrowser/CacheDoc.h"
#include "settings/Commands.h"
#include "ui/app/AboutDlg.h"
#include "ui/app/CustomizeDlg.h"
#include "ui/app/OptionsDlg.h"
#include "ui/cachebrowser/CacheDlg.h"
#include "ui/kit/LookStyle.h"
#include "ui/kit/WindowsDlg.h"
#include "ui/session/MessageDlg.h"
#include "ui/tools/ConvertDates.h"
#include "ui/tools/GBLTables.h"
#include "ui/tools/Settings.h"

#include <QAbstractItemModelTester>
#include <QAbstractItemView>
#include <QAccessible>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QHeaderView>
#include <QPushButton>
#include <QScreen>
#include <QTimer>
#include <QTreeWidget>

using namespace carvelot;
using namespace carvelot::test;

namespace {

QPushButton* Button(const QDialog& dialog, const char* pszText) {
    for (auto* pButton : dialog.findChildren<QPushButton*>()) {
        if (pButton->text().remove(QLatin1Char('&')) == QLatin1String(pszText))
            return pButton;
    }
    return nullptr;
}

// Takes the focus over every control, Cancel among them, and sees where the default is after each round.
void WalkThrough(QDialog& dialog, const char* pszDefault) {
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    QPushButton* pDefault = Button(dialog, pszDefault);
    QVERIFY(pDefault != nullptr);
    QVERIFY(pDefault->isDefault());
    for (QPushButton* pButton : dialog.findChildren<QPushButton*>())
        pButton->setFocus(Qt::TabFocusReason);
    for (QWidget* pWidget : dialog.findChildren<QWidget*>()) {
        if (qobject_cast<QPushButton*>(pWidget) != nullptr || !pWidget->isVisible() ||
            !pWidget->isEnabled() || (pWidget->focusPolicy() & Qt::TabFocus) == 0)
            continue;
        pWidget->setFocus(Qt::TabFocusReason);
        QVERIFY2(pDefault->isDefault(), qPrintable(pWidget->objectName()));
    }
}

// Rows go in and out under the tester by what the dialog does to the model; sorting is what a click does.
void CheckModels(const QDialog& dialog) {
    for (auto* pView : dialog.findChildren<QAbstractItemView*>()) {
        // The toolkit's own tree of items gives the second column children too, which its tester does not
        // like.
        if (qobject_cast<QHeaderView*>(pView) != nullptr)
            continue; // of the same model as its view
        // The toolkit's own tree of items gives the second column children too, which its tester does not
        // like.
        if (const auto* pTree = qobject_cast<QTreeWidget*>(pView)) {
            bool bChildren = false;
            for (int n = 0; n < pTree->topLevelItemCount(); ++n)
                bChildren = bChildren || pTree->topLevelItem(n)->childCount() > 0;
            if (bChildren)
                continue;
        }
        const QAbstractItemModelTester tester(pView->model(),
                                              QAbstractItemModelTester::FailureReportingMode::QtTest);
        pView->model()->sort(0, Qt::DescendingOrder);
        pView->model()->sort(0, Qt::AscendingOrder);
    }
}

void CheckNames(const QDialog& dialog) {
    for (const QWidget* pWidget : dialog.findChildren<QWidget*>()) {
        const bool bNamed = qobject_cast<const QAbstractItemView*>(pWidget) != nullptr ||
                            qobject_cast<const QLineEdit*>(pWidget) != nullptr ||
                            qobject_cast<const QComboBox*>(pWidget) != nullptr;
        // A part of another control, such as a combo box's list, is named by that one.
        if (!bNamed || !pWidget->isVisibleTo(&dialog) || pWidget->focusPolicy() == Qt::NoFocus ||
            qobject_cast<const QComboBox*>(pWidget->parentWidget()) != nullptr ||
            pWidget->objectName().startsWith(QLatin1String("qt_")))
            continue;
        QAccessibleInterface* pInterface =
            QAccessible::queryAccessibleInterface(const_cast<QWidget*>(pWidget));
        QVERIFY2(pInterface != nullptr && !pInterface->text(QAccessible::Name).isEmpty(),
                 qPrintable(dialog.windowTitle() + u' ' + pWidget->objectName()));
    }
}

void Check(QDialog& dialog, const char* pszDefault) {
    WalkThrough(dialog, pszDefault);
    CheckModels(dialog);
    CheckNames(dialog);
}

} // namespace

class DialogsTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { UseSettingsStore(ToUtf8(m_folder.filePath(QStringLiteral("registry.ini")))); }

    void options() {
        CAppSettings settings;
        settings.LoadSettings();
        COptionsDlg dialog(settings);
        Check(dialog, "OK");
        auto* pThreshold = dialog.findChild<QLineEdit*>(QStringLiteral("Threshold"));
        pThreshold->setFocus();
        QTest::keyClick(pThreshold, Qt::Key_Return);
        QCOMPARE(dialog.result(), int(QDialog::Accepted));
        QVERIFY(!dialog.isVisible());
    }
    void convertDates() {
        CConvertDates dialog;
        Check(dialog, "OK");
    }
    void globalTables() {
        CGBLTables dialog;
        Check(dialog, "Delete Selected");
    }
    void message() {
        CMessageDlg dialog;
        Check(dialog, "OK");
    }
    void about() {
        CAboutDlg dialog;
        Check(dialog, "OK");
    }
    void settings() {
        const CJDESettings store;
        CSettings dialog(store);
        Check(dialog, "OK");
    }
    void cacheStructure() {
        CCacheDoc document;
        CCacheDlg dialog(document);
        Check(dialog, "OK");
    }
    void customize() {
        CRun run(m_folder);
        CCustomizeDlg dialog(run.Frame());
        dialog.show();
        CheckModels(dialog);
        CheckNames(dialog);
    }
    void windows() {
        CRun run(m_folder);
        run.Open("a");
        CWindowsDlg dialog(run.Area());
        Check(dialog, "OK");
    }

    void aDialogIsNoLargerThanTheScreen() {
        SetUserInterface(nullptr); // the real one
        const CJDESettings store;
        CSettings dialog(store);
        const QSize screenSize = dialog.screen()->availableSize();
        dialog.resize(screenSize * 2);
        QTimer::singleShot(0, &dialog, [&] {
            QVERIFY(dialog.height() < screenSize.height() && dialog.width() < screenSize.width());
            for (const QPushButton* pButton : dialog.findChildren<QPushButton*>())
                QVERIFY(dialog.rect().contains(QRect(pButton->mapTo(&dialog, QPoint()), pButton->size())));
            dialog.accept();
        });
        QCOMPARE(UserInterface().RunDialog(dialog), int(QDialog::Accepted));
        SetUserInterface(&m_user);
    }

    // A default button looks much like one with the focus: whoever tabs on must see where the focus is.
    void aDefaultButtonShowsInEveryLookWhetherItHasTheFocus() {
        const QPalette palette = QApplication::palette();
        for (const int nId :
             {ID_APPLOOK_WINDOWS_2000, ID_APPLOOK_OFFICE_XP, ID_APPLOOK_WINDOWS_XP, ID_APPLOOK_OFFICE_2003,
              ID_APPLOOK_VS_2005, ID_APPLOOK_VS_2008, ID_APPLOOK_OFFICE_2007_BLUE, ID_APPLOOK_WINDOWS_7}) {
            int nOffice2007 = ID_APPLOOK_OFFICE_2007_BLUE;
            ApplyLook(LookOf(nId, nOffice2007));
            CConvertDates dialog;
            dialog.show();
            QVERIFY(QTest::qWaitForWindowActive(&dialog));
            QPushButton* pOk = Button(dialog, "OK");
            QTest::keyClick(&dialog, Qt::Key_Tab);
            QVERIFY(pOk->isDefault() && !pOk->hasFocus());
            const QImage without = pOk->grab().toImage();
            pOk->setFocus(Qt::TabFocusReason);
            QVERIFY(pOk->isDefault() && pOk->hasFocus());
            const QImage with = pOk->grab().toImage();
            int nDots = 0; // of the mark, inside the frame
            for (int nX = 3; nX < with.width() - 3; ++nX) {
                for (int nY = 3; nY < with.height() - 3; ++nY)
                    nDots += qGray(with.pixel(nX, nY)) + 64 < qGray(without.pixel(nX, nY)) ? 1 : 0;
            }
            QVERIFY2(nDots > with.width() / 4, qPrintable(QString::number(nId)));
        }
        QApplication::setStyle(QStringLiteral("fusion"));
        QApplication::setPalette(palette);
    }

private:
    CFakeInterface m_user;
    QTemporaryDir m_folder;
};

QTEST_MAIN(DialogsTest)
#include "DialogsTest.moc"
