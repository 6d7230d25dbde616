#include "ui/UiSupport.h"

#include "settings/Commands.h"
#include "support/JDEInstallation.h"
#include "ui/kit/ListCtrl.h"
#include "ui/kit/LookStyle.h"
#include "ui/tools/ConvertDates.h"
#include "ui/tools/GBLTables.h"
#include "ui/tools/PropertyGrid.h"
#include "ui/tools/Settings.h"

#include <QComboBox>
#include <QDateTimeEdit>
#include <QDir>
#include <QHeaderView>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QRegularExpression>
#include <QTreeWidget>

using namespace carvelot;
using namespace carvelot::test;

namespace {

#ifdef Q_OS_WIN
// The form is the user's; this one is that of the United States, which a new Wine has.
constexpr const char* kNewYear2025 = "1/1/2025";
constexpr const char* kNewYear1901 = "1/1/1901";
#else
constexpr const char* kNewYear2025 = "2025-01-01";
constexpr const char* kNewYear1901 = "1901-01-01";
#endif

// A profile file's bytes as far as they are ours to keep: the system's own call sets blanks around "=", line
// ends and empty lines as it likes.
std::string Content(std::string bytes) {
#ifdef Q_OS_WIN
    QStringList lines;
    for (const QString& line : QString::fromStdString(bytes).split(u'\n')) {
        const qsizetype equals = line.indexOf(u'=');
        const QString tidy =
            equals < 0 ? line.trimmed() : line.left(equals).trimmed() + u'=' + line.mid(equals + 1).trimmed();
        if (!tidy.isEmpty()) {
            lines << tidy;
        }
    }
    bytes = lines.join(u'\n').toStdString();
#endif
    return bytes;
}

} // namespace

class ToolsTest : public QObject {
    Q_OBJECT

private slots:
    void init() {
        m_pRegistry = std::make_unique<QTemporaryDir>();
        UseSettingsStore(ToUtf8(m_pRegistry->filePath("registry.ini")));
        m_pIni = std::make_unique<JDEIni>();
        m_pFolder = std::make_unique<TestFolder>();
        m_pIni->Write(RealisticIni());
    }
    void cleanup() {
        m_pDialog.reset();
        m_pSettings.reset();
        m_pFolder.reset();
        m_pIni.reset();
    }

    void aJulianDateIsConvertedByKeysAndButton() {
        Show(std::make_unique<CConvertDates>());
        QCOMPARE(m_pDialog->windowTitle(), QStringLiteral("Convert Dates"));
        QTest::keyClicks(Edit("Julian"), QStringLiteral("1x2-5 001"));
        QCOMPARE(Edit("Julian")->text(), QStringLiteral("125001"));
        Click("To Gregorian");
        QCOMPARE(Edit("GregorianResult")->text(), QString::fromLatin1(kNewYear2025));
        for (const char* result : {"GregorianResult", "JulianResult"}) {
            QVERIFY(Edit(result)->isReadOnly());
            QVERIFY(Edit(result)->palette().color(QPalette::Base) !=
                    Edit("Julian")->palette().color(QPalette::Base));
        }
    }

    void anInvalidJulianDateGivesItsMessageAndEmptiesTheResult() {
        CFakeInterface user;
        Show(std::make_unique<CConvertDates>());
        Edit("Julian")->setText(QStringLiteral("366"));
        Click("To Gregorian");
        QCOMPARE(Edit("GregorianResult")->text(), QString::fromLatin1(kNewYear1901));
        for (const char* text : {"", "12", "1234567", "000", "367"}) {
            user.m_listMessages.clear();
            Edit("GregorianResult")->setText(QStringLiteral("before"));
            Edit("Julian")->setText(QString::fromLatin1(text));
            Click("To Gregorian");
            QCOMPARE(user.m_listMessages, QStringList{"Invalid Julian Date"});
            QCOMPARE(Edit("GregorianResult")->text(), QString());
        }
    }

