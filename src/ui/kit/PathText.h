// PathText.h - file names between the core and the toolkit. Off Windows a name is bytes that need not be
// UTF-8: the toolkit's own conversion would lose them, and with them the file.
#pragma once

#include <QString>

#include <string>
#include <string_view>

class QUrl;

namespace carvelot {

// A path as the toolkit holds it. A byte that is no UTF-8 becomes the lone surrogate U+DC00 plus its value,
// which no valid text holds. Such a path is handed on, and shown as ToQString shows it.
QString PathToQString(std::string_view path);

// The bytes behind such a path.
std::string PathOf(const QString& path);

// The path of a local file's address, as it comes with a drop.
QString PathOfUrl(const QUrl& url);

// Whether two paths lead to the same file that is there.
bool IsSameFile(const QString& path, const QString& other);

} // namespace carvelot
