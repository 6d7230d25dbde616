// The message box, the file dialogs, the font dialog and the menus that a person meets, not the answers that
// other tests give in its place.
#include "ui/SessionSupport.h"

#include "platform/Registry.h"
#include "ui/app/OptionsDlg.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QFontDialog>
#include <QFontInfo>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QTimer>
#include <QTreeView>

using namespace carvelot;
using namespace carvelot::test;

namespace {

// What a person does in the dialog of this kind that the call brings up. A dialog that does not go by itself
// is cancelled, so that a test that fails ends.
template <class TDialog>
void InDialog(const std::function<void()>& fnCall, const std::function<void(TDialog&)>& fnWork) {
    bool bDone = false;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &timer, [&] {
        auto* pDialog = qobject_cast<TDialog*>(QApplication::activeModalWidget());
        if (pDialog == nullptr || bDone || !pDialog->isVisible())
            return;
        bDone = true;
        const QPointer<TDialog> pAlive = pDialog;
        fnWork(*pDialog);
        if (pAlive != nullptr && pAlive->isVisible())
            pAlive->reject();
    });
    timer.start(5);
    fnCall();
    QVERIFY(bDone);
}

QPushButton* Button(QDialog& dialog, const char* pszText) {
    for (QPushButton* pButton : dialog.findChildren<QPushButton*>()) {
        if (pButton->text().remove(QLatin1Char('&')) == QLatin1String(pszText))
            return pButton;
    }
    return nullptr;
}

QLineEdit& NameEdit(QFileDialog& dialog) {
    return *dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
}

void TypeName(QFileDialog& dialog, const QString& strName) {
    dialog.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    QTest::mouseClick(&NameEdit(dialog), Qt::LeftButton);
    NameEdit(dialog).selectAll();
    QTest::keyClicks(&NameEdit(dialog), strName);
}

CFileQuestion LogQuestion() {
    return {EFiles::Logs, QStringLiteral("Open"), QStringLiteral("log"), {}, QString::fromLatin1(kLogFilter)};
}

CFileQuestion ExportQuestion() {
    return {EFiles::Exports, QStringLiteral("Save As"), QStringLiteral("csv"), QStringLiteral("TimingGaps"),
            QStringLiteral("CSV Format (*.csv)|*.csv|Text Format (*.txt)|*.txt||")};
}

} // namespace

class RealDialogsTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() {
        QCoreApplication::setAttribute(
            Qt::AA_DontUseNativeDialogs); // what the program brings everywhere but on Windows
    }
    void init() {
        m_pFolder = std::make_unique<QTemporaryDir>();
        UseSettingsStore(ToUtf8(Path("registry.ini")));
        QVERIFY(QDir(m_pFolder->path()).mkpath(QStringLiteral("logs/deeper")));
        QVERIFY(QDir(m_pFolder->path()).mkdir(QStringLiteral("exports")));
        for (const char* pszName : {"logs/a.log", "logs/b.txt", "exports/TimingGaps.csv"})
            Write(Path(pszName));
        SetUserInterface(nullptr);
    }

    // --- messages
    // -----------------------------------------------------------------------------------------------

    void aMessageHasItsTextAndOneButtonAndGoesByReturnEscOrClick() {
        const QString strText = QStringLiteral("Failed to open file.");
        const auto fnCall = [&] { UserInterface().ShowMessage(strText); };
        for (const auto& fnEnd : std::initializer_list<std::function<void(QMessageBox&)>>{
                 [](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Return); },
                 [](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Escape); },
                 [](QMessageBox& box) { QTest::mouseClick(Button(box, "OK"), Qt::LeftButton); }}) {
            InDialog<QMessageBox>(fnCall, [&](QMessageBox& box) {
                QCOMPARE(box.text(), strText);
                QCOMPARE(box.windowTitle(), QStringLiteral("Carvelot"));
                QCOMPARE(box.buttons().size(), 1);
                QVERIFY(Button(box, "OK") != nullptr);
                bool bShown = false;
                for (const QLabel* pLabel : box.findChildren<QLabel*>())
                    bShown = bShown || (pLabel->isVisible() && pLabel->text() == strText);
                QVERIFY(bShown);
                fnEnd(box);
                QVERIFY(!box.isVisible());
            });
        }
    }

    void aMessageDuringALoadIsReadWithAnOrdinaryCursor() {
        QApplication::setOverrideCursor(Qt::WaitCursor);
        InDialog<QMessageBox>(
            [] { UserInterface().ShowMessage(QStringLiteral("x")); },
            [](QMessageBox&) { QCOMPARE(QApplication::overrideCursor()->shape(), Qt::ArrowCursor); });
        QCOMPARE(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
        QApplication::restoreOverrideCursor();
    }

    // --- opening and saving
    // -------------------------------------------------------------------------------------

    void openShowsLogsOrAllFilesAndGivesTheChosenPath() {
        std::optional<QString> strPath;
        Remember("LogFolder", Path("logs"));
        InDialog<QFileDialog>([&] { strPath = UserInterface().AskOpenFile(LogQuestion()); },
                              [&](QFileDialog& dialog) {
                                  QCOMPARE(dialog.windowTitle(), QStringLiteral("Open"));
                                  QVERIFY(QTest::qWaitFor([&] { return Names(dialog).contains("a.log"); }));
                                  QVERIFY(!Names(dialog).contains("b.txt"));
                                  auto& types =
                                      *dialog.findChild<QComboBox*>(QStringLiteral("fileTypeCombo"));
                                  QCOMPARE(types.count(), 2);
                                  QTest::keyClick(&types, Qt::Key_Down);
                                  QVERIFY(QTest::qWaitFor([&] { return Names(dialog).contains("b.txt"); }));
                                  TypeName(dialog, QStringLiteral("b.txt"));
                                  QTest::mouseClick(Button(dialog, "Open"), Qt::LeftButton);
                              });
        QCOMPARE(strPath, Path("logs/b.txt"));
    }

    void openTakesNoFileThatIsNotThereAndACancelGivesNothing() {
        std::optional<QString> strPath = QStringLiteral("before");
        Remember("LogFolder", Path("logs"));
        InDialog<QFileDialog>([&] { strPath = UserInterface().AskOpenFile(LogQuestion()); },
                              [&](QFileDialog& dialog) {
                                  TypeName(dialog, QStringLiteral("missing.log"));
                                  QVERIFY(!Button(dialog, "Open")->isEnabled());
                                  // Return says so in a box, and leads back.
                                  InDialog<QMessageBox>(
                                      [&] { QTest::keyClick(&NameEdit(dialog), Qt::Key_Return); },
                                      [](QMessageBox& box) { box.button(QMessageBox::Ok)->click(); });
                                  QVERIFY(dialog.isVisible());
                                  QTest::keyClick(&dialog, Qt::Key_Escape);
                              });
        QVERIFY(!strPath.has_value());
    }

    void saveProposesItsNameAddsTheEndingOfTheKindAndAsksBeforeItOverwrites() {
        std::optional<QString> strPath;
        Remember("ExportFolder", Path("exports"));
        const auto fnCall = [&] { strPath = UserInterface().AskSaveFile(ExportQuestion()); };
        InDialog<QFileDialog>(fnCall, [&](QFileDialog& dialog) {
            QCOMPARE(NameEdit(dialog).text(), QStringLiteral("TimingGaps"));
            // TimingGaps.csv is there: "No" leads back.
            InDialog<QMessageBox>([&] { QTest::mouseClick(Button(dialog, "Save"), Qt::LeftButton); },
                                  [](QMessageBox& box) { box.button(QMessageBox::No)->click(); });
            QVERIFY(dialog.isVisible());
            auto& types = *dialog.findChild<QComboBox*>(QStringLiteral("fileTypeCombo"));
            QTest::keyClick(&types, Qt::Key_Down);
            TypeName(dialog, QStringLiteral("gaps"));
            QTest::mouseClick(Button(dialog, "Save"), Qt::LeftButton);
        });
        QCOMPARE(strPath, Path("exports/gaps.txt"));
    }

    void eachKindOfFileIsAskedForWhereItWasLastFoundAlsoAfterARestart() {
        const auto fnFolder = [](const std::function<void()>& fnCall) {
            QString strFolder;
            InDialog<QFileDialog>(
                fnCall, [&](QFileDialog& dialog) { strFolder = dialog.directory().absolutePath(); });
            return strFolder;
        };
        const auto fnOpen = [] { UserInterface().AskOpenFile(LogQuestion()); };
        const auto fnExport = [] { UserInterface().AskSaveFile(ExportQuestion()); };
        const QString strFirst = fnFolder(fnOpen);
        QVERIFY(QDir(strFirst).exists());
        InDialog<QFileDialog>(fnOpen, [&](QFileDialog& dialog) {
            TypeName(dialog, Path("logs/a.log"));
            QTest::mouseClick(Button(dialog, "Open"), Qt::LeftButton);
        });
        QCOMPARE(fnFolder(fnOpen), Path("logs"));
        InDialog<QFileDialog>(fnExport, [&](QFileDialog& dialog) {
            TypeName(dialog, Path("exports/new.csv"));
            QTest::mouseClick(Button(dialog, "Save"), Qt::LeftButton);
        });
        QCOMPARE(fnFolder(fnOpen), Path("logs"));
        QCOMPARE(fnFolder(fnExport), Path("exports"));
        // The store is all that the next run finds.
        QCOMPARE(GetWorkspaceString("LogFolder", ""), ToUtf8(Path("logs")));
        QCOMPARE(GetWorkspaceString("ExportFolder", ""), ToUtf8(Path("exports")));
        // A cancel changes nothing; a folder that is gone leads to what is left of its way.
        Remember("LogFolder", Path("logs/deeper"));
        QCOMPARE(fnFolder(fnOpen), Path("logs/deeper"));
        QVERIFY(QDir(Path("logs")).rmdir(QStringLiteral("deeper")));
        QCOMPARE(fnFolder(fnOpen), Path("logs"));
    }

    void theListOfFilesShowsItsColumnsWhole() {
        Remember("LogFolder", Path("logs"));
        InDialog<QFileDialog>([] { UserInterface().AskOpenFile(LogQuestion()); },
                              [&](QFileDialog& dialog) {
                                  QVERIFY(QTest::qWaitFor([&] { return Names(dialog).contains("a.log"); }));
                                  auto& list = *dialog.findChild<QTreeView*>(QStringLiteral("treeView"));
                                  QVERIFY(list.isVisible());
                                  for (const int nWidth : {dialog.width(), dialog.width() - 40}) {
                                      dialog.resize(nWidth, dialog.height());
                                      QTRY_COMPARE(list.header()->length(), list.viewport()->width());
                                      const QModelIndex file =
                                          FindNode(*list.model(), QStringLiteral("a.log"), list.rootIndex());
                                      for (int n = 0; n < list.model()->columnCount(); ++n) {
                                          const QString strTitle =
                                              list.model()->headerData(n, Qt::Horizontal).toString();
                                          const QString strCell = file.siblingAtColumn(n).data().toString();
                                          for (const QString& strText : {strTitle, strCell})
                                              QVERIFY2(list.header()->sectionSize(n) >
                                                           list.fontMetrics().horizontalAdvance(strText),
                                                       qPrintable(strText));
                                      }
                                  }
                              });
    }

    // --- other questions
    // ----------------------------------------------------------------------------------------

    void aTextIsAskedForWithTheOneThatItReplaces() {
        std::optional<QString> strText;
        const auto fnCall = [&] {
            strText = UserInterface().AskText(QStringLiteral("Toolbar Name"), QStringLiteral("Toolbar name:"),
                                              QStringLiteral("Custom 1"));
        };
        InDialog<QInputDialog>(fnCall, [](QInputDialog& dialog) {
            QCOMPARE(dialog.textValue(), QStringLiteral("Custom 1"));
            auto& edit = *dialog.findChild<QLineEdit*>();
            QTest::keyClicks(&edit, QStringLiteral("Mine"));
            QTest::keyClick(&edit, Qt::Key_Return);
        });
        QCOMPARE(strText, QStringLiteral("Mine"));
        InDialog<QInputDialog>(fnCall,
                               [](QInputDialog& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
        QVERIFY(!strText.has_value());
    }

    void chooseFontStartsOnTheFontInForce() {
        CAppSettings settings;
        settings.LoadSettings();
        settings.m_nFontHeight = 14;
        // One that is there, and one whose place another one takes.
        for (const std::string& strFace :
             {ToUtf8(QFontInfo(QFont()).family()), std::string("No Such Font 4711")}) {
            settings.m_strFontName = strFace;
            QFont used(ToQString(strFace));
            used.setStyleHint(QFont::TypeWriter);
            COptionsDlg options(settings);
            options.show();
            InDialog<QFontDialog>(
                [&] {
                    QTest::mouseClick(options.findChild<QPushButton*>(QStringLiteral("ChooseFont")),
                                      Qt::LeftButton);
                },
                [&](QFontDialog& dialog) {
                    QCOMPARE(dialog.currentFont().family(), QFontInfo(used).family());
                    QCOMPARE(dialog.currentFont().pointSize(), 14);
                    QTest::keyClick(&dialog, Qt::Key_Return);
                });
            QCOMPARE(options.findChild<QLineEdit*>(QStringLiteral("FontName"))->text(),
                     QFontInfo(used).family());
            QCOMPARE(options.findChild<QLineEdit*>(QStringLiteral("FontHeight"))->text(),
                     QStringLiteral("14"));
        }
    }

private:
    QString Path(const char* pszName) const { return m_pFolder->filePath(QLatin1String(pszName)); }
    static void Write(const QString& strPath) {
        QFile file(strPath);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(QByteArray(2000, 'x'));
    }
    static void Remember(const char* pszName, const QString& strFolder) {
        WriteWorkspaceString(pszName, ToUtf8(strFolder));
    }
    static QStringList Names(QFileDialog& dialog) {
        const auto& list = *dialog.findChild<QTreeView*>(QStringLiteral("treeView"));
        QStringList listNames;
        for (int n = 0; n < list.model()->rowCount(list.rootIndex()); ++n)
            listNames << list.model()->index(n, 0, list.rootIndex()).data().toString();
        return listNames;
    }

    std::unique_ptr<QTemporaryDir> m_pFolder;
};

QTEST_MAIN(RealDialogsTest)
#include "RealDialogsTest.moc"
