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
void InDialog(const std::function<void()>& call, const std::function<void(TDialog&)>& work) {
    bool done = false;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &timer, [&] {
        auto* dialog = qobject_cast<TDialog*>(QApplication::activeModalWidget());
        if (dialog == nullptr || done || !dialog->isVisible()) {
            return;
        }
        done = true;
        const QPointer<TDialog> alive = dialog;
        work(*dialog);
        if (alive != nullptr && alive->isVisible()) {
            alive->reject();
        }
    });
    timer.start(5);
    call();
    QVERIFY(done);
}

QPushButton* Button(QDialog& dialog, const char* text) {
    for (QPushButton* button : dialog.findChildren<QPushButton*>()) {
        if (button->text().remove(QLatin1Char('&')) == QLatin1String(text)) {
            return button;
        }
    }
    return nullptr;
}

QLineEdit& NameEdit(QFileDialog& dialog) {
    return *dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
}

void TypeName(QFileDialog& dialog, const QString& name) {
    dialog.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    QTest::mouseClick(&NameEdit(dialog), Qt::LeftButton);
    NameEdit(dialog).selectAll();
    QTest::keyClicks(&NameEdit(dialog), name);
}

// The first title, or text of the file a.log, that is wider than its column, or how much wider the columns
// are than the list; nothing when all is to be seen.
QString WhatDoesNotFit(const QTreeView& list) {
    const QModelIndex file = FindNode(*list.model(), QStringLiteral("a.log"), list.rootIndex());
    for (int n = 0; n < list.model()->columnCount(); ++n) {
        for (const QString& text : {list.model()->headerData(n, Qt::Horizontal).toString(),
                                    file.siblingAtColumn(n).data().toString()}) {
            if (list.header()->sectionSize(n) <= list.fontMetrics().horizontalAdvance(text)) {
                return text;
            }
        }
    }
    const int excess = list.header()->length() - list.viewport()->width();
    return excess == 0 ? QString() : QString::number(excess);
}

