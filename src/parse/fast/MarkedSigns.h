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

// `text` is a slice of the line, and not empty for a line of a batch job to be known. Of the signs those are
// found that the marks were made for.
LineSigns FindSigns(std::string_view text, std::string_view line, const LineMarks& marks);

} // namespace carvelot
