// The code page of log files and other 8-bit texts, at the edge to the UTF-8 inside.
#pragma once

#include <string>
#include <string_view>

namespace carvelot::platform {

bool IsAscii(std::string_view text);

/// Strict UTF-8: no overlong form, no surrogate, nothing above U+10FFFF.
bool IsValidUtf8(std::string_view text);

/// The text of 8-bit bytes as UTF-8. On Windows the bytes are in the system's ANSI code page; elsewhere they
/// are UTF-8 if they are valid UTF-8, else Windows-1252 with its five undefined bytes as the C1 controls of
/// the same number. Returns `bytes` itself when nothing is to be converted, else a view of `scratch`.
std::string_view BytesToUtf8(std::string_view bytes, std::string& scratch);

/// What those bytes are in that are not UTF-8: "Windows-1252".
std::string CodePageName();

/// The way back: the ANSI code page on Windows, with `?` for what it lacks; UTF-8 elsewhere.
std::string Utf8ToBytes(std::string_view utf8);

/// A text as a file in text mode holds it: in the code page and, on Windows, with CR LF for each line feed.
std::string Utf8ToTextFile(std::string_view utf8);

} // namespace carvelot::platform
