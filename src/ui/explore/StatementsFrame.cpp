#include "ui/explore/StatementsFrame.h"

#include "explore/lists/ListTexts.h"
#include "ui/explore/KeptSplitter.h"
#include "ui/explore/ListMenu.h"
#include "ui/kit/Text.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMenu>
#include <QPlainTextEdit>

#include <algorithm>
#include <utility>

namespace carvelot {

CStatementsFrame::CStatementsFrame(CExploration& exploration)
    : CExploreFrame(exploration, tr("SQL Statements")),
      m_pShapes(new CExploredList<ShapeRow>(tr("Statements"), nullptr)), m_pText(new QPlainTextEdit),
      m_pExecutions(new CExploredList<ExecutionRow>(tr("Executions"), nullptr)),
      m_pCallers(new CExploredList<ShapeCallerRow>(tr("Run by"), nullptr)) {
    m_pText->setReadOnly(true);
    m_pText->setTabChangesFocus(true);
    m_pText->setMinimumHeight(m_pText->fontMetrics().lineSpacing() * 2);
    m_pText->setAccessibleName(tr("Text of the statement"));
    auto* below = new CKeptSplitter(Qt::Horizontal, "StatementsCallersWidth", {900, 300});
    below->addWidget(m_pExecutions);
    below->addWidget(m_pCallers);
    below->TakeSizes();
    auto* body = new CKeptSplitter(Qt::Vertical, "StatementsHeights", {400, 60, 340});
    body->addWidget(m_pShapes);
    body->addWidget(m_pText);
    body->addWidget(below);
    body->TakeSizes();
    SetBody(body);

    connect(m_pShapes->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            &CStatementsFrame::OnShapeRow);
    connect(m_pExecutions->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            &CStatementsFrame::OnExecutionRow);
    // The way to the record can refill the lists: what it needs of a row is taken first.
    m_pShapes->m_fnOpenRow = [this](int row) {
        const RecordIndex record = m_pShapes->RowAt(row).m_profile.longestRecord;
        Exploration().ShowInSession(record);
    };
    m_pExecutions->m_fnOpenRow = [this](int row) {
        const RecordIndex record = RecordOf(m_pExecutions->RowAt(row));
        Exploration().ShowInSession(record);
    };

    const auto addCopyStatement = [this](QMenu& menu, RecordIndex record) {
        connect(menu.addAction(tr("Copy Statement")), &QAction::triggered, this, [this, record] {
            const CDetailList& details = Exploration().Session().m_listDetails;
            // The records may have gone while the menu was up.
            if (Number(record) < details.Size()) {
                QGuiApplication::clipboard()->setText(ToQString(StatementText(details, record)));
            }
        });
    };
    auto* shapesMenu = new CListMenu(*m_pShapes, QStringLiteral("Statements"));
    shapesMenu->m_fnAddEntries = [this, addCopyStatement](QMenu& menu, int row) {
        if (row < 0) {
            return;
        }
        const RecordIndex longest = m_pShapes->RowAt(row).m_profile.longestRecord;
        connect(menu.addAction(tr("Show the Longest")), &QAction::triggered, this,
                [this, longest] { Exploration().ShowInSession(longest); });
        addCopyStatement(menu, longest);
    };
    auto* executionsMenu = new CListMenu(*m_pExecutions, QStringLiteral("Executions"));
    executionsMenu->m_fnAddEntries = [this, addCopyStatement](QMenu& menu, int row) {
        if (row < 0) {
            return;
        }
        const RecordIndex record = RecordOf(m_pExecutions->RowAt(row));
        connect(menu.addAction(tr("Show in Session")), &QAction::triggered, this,
                [this, record] { Exploration().ShowInSession(record); });
        addCopyStatement(menu, record);
    };
    new CListMenu(*m_pCallers, QStringLiteral("StatementCallers"));
}

QList<QWidget*> CStatementsFrame::WindowPanes() const {
    return {m_pShapes, m_pText, m_pExecutions, m_pCallers};
}

void CStatementsFrame::ShowResults() {
    ShowScope();
    ShowSelected();
}

void CStatementsFrame::ShowScope() {
    if (Exploration().Scope() == nullptr) {
        return; // what is shown stays until the counts are there
    }
    m_pScope = Exploration().SharedScope();
    const ExploredSession& explored = Exploration().Explored();
    m_pShapes->ShowRows(explored, MakeShapeRows(*m_pScope));
    m_pExecutions->Model().SetColumnTitle(ExecutionRow::OWNER,
                                          ToQString(OwnersTitle(explored.session.m_nLogFormat)));
    SelectShape(m_nShape);
    MarkSelected();
}

void CStatementsFrame::SelectShape(std::uint32_t shape) {
    m_nShape = shape;
    const int rows = m_pShapes->Model().rowCount();
    if (rows == 0) {
        ShowShape(-1);
        return;
    }
    int row = 0;
    while (row < rows && m_pShapes->RowAt(row).m_profile.shape != shape) {
        ++row;
    }
    // One that the scope lacks comes back with the next scope that has it.
    const int shown = row < rows ? row : 0;
    if (m_pShapes->currentIndex().row() != shown) {
        const bool filling = std::exchange(m_bFilling, true);
        m_pShapes->setCurrentIndex(m_pShapes->Model().index(shown, 0));
        m_bFilling = filling;
    }
    ShowShape(shown);
}

void CStatementsFrame::OnShapeRow() {
    const int row = m_pShapes->currentIndex().row();
    if (!m_bFilling && row >= 0) {
        m_nShape = m_pShapes->RowAt(row).m_profile.shape;
        ShowShape(row);
    }
}

void CStatementsFrame::ShowShape(int row) {
    if (row < 0 || m_pScope == nullptr) {
        m_pText->clear();
        m_pExecutions->ClearRows();
        m_pCallers->ClearRows();
        return;
    }
    const ExploredSession& explored = Exploration().Explored();
    const std::uint32_t shape = m_pShapes->RowAt(row).m_profile.shape;
    ShapeRuns runs(explored, *m_pScope, shape);
    const bool filling = std::exchange(m_bFilling, true);
    m_pExecutions->ShowRows(explored, std::move(runs.m_listExecutions));
    m_pCallers->ShowRows(explored, std::move(runs.m_listCallers));
    m_bFilling = filling;
    m_pText->setPlainText(ToQString(explored.shapes.Text(shape)));
}

RecordIndex CStatementsFrame::RecordOf(const ExecutionRow& row) const {
    return Exploration().Explored().frames[row.m_nFrame].record;
}

void CStatementsFrame::OnExecutionRow() {
    const int row = m_pExecutions->currentIndex().row();
    if (m_bFilling || row < 0) {
        return;
    }
    const RecordIndex record = RecordOf(m_pExecutions->RowAt(row));
    m_pText->setPlainText(ToQString(StatementText(Exploration().Session().m_listDetails, record)));
    Exploration().Select(record);
}

// Another window's statement brings its shape up.
void CStatementsFrame::ShowSelected() {
    const std::optional<RecordIndex> selected = Exploration().Selected();
    if (!selected || m_pScope == nullptr) {
        return;
    }
    const std::uint32_t shape = ShapeOfRecord(Exploration().Explored(), *selected);
    const bool isListed = std::ranges::any_of(
        m_pScope->shapes, [shape](const ShapeProfile& profile) { return profile.shape == shape; });
    if (isListed && shape != m_nShape) {
        SelectShape(shape);
    }
    MarkSelected();
}

void CStatementsFrame::MarkSelected() {
    const std::optional<RecordIndex> selected = Exploration().Selected();
    const int current = m_pExecutions->currentIndex().row();
    if (!selected || (current >= 0 && RecordOf(m_pExecutions->RowAt(current)) == *selected)) {
        return;
    }
    for (int row = 0; row < m_pExecutions->Model().rowCount(); ++row) {
        if (RecordOf(m_pExecutions->RowAt(row)) == *selected) {
            m_pExecutions->setCurrentIndex(m_pExecutions->Model().index(row, 0));
            return;
        }
    }
}

void CStatementsFrame::DropResults() {
    m_pShapes->ClearRows();
    ShowShape(-1);
    m_pScope.reset();
    m_nShape = kNoShape;
}

QString CStatementsFrame::EmptyText() const {
    const ExploredScope* const scope = Exploration().Scope();
    if (scope == nullptr || !scope->shapes.empty()) {
        return {};
    }
    const bool isWhole =
        Exploration().ScopeSelection().What() == Selection::Kind::Nothing && Exploration().Range().IsWhole();
    return isWhole ? tr("This log holds no statements.")
                   : tr("No statement ran in this scope and range. The crosses above let go of them.");
}

} // namespace carvelot
