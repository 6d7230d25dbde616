#include "ui/SessionSupport.h"

#include "platform/DateText.h"
#include "ui/app/Requests.h"
#include "ui/cachebrowser/CacheDlg.h"
#include "ui/cachebrowser/CacheDocument.h"
#include "ui/cachebrowser/CacheFrame.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QGroupBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QProcess>
#include <QPushButton>
#include <QScrollBar>
#include <QSplitter>
#include <QThread>
#include <QToolBar>

#include <memory>

using namespace carvelot;
using namespace carvelot::test;

namespace {

const QString kOrderLine = QStringLiteral("typedef struct { JCHAR szItem[11]; MATH_NUMERIC mnPrice; JDEDATE "
                                          "jdRequested; int nLine; char cStatus[4];\n"
                                          "BOOL bTaxable; ID idLine; short nPriority; } OrderLines;");

const std::string kFda = "fda" + std::to_string(QCoreApplication::applicationPid()) + ".exe";

// A person's hands in the dialog.
class CDialogHands {
public:
    explicit CDialogHands(QDialog& dialog) : m_dialog(dialog) {}

    template <typename TWidget> TWidget& Part(const char* name) const {
        auto* part = m_dialog.findChild<TWidget*>(QLatin1String(name));
        if (part == nullptr) {
            qFatal("no %s", name);
        }
        return *part;
    }
    CListCtrl& List() const { return Part<CListCtrl>("Columns"); }
    void Press(const char* name) const { QTest::mouseClick(&Part<QPushButton>(name), Qt::LeftButton); }
    void Type(const char* name, const QString& text) const {
        auto& edit = Part<QLineEdit>(name);
        edit.setFocus();
        edit.selectAll();
        QTest::keyClick(&edit, Qt::Key_Delete);
        QTest::keyClicks(&edit, text);
    }
    void Choose(const QString& type) const { Part<QComboBox>("DataType").setCurrentText(type); }
    void Paste(const QString& text) const { Part<QPlainTextEdit>("Structure").setPlainText(text); }
    void Parse(const QString& text) const {
        Paste(text);
        Press("Parse");
    }
    void Add(const QString& name, const QString& type, const QString& array = QStringLiteral("1")) const {
        Type("ColumnName", name);
        Choose(type);
        Type("Array", array);
        Press("Add");
    }
    void Ok() const { Key(QDialogButtonBox::Ok); }
    void Cancel() const { Key(QDialogButtonBox::Cancel); }

private:
    void Key(QDialogButtonBox::StandardButton button) const {
        QTest::mouseClick(m_dialog.findChild<QDialogButtonBox*>()->button(button), Qt::LeftButton);
    }
    QDialog& m_dialog;
};

QString Describe(const CCacheDS& structure) {
    QStringList members;
    for (const auto& member : structure.m_members) {
        members << QStringLiteral("%1 %2[%3]")
                       .arg(ToQString(member->m_typeName), ToQString(member->m_name))
                       .arg(member->m_count);
    }
    return members.join(QLatin1String("; "));
}

QStringList CellsOf(const QAbstractItemModel& model, int row) {
    QStringList cells;
    for (int n = 0; n < model.columnCount(); ++n) {
        cells << model.index(row, n).data().toString();
    }
    return cells;
}

QStringList TitlesOf(const QAbstractItemModel& model) {
    QStringList titles;
    for (int n = 0; n < model.columnCount(); ++n) {
        titles << model.headerData(n, Qt::Horizontal).toString();
    }
    return titles;
}

#ifdef Q_OS_WIN
// A new Wine's form, that of the United States.
constexpr const char* kRequested = "2/22/2025";
constexpr const char* kRequestedLater = "4/22/2025";
constexpr const char* kEntered = "6/22/2025";
#else
constexpr const char* kRequested = "2025-02-22";
constexpr const char* kRequestedLater = "2025-04-22";
constexpr const char* kEntered = "2025-06-22";
#endif

} // namespace

class CacheBrowserTest : public QObject {
    Q_OBJECT

private slots:
    void init() {
        m_pFolder = std::make_unique<QTemporaryDir>();
        qputenv("CARVELOT_SIMULATOR_DIR", m_pFolder->path().toUtf8());
        UseLibraryFolder(CARVELOT_SIMULATOR "/libraries");
    }
    void cleanup() {
        m_pRun.reset();
        m_process.closeWriteChannel();
        m_process.waitForFinished();
        QVERIFY(QApplication::overrideCursor() == nullptr);
    }

    // ---- the dialog

