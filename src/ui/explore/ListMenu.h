// ListMenu.h - what all lists of Explore offer besides their rows: a menu with Copy and Export, and column
// widths that are kept from run to run.
#pragma once

#include "ui/kit/ListCtrl.h"

#include <QPointer>

#include <functional>

class QMenu;

namespace carvelot {

// Belongs to the list.
class CListMenu : public QObject {
    Q_OBJECT

public:
    // `name`, as "Statements", is that of the file that is proposed, and the widths are kept below it.
    CListMenu(CListCtrl& list, const QString& name);

    // What stands ahead of Copy and Export; called for each menu, with the list row that is selected or -1.
    std::function<void(QMenu& menu, int row)> m_fnAddEntries;

    // Asks for a file and writes the list as it is shown.
    void Export();

private:
    void ShowMenu(const QPoint& point);

    CListCtrl& m_list;
    const QString m_strName;
};

} // namespace carvelot
