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
    QAction* pFind = m_pToolBar->addAction(CommandIcon(ID_FIND_FIND), tr("Find"));
    pFind->setStatusTip(tr("Find"));
    pFind->setData(ID_FIND_FIND);
    connect(pFind, &QAction::triggered, this, &CFindPane::OnFind);

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
    m_pList->m_fnOpenRow = [this](int nRow) {
        if (m_rows.Session() == nullptr)
            return; // the record is gone
        const CSessionReference session = m_session;
        session.ShowDetail(m_rows.Record(SourceRow(nRow)));
    };

    for (QWidget* pPart : Client()->findChildren<QWidget*>())
        pPart->installEventFilter(this);
}

void CFindPane::OnFind() {
    CMainWindow* pMain = MainWindow();
    CMDIChildWnd* pChild = pMain != nullptr ? pMain->ActiveChild() : nullptr;
    auto* pDocument =
        pChild != nullptr ? qobject_cast<CSessionDocument*>(pChild->GetActiveDocument()) : nullptr;
    if (pDocument == nullptr)
        return;
    const CWaitCursor wait;
    ShowRows(pDocument->Session(), pDocument->Session().FindDetails(ToUtf8(m_pSearch->text())));
    m_session = CSessionReference(*pDocument);
    m_bUsers = pDocument->Session().m_nLogFormat == LOG_FORMAT_JAS;
    const std::size_t nHits = m_rows.RowCount();
    m_pHits->setText(nHits == 0 ? tr("No hits") : nHits == 1 ? tr("1 hit") : tr("%1 hits").arg(nHits));
}

void CFindPane::OpenNextHit(bool bForward) {
    if (m_pList->Model().rowCount() == 0 && !m_pSearch->text().isEmpty())
        OnFind();
    const int nRows = m_pList->Model().rowCount();
    if (nRows == 0)
        return;
    const int nNow = m_pList->SelectedRow();
    const int nFirst = bForward ? 0 : nRows - 1;
    const int nNext = nNow < 0 ? nFirst : (nNow + (bForward ? 1 : nRows - 1)) % nRows;
    m_pList->setCurrentIndex(m_pList->Model().index(nNext, 0));
    m_pList->m_fnOpenRow(nNext);
}

QString CFindPane::HitsText() const { return m_pHits->text(); }

void CFindPane::ClearList() {
    CListPane::ClearList();
    m_pHits->clear();
}

void CFindPane::DressForUsers(bool bUsers) {
    CListModel& model = m_pList->Model();
    model.SetColumnTitle(FindRow::OWNER,
                         ToQString(OwnerTitle<FindRow>(bUsers ? LOG_FORMAT_JAS : LOG_FORMAT_DEBUG)));
    m_pList->SetColumnWidth(FindRow::THREAD, bUsers ? 0 : model.ColumnWidth(FindRow::THREAD));
}

bool CFindPane::eventFilter(QObject* pObject, QEvent* pEvent) {
    const QEvent::Type nType = pEvent->type();
    if (nType == QEvent::KeyRelease || nType == QEvent::KeyPress || nType == QEvent::ShortcutOverride) {
        auto& key = static_cast<QKeyEvent&>(*pEvent);
        const bool bEnter = key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter;
        if (nType == QEvent::KeyRelease && bEnter && !key.isAutoRepeat()) {
            OnFind();
            return true;
        }
        if (pObject == m_pSearch && nType != QEvent::KeyRelease && key.key() == Qt::Key_V &&
            (QGuiApplication::queryKeyboardModifiers() & Qt::ControlModifier)) {
            key.accept();
            if (nType == QEvent::KeyPress)
                Paste();
            return true;
        }
    }
    return CListPane::eventFilter(pObject, pEvent);
}

void CFindPane::Paste() {
    const QMimeData* pData = QGuiApplication::clipboard()->mimeData();
    if (pData != nullptr && pData->hasText())
        m_pSearch->setText(m_pSearch->text() + pData->text());
}

int CFindPane::LayOutAboveList(int nWidth) {
    const int nToolBar = m_pToolBar->sizeHint().height();
    const int nSearch = std::max(20, m_pSearch->fontMetrics().height() + 4);
    const int nButton = m_pToolBar->sizeHint().width() + 6;
    m_pToolBar->setGeometry(0, 0, nWidth, nToolBar);
    m_pHits->setGeometry(nButton, 0, std::max(0, nWidth - nButton), nToolBar);
    m_pSearch->setGeometry(0, nToolBar, nWidth, nSearch);
    return nToolBar + nSearch;
}

} // namespace carvelot
