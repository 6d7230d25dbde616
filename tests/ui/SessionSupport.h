// What the tests of session windows and their panes share: a run of the program with real sessions, and a
// person's hands and eyes on trees and lists.
#pragma once

#include "support/TestLog.h"
#include "ui/UiSupport.h"
#include "ui/kit/Text.h"
#include "ui/session/ChildFrame.h"
#include "ui/session/SessionDocument.h"

#include <QAbstractItemModelTester>
#include <QClipboard>
#include <QFile>
#include <QHeaderView>

namespace carvelot::test {

class CSessionRun {
public:
    explicit CSessionRun(const std::vector<std::string>& arguments = {}) {
        UseSettingsStore(ToUtf8(m_folder.filePath(QStringLiteral("registry.ini"))));
        theApp().m_fnAddDocTemplates = AddDocTemplates;
        Start(arguments);
    }
    ~CSessionRun() { Stop(); }
    // Ends the program and starts it again with the settings that it left.
    void Restart() {
        Stop();
        Start({});
    }

    CMainFrame& Frame() const { return *MainFrame(); }
    QString Path(const QString& name) const { return m_folder.filePath(name); }
    QString Write(const QString& name, const std::vector<std::string>& lines) const {
        return WriteBytes(name, TestSession::Joined(lines));
    }
    QString WriteBytes(const QString& name, const std::string& bytes) const {
        QFile file(Path(name));
        if (!file.open(QIODevice::WriteOnly)) {
            return {};
        }
        file.write(bytes.data(), static_cast<qint64>(bytes.size()));
        return file.fileName();
    }
    QByteArray Read(const QString& name) const {
        QFile file(Path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    // Opens a file as the Open command does; null when no window came of it.
    CChildFrame* Open(const QString& path) {
        m_user.m_strOpenAnswer = path;
        const QList<CMDIChildWnd*> before = Frame().ClientArea().Children();
        Frame().RunCommand(ID_FILE_OPEN);
        QCoreApplication::processEvents();
        for (CMDIChildWnd* child : Frame().ClientArea().Children()) {
            if (!before.contains(child)) {
                return qobject_cast<CChildFrame*>(child);
            }
        }
        return nullptr;
    }
    CChildFrame* Open(const QString& name, const std::vector<std::string>& lines) {
        return Open(Write(name, lines));
    }
    // Lets what was closed be destroyed.
    static void Settle() {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCoreApplication::processEvents();
    }
    // Brings a pane's tab to the front.
    static void ShowPane(CDockablePane& pane) {
        pane.show();
        pane.raise();
        QCoreApplication::processEvents();
    }

    CFakeInterface m_user;
    bool m_bStarted = false;

private:
    void Start(const std::vector<std::string>& arguments) {
        m_bStarted = theApp().InitInstance(arguments);
        if (!m_bStarted) {
            return;
        }
        Frame().resize(1200, 800);
        (void)QTest::qWaitForWindowExposed(&Frame());
        Frame().activateWindow();
        m_user.m_listMessages.clear();
    }
    static void Stop() {
        if (MainFrame() != nullptr) {
            MainFrame()->close();
        }
        theApp().ExitInstance();
    }

    QTemporaryDir m_folder;
};

// A test whose every function has a run of the program to itself: it is started in init and ended in cleanup.
class CSessionTest : public QObject {
protected:
    void StartRun() {
        m_pRun = std::make_unique<CSessionRun>();
        QVERIFY(m_pRun->m_bStarted);
    }
    void EndRun() {
        m_pRun.reset();
        QVERIFY(QApplication::overrideCursor() == nullptr);
    }

    std::unique_ptr<CSessionRun> m_pRun;
};

// A line of a debug log; where it says nothing else, of process 5 and its thread 6.
inline std::string Line(const char* time, const char* text, const char* ids = "5/6") {
    return DebugLine(time, text, ids);
}

// The model as indented text, one node a line.
inline QString TreeText(const QAbstractItemModel& model, const QModelIndex& parent = {}, int depth = 0) {
    QString text;
    for (int row = 0; row < model.rowCount(parent); ++row) {
        const QModelIndex index = model.index(row, 0, parent);
        text += QString(depth, QLatin1Char(' ')) + index.data().toString() + QLatin1Char('\n');
        text += TreeText(model, index, depth + 1);
    }
    return text;
}

// The first node whose text contains this, in the order of the tree.
inline QModelIndex FindNode(const QAbstractItemModel& model, const QString& text,
                            const QModelIndex& parent = {}) {
    for (int row = 0; row < model.rowCount(parent); ++row) {
        const QModelIndex index = model.index(row, 0, parent);
        if (index.data().toString().contains(text)) {
            return index;
        }
        if (const QModelIndex below = FindNode(model, text, index); below.isValid()) {
            return below;
        }
    }
    return {};
}

inline QString SelectedText(const CTreeCtrl& tree) { return tree.SelectedIndex().data().toString(); }

inline QPoint PointOf(QTreeView& view, const QModelIndex& index) {
    view.scrollTo(index);
    const QRect rect = view.visualRect(index);
    return {std::max(rect.left(), 0) + 20, rect.center().y()};
}

inline void Click(QTreeView& view, const QModelIndex& index, Qt::MouseButton button = Qt::LeftButton,
                  Qt::KeyboardModifiers keys = {}) {
    QTest::mouseClick(view.viewport(), button, keys, PointOf(view, index));
}

inline void DoubleClick(QTreeView& view, const QModelIndex& index) {
    const QPoint point = PointOf(view, index);
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, point);
    QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, point);
}

inline void DoubleClick(CListCtrl& list, int row) { DoubleClick(list, list.Model().index(row, 0)); }

inline void AskForMenu(QWidget& widget, const QPoint& point, QContextMenuEvent::Reason reason) {
    QContextMenuEvent event(reason, point, widget.mapToGlobal(point));
    QApplication::sendEvent(&widget, &event);
}

// Whoever clicks in a session that is behind another one's tab brings it to the front first.
inline void Select(CChildFrame* frame, const char* node) {
    if (!frame->isVisible()) {
        MainFrame()->ClientArea().Activate(*frame);
    }
    Click(frame->ThreadView(), FindNode(frame->ThreadView().Model(), QLatin1String(node)));
}

inline void ClickHeader(CListCtrl& list, int column) {
    const QHeaderView& header = *list.header();
    QTest::mouseClick(
        header.viewport(), Qt::LeftButton, {},
        QPoint(header.sectionViewportPosition(column) + header.sectionSize(column) / 2, header.height() / 2));
}

// The rows of a list, their cells divided by bars.
inline QStringList Rows(CListCtrl& list) {
    QStringList rows;
    for (int row = 0; row < list.Model().rowCount(); ++row) {
        QStringList cells;
        for (int column = 0; column < list.Model().columnCount(); ++column) {
            cells << list.Model().index(row, column).data().toString();
        }
        rows << cells.join(QLatin1Char('|'));
    }
    return rows;
}

inline QString Title(CListCtrl& list, int column) {
    return list.Model().headerData(column, Qt::Horizontal, Qt::DisplayRole).toString();
}

// Which picture a node shows, by its place in the strip; -1 for none of them.
inline int ImageOf(const QModelIndex& index, const QList<QIcon>& images) {
    const qint64 key = qvariant_cast<QIcon>(index.data(Qt::DecorationRole)).cacheKey();
    for (qsizetype n = 0; n < images.size(); ++n) {
        if (images[n].cacheKey() == key) {
            return static_cast<int>(n);
        }
    }
    return -1;
}

} // namespace carvelot::test
