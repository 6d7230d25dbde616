// What the window keeps of its layout, read from memory without a window: whatever is stored, the values are
// such as can be applied, and written they are read again as they are. LayoutWindowFuzz applies them to a
// window.
#include "support/FuzzFile.h"
#include "ui/LayoutInput.h"

#include <set>

using namespace carvelot;
using fuzz::Require;

namespace {

void CheckBlock(const QByteArray& block) {
    std::string sealed = Seal(block);
    Require(Unseal(sealed) == block, "a block comes back as it was sealed");
    sealed[2] = sealed[2] == '0' ? '1' : '0';
    Require(Unseal(sealed).isEmpty(), "a block with another check sum is none");
}

void CheckCommands(std::string_view stored) {
    const std::vector<int> commands = ReadCommands(stored);
    Require(ReadCommands(WriteCommands(commands)) == commands, "commands are read as they were written");
    const std::vector<int> few = ReadCommands(stored, kMostToolBarCommands);
    Require(few.size() == std::min(commands.size(), kMostToolBarCommands),
            "a toolbar takes its first 200 commands");
    Require(std::equal(few.begin(), few.end(), commands.begin()),
            "a toolbar keeps the order of its commands");
}

void CheckToolBar(std::string_view stored) {
    const auto toolBar = ReadToolBar(stored);
    Require(toolBar.has_value() == (stored.rfind('|') != std::string_view::npos && stored.rfind('|') != 0),
            "a toolbar has a title");
    if (toolBar) {
        const auto again = ReadToolBar(WriteToolBar(*toolBar));
        Require(again && again->m_strTitle == toolBar->m_strTitle &&
                    again->m_listCommands == toolBar->m_listCommands,
                "a toolbar is read as it was written");
    }
}

void CheckImages(std::string_view stored) {
    const std::map<int, int> images = ReadUserImages(stored);
    Require(std::ranges::all_of(images, [](const auto& item) { return item.second >= 0; }),
            "an image has a place in the strip");
    Require(ReadUserImages(WriteUserImages(images)) == images, "images are read as they were written");
}

void CheckFolds(std::string_view stored) {
    const std::vector<StoredFold> folds = ReadFolds(stored);
    for (const StoredFold& fold : folds) {
        Require(*EdgeName(fold.m_nEdge) != '\0', "a fold has an edge");
        Require(fold.m_nThickness >= StoredFold::kLeast && fold.m_nThickness <= StoredFold::kMost,
                "a fold has a size to work in");
        Require(!fold.m_listPanes.empty(), "a fold has panes");
    }
    const std::string written = WriteFolds(folds);
    Require(WriteFolds(ReadFolds(written)) == written, "folds are read as they were written");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::ReadLayoutInput(
        fuzz::AsText(data, size), [](const char*, const QByteArray& block) { CheckBlock(block); },
        [](std::string_view name, std::string_view text) {
            // Each by its own reader, and a name that is nobody's by all of them.
            const bool any = name.empty();
            if (any || name == "Layout" || name == "Geometry") {
                Require(Unseal(Seal(Unseal(text))) == Unseal(text), "a block is sealed as it was read");
            }
            if (any || name == "AutoHide") {
                CheckFolds(text);
            }
            if (any || name == "UserImages") {
                CheckImages(text);
            }
            if (any || name.starts_with("UserToolBar")) {
                CheckToolBar(text);
            }
            if (any || name == "UsedCommands" || name.starts_with("ToolBar")) {
                CheckCommands(text);
            }
        });
    return 0;
}
