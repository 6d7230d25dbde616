// What a layout's fuzz targets take: texts that the window would find stored, of any content.
//
// The first byte says what the rest is: "L" a block of the panes' and toolbars' layout, "G" one of the
// window's geometry, anything else lines of a value's name, "=" and its text.
#pragma once

#include "ui/kit/StoredLayout.h"

#include <algorithm>
#include <string>
#include <string_view>

namespace carvelot::fuzz {

// Calls `block` with a name and the bytes of a block, or `text` with each value's name and text.
template <class FBlock, class FText> void ReadLayoutInput(std::string_view input, FBlock block, FText text) {
    const char kind = input.empty() ? ' ' : input[0];
    input.remove_prefix(input.empty() ? 0 : 1);
    if (kind == 'L' || kind == 'G') {
        block(kind == 'L' ? "Layout" : "Geometry",
              QByteArray(input.data(), static_cast<qsizetype>(input.size())));
        return;
    }
    for (int values = 0; !input.empty() && values < 20; ++values) {
        const std::size_t end = std::min(input.find('\n'), input.size());
        const std::string_view line = input.substr(0, end);
        const std::size_t equals = std::min(line.find('='), line.size());
        text(line.substr(0, equals), line.substr(std::min(equals + 1, line.size())));
        input.remove_prefix(std::min(end + 1, input.size()));
    }
}

} // namespace carvelot::fuzz