CFileQuestion LogQuestion() {
    return {
        EFiles::Logs, QStringLiteral("Open"), QStringLiteral("log"), {}, QString::fromLatin1(kNewLogFilter)};
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
        for (const char* name : {"logs/a.log", "logs/b.txt", "exports/TimingGaps.csv"}) {
            Write(Path(name));
        }
        SetUserInterface(nullptr);
    }

    // --- messages

    void aMessageHasItsTextAndOneButtonAndGoesByReturnEscOrClick() {
        const QString text = QStringLiteral("Failed to open file.");
        const auto call = [&] { UserInterface().ShowMessage(text); };
        for (const auto& end : std::initializer_list<std::function<void(QMessageBox&)>>{
                 [](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Return); },
                 [](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Escape); },
                 [](QMessageBox& box) { QTest::mouseClick(Button(box, "OK"), Qt::LeftButton); }}) {
            InDialog<QMessageBox>(call, [&](QMessageBox& box) {
                QCOMPARE(box.text(), text);
                QCOMPARE(box.windowTitle(), QStringLiteral("Carvelot"));
                QCOMPARE(box.buttons().size(), 1);
                QVERIFY(Button(box, "OK") != nullptr);
                bool shown = false;
                for (const QLabel* label : box.findChildren<QLabel*>()) {
                    shown = shown || (label->isVisible() && label->text() == text);
                }
                QVERIFY(shown);
                end(box);
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

    void aChoiceHasAButtonAnAnswerAndNoneWhereItIsCancelled() {
        std::optional<int> answer;
        const auto call = [&] {
            answer = UserInterface().AskChoice(QStringLiteral("Which?"),
                                               {QStringLiteral("First"), QStringLiteral("Second")});
        };
        InDialog<QMessageBox>(call, [](QMessageBox& box) {
            QCOMPARE(box.text(), QStringLiteral("Which?"));
            QCOMPARE(box.buttons().size(), 3);
            QTest::mouseClick(Button(box, "Second"), Qt::LeftButton);
        });
        QCOMPARE(answer, std::optional(1));
        InDialog<QMessageBox>(call, [](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Return); });
        QCOMPARE(answer, std::optional(0));
        InDialog<QMessageBox>(call, [](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Escape); });
        QCOMPARE(answer, std::nullopt);
    }

    // --- opening and saving

    void severalFilesAreOpenedTogether() {
        Write(Path("logs/c.log"));
        QStringList paths;
        Remember("LogFolder", Path("logs"));
        InDialog<QFileDialog>([&] { paths = UserInterface().AskOpenFiles(LogQuestion()); },
                              [&](QFileDialog& dialog) {
                                  TypeName(dialog, QStringLiteral("\"a.log\" \"c.log\""));
                                  QTest::mouseClick(Button(dialog, "Open"), Qt::LeftButton);
                              });
        QCOMPARE(paths, (QStringList{Path("logs/a.log"), Path("logs/c.log")}));
    }

    void openShowsLogsOrAllFilesAndGivesTheChosenPath() {
        std::optional<QString> path;
        Remember("LogFolder", Path("logs"));
        InDialog<QFileDialog>([&] { path = UserInterface().AskOpenFile(LogQuestion()); },
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
        QCOMPARE(path, Path("logs/b.txt"));
    }

    void openTakesNoFileThatIsNotThereAndACancelGivesNothing() {
        std::optional<QString> path = QStringLiteral("before");
        Remember("LogFolder", Path("logs"));
        InDialog<QFileDialog>([&] { path = UserInterface().AskOpenFile(LogQuestion()); },
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
        QVERIFY(!path.has_value());
    }

    void saveProposesItsNameAddsTheEndingOfTheKindAndAsksBeforeItOverwrites() {
        std::optional<QString> path;
        Remember("ExportFolder", Path("exports"));
        const auto call = [&] { path = UserInterface().AskSaveFile(ExportQuestion()); };
        InDialog<QFileDialog>(call, [&](QFileDialog& dialog) {
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
        QCOMPARE(path, Path("exports/gaps.txt"));
    }

    void eachKindOfFileIsAskedForWhereItWasLastFoundAlsoAfterARestart() {
        const auto folderOf = [](const std::function<void()>& call) {
            QString folder;
            InDialog<QFileDialog>(call,
                                  [&](QFileDialog& dialog) { folder = dialog.directory().absolutePath(); });
            return folder;
        };
        const auto open = [] { UserInterface().AskOpenFile(LogQuestion()); };
        const auto askExport = [] { UserInterface().AskSaveFile(ExportQuestion()); };
        const QString first = folderOf(open);
        QVERIFY(QDir(first).exists());
        InDialog<QFileDialog>(open, [&](QFileDialog& dialog) {
            TypeName(dialog, Path("logs/a.log"));
            QTest::mouseClick(Button(dialog, "Open"), Qt::LeftButton);
        });
        QCOMPARE(folderOf(open), Path("logs"));
        InDialog<QFileDialog>(askExport, [&](QFileDialog& dialog) {
            TypeName(dialog, Path("exports/new.csv"));
            QTest::mouseClick(Button(dialog, "Save"), Qt::LeftButton);
        });
        QCOMPARE(folderOf(open), Path("logs"));
        QCOMPARE(folderOf(askExport), Path("exports"));
        // The store is all that the next run finds.
        QCOMPARE(GetWorkspaceString("LogFolder", ""), ToUtf8(Path("logs")));
        QCOMPARE(GetWorkspaceString("ExportFolder", ""), ToUtf8(Path("exports")));
        // A cancel changes nothing; a folder that is gone leads to what is left of its way.
        Remember("LogFolder", Path("logs/deeper"));
        QCOMPARE(folderOf(open), Path("logs/deeper"));
        QVERIFY(QDir(Path("logs")).rmdir(QStringLiteral("deeper")));
        QCOMPARE(folderOf(open), Path("logs"));
    }

    // What the list knows of a file comes to it from another thread, one thing after the other.
    void theListOfFilesShowsItsColumnsWhole() {
        Remember("LogFolder", Path("logs"));
        const auto open = [] { UserInterface().AskOpenFile(LogQuestion()); };
        InDialog<QFileDialog>(open, [](QFileDialog& dialog) {
            QVERIFY(QTest::qWaitFor([&] { return Names(dialog).contains("a.log"); }));
            auto& list = *dialog.findChild<QTreeView*>(QStringLiteral("treeView"));
            QVERIFY(list.isVisible());
            for (const int width : {dialog.width(), dialog.width() - 40}) {
                dialog.resize(width, dialog.height());
                QTRY_COMPARE(WhatDoesNotFit(list), QString());
            }
        });
    }

    // --- other questions

    void aTextIsAskedForWithTheOneThatItReplaces() {
        std::optional<QString> text;
        const auto call = [&] {
            text = UserInterface().AskText(QStringLiteral("Toolbar Name"), QStringLiteral("Toolbar name:"),
                                           QStringLiteral("Custom 1"));
        };
        InDialog<QInputDialog>(call, [](QInputDialog& dialog) {
            QCOMPARE(dialog.textValue(), QStringLiteral("Custom 1"));
            auto& edit = *dialog.findChild<QLineEdit*>();
            QTest::keyClicks(&edit, QStringLiteral("Mine"));
            QTest::keyClick(&edit, Qt::Key_Return);
        });
        QCOMPARE(text, QStringLiteral("Mine"));
        InDialog<QInputDialog>(call, [](QInputDialog& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
        QVERIFY(!text.has_value());
    }

    void chooseFontStartsOnTheFontInForce() {
        CAppSettings settings;
        settings.LoadSettings();
        settings.m_nFontHeight = 14;
        // One that is there, and one whose place another one takes.
        for (const std::string& face :
             {ToUtf8(QFontInfo(QFont()).family()), std::string("No Such Font 4711")}) {
            settings.m_strFontName = face;
            QFont used(ToQString(face));
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
    QString Path(const char* name) const { return m_pFolder->filePath(QLatin1String(name)); }
    static void Write(const QString& path) {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(QByteArray(2000, 'x'));
    }
    static void Remember(const char* name, const QString& folder) {
        WriteWorkspaceString(name, ToUtf8(folder));
    }
    static QStringList Names(QFileDialog& dialog) {
        const auto& list = *dialog.findChild<QTreeView*>(QStringLiteral("treeView"));
        QStringList names;
        for (int n = 0; n < list.model()->rowCount(list.rootIndex()); ++n) {
            names << list.model()->index(n, 0, list.rootIndex()).data().toString();
        }
        return names;
    }

    std::unique_ptr<QTemporaryDir> m_pFolder;
};

QTEST_MAIN(RealDialogsTest)
#include "RealDialogsTest.moc"