    void aPickedDateIsConvertedWhateverItsTime() {
        const QDate before = QDate::currentDate();
        Show(std::make_unique<CConvertDates>());
        auto* date = m_pDialog->findChild<QDateTimeEdit*>(QStringLiteral("Date"));
        QVERIFY(date->date() >= before && date->date() <= QDate::currentDate());
        date->setDateTime(QDateTime(QDate(2024, 2, 29), QTime(23, 59, 59)));
        Click("To Julian");
        QCOMPARE(Edit("JulianResult")->text(), QStringLiteral("124060"));
        date->setDate(QDate(1899, 12, 31));
        Click("To Julian");
        QCOMPARE(Edit("JulianResult")->text(), QStringLiteral("-1365"));
        Click("OK");
        QVERIFY(!m_pDialog->isVisible());
    }

    // The parts in the order of the user's form, with or without what stands between them.
    void aDateIsTypedOverFromAClickOnItsFirstPartOrFromAllOfItSelected() {
        for (const bool signs : {false, true}) {
            for (const bool click : {true, false}) {
                QDateTimeEdit& date = ShowDate(QDate(2026, 11, 30));
                QString keys;
                for (int partNumber = 0; partNumber < 3 && !signs; ++partNumber) {
                    const QDateTimeEdit::Section part = date.sectionAt(partNumber);
                    keys += part == QDateTimeEdit::YearSection    ? QStringLiteral("2025")
                            : part == QDateTimeEdit::MonthSection ? QStringLiteral("02")
                                                                  : QStringLiteral("28");
                }
                if (signs) {
                    keys = date.locale().toString(QDate(2025, 2, 28), date.displayFormat());
                }
                if (click) {
                    ClickPart(date, 0);
                } else {
                    QTest::keyClick(&date, Qt::Key_A, Qt::ControlModifier);
                }
                QTest::keyClicks(&date, keys);
                QCOMPARE(date.date(), QDate(2025, 2, 28));
                Click("To Julian");
                QCOMPARE(Edit("JulianResult")->text(), QStringLiteral("125059"));
            }
        }
    }

    void aClickOnAPartOfADateTypesOverThatPart() {
        QDateTimeEdit& date = ShowDate(QDate(2026, 11, 21));
        for (int partNumber = 0; partNumber < 3; ++partNumber) {
            ClickPart(date, partNumber);
            QTest::keyClicks(&date, date.sectionAt(partNumber) == QDateTimeEdit::YearSection ? "1999" : "10");
        }
        QCOMPARE(date.date(), QDate(1999, 10, 10));
        // A click again on the part that was typed last, and a click while a part is half typed.
        ClickPart(date, 2);
        QTest::keyClicks(&date, date.sectionAt(2) == QDateTimeEdit::YearSection ? "2001" : "12");
        ClickPart(date, 0);
        ClickPart(date, 0);
        QTest::keyClicks(&date, date.sectionAt(0) == QDateTimeEdit::YearSection ? "2001" : "12");
        QCOMPARE(date.date().year(), 2001);
    }

    void leftAndRightGoFromPartToPartOfADate() {
        QDateTimeEdit& date = ShowDate(QDate(2026, 11, 21));
        ClickPart(date, 0);
        const std::pair<Qt::Key, int> steps[] = {{Qt::Key_Right, 1}, {Qt::Key_Right, 2}, {Qt::Key_Right, 2},
                                                 {Qt::Key_Left, 1},  {Qt::Key_Left, 0},  {Qt::Key_Left, 0}};
        for (const auto& [key, partNumber] : steps) {
            QTest::keyClick(&date, key);
            QCOMPARE(date.currentSectionIndex(), partNumber);
            QCOMPARE(date.findChild<QLineEdit*>()->selectedText(), date.sectionText(date.currentSection()));
        }
    }

    void aFullPartWithTheCaretInItIsTypedOverToo() {
        QDateTimeEdit& date = ShowDate(QDate(2026, 11, 21));
        for (const Qt::Key key : {Qt::Key_Home, Qt::Key_End}) {
            date.setDate(QDate(2026, 11, 21));
            date.setFocus();
            QTest::keyClick(&date, key);
            const bool year = date.currentSection() == QDateTimeEdit::YearSection;
            QTest::keyClicks(&date, year ? "2001" : "12");
            QVERIFY(date.date() != QDate(2026, 11, 21));
        }
    }

