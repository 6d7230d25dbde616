// What can be told of a file without opening it in a way that hinders anybody.
#pragma once

#include <cstdint>
#include <string>

namespace carvelot::platform {

/// Which file stands at a path: another one has another identity for as long as both exist.
struct FileIdentity {
    std::uint64_t volume = 0;
    std::uint64_t file = 0;

    bool operator==(const FileIdentity&) const = default;
};

struct FileState {
    enum class Presence {
        There,
        Missing,
        NotToBeHad, // something stands there that is no regular file, or nothing can be told at present
    };

    Presence presence = Presence::NotToBeHad;
    // Of a file that is there.
    std::uint64_t size = 0;
    FileIdentity identity;
};

/// `path` is UTF-8.
FileState LookAtFile(const std::string& path);

} // namespace carvelot::platform
