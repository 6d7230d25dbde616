#include "analysis/panes/ui/RawDataPane.h"

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
}

void CRawDataPane::SetText(const QString& strText) { m_pEdit->setPlainText(strText); }

void CRawDataPane::OnSize(int nWidth, int nHeight) { m_pEdit->setGeometry(0, 0, nWidth, nHeight); }

} // namespace carvelot
