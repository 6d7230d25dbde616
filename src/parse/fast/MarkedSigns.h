// The words that classify a statement, looked for only at the places that the scan of a block marked.
#pragma once

#include "parse/Classifier.h"
#include "parse/LogReader.h"

#include <string_view>

namespace carvelot {

struct LineSigns {
    TextSigns inText;
    bool ubeInLine = false; // "--UBE--" stands anywhere in the line
};

// `text` is a slice of the line; an empty one has no signs, nor is the line then looked at. Those signs are
// found that the scan marks for the line's format.
LineSigns FindSigns(std::string_view text, std::string_view line, const LineMarks& marks);

} // namespace carvelot
