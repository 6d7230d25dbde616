// SessionDocument.h - the window's document around one log session.
#pragma once

#include "session/CarvelotDoc.h"
#include "session/Selection.h"
#include "ui/kit/Document.h"
#include "ui/session/SessionHost.h"

#include <functional>
#include <string>
#include <vector>

namespace carvelot {

// The one owner of a session. Answers the commands of the Session menu.
class CSessionDocument : public CDocument {
    Q_OBJECT

public:
    // `pending` is the JAS classifier's memory, which outlives every session.
    explicit CSessionDocument(PendingStatement& pending);
    ~CSessionDocument() override;

    bool OnNewDocument() override;
    bool OnOpenDocument(const QString& path) override;
    bool OnOpenPieces(std::vector<LogPiece> pieces);
    // A running process's session has the path of its debug file, and no path of its own.
    QString PathInTitle() const override;

    // The dialects that a path was read with when it was opened last.
    std::function<CDialects(const QString& path)> m_fnKeptDialects;
    // The order of a log's pieces, which the dialect has a say in.
    std::function<std::vector<LogPiece>(const std::vector<std::string>& paths, CDialects)> m_fnOrderPieces;
    // Those that are kept with a path are in force for its load.
    void RecallDialects(const QString& path);
    // Its log was read on, or read anew: the windows show it.
    void ShowGrowth();
    void ShowAnew();
    // Reads the log anew.
    void ReadWith(CDialects dialects);

    CCarvelotDoc& Session() { return m_session; }
    const CCarvelotDoc& Session() const { return m_session; }

signals:
    // The log was opened by hand: it belongs among the recent files.
    void Opened(const QString& path);
    // To be kept with its path.
    void DialectsChosen(const QString& path, CDialects dialects);
    // To be obeyed at once: the records go next.
    void RecordsGo();
    // A load has ended, and the trees are there.
    void RecordsCame();
    // There are more of them, and the trees show them.
    void RecordsGrew();
    // What is selected among processes, threads and users, and among the records shown.
    void SelectionChanged(const Selection& selection);
    void RecordSelected(RecordIndex record);

private:
    CSessionHost m_host;
    CCarvelotDoc m_session;
};

} // namespace carvelot
