#include "ui/tools/GBLTables.h"

#include "ui/kit/ListCtrl.h"
#include "ui/kit/Text.h"
#include "ui/kit/UserInterface.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QPushButton>
#include <QVBoxLayout>

namespace carvelot {

CGBLTables::CGBLTables() : QDialog(QApplication::activeWindow()) {
    setWindowTitle(tr("Global Tables"));
    m_pList = new CListCtrl(SpecsOf(SpecFileRow::Columns()), tr("Spec files"), this);
    m_pList->setObjectName(QStringLiteral("SpecFiles"));
    m_pList->setSelectionMode(QAbstractItemView::ExtendedSelection);
    // The paths of one installation begin alike: their ends tell them apart.
    m_pList->setTextElideMode(Qt::ElideLeft);

    auto* buttons = new QDialogButtonBox;
    QPushButton* remove = buttons->addButton(tr("Delete Selected"), QDialogButtonBox::AcceptRole);
    remove->setObjectName(QStringLiteral("DeleteSelected"));
    buttons->addButton(QDialogButtonBox::Cancel);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_pList);
    layout->addWidget(buttons);
    // In the dialog already: else it would forget it when the focus passes another button.
    remove->setDefault(true);
    resize(480, 320);
    m_pList->setFocus();

    connect(buttons, &QDialogButtonBox::accepted, this, &CGBLTables::OnDeleteSelected);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    QApplication::setOverrideCursor(Qt::WaitCursor);
    if (m_files.Fill()) {
        m_pList->Fill(&m_files);
        // What was found last has the focus, wherever the sort puts it; a reader begins at the top.
        m_pList->setAutoScroll(false);
        if (m_files.RowCount() != 0) {
            const QModelIndex last = m_pList->Model().index(static_cast<int>(m_files.RowCount()) - 1, 0);
            m_pList->selectionModel()->setCurrentIndex(last, QItemSelectionModel::NoUpdate);
        }
        m_pList->selectAll();
        m_pList->SortBy(0, Qt::AscendingOrder);
        m_pList->setAutoScroll(true);
    } else {
        UserInterface().ShowMessage(QStringLiteral("Could not determine installation path."));
    }
    QApplication::restoreOverrideCursor();
}

// A dialog hides itself, list and all, when its own members are gone already.
CGBLTables::~CGBLTables() { m_pList->Fill(nullptr); }

void CGBLTables::OnDeleteSelected() {
    std::vector<std::size_t> rows;
    for (const int row : m_pList->SelectedRows()) {
        rows.push_back(m_pList->Model().SourceRow(row));
    }
    m_files.Delete(rows);
    accept();
}

} // namespace carvelot
