// KeptWidths.h - columns of a list or tree that are found again as wide as the user left them.
#pragma once

#include <QObject>

#include <string>

class QTreeView;

namespace carvelot {

// Belongs to the view, which has its columns already; the widths are stored below the name.
class CKeptWidths : public QObject {
    Q_OBJECT

public:
    CKeptWidths(QTreeView& view, std::string name);

protected:
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    void Read();
    void Keep() const;

    QTreeView& m_view;
    const std::string m_strName;
    bool m_bResized = false;
};

} // namespace carvelot