    void theDialogShowsWhatItIsAbout() {
        CCacheDoc document;
        document.m_strName = "7OrderLines";
        document.m_strInstance = "97OrderLines";
        CCacheDlg dialog(document);
        dialog.show();
        const CDialogHands hands(dialog);
        QCOMPARE(dialog.windowTitle(), QStringLiteral("Define Cache Structure"));
        QCOMPARE(hands.Part<QLineEdit>("CacheName").text(), QStringLiteral("7OrderLines"));
        QVERIFY(hands.Part<QLineEdit>("CacheName").isReadOnly());
        QCOMPARE(hands.Part<QLineEdit>("Instance").text(), QStringLiteral("97OrderLines"));
        QVERIFY(hands.Part<QLineEdit>("Instance").isReadOnly());
        QCOMPARE(hands.Part<QLineEdit>("Array").text(), QStringLiteral("1"));
        const auto& types = hands.Part<QComboBox>("DataType");
        QStringList shown;
        for (int n = 0; n < types.count(); ++n) {
            shown << types.itemText(n);
        }
        QCOMPARE(shown, (QStringList{"JDEDATE", "MATH_NUMERIC", "JCHAR", "char", "bool", "unsigned long",
                                     "long", "unsigned int", "int"}));
        QVERIFY(!types.isEditable());
        QCOMPARE(types.currentText(), QString());
        QCOMPARE(TitlesOf(hands.List().Model()), (QStringList{"Column Name", "Data Type", "Array Size"}));
        for (int n = 0; n < 3; ++n) {
            QCOMPARE(hands.List().Model().ColumnWidth(n), (QList<int>{100, 70, 60}[n]));
        }
        QCOMPARE(hands.List().selectionMode(), QAbstractItemView::SingleSelection);
        QCOMPARE(hands.List().selectionBehavior(), QAbstractItemView::SelectRows);
        QStringList labels;
        for (const QLabel* label : dialog.findChildren<QLabel*>()) {
            labels << label->text();
        }
        QCOMPARE(labels.count(QStringLiteral("Name")), 2);
        for (const char* labelText : {"Instance", "Datatype", "Array"}) {
            QVERIFY(labels.contains(QLatin1String(labelText)));
        }
        QStringList groups;
        for (const QGroupBox* group : dialog.findChildren<QGroupBox*>()) {
            groups << group->title();
        }
        QCOMPARE(groups, (QStringList{"Cache Columns", "Data Structure"}));
        for (const char* button : {"Add", "Parse", "Remove", "Load", "Save"}) {
            QCOMPARE(hands.Part<QPushButton>(button).text(), QLatin1String(button));
        }
    }

    void parseShowsTheSizeAndReplacesAllMembers() {
        InDialog({}, [&](const CDialogHands& hands) {
            hands.Parse(QString());
            QCOMPARE(Messages(), QStringList{" size: 0"});
            hands.Add("hand", "int");
            QCOMPARE(Rows(hands.List()), QStringList{"hand|int|1"});
            hands.Parse(QStringLiteral("unsigned long x; JCHAR szName[11]; VOID* p;\n/* and this"));
            QCOMPARE(Messages(), QStringList{" size: 30"});
            QCOMPARE(Rows(hands.List()), (QStringList{"x|long|1", "szName|JCHAR|11", "p|VOID|1"}));
            QCOMPARE(hands.Part<QPlainTextEdit>("Structure").toPlainText().right(8),
                     QStringLiteral("and this"));
            hands.Ok();
        });
        QCOMPARE(Describe(m_document.m_cacheDS), QStringLiteral("long x[1]; JCHAR szName[11]; VOID p[1]"));
        QVERIFY(m_document.m_cacheDS.m_members[0]->m_unsigned);
        QVERIFY(m_document.m_cacheDS.m_members[2]->m_pointer);
    }

    void addTellsWhatIsMissingInItsOrder() {
        InDialog({}, [&](const CDialogHands& hands) {
            hands.Type("Array", QStringLiteral("0"));
            hands.Press("Add");
            QCOMPARE(Messages(), QStringList{"Enter an integer between 1 and 99999999."});
            hands.Type("Array", QString());
            hands.Press("Add");
            QCOMPARE(Messages(), QStringList{"Enter an integer."});
            hands.Type("Array", QStringLiteral("100000000"));
            hands.Press("Add");
            hands.Type("Array", QStringLiteral("99999999999999999999"));
            hands.Press("Add");
            QCOMPARE(Messages(), (QStringList{"Enter an integer between 1 and 99999999.",
                                              "Enter an integer between 1 and 99999999."}));
            hands.Type("Array", QStringLiteral("1-2x3"));
            QCOMPARE(hands.Part<QLineEdit>("Array").text(), QStringLiteral("123")); // digits only
            hands.Press("Add");
            QCOMPARE(Messages(), QStringList{"Column name is required"});
            hands.Type("ColumnName", QStringLiteral("a"));
            hands.Press("Add");
            QCOMPARE(Messages(), QStringList{"Data Type is required"});
            for (const char* type : {"unsigned int", "unsigned long"}) {
                hands.Choose(QLatin1String(type));
                hands.Press("Add");
                QCOMPARE(Messages(), QStringList{"Failed to create member"});
            }
            QVERIFY(Rows(hands.List()).isEmpty());
            for (const char* type : {"JDEDATE", "MATH_NUMERIC", "JCHAR", "char", "bool", "long", "int"}) {
                hands.Add(QLatin1String(type) + QStringLiteral("Column"), QLatin1String(type));
            }
            QVERIFY(Messages().isEmpty());
            QCOMPARE(Rows(hands.List()),
                     (QStringList{"JDEDATEColumn|JDEDATE|1", "MATH_NUMERICColumn|MATH_NUMERIC|1",
                                  "JCHARColumn|JCHAR|1", "charColumn|char|1", "boolColumn|bool|1",
                                  "longColumn|long|1", "intColumn|int|1"}));
        });
    }

