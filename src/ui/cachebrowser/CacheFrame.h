// CacheFrame.h - the window of one live cache: its structure on the left, its rows on the right.
#pragma once

#include "ui/cachebrowser/CacheDSView.h"
#include "ui/cachebrowser/CacheDataView.h"
#include "ui/kit/Document.h"

namespace carvelot {

class CCacheDocument;

class CCacheFrame : public CMDIChildWnd {
    Q_OBJECT

public:
    explicit CCacheFrame(CCacheDocument& document);

    CCacheDSView& DSView() const { return *m_pDSView; }
    CCacheDataView& DataView() const { return *m_pDataView; }

    QList<QWidget*> WindowPanes() const override;

private:
    CCacheDSView* m_pDSView;
    CCacheDataView* m_pDataView;
};

} // namespace carvelot
