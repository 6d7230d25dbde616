#include "ui/tools/DateEdit.h"

#include <QKeyEvent>
#include <QLineEdit>

#include <algorithm>

namespace carvelot {

CDateEdit::CDateEdit(const QDateTime& date, QWidget* parent) : QDateTimeEdit(date, parent) {
    lineEdit()->installEventFilter(this);
}

void CDateEdit::SelectPart(int part) { setSelectedSection(sectionAt(part)); }

bool CDateEdit::IsPartFull() const {
    const qsizetype most = currentSection() == YearSection ? 4 : 2;
    return sectionText(currentSection()).size() >= most;
}

void CDateEdit::keyPressEvent(QKeyEvent* event) {
    const QString key = event->text();
    const bool digit = key.size() == 1 && key.front().isDigit();
    const bool sign = key.size() == 1 && key.front().isPrint() && !key.front().isLetterOrNumber();
    if (sign && m_bLedOn) {
        // The sign between two parts, typed where the first of them was full already.
        m_bLedOn = false;
        return;
    }
    const bool left = event->key() == Qt::Key_Left;
    if ((left || event->key() == Qt::Key_Right) && event->modifiers() == Qt::NoModifier &&
        lineEdit()->hasSelectedText()) {
        m_bLedOn = false;
        SelectPart(std::clamp(currentSectionIndex() + (left ? -1 : 1), 0, sectionCount() - 1));
        return;
    }
    if (digit) {
        const bool all = lineEdit()->hasSelectedText() && lineEdit()->selectedText() == text();
        if (all) {
            SelectPart(0);
        } else if (!lineEdit()->hasSelectedText() && IsPartFull()) {
            SelectPart(currentSectionIndex());
        }
    }
    const int part = currentSectionIndex();
    QDateTimeEdit::keyPressEvent(event);
    m_bLedOn = digit && currentSectionIndex() != part;
}

bool CDateEdit::eventFilter(QObject* object, QEvent* event) {
    const bool handled = QDateTimeEdit::eventFilter(object, event);
    if (event->type() == QEvent::MouseButtonRelease && !lineEdit()->hasSelectedText()) {
        m_bLedOn = false;
        // After the field's own handling, which puts the caret.
        QMetaObject::invokeMethod(
            this, [this] { SelectPart(currentSectionIndex()); }, Qt::QueuedConnection);
    }
    return handled;
}

} // namespace carvelot