    void anArraySuffixOverridesTheArrayBox() {
        InDialog({}, [&](const CDialogHands& hands) {
            hands.Add(QStringLiteral("a[5]"), QStringLiteral("char"), QStringLiteral("3"));
            hands.Add(QStringLiteral("a"), QStringLiteral("char"), QStringLiteral("3"));
            hands.Add(QStringLiteral("b[]"), QStringLiteral("char"), QStringLiteral("99999999"));
            hands.Add(QStringLiteral("two words"), QStringLiteral("char"));
            QVERIFY(Messages().isEmpty());
            QCOMPARE(Rows(hands.List()),
                     (QStringList{"a|char|5", "a|char|3", "b|char|99999999", "two words|char|1"}));
        });
    }

    void removeTakesTheSelectedRow() {
        InDialog(QStringLiteral("int a; int a; int b; int c;"), [&](const CDialogHands& hands) {
            hands.Press("Remove");
            QCOMPARE(hands.List().Model().rowCount(), 4); // nothing is selected
            Click(hands.List(), hands.List().Model().index(1, 0));
            hands.Press("Remove");
            QCOMPARE(Rows(hands.List()), (QStringList{"a|int|1", "b|int|1", "c|int|1"}));
            hands.Press("Remove");
            QCOMPARE(hands.List().Model().rowCount(), 3); // nothing is selected any more
            hands.List().setFocus();
            QTest::keyClick(&hands.List(), Qt::Key_Down);
            QCOMPARE(hands.List().SelectedRow(), 2);
            hands.Press("Remove");
            hands.Ok();
        });
        QCOMPARE(Describe(m_document.m_cacheDS), QStringLiteral("int a[1]; int b[1]"));
    }

    void aSavedStructureIsLoadedAgain() {
        const QString path = m_pFolder->filePath(QStringLiteral("lines.cds"));
        m_user.m_strSaveAnswer = m_user.m_strOpenAnswer = path;
        InDialog(kOrderLine, [&](const CDialogHands& hands) {
            hands.Press("Save");
            QVERIFY(Messages().isEmpty());
            QVERIFY(QFile::exists(path));
            const CFileQuestion save = m_user.m_listQuestions.back();
            QCOMPARE(save.m_strDefaultExtension, QStringLiteral("cds"));
            QCOMPARE(save.m_strInitialName, QStringLiteral("Cache"));
            QCOMPARE(save.m_strFilter,
                     QStringLiteral("Carvelot Cache Definition Files (*.cds)|*.cds|All Files (*.*)|*.*||"));
            hands.Parse(QStringLiteral("int other;"));
            hands.Press("Load");
            const CFileQuestion load = m_user.m_listQuestions.back();
            QCOMPARE(load.m_strDefaultExtension, QStringLiteral("cds"));
            QCOMPARE(load.m_strInitialName, QStringLiteral("*.cds"));
            QCOMPARE(load.m_strFilter, save.m_strFilter);
            QCOMPARE(hands.List().Model().rowCount(), 8);
            hands.Ok();
        });
        QCOMPARE(m_document.m_cacheDS.GetRowSize(), 96);
        QCOMPARE(QDir(m_pFolder->path()).entryList(QDir::Files), QStringList{"lines.cds"});
        // Cancelled file dialogs change nothing.
        m_user.m_strSaveAnswer = m_user.m_strOpenAnswer = std::nullopt;
        InDialog(QStringLiteral("int a;"), [&](const CDialogHands& hands) {
            hands.Press("Load");
            hands.Press("Save");
            QCOMPARE(hands.List().Model().rowCount(), 1);
        });
    }

    void cancelAfterLoadLeavesTheDocumentUntouched() {
        const QString path = m_pFolder->filePath(QStringLiteral("empty.cds"));
        WriteFile(path, QByteArray(2, '\0'));
        m_user.m_strOpenAnswer = path;
        InDialog(QStringLiteral("int a; char b[3];"), [&](const CDialogHands& hands) {
            hands.Press("Load");
            QCOMPARE(hands.List().Model().rowCount(), 0);
            hands.Cancel();
        });
        QCOMPARE(m_nResult, int(QDialog::Rejected));
        QCOMPARE(Describe(m_document.m_cacheDS), QStringLiteral("int a[1]; char b[3]"));
    }

