// CacheDocument.h - the document of a cache browser window.
#pragma once

#include "cachebrowser/CacheDoc.h"
#include "ui/kit/Document.h"

#include <QElapsedTimer>

namespace carvelot {

class CCacheDocument : public CDocument, private ICacheHost {
    Q_OBJECT

public:
    CCacheDocument();

    // It comes from a cache of the Cache Details pane, never from a file.
    bool OnOpenDocument(const QString&) override { return false; }

    CCacheDoc& Cache() { return m_cache; }
    // Fetches the rows. The interface stays blocked meanwhile, but Esc stops it.
    void OnRefreshData();
    // Runs the "Define Cache Structure" dialog again; after its OK the rows are gone.
    void OnDefineStructure();

private:
    void ShowMessage(std::string_view text) override;
    bool StopFetch() override;

    CCacheDoc m_cache;
    bool m_bFetching = false;
    QElapsedTimer m_sinceLook;
};

} // namespace carvelot
