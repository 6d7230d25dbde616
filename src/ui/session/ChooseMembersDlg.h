// ChooseMembersDlg.h - which files of a zip archive to open, and how.
#pragma once

#include "sources/PackedFile.h"

#include <QDialog>

class QPushButton;
class QRadioButton;
class QTreeWidget;

namespace carvelot {

class CChooseMembersDlg : public QDialog {
    Q_OBJECT

public:
    // `archive` as the user knows it. At first all members are chosen, as one log.
    CChooseMembersDlg(const QString& archive, const std::vector<PackedMember>& members);

    // Their places in the list, in its order.
    std::vector<std::size_t> Chosen() const;
    bool AsOneLog() const;

private:
    void EnableOK();

    QTreeWidget* m_pList;
    QRadioButton* m_pAsOne;
    QPushButton* m_pOK;
};

} // namespace carvelot
