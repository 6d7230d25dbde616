#include "ui/session/RawDataPane.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QTextDocumentFragment>

namespace carvelot {

CRawDataPane::CRawDataPane() : CDockablePane(tr("Raw Data"), QStringLiteral("RawDataPane"), {200, 100}) {
    m_pEdit = new QPlainTextEdit(Client());
    m_pEdit->setReadOnly(true);
    m_pEdit->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    m_pEdit->setUndoRedoEnabled(false);
    m_pEdit->setFont(SettingsFont());
    m_pEdit->setAccessibleName(windowTitle());
    m_pEdit->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    m_pEdit->setTabChangesFocus(true);
    UseEditMenu(m_pEdit);
    m_pEdit->installEventFilter(this);
}

void CRawDataPane::SetText(const QString& text) { m_pEdit->setPlainText(text); }

bool CRawDataPane::eventFilter(QObject* object, QEvent* event) {
    if (object == m_pEdit && event->type() == QEvent::KeyRelease) {
        const auto& key = static_cast<const QKeyEvent&>(*event);
        if (key.key() == Qt::Key_C && (QGuiApplication::queryKeyboardModifiers() & Qt::ControlModifier)) {
            Copy();
            return true;
        }
    }
    return CDockablePane::eventFilter(object, event);
}

void CRawDataPane::Copy() {
    if (m_pEdit->textCursor().hasSelection()) {
        QGuiApplication::clipboard()->setText(m_pEdit->textCursor().selection().toPlainText());
    }
}

void CRawDataPane::OnSize(int width, int height) { m_pEdit->setGeometry(0, 0, width, height); }

} // namespace carvelot
