#include "ui/session/ThreadTreeModel.h"

#include "trees/DetailTree.h"
#include "trees/ThreadTree.h"
#include "ui/kit/Text.h"
#include "ui/kit/TreeCtrl.h"

#include <algorithm>

namespace carvelot {

namespace {

template <class T> T& At(const std::vector<std::unique_ptr<T>>& list, std::size_t n) { return *list[n]; }

// The place of an object in the list that owns it, or -1.
template <class T> int RowOf(const std::vector<std::unique_ptr<T>>& list, const T* object) {
    const auto it =
        std::ranges::find(list, object, [](const auto& p) { return static_cast<const T*>(p.get()); });
    return it == list.end() ? -1 : static_cast<int>(it - list.begin());
}

} // namespace

void CThreadTreeModel::Show(EContent content) {
    beginResetModel();
    m_nContent = content;
    m_listUserImages = content == EContent::Users ? UserImages(m_session) : std::vector<int>();
    m_nUsers = m_listUserImages.size();
    m_listThreads.clear();
    if (content == EContent::Processes) {
        for (const auto& process : m_session.m_listProcesses) {
            m_listThreads.push_back(process->m_listThreads.size());
        }
    }
    endResetModel();
}

void CThreadTreeModel::ShowGrowth() {
    const auto insert = [this](const QModelIndex& parent, std::size_t shown, std::size_t there, auto enter) {
        if (there > shown) {
            beginInsertRows(parent, static_cast<int>(shown), static_cast<int>(there) - 1);
            enter();
            endInsertRows();
        }
    };
    const auto tell = [this](const QModelIndex& parent) {
        if (const int rows = rowCount(parent); rows > 0) {
            emit dataChanged(index(0, 0, parent), index(rows - 1, 0, parent));
        }
    };
    if (m_nContent == EContent::Processes) {
        const auto& processes = m_session.m_listProcesses;
        for (std::size_t n = 0; n < m_listThreads.size(); ++n) {
            const std::size_t threads = processes[n]->m_listThreads.size();
            const QModelIndex parent = index(static_cast<int>(n), 0);
            insert(parent, m_listThreads[n], threads, [&] { m_listThreads[n] = threads; });
            tell(parent);
        }
        insert({}, m_listThreads.size(), processes.size(), [&] {
            for (std::size_t n = m_listThreads.size(); n < processes.size(); ++n) {
                m_listThreads.push_back(processes[n]->m_listThreads.size());
            }
        });
    } else if (m_nContent == EContent::Users) {
        insert({}, m_nUsers, m_session.m_listUsers.size(), [&] {
            m_listUserImages = UserImages(m_session);
            m_nUsers = m_listUserImages.size();
        });
    }
    tell({});
}

const CProcess* CThreadTreeModel::Process(const QModelIndex& index) const {
    return index.isValid() && m_nContent == EContent::Processes && index.internalId() == 0
               ? &At(m_session.m_listProcesses, static_cast<std::size_t>(index.row()))
               : nullptr;
}

const CThread* CThreadTreeModel::Thread(const QModelIndex& index) const {
    if (!index.isValid() || m_nContent != EContent::Processes || index.internalId() == 0) {
        return nullptr;
    }
    const CProcess& process = At(m_session.m_listProcesses, index.internalId() - 1);
    return &At(process.m_listThreads, static_cast<std::size_t>(index.row()));
}

const CJASUser* CThreadTreeModel::User(const QModelIndex& index) const {
    return index.isValid() && m_nContent == EContent::Users
               ? &At(m_session.m_listUsers, static_cast<std::size_t>(index.row()))
               : nullptr;
}

Selection CThreadTreeModel::Selected(const QModelIndex& index) const {
    if (const CProcess* const process = Process(index)) {
        return Selection(*process);
    }
    if (const CThread* const thread = Thread(index)) {
        return Selection(*thread);
    }
    const CJASUser* const user = User(index);
    return user != nullptr ? Selection(*user) : Selection();
}

QModelIndex CThreadTreeModel::IndexOf(const CThread& thread) const {
    const CProcess* process = m_session.FindProcess(thread.m_nProcessID);
    if (m_nContent != EContent::Processes || process == nullptr) {
        return {};
    }
    const int processRow = RowOf(m_session.m_listProcesses, process);
    const int threadRow = RowOf(process->m_listThreads, &thread);
    return processRow < 0 || threadRow < 0 ? QModelIndex() : index(threadRow, 0, index(processRow, 0));
}

QModelIndex CThreadTreeModel::IndexOf(const CJASUser& user) const {
    const int userRow = m_nContent == EContent::Users ? RowOf(m_session.m_listUsers, &user) : -1;
    return userRow < 0 ? QModelIndex() : index(userRow, 0);
}

QModelIndex CThreadTreeModel::index(int row, int column, const QModelIndex& parent) const {
    if (!hasIndex(row, column, parent)) {
        return {};
    }
    return createIndex(row, column, parent.isValid() ? static_cast<quintptr>(parent.row()) + 1 : quintptr{0});
}

QModelIndex CThreadTreeModel::parent(const QModelIndex& index) const {
    return index.isValid() && index.internalId() != 0
               ? createIndex(static_cast<int>(index.internalId() - 1), 0, quintptr{0})
               : QModelIndex();
}

int CThreadTreeModel::rowCount(const QModelIndex& parent) const {
    if (!parent.isValid()) {
        switch (m_nContent) {
        case EContent::Processes:
            return static_cast<int>(m_listThreads.size());
        case EContent::Users:
            return static_cast<int>(m_nUsers);
        case EContent::Nothing:
            return 0;
        }
    }
    return Process(parent) != nullptr
               ? static_cast<int>(m_listThreads[static_cast<std::size_t>(parent.row())])
               : 0;
}

std::string CThreadTreeModel::Text(const QModelIndex& index) const {
    if (const CProcess* process = Process(index)) {
        return ProcessNodeText(m_session, *process);
    }
    if (const CThread* thread = Thread(index)) {
        return ThreadNodeText(*thread);
    }
    const CJASUser* user = User(index);
    return user != nullptr ? user->m_strUser : std::string();
}

QVariant CThreadTreeModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid()) {
        return {};
    }
    if (role == Qt::DisplayRole) {
        return NodeDisplayText(Text(index));
    }
    if (role == Qt::ToolTipRole) {
        return NodeTipText(Text(index));
    }
    if (role != Qt::DecorationRole) {
        return {};
    }
    if (Process(index) != nullptr) {
        return m_listImages.value(IMAGE_PROCESS);
    }
    if (Thread(index) != nullptr) {
        return m_listImages.value(IMAGE_THREAD);
    }
    return User(index) != nullptr
               ? m_listImages.value(m_listUserImages[static_cast<std::size_t>(index.row())])
               : QVariant();
}

} // namespace carvelot
