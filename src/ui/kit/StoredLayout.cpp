#include "ui/kit/StoredLayout.h"

#include "text/Integers.h"
#include "ui/kit/Text.h"

#include <QCryptographicHash>

#include <algorithm>
#include <charconv>
#include <set>
#include <utility>

namespace carvelot {

namespace {

struct CEdge {
    Qt::DockWidgetArea m_nArea;
    const char* m_pszName;
};
constexpr CEdge kEdges[] = {{Qt::LeftDockWidgetArea, "left"},
                            {Qt::RightDockWidgetArea, "right"},
                            {Qt::TopDockWidgetArea, "top"},
                            {Qt::BottomDockWidgetArea, "bottom"}};

// A number list of its own would be nothing, which is what an unchanged toolbar has.
constexpr std::string_view kNoCommands = "none";

// The parts of a text between dividers, the empty ones too.
std::vector<std::string_view> Split(std::string_view text, char divider) {
    std::vector<std::string_view> parts;
    for (;;) {
        const std::size_t end = text.find(divider);
        parts.push_back(text.substr(0, end));
        if (end == std::string_view::npos) {
            return parts;
        }
        text.remove_prefix(end + 1);
    }
}

// A text that is a number and nothing else.
std::optional<int> WholeNumber(std::string_view text) {
    int number = 0;
    const char* const end = text.data() + text.size();
    const auto [behind, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && behind == end ? std::optional(number) : std::nullopt;
}

QByteArray CheckSum(const QByteArray& block) {
    return QCryptographicHash::hash(block, QCryptographicHash::Sha1).toHex().left(12);
}

} // namespace

std::string Seal(const QByteArray& block) {
    return (QByteArray::number(kLayoutVersion) + ':' + CheckSum(block) + ':' + block.toBase64())
        .toStdString();
}

QByteArray Unseal(std::string_view stored) {
    const std::vector<std::string_view> parts = Split(stored, ':');
    if (parts.size() != 3 || parts[0] != std::to_string(kLayoutVersion)) {
        return {};
    }
    const auto content = QByteArray(parts[2].data(), static_cast<qsizetype>(parts[2].size()));
    const auto block = QByteArray::fromBase64Encoding(content, QByteArray::AbortOnBase64DecodingErrors);
    if (!block || CheckSum(*block) != QByteArray(parts[1].data(), static_cast<qsizetype>(parts[1].size()))) {
        return {};
    }
    return *block;
}

std::vector<int> ReadCommands(std::string_view stored, std::size_t most) {
    std::vector<int> commands;
    while (!stored.empty() && commands.size() < most) {
        const std::string_view number = stored.substr(0, stored.find(','));
        if (!number.empty()) {
            commands.push_back(ReadInteger(number));
        }
        stored.remove_prefix(std::min(number.size() + 1, stored.size()));
    }
    return commands;
}

std::optional<std::vector<int>> ReadChangedCommands(std::string_view stored) {
    if (stored == kNoCommands) {
        return std::vector<int>();
    }
    std::vector<int> commands = ReadCommands(stored, kMostToolBarCommands);
    return commands.empty() ? std::nullopt : std::optional(std::move(commands));
}

std::string WriteChangedCommands(const std::optional<std::vector<int>>& commands) {
    if (!commands) {
        return {};
    }
    return commands->empty() ? std::string(kNoCommands) : WriteCommands(*commands);
}

std::optional<StoredToolBar> ReadToolBar(std::string_view stored) {
    const std::size_t bar = stored.rfind('|');
    if (bar == std::string_view::npos || bar == 0) {
        return std::nullopt;
    }
    return StoredToolBar{ToQString(stored.substr(0, bar)),
                         ReadCommands(stored.substr(bar + 1), kMostToolBarCommands)};
}

std::string WriteToolBar(const StoredToolBar& toolBar) {
    return ToUtf8(toolBar.m_strTitle) + '|' + WriteCommands(toolBar.m_listCommands);
}

std::map<int, int> ReadUserImages(std::string_view stored) {
    std::map<int, int> images;
    for (const std::string_view pair : Split(stored, ',')) {
        const std::size_t equals = std::min(pair.find('='), pair.size());
        const std::optional<int> command = WholeNumber(pair.substr(0, equals));
        const std::optional<int> image = WholeNumber(pair.substr(std::min(equals + 1, pair.size())));
        if (command && image && *image >= 0) {
            images[*command] = *image;
        }
    }
    return images;
}

std::string WriteUserImages(const std::map<int, int>& images) {
    std::string stored;
    for (const auto& [command, image] : images) {
        stored.append(stored.empty() ? "" : ",").append(std::to_string(command)).append("=");
        stored.append(std::to_string(image));
    }
    return stored;
}

const char* EdgeName(Qt::DockWidgetArea edge) {
    const auto* const known = std::ranges::find(kEdges, edge, &CEdge::m_nArea);
    return known != std::end(kEdges) ? known->m_pszName : "";
}

std::vector<StoredFold> ReadFolds(std::string_view stored) {
    std::vector<StoredFold> folds;
    std::set<QString> seen;
    for (const std::string_view text : Split(stored, ';')) {
        const std::vector<std::string_view> parts = Split(text, ':');
        const auto* const edge = std::ranges::find(kEdges, parts[0], &CEdge::m_pszName);
        if (parts.size() != 3 || edge == std::end(kEdges)) {
            continue;
        }
        StoredFold fold{
            edge->m_nArea, std::clamp(ReadInteger(parts[1]), StoredFold::kLeast, StoredFold::kMost), {}};
        for (const std::string_view part : Split(parts[2], ',')) {
            const QString name = ToQString(part);
            if (!name.isEmpty() && seen.insert(name).second) {
                fold.m_listPanes.push_back(name);
            }
        }
        if (!fold.m_listPanes.empty()) {
            folds.push_back(std::move(fold));
        }
    }
    return folds;
}

std::string WriteFolds(const std::vector<StoredFold>& folds) {
    std::string stored;
    for (const StoredFold& fold : folds) {
        stored.append(stored.empty() ? "" : ";").append(EdgeName(fold.m_nEdge)).append(":");
        stored.append(std::to_string(fold.m_nThickness)).append(":");
        for (const QString& pane : fold.m_listPanes) {
            stored.append(&pane == &fold.m_listPanes.front() ? "" : ",").append(ToUtf8(pane));
        }
    }
    return stored;
}

} // namespace carvelot
