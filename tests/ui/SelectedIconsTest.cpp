// The pictures of selected rows, in every look.
#include "ui/SessionSupport.h"

#include "ui/kit/Icons.h"
#include "ui/app/CustomizeDlg.h"
#include "ui/kit/LookStyle.h"
#include "ui/kit/WindowsDlg.h"

#include <QListWidget>
#include <QTreeWidget>

using namespace carvelot;
using namespace carvelot::test;

namespace {

constexpr int kLooks[] = {ID_APPLOOK_WINDOWS_2000,     ID_APPLOOK_OFFICE_XP,        ID_APPLOOK_WINDOWS_XP,
                          ID_APPLOOK_OFFICE_2003,      ID_APPLOOK_VS_2005,          ID_APPLOOK_VS_2008,
                          ID_APPLOOK_OFFICE_2007_BLUE, ID_APPLOOK_OFFICE_2007_AQUA, ID_APPLOOK_WINDOWS_7};

// How many of the icon's solid pixels are on the screen, at their places in the row.
int SolidPixelsShown(QAbstractItemView& view, const QModelIndex& index) {
    const QIcon icon = qvariant_cast<QIcon>(index.data(Qt::DecorationRole));
    const QSize size = view.iconSize().isValid() ? view.iconSize() : QSize(16, 16);
    const QImage picture = icon.pixmap(size, 1.0).toImage().convertToFormat(QImage::Format_ARGB32);
    const QImage row =
        view.viewport()->grab(view.visualRect(index)).toImage().convertToFormat(QImage::Format_ARGB32);
    int nBest = 0;
    for (int nLeft = 0; nLeft < std::min(60, row.width() - picture.width()); ++nLeft) {
        for (int nTop = -2; nTop < 8; ++nTop) {
            int nSame = 0;
            for (int nX = 0; nX < picture.width(); ++nX) {
                for (int nY = 0; nY < picture.height(); ++nY) {
                    if (qAlpha(picture.pixel(nX, nY)) == 255 && row.valid(nLeft + nX, nTop + nY) &&
                        row.pixel(nLeft + nX, nTop + nY) == picture.pixel(nX, nY))
                        ++nSame;
                }
            }
            nBest = std::max(nBest, nSame);
        }
    }
    return nBest;
}

} // namespace

class SelectedIconsTest : public CSessionTest {
    Q_OBJECT

private slots:
    void init() { StartRun(); }
    void cleanup() { EndRun(); }

    void aSelectedRowsIconKeepsItsColours() {
        CMainFrame& frame = m_pRun->Frame();
        CChildFrame* pFrame =
            m_pRun->Open(QStringLiteral("a.log"),
                         DebugLog({Line("10:00:00.000001", "ERROR: a"),
                                   Line("10:00:00.250007", "Entering jdeCacheInit - Name:[C]"),
                                   Line("10:00:00.250008", "Created new cache - hCache:[e5762678]")}));
        Select(pFrame, "Process - 5");
        CSessionRun::ShowPane(frame.m_wndCachePane);
        for (const int nLook : kLooks) {
            frame.OnApplicationLook(nLook);
            CWindowsDlg windows(frame.ClientArea());
            windows.show();
            CCustomizeDlg customize(frame);
            customize.show();
            auto& commands = *customize.findChild<QListWidget*>(QStringLiteral("Commands"));
            // A picture of the user's or of the toolkit.
            QListWidget pictures;
            QPixmap picture(16, 16);
            picture.fill(QColor(200, 40, 40));
            pictures.addItem(new QListWidgetItem(QIcon(picture), QStringLiteral("picture")));
            pictures.show();
            const QList<QAbstractItemView*> listViews = {&pFrame->ThreadView(),
                                                         &pFrame->DetailView(),
                                                         &frame.m_wndCachePane.Tree(),
                                                         windows.findChild<QTreeWidget*>(),
                                                         &commands,
                                                         &pictures};
            for (QAbstractItemView* pView : listViews) {
                // In the thread tree the process whose calls and caches are shown.
                const QModelIndex index = pView->model()->index(pView->model()->rowCount() - 1, 0);
                QVERIFY(!qvariant_cast<QIcon>(index.data(Qt::DecorationRole)).isNull());
                pView->scrollTo(index);
                pView->selectionModel()->clear();
                const int nPlain = SolidPixelsShown(*pView, index);
                QVERIFY(nPlain > 20);
                pView->selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect |
                                                                    QItemSelectionModel::Rows);
                for (const bool bFocus : {true, false}) {
                    pView->window()->activateWindow();
                    if (bFocus)
                        pView->setFocus();
                    else
                        pView->clearFocus();
                    const int nSelected = SolidPixelsShown(*pView, index);
                    QVERIFY2(nSelected == nPlain, qPrintable(QStringLiteral("%1 %2 %3: %4 of %5")
                                                                 .arg(nLook)
                                                                 .arg(pView->metaObject()->className())
                                                                 .arg(bFocus)
                                                                 .arg(nSelected)
                                                                 .arg(nPlain)));
                }
            }
        }
    }
};

QTEST_MAIN(SelectedIconsTest)
#include "SelectedIconsTest.moc"
