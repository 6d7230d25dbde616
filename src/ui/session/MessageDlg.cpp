#include "ui/session/MessageDlg.h"

#include "ui/kit/Text.h"
#include "ui/kit/UserInterface.h"

#include <QDialogButtonBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace carvelot {

CMessageDlg::CMessageDlg() : m_pEdit(new QPlainTextEdit) {
    setWindowTitle(tr("Carvelot Message"));
    m_pEdit->setAccessibleName(tr("Message"));
    m_pEdit->setTabChangesFocus(true);
    auto* pButtons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    connect(pButtons, &QDialogButtonBox::accepted, this, &CMessageDlg::OnOK);
    connect(pButtons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* pLayout = new QVBoxLayout(this);
    pLayout->addWidget(m_pEdit);
    pLayout->addWidget(pButtons);
    pButtons->button(QDialogButtonBox::Ok)->setDefault(true);
    resize(420, 200);
}

void CMessageDlg::OnOK() {
    m_strMessage = m_pEdit->toPlainText();
#ifdef Q_OS_WIN
    // What an edit control of the system holds between two lines.
    m_strMessage.replace(QLatin1String("\n"), QLatin1String("\r\n"));
#endif
    accept();
}

void WriteTraceMessage(const std::string& strLogPath, std::uint32_t nProcess, std::uint32_t nThread,
                       const FClock& fnClock) {
    CTraceMessage message;
    if (!message.Open(strLogPath, fnClock)) {
        UserInterface().ShowMessage(QStringLiteral("Failed to open file for writing"));
        return;
    }
    CMessageDlg dialog;
    if (UserInterface().RunDialog(dialog) == QDialog::Accepted)
        message.Write(nProcess, nThread, ToUtf8(dialog.m_strMessage));
}

} // namespace carvelot
