#include "ui/kit/UserInterface.h"

#include <QApplication>
#include <QFileDialog>
#include <QFontDialog>
#include <QInputDialog>
#include <QMenu>
#include <QMessageBox>
#include <QScreen>

namespace carvelot {

namespace {

QWidget* Owner() {
    QWidget* pOwner = QApplication::activeModalWidget();
    return pOwner != nullptr ? pOwner : QApplication::activeWindow();
}

class CQtUserInterface final : public CUserInterface {
public:
    void ShowMessage(const QString& strText) override {
        // A message may come up in the middle of a load: it is readable only with an ordinary cursor.
        QMessageBox box(QMessageBox::Warning, QStringLiteral("Carvelot"), {}, QMessageBox::Ok, Owner());
        box.setTextFormat(Qt::PlainText); // ahead of the text, which may be anything
        box.setText(strText);
        if (QApplication::overrideCursor() != nullptr) {
            QApplication::setOverrideCursor(Qt::ArrowCursor);
            box.exec();
            QApplication::restoreOverrideCursor();
            return;
        }
        box.exec();
    }

    std::optional<QString> AskOpenFile(const CFileQuestion& question) override {
        return AskFile(question, QFileDialog::AcceptOpen);
    }

    std::optional<QString> AskSaveFile(const CFileQuestion& question) override {
        return AskFile(question, QFileDialog::AcceptSave);
    }

    std::optional<QString> AskText(const QString& strTitle, const QString& strLabel,
                                   const QString& strText) override {
        bool bOk = false;
        const QString strResult =
            QInputDialog::getText(Owner(), strTitle, strLabel, QLineEdit::Normal, strText, &bOk);
        return bOk ? std::optional(strResult) : std::nullopt;
    }

    std::optional<QFont> AskFont(const QFont& initial) override {
        bool bOk = false;
        const QFont font = QFontDialog::getFont(&bOk, initial, Owner());
        return bOk ? std::optional(font) : std::nullopt;
    }

    int RunDialog(QDialog& dialog) override {
        // On a small or much enlarged screen its buttons must not lie below the edge. What has no size of its
        // own yet is held by the toolkit.
        const QSize frame(16, 48);
        if (dialog.testAttribute(Qt::WA_Resized))
            dialog.resize(dialog.size().boundedTo(dialog.screen()->availableSize() - frame));
        return dialog.exec();
    }

    QAction* RunMenu(QMenu& menu, const QPoint& point) override { return menu.exec(point); }

private:
    static std::optional<QString> AskFile(const CFileQuestion& question, QFileDialog::AcceptMode nMode) {
        static QString strLastFolder;
        QFileDialog dialog(Owner(), question.m_strTitle, strLastFolder, ToolkitFilter(question.m_strFilter));
        dialog.setAcceptMode(nMode);
        dialog.setFileMode(nMode == QFileDialog::AcceptOpen ? QFileDialog::ExistingFile
                                                            : QFileDialog::AnyFile);
        dialog.setDefaultSuffix(question.m_strDefaultExtension);
        if (!question.m_strInitialName.isEmpty() && !question.m_strInitialName.contains(QLatin1Char('*')))
            dialog.selectFile(question.m_strInitialName);
        // Switching the kind of file switches the ending that a bare name gets.
        QObject::connect(
            &dialog, &QFileDialog::filterSelected, &dialog, [&dialog, &question](const QString& strFilter) {
                const qsizetype nStar = strFilter.lastIndexOf(QLatin1String("*."));
                const QString strSuffix = nStar < 0 ? QString() : strFilter.mid(nStar + 2).chopped(1);
                dialog.setDefaultSuffix(strSuffix.isEmpty() || strSuffix.contains(QLatin1Char('*'))
                                            ? question.m_strDefaultExtension
                                            : strSuffix);
            });
        if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
            return std::nullopt;
        strLastFolder = dialog.directory().absolutePath();
        return dialog.selectedFiles().constFirst();
    }
};

CUserInterface* s_pInterface = nullptr;

} // namespace

CUserInterface& UserInterface() {
    static CQtUserInterface real;
    return s_pInterface != nullptr ? *s_pInterface : real;
}

void SetUserInterface(CUserInterface* pInterface) { s_pInterface = pInterface; }

QString ToolkitFilter(const QString& strFilter) {
    const QStringList listParts = strFilter.split(QLatin1Char('|'), Qt::SkipEmptyParts);
    QStringList listFilters;
    for (qsizetype n = 0; n + 1 < listParts.size(); n += 2) {
        const qsizetype nBracket = listParts[n].lastIndexOf(QLatin1String(" ("));
        QString strMasks = listParts[n + 1];
        strMasks.replace(QLatin1Char(';'), QLatin1Char(' '));
#ifndef Q_OS_WIN
        // "*.*" means all files, and here most of those have no ending.
        if (strMasks == QLatin1String("*.*"))
            strMasks = QStringLiteral("*");
#endif
        listFilters << QStringLiteral("%1 (%2)").arg(
            listParts[n].left(nBracket < 0 ? listParts[n].size() : nBracket), strMasks);
    }
    return listFilters.join(QLatin1String(";;"));
}

} // namespace carvelot
