// Profile (INI) files: sections in square brackets and lines of a key, an equals sign and a value.
//
// Texts and paths are UTF-8. A file named without a folder is the platform's own: on Windows that of the
// Windows folder; elsewhere it is looked for, whatever the case of its name, in $CARVELOT_PROFILE_DIR, else
// in $XDG_CONFIG_HOME/carvelot. A file that is missing or can't be read has no sections; off Windows one of
// more than 16 MiB counts as such.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace carvelot::platform {

/// The value of a key in the first section of that name, or the default. Names compare without case; blanks
/// around the value and one pair of quotes around it are left out. Texts of `bufferUnits` or more UTF-16
/// units are cut to one less. A section without a name has no values: only lines below a header count.
std::string ReadProfileText(std::string_view section, std::string_view key, std::string_view defaultValue,
                            std::size_t bufferUnits, const std::string& file);

/// The number that a value begins with (decimal, or with 0x, 0o or 0b in front); 0 if it begins with none.
/// The default if the key is missing or empty.
std::int32_t ReadProfileInt(std::string_view section, std::string_view key, std::int32_t defaultValue,
                            const std::string& file);

/// The names of the sections in file order, as a walk over a buffer of `bufferUnits` UTF-16 units finds them:
/// there is always a first name, which is empty when the file has no section.
std::vector<std::string> ReadProfileSections(std::size_t bufferUnits, const std::string& file);

/// Sets a value, making section, key and file as needed and leaving all other bytes of the file as they are
/// (where the platform's own call does not do the writing). False if it could not be written; the file is
/// then as it was.
bool WriteProfileText(std::string_view section, std::string_view key, std::string_view value,
                      const std::string& file);

} // namespace carvelot::platform
