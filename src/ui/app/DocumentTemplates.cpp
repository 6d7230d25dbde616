#include "ui/app/CarvelotApp.h"
#include "ui/cachebrowser/CacheDocument.h"
#include "ui/cachebrowser/CacheFrame.h"
#include "ui/kit/Icons.h"
#include "ui/session/ChildFrame.h"
#include "ui/session/SessionDocument.h"

namespace carvelot {

void AddDocTemplates(CCarvelotApp& app) {
    app.AddDocTemplate(std::make_unique<CDocTemplate>(
        EMenuState::Session, SessionIcon(), [] { return std::unique_ptr<CDocument>(new CSessionDocument); },
        [](CDocument& document) {
            return std::unique_ptr<CMDIChildWnd>(new CChildFrame(static_cast<CSessionDocument&>(document)));
        }));
    app.m_pCacheTemplate = &app.AddDocTemplate(std::make_unique<CDocTemplate>(
        EMenuState::Cache, CacheIcon(), [] { return std::unique_ptr<CDocument>(new CCacheDocument); },
        [](CDocument& document) {
            return std::unique_ptr<CMDIChildWnd>(new CCacheFrame(static_cast<CCacheDocument&>(document)));
        }));
}

} // namespace carvelot
