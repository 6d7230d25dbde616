#include "ui/kit/MainWindow.h"

namespace carvelot {

namespace {

CMainWindow* s_pMainWindow = nullptr;
const CAppSettings* s_pSettings = nullptr;

} // namespace

CMainWindow::CMainWindow() { s_pMainWindow = this; }

CMainWindow::~CMainWindow() { Leave(); }

void CMainWindow::Leave() {
    if (s_pMainWindow == this) {
        s_pMainWindow = nullptr;
    }
}

CMainWindow* MainWindow() { return s_pMainWindow; }

const CAppSettings& Settings() { return *s_pSettings; }

void SetSettings(const CAppSettings& settings) { s_pSettings = &settings; }

} // namespace carvelot
