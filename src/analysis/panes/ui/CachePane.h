// CachePane.h - the pane "Cache Details": the caches of the selected process and what was done to them.
#pragma once

#include "analysis/panes/ui/DockablePane.h"

#include <QTreeView>

namespace carvelot {

class CCachePane : public CDockablePane {
    Q_OBJECT

public:
    CCachePane();

    QTreeView& Tree() { return *m_pTree; }
    // The images of the tree, 16 by 15 pixels.
    const QList<QIcon>& Images() const { return m_listImages; }
    void ClearTree();
    QWidget* MainControl() const override { return m_pTree; }

protected:
    void OnSize(int nWidth, int nHeight) override;

private:
    QTreeView* m_pTree;
    QList<QIcon> m_listImages;
};

} // namespace carvelot
