#include "ui/kit/Icons.h"

#include "settings/Commands.h"

#include <QFile>
#include <QIconEngine>
#include <QPainter>
#include <QPixmap>
#include <QPixmapCache>

#include <cmath>
#include <span>

namespace carvelot {

namespace {

constexpr int kUnits = 16; // the width of every drawing
constexpr int kSizes[] = {16, 20, 24, 32, 48, 64, 128, 256};

// The session trees' pictures, by their numbers.
constexpr const char* kTreeImages[] = {
    /* 0 */ "no-entry",
    /* 1 */ "warning",
    /* 2 */ "tick",
    /* 3 */ "database-page",
    /* 4 */ "arrow-right",
    /* 5 */ "arrow-left",
    /* 6 */ "letters-er",
    /* 7 */ "panel",
    /* 8 */ "page-with-marks",
    /* 9 */ "framed-window",
    /* 10 */ "tick-ringed",
    /* 11 */ "warning-ringed",
    /* 12 */ "information",
    /* 13 */ "person",
    /* 14 */ "monitor",
    /* 15 */ "pen",
    /* 16 */ "gear",
    /* 17 */ "disc",
    /* 18 */ "disc-blue",
    /* 19 */ "disc-green",
    /* 20 */ "disc-red",
    /* 21 */ "framed-sheet",
    /* 22 */ "flag",
};

// Those of the Cache Details pane.
constexpr const char* kCacheImages[] = {
    /* 0 */ "cache",
    /* 1 */ "cache-add",
    /* 2 */ "cache-delete",
    /* 3 */ "cache-update",
    /* 4 */ "cache-initialise",
    /* 5 */ "cache-fetch",
    /* 6 */ "cache-row",
    /* 7 */ "cursor",
    /* 8 */ "cursor-close",
    /* 9 */ "cursor-open",
    /* 10 */ "cache-terminate",
};

struct CommandPicture {
    int m_nId;
    const char* m_pszName;
};

constexpr CommandPicture kCommandImages[] = {
    {ID_FILE_NEW, "file-new"},
    {ID_FILE_OPEN, "file-open"},
    {ID_FILE_SAVE, "file-save"},
    {ID_FILE_PRINT, "file-print"},
    {ID_EDIT_UNDO, "edit-undo"},
    {ID_EDIT_CUT, "edit-cut"},
    {ID_EDIT_COPY, "edit-copy"},
    {ID_EDIT_PASTE, "edit-paste"},
    {ID_SESSION_ANALYZE, "log-analyze"},
    {ID_PROCESS_ANALYZE, "log-analyze"},
    {ID_SESSION_CLEAR_DEBUG_FILE, "log-clear"},
    {ID_PROCESS_TRUNC, "log-clear"},
    {ID_SESSION_OPEN_AS_TEXT, "log-as-text"},
    {ID_CACHE_DEFINE_STRUCTURE, "cache-define"},
    {ID_CACHE_REFRESH_DATA, "cache-refresh"},
    {ID_CACHE_BROWSE_DATA, "cache-browse"},
    {ID_TOOLS_GLOBAL_TABLES, "global-tables"},
    {ID_TOOLS_CONVERT_DATES, "convert-dates"},
    {ID_TOOLS_JDE_SETTINGS, "jde-settings"},
    {ID_TOOLS_OPTIONS, "options"},
    {ID_VIEW_CUSTOMIZE, "customize"},
    {ID_EXPLORE_OVERVIEW, "explore-overview"},
    {ID_EXPLORE_TIMELINE, "explore-timeline"},
    {ID_EXPLORE_CALL_PROFILE, "explore-profile"},
    {ID_EXPLORE_FLAME_GRAPH, "explore-flame"},
    {ID_EXPLORE_STATEMENTS, "explore-statements"},
    {ID_EXPLORE_FINDINGS, "explore-findings"},
    {ID_EXPLORE_ABOUT_LOG, "explore-about"},
    {ID_EXPLORE_NEXT_FINDING, "explore-next"},
    {ID_EXPLORE_PREVIOUS_FINDING, "explore-previous"},
    {ID_EXPLORE_COMPARE, "explore-compare"},
    {ID_EXPLORE_EXPORT_PROFILE, "explore-export"},
    {ID_EXPLORE_SAVE_PICTURE, "explore-picture"},
    {ID_EXPLORE_OPEN_PIECES, "explore-pieces"},
    {ID_EXPLORE_FOLLOW, "explore-follow"},
    {ID_VIEW_RESTORE_LAYOUT, "restore-layout"},
    {ID_VIEW_STATUS_BAR, "status-bar"},
    {ID_VIEW_TOOLBAR, "toolbar"},
    {ID_PROCESS_REFRESH, "process-refresh"},
    {ID_PROCESS_TOGGLE, "process-tracing"},
    {ID_PROCESS_CLEAR_CACHE, "process-clear-cache"},
    {ID_FIND_FIND, "find"},
    {ID_FILE_CLOSE, "window-close"},
    {ID_WINDOW_CLOSE_ALL, "window-close-all"},
    {ID_WINDOW_WINDOWS, "windows"},
    {ID_WINDOW_NEW_HORIZONTAL_GROUP, "tab-group-horizontal"},
    {ID_WINDOW_NEW_VERTICAL_GROUP, "tab-group-vertical"},
    {ID_WINDOW_NEXT_PANE, "pane-next"},
    {ID_WINDOW_PREV_PANE, "pane-previous"},
    {ID_APP_ABOUT, "about"},
    {ID_APP_EXIT, "exit"},
    {ID_APPLOOK_WINDOWS_2000, "look-windows-2000"},
    {ID_APPLOOK_OFFICE_XP, "look-office-xp"},
    {ID_APPLOOK_WINDOWS_XP, "look-windows-xp"},
    {ID_APPLOOK_OFFICE_2003, "look-office-2003"},
    {ID_APPLOOK_VS_2005, "look-visual-studio-2005"},
    {ID_APPLOOK_VS_2008, "look-visual-studio-2008"},
    {ID_APPLOOK_OFFICE_2007_BLUE, "look-office-2007-blue"},
    {ID_APPLOOK_OFFICE_2007_BLACK, "look-office-2007-black"},
    {ID_APPLOOK_OFFICE_2007_SILVER, "look-office-2007-silver"},
    {ID_APPLOOK_OFFICE_2007_AQUA, "look-office-2007-aqua"},
    {ID_APPLOOK_WINDOWS_7, "look-windows-7"},
};

QString PictureFile(const QString& name, int size) {
    return QStringLiteral(":/icons/%1-%2.png").arg(name).arg(size);
}

// One drawing at all sizes that the build has rendered. A picture that is asked for at one of them is shown
// as it is, any other is made from the next larger.
class CPictureEngine final : public QIconEngine {
public:
    explicit CPictureEngine(QString name) : m_name(std::move(name)) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override {
        const double ratio = painter->device() != nullptr ? painter->device()->devicePixelRatio() : 1.0;
        painter->drawPixmap(rect, scaledPixmap(rect.size() * ratio, mode, state, ratio));
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        return scaledPixmap(size, mode, state, 1.0);
    }

