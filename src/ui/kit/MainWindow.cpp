#include "ui/kit/MainWindow.h"

#include <QGuiApplication>
#include <QHoverEvent>

#include <utility>

namespace carvelot {

namespace {

CMainWindow* s_pMainWindow = nullptr;
const CAppSettings* s_pSettings = nullptr;

} // namespace

CMainWindow::CMainWindow() { s_pMainWindow = this; }

CMainWindow::~CMainWindow() { Leave(); }

bool CMainWindow::event(QEvent* event) {
    switch (event->type()) {
    case QEvent::HoverMove:
        if (QGuiApplication::mouseButtons() == Qt::NoButton) {
            FollowPointer(*event);
            return true;
        }
        break;
    case QEvent::HoverLeave:
    case QEvent::ShortcutOverride: // a menu comes up
        if (std::exchange(m_bBetweenPanes, false)) {
            unsetCursor();
        }
        break;
    default:
        break;
    }
    return QMainWindow::event(event);
}

// The toolkit keeps where among the panes the separator below the pointer is, looks there when the pointer
// goes on, and ends the program if the panes stand otherwise by then. So it has to forget it at once, and its
// cursor is kept here.
void CMainWindow::FollowPointer(QEvent& event) {
    if (m_bBetweenPanes) {
        unsetCursor();
    }
    QMainWindow::event(&event);
    m_bBetweenPanes = testAttribute(Qt::WA_SetCursor);
    const QCursor found = cursor();
    QHoverEvent leave(QEvent::HoverLeave, QPointF(), QPointF(), QPointF());
    QMainWindow::event(&leave);
    if (m_bBetweenPanes) {
        setCursor(found);
    }
}

void CMainWindow::Leave() {
    if (s_pMainWindow == this) {
        s_pMainWindow = nullptr;
    }
}

CMainWindow* MainWindow() { return s_pMainWindow; }

const CAppSettings& Settings() { return *s_pSettings; }

void SetSettings(const CAppSettings& settings) { s_pSettings = &settings; }

} // namespace carvelot
