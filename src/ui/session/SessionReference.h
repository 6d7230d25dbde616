// SessionReference.h - how rows that can outlive a session lead back to it.
#pragma once

#include "ui/session/SessionDocument.h"

#include <QPointer>

#include <cstdint>

namespace carvelot {

class CSessionReference {
public:
    CSessionReference() = default;
    explicit CSessionReference(CSessionDocument& document)
        : m_pDocument(&document), m_nLoadIdentity(document.Session().LoadIdentity()) {}

    // The document as long as it exists, also after its records were read anew.
    CSessionDocument* Document() const { return m_pDocument; }
    // Brings a record of that load up in the session's window; nothing when the session was closed or read
    // again since.
    void ShowDetail(RecordIndex record) const {
        // A closed document lives on to the end of the event that closed it.
        if (m_pDocument == nullptr || m_pDocument->GetDocTemplate() == nullptr ||
            m_pDocument->Session().LoadIdentity() != m_nLoadIdentity) {
            return;
        }
        m_pDocument->Session().ShowDetail(record);
    }

private:
    QPointer<CSessionDocument> m_pDocument;
    std::uint64_t m_nLoadIdentity = 0;
};

} // namespace carvelot
