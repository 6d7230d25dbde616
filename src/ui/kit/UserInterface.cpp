#include "ui/kit/UserInterface.h"

#include "settings/AppSettings.h"
#include "ui/kit/PathText.h"
#include "ui/kit/Text.h"

#include <QApplication>
#include <QFileDialog>
#include <QFileInfo>
#include <QFontDialog>
#include <QFontInfo>
#include <QHeaderView>
#include <QInputDialog>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QTimer>
#include <QTreeView>

#include <algorithm>

namespace carvelot {

namespace {

QWidget* Owner() {
    QWidget* owner = QApplication::activeModalWidget();
    return owner != nullptr ? owner : QApplication::activeWindow();
}

// Where the folder of the last answer is stored.
const char* FolderSetting(EFiles files) {
    switch (files) {
    case EFiles::Logs:
        return "LogFolder";
    case EFiles::Exports:
        return "ExportFolder";
    case EFiles::Definitions:
        break;
    }
    return "DefinitionFolder";
}

// A folder, or what is left of the way to it; nothing for nothing.
QString NearestFolder(QString folder) {
    while (!folder.isEmpty() && !QFileInfo(folder).isDir()) {
        const QString above = QFileInfo(folder).path();
        if (above == folder) {
            return {};
        }
        folder = above;
    }
    return folder;
}

// The columns of the toolkit's file dialog, which are narrower than what stands in them: all have room for
// it, and the names the rest. The system's own dialogs have no such list. The header sizes its columns one by
// one, and its length holds only when it is through with all of them: the names wait until then.
class CFileColumns final : public QObject {
public:
    explicit CFileColumns(QFileDialog& dialog)
        : m_pList(dialog.findChild<QTreeView*>(QStringLiteral("treeView"))) {
        if (m_pList == nullptr) {
            return;
        }
        for (int column = 1; column < m_pList->header()->count(); ++column) {
            m_pList->header()->setSectionResizeMode(column, QHeaderView::ResizeToContents);
        }
        m_pList->viewport()->installEventFilter(this);
        m_fit.setSingleShot(true);
        connect(&m_fit, &QTimer::timeout, this, &CFileColumns::FitNames);
        connect(m_pList->header(), &QHeaderView::sectionResized, this, [this](int column) {
            if (column != 0) {
                m_fit.start(0);
            }
        });
    }

protected:
    bool eventFilter(QObject* object, QEvent* event) override {
        if (event->type() == QEvent::Resize) {
            m_fit.start(0);
        }
        return QObject::eventFilter(object, event);
    }

private:
    void FitNames() {
        QHeaderView& header = *m_pList->header();
        const int others = header.length() - header.sectionSize(0);
        header.resizeSection(0, std::max(kLeastNames, m_pList->viewport()->width() - others));
    }

    static constexpr int kLeastNames = 200;

    QTreeView* m_pList;
    QTimer m_fit;
};

class CQtUserInterface final : public CUserInterface {
public:
    void ShowMessage(const QString& text) override {
        // A message may come up in the middle of a load: it is readable only with an ordinary cursor.
        QMessageBox box(QMessageBox::Warning, QStringLiteral("Carvelot"), {}, QMessageBox::Ok, Owner());
        box.setTextFormat(Qt::PlainText); // ahead of the text, which may be anything
        box.setText(text);
        if (QApplication::overrideCursor() != nullptr) {
            QApplication::setOverrideCursor(Qt::ArrowCursor);
            box.exec();
            QApplication::restoreOverrideCursor();
            return;
        }
        box.exec();
    }

    std::optional<QString> AskOpenFile(const CFileQuestion& question) override {
        const QStringList files = AskFiles(question, QFileDialog::ExistingFile);
        return files.isEmpty() ? std::nullopt : std::optional(files.front());
    }

    QStringList AskOpenFiles(const CFileQuestion& question) override {
        return AskFiles(question, QFileDialog::ExistingFiles);
    }

    std::optional<QString> AskSaveFile(const CFileQuestion& question) override {
        const QStringList files = AskFiles(question, QFileDialog::AnyFile);
        return files.isEmpty() ? std::nullopt : std::optional(files.front());
    }

