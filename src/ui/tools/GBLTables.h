// GBLTables.h - "Global Tables": finds a JDE client's table spec files and deletes the selected ones.
#pragma once

#include "tools/SpecFiles.h"

#include <QDialog>

namespace carvelot {

class CListCtrl;

class CGBLTables : public QDialog {
    Q_OBJECT

public:
    // Fills the list, with every row selected, and says so when there is no installation.
    CGBLTables();
    ~CGBLTables() override;

private:
    void OnDeleteSelected();

    CSpecFiles m_files;
    CListCtrl* m_pList;
};

} // namespace carvelot
