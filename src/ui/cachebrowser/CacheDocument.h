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
    void ShowMessage(std::string_view strText) override;
    bool StopFetch() override;

    CCacheDoc m_cache;
    bool m_bFetching = false;
    QElapsedTimer m_sinceLook;
};

// "Browse Data": runs the dialog on a new document of that cache, and opens its window when it ends with OK.
void BrowseCache(std::uint32_t nProcess, std::string_view strHandle, std::string_view strName,
                 std::string_view strInstance);

} // namespace carvelot
