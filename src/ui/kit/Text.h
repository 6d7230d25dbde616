// Text.h - between the core's UTF-8 and the toolkit's strings.
#pragma once

#include <QString>

#include <string>
#include <string_view>

namespace carvelot {

inline QString ToQString(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

inline std::string ToUtf8(const QString& text) { return text.toStdString(); }

} // namespace carvelot
