// ConvertDates.h - "Convert Dates": between JDE's Julian dates and the calendar.
#pragma once

#include <QDialog>

class QLineEdit;

namespace carvelot {

class CDateEdit;

class CConvertDates : public QDialog {
    Q_OBJECT

public:
    CConvertDates();

private:
    void OnToGregorian();
    void OnToJulian();

    QLineEdit* m_pJulian;
    QLineEdit* m_pGregorianResult;
    CDateEdit* m_pDate;
    QLineEdit* m_pJulianResult;
};

} // namespace carvelot
