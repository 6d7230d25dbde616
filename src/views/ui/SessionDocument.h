// SessionDocument.h - the window's document around one log session.
#pragma once

#include "logcore/CarvelotDoc.h"
#include "shell/ui/Document.h"
#include "views/ui/SessionHost.h"

namespace carvelot {

// The one owner of a session. Answers the commands of the Session menu.
class CSessionDocument : public CDocument {
    Q_OBJECT

public:
    CSessionDocument();
    ~CSessionDocument() override;

    bool OnNewDocument() override;
    bool OnOpenDocument(const QString& strPath) override;
    // A running process's session has the path of its debug file, and no path of its own.
    QString PathInTitle() const override;

    CCarvelotDoc& Session() { return m_session; }
    const CCarvelotDoc& Session() const { return m_session; }

private:
    CSessionHost m_host;
    CCarvelotDoc m_session;
};

} // namespace carvelot
