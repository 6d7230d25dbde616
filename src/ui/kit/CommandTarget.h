// CommandTarget.h - who answers which command.
#pragma once

#include <functional>
#include <map>

namespace carvelot {

// A command goes to the document window in front, its document, the main window and the application, in this
// order; the first that knows it answers. A command that nobody knows is disabled.
class CCommandTarget {
public:
    using FHandler = std::function<void()>;
    using FEnabled = std::function<bool()>;

    struct CHandler {
        FHandler m_fnRun;
        FEnabled m_fnEnabled; // absent: always
        FEnabled m_fnChecked; // of a command that shows whether something is on
    };

    virtual ~CCommandTarget() = default;

    void AddCommand(int id, FHandler run, FEnabled enabled = {}, FEnabled checked = {}) {
        m_mapCommands[id] = {std::move(run), std::move(enabled), std::move(checked)};
    }
    const CHandler* OwnHandler(int id) const {
        const auto it = m_mapCommands.find(id);
        return it != m_mapCommands.end() ? &it->second : nullptr;
    }

private:
    std::map<int, CHandler> m_mapCommands;
};

} // namespace carvelot
