#include "ui/app/ToolBarImages.h"

#include <QFileInfo>
#include <QImage>

namespace carvelot {

bool CToolBarImages::Load(const QString& path) {
    constexpr qint64 kMaximum = 819200;
    const QFileInfo info(path);
    if (!info.isFile() || info.size() > kMaximum) {
        return false;
    }
    QImage strip;
    if (!strip.load(path, "BMP") || strip.height() < 16 || strip.width() < 16) {
        return false;
    }
    strip = strip.convertToFormat(QImage::Format_ARGB32);
    // Button grey is the background of such strips.
    for (int y = 0; y < strip.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(strip.scanLine(y));
        for (int x = 0; x < strip.width(); ++x) {
            if (line[x] == qRgb(192, 192, 192)) {
                line[x] = qRgba(0, 0, 0, 0);
            }
        }
    }
    for (int x = 0; x + 16 <= strip.width(); x += 16) {
        m_listImages << QIcon(QPixmap::fromImage(strip.copy(x, 0, 16, 16)));
    }
    return true;
}

} // namespace carvelot
