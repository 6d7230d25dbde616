// Release.h - giving memory back.
#pragma once

namespace carvelot {

// Empties a container and gives its memory back. `container = {}` would take an empty list of values over and
// keep the room; a string keeps it even when an empty string is moved into it.
template <class Container> void Release(Container& container) { Container().swap(container); }

} // namespace carvelot
