#include "analysis/panes/ui/DockablePane.h"

#include "shell/ui/CarvelotApp.h"
#include "shell/ui/MainFrame.h"
#include "shell/ui/Text.h"

#include <QEvent>
#include <QFontMetricsF>

#include <algorithm>

namespace carvelot {

namespace {

// The pane's inside; it passes its size hint on so that a floating pane opens at a useful size.
class CPaneClient : public QWidget {
public:
    explicit CPaneClient(QSize initial) : m_initial(initial) {
        setBackgroundRole(QPalette::Window);
        setAutoFillBackground(true);
    }
    QSize sizeHint() const override { return m_initial.expandedTo({420, 180}); }
    QSize minimumSizeHint() const override { return {60, 40}; }

private:
    QSize m_initial;
};

} // namespace

QFont CellFont(const QString& strFace, int nHeight) {
    QFont font(strFace);
    font.setStyleHint(QFont::TypeWriter);
    if (nHeight == 0)
        return font;
    if (nHeight < 0) {
        font.setPixelSize(-std::max(nHeight, -1000));
        return font;
    }
    nHeight = std::min(nHeight, 1000);
    font.setPixelSize(nHeight);
    for (int nSize = nHeight; nSize > 1 && QFontMetricsF(font).height() > nHeight + 0.5; --nSize)
        font.setPixelSize(nSize - 1);
    return font;
}

QFont SettingsFont() { return CellFont(ToQString(theApp().m_strFontName), theApp().m_nFontHeight); }

CDockablePane::CDockablePane(const QString& strTitle, const QString& strName, QSize initial)
    : QDockWidget(strTitle), m_pClient(new CPaneClient(initial)) {
    setObjectName(strName);
    setAllowedAreas(Qt::AllDockWidgetAreas);
    setFeatures(DockWidgetClosable | DockWidgetMovable | DockWidgetFloatable);
    setAccessibleName(strTitle);
    m_pClient->setAccessibleName(strTitle);
    m_pClient->installEventFilter(this);
    setWidget(m_pClient);
}

void CDockablePane::AddCaption() {
    m_pCaption = new QLineEdit(m_pClient);
    m_pCaption->setReadOnly(true);
    m_pCaption->setFont(SettingsFont());
    m_pCaption->setAccessibleName(tr("%1: shown for").arg(windowTitle()));
    UseEditMenu(m_pCaption);
}

void CDockablePane::SetCaption(const QString& strText) {
    if (m_pCaption == nullptr)
        return;
    m_pCaption->setText(strText);
    m_pCaption->setCursorPosition(0);
}

QString CDockablePane::GetCaption() const { return m_pCaption != nullptr ? m_pCaption->text() : QString(); }

void CDockablePane::LayOutBelowCaption(QWidget* pPart, int nWidth, int nHeight) {
    // A font larger than the usual one makes room for itself.
    const int nCaption = std::max(kCaptionHeight, m_pCaption->fontMetrics().height() + 4);
    const int nTop = nCaption + (kListTop - kCaptionHeight);
    m_pCaption->setGeometry(0, 0, nWidth, nCaption);
    pPart->setGeometry(0, nTop, nWidth, std::max(0, nHeight - nTop));
}

void CDockablePane::UseEditMenu(QWidget* pEdit) {
    pEdit->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(pEdit, &QWidget::customContextMenuRequested, this, [pEdit](const QPoint& point) {
        pEdit->setFocus(Qt::MouseFocusReason);
        if (CMainFrame* pMain = MainFrame())
            pMain->ShowEditMenu(pEdit->mapToGlobal(point));
    });
}

bool CDockablePane::eventFilter(QObject* pObject, QEvent* pEvent) {
    if (pObject == m_pClient && (pEvent->type() == QEvent::Resize || pEvent->type() == QEvent::FontChange ||
                                 pEvent->type() == QEvent::Show))
        OnSize(m_pClient->width(), m_pClient->height());
    return QDockWidget::eventFilter(pObject, pEvent);
}

} // namespace carvelot
