#include "ui/kit/PathText.h"

#include "ui/kit/Text.h"

#include <QFileInfo>
#include <QUrl>

#include <filesystem>

namespace carvelot {

namespace {

constexpr char16_t kEscape = 0xDC00;

bool IsEscaped(QChar ch) { return ch.unicode() >= kEscape + 0x80 && ch.unicode() <= kEscape + 0xFF; }

// Whether an escaped byte stands at this place: the second half of a pair looks the same.
bool IsEscapedAt(const QString& path, qsizetype n) {
    return IsEscaped(path[n]) && (n == 0 || !path[n - 1].isHighSurrogate());
}

} // namespace

QString PathToQString(std::string_view path) {
    const QString whole = ToQString(path);
    if (ToUtf8(whole) == path) {
        return whole;
    }
    // Byte by byte: the shortest piece that is UTF-8 is a character, a byte that begins none stands for
    // itself.
    QString result;
    while (!path.empty()) {
        std::size_t length = 1;
        QString character;
        for (; length <= 4 && length <= path.size(); ++length) {
            character = ToQString(path.substr(0, length));
            if (ToUtf8(character) == path.substr(0, length)) {
                break;
            }
            character.clear();
        }
        if (character.isEmpty()) {
            length = 1;
            character = QChar(static_cast<char16_t>(kEscape + static_cast<unsigned char>(path.front())));
        }
        result += character;
        path.remove_prefix(length);
    }
    return result;
}

std::string PathOf(const QString& path) {
    std::string result;
    qsizetype start = 0;
    for (qsizetype n = 0; n < path.size(); ++n) {
        if (!IsEscapedAt(path, n)) {
            continue;
        }
        result += ToUtf8(path.mid(start, n - start));
        result += static_cast<char>(path[n].unicode() - kEscape);
        start = n + 1;
    }
    return result + ToUtf8(path.mid(start));
}

QString PathOfUrl(const QUrl& url) {
#ifdef _WIN32
    return url.toLocalFile();
#else
    return PathToQString(
        QByteArray::fromPercentEncoding(url.path(QUrl::FullyEncoded).toUtf8()).toStdString());
#endif
}

bool IsSameFile(const QString& path, const QString& other) {
#ifdef _WIN32
    const QString canonicalPath = QFileInfo(path).canonicalFilePath();
    return !canonicalPath.isEmpty() && canonicalPath == QFileInfo(other).canonicalFilePath();
#else
    std::error_code error;
    const std::filesystem::path canonical = std::filesystem::canonical(PathOf(path), error);
    return !error && canonical == std::filesystem::canonical(PathOf(other), error) && !error;
#endif
}

} // namespace carvelot
