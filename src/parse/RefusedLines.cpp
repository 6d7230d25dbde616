#include "parse/RefusedLines.h"

#include "text/TextColumns.h"

#include <utility>

namespace carvelot {

void RefusedLines::Keep(RefusalReason reason, std::string_view text) {
    RefusedLine line{reason, 0, {}};
    for (std::size_t characters = 0; !text.empty() && characters < RefusedLine::kLongestText; ++characters) {
        AppendCodePoint(line.text, TakeCodePoint(text));
    }
    if (!text.empty()) {
        line.text.append("\u2026");
    }
    first.push_back(std::move(line));
    unplaced = true;
}

} // namespace carvelot