    void allSpecFilesAreListedSortedAndSelected() {
        Install();
        Show(std::make_unique<CGBLTables>());
        QCOMPARE(m_pDialog->windowTitle(), QStringLiteral("Global Tables"));
        QCOMPARE(Names(),
                 (QStringList{"a/spec/ddtext.x", "a/spec/glbltbl.x", "B/spec/dddict.x", "B/spec/GLBLTBL.y"}));
        QCOMPARE(List().SelectedRows(), (std::vector<int>{0, 1, 2, 3}));
        QCOMPARE(List().header()->sectionSize(0), 250);
        QCOMPARE(List().header()->sectionSize(1), 150);
        QVERIFY(List().hasFocus());
        // What the last mask found last has the focus.
        QCOMPARE(List().currentIndex().row(), 0);
    }

    void aLongListOfSpecFilesBeginsAtItsTop() {
        for (int n = 0; n < 60; ++n) {
            for (const char* name : {"glbltbl.xdb", "dddict.xdb", "ddtext.xdb"}) {
                WriteBelow(*m_pFolder, "jde/path" + std::to_string(100 + n) + "/spec/" + name, name);
            }
        }
        m_pIni->Write("[INSTALL]\nB9=" + m_pFolder->Path("jde") + "\n");
        Show(std::make_unique<CGBLTables>());
        QCOMPARE(Names().size(), 180);
        QCOMPARE(static_cast<int>(List().SelectedRows().size()), 180);
        QCOMPARE(List().indexAt(QPoint(5, 5)).row(), 0);
        QCOMPARE(Names()[List().currentIndex().row()], QStringLiteral("path159/spec/ddtext.xdb"));
    }

    void aPathThatIsTooLongForItsColumnShowsItsEnd() {
        const std::string deep = "jde/" + std::string(60, 'x');
        for (const char* folder : {"/a", "/b"}) {
            WriteBelow(*m_pFolder, deep + folder + "/spec/glbltbl.xdb", "");
        }
        m_pIni->Write("[INSTALL]\nB9=" + m_pFolder->Path(deep) + "\n");
        Show(std::make_unique<CGBLTables>());
        const auto picture = [this](int row) {
            List().clearSelection();
            const QRect rect = List().visualRect(List().model()->index(row, 0));
            return List().viewport()->grab(rect).toImage();
        };
        List().setCurrentIndex({});
        QCOMPARE(List().header()->sectionSize(0), 250);
        QVERIFY(picture(0) != picture(1));
    }

    void theSizeHeaderKeepsTheOrderAndThePathHeaderTurnsItRound() {
        Install();
        Show(std::make_unique<CGBLTables>());
        const QStringList before = Names();
        ClickHeader(1);
        QCOMPARE(Names(), before);
        ClickHeader(0);
        ClickHeader(0);
        QStringList reversed(before.rbegin(), before.rend());
        QCOMPARE(Names(), reversed);
    }

    void deleteSelectedDeletesTheSelectedRowsOnly() {
        Install();
        Show(std::make_unique<CGBLTables>());
        auto expected = Tree(m_pFolder->Path());
        List().clearSelection();
        ClickRow(1, Qt::NoModifier);
        ClickRow(3, Qt::ControlModifier);
        Click("Delete Selected");
        QCOMPARE(m_pDialog->result(), static_cast<int>(QDialog::Accepted));
        expected.erase("jde/a/spec/glbltbl.x");
        expected.erase("jde/B/spec/GLBLTBL.y");
        QVERIFY(Tree(m_pFolder->Path()) == expected);
    }

    void cancelAndEscapeDeleteNothing() {
        Install();
        const auto before = Tree(m_pFolder->Path());
        Show(std::make_unique<CGBLTables>());
        Click("Cancel");
        Show(std::make_unique<CGBLTables>());
        QTest::keyClick(&List(), Qt::Key_Escape);
        QVERIFY(!m_pDialog->isVisible());
        QVERIFY(Tree(m_pFolder->Path()) == before);
    }