    void aBadFileLeavesTheListAsItWasAndTheStructureAsFarAsItWasRead() {
        const QString path = m_pFolder->filePath(QStringLiteral("bad.cds"));
        const QByteArray example = QByteArray::fromHex("0100ffff01000700434d656d62657200000200000001000000"
                                                       "04000000fffeff016100fffeff046c006f006e006700");
        WriteFile(path, QByteArray("\x02\0", 2) + example.mid(2) + "\x01\x80");
        m_user.m_strOpenAnswer = path;
        InDialog(QStringLiteral("int x; int y; int z;"), [&](const CDialogHands& hands) {
            hands.Press("Load");
            QCOMPARE(Messages(), QStringList{"An attempt was made to access " + path + " past its end."});
            QCOMPARE(Rows(hands.List()), (QStringList{"x|int|1", "y|int|1", "z|int|1"}));
            // A row of before goes from the list alone.
            Click(hands.List(), hands.List().Model().index(0, 0));
            hands.Press("Remove");
            QCOMPARE(Rows(hands.List()), (QStringList{"y|int|1", "z|int|1"}));
            hands.Ok();
        });
        QCOMPARE(Describe(m_document.m_cacheDS), QStringLiteral("long a[1]"));
        WriteFile(path, example.left(4) + "\x02" + example.mid(5));
        InDialog(QStringLiteral("int x;"), [&](const CDialogHands& hands) {
            hands.Press("Load");
            QCOMPARE(Messages(), QStringList{path + " contains an incorrect schema."});
            hands.Ok();
        });
        QVERIFY(m_document.m_cacheDS.m_members.empty());
    }

    void aSaveThatFailsSaysSo() {
        m_user.m_strSaveAnswer = m_pFolder->filePath(QStringLiteral("no/folder/x.cds"));
        InDialog(QStringLiteral("int a;"), [&](const CDialogHands& hands) {
            hands.Press("Save");
            QCOMPARE(m_user.m_listMessages.size(), 1);
            QVERIFY(Messages().constFirst().contains(QLatin1String("x.cds")));
        });
    }

    void whatWasNeitherAddedNorParsedHasNoEffectAtOk() {
        InDialog(QStringLiteral("int a;"), [&](const CDialogHands& hands) {
            hands.Type("ColumnName", QStringLiteral("b"));
            hands.Choose(QStringLiteral("long"));
            hands.Paste(QStringLiteral("int c;"));
            hands.Ok();
        });
        QCOMPARE(m_nResult, int(QDialog::Accepted));
        QCOMPARE(Describe(m_document.m_cacheDS), QStringLiteral("int a[1]"));
    }

