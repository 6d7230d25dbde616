#include "platform/ProgramIdentity.h"
#include "resources/ui/Icons.h"
#include "shell/ui/CarvelotApp.h"
#include "shell/ui/LookStyle.h"
#include "shell/ui/Text.h"
#include "shell/ui/UserInterface.h"

#include <QApplication>

#include <new>

namespace {

// What a user asked for may be more than the memory holds (a tree, a list, a search): then it did not happen,
// and the program goes on.
class CApplication final : public QApplication {
public:
    using QApplication::QApplication;

    bool notify(QObject* pReceiver, QEvent* pEvent) override {
        try {
            return QApplication::notify(pReceiver, pEvent);
        } catch (const std::bad_alloc&) {
            carvelot::UserInterface().ShowMessage(QStringLiteral("There is not enough memory for this."));
            return true;
        }
    }
};

} // namespace

int main(int argc, char** argv) {
    using namespace carvelot;

    platform::SetProgramIdentifier(kProgramIdentifier);
    CCarvelotApp& app = theApp();
    int nOffice2007 = ID_APPLOOK_OFFICE_2007_BLUE;
    QGuiApplication::setHighDpiScaleFactorRoundingPolicy(Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
    const CApplication application(argc, argv);
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
