// CacheFetch.h - where the rows of a live cache come from.
#pragma once

#include "live/CompanionLibrary.h"
#include "platform/DynamicLibrary.h"

#include <cstdint>

namespace carvelot {

// One fetch: bound when it begins, let go of when it ends.
class ICacheFetch {
public:
    enum EBound { Bound, NoLibrary, NoEntryPoint };

    virtual ~ICacheFetch() = default;
    virtual EBound Bind() = 0;
    // See FCacheFetch.
    virtual std::int32_t Fetch(std::uint32_t process, std::uint64_t handle, std::uint64_t& cursor, void* row,
                               std::int32_t rowSize, std::int32_t first) = 0;
};

// The companion library, loaded anew for each fetch and released with the object.
class CCompanionFetch final : public ICacheFetch {
public:
    EBound Bind() override;
    std::int32_t Fetch(std::uint32_t process, std::uint64_t handle, std::uint64_t& cursor, void* row,
                       std::int32_t rowSize, std::int32_t first) override;

private:
    platform::CDynamicLibrary m_library;
    FCacheFetch m_pfnFetch = nullptr;
};

} // namespace carvelot
