#include "platform/CommandLine.h"
#include "resources/ui/Icons.h"
#include "shell/ui/CarvelotApp.h"

#include <QApplication>

int main(int argc, char** argv) {
    using namespace carvelot;

    CCarvelotApp& app = theApp();
    QGuiApplication::setHighDpiScaleFactorRoundingPolicy(Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
    QApplication application(argc, argv);
    QCoreApplication::setOrganizationName(QStringLiteral("Tamrisk"));
    QCoreApplication::setApplicationName(QStringLiteral("Carvelot"));
    QGuiApplication::setApplicationDisplayName({});
    QGuiApplication::setDesktopFileName(QStringLiteral("carvelot"));
    QApplication::setWindowIcon(ApplicationIcon());
    QApplication::setQuitOnLastWindowClosed(false);

    // The toolkit has taken its own switches out of argv.
    std::vector<std::string> listArguments = platform::Arguments(argc, argv);
    listArguments.erase(listArguments.begin());
    if (!app.InitInstance(listArguments)) {
        app.ExitInstance();
        return 1;
    }
    QApplication::exec();
    return app.ExitInstance();
}
