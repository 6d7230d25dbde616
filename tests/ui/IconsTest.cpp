#include "ui/kit/Icons.h"

#include "settings/Commands.h"
#include "ui/kit/Look.h"

#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QImage>
#include <QPixmap>
#include <QSet>
#include <QTest>

using namespace carvelot;

namespace {

// The picture and its size; what is transparent has no colour.
QByteArray Bytes(const QImage& picture) {
    const QImage image = picture.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    return QByteArray::number(image.width()) +
           QByteArray(reinterpret_cast<const char*>(image.constBits()), image.sizeInBytes());
}

QByteArray Bytes(const QIcon& icon, const QSize& size, QIcon::Mode mode = QIcon::Normal) {
    return Bytes(icon.pixmap(size, 1.0, mode).toImage());
}

int VisiblePixels(const QImage& picture) {
    int visible = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            visible += qAlpha(picture.pixel(x, y)) >= 128 ? 1 : 0;
        }
    }
    return visible;
}

} // namespace

class IconsTest : public QObject {
    Q_OBJECT

private slots:
    void theStripsHaveTheirNumbersOfImagesAndNoTwoAreAlike() {
        for (const auto& [name, count] : {std::pair{"TreeImages", 23}, std::pair{"cacheicons", 11}}) {
            QList<QIcon> images;
            QVERIFY(LoadImageStrip(name, images));
            QCOMPARE(images.size(), count);
            QSet<QByteArray> setPictures;
            for (const QIcon& icon : images) {
                QVERIFY(VisiblePixels(icon.pixmap(kStripImageSize, 1.0).toImage()) > 0);
                setPictures << Bytes(icon, kStripImageSize);
            }
            QCOMPARE(setPictures.size(), count);
        }
    }

    void aStripWithAnotherNameFails() {
        QList<QIcon> images;
        QVERIFY(!LoadImageStrip("nothing", images));
        QVERIFY(images.isEmpty());
    }

    void iconsAreDrawnAnewAtEveryScale() {
        const QIcon icon = CommandIcon(ID_FILE_OPEN);
        for (const int size : {16, 20, 24, 32, 64}) {
            QCOMPARE(icon.pixmap(QSize(size, size), 1.0).size(), QSize(size, size));
        }
        const QImage enlarged = icon.pixmap(QSize(16, 16), 1.0).toImage().scaled(32, 32);
        QVERIFY(icon.pixmap(QSize(32, 32), 1.0).toImage() != enlarged);
    }

    void everyDrawingIsThereAtAllSizesOfScreensAndShowsSomething() {
        const QDir drawings(QStringLiteral(CARVELOT_SOURCE_FOLDER "/src/resources/icons"));
        const QStringList names = drawings.entryList({QStringLiteral("*.svg")});
        QVERIFY(names.size() >= 80);
        for (const QString& name : names) {
            for (const int size : {16, 20, 24, 32, 48}) {
                const QString file =
                    QStringLiteral(":/icons/%1-%2.png").arg(QFileInfo(name).baseName()).arg(size);
                const QImage picture(file);
                QVERIFY2(picture.width() == size, qPrintable(file));
                const int visible = VisiblePixels(picture);
                QVERIFY2(visible * 8 > size * size,
                         qPrintable(QStringLiteral("%1: %2").arg(file).arg(visible)));
                QVERIFY2(visible < size * size, qPrintable(file));
            }
        }
    }

    void noTwoDrawingsAreOnePicture() {
        for (const int size : {16, 20, 24, 32, 48}) {
            QHash<QByteArray, QString> pictures;
            const QStringList files =
                QDir(QStringLiteral(":/icons")).entryList({QStringLiteral("*-%1.png").arg(size)});
            QVERIFY(files.size() >= 80);
            for (const QString& file : files) {
                const QByteArray bytes = Bytes(QImage(QStringLiteral(":/icons/") + file));
                QVERIFY2(!pictures.contains(bytes), qPrintable(file + u' ' + pictures.value(bytes)));
                pictures.insert(bytes, file);
            }
        }
    }

    void commandsThatDoTheSameShareAnIconAndNoOthersDo() {
        QHash<QByteArray, QList<int>> commands;
        for (int id = 1; id < 0x10000; ++id) {
            if (const QIcon icon = CommandIcon(id); !icon.isNull()) {
                QVERIFY2(VisiblePixels(icon.pixmap(QSize(16, 16), 1.0).toImage()) > 0,
                         qPrintable(QString::number(id)));
                commands[Bytes(icon, {16, 16})] << id;
            }
        }
        QSet<QList<int>> shared;
        for (const QList<int>& ids : commands) {
            if (ids.size() > 1) {
                shared << ids;
            }
        }
        QCOMPARE(shared, (QSet<QList<int>>{{ID_SESSION_ANALYZE, ID_PROCESS_ANALYZE},
                                           {ID_SESSION_CLEAR_DEBUG_FILE, ID_PROCESS_TRUNC}}));
        QCOMPARE(commands.size(), 60);
    }

    void everyLookHasACommandAndAnIcon() {
        QVERIFY(!Looks().empty());
        for (const CLook& look : Looks()) {
            QVERIFY2(FindCommand(look.m_nId) != nullptr, qPrintable(QString::number(look.m_nId)));
            QVERIFY2(!CommandIcon(look.m_nId).isNull(), qPrintable(QString::number(look.m_nId)));
        }
    }

    void aPictureAtAScreensScaleIsTheRenderedOneItself() {
        const QIcon icon = CommandIcon(ID_FILE_OPEN);
        for (const double ratio : {1.0, 1.25, 1.5, 2.0, 3.0}) {
            const QPixmap shown = icon.pixmap(QSize(16, 16), ratio);
            const QImage rendered(QStringLiteral(":/icons/file-open-%1.png").arg(16 * ratio));
            QCOMPARE(shown.devicePixelRatio(), ratio);
            QCOMPARE(Bytes(shown.toImage()), Bytes(rendered));
        }
        // A strip's field is lower than wide.
        QList<QIcon> images;
        QVERIFY(LoadImageStrip("TreeImages", images));
        QCOMPARE(Bytes(images[0].pixmap(kStripImageSize, 2.0).toImage()),
                 Bytes(QImage(QStringLiteral(":/icons/no-entry-32.png"))));
    }

    void everyCommandOfTheToolbarsHasAnIconThatFadesWhenDisabled() {
        for (const std::span<const int> bar : {StandardToolBar(), CacheToolBar()}) {
            for (const int id : bar) {
                if (id == ID_SEPARATOR) {
                    continue;
                }
                const QIcon icon = CommandIcon(id);
                QVERIFY2(!icon.isNull(), FindCommand(id)->m_strText.data());
                QVERIFY(Bytes(icon, {16, 16}) != Bytes(icon, {16, 16}, QIcon::Disabled));
            }
        }
    }
};

QTEST_MAIN(IconsTest)
#include "IconsTest.moc"
