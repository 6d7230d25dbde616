#include "ui/explore/CallProfileFrame.h"

#include "ui/explore/KeptSplitter.h"
#include "ui/explore/KeptWidths.h"
#include "ui/explore/ListMenu.h"
#include "ui/explore/TitledView.h"
#include "ui/kit/PlainText.h"

#include <QHeaderView>
#include <QLabel>
#include <QVBoxLayout>

#include <algorithm>

namespace carvelot {

CCallProfileFrame::CCallProfileFrame(CExploration& exploration)
    : CExploreFrame(exploration, tr("Call Profile")),
      m_pFunctions(new CRowList<FunctionRow>(tr("Functions"), nullptr)),
      m_pCallers(new CRowList<EdgeRow>(tr("Callers"), nullptr)),
      m_pCallees(new CRowList<EdgeRow>(tr("Callees"), nullptr)),
      m_pTree(new CReportView(tr("Call tree"), nullptr)) {
    m_pTree->setModel(&m_treeModel);
    m_pTree->setRootIsDecorated(true);
    m_pTree->setItemsExpandable(true);
    m_pTree->setExpandsOnDoubleClick(false);
    for (int column = 0; column < m_treeModel.columnCount(); ++column) {
        m_pTree->header()->resizeSection(column,
                                         CallTreeRow::Columns()[static_cast<std::size_t>(column)].m_nWidth);
    }
    new CKeptWidths(*m_pTree, "CallTreeWidths");

    auto* const neighbours = new CKeptSplitter(Qt::Vertical, "CallProfileNeighbours", {1, 1});
    neighbours->addWidget(Titled(tr("&Callers"), *m_pCallers));
    neighbours->addWidget(Titled(tr("C&allees"), *m_pCallees));
    neighbours->TakeSizes();
    auto* const upper = new CKeptSplitter(Qt::Horizontal, "CallProfileFunctions", {5, 3});
    upper->addWidget(Titled(tr("F&unctions"), *m_pFunctions));
    upper->addWidget(neighbours);
    upper->TakeSizes();
    auto* const body = new CKeptSplitter(Qt::Vertical, "CallProfileTree", {5, 4});
    body->addWidget(upper);
    body->addWidget(Titled(tr("Call t&ree"), *m_pTree));
    body->TakeSizes();
    SetBody(body);

    connect(m_pFunctions->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &CCallProfileFrame::ShowNeighbours);
    connect(m_pTree, &QTreeView::doubleClicked, this, &CCallProfileFrame::OpenTreeNode);
    m_pFunctions->m_fnOpenRow = [this](int row) {
        const RecordIndex record = LongestRecord(m_pShown->cut, m_pFunctions->RowAt(row).counts.key);
        if (record != kNoRecord) {
            Exploration().ShowInSession(record);
        }
    };
    new CListMenu(*m_pFunctions, QStringLiteral("Functions"));
    new CListMenu(*m_pCallers, QStringLiteral("Callers"));
    new CListMenu(*m_pCallees, QStringLiteral("Callees"));
    for (CRowList<EdgeRow>* const list : {m_pCallers, m_pCallees}) {
        list->m_fnOpenRow = [this, list](int row) { SelectKey(list->RowAt(row).key); };
    }
}

CCallProfileFrame::~CCallProfileFrame() { m_treeModel.Show(nullptr); }

QList<QWidget*> CCallProfileFrame::WindowPanes() const {
    return {m_pFunctions, m_pCallers, m_pCallees, m_pTree};
}

void CCallProfileFrame::ShowFunction(std::uint32_t key) {
    if (m_pShown == nullptr || !SelectKey(key)) {
        m_wanted = key;
    }
}

void CCallProfileFrame::ShowResults() { ShowScope(); }

void CCallProfileFrame::ShowScope() {
    if (Exploration().Scope() == nullptr) {
        return; // what is shown stays until the counts are there
    }
    const CFrameKeys& keys = Exploration().Explored().frames.Keys();
    if (!m_wanted && m_pFunctions->SelectedRow() >= 0) {
        m_wanted = m_pFunctions->RowAt(m_pFunctions->SelectedRow()).counts.key;
    }
    m_treeModel.Show(nullptr);
    m_pShown = Exploration().SharedScope();
    m_pTreeRows = std::make_unique<CCallTreeRows>(keys, m_pShown->profile);
    m_treeModel.Show(m_pTreeRows.get());
    m_pFunctions->ShowRows(MakeFunctionRows(keys, m_pShown->profile));
    if (!m_wanted || !SelectKey(*m_wanted)) {
        m_pFunctions->setCurrentIndex(m_pFunctions->Model().index(0, 0));
    }
    m_wanted.reset();
    ShowNeighbours();
}

// A record that begins a frame marks the function.
void CCallProfileFrame::ShowSelected() {
    if (const auto record = Exploration().Selected()) {
        const CFrames& frames = Exploration().Explored().frames;
        const std::uint32_t frame = frames.FrameAt(*record);
        if (frame != kNoFrame) {
            SelectKey(frames[frame].key);
        }
    }
}

void CCallProfileFrame::DropResults() {
    m_treeModel.Show(nullptr);
    m_pTreeRows.reset();
    m_pFunctions->ClearRows();
    m_pCallers->ClearRows();
    m_pCallees->ClearRows();
    m_pShown.reset();
    m_wanted.reset();
}

QString CCallProfileFrame::EmptyText() const {
    if (m_pShown == nullptr || !m_pShown->profile.m_functions.empty()) {
        return {};
    }
    return Exploration().Explored().frames.Count() == 0 ? tr("This log holds no calls.")
                                                        : tr("Nothing lies in this scope and range.");
}

void CCallProfileFrame::ShowNeighbours() {
    const int row = m_pFunctions->SelectedRow();
    if (m_pShown == nullptr || row < 0) {
        m_pCallers->ClearRows();
        m_pCallees->ClearRows();
        return;
    }
    const CFrameKeys& keys = Exploration().Explored().frames.Keys();
    const std::uint32_t key = m_pFunctions->RowAt(row).counts.key;
    m_pCallers->ShowRows(MakeCallerRows(keys, m_pShown->profile, key));
    m_pCallees->ShowRows(MakeCalleeRows(keys, m_pShown->profile, key));
}

void CCallProfileFrame::OpenTreeNode(const QModelIndex& index) {
    SelectKey(m_pShown->profile.m_tree[m_treeModel.Node(index)].key);
}

bool CCallProfileFrame::SelectKey(std::uint32_t key) {
    for (int row = 0; row < m_pFunctions->Model().rowCount(); ++row) {
        if (m_pFunctions->RowAt(row).counts.key == key) {
            const QModelIndex index = m_pFunctions->Model().index(row, 0);
            m_pFunctions->setCurrentIndex(index);
            m_pFunctions->scrollTo(index);
            return true;
        }
    }
    return false;
}

} // namespace carvelot