    // size is in device pixels.
    QPixmap scaledPixmap(const QSize& size, QIcon::Mode mode, QIcon::State, qreal) override {
        if (size.isEmpty()) {
            return {};
        }
        const bool disabled = mode == QIcon::Disabled;
        const QString key = QStringLiteral("carvelot/%1/%2/%3/%4")
                                .arg(m_name)
                                .arg(size.width())
                                .arg(size.height())
                                .arg(disabled);
        QPixmap pixmap;
        if (!QPixmapCache::find(key, &pixmap)) {
            QImage image = Picture(size);
            if (disabled) {
                FadeToGrey(image);
            }
            pixmap = QPixmap::fromImage(std::move(image));
            QPixmapCache::insert(key, pixmap);
        }
        return pixmap;
    }

    QSize actualSize(const QSize& size, QIcon::Mode, QIcon::State) override { return size; }
    bool isNull() override { return false; }
    QIconEngine* clone() const override { return new CPictureEngine(*this); }
    QString key() const override { return QStringLiteral("carvelot"); }
    QList<QSize> availableSizes(QIcon::Mode, QIcon::State) override { return StoredSizes(); }

private:
    // The drawing as large as it gets in the field, in its middle.
    QImage Picture(const QSize& field) const {
        QImage image(field, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        const QSizeF drawing = QSizeF(QImage(PictureFile(m_name, kUnits)).size());
        if (drawing.isEmpty()) {
            return image;
        }
        const QSizeF size = drawing.scaled(field, Qt::KeepAspectRatio);
        const QPointF at(std::floor((field.width() - size.width()) / 2),
                         std::floor((field.height() - size.height()) / 2));
        const QImage stored(PictureFile(m_name, StoredSize(size.width())));
        QPainter painter(&image);
        if (stored.width() == std::lround(size.width())) {
            painter.drawImage(at, stored);
        } else {
            painter.setRenderHint(QPainter::SmoothPixmapTransform);
            painter.drawImage(QRectF(at, size), stored);
        }
        return image;
    }

    // The first size that is large enough, or the largest.
    int StoredSize(double width) const {
        int stored = kUnits;
        for (const QSize& size : StoredSizes()) {
            if (stored >= std::lround(width)) {
                break;
            }
            stored = size.width();
        }
        return stored;
    }

    QList<QSize> StoredSizes() const {
        QList<QSize> sizes;
        for (const int size : kSizes) {
            if (QFile::exists(PictureFile(m_name, size))) {
                sizes << QSize(size, size);
            }
        }
        return sizes;
    }

    static void FadeToGrey(QImage& image) {
        for (int y = 0; y < image.height(); ++y) {
            auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
            for (int x = 0; x < image.width(); ++x) {
                const QRgb pixel = qUnpremultiply(line[x]);
                const int grey = 96 + qGray(pixel) * 5 / 9;
                line[x] = qPremultiply(qRgba(grey, grey, grey, qAlpha(pixel) * 5 / 8));
            }
        }
    }

    QString m_name;
};

QIcon NamedIcon(const char* name) { return QIcon(new CPictureEngine(QString::fromLatin1(name))); }

} // namespace

bool LoadImageStrip(const char* name, QList<QIcon>& images) {
    images.clear();
    const QLatin1String strip(name);
    const bool tree = strip == QLatin1String("TreeImages");
    if (!tree && strip != QLatin1String("cacheicons")) {
        return false;
    }
    for (const char* picture : tree ? std::span<const char* const>(kTreeImages) : kCacheImages) {
        images << NamedIcon(picture);
    }
    return true;
}

QIcon CommandIcon(int id) {
    for (const CommandPicture& picture : kCommandImages) {
        if (picture.m_nId == id) {
            return NamedIcon(picture.m_pszName);
        }
    }
    return {};
}

QIcon ApplicationIcon() { return NamedIcon("application"); }

QIcon SessionIcon() { return NamedIcon("log-analyze"); }

QIcon CacheIcon() { return NamedIcon(kCacheImages[0]); }

} // namespace carvelot
