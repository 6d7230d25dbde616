// What Explore writes into files for other programs: a profile, and a picture of what is shown.
#include "ui/ExploreSupport.h"
#include "ui/explore/CallProfileFrame.h"
#include "ui/explore/FlameGraphFrame.h"

#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

using namespace carvelot;
using namespace carvelot::test;

class ExploreFilesTest : public CSessionTest {
    Q_OBJECT

private slots:
    void init() { StartRun(); }
    void cleanup() { EndRun(); }

    void aProfileIsAskedForAndWritten() {
        QVERIFY(OpenProfile() != nullptr);
        Export("p.folded");
        const CFileQuestion& question = m_pRun->m_user.m_listQuestions.back();
        QCOMPARE(question.m_nFiles, EFiles::Exports);
        QCOMPARE(question.m_strInitialName, QStringLiteral("order.log"));
        QVERIFY(m_pRun->m_user.m_listMessages.isEmpty());
        const QList<QByteArray> lines = m_pRun->Read(QStringLiteral("p.folded")).trimmed().split('\n');
        const auto micros = [&lines](const QByteArray& end) {
            const auto line = std::find_if(lines.begin(), lines.end(), [&](const QByteArray& one) {
                return one.left(one.lastIndexOf(' ')).endsWith(end);
            });
            return line == lines.end() ? -1 : line->mid(line->lastIndexOf(' ') + 1).toInt();
        };
        QCOMPARE(micros("OuterCall"), 2'000'000);
        QCOMPARE(micros("OuterCall;InnerCall"), 1'994'000);
        QCOMPARE(micros("LastCall"), 2'000'000);
    }

    void aTraceTellsTheLineOfEachCall() {
        QVERIFY(OpenProfile() != nullptr);
        Export("p.trace.json");
        const QJsonDocument trace = QJsonDocument::fromJson(m_pRun->Read(QStringLiteral("p.trace.json")));
        const QJsonArray events = trace.object()[QLatin1String("traceEvents")].toArray();
        int found = 0;
        for (const QJsonValue& event : events) {
            const QString name = event[QLatin1String("name")].toString();
            if (name == QLatin1String("LastCall") && event[QLatin1String("args")].isObject()) {
                QCOMPARE(event[QLatin1String("args")][QLatin1String("line")].toInt(), 30);
                ++found;
            }
        }
        QCOMPARE(found, 1);
    }

