// PropertyGrid.h - a grid of labelled rows in groups, with option lists, a description area and marks on
// changed rows.
#pragma once

#include "tools/JDEPropSetting.h"

#include <QWidget>

#include <vector>

class QLabel;
class QTreeWidget;
class QTreeWidgetItem;

namespace carvelot {

class CPropertyGrid : public QWidget {
    Q_OBJECT

public:
    explicit CPropertyGrid(QWidget* parent);

    // Shows the rows, which belong to the caller and outlive the grid's use of them.
    void SetRows(std::vector<CJDEPropSetting>& top);
    // Takes over what stands in an editor that is open.
    void EndEdit();
    // The row behind an item.
    static CJDEPropSetting* RowOf(const QTreeWidgetItem* item);
    // Takes a typed or chosen value over into the row and its mark.
    void SetValue(QTreeWidgetItem& item, const QString& value);

protected:
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    void AddRow(QTreeWidgetItem* parent, CJDEPropSetting& row);
    void Edit(QTreeWidgetItem* item);
    void ShowDescription(const QTreeWidgetItem* item);

    QTreeWidget* m_pTree;
    QLabel* m_pName;
    QLabel* m_pDescription;
};

} // namespace carvelot
