// Requests.h - what one window wants of another (analyse this process, browse this cache, remember this
// file). No window knows another's room: each says what it wants, and the answers are connected here.
#pragma once

#include <cstdint>
#include <string_view>

namespace carvelot {

class CMainFrame;
class CSessionDocument;

void ConnectRequests(CMainFrame& frame);
void ConnectRequests(CSessionDocument& document);

// "Browse Data": runs the dialog on a new document of that cache, and opens its window when it ends with OK.
void BrowseCache(std::uint32_t process, std::string_view handle, std::string_view name,
                 std::string_view instance);

} // namespace carvelot
