#include "ui/app/FrameToolBars.h"

#include "settings/AppSettings.h"
#include "settings/Commands.h"
#include "ui/app/MainFrame.h"
#include "ui/kit/AutoHide.h"
#include "ui/kit/Icons.h"
#include "ui/kit/StoredLayout.h"
#include "ui/kit/Text.h"
#include "ui/kit/ToolBar.h"

#include <QApplication>
#include <QEvent>

#include <algorithm>
#include <span>

namespace carvelot {

CFrameToolBars::CFrameToolBars(CMainFrame& frame) : m_frame(frame) {
    const auto fnList = [](std::span<const int> ids) { return std::vector<int>(ids.begin(), ids.end()); };
    m_pToolBar = new CToolBar(m_frame, ID_TOOLBAR_STANDARD, tr("Standard"), QStringLiteral("StandardToolBar"),
                              fnList(StandardToolBar()));
    m_pCacheToolBar = new CToolBar(m_frame, ID_TOOLBAR_CACHE, tr("Cache Browser"),
                                   QStringLiteral("CacheToolBar"), fnList(CacheToolBar()));
    m_frame.addToolBar(Qt::TopToolBarArea, m_pToolBar);
    m_frame.addToolBar(Qt::TopToolBarArea, m_pCacheToolBar);
    m_frame.AddCommand(
        ID_VIEW_TOOLBAR, [this] { m_pToolBar->setVisible(m_pToolBar->isHidden()); }, {},
        [this] { return !m_pToolBar->isHidden(); });
}

void CFrameToolBars::Load() {
    m_userImages.Load(QStringLiteral("./UserImages.bmp"));
    const auto load = [](const char* name, CToolBar& toolBar) {
        if (const std::string stored = GetWorkspaceString(name, ""); !stored.empty()) {
            toolBar.SetCommands(ReadCommands(stored, kMostToolBarCommands));
        }
    };
    load("ToolBarStandard", *m_pToolBar);
    load("ToolBarCache", *m_pCacheToolBar);
    for (int nId = ID_TOOLBAR_USER_FIRST; nId <= ID_TOOLBAR_USER_LAST; ++nId) {
        if (const auto stored = ReadToolBar(GetWorkspaceString("UserToolBar" + std::to_string(nId), ""))) {
            AddUserToolBar(nId, stored->m_strTitle)->SetCommands(stored->m_listCommands);
        }
    }
    for (const auto& [nId, nImage] : ReadUserImages(GetWorkspaceString("UserImages", ""))) {
        SetUserImage(nId, nImage);
    }
}

QList<CToolBar*> CFrameToolBars::All() const {
    return QList<CToolBar*>{m_pToolBar, m_pCacheToolBar} + m_listUserToolBars;
}

CToolBar* CFrameToolBars::AddUserToolBar(int nId, const QString& strTitle) {
    auto* toolBar = new CToolBar(m_frame, nId, strTitle, QStringLiteral("UserToolBar%1").arg(nId), {});
    m_frame.addToolBar(Qt::TopToolBarArea, toolBar);
    m_listUserToolBars << toolBar;
    return toolBar;
}

CToolBar* CFrameToolBars::New(const QString& strTitle) {
    for (int nId = ID_TOOLBAR_USER_FIRST; nId <= ID_TOOLBAR_USER_LAST; ++nId) {
        if (std::ranges::find(m_listUserToolBars, nId, &CToolBar::Id) != m_listUserToolBars.end())
            continue;
        CToolBar* const pToolBar = AddUserToolBar(nId, strTitle);
        m_frame.AutoHide().Bars().Place();
        return pToolBar;
    }
    return nullptr;
}

void CFrameToolBars::Delete(CToolBar* pToolBar) {
    if (!m_listUserToolBars.removeOne(pToolBar))
        return;
    m_frame.removeToolBar(pToolBar);
    pToolBar->deleteLater();
}

void CFrameToolBars::SetUserImage(int nId, int nImage) {
    QAction* pAction = m_frame.CommandAction(nId);
    if (pAction == nullptr)
        return;
    if (nImage < 0)
        m_mapUserImages.erase(nId);
    else
        m_mapUserImages[nId] = nImage;
    const bool bThere = nImage >= 0 && nImage < m_userImages.Count();
    pAction->setIcon(bThere ? m_userImages.Icon(nImage) : CommandIcon(nId));
}

int CFrameToolBars::UserImage(int nId) const {
    const auto it = m_mapUserImages.find(nId);
    return it != m_mapUserImages.end() ? it->second : -1;
}

void CFrameToolBars::SetShowsToolTips(bool bShow) {
    m_bToolTips = bShow;
    if (bShow)
        qApp->removeEventFilter(this);
    else
        qApp->installEventFilter(this);
}

bool CFrameToolBars::eventFilter(QObject* pObject, QEvent* pEvent) {
    // Installed only while the user wants no tips on toolbars.
    if (pEvent->type() == QEvent::ToolTip && pObject->isWidgetType() &&
        qobject_cast<CToolBar*>(pObject->parent()) != nullptr)
        return true;
    return QObject::eventFilter(pObject, pEvent);
}

void CFrameToolBars::RestoreDefault() {
    QList<CToolBar*> listToolBars = All();
    for (CToolBar* pToolBar : listToolBars)
        m_frame.removeToolBar(pToolBar);
    for (CToolBar* pToolBar : listToolBars) {
        if (pToolBar->IsUserToolBar() && pToolBar == m_listUserToolBars.constFirst())
            m_frame.addToolBarBreak(Qt::TopToolBarArea);
        if (!pToolBar->IsUserToolBar())
            pToolBar->Reset();
        m_frame.addToolBar(Qt::TopToolBarArea, pToolBar);
        pToolBar->show();
    }
}

void CFrameToolBars::Save() const {
    WriteWorkspaceInt("ToolTips", m_bToolTips ? 1 : 0);
    WriteWorkspaceString("ToolBarStandard",
                         m_pToolBar->IsChanged() ? WriteCommands(m_pToolBar->Commands()) : "");
    WriteWorkspaceString("ToolBarCache",
                         m_pCacheToolBar->IsChanged() ? WriteCommands(m_pCacheToolBar->Commands()) : "");
    for (int nId = ID_TOOLBAR_USER_FIRST; nId <= ID_TOOLBAR_USER_LAST; ++nId) {
        const std::string strName = "UserToolBar" + std::to_string(nId);
        const auto it = std::ranges::find(m_listUserToolBars, nId, &CToolBar::Id);
        if (it != m_listUserToolBars.end())
            WriteWorkspaceString(strName, WriteToolBar({(*it)->windowTitle(), (*it)->Commands()}));
        else if (!GetWorkspaceString(strName, "").empty())
            WriteWorkspaceString(strName, "");
    }
    WriteWorkspaceString("UserImages", WriteUserImages(m_mapUserImages));
}

} // namespace carvelot
