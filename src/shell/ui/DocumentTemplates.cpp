#include "cachebrowser/ui/CacheDocument.h"
#include "cachebrowser/ui/CacheFrame.h"
#include "resources/ui/Icons.h"
#include "shell/ui/CarvelotApp.h"
#include "views/ui/ChildFrame.h"
#include "views/ui/SessionDocument.h"

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
