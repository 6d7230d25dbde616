#include "ui/kit/Icons.h"

#include "settings/Commands.h"

#include <QImage>
#include <QPixmap>
#include <QSet>
#include <QTest>

using namespace carvelot;

namespace {

QByteArray Bytes(const QIcon& icon, const QSize& size, QIcon::Mode nMode = QIcon::Normal) {
    const QImage image = icon.pixmap(size, 1.0, nMode).toImage().convertToFormat(QImage::Format_ARGB32);
    return QByteArray(reinterpret_cast<const char*>(image.constBits()), image.sizeInBytes());
}

} // namespace

class IconsTest : public QObject {
    Q_OBJECT

private slots:
    void theStripsHaveTheirNumbersOfImagesAndNoTwoAreAlike() {
        for (const auto& [pszName, nCount] : {std::pair{"TreeImages", 23}, std::pair{"cacheicons", 11}}) {
            QList<QIcon> listImages;
            QVERIFY(LoadImageStrip(pszName, listImages));
            QCOMPARE(listImages.size(), nCount);
            QSet<QByteArray> setPictures;
            for (const QIcon& icon : listImages)
                setPictures << Bytes(icon, kStripImageSize);
            QCOMPARE(setPictures.size(), nCount);
        }
    }

    void aStripWithAnotherNameFails() {
        QList<QIcon> listImages;
        QVERIFY(!LoadImageStrip("nothing", listImages));
        QVERIFY(listImages.isEmpty());
    }

    void iconsAreDrawnAnewAtEveryScale() {
        const QIcon icon = CommandIcon(ID_FILE_OPEN);
        for (const int nSize : {16, 20, 24, 32, 64})
            QCOMPARE(icon.pixmap(QSize(nSize, nSize), 1.0).size(), QSize(nSize, nSize));
        const QImage enlarged = icon.pixmap(QSize(16, 16), 1.0).toImage().scaled(32, 32);
        QVERIFY(icon.pixmap(QSize(32, 32), 1.0).toImage() != enlarged);
    }

    void everyCommandOfTheToolbarsHasAnIconThatFadesWhenDisabled() {
        for (const std::span<const int> bar : {StandardToolBar(), CacheToolBar()}) {
            for (const int nId : bar) {
                if (nId == ID_SEPARATOR)
                    continue;
                const QIcon icon = CommandIcon(nId);
                QVERIFY2(!icon.isNull(), FindCommand(nId)->m_strText.data());
                QVERIFY(Bytes(icon, {16, 16}) != Bytes(icon, {16, 16}, QIcon::Disabled));
            }
        }
    }
};

QTEST_MAIN(IconsTest)
#include "IconsTest.moc"
