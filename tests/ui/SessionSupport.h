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
    explicit CSessionRun(const std::vector<std::string>& listArguments = {}) {
        UseSettingsStore(ToUtf8(m_folder.filePath(QStringLiteral("registry.ini"))));
        theApp().m_fnAddDocTemplates = AddDocTemplates;
        Start(listArguments);
    }
    ~CSessionRun() { Stop(); }
    // Ends the program and starts it again with the settings that it left.
    void Restart() {
        Stop();
        Start({});
    }

    CMainFrame& Frame() const { return *MainFrame(); }
    QString Path(const QString& strName) const { return m_folder.filePath(strName); }
    QString Write(const QString& strName, const std::vector<std::string>& listLines) const {
        return WriteBytes(strName, TestSession::Joined(listLines));
    }
    QString WriteBytes(const QString& strName, const std::string& strBytes) const {
        QFile file(Path(strName));
        if (!file.open(QIODevice::WriteOnly))
            return {};
        file.write(strBytes.data(), static_cast<qint64>(strBytes.size()));
        return file.fileName();
    }
    QByteArray Read(const QString& strName) const {
        QFile file(Path(strName));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    // Opens a file as the Open command does; null when no window came of it.
    CChildFrame* Open(const QString& strPath) {
        m_user.m_strOpenAnswer = strPath;
        const QList<CMDIChildWnd*> listBefore = Frame().ClientArea().Children();
        Frame().RunCommand(ID_FILE_OPEN);
        QCoreApplication::processEvents();
        for (CMDIChildWnd* pChild : Frame().ClientArea().Children()) {
            if (!listBefore.contains(pChild))
                return qobject_cast<CChildFrame*>(pChild);
        }
        return nullptr;
    }
    CChildFrame* Open(const QString& strName, const std::vector<std::string>& listLines) {
        return Open(Write(strName, listLines));
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
    void Start(const std::vector<std::string>& listArguments) {
        m_bStarted = theApp().InitInstance(listArguments);
        if (!m_bStarted)
            return;
        Frame().resize(1200, 800);
        (void)QTest::qWaitForWindowExposed(&Frame());
        Frame().activateWindow();
        m_user.m_listMessages.clear();
    }
    static void Stop() {
        if (MainFrame() != nullptr)
            MainFrame()->close();
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
inline std::string Line(const char* pszTime, const char* pszText, const char* pszIds = "5/6") {
    return DebugLine(pszTime, pszText, pszIds);
}

// The model as indented text, one node a line.
inline QString TreeText(const QAbstractItemModel& model, const QModelIndex& parent = {}, int nDepth = 0) {
    QString strText;
    for (int nRow = 0; nRow < model.rowCount(parent); ++nRow) {
        const QModelIndex index = model.index(nRow, 0, parent);
        strText += QString(nDepth, QLatin1Char(' ')) + index.data().toString() + QLatin1Char('\n');
        strText += TreeText(model, index, nDepth + 1);
    }
    return strText;
}

// The first node whose text contains this, in the order of the tree.
inline QModelIndex FindNode(const QAbstractItemModel& model, const QString& strText,
                            const QModelIndex& parent = {}) {
    for (int nRow = 0; nRow < model.rowCount(parent); ++nRow) {
        const QModelIndex index = model.index(nRow, 0, parent);
        if (index.data().toString().contains(strText))
            return index;
        if (const QModelIndex below = FindNode(model, strText, index); below.isValid())
            return below;
    }
    return {};
}

inline QString SelectedText(const CTreeCtrl& tree) { return tree.SelectedIndex().data().toString(); }

inline QPoint PointOf(QTreeView& view, const QModelIndex& index) {
    view.scrollTo(index);
    const QRect rect = view.visualRect(index);
    return {std::max(rect.left(), 0) + 20, rect.center().y()};
}

inline void Click(QTreeView& view, const QModelIndex& index, Qt::MouseButton nButton = Qt::LeftButton,
                  Qt::KeyboardModifiers nKeys = {}) {
    QTest::mouseClick(view.viewport(), nButton, nKeys, PointOf(view, index));
}

inline void DoubleClick(QTreeView& view, const QModelIndex& index) {
    const QPoint point = PointOf(view, index);
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, point);
    QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, point);
}

inline void DoubleClick(CListCtrl& list, int nRow) { DoubleClick(list, list.Model().index(nRow, 0)); }

inline void AskForMenu(QWidget& widget, const QPoint& point, QContextMenuEvent::Reason nReason) {
    QContextMenuEvent event(nReason, point, widget.mapToGlobal(point));
    QApplication::sendEvent(&widget, &event);
}

// Whoever clicks in a session that is behind another one's tab brings it to the front first.
inline void Select(CChildFrame* pFrame, const char* pszNode) {
    if (!pFrame->isVisible())
        MainFrame()->ClientArea().Activate(*pFrame);
    Click(pFrame->ThreadView(), FindNode(pFrame->ThreadView().Model(), QLatin1String(pszNode)));
}

inline void ClickHeader(CListCtrl& list, int nColumn) {
    const QHeaderView& header = *list.header();
    QTest::mouseClick(header.viewport(), Qt::LeftButton, {},
                      QPoint(header.sectionViewportPosition(nColumn) + header.sectionSize(nColumn) / 2,
                             header.height() / 2));
}

// The rows of a list, their cells divided by bars.
inline QStringList Rows(CListCtrl& list) {
    QStringList listRows;
    for (int nRow = 0; nRow < list.Model().rowCount(); ++nRow) {
        QStringList listCells;
        for (int nColumn = 0; nColumn < list.Model().columnCount(); ++nColumn)
            listCells << list.Model().index(nRow, nColumn).data().toString();
        listRows << listCells.join(QLatin1Char('|'));
    }
    return listRows;
}

inline QString Title(CListCtrl& list, int nColumn) {
    return list.Model().headerData(nColumn, Qt::Horizontal, Qt::DisplayRole).toString();
}

// Which picture a node shows, by its place in the strip; -1 for none of them.
inline int ImageOf(const QModelIndex& index, const QList<QIcon>& listImages) {
    const qint64 nKey = qvariant_cast<QIcon>(index.data(Qt::DecorationRole)).cacheKey();
    for (qsizetype n = 0; n < listImages.size(); ++n) {
        if (listImages[n].cacheKey() == nKey)
            return static_cast<int>(n);
    }
    return -1;
}

} // namespace carvelot::test