    void withoutAnInstallationTheDialogSaysSoAndStays() {
        CFakeInterface user;
        Show(std::make_unique<CGBLTables>());
        QCOMPARE(user.m_listMessages, QStringList{"Could not determine installation path."});
        QVERIFY(m_pDialog->isVisible());
        QCOMPARE(List().model()->rowCount(), 0);
        QVERIFY(QApplication::overrideCursor() == nullptr);
        Click("Delete Selected");
        QCOMPARE(m_pDialog->result(), static_cast<int>(QDialog::Accepted));
    }

    void theGridShowsGroupsOverTheWholeWidthAndDescriptions() {
        ShowSettings();
        QCOMPARE(m_pDialog->windowTitle(), QStringLiteral("JDE Settings"));
        QVERIFY(Grid().isHeaderHidden());
        QCOMPARE(Grid().topLevelItemCount(), 2);
        QVERIFY(Grid().topLevelItem(0)->isFirstColumnSpanned());
        QVERIFY(Item("DEBUG")->isFirstColumnSpanned());
        QVERIFY(Item("DEBUG")->isExpanded());
        const QRect label = Grid().visualRect(Grid().indexFromItem(Item("serviceNameConnect"), 0));
        QVERIFY(label.width() > Grid().fontMetrics().horizontalAdvance(QStringLiteral("serviceNameConnect")));
        Grid().setCurrentItem(Item("serviceNameListen"));
        QVERIFY(Grid().columnWidth(0) >
                Grid().fontMetrics().horizontalAdvance(QStringLiteral("serviceNameConnect")));
        QCOMPARE(m_pDialog->findChild<QLabel*>(QStringLiteral("Description"))->text(),
                 QStringLiteral("JDENET listener port"));
    }

    void aGroupThatIsDoubleClickedFoldsAndIsNotEdited() {
        ShowSettings();
        QTest::failOnWarning(QRegularExpression(QStringLiteral("edit")));
        Grid().scrollToItem(Item("DEBUG"));
        const QPoint place = Grid().visualItemRect(Item("DEBUG")).center();
        for (const bool open : {false, true}) {
            QTest::mouseClick(Grid().viewport(), Qt::LeftButton, {}, place);
            QTest::mouseDClick(Grid().viewport(), Qt::LeftButton, {}, place);
            QCOMPARE(Item("DEBUG")->isExpanded(), open);
        }
    }

    void theListOfOptionsHasAFrame() {
        int office2007 = ID_APPLOOK_OFFICE_2007_BLUE;
        const QPalette palette = QApplication::palette();
        ApplyLook(LookOf(ID_APPLOOK_VS_2008, office2007));
        ShowSettings();
        auto* combo = qobject_cast<QComboBox*>(OpenEditor("UBEDebugLevel"));
        QVERIFY(combo != nullptr);
        combo->showPopup();
        const QImage image = combo->view()->window()->grab().toImage();
        for (const QPoint& corner : {QPoint(0, 0), QPoint(image.width() - 1, image.height() - 1)}) {
            QCOMPARE(image.pixelColor(corner), CurrentLook().m_border);
        }
        combo->hidePopup();
        m_pDialog.reset();
        QApplication::setStyle(QStringLiteral("fusion"));
        QApplication::setPalette(palette);
    }

    void theGridTakesAllButTheLastPixelsForTheButtons() {
        ShowSettings();
        m_pDialog->resize(700, 650);
        const auto* grid = m_pDialog->findChild<CPropertyGrid*>();
        QCOMPARE(grid->geometry(), QRect(0, 0, 700, 615));
        for (const auto* button : m_pDialog->findChildren<QPushButton*>()) {
            QVERIFY(button->mapTo(m_pDialog.get(), QPoint()).y() >= 615);
        }
    }

    void okWithoutAChangeWritesNothing() {
        ShowSettings();
        m_pIni->Remove();
        Click("OK");
        QVERIFY(!m_pIni->Exists());
        QCOMPARE(m_pDialog->result(), static_cast<int>(QDialog::Accepted));
    }

