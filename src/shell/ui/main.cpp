#include "platform/ProgramIdentity.h"
#include "resources/ui/Icons.h"
#include "shell/ui/CarvelotApp.h"
#include "shell/ui/LookStyle.h"
#include "shell/ui/Text.h"

#include <QApplication>

int main(int argc, char** argv) {
    using namespace carvelot;

    platform::SetProgramIdentifier(kProgramIdentifier);
    CCarvelotApp& app = theApp();
    int nOffice2007 = ID_APPLOOK_OFFICE_2007_BLUE;
    QGuiApplication::setHighDpiScaleFactorRoundingPolicy(Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
    QApplication application(argc, argv);
    QCoreApplication::setOrganizationName(QStringLiteral("Tamrisk"));
    QCoreApplication::setApplicationName(QStringLiteral("Carvelot"));
    QGuiApplication::setApplicationDisplayName({});
    QGuiApplication::setDesktopFileName(QStringLiteral("carvelot"));
    QApplication::setWindowIcon(ApplicationIcon());
    QApplication::setQuitOnLastWindowClosed(false);

    // For messages that come before the window, which brings the stored look.
    ApplyLook(LookOf(kDefaultLook, nOffice2007));

    // The toolkit has taken its own switches out.
    std::vector<std::string> listArguments;
    for (const QString& strArgument : QCoreApplication::arguments().mid(1))
        listArguments.push_back(ToUtf8(strArgument));
    if (!app.InitInstance(listArguments)) {
        app.ExitInstance();
        return 1;
    }
    QApplication::exec();
    return app.ExitInstance();
}
