#include "lists/PaneContent.h"

#include "records/NodeText.h"

#include <cstddef>

namespace carvelot {

namespace {

constexpr std::size_t kKinds = 4;

constexpr PaneAction Clear = PaneAction::Clear;
constexpr PaneAction Keep = PaneAction::Keep;
constexpr PaneAction Show = PaneAction::Show;

struct PaneRule {
    SharedPane pane;
    bool captioned;
    PaneAction actions[kKinds]; // for nothing, a process, a thread, a user
};

constexpr PaneRule kRules[] = {
    {SharedPane::SQL, true, {Clear, Show, Show, Show}},
    {SharedPane::Cache, true, {Clear, Show, Keep, Clear}},
    {SharedPane::BSFN, true, {Clear, Show, Show, Show}},
    {SharedPane::LongTasks, true, {Clear, Show, Show, Show}},
    {SharedPane::Errors, true, {Clear, Show, Show, Show}},
    {SharedPane::Gaps, false, {Clear, Show, Keep, Show}},
};

const PaneRule& RuleOf(SharedPane pane) { return kRules[static_cast<std::size_t>(pane)]; }

} // namespace

PaneAction ActionOf(SharedPane pane, Selection::Kind selected) {
    return RuleOf(pane).actions[static_cast<std::size_t>(selected)];
}

bool TakesCaption(SharedPane pane, Selection::Kind selected) {
    return RuleOf(pane).captioned && ActionOf(pane, selected) != PaneAction::Keep;
}

std::string CaptionOf(const Selection& selection) {
    if (const CProcess* const process = selection.Process()) {
        return " Process: " + IdText(process->m_nProcessID);
    }
    if (const CThread* const thread = selection.Thread()) {
        return " Process: " + IdText(thread->m_nProcessID) + " Thread: " + IdText(thread->m_nThreadID);
    }
    const CJASUser* const user = selection.User();
    return user != nullptr ? " User: " + user->m_strUser : std::string();
}

} // namespace carvelot
