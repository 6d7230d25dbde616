#include "ui/kit/StoredLayout.h"

#include "ui/kit/Text.h"

#include <QTest>

using namespace carvelot;

namespace {

// A fold as it would be stored.
QString Told(std::string_view stored) { return ToQString(WriteFolds(ReadFolds(stored))); }

} // namespace

class StoredLayoutTest : public QObject {
    Q_OBJECT

private slots:
    void aSealedBlockComesBackByteForByte_data() {
        QTest::addColumn<QByteArray>("block");
        QTest::newRow("one byte") << QByteArray(1, '\0');
        QTest::newRow("dividers") << QByteArray(":::");
        QByteArray all;
        for (int byte = 0; byte < 256; ++byte) {
            all.append(static_cast<char>(byte));
        }
        QTest::newRow("all bytes") << all;
    }
    void aSealedBlockComesBackByteForByte() {
        QFETCH(QByteArray, block);
        QCOMPARE(Unseal(Seal(block)), block);
    }

    void aSealIsVersionCheckSumAndContent() {
        QCOMPARE(Seal("Carvelot"), std::string("1:6c58fe3261be:Q2FydmVsb3Q="));
    }

    void aBlockIsTakenOnlyWithItsOwnSealAndVersion_data() {
        QTest::addColumn<QByteArray>("stored");
        const std::string sealed = Seal("Carvelot");
        QTest::newRow("nothing") << QByteArray();
        QTest::newRow("no seal") << QByteArray("Carvelot");
        QTest::newRow("another version") << QByteArray::fromStdString("2" + sealed.substr(1));
        QTest::newRow("another content") << QByteArray::fromStdString(sealed).replace("Q2Fy", "Q2Fz");
        QTest::newRow("another sum") << QByteArray::fromStdString(sealed).replace("1:6", "1:7");
        QTest::newRow("cut") << QByteArray::fromStdString(sealed).chopped(4);
        QTest::newRow("no content") << QByteArray("1:6c58fe3261be:");
        QTest::newRow("more behind it") << QByteArray::fromStdString(sealed + ":");
        QTest::newRow("no base 64") << QByteArray("1:6c58fe3261be:\xFF*");
    }
    void aBlockIsTakenOnlyWithItsOwnSealAndVersion() {
        QFETCH(QByteArray, stored);
        QCOMPARE(Unseal(stored.toStdString()), QByteArray());
    }

    void commandsAreNumbersAndWhatIsNoneCountsAsASeparator() {
        QCOMPARE(ReadCommands("32788,0,57601"), (std::vector<int>{32788, 0, 57601}));
        QCOMPARE(ReadCommands(",,1,,2,"), (std::vector<int>{1, 2}));
        QCOMPARE(ReadCommands("x, 7,-3y"), (std::vector<int>{0, 7, -3}));
        QCOMPARE(ReadCommands("99999999999,-99999999999"), (std::vector<int>{2147483647, -2147483647 - 1}));
        QCOMPARE(ReadCommands(""), std::vector<int>());
        QCOMPARE(WriteCommands(std::vector<int>{32788, 0, 57601}), std::string("32788,0,57601"));
        QCOMPARE(WriteCommands(std::vector<int>{}), std::string());
    }

    void aToolbarWithoutCommandsIsNoUnchangedOne() {
        using Commands = std::optional<std::vector<int>>;
        QCOMPARE(ReadChangedCommands("32788,0"), Commands(std::vector<int>{32788, 0}));
        QCOMPARE(ReadChangedCommands("none"), Commands(std::vector<int>{}));
        QCOMPARE(ReadChangedCommands(""), Commands());
        QCOMPARE(ReadChangedCommands(",,"), Commands());
        QCOMPARE(WriteChangedCommands(std::vector<int>{32788, 0}), std::string("32788,0"));
        QCOMPARE(WriteChangedCommands(std::vector<int>{}), std::string("none"));
        QCOMPARE(WriteChangedCommands({}), std::string());
    }

