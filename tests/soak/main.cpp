// carvelot_soak FOLDER [--seconds N] [--seed N] [--log FILE] [--section FILE] ...
//
// The program under a random driver on a real screen, for as long as it is told to: see Driver.h. FOLDER is
// scratch. It ends with 1 and says why if anything does not hold. What else it needs (a screen with a window
// manager, a home of its own) strength/soak gives it.
#include "soak/Driver.h"

#include "settings/Commands.h"
#include "soak/WindowState.h"
#include "support/Sanitizer.h"
#include "ui/app/CarvelotApp.h"
#include "ui/app/MainFrame.h"
#include "ui/kit/Icons.h"
#include "ui/kit/LookStyle.h"
#include "ui/kit/Text.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QPixmapCache>
#include <QProcess>
#include <QTextStream>

#include <atomic>
#include <chrono>
#include <clocale>
#include <csignal>
#include <cstdio>
#include <execinfo.h>
#include <pthread.h>
#include <thread>
#include <unistd.h>

using namespace carvelot;
using namespace carvelot::soak;

namespace {

// An action that takes longer hangs.
constexpr qint64 kPatience = 60'000; // milliseconds

// Where this thread stands, on standard error, which then holds something.
void TellPlace(int number) {
    void* places[100];
    backtrace_symbols_fd(places, backtrace(places, 100), STDERR_FILENO);
    if (number != SIGUSR1) {
        std::_Exit(128 + number);
    }
}

// Looks whether the driver is at work, from another thread.
class CWatchdog {
public:
    CWatchdog(const CDriver& driver, qint64 patience)
        : m_thread([this, &driver, patience, window = pthread_self()] {
              while (!m_bEnd) {
                  std::this_thread::sleep_for(std::chrono::milliseconds(200));
                  if (driver.SinceBeat() > patience) {
                      std::printf("does not hold: nothing goes on any more, after action %d\n",
                                  driver.Actions());
                      std::fflush(stdout);
                      pthread_kill(window, SIGUSR1);
                      std::this_thread::sleep_for(std::chrono::seconds(2));
                      std::_Exit(3);
                  }
              }
          }) {}
    ~CWatchdog() {
        m_bEnd = true;
        m_thread.join();
    }
    CWatchdog(const CWatchdog&) = delete;
    CWatchdog& operator=(const CWatchdog&) = delete;

private:
    std::atomic<bool> m_bEnd = false;
    std::thread m_thread;
};

// What the program's own main does before its window.
void PrepareApplication() {
    std::setlocale(LC_NUMERIC, "C");
    QCoreApplication::setOrganizationName(QStringLiteral("Tamrisk"));
    QCoreApplication::setApplicationName(QStringLiteral("Carvelot"));
    QGuiApplication::setApplicationDisplayName({});
    QApplication::setWindowIcon(ApplicationIcon());
    QApplication::setQuitOnLastWindowClosed(false);
    int office2007 = ID_APPLOOK_OFFICE_2007_BLUE;
    ApplyLook(LookOf(kDefaultLook, office2007));
}

// Starts the program as a process of its own that says what state it finds, and ends it again.
int TellState(const QString& path) {
    if (!theApp().InitInstance({})) {
        return 2;
    }
    QTimer::singleShot(1500, MainFrame(), [&path] {
        QFile file(path);
        if (file.open(QIODevice::WriteOnly)) {
            file.write(StateOf(*MainFrame()).join(u'\n').toUtf8());
        }
        MainFrame()->close();
    });
    QApplication::exec();
    return theApp().ExitInstance();
}

// How many seconds another process may take to start and end.
constexpr int kStarts = 120;

void AskAnotherProcess(CDriver& driver, const QString& folder) {
    const QString told = folder + QStringLiteral("/state.txt");
    QFile::remove(told);
    QProcess other;
    other.setProcessChannelMode(QProcess::ForwardedChannels);
    other.start(QCoreApplication::applicationFilePath(), {folder, QStringLiteral("--tell-state"), told});
    bool there = false;
    for (int n = 0; n < kStarts && !there; ++n) {
        there = other.waitForFinished(1000);
        driver.StillThere();
    }
    if (!there) {
        other.kill(); // or its end would be told on standard error
        other.waitForFinished();
    }
    if (!there || other.exitStatus() != QProcess::NormalExit || other.exitCode() != 0) {
        driver.Fail(QStringLiteral("another process does not start and end"));
        return;
    }
    QFile file(told);
    const QStringList found =
        file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()).split(u'\n') : QStringList();
    const QStringList differences = Differences(driver.Left(), found);
    if (!differences.isEmpty()) {
        driver.Fail(QStringLiteral("another process does not find what was left: ") +
                    differences.join(QStringLiteral(" | ")));
    }
    driver.StillThere();
}

