#include "platform/CrashDump.h"
#include "platform/DynamicLibrary.h"
#include "platform/ProgramIdentity.h"
#include "ui/app/CarvelotApp.h"
#include "ui/kit/Icons.h"
#include "ui/kit/LookStyle.h"
#include "ui/kit/Text.h"
#include "ui/kit/UserInterface.h"

#include <QApplication>

#include <clocale>
#include <new>
#include <string>
#include <vector>

namespace {

// What a user asked for may be more than the memory holds (a tree, a list, a search): then it did not happen,
// and the program goes on.
class CApplication final : public QApplication {
public:
    using QApplication::QApplication;

    bool notify(QObject* receiver, QEvent* event) override {
        try {
            return QApplication::notify(receiver, event);
        } catch (const std::bad_alloc&) {
            carvelot::UserInterface().ShowMessage(QStringLiteral("There is not enough memory for this."));
            return true;
        }
    }
};

} // namespace

int main(int argc, char** argv) {
    using namespace carvelot;

    platform::KeepCrashDumps(platform::ECrashNotice::Box);
    platform::CloseLibrarySearch();
    platform::SetProgramIdentifier(kProgramIdentifier);
    CCarvelotApp& app = theApp();
    int office2007 = ID_APPLOOK_OFFICE_2007_BLUE;
    QGuiApplication::setHighDpiScaleFactorRoundingPolicy(Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
    const CApplication application(argc, argv);
    // The toolkit takes over the user's locale. Numbers in texts and files have a point all the same, those
    // that a bound library prints included.
    std::setlocale(LC_NUMERIC, "C");
    QCoreApplication::setOrganizationName(QStringLiteral("Tamrisk"));
    QCoreApplication::setApplicationName(QStringLiteral("Carvelot"));
    QGuiApplication::setApplicationDisplayName({});
    QGuiApplication::setDesktopFileName(QStringLiteral("carvelot"));
    QApplication::setWindowIcon(ApplicationIcon());
    QApplication::setQuitOnLastWindowClosed(false);

    // For messages that come before the window, which brings the stored look.
    ApplyLook(LookOf(kDefaultLook, office2007));

#ifdef Q_OS_WIN
    // The toolkit has taken its own switches out.
    std::vector<std::string> arguments;
    for (const QString& argument : QCoreApplication::arguments().mid(1)) {
        arguments.push_back(ToUtf8(argument));
    }
#else
    // So it has here, and left the other arguments' bytes as they came: a file's name need not be UTF-8.
    const std::vector<std::string> arguments(argv + 1, argv + argc);
#endif
    if (!app.InitInstance(arguments)) {
        app.ExitInstance();
        return 1;
    }
    QApplication::exec();
    return app.ExitInstance();
}
