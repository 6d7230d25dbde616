// ThreadTreeModel.h - a session's processes and threads, or its users, as a tree shows them.
#pragma once

#include "session/Selection.h"

#include <QAbstractItemModel>
#include <QIcon>

#include <vector>

namespace carvelot {

// A view of the session's own lists. It must be cleared before those go.
class CThreadTreeModel final : public QAbstractItemModel {
    Q_OBJECT

public:
    CThreadTreeModel(const CCarvelotDoc& session, QList<QIcon> images)
        : m_session(session), m_listImages(std::move(images)) {}

    void Clear() { Show(EContent::Nothing); }
    void ShowProcesses() { Show(EContent::Processes); }
    void ShowUsers() { Show(EContent::Users); }
    // The session has grown: what it shows has other texts, and what is new comes behind.
    void ShowGrowth();

    // What a node stands for; null when it is of another kind.
    const CProcess* Process(const QModelIndex& index) const;
    const CThread* Thread(const QModelIndex& index) const;
    const CJASUser* User(const QModelIndex& index) const;
    Selection Selected(const QModelIndex& index) const;
    QModelIndex IndexOf(const CThread& thread) const;
    QModelIndex IndexOf(const CJASUser& user) const;

    QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    QModelIndex parent(const QModelIndex& index) const override;
    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex&) const override { return 1; }
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;

private:
    enum class EContent { Nothing, Processes, Users };
    void Show(EContent content);
    std::string Text(const QModelIndex& index) const;

    // An index carries the row of its process plus 1, or 0 at the top.
    const CCarvelotDoc& m_session;
    QList<QIcon> m_listImages;
    EContent m_nContent = EContent::Nothing;
    // As many as are shown: a session may have grown meanwhile.
    std::vector<std::size_t> m_listThreads; // by process
    std::size_t m_nUsers = 0;
    std::vector<int> m_listUserImages;
};

} // namespace carvelot