    void theDialogIsWorkedByKeysAlone() {
        InDialog({}, [&](const CDialogHands& hands) {
            const auto type = [](const QString& text) {
                QTest::keyClicks(QApplication::focusWidget(), text);
            };
            const auto key = [](Qt::Key pressed) { QTest::keyClick(QApplication::focusWidget(), pressed); };
            QCOMPARE(QApplication::focusWidget()->objectName(), QStringLiteral("ColumnName"));
            type(QStringLiteral("szName"));
            key(Qt::Key_Tab);
            QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("JC"));
            key(Qt::Key_Tab);
            type(QStringLiteral("11"));
            key(Qt::Key_Tab);
            key(Qt::Key_Space);
            QCOMPARE(Rows(hands.List()), QStringList{"szName|JCHAR|11"});
            QStringList order;
            for (int n = 0; n < 11; ++n) {
                key(Qt::Key_Tab);
                order << QApplication::focusWidget()->objectName();
            }
            QCOMPARE(order, (QStringList{"Columns", "Remove", "Load", "Save", "Structure", "Parse", "", "",
                                         "CacheName", "Instance", "ColumnName"}));
            key(Qt::Key_Return);
        });
        QCOMPARE(m_nResult, int(QDialog::Accepted));
        QCOMPARE(Describe(m_document.m_cacheDS), QStringLiteral("JCHAR szName[11]"));
    }

    // ---- the window

    void aRightClickOnALiveCacheLeadsToItsRows() {
        StartProgram();
        CCachePane& pane = OpenLog();
        const QModelIndex lines = FindNode(pane.Model(), QStringLiteral("OrderLines"));
        QVERIFY(lines.isValid());
        User().m_strMenuChoice = QStringLiteral("Browse Data");
        User().m_fnInDialog = [&](QDialog& dialog) {
            const CDialogHands hands(dialog);
            QVERIFY(hands.Part<QLineEdit>("CacheName").text().endsWith(QLatin1String("OrderLines")));
            QVERIFY(theApp().m_pCacheTemplate->Documents().size() == 1);
            QVERIFY(Frame() == nullptr);
            hands.Parse(kOrderLine);
            hands.Ok();
        };
        Click(pane.Tree(), lines, Qt::RightButton);
        QCOMPARE(User().m_listMenuTexts, QStringList{"Browse Data"});
        QCOMPARE(User().m_listMessages, QStringList{" size: 96"});
        QCOMPARE(SelectedText(pane.Tree()), lines.data().toString());
        CCacheFrame* frame = Frame();
        QVERIFY(frame != nullptr);
        const QString number = QString::number(m_process.processId());
        QCOMPARE(frame->windowTitle(), "Cache Browser: " + number + "OrderLines");
        QCOMPARE(MainFrame()->MenuState(), EMenuState::Cache);
        QCOMPARE(
            Rows(frame->DSView().List()),
            (QStringList{"szItem|JCHAR|11", "mnPrice|MATH_NUMERIC|1", "jdRequested|JDEDATE|1", "nLine|int|1",
                         "cStatus|char|4", "bTaxable|BOOL|1", "idLine|ID|1", "nPriority|short|1"}));
        QCOMPARE(TitlesOf(frame->DSView().List().Model()),
                 (QStringList{"Column Name", "Data Type", "Array Size"}));
        QCOMPARE(Edit("Process").text(), number);
        QVERIFY(!Edit("Process").isReadOnly());
        CCacheDocument& document = Document();
        QCOMPARE(ToUtf8(Edit("Handle").text()), document.Cache().m_strHandle);
        QVERIFY(document.Cache().m_bCacheValid);
        QCOMPARE(TitlesOf(Data()),
                 (QStringList{"szItem 2 11", "mnPrice 50 1", "jdRequested 6 1", "nLine 4 1", "cStatus 1 4",
                              "bTaxable 4 1", "idLine 4 1", "nPriority 2 1"}));
        QCOMPARE(frame->DataView().columnWidth(0), 100);
        QCOMPARE(Data().rowCount(), 0); // no fetch runs at creation

        const QAbstractItemModelTester tester(&frame->DataView().Model(),
                                              QAbstractItemModelTester::FailureReportingMode::QtTest);
        Refresh();
        QCOMPARE(User().m_listMessages.size(), 1);
        QCOMPARE(Data().rowCount(), 3);
        QCOMPARE(CellsOf(Data(), 0),
                 (QStringList{"220-W", "383.86", kRequested, "1", "540", "True", "100101", "Not Handled"}));
        QCOMPARE(CellsOf(Data(), 2), (QStringList{"3400-B", "408.86", kRequestedLater, "3", "520", "True",
                                                  "100103", "Not Handled"}));

        // What stands in the boxes wins: the other cache of that process.
        const QString header = FindNode(pane.Model(), QStringLiteral("OrderHeader")).data().toString();
        Retype("Handle", header.section('[', 1).section(']', 0, 0));
        User().m_fnInDialog = [&](QDialog& dialog) {
            const CDialogHands hands(dialog);
            QCOMPARE(hands.List().Model().rowCount(), 8);
            hands.Parse(QStringLiteral("JCHAR szCustomer[21]; MATH_NUMERIC mnOrder; JDEDATE jdEntered;"));
            hands.Ok();
        };
        Command("Define Structure");
        QCOMPARE(TitlesOf(Data()), (QStringList{"szCustomer 2 21", "mnOrder 50 1", "jdEntered 6 1"}));
        QCOMPARE(Data().rowCount(), 0);
        QCOMPARE(frame->DSView().List().Model().rowCount(), 3);
        Refresh();
        QCOMPARE(Data().rowCount(), 1);
        QCOMPARE(CellsOf(Data(), 0), (QStringList{"Capital Supply", "1001", kEntered}));

        // A process that is none.
        document.Cache().m_bCacheValid = true;
        User().m_listMessages.clear();
        Retype("Process", QStringLiteral("none"));
        Refresh();
        QCOMPARE(User().m_listMessages, QStringList{"Invalid Cache"});
        QCOMPARE(Data().rowCount(), 0);
        QVERIFY(!document.Cache().m_bCacheValid);

        // Closing asks nothing and leaves the session alone.
        User().m_listMessages.clear();
        frame->CloseWindow();
        CSessionRun::Settle();
        QVERIFY(Frame() == nullptr);
        QVERIFY(theApp().m_pCacheTemplate->Documents().empty());
        QVERIFY(User().m_listMessages.isEmpty());
        QCOMPARE(MainFrame()->ClientArea().Children().size(), 1);
    }

    void anOperationsNodeOffersTheCacheOfItsParent() {
        StartProgram();
        CCachePane& pane = OpenLog();
        const QModelIndex header = FindNode(pane.Model(), QStringLiteral("OrderHeader"));
        pane.Tree().expand(header);
        User().m_strMenuChoice = QStringLiteral("Browse Data");
        QString name;
        User().m_fnInDialog = [&](QDialog& dialog) {
            name = CDialogHands(dialog).Part<QLineEdit>("CacheName").text();
        };
        Click(pane.Tree(), pane.Model().index(0, 0, header), Qt::RightButton);
        QVERIFY(name.endsWith(QLatin1String("OrderHeader")));
        // The dialog was not ended with OK.
        QVERIFY(theApp().m_pCacheTemplate->Documents().empty());
        QVERIFY(Frame() == nullptr);
        // By its key.
        name.clear();
        AskForMenu(pane.Tree(), QPoint(), QContextMenuEvent::Keyboard);
        QVERIFY(name.endsWith(QLatin1String("OrderHeader")));
    }

    void aCacheThatIsGoneGetsNoMenuAndNoMessage() {
        StartProgram();
        CCachePane& pane = OpenLog();
        m_process.kill();
        m_process.waitForFinished();
        User().m_listMenuTexts = QStringList{"untouched"};
        const QModelIndex lines = FindNode(pane.Model(), QStringLiteral("OrderLines"));
        Click(pane.Tree(), lines, Qt::RightButton);
        QCOMPARE(User().m_listMenuTexts, QStringList{"untouched"});
        QVERIFY(User().m_listMessages.isEmpty());
        QCOMPARE(SelectedText(pane.Tree()), lines.data().toString());
        QCOMPARE(User().m_nDialogs, 0);
        // Beside the nodes nothing is asked.
        QTest::mouseClick(pane.Tree().viewport(), Qt::RightButton, {},
                          QPoint(20, pane.Tree().viewport()->height() - 2));
        QCOMPARE(User().m_listMenuTexts, QStringList{"untouched"});
    }

    void theFormStandsWhereItShould() {
        StartProgram();
        CCacheFrame& frame = *Browse(QStringLiteral("int a;"));
        CCacheDSView& view = frame.DSView();
        QCOMPARE(view.width(), 250);
        QCOMPARE(view.findChild<QGroupBox*>()->geometry(), QRect(2, 1, 248, 58));
        QCOMPARE(view.List().geometry(), QRect(2, 62, 248, view.height() - 62));
        auto* splitter = frame.findChild<QSplitter*>();
        splitter->setSizes({400, 600});
        QCOMPARE(view.findChild<QGroupBox*>()->width(), view.width() - 2);
        QCOMPARE(frame.DataView().selectionBehavior(), QAbstractItemView::SelectRows);
        const QHeaderView& members = *view.List().header();
        QCOMPARE(members.sectionSize(0), 100);
        QCOMPARE(members.sectionSize(1), 70);
        QCOMPARE(members.sectionSize(2), 60);
        // F6 walks from the structure to the rows.
        frame.FocusLastPane();
        QVERIFY(view.List().hasFocus());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_F6);
        QVERIFY(frame.DataView().hasFocus());
    }

    void aLogIsDroppedOnACacheWindowToo() {
        StartProgram();
        Browse(QStringLiteral("int a;"));
        QCOMPARE(PartsThatTakeNoCopy(*MainFrame()), QStringList());
    }

    void aColumnOfRowsIs100WideWhateverItsTitle() {
        StartProgram();
        CCacheFrame& frame = *Browse(QStringLiteral("int a; JCHAR szAVeryLongNameOfAMember[11];"));
        const QHeaderView& header = *frame.DataView().header();
        QCOMPARE(header.sectionSize(0), 100);
        QCOMPARE(header.sectionSize(1), 100);
    }

    void commandsStandInMenuAndToolBarWhileACacheWindowIsInFront() {
        StartProgram();
        const auto enabled = [](int id) { return MainFrame()->CommandAction(id)->isEnabled(); };
        QVERIFY(!enabled(ID_CACHE_REFRESH_DATA));
        Browse(QStringLiteral("int a;"));
        MainFrame()->UpdateCommands();
        QVERIFY(enabled(ID_CACHE_REFRESH_DATA) && enabled(ID_CACHE_DEFINE_STRUCTURE));
        QCOMPARE(int(ID_CACHE_REFRESH_DATA), 32800);
        QCOMPARE(int(ID_CACHE_DEFINE_STRUCTURE), 32801);
        QCOMPARE(MainFrame()->windowTitle(), QStringLiteral("Cache Browser: Orders - Carvelot"));
        // A number that is no process, shown signed.
        QCOMPARE(Edit("Process").text(), QStringLiteral("-7"));
    }

    void withoutALibraryThereIsAMessageAndAnEmptyList() {
        UseManyRows("3");
        StartProgram();
        Browse(QStringLiteral("int a;"));
        Refresh();
        QCOMPARE(Data().rowCount(), 3);
        // A library that the program holds is found by its name whatever the folder: it lets go of its own.
        theApp().m_pfnGetSetProcInfo = nullptr;
        theApp().m_hSkelmond.Free();
        UseLibraryFolder(CARVELOT_SIMULATOR "/without/SkelmondCacheFetchProcessor");
        User().m_listMessages.clear();
        Refresh();
        QCOMPARE(User().m_listMessages, QStringList{"Get Proc address failed"});
        QCOMPARE(Data().rowCount(), 0);
        UseLibraryFolder(ToUtf8(m_pFolder->path()));
        User().m_listMessages.clear();
        Refresh();
        QCOMPARE(User().m_listMessages, QStringList{"Cannot Load Skelmond.DLL"});
    }

    void aStructureWithoutMembersShowsTheRunningNumber() {
        UseManyRows("3");
        StartProgram();
        CCacheFrame& frame = *Browse(QString());
        const QAbstractItemModelTester tester(&frame.DataView().Model(),
                                              QAbstractItemModelTester::FailureReportingMode::QtTest);
        QCOMPARE(Data().columnCount(), 0);
        Refresh();
        QCOMPARE(Data().rowCount(), 3);
        QCOMPARE(CellsOf(Data(), 2), QStringList{"2"});
        Refresh();
        QCOMPARE(Data().rowCount(), 3);
        User().m_fnInDialog = [](QDialog& dialog) {
            const CDialogHands hands(dialog);
            hands.Parse(QStringLiteral("int a; JCHAR b[16];"));
            hands.Ok();
        };
        Command("Define Structure");
        Refresh();
        QCOMPARE(CellsOf(Data(), 2), (QStringList{"2", "row 2"}));
    }

    void aHundredThousandRowsStayUsable() {
        UseManyRows("100000");
        StartProgram();
        CCacheFrame& frame = *Browse(QStringLiteral("int a; JCHAR b[16];"));
        Refresh();
        QCoreApplication::processEvents();
        QCOMPARE(Data().rowCount(), 100000);
        QCOMPARE(CellsOf(Data(), 54321), (QStringList{"54321", "row 54321"}));
        QTreeView& view = frame.DataView();
        view.setFocus();
        Click(view, view.model()->index(0, 0));
        QTest::keyClick(&view, Qt::Key_End);
        QCOMPARE(view.currentIndex().row(), 99999);
        QVERIFY(view.viewport()->rect().contains(view.visualRect(view.currentIndex()).center()));
        for (int n = 0; n < 50; ++n) {
            QTest::keyClick(&view, Qt::Key_PageUp);
        }
        QCoreApplication::processEvents();
        view.grab();
    }

    void tenThousandMembersStayUsable() {
        UseManyRows("100");
        StartProgram();
        QString definition;
        for (int n = 0; n < 10000; ++n) {
            definition += QStringLiteral("int nMember%1; ").arg(n);
        }
        CCacheFrame& frame = *Browse(definition);
        Refresh();
        QCOMPARE(Data().columnCount(), 10000);
        QCOMPARE(frame.DSView().List().Model().rowCount(), 10000);
        QCOMPARE(CellsOf(Data(), 99).first(2), (QStringList{"99", "7274610"})); // "ro" of "row 99"
        frame.DataView().grab();
        frame.DataView().scrollTo(Data().index(99, 9999));
        frame.DataView().grab();
    }

    void escStopsACursorThatNeverEndsAndTheRowsStay() {
        UseManyRows("endless");
        StartProgram();
        CCacheFrame& frame = *Browse(QStringLiteral("int a; JCHAR b[16];"));
        QMainWindow* main = MainFrame();
        // The library says by files how far it has come.
        const QString mark = m_pFolder->filePath(QStringLiteral("rows-"));
        qputenv("CARVELOT_MANY_ROWS_MARK", mark.toUtf8());
        const std::unique_ptr<QThread> hand(QThread::create([main, mark] {
            const auto wait = [&mark](int rows) {
                while (!QFileInfo::exists(mark + QString::number(rows))) {
                    QThread::msleep(1);
                }
            };
            wait(2000);
            // What a user does meanwhile comes to nothing.
            QCoreApplication::postEvent(main, new QCloseEvent);
            QCoreApplication::postEvent(main, new QKeyEvent(QEvent::KeyPress, Qt::Key_F6, {}));
            wait(4000);
            QCoreApplication::postEvent(main, new QKeyEvent(QEvent::KeyPress, Qt::Key_Escape, {}));
        }));
        hand->start();
        Refresh();
        hand->wait();
        qunsetenv("CARVELOT_MANY_ROWS_MARK");
        QVERIFY(Data().rowCount() >= 4000);
        QCOMPARE(CellsOf(Data(), 1000), (QStringList{"1000", "row 1000"}));
        QVERIFY(main->isVisible());
        QVERIFY(Frame() == &frame);
        QVERIFY(User().m_listMessages.isEmpty());
        QVERIFY(QApplication::overrideCursor() == nullptr);
        // And once more, to an end.
        qputenv("CARVELOT_MANY_ROWS", "2");
        Refresh();
        QCOMPARE(Data().rowCount(), 2);
    }