    void aChosenOptionIsMarkedAppliedAndWrittenOnceMoreByOk() {
        ShowSettings();
        auto* combo = qobject_cast<QComboBox*>(OpenEditor("Output"));
        QVERIFY(combo != nullptr);
        QVERIFY(!combo->isEditable());
        QTest::keyClick(combo, Qt::Key_Down);
        QTest::keyClick(combo, Qt::Key_Return);
        QCoreApplication::processEvents();
        QCOMPARE(Item("Output")->text(1), QStringLiteral("NONE"));
        QVERIFY(Item("Output")->font(1).bold());
        QVERIFY(!Item("Level")->font(1).bold());
        Click("Apply");
        QVERIFY(m_pDialog->isVisible());
        std::string expected = RealisticIni();
        expected.replace(expected.find("Output=FILE"), 11, "Output=NONE");
        QVERIFY(Content(m_pIni->Read()) == Content(expected));
        QVERIFY(Item("Output")->font(1).bold());
        m_pIni->Write(RealisticIni());
        Click("OK");
        QVERIFY(Content(m_pIni->Read()) == Content(expected));
    }

    void keysGoOverTheOptionsOfARowUntilEnterTakesOneAndEscapeNone() {
        ShowSettings();
        auto* combo = qobject_cast<QComboBox*>(OpenEditor("UBEDebugLevel"));
        QVERIFY(combo != nullptr);
        QCOMPARE(combo->currentText(), QStringLiteral("3"));
        QTest::keyClick(combo, Qt::Key_Down);
        QTest::keyClick(combo, Qt::Key_Down);
        QCOMPARE(QApplication::focusWidget(), combo);
        QCOMPARE(combo->currentText(), QStringLiteral("5"));
        QCOMPARE(Item("UBEDebugLevel")->text(1), QStringLiteral("3"));
        QTest::keyClick(combo, Qt::Key_Escape);
        QCoreApplication::processEvents();
        QVERIFY(m_pDialog->isVisible());
        QCOMPARE(Item("UBEDebugLevel")->text(1), QStringLiteral("3"));
        QVERIFY(!Item("UBEDebugLevel")->font(1).bold());
        combo = qobject_cast<QComboBox*>(OpenEditor("UBEDebugLevel"));
        QTest::keyClick(combo, Qt::Key_Up);
        QTest::keyClick(combo, Qt::Key_Up);
        QTest::keyClick(combo, Qt::Key_Return);
        QCoreApplication::processEvents();
        QVERIFY(m_pDialog->isVisible());
        QCOMPARE(Item("UBEDebugLevel")->text(1), QStringLiteral("1"));
    }

    void anOptionOfTheOpenedListIsTakenAtOnce() {
        ShowSettings();
        const QPointer<QComboBox> combo(qobject_cast<QComboBox*>(OpenEditor("UBEDebugLevel")));
        QVERIFY(combo != nullptr);
        combo->showPopup();
        QTest::mouseClick(combo->view()->viewport(), Qt::LeftButton, {},
                          combo->view()->visualRect(combo->model()->index(6, 0)).center());
        QTRY_COMPARE(Item("UBEDebugLevel")->text(1), QStringLiteral("6"));
        QTRY_VERIFY(combo == nullptr);
    }

    void typingIntoARowReplacesItsValueAndEnterKeepsTheDialogOpen() {
        ShowSettings();
        Grid().setCurrentItem(Item("serviceNameListen"));
        QTest::keyClicks(&Grid(), QStringLiteral("p"));
        QWidget* editor = QApplication::focusWidget();
        QVERIFY(qobject_cast<QLineEdit*>(editor) != nullptr);
        QTest::keyClicks(editor, QStringLiteral("ort"));
        QTest::keyClick(editor, Qt::Key_Return);
        QCoreApplication::processEvents();
        QVERIFY(m_pDialog->isVisible());
        QCOMPARE(Item("serviceNameListen")->text(1), QStringLiteral("port"));
        Click("OK");
        std::string expected = RealisticIni();
        expected.replace(expected.find("serviceNameListen=6017"), 22, "serviceNameListen=port");
        QVERIFY(Content(m_pIni->Read()) == Content(expected));
        ShowSettings();
        QCOMPARE(Item("serviceNameListen")->text(1), QStringLiteral("0"));
    }

