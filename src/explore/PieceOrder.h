// The order in which the files of a rotation, or those of a server's many processes, make up one log.
#pragma once

#include "records/AnalysisSettings.h"
#include "session/CarvelotDoc.h"

#include <string>
#include <string_view>
#include <vector>

namespace carvelot {

// As the paths stand.
std::vector<LogPiece> PiecesAsGiven(const std::vector<std::string>& paths);

// By the first stamped line of each on the clock of all, those at one time and those without any, which come
// last, by name. The stamps are read with the dialects. Each begins a line where its first one is stamped. A
// file that can't be read stays, for its load tells.
std::vector<LogPiece> PiecesByTime(const std::vector<std::string>& paths, CDialects dialects = {});

// Whether one file name comes ahead of another: numbers in them count as numbers.
bool NameComesBefore(std::string_view one, std::string_view other);

} // namespace carvelot
