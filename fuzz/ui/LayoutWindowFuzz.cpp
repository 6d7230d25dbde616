// A window that finds stored texts of any content, and, behind a check sum that is right, blocks of any
// bytes: hostile layouts applied. Reading them alone is LayoutFuzz, which takes thousands of inputs in the
// time of one.
#include "platform/Registry.h"
#include "settings/AppSettings.h"
#include "support/FuzzFile.h"
#include "ui/LayoutInput.h"
#include "ui/UiSupport.h"

#include <QApplication>

#include <cstdlib>

using namespace carvelot;

namespace {

void Store(std::string_view input) {
    platform::CRegistryKey key;
    key.Create(platform::ERegRoot::CurrentUser, kWorkspaceKey);
    key.DeleteContent();
    fuzz::ReadLayoutInput(
        input, [&](const char* name, const QByteArray& block) { key.SetString(name, Seal(block)); },
        [&](std::string_view name, std::string_view text) {
            if (text.size() == 1) {
                key.SetDword(name, static_cast<unsigned char>(text[0]));
            } else {
                key.SetString(name, text);
            }
        });
}

// Never destroyed: the toolkit's own statics may be gone before ours.
void StartApplication() {
    static int argc = 1;
    static char name[] = "carvelot";
    static char* argv[] = {name, nullptr};
    static auto* const application = new QApplication(argc, argv);
    (void)application;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    StartApplication();
    static const QTemporaryDir folder;
    qputenv("CARVELOT_REGISTRY", folder.filePath(QStringLiteral("registry.ini")).toUtf8());
    Store(fuzz::AsText(data, size));
    const test::CFakeInterface user;
    test::CRun run(folder);
    fuzz::Require(run.m_bStarted, "the window opens whatever is stored");
    fuzz::Require(run.Frame().isVisible(), "the window shows");
    fuzz::Require(run.Frame().menuBar()->actions().size() > 3, "the window has its menus");
    const QSize window = run.Frame().size();
    fuzz::Require(window.width() > 50 && window.height() > 50, "the window has a size to work in");
    (void)platform::TakeSetAside();
    run.Frame().RestoreDefaultLayout();
    for (const CDockablePane* pane : run.Frame().Panes()) {
        fuzz::Require(!pane->isFloating(), "the default layout brings every pane back");
    }
    return 0;
}