    void whatIsNotExploredYetIsExploredFirst() {
        CChildFrame* const session = m_pRun->Open(QStringLiteral("order.log"), ExploredLines());
        QVERIFY(ExplorationOf(*session).GetState() != CExploration::State::Done);
        m_pRun->m_user.m_strSaveAnswer = m_pRun->Path(QStringLiteral("p.callgrind"));
        m_pRun->Frame().RunCommand(ID_EXPLORE_EXPORT_PROFILE);
        QVERIFY(QTest::qWaitFor(
            [this] { return m_pRun->Read(QStringLiteral("p.callgrind")).contains("LastCall"); }, 60'000));
        QCOMPARE(ExplorationOf(*session).GetState(), CExploration::State::Done);
    }

    void nothingIsWrittenWithoutAName() {
        QVERIFY(OpenProfile() != nullptr);
        m_pRun->m_user.m_strSaveAnswer.reset();
        m_pRun->Frame().RunCommand(ID_EXPLORE_EXPORT_PROFILE);
        m_pRun->m_user.m_strSaveAnswer = m_pRun->Path(QStringLiteral("p.txt"));
        m_pRun->Frame().RunCommand(ID_EXPLORE_EXPORT_PROFILE);
        QCOMPARE(
            m_pRun->m_user.m_listMessages,
            QStringList(QStringLiteral("The name of a profile's file ends with .folded, .speedscope.json, "
                                       ".trace.json or .callgrind")));
        QVERIFY(!QFile::exists(m_pRun->Path(QStringLiteral("p.txt"))));
    }

    void aProfileThatCannotBeWrittenIsTold() {
        QVERIFY(OpenProfile() != nullptr);
        m_pRun->m_user.m_strSaveAnswer = m_pRun->Path(QStringLiteral("no/such/folder/p.folded"));
        m_pRun->Frame().RunCommand(ID_EXPLORE_EXPORT_PROFILE);
        QVERIFY(QTest::qWaitFor([this] { return !m_pRun->m_user.m_listMessages.isEmpty(); }, 60'000));
        QVERIFY(m_pRun->m_user.m_listMessages.back().startsWith(QStringLiteral("Failed to write ")));
    }

    void theSessionMayCloseWhileAProfileIsWritten() {
        QVERIFY(OpenProfile() != nullptr);
        m_pRun->m_user.m_strSaveAnswer = m_pRun->Path(QStringLiteral("p.speedscope.json"));
        m_pRun->Frame().RunCommand(ID_EXPLORE_EXPORT_PROFILE);
        for (CMDIChildWnd* child : m_pRun->Frame().ClientArea().Children()) {
            if (auto* const session = qobject_cast<CChildFrame*>(child)) {
                session->close();
            }
        }
        CSessionRun::Settle();
        // The whole file or none.
        const QByteArray file = m_pRun->Read(QStringLiteral("p.speedscope.json"));
        QVERIFY(file.isEmpty() || QJsonDocument::fromJson(file).isObject());
        QVERIFY(m_pRun->m_user.m_listMessages.isEmpty());
    }

    void aPictureIsSavedAsPngAtTwiceItsSizeAndAsSvg() {
        auto* const flames = OpenFlames();
        QVERIFY(flames != nullptr);
        Save("f.png");
        const PictureSize size = flames->Picture()->Size();
        QImage image;
        QVERIFY(image.loadFromData(m_pRun->Read(QStringLiteral("f.png")), "PNG"));
        QCOMPARE(image.width(), static_cast<int>(std::ceil(size.width * 2)));
        QCOMPARE(image.height(), static_cast<int>(std::ceil(size.height * 2)));
        QSet<QRgb> colors;
        for (int x = 0; x < image.width(); x += 5) {
            for (int y = 0; y < image.height(); y += 5) {
                colors.insert(image.pixel(x, y));
            }
        }
        QVERIFY2(colors.size() > 3, "something is drawn");
        Save("f.SVG");
        const QByteArray svg = m_pRun->Read(QStringLiteral("f.SVG"));
        QVERIFY(svg.startsWith("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<svg "));
        QVERIFY(svg.endsWith("</svg>\n"));
        QVERIFY(svg.contains("OuterCall</text>"));
        QVERIFY(m_pRun->m_user.m_listMessages.isEmpty());
    }

    void aPictureOfAnotherKindIsRefused() {
        QVERIFY(OpenFlames() != nullptr);
        Save("f.jpg");
        QCOMPARE(m_pRun->m_user.m_listMessages,
                 QStringList(QStringLiteral("The name of a picture's file ends with .png or .svg")));
        m_pRun->m_user.m_strSaveAnswer.reset();
        m_pRun->Frame().RunCommand(ID_EXPLORE_SAVE_PICTURE);
        QCOMPARE(m_pRun->m_user.m_listMessages.size(), 1);
        Save("no/such/folder/f.png");
        QVERIFY(m_pRun->m_user.m_listMessages.back().startsWith(QStringLiteral("Failed to write ")));
    }

private:
    CCallProfileFrame* OpenProfile() {
        return OpenExplore<CCallProfileFrame>(
            *m_pRun, *m_pRun->Open(QStringLiteral("order.log"), ExploredLines()), ID_EXPLORE_CALL_PROFILE);
    }
    CFlameGraphFrame* OpenFlames() {
        auto* const frame = OpenExplore<CFlameGraphFrame>(
            *m_pRun, *m_pRun->Open(QStringLiteral("order.log"), ExploredLines()), ID_EXPLORE_FLAME_GRAPH);
        CSessionRun::Settle();
        return frame;
    }
    void Export(const char* name) {
        m_pRun->m_user.m_strSaveAnswer = m_pRun->Path(QLatin1String(name));
        m_pRun->Frame().RunCommand(ID_EXPLORE_EXPORT_PROFILE);
        // On Windows it is there a moment before it can be read.
        QVERIFY(QTest::qWaitFor([&] { return !m_pRun->Read(QLatin1String(name)).isEmpty(); }, 60'000));
    }
    void Save(const char* name) {
        m_pRun->m_user.m_strSaveAnswer = m_pRun->Path(QLatin1String(name));
        m_pRun->Frame().RunCommand(ID_EXPLORE_SAVE_PICTURE);
    }
};

QTEST_MAIN(ExploreFilesTest)
#include "ExploreFilesTest.moc"
