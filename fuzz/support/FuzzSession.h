// A session that reads a fuzz target's input, and a walk over all that can be asked of it.
#pragma once

#include "session/CarvelotDoc.h"
#include "sources/MemorySource.h"
#include "support/FuzzFile.h"

#include <string>
#include <string_view>

namespace carvelot::fuzz {

class CSilentHost : public ISessionHost {
public:
    void ShowMessage(std::string_view) override { ++m_nMessages; }
    void PrintOutput(std::string_view) override {}

    int m_nMessages = 0;
};

// A session that reads one log after the other, each as a new session does. Its memory is kept: making that
// costs more than a few lines.
class CFuzzSession {
public:
    struct Options {
        AnalysisSettings settings;
        bool plain = false; // see CCarvelotDoc::m_bPlainParse
        std::uint32_t processFilter = 0;
        CDialects dialects;
        bool numberLines = false;
    };

    void Load(std::string_view log, const Options& options) {
        CMemorySource source(log);
        Load(source, options);
    }
    void Load(ILogSource& log, const Options& options) {
        m_settings = options.settings;
        m_pending = {};
        m_doc.m_bPlainParse = options.plain;
        m_doc.m_nProcessFilter = options.processFilter;
        m_doc.m_dialects = options.dialects;
        m_doc.m_bNumberLines = options.numberLines;
        m_doc.m_nLogFormat = LOG_FORMAT_DEBUG;
        m_doc.m_nTextColumn = m_doc.m_nTabCount = 0;
        m_doc.m_bDashForm = m_doc.m_bUBELog = false;
        LoadAgain(log);
    }
    // The same session, as Analyze reads it.
    void LoadAgain(std::string_view log) {
        CMemorySource source(log);
        LoadAgain(source);
    }
    void LoadAgain(ILogSource& log) {
        m_host.m_nMessages = 0;
        m_bLoaded = m_doc.LoadFrom(log);
        Require(m_bLoaded == (m_host.m_nMessages == 0), "a load that fails says so once, another never");
    }

    AnalysisSettings m_settings;
    PendingStatement m_pending;
    CSilentHost m_host;
    CCarvelotDoc m_doc{m_settings, m_pending, m_host};
    bool m_bLoaded = false;
};

// What the byte of an input that chooses settings asks for; lines are numbered.
inline CFuzzSession::Options OptionsOf(char byte) {
    CFuzzSession::Options options;
    options.settings.m_fThreshold = (byte & 1) != 0 ? 0.0F : 1.0F;
    options.settings.m_bCacheAnalysis = (byte & 2) == 0;
    options.processFilter = (byte & 4) != 0 ? 4120 : 0;
    if ((byte & 8) != 0) {
        options.dialects = {Dialect::Months, Dialect::Numbered};
    }
    options.numberLines = true;
    return options;
}

// Ask for everything that a window or the report asks for: all records; the trees of every scope; the rows of
// every list in every order; the searches, both exports, the summary, and the JSON, which must parse.
void WalkRecords(const CFuzzSession& session);
void WalkTrees(const CFuzzSession& session);
void WalkLists(const CFuzzSession& session);
void WalkReports(const CFuzzSession& session);

// Demands that a text is one JSON object.
void RequireJson(const std::string& text);

// Demands that the log which a session has just read is the same without the short ways of the parsers.
void RequireSameReadPlainly(const CFuzzSession& session, std::string_view log, CFuzzSession::Options options);

} // namespace carvelot::fuzz
