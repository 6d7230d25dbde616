// Text.h - between the core's UTF-8 and the toolkit's strings.
#pragma once

#include <QString>

#include <string>
#include <string_view>

namespace carvelot {

inline QString ToQString(std::string_view strText) {
    return QString::fromUtf8(strText.data(), static_cast<qsizetype>(strText.size()));
}

inline std::string ToUtf8(const QString& strText) { return strText.toStdString(); }

} // namespace carvelot
