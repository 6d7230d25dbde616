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
    const auto list = [](std::span<const int> ids) { return std::vector<int>(ids.begin(), ids.end()); };
    m_pToolBar = new CToolBar(m_frame, ID_TOOLBAR_STANDARD, tr("Standard"), QStringLiteral("StandardToolBar"),
                              list(StandardToolBar()));
    m_pCacheToolBar = new CToolBar(m_frame, ID_TOOLBAR_CACHE, tr("Cache Browser"),
                                   QStringLiteral("CacheToolBar"), list(CacheToolBar()));
    m_frame.addToolBar(Qt::TopToolBarArea, m_pToolBar);
    m_frame.addToolBar(Qt::TopToolBarArea, m_pCacheToolBar);
    m_frame.AddCommand(
        ID_VIEW_TOOLBAR, [this] { m_pToolBar->setVisible(m_pToolBar->isHidden()); }, {},
        [this] { return !m_pToolBar->isHidden(); });
}

void CFrameToolBars::Load() {
    m_userImages.Load(QStringLiteral("./UserImages.bmp"));
    const auto load = [](const char* name, CToolBar& toolBar) {
        if (const auto commands = ReadWorkspace(name, ReadChangedCommands, WriteChangedCommands)) {
            toolBar.SetCommands(*commands);
        }
    };
    load("ToolBarStandard", *m_pToolBar);
    load("ToolBarCache", *m_pCacheToolBar);
    for (int id = ID_TOOLBAR_USER_FIRST; id <= ID_TOOLBAR_USER_LAST; ++id) {
        if (const auto stored =
                ReadWorkspace("UserToolBar" + std::to_string(id), ReadToolBar,
                              [](const auto& toolBar) { return toolBar ? WriteToolBar(*toolBar) : ""; })) {
            AddUserToolBar(id, stored->m_strTitle)->SetCommands(stored->m_listCommands);
        }
    }
    for (const auto& [id, image] : ReadWorkspace("UserImages", ReadUserImages, WriteUserImages)) {
        SetUserImage(id, image);
    }
}

QList<CToolBar*> CFrameToolBars::All() const {
    return QList<CToolBar*>{m_pToolBar, m_pCacheToolBar} + m_listUserToolBars;
}

CToolBar* CFrameToolBars::AddUserToolBar(int id, const QString& title) {
    auto* toolBar = new CToolBar(m_frame, id, title, QStringLiteral("UserToolBar%1").arg(id), {});
    m_frame.addToolBar(Qt::TopToolBarArea, toolBar);
    m_listUserToolBars << toolBar;
    return toolBar;
}

CToolBar* CFrameToolBars::New(const QString& title) {
    for (int id = ID_TOOLBAR_USER_FIRST; id <= ID_TOOLBAR_USER_LAST; ++id) {
        if (std::ranges::find(m_listUserToolBars, id, &CToolBar::Id) != m_listUserToolBars.end()) {
            continue;
        }
        CToolBar* const toolBar = AddUserToolBar(id, title);
        m_frame.AutoHide().Bars().Place();
        return toolBar;
    }
    return nullptr;
}

void CFrameToolBars::Delete(CToolBar* toolBar) {
    if (!m_listUserToolBars.removeOne(toolBar)) {
        return;
    }
    m_frame.removeToolBar(toolBar);
    toolBar->deleteLater();
}

void CFrameToolBars::SetUserImage(int id, int image) {
    QAction* action = m_frame.CommandAction(id);
    if (action == nullptr) {
        return;
    }
    if (image < 0) {
        m_mapUserImages.erase(id);
    } else {
        m_mapUserImages[id] = image;
    }
    const bool there = image >= 0 && image < m_userImages.Count();
    action->setIcon(there ? m_userImages.Icon(image) : CommandIcon(id));
}

int CFrameToolBars::UserImage(int id) const {
    const auto it = m_mapUserImages.find(id);
    return it != m_mapUserImages.end() ? it->second : -1;
}

void CFrameToolBars::SetShowsToolTips(bool show) {
    m_bToolTips = show;
    if (show) {
        qApp->removeEventFilter(this);
    } else {
        qApp->installEventFilter(this);
    }
}

bool CFrameToolBars::eventFilter(QObject* object, QEvent* event) {
    // Installed only while the user wants no tips on toolbars.
    if (event->type() == QEvent::ToolTip && object->isWidgetType() &&
        qobject_cast<CToolBar*>(object->parent()) != nullptr) {
        return true;
    }
    return QObject::eventFilter(object, event);
}

void CFrameToolBars::RestoreDefault() {
    QList<CToolBar*> toolBars = All();
    for (CToolBar* toolBar : toolBars) {
        m_frame.removeToolBar(toolBar);
    }
    for (CToolBar* toolBar : toolBars) {
        if (toolBar->IsUserToolBar() && toolBar == m_listUserToolBars.constFirst()) {
            m_frame.addToolBarBreak(Qt::TopToolBarArea);
        }
        if (!toolBar->IsUserToolBar()) {
            toolBar->Reset();
        }
        m_frame.addToolBar(Qt::TopToolBarArea, toolBar);
        toolBar->show();
    }
}

void CFrameToolBars::Save() const {
    WriteWorkspaceInt("ToolTips", m_bToolTips ? 1 : 0);
    const auto changed = [](const CToolBar& toolBar) {
        return WriteChangedCommands(toolBar.IsChanged() ? std::optional(toolBar.Commands()) : std::nullopt);
    };
    WriteWorkspaceString("ToolBarStandard", changed(*m_pToolBar));
    WriteWorkspaceString("ToolBarCache", changed(*m_pCacheToolBar));
    for (int id = ID_TOOLBAR_USER_FIRST; id <= ID_TOOLBAR_USER_LAST; ++id) {
        const std::string name = "UserToolBar" + std::to_string(id);
        const auto it = std::ranges::find(m_listUserToolBars, id, &CToolBar::Id);
        if (it != m_listUserToolBars.end()) {
            WriteWorkspaceString(name, WriteToolBar({(*it)->windowTitle(), (*it)->Commands()}));
        } else if (!GetWorkspaceString(name, "").empty()) {
            WriteWorkspaceString(name, "");
        }
    }
    WriteWorkspaceString("UserImages", WriteUserImages(m_mapUserImages));
}

} // namespace carvelot