QString Row(const QStringList& cells) {
    return QStringLiteral("| ") + cells.join(QStringLiteral(" | ")) + QStringLiteral(" |\n");
}

QString Grouped(int number) { return QLocale(QLocale::English).toString(number); }

// Commands that stand in the menus for completeness and that nothing enables.
QStringList Unreachable() { return {QStringLiteral("Save"), QStringLiteral("Print...")}; }

// What comes about in every run of half an hour and more.
constexpr double kAllKinds = 1800; // seconds

void LookForAll(CDriver& driver) {
    if (driver.Seconds() < kAllKinds) {
        return;
    }
    for (const char* kind : {"cache",
                             "cache structure",
                             "checkpoint",
                             "click",
                             "close",
                             "command",
                             "context menu",
                             "dialog left",
                             "double click",
                             "drag",
                             "drop",
                             "exit",
                             "explore",
                             "file dialog",
                             "find",
                             "folded tab",
                             "follow",
                             "header",
                             "in a dialog",
                             "key",
                             "list of a box",
                             "menu",
                             "menu entry",
                             "menu key",
                             "menu left",
                             "open",
                             "open by the dialog",
                             "pane dragged",
                             "pane folded",
                             "pane shown",
                             "pane's button",
                             "pane's tab",
                             "pane's title",
                             "process",
                             "recent file",
                             "row",
                             "shortcut",
                             "tab",
                             "typing",
                             "wheel",
                             "window"}) {
        if (!driver.Kinds().contains(QLatin1String(kind))) {
            driver.Fail(QStringLiteral("it never came to: ") + QLatin1String(kind));
        }
    }
    for (const auto& [name, count] : driver.Commands()) {
        if (count == 0 && !Unreachable().contains(name)) {
            driver.Fail(QStringLiteral("the command never ran: ") + name);
        }
    }
    if (driver.Followed() < driver.Seconds() / 20) {
        driver.Fail(QStringLiteral("hardly any log was followed"));
    }
}

