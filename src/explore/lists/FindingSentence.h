// A finding as one sentence for a reader who does not know the rules.
#pragma once

#include "explore/Findings.h"

#include <string>
#include <string_view>

namespace carvelot {

// "F4211FSEditLine failed: item HB-2200 is not set up". On one line, whatever the texts hold.
std::string FindingSentence(const ExploredSession& explored, const Finding& finding);

// A sign ahead of it that says its severity to those who don't tell its colour: "●", "▲", "■".
std::string_view SignOf(Severity severity);

} // namespace carvelot
