// A session that reads a fuzz target's input, and a walk over all that can be asked of it.
#pragma once

#include "session/CarvelotDoc.h"
#include "support/FuzzFile.h"

#include <string_view>

namespace carvelot::fuzz {

class CSilentHost : public ISessionHost {
public:
    void ShowMessage(std::string_view) override { ++m_nMessages; }
    void PrintOutput(std::string_view) override {}
    void BeginWaitCursor() override { ++m_nWaits; }
    void EndWaitCursor() override { --m_nWaits; }

    int m_nMessages = 0;
    int m_nWaits = 0;
};

class CFuzzSession {
public:
    explicit CFuzzSession(std::string_view log, AnalysisSettings settings = {}) : m_settings(settings) {
        static const CFuzzFile file;
        file.Write(log);
        m_bLoaded = m_doc.OnOpenDocument(file.Path());
        Require(m_bLoaded == (m_host.m_nMessages == 0), "a load that fails says so once, another never");
        Require(m_host.m_nWaits == 0, "the wait cursor goes with the load");
    }

    AnalysisSettings m_settings;
    PendingStatement m_pending;
    CSilentHost m_host;
    CCarvelotDoc m_doc{m_settings, m_pending, m_host};
    bool m_bLoaded = false;
};

// Asks for everything that a window or the report asks for: all records, trees of every scope, the rows of
// every list in every order, the searches, both exports, the JSON, which must parse.
void WalkSession(CFuzzSession& session);

// Demands that both sessions hold the same records in the same places.
void RequireSameRecords(const CFuzzSession& one, const CFuzzSession& other);

} // namespace carvelot::fuzz
