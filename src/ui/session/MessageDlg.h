// MessageDlg.h - the dialog that takes the text of a note for a debug log.
#pragma once

#include "session/TraceMessage.h"

#include <QDialog>
#include <QString>

#include <cstdint>
#include <string>

class QPlainTextEdit;

namespace carvelot {

class CMessageDlg : public QDialog {
    Q_OBJECT

public:
    CMessageDlg();

    QString m_strMessage; // set by OK; line breaks are the system's own

private:
    void OnOK();

    QPlainTextEdit* m_pEdit;
};

// The command "Write Message" on a thread: asks for a text and appends it to the log as a line of that
// thread.
void WriteTraceMessage(const std::string& logPath, std::uint32_t process, std::uint32_t thread,
                       const FClock& clock = platform::CurrentLocalTime);

} // namespace carvelot
