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

    void AddCommand(int nId, FHandler fnRun, FEnabled fnEnabled = {}, FEnabled fnChecked = {}) {
        m_mapCommands[nId] = {std::move(fnRun), std::move(fnEnabled), std::move(fnChecked)};
    }
    const CHandler* OwnHandler(int nId) const {
        const auto it = m_mapCommands.find(nId);
        return it != m_mapCommands.end() ? &it->second : nullptr;
    }

private:
    std::map<int, CHandler> m_mapCommands;
};

} // namespace carvelot
