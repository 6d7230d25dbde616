// AboutLogFrame.h - the window "About This Log": what a load can tell of its log, and the dialects to read it
// with.
#pragma once

#include "explore/lists/AboutLogRows.h"
#include "ui/explore/Exploration.h"
#include "ui/kit/Document.h"
#include "ui/kit/ListedRows.h"

#include <vector>

class QLabel;
class QPushButton;

namespace carvelot {

class CDialectChoice;

// Needs no exploring.
class CAboutLogFrame : public CMDIChildWnd {
    Q_OBJECT

public:
    explicit CAboutLogFrame(CExploration& exploration);

    QList<QWidget*> WindowPanes() const override;
    void OnSetFocus() override { emit CameToFront(); }

    // The log was read anew.
    void ShowFacts();
    // The log has grown: what is marked stays.
    void ShowGrowth();

signals:
    // It came to the front: the shared panes are to show its session.
    void CameToFront();
    // Read the log anew with these.
    void DialectsWanted(CDialects dialects);

private:
    void ShowTexts(const LogFacts& facts);

    CExploration& m_exploration;
    std::vector<QLabel*> m_facts; // their texts
    CRowList<RefusedRow>* m_pRefused;
    CDialectChoice* m_pChoice;
    QPushButton* m_pReadAnew;
};

} // namespace carvelot