void WriteSection(const QString& path, const CDriver& driver, std::uint32_t seed) {
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
        return;
    }
    QTextStream out(&file);
    int commands = 0;
    int ran = 0;
    for (const auto& [name, count] : driver.Commands()) {
        commands += 1;
        ran += count > 0 ? 1 : 0;
    }
    out << "## Hours of work\n\n"
        << "The window on a screen under a random driver (seed " << seed << ") for "
        << QString::number(driver.Seconds() / 60, 'f', 1) << " minutes: " << Grouped(driver.Actions())
        << " actions of mouse and keyboard, " << driver.Restarts()
        << " times ended and started again, a log that grows followed for "
        << QString::number(driver.Followed() / 60, 'f', 1) << " minutes. " << ran << " of " << commands
        << " commands ran. Not a word on standard error, nothing hung, and after each start window, panes, "
           "toolbars, "
           "options and recent files were as they had been left; each second start was another process's "
           "too. With all "
           "logs closed again memory stays where it was, once the toolkit has met its fonts (its cache of "
           "pictures is off, whose table of names it never empties):\n\n";
    out << Row({QStringLiteral("Minute"), QStringLiteral("Actions"), QStringLiteral("Resident MB"),
                QStringLiteral("Heap MB"), QStringLiteral("Files"), QStringLiteral("Threads"),
                QStringLiteral("Widgets")})
        << "|--:|--:|--:|--:|--:|--:|--:|\n";
    double next = 0;
    for (const CSample& sample : driver.Samples()) {
        const bool last = &sample == &driver.Samples().back();
        if (sample.m_fSeconds < next && !last) {
            continue;
        }
        next += std::max(driver.Seconds() / 6, 10.0);
        out << Row({QString::number(sample.m_fSeconds / 60, 'f', 0), Grouped(sample.m_nActions),
                    QString::number(sample.m_fResident, 'f', 1), QString::number(sample.m_fHeap, 'f', 1),
                    QString::number(sample.m_nFiles), QString::number(sample.m_nThreads),
                    QString::number(sample.m_nWidgets)});
    }
    out << "\n| What was done | Times | | What was done | Times |\n|---|--:|---|---|--:|\n";
    const std::vector<std::pair<QString, int>> kinds(driver.Kinds().begin(), driver.Kinds().end());
    const std::size_t half = (kinds.size() + 1) / 2;
    for (std::size_t n = 0; n < half; ++n) {
        const bool two = n + half < kinds.size();
        out << Row({kinds[n].first,
                    Grouped(kinds[n].second),
                    {},
                    two ? kinds[n + half].first : QString(),
                    two ? Grouped(kinds[n + half].second) : QString()});
    }
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs); // what a hand may do there is known
    QGuiApplication::setHighDpiScaleFactorRoundingPolicy(Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
    theApp();
    const QApplication application(argc, argv);
    PrepareApplication();
    // Of every picture that its styles have kept the toolkit remembers the name for good, when the picture is
    // long gone: twenty megabytes for the actions of an hour. Where none is kept the rest of the memory
    // shows.
    QPixmapCache::setCacheLimit(0);

    QCommandLineParser parser;
    parser.addPositionalArgument(QStringLiteral("folder"), QStringLiteral("for all files that are made"));
    const auto option = [&parser](const char* name, const char* value, const char* usual) {
        const QCommandLineOption added{QLatin1String(name), QString(), QLatin1String(value),
                                       QLatin1String(usual)};
        parser.addOption(added);
        return added;
    };
    const auto seconds = option("seconds", "N", "60");
    const auto seed = option("seed", "N", "1");
    const auto log = option("log", "FILE", "");
    const auto section = option("section", "FILE", "");
    const auto checkpoint = option("checkpoint", "SECONDS", "60");
    const auto ends = option("exit", "SECONDS", "300");
    const auto patience = option("patience", "SECONDS", "60");
    const auto mistake = option("mistake", "leak|noise|hang|forget", "");
    const auto tell = option("tell-state", "FILE", "");
    parser.addHelpOption();
    parser.process(application);
    if (parser.positionalArguments().size() != 1) {
        parser.showHelp(2);
    }
    const QString folder = QDir(parser.positionalArguments().constFirst()).absolutePath();
    QDir::setCurrent(folder);
    if (parser.isSet(tell)) {
        return TellState(parser.value(tell));
    }

    std::signal(SIGUSR1, TellPlace);
    if (!test::kSanitized) {
        for (const int number : {SIGSEGV, SIGABRT, SIGFPE, SIGBUS, SIGILL}) {
            std::signal(number, TellPlace);
        }
    }
    COptions options;
    options.m_fSeconds = parser.value(seconds).toDouble();
    options.m_nSeed = parser.value(seed).toUInt();
    options.m_fCheckpoint = parser.value(checkpoint).toDouble();
    options.m_fExit = parser.value(ends).toDouble();
    options.m_strLog = parser.isSet(log) ? parser.value(log) : folder + QStringLiteral("/actions.txt");
    const QStringList mistakes = {{},
                                  QStringLiteral("leak"),
                                  QStringLiteral("noise"),
                                  QStringLiteral("hang"),
                                  QStringLiteral("forget")};
    options.m_mistake =
        static_cast<EMistake>(std::max<qsizetype>(mistakes.indexOf(parser.value(mistake)), 0));

    CScratch scratch(folder, QStringLiteral(CARVELOT_SOURCE_FOLDER "/samples"));
    CDriver driver(options, scratch);
    if (!driver.IsThere()) {
        std::puts("does not hold: there is no screen that takes input from programs");
        return 1;
    }
    const CWatchdog watchdog(driver,
                             parser.isSet(patience) ? parser.value(patience).toInt() * 1000 : kPatience);
    for (bool again = true; again;) {
        if (!theApp().InitInstance({})) {
            std::puts("does not hold: the program does not start");
            return 1;
        }
        driver.Started();
        QApplication::exec();
        again = driver.Ended();
        theApp().ExitInstance();
        driver.StillThere();
        if (again && driver.Restarts() % 2 == 0) {
            AskAnotherProcess(driver, folder);
        }
    }
    LookForAll(driver);
    for (const auto& [name, count] : driver.Kinds()) {
        std::printf("%8d %s\n", count, name.toUtf8().constData());
    }
    for (const auto& [name, count] : driver.Commands()) {
        std::printf("%8d command %s\n", count, name.toUtf8().constData());
    }
    std::printf("%d actions in %.0f s, %d restarts, followed for %.0f s\n", driver.Actions(),
                driver.Seconds(), driver.Restarts(), driver.Followed());
    if (parser.isSet(section)) {
        WriteSection(parser.value(section), driver, options.m_nSeed);
    }
    for (const QString& failure : driver.Failures()) {
        std::printf("does not hold: %s\n", failure.toUtf8().constData());
    }
    return driver.Failures().isEmpty() ? 0 : 1;
}
