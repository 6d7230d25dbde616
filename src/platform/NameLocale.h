// How the C library reads names that libraries hand it as 8-bit text.
#pragma once

namespace carvelot::platform {

/// While it lives the calling thread takes such names for UTF-8, whatever the user's locale is. Without
/// effect where names are not 8-bit.
class Utf8Names {
public:
    Utf8Names();
    ~Utf8Names();
    Utf8Names(const Utf8Names&) = delete;
    Utf8Names& operator=(const Utf8Names&) = delete;

private:
    [[maybe_unused]] void* m_pBefore = nullptr;
};

} // namespace carvelot::platform
