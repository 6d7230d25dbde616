// ReportView.h - what the lists of the program share: whole rows are selected and copied, and what is cut
// tells itself below the pointer.
#pragma once

#include <QTreeView>

namespace carvelot {

// Of a cell with a bar: how long it is, from -1 to 1 of the longest.
inline constexpr int kShareRole = Qt::UserRole + 1;
// Whether a cell's bar begins in the middle, what falls going to the left.
inline constexpr int kSignedShareRole = Qt::UserRole + 2;

class CReportView : public QTreeView {
    Q_OBJECT

public:
    // Of a longer text a cell draws `mostDrawn` characters, on one line; 0 draws all of it.
    CReportView(const QString& accessibleName, QWidget* parent, qsizetype mostDrawn = 0);

protected:
    // Only a cell is double-clicked, and only by the left button.
    void mouseDoubleClickEvent(QMouseEvent* event) override;
};

// Copies a view's selected rows, a row a line, their cells divided by tabs; columns that are hidden are left
// out. With nothing selected the clipboard stays as it is.
void CopySelectedRows(const QAbstractItemView& view);
// The same by Ctrl+C from now on.
void CopyRowsByKey(QAbstractItemView& view);

} // namespace carvelot
