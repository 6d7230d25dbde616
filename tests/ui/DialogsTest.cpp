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

QPushButton* Button(const QDialog& dialog, const char* text) {
    for (auto* button : dialog.findChildren<QPushButton*>()) {
        if (button->text().remove(QLatin1Char('&')) == QLatin1String(text)) {
            return button;
        }
    }
    return nullptr;
}

// Takes the focus over every control, Cancel among them, and sees where the default is after each round.
void WalkThrough(QDialog& dialog, const char* defaultText) {
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    QPushButton* defaultButton = Button(dialog, defaultText);
    QVERIFY(defaultButton != nullptr);
    QVERIFY(defaultButton->isDefault());
    for (QPushButton* button : dialog.findChildren<QPushButton*>()) {
        button->setFocus(Qt::TabFocusReason);
    }
    for (QWidget* widget : dialog.findChildren<QWidget*>()) {
        if (qobject_cast<QPushButton*>(widget) != nullptr || !widget->isVisible() || !widget->isEnabled() ||
            (widget->focusPolicy() & Qt::TabFocus) == 0) {
            continue;
        }
        widget->setFocus(Qt::TabFocusReason);
        QVERIFY2(defaultButton->isDefault(), qPrintable(widget->objectName()));
    }
}

// Rows go in and out under the tester by what the dialog does to the model; sorting is what a click does.
void CheckModels(const QDialog& dialog) {
    for (auto* view : dialog.findChildren<QAbstractItemView*>()) {
        // The toolkit's own tree of items gives the second column children too, which its tester does not
        // like.
        if (qobject_cast<QHeaderView*>(view) != nullptr) {
            continue; // of the same model as its view
        }
        // The toolkit's own tree of items gives the second column children too, which its tester does not
        // like.
        if (const auto* tree = qobject_cast<QTreeWidget*>(view)) {
            bool children = false;
            for (int n = 0; n < tree->topLevelItemCount(); ++n) {
                children = children || tree->topLevelItem(n)->childCount() > 0;
            }
            if (children) {
                continue;
            }
        }
        const QAbstractItemModelTester tester(view->model(),
                                              QAbstractItemModelTester::FailureReportingMode::QtTest);
        view->model()->sort(0, Qt::DescendingOrder);
        view->model()->sort(0, Qt::AscendingOrder);
    }
}

void CheckNames(const QDialog& dialog) {
    for (const QWidget* widget : dialog.findChildren<QWidget*>()) {
        const bool named = qobject_cast<const QAbstractItemView*>(widget) != nullptr ||
                           qobject_cast<const QLineEdit*>(widget) != nullptr ||
                           qobject_cast<const QComboBox*>(widget) != nullptr;
        // A part of another control, such as a combo box's list, is named by that one.
        if (!named || !widget->isVisibleTo(&dialog) || widget->focusPolicy() == Qt::NoFocus ||
            qobject_cast<const QComboBox*>(widget->parentWidget()) != nullptr ||
            widget->objectName().startsWith(QLatin1String("qt_"))) {
            continue;
        }
        QAccessibleInterface* userInterface =
            QAccessible::queryAccessibleInterface(const_cast<QWidget*>(widget));
        QVERIFY2(userInterface != nullptr && !userInterface->text(QAccessible::Name).isEmpty(),
                 qPrintable(dialog.windowTitle() + u' ' + widget->objectName()));
    }
}

void Check(QDialog& dialog, const char* defaultText) {
    WalkThrough(dialog, defaultText);
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
        auto* threshold = dialog.findChild<QLineEdit*>(QStringLiteral("Threshold"));
        threshold->setFocus();
        QTest::keyClick(threshold, Qt::Key_Return);
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
            for (const QPushButton* button : dialog.findChildren<QPushButton*>()) {
                QVERIFY(dialog.rect().contains(QRect(button->mapTo(&dialog, QPoint()), button->size())));
            }
            dialog.accept();
        });
        QCOMPARE(UserInterface().RunDialog(dialog), int(QDialog::Accepted));
        SetUserInterface(&m_user);
    }

    // A default button looks much like one with the focus: whoever tabs on must see where the focus is.
    void aDefaultButtonShowsInEveryLookWhetherItHasTheFocus() {
        const QPalette palette = QApplication::palette();
        for (const int id :
             {ID_APPLOOK_WINDOWS_2000, ID_APPLOOK_OFFICE_XP, ID_APPLOOK_WINDOWS_XP, ID_APPLOOK_OFFICE_2003,
              ID_APPLOOK_VS_2005, ID_APPLOOK_VS_2008, ID_APPLOOK_OFFICE_2007_BLUE, ID_APPLOOK_WINDOWS_7}) {
            int office2007 = ID_APPLOOK_OFFICE_2007_BLUE;
            ApplyLook(LookOf(id, office2007));
            CConvertDates dialog;
            dialog.show();
            QVERIFY(QTest::qWaitForWindowActive(&dialog));
            QPushButton* ok = Button(dialog, "OK");
            QTest::keyClick(&dialog, Qt::Key_Tab);
            QVERIFY(ok->isDefault() && !ok->hasFocus());
            const QImage without = ok->grab().toImage();
            ok->setFocus(Qt::TabFocusReason);
            QVERIFY(ok->isDefault() && ok->hasFocus());
            const QImage with = ok->grab().toImage();
            int dots = 0; // of the mark, inside the frame
            for (int x = 3; x < with.width() - 3; ++x) {
                for (int y = 3; y < with.height() - 3; ++y) {
                    dots += qGray(with.pixel(x, y)) + 64 < qGray(without.pixel(x, y)) ? 1 : 0;
                }
            }
            QVERIFY2(dots > with.width() / 4, qPrintable(QString::number(id)));
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
