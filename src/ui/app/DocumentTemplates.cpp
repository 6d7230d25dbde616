#include "ui/app/CarvelotApp.h"
#include "ui/app/Requests.h"
#include "ui/cachebrowser/CacheDocument.h"
#include "ui/cachebrowser/CacheFrame.h"
#include "ui/kit/Icons.h"
#include "ui/session/ChildFrame.h"
#include "ui/session/SessionDocument.h"

namespace carvelot {

void AddDocTemplates(CCarvelotApp& app) {
    app.AddDocTemplate(std::make_unique<CDocTemplate>(
        EMenuState::Session, SessionIcon(),
        [&app] {
            auto made = std::make_unique<CSessionDocument>(app.m_pendingStatement);
            ConnectRequests(*made);
            return std::unique_ptr<CDocument>(std::move(made));
        },
        [](CDocument& document) {
            return std::unique_ptr<CMDIChildWnd>(new CChildFrame(static_cast<CSessionDocument&>(document)));
        }));
    app.m_pCacheTemplate = &app.AddDocTemplate(std::make_unique<CDocTemplate>(
        EMenuState::Cache, CacheIcon(),
        [&app] {
            auto made = std::make_unique<CCacheDocument>();
            made->Cache().m_pfnFormatMathNumeric =
                reinterpret_cast<FFormatMathNumeric>(app.m_pfnFormatMathNumeric);
            return std::unique_ptr<CDocument>(std::move(made));
        },
        [](CDocument& document) {
            return std::unique_ptr<CMDIChildWnd>(new CCacheFrame(static_cast<CCacheDocument&>(document)));
        }));
}

} // namespace carvelot
