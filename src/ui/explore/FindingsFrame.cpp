#include "ui/explore/FindingsFrame.h"

#include "explore/lists/ExploreNames.h"
#include "explore/lists/ListTexts.h"
#include "ui/explore/KeptSplitter.h"
#include "ui/explore/ListMenu.h"
#include "ui/kit/PlainText.h"
#include "ui/kit/Text.h"

#include <QLabel>
#include <QMenu>
#include <QVBoxLayout>

#include <utility>

namespace carvelot {

namespace {

// "The function failed; ... 3 times, 12.903000 s."
QString AboutFinding(const Finding& finding) {
    std::string text(MeaningOf(finding.rule));
    text.append("   ").append(Counted(finding.count, "time"));
    if (finding.cost != 0) {
        text.append(", ").append(SecondsWithPlaces(finding.cost)).append(" s");
    }
    if (finding.records.empty()) {
        text.append("; no record stands for it");
    } else if (finding.records.size() == Finding::kMostRecords) {
        text.append("; the first ").append(Counted(finding.records.size(), "record"));
    } else {
        text.append("; ").append(Counted(finding.records.size(), "record"));
    }
    return ToQString(text);
}

} // namespace

CFindingsFrame::CFindingsFrame(CExploration& exploration)
    : CExploreFrame(exploration, tr("Findings")), m_pCounts(PlainLabel()),
      m_pFindings(new CFindingList(tr("Findings"), nullptr)), m_pMeaning(PlainLabel()),
      m_pRecords(new CRecordList(tr("Records of the finding"), nullptr)) {
    m_pCounts->setContentsMargins(6, 4, 6, 4);
    m_pCounts->setAccessibleName(tr("Findings by severity"));
    m_pMeaning->setContentsMargins(6, 4, 6, 4);
    m_pMeaning->setWordWrap(true);
    m_pMeaning->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_pMeaning->setAccessibleName(tr("Meaning of the finding"));
    auto* lower = new QWidget;
    auto* lowerColumn = new QVBoxLayout(lower);
    lowerColumn->setContentsMargins(0, 0, 0, 0);
    lowerColumn->setSpacing(0);
    lowerColumn->addWidget(m_pMeaning);
    lowerColumn->addWidget(m_pRecords, 1);
    auto* splitter = new CKeptSplitter(Qt::Vertical, "FindingsHeights", {480, 320});
    splitter->addWidget(m_pFindings);
    splitter->addWidget(lower);
    splitter->TakeSizes();
    auto* body = new QWidget;
    auto* column = new QVBoxLayout(body);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(m_pCounts);
    column->addWidget(splitter, 1);
    SetBody(body);

    m_pFindings->m_fnOpenRow = [this](int row) { OpenFinding(row); };
    m_pRecords->m_fnOpenRow = [this](int row) { OpenRecord(row); };
    connect(m_pFindings->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            &CFindingsFrame::ShowFinding);
    connect(m_pRecords->selectionModel(), &QItemSelectionModel::currentRowChanged, this, [this] {
        const int row = m_pRecords->currentIndex().row();
        if (!m_bFilling && row >= 0) {
            Exploration().Select(m_pRecords->RowAt(row).m_pRecord);
        }
    });
    connect(&exploration, &CExploration::FindingStepped, this, &CFindingsFrame::ShowStanding);

    auto* findingsMenu = new CListMenu(*m_pFindings, QStringLiteral("Findings"));
    findingsMenu->m_fnAddEntries = [this](QMenu& menu, int row) {
        if (row >= 0) {
            QAction* const show = menu.addAction(tr("Show Next Record"));
            show->setEnabled(!m_pFindings->RowAt(row).m_pFinding->records.empty());
            connect(show, &QAction::triggered, this, [this, row] { OpenFinding(row); });
        }
    };
    auto* recordsMenu = new CListMenu(*m_pRecords, QStringLiteral("FindingRecords"));
    recordsMenu->m_fnAddEntries = [this](QMenu& menu, int row) {
        if (row >= 0) {
            connect(menu.addAction(tr("Show in Session")), &QAction::triggered, this,
                    [this, row] { OpenRecord(row); });
        }
    };
}

QList<QWidget*> CFindingsFrame::WindowPanes() const { return {m_pFindings, m_pRecords}; }

void CFindingsFrame::ShowResults() {
    const ExploredSession& explored = Exploration().Explored();
    m_pFindings->ShowRows(explored, MakeFindingRows(Exploration().Findings()));
    m_pRecords->Model().SetColumnTitle(FindingRecordRow::OWNER,
                                       ToQString(OwnersTitle(explored.session.m_nLogFormat)));
    ShowScope();
    ShowFinding();
    if (!Exploration().Findings().empty()) {
        SelectFinding(0);
    }
    ShowStanding();
    ShowSelected();
}

void CFindingsFrame::ShowScope() {
    const bool isWhole =
        Exploration().ScopeSelection().What() == Selection::Kind::Nothing && Exploration().Range().IsWhole();
    const QString counts = ToQString(SeverityCounts(Exploration().Findings()));
    m_pCounts->setText(isWhole ? counts : counts + tr("   of the whole log"));
}

void CFindingsFrame::SelectFinding(std::size_t finding) {
    for (int row = 0; row < m_pFindings->Model().rowCount(); ++row) {
        if (m_pFindings->RowAt(row).m_nFinding == finding) {
            m_pFindings->setCurrentIndex(m_pFindings->Model().index(row, 0));
            return;
        }
    }
}

// The records and the meaning of the selected one.
void CFindingsFrame::ShowFinding() {
    const int row = m_pFindings->currentIndex().row();
    const bool filling = std::exchange(m_bFilling, true);
    if (row < 0) {
        m_pRecords->ClearRows();
        m_pMeaning->clear();
    } else {
        const Finding& finding = *m_pFindings->RowAt(row).m_pFinding;
        m_pRecords->ShowRows(Exploration().Explored(), MakeFindingRecordRows(finding));
        m_pMeaning->setText(AboutFinding(finding));
    }
    m_bFilling = filling;
}

void CFindingsFrame::OpenFinding(int row) {
    if (row >= m_pFindings->Model().rowCount()) {
        return; // the rows went while a menu was up
    }
    CFindingWalk& walk = Exploration().Walk();
    if (const auto place = walk.StepWithin(m_pFindings->RowAt(row).m_nFinding)) {
        ShowStanding();
        Exploration().ShowInSession(walk.RecordAt(*place));
    }
}

void CFindingsFrame::OpenRecord(int row) {
    if (row >= m_pRecords->Model().rowCount()) {
        return; // as above
    }
    const int finding = m_pFindings->currentIndex().row();
    const RecordIndex record = m_pRecords->RowAt(row).m_pRecord;
    if (finding >= 0) {
        Exploration().Walk().StandAt({m_pFindings->RowAt(finding).m_nFinding, m_pRecords->SourceRow(row)});
    }
    Exploration().ShowInSession(record);
}

// Where the walk through all records stands is selected.
void CFindingsFrame::ShowStanding() {
    const auto place = Exploration().Walk().Standing();
    if (!place) {
        return;
    }
    SelectFinding(place->finding);
    for (int row = 0; row < m_pRecords->Model().rowCount(); ++row) {
        if (m_pRecords->SourceRow(row) == place->record) {
            SelectRecord(row);
            return;
        }
    }
}

void CFindingsFrame::SelectRecord(int row) {
    const bool filling = std::exchange(m_bFilling, true);
    m_pRecords->setCurrentIndex(m_pRecords->Model().index(row, 0));
    m_bFilling = filling;
}

void CFindingsFrame::ShowSelected() {
    const std::optional<RecordIndex> selected = Exploration().Selected();
    const int current = m_pRecords->currentIndex().row();
    if (!selected || (current >= 0 && m_pRecords->RowAt(current).m_pRecord == *selected)) {
        return;
    }
    for (int row = 0; row < m_pRecords->Model().rowCount(); ++row) {
        if (m_pRecords->RowAt(row).m_pRecord == *selected) {
            SelectRecord(row);
            return;
        }
    }
}

void CFindingsFrame::DropResults() {
    m_pFindings->ClearRows();
    ShowFinding();
    m_pCounts->clear();
}

QString CFindingsFrame::EmptyText() const {
    return Exploration().Findings().empty() ? tr("Nothing asks for a look.") : QString();
}

} // namespace carvelot
