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
bool IsEscapedAt(const QString& strPath, qsizetype n) {
    return IsEscaped(strPath[n]) && (n == 0 || !strPath[n - 1].isHighSurrogate());
}

} // namespace

QString PathToQString(std::string_view strPath) {
    const QString strWhole = ToQString(strPath);
    if (ToUtf8(strWhole) == strPath)
        return strWhole;
    // Byte by byte: the shortest piece that is UTF-8 is a character, a byte that begins none stands for
    // itself.
    QString strResult;
    while (!strPath.empty()) {
        std::size_t nLength = 1;
        QString strCharacter;
        for (; nLength <= 4 && nLength <= strPath.size(); ++nLength) {
            strCharacter = ToQString(strPath.substr(0, nLength));
            if (ToUtf8(strCharacter) == strPath.substr(0, nLength))
                break;
            strCharacter.clear();
        }
        if (strCharacter.isEmpty()) {
            nLength = 1;
            strCharacter =
                QChar(static_cast<char16_t>(kEscape + static_cast<unsigned char>(strPath.front())));
        }
        strResult += strCharacter;
        strPath.remove_prefix(nLength);
    }
    return strResult;
}

std::string PathOf(const QString& strPath) {
    std::string strResult;
    qsizetype nStart = 0;
    for (qsizetype n = 0; n < strPath.size(); ++n) {
        if (!IsEscapedAt(strPath, n))
            continue;
        strResult += ToUtf8(strPath.mid(nStart, n - nStart));
        strResult += static_cast<char>(strPath[n].unicode() - kEscape);
        nStart = n + 1;
    }
    return strResult + ToUtf8(strPath.mid(nStart));
}

QString PathOfUrl(const QUrl& url) {
#ifdef _WIN32
    return url.toLocalFile();
#else
    return PathToQString(
        QByteArray::fromPercentEncoding(url.path(QUrl::FullyEncoded).toUtf8()).toStdString());
#endif
}

bool IsSameFile(const QString& strPath, const QString& strOther) {
#ifdef _WIN32
    const QString strCanonical = QFileInfo(strPath).canonicalFilePath();
    return !strCanonical.isEmpty() && strCanonical == QFileInfo(strOther).canonicalFilePath();
#else
    std::error_code error;
    const std::filesystem::path canonical = std::filesystem::canonical(PathOf(strPath), error);
    return !error && canonical == std::filesystem::canonical(PathOf(strOther), error) && !error;
#endif
}

} // namespace carvelot