    void aToolBarHasATitleAndAtMost200Commands() {
        QVERIFY(!ReadToolBar(""));
        QVERIFY(!ReadToolBar("32788"));
        QVERIFY(!ReadToolBar("|32788"));
        const auto toolBar = ReadToolBar("a|b|32788,0");
        QVERIFY(toolBar);
        QCOMPARE(toolBar->m_strTitle, QStringLiteral("a|b"));
        QCOMPARE(toolBar->m_listCommands, (std::vector<int>{32788, 0}));
        QCOMPARE(WriteToolBar(*toolBar), std::string("a|b|32788,0"));
        QCOMPARE(ReadToolBar("Mine|")->m_listCommands.size(), std::size_t{0});
        std::string many = "Mine|1";
        for (int n = 0; n < 1000; ++n) {
            many += ",1";
        }
        QCOMPARE(ReadToolBar(many)->m_listCommands.size(), std::size_t{200});
    }

    void anImageIsTakenForACommandWhereBothAreWholeNumbers() {
        QCOMPARE(ReadUserImages("57600=1,57601=0"), (std::map<int, int>{{57600, 1}, {57601, 0}}));
        QCOMPARE(ReadUserImages("57600=1,57600=2"), (std::map<int, int>{{57600, 2}}));
        QCOMPARE(ReadUserImages("=,57600,57600=,=1,x=1,57600=x,57600=-1,57600=1=2,57600=99999999999"),
                 (std::map<int, int>{}));
        QCOMPARE(WriteUserImages({{57600, 1}, {57601, 0}}), std::string("57600=1,57601=0"));
        QCOMPARE(WriteUserImages({}), std::string());
    }

    void aFoldHasAnEdgeASizeAndPanesOfItsOwn() {
        const std::vector<StoredFold> folds = ReadFolds("bottom:240:FindPane,RawDataPane;left:300:SQLPane");
        QCOMPARE(folds.size(), std::size_t{2});
        QCOMPARE(folds[0].m_nEdge, Qt::BottomDockWidgetArea);
        QCOMPARE(folds[0].m_nThickness, 240);
        QCOMPARE(folds[0].m_listPanes, (std::vector<QString>{"FindPane", "RawDataPane"}));
        QCOMPARE(folds[1].m_nEdge, Qt::LeftDockWidgetArea);
        QCOMPARE(Told("right:90:a;top:91:b"), QStringLiteral("right:90:a;top:91:b"));
        // One pane is folded away once, wherever it was told first.
        QCOMPARE(Told("right:90:a,a,b;top:91:b,c;left:92:a"), QStringLiteral("right:90:a,b;top:91:c"));
        QCOMPARE(Told("right:90:\xFF,\xFE"), QStringLiteral("right:90:\uFFFD")); // bytes that are no text
    }

    void aFoldThatMakesNoSenseIsLeftOut() {
        QCOMPARE(Told(""), QString());
        QCOMPARE(Told(";;:;::"), QString());
        QCOMPARE(Told("middle:240:a"), QString());
        QCOMPARE(Told("Left:240:a"), QString());
        QCOMPARE(Told("left:240"), QString());
        QCOMPARE(Told("left:240:a:b"), QString());
        QCOMPARE(Told("left:240:"), QString());
        QCOMPARE(Told("left:240:,,"), QString());
        QCOMPARE(Told("left:240:a;left:1"), QStringLiteral("left:240:a"));
    }

    void aFoldIsNeverTooThinNorTooThick() {
        QCOMPARE(Told("left:x:a"), QStringLiteral("left:80:a"));
        QCOMPARE(Told("left:-5:a"), QStringLiteral("left:80:a"));
        QCOMPARE(Told("left:79:a"), QStringLiteral("left:80:a"));
        QCOMPARE(Told("left:10001:a"), QStringLiteral("left:10000:a"));
        QCOMPARE(Told("left:99999999999:a"), QStringLiteral("left:10000:a"));
    }
};

QTEST_MAIN(StoredLayoutTest)
#include "StoredLayoutTest.moc"
