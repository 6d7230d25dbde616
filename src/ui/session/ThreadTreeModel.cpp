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
template <class T> int RowOf(const std::vector<std::unique_ptr<T>>& list, const T* pObject) {
    const auto it =
        std::ranges::find(list, pObject, [](const auto& p) { return static_cast<const T*>(p.get()); });
    return it == list.end() ? -1 : static_cast<int>(it - list.begin());
}

} // namespace

void CThreadTreeModel::Show(EContent nContent) {
    beginResetModel();
    m_nContent = nContent;
    m_listUserImages = nContent == EContent::Users ? UserImages(m_session) : std::vector<int>();
    endResetModel();
}

const CProcess* CThreadTreeModel::Process(const QModelIndex& index) const {
    return index.isValid() && m_nContent == EContent::Processes && index.internalId() == 0
               ? &At(m_session.m_listProcesses, static_cast<std::size_t>(index.row()))
               : nullptr;
}

const CThread* CThreadTreeModel::Thread(const QModelIndex& index) const {
    if (!index.isValid() || m_nContent != EContent::Processes || index.internalId() == 0)
        return nullptr;
    const CProcess& process = At(m_session.m_listProcesses, index.internalId() - 1);
    return &At(process.m_listThreads, static_cast<std::size_t>(index.row()));
}

const CJASUser* CThreadTreeModel::User(const QModelIndex& index) const {
    return index.isValid() && m_nContent == EContent::Users
               ? &At(m_session.m_listUsers, static_cast<std::size_t>(index.row()))
               : nullptr;
}

Selection CThreadTreeModel::Selected(const QModelIndex& index) const {
    if (const CProcess* const pProcess = Process(index))
        return Selection(*pProcess);
    if (const CThread* const pThread = Thread(index))
        return Selection(*pThread);
    const CJASUser* const pUser = User(index);
    return pUser != nullptr ? Selection(*pUser) : Selection();
}

QModelIndex CThreadTreeModel::IndexOf(const CThread& thread) const {
    const CProcess* pProcess = m_session.FindProcess(thread.m_nProcessID);
    if (m_nContent != EContent::Processes || pProcess == nullptr)
        return {};
    const int nProcess = RowOf(m_session.m_listProcesses, pProcess);
    const int nThread = RowOf(pProcess->m_listThreads, &thread);
    return nProcess < 0 || nThread < 0 ? QModelIndex() : index(nThread, 0, index(nProcess, 0));
}

QModelIndex CThreadTreeModel::IndexOf(const CJASUser& user) const {
    const int nUser = m_nContent == EContent::Users ? RowOf(m_session.m_listUsers, &user) : -1;
    return nUser < 0 ? QModelIndex() : index(nUser, 0);
}

QModelIndex CThreadTreeModel::index(int nRow, int nColumn, const QModelIndex& parent) const {
    if (!hasIndex(nRow, nColumn, parent))
        return {};
    return createIndex(nRow, nColumn,
                       parent.isValid() ? static_cast<quintptr>(parent.row()) + 1 : quintptr{0});
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
            return static_cast<int>(m_session.m_listProcesses.size());
        case EContent::Users:
            return static_cast<int>(m_session.m_listUsers.size());
        case EContent::Nothing:
            return 0;
        }
    }
    const CProcess* pProcess = Process(parent);
    return pProcess != nullptr ? static_cast<int>(pProcess->m_listThreads.size()) : 0;
}

std::string CThreadTreeModel::Text(const QModelIndex& index) const {
    if (const CProcess* pProcess = Process(index))
        return ProcessNodeText(m_session, *pProcess);
    if (const CThread* pThread = Thread(index))
        return ThreadNodeText(*pThread);
    const CJASUser* pUser = User(index);
    return pUser != nullptr ? pUser->m_strUser : std::string();
}

QVariant CThreadTreeModel::data(const QModelIndex& index, int nRole) const {
    if (!index.isValid())
        return {};
    if (nRole == Qt::DisplayRole)
        return NodeDisplayText(Text(index));
    if (nRole == Qt::ToolTipRole)
        return NodeTipText(Text(index));
    if (nRole != Qt::DecorationRole)
        return {};
    if (Process(index) != nullptr)
        return m_listImages.value(IMAGE_PROCESS);
    if (Thread(index) != nullptr)
        return m_listImages.value(IMAGE_THREAD);
    return User(index) != nullptr
               ? m_listImages.value(m_listUserImages[static_cast<std::size_t>(index.row())])
               : QVariant();
}

} // namespace carvelot
