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
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    connect(buttons, &QDialogButtonBox::accepted, this, &CMessageDlg::OnOK);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_pEdit);
    layout->addWidget(buttons);
    buttons->button(QDialogButtonBox::Ok)->setDefault(true);
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

void WriteTraceMessage(const std::string& logPath, std::uint32_t process, std::uint32_t thread,
                       const FClock& clock) {
    CTraceMessage message;
    if (!message.Open(logPath, clock)) {
        UserInterface().ShowMessage(QStringLiteral("Failed to open file for writing"));
        return;
    }
    CMessageDlg dialog;
    if (UserInterface().RunDialog(dialog) == QDialog::Accepted) {
        message.Write(process, thread, ToUtf8(dialog.m_strMessage));
    }
}

} // namespace carvelot
