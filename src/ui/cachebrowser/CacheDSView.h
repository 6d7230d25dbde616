// CacheDSView.h - the form on the left of a cache browser window: which cache, and what its rows look like.
#pragma once

#include "cachebrowser/CacheDoc.h"

#include <QWidget>

class QGroupBox;
class QLineEdit;

namespace carvelot {

class CListCtrl;

class CCacheDSView : public QWidget, public ICacheDSView {
    Q_OBJECT

public:
    // Registers itself in the document and shows it.
    explicit CCacheDSView(CCacheDoc& cache);
    ~CCacheDSView() override;

    // What stands in the two boxes at this moment; both can be edited.
    std::string ProcessText() const override;
    std::string HandleText() const override;
    void Fill(std::vector<std::shared_ptr<CMember>> rows) override;

    CListCtrl& List() const { return *m_pList; }

protected:
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void LayOut();

    CCacheDoc& m_cache;
    CMemberRows m_rows;
    QGroupBox* m_pGroup;
    QLineEdit* m_pProcess;
    QLineEdit* m_pHandle;
    CListCtrl* m_pList;
};

} // namespace carvelot
