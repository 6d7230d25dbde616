// The pictures of selected rows, in every look.
#include "ui/SessionSupport.h"

#include "ui/app/CustomizeDlg.h"
#include "ui/kit/Icons.h"
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
    int best = 0;
    for (int left = 0; left < std::min(60, row.width() - picture.width()); ++left) {
        for (int top = -2; top < 8; ++top) {
            int same = 0;
            for (int x = 0; x < picture.width(); ++x) {
                for (int y = 0; y < picture.height(); ++y) {
                    if (qAlpha(picture.pixel(x, y)) == 255 && row.valid(left + x, top + y) &&
                        row.pixel(left + x, top + y) == picture.pixel(x, y)) {
                        ++same;
                    }
                }
            }
            best = std::max(best, same);
        }
    }
    return best;
}

} // namespace

class SelectedIconsTest : public CSessionTest {
    Q_OBJECT

private slots:
    void init() { StartRun(); }
    void cleanup() { EndRun(); }

    void aSelectedRowsIconKeepsItsColours() {
        CMainFrame& frame = m_pRun->Frame();
        CChildFrame* child =
            m_pRun->Open(QStringLiteral("a.log"),
                         DebugLog({Line("10:00:00.000001", "ERROR: a"),
                                   Line("10:00:00.250007", "Entering jdeCacheInit - Name:[C]"),
                                   Line("10:00:00.250008", "Created new cache - hCache:[e5762678]")}));
        Select(child, "Process - 5");
        CSessionRun::ShowPane(frame.m_wndCachePane);
        for (const int look : kLooks) {
            frame.OnApplicationLook(look);
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
            const QList<QAbstractItemView*> views = {&child->ThreadView(),
                                                     &child->DetailView(),
                                                     &frame.m_wndCachePane.Tree(),
                                                     windows.findChild<QTreeWidget*>(),
                                                     &commands,
                                                     &pictures};
            for (QAbstractItemView* view : views) {
                // In the thread tree the process whose calls and caches are shown.
                const QModelIndex index = view->model()->index(view->model()->rowCount() - 1, 0);
                QVERIFY(!qvariant_cast<QIcon>(index.data(Qt::DecorationRole)).isNull());
                view->scrollTo(index);
                view->selectionModel()->clear();
                const int plain = SolidPixelsShown(*view, index);
                QVERIFY(plain > 20);
                view->selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect |
                                                                   QItemSelectionModel::Rows);
                for (const bool focus : {true, false}) {
                    view->window()->activateWindow();
                    if (focus) {
                        view->setFocus();
                    } else {
                        view->clearFocus();
                    }
                    const int selected = SolidPixelsShown(*view, index);
                    QVERIFY2(selected == plain, qPrintable(QStringLiteral("%1 %2 %3: %4 of %5")
                                                               .arg(look)
                                                               .arg(view->metaObject()->className())
                                                               .arg(focus)
                                                               .arg(selected)
                                                               .arg(plain)));
                }
            }
        }
    }
};

QTEST_MAIN(SelectedIconsTest)
#include "SelectedIconsTest.moc"
