// What the window keeps of its layout: stored texts of any content, and, behind a check sum that is right,
// blocks of any bytes.
//
// The first byte says what the rest is: "L" a block of the panes' and toolbars' layout, "G" one of the
// window's geometry, anything else lines of a value's name, "=" and its text.
#include "platform/Registry.h"
#include "settings/AppSettings.h"
#include "support/FuzzFile.h"
#include "ui/UiSupport.h"

#include <QApplication>
#include <QCryptographicHash>

#include <algorithm>
#include <cstdlib>

using namespace carvelot;

namespace {

std::string Sealed(std::string_view bytes) {
    const QByteArray block(bytes.data(), static_cast<qsizetype>(bytes.size()));
    const QByteArray sum = QCryptographicHash::hash(block, QCryptographicHash::Sha1).toHex().left(12);
    return ("1:" + sum + ':' + block.toBase64()).toStdString();
}

void Store(std::string_view input) {
    platform::CRegistryKey key;
    key.Create(platform::ERegRoot::CurrentUser, kWorkspaceKey);
    key.DeleteContent();
    const char kind = input.empty() ? ' ' : input[0];
    input.remove_prefix(input.empty() ? 0 : 1);
    if (kind == 'L' || kind == 'G') {
        key.SetString(kind == 'L' ? "Layout" : "Geometry", Sealed(input));
        return;
    }
    for (int values = 0; !input.empty() && values < 20; ++values) {
        const std::size_t end = std::min(input.find('\n'), input.size());
        const std::string_view line = input.substr(0, end);
        const std::size_t equals = std::min(line.find('='), line.size());
        const std::string_view text = line.substr(std::min(equals + 1, line.size()));
        if (text.size() == 1) {
            key.SetDword(line.substr(0, equals), static_cast<unsigned char>(text[0]));
        } else {
            key.SetString(line.substr(0, equals), text);
        }
        input.remove_prefix(std::min(end + 1, input.size()));
    }
}

// Never destroyed: the toolkit's own statics may be gone before ours.
void StartApplication() {
    static int argc = 1;
    static char name[] = "carvelot";
    static char* argv[] = {name, nullptr};
    static auto* const pApplication = new QApplication(argc, argv);
    (void)pApplication;
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
    run.Frame().RestoreDefaultLayout();
    for (const CDockablePane* pPane : run.Frame().Panes()) {
        fuzz::Require(!pPane->isFloating(), "the default layout brings every pane back");
    }
    return 0;
}
