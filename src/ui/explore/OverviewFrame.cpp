#include "ui/explore/OverviewFrame.h"

#include "ui/explore/ListMenu.h"
#include "ui/explore/TitledView.h"
#include "ui/kit/PlainText.h"
#include "ui/kit/Text.h"

#include <QGridLayout>
#include <QHeaderView>
#include <QLabel>
#include <QToolButton>

namespace carvelot {

COverviewFrame::COverviewFrame(CExploration& exploration)
    : CExploreFrame(exploration, tr("Overview")), m_pLine(PlainLabel()),
      m_pFindings(new CRowList<OverviewFinding>(tr("Findings"), nullptr)),
      m_pFunctions(new CRowList<OverviewCost>(tr("Functions by own time"), nullptr)),
      m_pStatements(new CRowList<OverviewCost>(tr("Statements by time"), nullptr)) {
    auto* body = new QWidget;
    auto* grid = new QGridLayout(body);
    grid->setContentsMargins(8, 6, 8, 8);
    m_pLine->setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto* about = new QToolButton;
    about->setText(tr("About This Log"));
    about->setAutoRaise(true);
    connect(about, &QToolButton::clicked, this, &COverviewFrame::AboutWanted);
    auto* head = new QHBoxLayout;
    head->addWidget(m_pLine, 1);
    head->addWidget(about);
    grid->addLayout(head, 0, 0, 1, 2);
    grid->addWidget(Titled(tr("Findings"), *m_pFindings), 1, 0, 1, 2);
    grid->addWidget(Titled(tr("Functions by own time"), *m_pFunctions), 2, 0);
    grid->addWidget(Titled(tr("Statements by time"), *m_pStatements), 2, 1);
    grid->setRowStretch(1, 3);
    grid->setRowStretch(2, 4);
    grid->setColumnStretch(0, 1);
    grid->setColumnStretch(1, 1);
    SetBody(body);
    // The first column takes what room is left.
    for (const CListCtrl* list :
         std::initializer_list<CListCtrl*>{m_pFindings, m_pFunctions, m_pStatements}) {
        list->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    }
    new CListMenu(*m_pFindings, QStringLiteral("OverviewFindings"));
    new CListMenu(*m_pFunctions, QStringLiteral("OverviewFunctions"));
    new CListMenu(*m_pStatements, QStringLiteral("OverviewStatements"));
    m_pFindings->m_fnOpenRow = [this](int row) { emit FindingWanted(m_pFindings->RowAt(row).finding); };
    m_pFunctions->m_fnOpenRow = [this](int row) { emit FunctionWanted(m_pFunctions->RowAt(row).number); };
    m_pStatements->m_fnOpenRow = [this](int row) { emit ShapeWanted(m_pStatements->RowAt(row).number); };
}

QList<QWidget*> COverviewFrame::WindowPanes() const { return {m_pFindings, m_pFunctions, m_pStatements}; }

void COverviewFrame::ShowResults() {
    const ExploredSession& explored = Exploration().Explored();
    m_pLine->setText(Exploration().LogName() + QStringLiteral("   ") + ToQString(OverviewLine(explored)));
    m_pFindings->ShowRows(MakeOverviewFindings(explored, Exploration().Findings()));
    ShowScope();
}

void COverviewFrame::ShowScope() {
    const ExploredScope* const scope = Exploration().Scope();
    if (scope == nullptr) {
        return; // what is shown stays until the counts are there
    }
    m_pFunctions->ShowRows(MakeOverviewFunctions(Exploration().Explored(), scope->profile));
    m_pStatements->ShowRows(MakeOverviewStatements(Exploration().Explored(), scope->shapes));
}

void COverviewFrame::DropResults() {
    m_pFindings->ClearRows();
    m_pFunctions->ClearRows();
    m_pStatements->ClearRows();
}

} // namespace carvelot
