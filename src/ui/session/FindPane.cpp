#include "ui/session/FindPane.h"

#include "settings/Commands.h"
#include "ui/kit/Icons.h"
#include "ui/kit/MainWindow.h"
#include "ui/kit/PlainText.h"
#include "ui/kit/Text.h"
#include "ui/kit/WaitCursor.h"

#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QMimeData>

#include <algorithm>

namespace carvelot {

CFindPane::CFindPane() : CListPane(tr("Find"), QStringLiteral("FindPane"), {200, 100}) {
    m_pToolBar = new QToolBar(Client());
    m_pToolBar->setMovable(false);
    m_pToolBar->setIconSize({16, 16});
    m_pToolBar->setAccessibleName(tr("Find commands"));
    QAction* find = m_pToolBar->addAction(CommandIcon(ID_FIND_FIND), tr("Find"));
    find->setStatusTip(tr("Find"));
    find->setData(ID_FIND_FIND);
    connect(find, &QAction::triggered, this, &CFindPane::OnFind);

    m_pHits = PlainLabel();
    m_pHits->setParent(Client());
    m_pHits->setAttribute(Qt::WA_TransparentForMouseEvents); // it lies over the toolbar

    m_pSearch = new QLineEdit(Client());
    m_pSearch->setAccessibleName(tr("Search text"));
    m_pSearch->setMaxLength(1 << 20);
    m_pSearch->setAcceptDrops(false); // a log dropped here opens as everywhere
    QFont font(QStringLiteral("MS Sans Serif"));
    font.setStyleHint(QFont::SansSerif);
    font.setPointSize(8);
    m_pSearch->setFont(font);

    AddList();
    m_pList->m_bEnterOpens = false; // Enter searches, wherever it is pressed in this pane
    m_pList->m_fnOpenRow = [this](int row) {
        if (m_rows.Session() == nullptr) {
            return; // the record is gone
        }
        const CSessionReference session = m_session;
        session.ShowDetail(m_rows.Record(SourceRow(row)));
    };

    for (QWidget* part : Client()->findChildren<QWidget*>()) {
        part->installEventFilter(this);
    }
}

void CFindPane::OnFind() {
    CMainWindow* main = MainWindow();
    CMDIChildWnd* child = main != nullptr ? main->ActiveChild() : nullptr;
    auto* document = child != nullptr ? qobject_cast<CSessionDocument*>(child->GetActiveDocument()) : nullptr;
    if (document == nullptr) {
        return;
    }
    const CWaitCursor wait;
    ShowRows(document->Session(), document->Session().FindDetails(ToUtf8(m_pSearch->text())));
    m_session = CSessionReference(*document);
    m_bUsers = document->Session().m_nLogFormat == LOG_FORMAT_JAS;
    const std::size_t hits = m_rows.RowCount();
    m_pHits->setText(hits == 0 ? tr("No hits") : hits == 1 ? tr("1 hit") : tr("%1 hits").arg(hits));
}

void CFindPane::OpenNextHit(bool forward) {
    if (m_pList->Model().rowCount() == 0 && !m_pSearch->text().isEmpty()) {
        OnFind();
    }
    const int rows = m_pList->Model().rowCount();
    if (rows == 0) {
        return;
    }
    const int now = m_pList->SelectedRow();
    const int first = forward ? 0 : rows - 1;
    const int next = now < 0 ? first : (now + (forward ? 1 : rows - 1)) % rows;
    m_pList->setCurrentIndex(m_pList->Model().index(next, 0));
    m_pList->m_fnOpenRow(next);
}

QString CFindPane::HitsText() const { return m_pHits->text(); }

void CFindPane::ClearList() {
    CListPane::ClearList();
    m_pHits->clear();
}

void CFindPane::DressForUsers(bool users) {
    CListModel& model = m_pList->Model();
    model.SetColumnTitle(FindRow::OWNER,
                         ToQString(OwnerTitle<FindRow>(users ? LOG_FORMAT_JAS : LOG_FORMAT_DEBUG)));
    m_pList->SetColumnWidth(FindRow::THREAD, users ? 0 : model.ColumnWidth(FindRow::THREAD));
}

bool CFindPane::eventFilter(QObject* object, QEvent* event) {
    const QEvent::Type type = event->type();
    if (type == QEvent::KeyRelease || type == QEvent::KeyPress || type == QEvent::ShortcutOverride) {
        auto& key = static_cast<QKeyEvent&>(*event);
        const bool enter = key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter;
        if (type == QEvent::KeyRelease && enter && !key.isAutoRepeat()) {
            OnFind();
            return true;
        }
        if (object == m_pSearch && type != QEvent::KeyRelease && key.key() == Qt::Key_V &&
            (QGuiApplication::queryKeyboardModifiers() & Qt::ControlModifier)) {
            key.accept();
            if (type == QEvent::KeyPress) {
                Paste();
            }
            return true;
        }
    }
    return CListPane::eventFilter(object, event);
}

void CFindPane::Paste() {
    const QMimeData* data = QGuiApplication::clipboard()->mimeData();
    if (data != nullptr && data->hasText()) {
        m_pSearch->setText(m_pSearch->text() + data->text());
    }
}

int CFindPane::LayOutAboveList(int width) {
    const int toolBar = m_pToolBar->sizeHint().height();
    const int search = std::max(20, m_pSearch->fontMetrics().height() + 4);
    const int button = m_pToolBar->sizeHint().width() + 6;
    m_pToolBar->setGeometry(0, 0, width, toolBar);
    m_pHits->setGeometry(button, 0, std::max(0, width - button), toolBar);
    m_pSearch->setGeometry(0, toolBar, width, search);
    return toolBar + search;
}

} // namespace carvelot
