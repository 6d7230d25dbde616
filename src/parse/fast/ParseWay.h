#pragma once

namespace carvelot {

// How lines are read. Both ways give the same records; the fast one knows most lines by how earlier ones
// began, and their words by where the scan of a block says that they may stand.
enum class ParseWay { Fast, Plain };

} // namespace carvelot
