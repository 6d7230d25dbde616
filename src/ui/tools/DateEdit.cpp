#include "ui/tools/DateEdit.h"

#include <QKeyEvent>
#include <QLineEdit>

#include <algorithm>

namespace carvelot {

CDateEdit::CDateEdit(const QDateTime& date, QWidget* pParent) : QDateTimeEdit(date, pParent) {
    lineEdit()->installEventFilter(this);
}

void CDateEdit::SelectPart(int nPart) { setSelectedSection(sectionAt(nPart)); }

bool CDateEdit::IsPartFull() const {
    const qsizetype nMost = currentSection() == YearSection ? 4 : 2;
    return sectionText(currentSection()).size() >= nMost;
}

void CDateEdit::keyPressEvent(QKeyEvent* pEvent) {
    const QString strKey = pEvent->text();
    const bool bDigit = strKey.size() == 1 && strKey.front().isDigit();
    const bool bSign = strKey.size() == 1 && strKey.front().isPrint() && !strKey.front().isLetterOrNumber();
    if (bSign && m_bLedOn) {
        // The sign between two parts, typed where the first of them was full already.
        m_bLedOn = false;
        return;
    }
    const bool bLeft = pEvent->key() == Qt::Key_Left;
    if ((bLeft || pEvent->key() == Qt::Key_Right) && pEvent->modifiers() == Qt::NoModifier &&
        lineEdit()->hasSelectedText()) {
        m_bLedOn = false;
        SelectPart(std::clamp(currentSectionIndex() + (bLeft ? -1 : 1), 0, sectionCount() - 1));
        return;
    }
    if (bDigit) {
        const bool bAll = lineEdit()->hasSelectedText() && lineEdit()->selectedText() == text();
        if (bAll)
            SelectPart(0);
        else if (!lineEdit()->hasSelectedText() && IsPartFull())
            SelectPart(currentSectionIndex());
    }
    const int nPart = currentSectionIndex();
    QDateTimeEdit::keyPressEvent(pEvent);
    m_bLedOn = bDigit && currentSectionIndex() != nPart;
}

bool CDateEdit::eventFilter(QObject* pObject, QEvent* pEvent) {
    const bool bHandled = QDateTimeEdit::eventFilter(pObject, pEvent);
    if (pEvent->type() == QEvent::MouseButtonRelease && !lineEdit()->hasSelectedText()) {
        m_bLedOn = false;
        // After the field's own handling, which puts the caret.
        QMetaObject::invokeMethod(
            this, [this] { SelectPart(currentSectionIndex()); }, Qt::QueuedConnection);
    }
    return bHandled;
}

} // namespace carvelot
