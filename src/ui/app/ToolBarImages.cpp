#include "ui/app/ToolBarImages.h"

#include <QFileInfo>
#include <QImage>

namespace carvelot {

bool CToolBarImages::Load(const QString& strPath) {
    constexpr qint64 kMaximum = 819200;
    const QFileInfo info(strPath);
    if (!info.isFile() || info.size() > kMaximum)
        return false;
    QImage strip;
    if (!strip.load(strPath, "BMP") || strip.height() < 16 || strip.width() < 16)
        return false;
    strip = strip.convertToFormat(QImage::Format_ARGB32);
    // Button grey is the background of such strips.
    for (int nY = 0; nY < strip.height(); ++nY) {
        auto* pLine = reinterpret_cast<QRgb*>(strip.scanLine(nY));
        for (int nX = 0; nX < strip.width(); ++nX) {
            if (pLine[nX] == qRgb(192, 192, 192))
                pLine[nX] = qRgba(0, 0, 0, 0);
        }
    }
    for (int nX = 0; nX + 16 <= strip.width(); nX += 16)
        m_listImages << QIcon(QPixmap::fromImage(strip.copy(nX, 0, 16, 16)));
    return true;
}

} // namespace carvelot
