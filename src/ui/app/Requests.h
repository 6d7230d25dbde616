// Requests.h - what one window wants of another (analyse this process, browse this cache, remember this file). No
// window knows another's room: each says what it wants, and the answers are connected here.
#pragma once

#include <cstdint>
#include <string_view>

namespace carvelot {

class CMainFrame;
class CSessionDocument;

void ConnectRequests(CMainFrame& frame);
void ConnectRequests(CSessionDocument& document);

// "Browse Data": runs the dialog on a new document of that cache, and opens its window when it ends with OK.
void BrowseCache(std::uint32_t nProcess, std::string_view strHandle, std::string_view strName,
                 std::string_view strInstance);

} // namespace carvelot