    void anOpenEditorIsTakenOverByOkAndDroppedByEscape() {
        ShowSettings();
        auto* edit = qobject_cast<QLineEdit*>(OpenEditor("JobFile"));
        QVERIFY(edit != nullptr);
        edit->setText(QStringLiteral("x=1|2"));
        QTest::keyClick(edit, Qt::Key_Escape);
        QVERIFY(m_pDialog->isVisible());
        QCOMPARE(Item("JobFile")->text(1), QStringLiteral("c:\\jde.log"));
        edit = qobject_cast<QLineEdit*>(OpenEditor("JobFile"));
        edit->setText(QStringLiteral("y=1|2"));
        Click("OK");
        std::string expected = RealisticIni();
        expected.replace(expected.find("JobFile = c:\\jde.log"), 20, "JobFile = y=1|2");
        QVERIFY(Content(m_pIni->Read()) == Content(expected));
    }

    void cancelWritesNothing() {
        ShowSettings();
        auto* edit = qobject_cast<QLineEdit*>(OpenEditor("Level"));
        edit->setText(QStringLiteral("SF_GRID"));
        QTest::keyClick(edit, Qt::Key_Return);
        QCoreApplication::processEvents();
        QCOMPARE(Item("Level")->text(1), QStringLiteral("SF_GRID"));
        Click("Cancel");
        QVERIFY(m_pIni->Read() == RealisticIni());
    }

    void loggingRowsTakeTypedTextAndWriteTheirOwnFile() {
        WriteBelow(*m_pFolder, "web/WEB-INF/classes/jdelog.properties",
                   "[E1LOG]\nLEVEL=odd\n[TWO]\nLEVEL=APP\n");
        m_pSettings = std::make_unique<CJDESettings>();
        m_pSettings->m_strWebInfDir = m_pFolder->Path("web");
        m_pSettings->ReadLogProperties();
        Show(std::make_unique<CSettings>(*m_pSettings));
        auto* combo = qobject_cast<QComboBox*>(OpenEditor("LEVEL"));
        QVERIFY(combo != nullptr);
        QVERIFY(combo->isEditable());
        QCOMPARE(combo->currentText(), QStringLiteral("odd"));
        combo->lineEdit()->selectAll();
        QTest::keyClicks(combo, QStringLiteral("DE"));
        QTest::keyClick(combo, Qt::Key_Return);
        QCoreApplication::processEvents();
        QCOMPARE(Item("LEVEL")->text(1), QStringLiteral("DE"));
        Click("OK");
        QCOMPARE(Content(m_pFolder->Read("web/WEB-INF/classes/jdelog.properties")),
                 Content("[E1LOG]\nLEVEL=DE\n[TWO]\nLEVEL=APP\n"));
        QVERIFY(m_pIni->Read() == RealisticIni());
    }

