#include "ui/session/SessionPanes.h"

#include "ui/kit/Text.h"

namespace carvelot {

namespace {

CSessionPanes* s_pPanes = nullptr;

// In the order in which a process fills them.
constexpr SharedPane kPanes[] = {SharedPane::SQL,       SharedPane::Cache,  SharedPane::BSFN,
                                 SharedPane::LongTasks, SharedPane::Errors, SharedPane::Gaps};

} // namespace

CSessionPanes* SessionPanes() { return s_pPanes; }

CSessionPanes::CSessionPanes() { s_pPanes = this; }

CSessionPanes::~CSessionPanes() { Leave(); }

void CSessionPanes::Leave() {
    if (s_pPanes == this) {
        s_pPanes = nullptr;
    }
}

CDockablePane& CSessionPanes::Pane(SharedPane pane) {
    CDockablePane* const panes[] = {&m_wndSQLPane,       &m_wndCachePane, &m_wndBSFNPane,
                                    &m_wndLongTasksPane, &m_wndErrorPane, &m_wndTimingGapsPane};
    return *panes[static_cast<std::size_t>(pane)];
}

void CSessionPanes::Show(CSessionDocument& document, const Selection& selection) {
    m_wndFindPane.DressForUsers(document.Session().m_nLogFormat == LOG_FORMAT_JAS);
    const QString caption = ToQString(CaptionOf(selection));
    for (const SharedPane pane : kPanes) {
        switch (ActionOf(pane, selection.What())) {
        case PaneAction::Clear:
            Clear(pane);
            break;
        case PaneAction::Show:
            Show(document, selection, pane);
            break;
        case PaneAction::Keep:
            break;
        }
        if (TakesCaption(pane, selection.What())) {
            Pane(pane).SetCaption(caption);
        }
    }
    m_pPanesOwner = document.GetFrame();
}

void CSessionPanes::Show(CSessionDocument& document, const Selection& selection, SharedPane pane) {
    switch (pane) {
    case SharedPane::SQL:
        m_wndSQLPane.FillList(*selection.Statements());
        break;
    case SharedPane::Cache:
        m_wndCachePane.FillTree(document, selection.Process()->m_pCacheAnalysis);
        break;
    case SharedPane::BSFN:
        m_wndBSFNPane.FillList(*selection.Functions());
        break;
    case SharedPane::LongTasks:
        m_wndLongTasksPane.FillList(document, *selection.Functions(), *selection.Statements());
        break;
    case SharedPane::Errors:
        if (const CJASUser* const user = selection.User()) {
            m_wndErrorPane.FillList(document, user->m_listErrors);
        } else if (const CThread* const thread = selection.Thread()) {
            m_wndErrorPane.FillList(document, thread->m_listErrors);
        } else {
            m_wndErrorPane.FillList(document, selection.Process()->m_listErrors);
        }
        break;
    case SharedPane::Gaps:
        m_wndTimingGapsPane.FillList(document);
        break;
    }
}

void CSessionPanes::ShowGrowth(CSessionDocument& document, const Selection& selection) {
    // A tree is a view of its caches, whatever is selected.
    m_wndCachePane.ShowGrowth(document.Session());
    if (m_pPanesOwner == nullptr || m_pPanesOwner != document.GetFrame()) {
        return;
    }
    for (const SharedPane pane : kPanes) {
        if (ActionOf(pane, selection.What()) != PaneAction::Show) {
            continue;
        }
        const auto fill = [&] { Show(document, selection, pane); };
        switch (pane) {
        case SharedPane::SQL:
            m_wndSQLPane.RefillInPlace(fill);
            break;
        case SharedPane::Cache:
            break;
        case SharedPane::BSFN:
            m_wndBSFNPane.RefillInPlace(fill);
            break;
        case SharedPane::LongTasks:
            m_wndLongTasksPane.RefillInPlace(fill);
            break;
        case SharedPane::Errors:
            m_wndErrorPane.RefillInPlace(fill);
            break;
        case SharedPane::Gaps:
            m_wndTimingGapsPane.RefillInPlace(fill);
            break;
        }
    }
}

void CSessionPanes::Clear(SharedPane pane) {
    switch (pane) {
    case SharedPane::SQL:
        m_wndSQLPane.ClearList();
        break;
    case SharedPane::Cache:
        m_wndCachePane.ClearTree();
        break;
    case SharedPane::BSFN:
        m_wndBSFNPane.ClearList();
        break;
    case SharedPane::LongTasks:
        m_wndLongTasksPane.ClearList();
        break;
    case SharedPane::Errors:
        m_wndErrorPane.ClearList();
        break;
    case SharedPane::Gaps:
        m_wndTimingGapsPane.ClearList();
        break;
    }
}

void CSessionPanes::ClearPanes() {
    m_pPanesOwner = nullptr;
    for (const SharedPane pane : kPanes) {
        Clear(pane);
        if (TakesCaption(pane, Selection::Kind::Nothing)) {
            Pane(pane).SetCaption({});
        }
    }
}

void CSessionPanes::LetGo(const CCarvelotDoc& session) {
    m_wndFindPane.LetGo(session);
    m_wndCachePane.LetGo(session);
    m_wndLongTasksPane.LetGo(session);
    m_wndErrorPane.LetGo(session);
    m_wndTimingGapsPane.LetGo(session);
}

} // namespace carvelot
