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
}

} // namespace carvelot