    void theCommandsOpenTheirDialogsAndTheStoreIsReadAroundItsOwn() {
        Install();
        CFakeInterface user;
        const CRun run(*m_pRegistry);
        QStringList titles;
        user.m_fnInDialog = [&](QDialog& dialog) { titles << dialog.windowTitle(); };
        QVERIFY(run.Frame().RunCommand(ID_TOOLS_GLOBAL_TABLES));
        QVERIFY(run.Frame().RunCommand(ID_TOOLS_CONVERT_DATES));
        m_pIni->Write("[DEBUG]\nOutput=FILE\n");
        user.m_fnInDialog = [&](QDialog& dialog) {
            titles << dialog.windowTitle();
            QCOMPARE(theApp().m_jdeSettings.m_strOutput, std::string("FILE"));
            m_pIni->Write("[DEBUG]\nOutput=NONE\n");
        };
        QVERIFY(run.Frame().RunCommand(ID_TOOLS_JDE_SETTINGS));
        QCOMPARE(titles, (QStringList{"Global Tables", "Convert Dates", "JDE Settings"}));
        QCOMPARE(theApp().m_jdeSettings.m_strOutput, std::string("NONE"));
    }

private:
    void Install() const {
        for (const char* name : {"a/spec/glbltbl.x", "a/spec/ddtext.x", "B/spec/GLBLTBL.y", "B/spec/dddict.x",
                                 "B/spec/other.x", "B/glbltbl.x"}) {
            WriteBelow(*m_pFolder, std::string("jde/") + name, name);
        }
        m_pIni->Write("[INSTALL]\nB9=" + m_pFolder->Path("jde") + "\n");
    }
    void Show(std::unique_ptr<QDialog> dialog) {
        m_pDialog = std::move(dialog);
        m_pDialog->show();
        QVERIFY(QTest::qWaitForWindowActive(m_pDialog.get()));
    }
    QDateTimeEdit& ShowDate(const QDate& date) {
        m_pDialog.reset();
        Show(std::make_unique<CConvertDates>());
        auto& edit = *m_pDialog->findChild<QDateTimeEdit*>(QStringLiteral("Date"));
        edit.setDate(date);
        return edit;
    }
    static void ClickPart(QDateTimeEdit& date, int partNumber) {
        auto& edit = *date.findChild<QLineEdit*>();
        const QStringList parts = edit.text().split(QRegularExpression(QStringLiteral("[^0-9]")));
        const QString before = parts.mid(0, partNumber).join(QLatin1Char('-')) +
                               QString(partNumber > 0 ? 1 : 0, QLatin1Char('-'));
        const QFontMetrics metrics = edit.fontMetrics();
        const int x =
            metrics.horizontalAdvance(before) + metrics.horizontalAdvance(parts[partNumber]) / 2 + 4;
        QTest::mouseClick(&edit, Qt::LeftButton, {}, QPoint(x, edit.height() / 2));
        QCoreApplication::processEvents();
    }
    void ShowSettings() {
        m_pDialog.reset();
        m_pSettings = std::make_unique<CJDESettings>();
        Show(std::make_unique<CSettings>(*m_pSettings));
    }
    QLineEdit* Edit(const char* name) const {
        return m_pDialog->findChild<QLineEdit*>(QString::fromLatin1(name));
    }
    void Click(const char* text) const {
        for (auto* button : m_pDialog->findChildren<QPushButton*>()) {
            if (button->text().remove(QLatin1Char('&')) == QLatin1String(text)) {
                QTest::mouseClick(button, Qt::LeftButton);
                return;
            }
        }
        QFAIL(text);
    }
    CListCtrl& List() const { return *m_pDialog->findChild<CListCtrl*>(); }
    QStringList Names() const {
        const QString root =
            QDir::fromNativeSeparators(QString::fromStdString(m_pFolder->Path("jde"))) + u'/';
        QStringList names;
        for (int n = 0; n < List().model()->rowCount(); ++n) {
            names << QDir::fromNativeSeparators(List().model()->index(n, 0).data().toString()).remove(root);
        }
        return names;
    }
    void ClickRow(int row, Qt::KeyboardModifier modifier) const {
        QTest::mouseClick(List().viewport(), Qt::LeftButton, modifier,
                          List().visualRect(List().model()->index(row, 0)).center());
    }
    void ClickHeader(int column) const {
        QHeaderView* header = List().header();
        QTest::mouseClick(header->viewport(), Qt::LeftButton, {},
                          QPoint(header->sectionViewportPosition(column) + 30, header->height() / 2));
    }
    QTreeWidget& Grid() const { return *m_pDialog->findChild<QTreeWidget*>(QStringLiteral("Grid")); }
    QTreeWidgetItem* Item(const char* label) const {
        return Grid().findItems(QString::fromLatin1(label), Qt::MatchExactly | Qt::MatchRecursive).value(0);
    }
    // Clicks on a row's value and gives the editor that opens.
    QWidget* OpenEditor(const char* label) const {
        Grid().scrollToItem(Item(label));
        const QModelIndex index = Grid().indexFromItem(Item(label), 1);
        QTest::mouseClick(Grid().viewport(), Qt::LeftButton, {}, Grid().visualRect(index).center());
        QWidget* editor = Grid().indexWidget(index);
        return editor != nullptr ? editor : QApplication::focusWidget();
    }

    std::unique_ptr<QTemporaryDir> m_pRegistry;
    std::unique_ptr<JDEIni> m_pIni;
    std::unique_ptr<TestFolder> m_pFolder;
    std::unique_ptr<CJDESettings> m_pSettings;
    std::unique_ptr<QDialog> m_pDialog;
};

QTEST_MAIN(ToolsTest)
#include "ToolsTest.moc"