    std::optional<int> AskChoice(const QString& text, const QStringList& answers) override {
        QMessageBox box(QMessageBox::Question, QStringLiteral("Carvelot"), {}, QMessageBox::Cancel, Owner());
        box.setTextFormat(Qt::PlainText);
        box.setText(text);
        QList<QAbstractButton*> buttons;
        for (const QString& answer : answers) {
            QPushButton* const button = box.addButton(answer, QMessageBox::AcceptRole);
            if (buttons.isEmpty()) {
                box.setDefaultButton(button);
            }
            buttons.append(button);
        }
        box.exec();
        const qsizetype chosen = buttons.indexOf(box.clickedButton());
        return chosen < 0 ? std::nullopt : std::optional(static_cast<int>(chosen));
    }

    std::optional<QString> AskText(const QString& title, const QString& label, const QString& text) override {
        bool ok = false;
        const QString result = QInputDialog::getText(Owner(), title, label, QLineEdit::Normal, text, &ok);
        return ok ? std::optional(result) : std::nullopt;
    }

    std::optional<QFont> AskFont(const QFont& initial) override {
        bool ok = false;
        // What stands in for a font that is not there is in the dialog's list.
        QFont inForce = initial;
        inForce.setFamily(QFontInfo(initial).family());
        const QFont font = QFontDialog::getFont(&ok, inForce, Owner());
        return ok ? std::optional(font) : std::nullopt;
    }

    int RunDialog(QDialog& dialog) override {
        // On a small or much enlarged screen its buttons must not lie below the edge. What has no size of its
        // own yet is held by the toolkit.
        const QSize frame(16, 48);
        if (dialog.testAttribute(Qt::WA_Resized)) {
            dialog.resize(dialog.size().boundedTo(dialog.screen()->availableSize() - frame));
        }
        return dialog.exec();
    }

    QAction* RunMenu(QMenu& menu, const QPoint& point) override { return menu.exec(point); }

private:
    static QStringList AskFiles(const CFileQuestion& question, QFileDialog::FileMode mode) {
        const char* const folder = FolderSetting(question.m_nFiles);
        QFileDialog dialog(Owner(), question.m_strTitle,
                           NearestFolder(PathToQString(GetWorkspaceString(folder, ""))),
                           ToolkitFilter(question.m_strFilter));
        dialog.resize(QSize(900, 560).boundedTo(dialog.screen()->availableSize() * 0.9));
        const CFileColumns columns(dialog);
        dialog.setAcceptMode(mode == QFileDialog::AnyFile ? QFileDialog::AcceptSave
                                                          : QFileDialog::AcceptOpen);
        dialog.setFileMode(mode);
        dialog.setDefaultSuffix(question.m_strDefaultExtension);
        if (!question.m_strInitialName.isEmpty() && !question.m_strInitialName.contains(QLatin1Char('*'))) {
            dialog.selectFile(question.m_strInitialName);
        }
        // Switching the kind of file switches the ending that a bare name gets.
        QObject::connect(&dialog, &QFileDialog::filterSelected, &dialog,
                         [&dialog, &question](const QString& filter) {
                             const qsizetype star = filter.lastIndexOf(QLatin1String("*."));
                             const QString suffix = star < 0 ? QString() : filter.mid(star + 2).chopped(1);
                             dialog.setDefaultSuffix(suffix.isEmpty() || suffix.contains(QLatin1Char('*'))
                                                         ? question.m_strDefaultExtension
                                                         : suffix);
                         });
        if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) {
            return {};
        }
        const QStringList paths = dialog.selectedFiles();
        WriteWorkspaceString(folder, PathOf(QFileInfo(paths.constFirst()).absolutePath()));
        return paths;
    }
};

CUserInterface* s_pInterface = nullptr;

} // namespace

CUserInterface& UserInterface() {
    static CQtUserInterface real;
    return s_pInterface != nullptr ? *s_pInterface : real;
}

void SetUserInterface(CUserInterface* userInterface) { s_pInterface = userInterface; }

QString ToolkitFilter(const QString& filter) {
    const QStringList parts = filter.split(QLatin1Char('|'), Qt::SkipEmptyParts);
    QStringList filters;
    for (qsizetype n = 0; n + 1 < parts.size(); n += 2) {
        const qsizetype bracket = parts[n].lastIndexOf(QLatin1String(" ("));
        QString masks = parts[n + 1];
        masks.replace(QLatin1Char(';'), QLatin1Char(' '));
#ifndef Q_OS_WIN
        // "*.*" means all files, and here most of those have no ending.
        if (masks == QLatin1String("*.*")) {
            masks = QStringLiteral("*");
        }
#endif
        filters << QStringLiteral("%1 (%2)").arg(parts[n].left(bracket < 0 ? parts[n].size() : bracket),
                                                 masks);
    }
    return filters.join(QLatin1String(";;"));
}

} // namespace carvelot
