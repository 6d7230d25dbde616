// What is selected in a session: one of its processes, threads or users, or nothing. The thread tree sets it;
// everything else hears of it.
#pragma once

#include "session/CarvelotDoc.h"

#include <variant>

namespace carvelot {

// It must not outlive the load whose objects it names.
class Selection {
public:
    enum class Kind { Nothing, Process, Thread, User };

    Selection() = default;
    explicit Selection(const CProcess& process) : m_selected(&process) {}
    explicit Selection(const CThread& thread) : m_selected(&thread) {}
    explicit Selection(const CJASUser& user) : m_selected(&user) {}

    Kind What() const { return static_cast<Kind>(m_selected.index()); }
    // Null when something else is selected.
    const CProcess* Process() const { return As<const CProcess*>(); }
    const CThread* Thread() const { return As<const CThread*>(); }
    const CJASUser* User() const { return As<const CJASUser*>(); }

    bool operator==(const Selection&) const = default;

    // The analyses of what is selected; null with nothing.
    const CBSFNAnalysis* Functions() const {
        return Of<const CBSFNAnalysis*>([](const auto& owner) { return &owner.m_pBSFNAnalysis; });
    }
    const CSQLAnalysis* Statements() const {
        return Of<const CSQLAnalysis*>([](const auto& owner) { return &owner.m_pSQLAnalysis; });
    }

private:
    template <class Pointer> Pointer As() const {
        const auto* const found = std::get_if<Pointer>(&m_selected);
        return found != nullptr ? *found : nullptr;
    }
    template <class Result, class Get> Result Of(Get get) const {
        return std::visit(
            [&get](const auto& selected) -> Result {
                if constexpr (std::is_same_v<decltype(selected), const std::monostate&>) {
                    return nullptr;
                } else {
                    return get(*selected);
                }
            },
            m_selected);
    }

    // In the order of the kinds.
    std::variant<std::monostate, const CProcess*, const CThread*, const CJASUser*> m_selected;
};

} // namespace carvelot