private:
    CFakeInterface& User() { return m_pRun != nullptr ? m_pRun->m_user : m_user; }
    QStringList Messages() { return std::exchange(m_user.m_listMessages, {}); }
    static void WriteFile(const QString& path, const QByteArray& bytes) {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }

    // Runs the dialog on a document of that structure.
    void InDialog(const QString& definition, const std::function<void(const CDialogHands&)>& work) {
        SetUserInterface(&m_user);
        m_user.m_listMessages.clear();
        std::string text = ToUtf8(definition);
        m_document.m_cacheDS.ParseTypedef(text);
        CCacheDlg dialog(m_document);
        m_user.m_fnInDialog = [&](QDialog& shown) {
            (void)QTest::qWaitForWindowExposed(&shown);
            shown.activateWindow();
            work(CDialogHands(shown));
        };
        m_nResult = UserInterface().RunDialog(dialog);
        m_user.m_fnInDialog = {};
    }

    void UseManyRows(const char* rows) {
        UseLibraryFolder(CARVELOT_MANY_ROWS);
        qputenv("CARVELOT_MANY_ROWS", rows);
    }
    void StartProgram() {
        m_pRun = std::make_unique<CSessionRun>();
        QVERIFY(m_pRun->m_bStarted);
        theApp().m_bAutoRefresh = false;
        MainFrame()->m_wndProcessPane.RestartTimer();
    }
    // The pane over the log of a simulated process that has worked on one order.
    CCachePane& OpenLog() {
        const QString program = m_pFolder->filePath(ToQString(kFda));
        const QString logPath = m_pFolder->filePath(QStringLiteral("jdedebug.log"));
#ifdef Q_OS_WIN
        QFile::copy(QStringLiteral(CARVELOT_SIMULATOR "/jde-simulator.exe"), program);
#else
        QFile::copy(QStringLiteral(CARVELOT_SIMULATOR "/jde-simulator"), program);
#endif
        m_process.start(program, {"--log", logPath, "--pace", "0", "--tracing"});
        m_process.waitForStarted();
        m_process.write("round\n");
        m_process.waitForBytesWritten();
        // An order ends with the return of its last function.
        (void)QTest::qWaitFor(
            [&] {
                QFile log(logPath);
                return log.open(QIODevice::ReadOnly) &&
                       log.readAll().contains("for F4211FSEndDoc. (BSFNLevel = 1)");
            },
            10000);
        theApp().AnalyzeProcess(ToQString(kFda), logPath, static_cast<std::int32_t>(m_process.processId()));
        auto* session = qobject_cast<CChildFrame*>(MainFrame()->ActiveChild());
        Select(session, "Process");
        CCachePane& pane = MainFrame()->m_wndCachePane;
        CSessionRun::ShowPane(pane);
        User().m_listMessages.clear();
        return pane;
    }
    // A window without a process behind it.
    CCacheFrame* Browse(const QString& definition) {
        User().m_fnInDialog = [&](QDialog& dialog) {
            const CDialogHands hands(dialog);
            hands.Paste(definition);
            hands.Press("Parse");
            hands.Ok();
        };
        BrowseCache(static_cast<std::uint32_t>(-7), "1A", "Orders", "9Orders");
        User().m_fnInDialog = {};
        User().m_listMessages.clear();
        MainFrame()->activateWindow();
        QCoreApplication::processEvents();
        return Frame();
    }
    static CCacheFrame* Frame() {
        return MainFrame() != nullptr ? qobject_cast<CCacheFrame*>(MainFrame()->ActiveChild()) : nullptr;
    }
    static CCacheDocument& Document() { return *qobject_cast<CCacheDocument*>(Frame()->GetActiveDocument()); }
    static QAbstractItemModel& Data() { return *Frame()->DataView().model(); }
    static QLineEdit& Edit(const char* name) {
        return *Frame()->DSView().findChild<QLineEdit*>(QLatin1String(name));
    }
    static void Retype(const char* name, const QString& text) {
        Edit(name).setFocus();
        Edit(name).selectAll();
        QTest::keyClicks(&Edit(name), text);
    }
    // A command of the Cache menu.
    void Command(const char* text) {
        for (QAction* menuAction : MainFrame()->menuBar()->actions()) {
            if (menuAction->text() != QLatin1String("&Cache")) {
                continue;
            }
            QMenu* menu = menuAction->menu();
            menu->popup(QPoint());
            QAction* action = Entry(*menu, text);
            QVERIFY(action != nullptr && action->isEnabled());
            menu->close();
            action->trigger();
            return;
        }
        QFAIL("no Cache menu");
    }
    // The button of the cache toolbar.
    void Refresh() {
        QAction* action = MainFrame()->CommandAction(ID_CACHE_REFRESH_DATA);
        for (auto* toolBar : MainFrame()->findChildren<QToolBar*>()) {
            QWidget* button = toolBar->widgetForAction(action);
            if (button != nullptr && button->isVisible()) {
                QTest::mouseClick(button, Qt::LeftButton);
                return;
            }
        }
        QFAIL("no button for Refresh Data");
    }

    std::unique_ptr<QTemporaryDir> m_pFolder;
    CFakeInterface m_user; // of the dialog alone
    std::unique_ptr<CSessionRun> m_pRun;
    QProcess m_process;
    CCacheDoc m_document;
    int m_nResult = -1;
};

QTEST_MAIN(CacheBrowserTest)
#include "CacheBrowserTest.moc"
