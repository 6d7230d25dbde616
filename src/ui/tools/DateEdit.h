// DateEdit.h - a field for a date whose parts are typed over: day, month, year.
#pragma once

#include <QDateTimeEdit>

namespace carvelot {

// A click chooses the part of the date below it, and what is typed takes its place; a part that is full leads
// to the next one, with or without the sign between them. Left and Right go from part to part. With all of
// it selected typing begins at its first part.
class CDateEdit : public QDateTimeEdit {
    Q_OBJECT

public:
    explicit CDateEdit(const QDateTime& date, QWidget* parent = nullptr);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    void SelectPart(int part);
    bool IsPartFull() const;

    bool m_bLedOn = false; // the last key filled a part and led to the next one
};

} // namespace carvelot
