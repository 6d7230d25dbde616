#include "ui/tools/ConvertDates.h"

#include "platform/DateText.h"
#include "tools/JulianDate.h"
#include "ui/kit/Text.h"
#include "ui/kit/UserInterface.h"
#include "ui/tools/DateEdit.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpressionValidator>
#include <QVBoxLayout>

namespace carvelot {

namespace {

QLineEdit* Edit(const char* name, const QString& accessible, bool readOnly) {
    auto* edit = new QLineEdit;
    edit->setObjectName(QLatin1String(name));
    edit->setAccessibleName(accessible);
    edit->setReadOnly(readOnly);
    if (readOnly) {
        // What cannot be typed into does not look as if it could.
        QPalette palette = edit->palette();
        palette.setColor(QPalette::Base, palette.color(QPalette::Window));
        edit->setPalette(palette);
    }
    return edit;
}

QPushButton* Button(const QString& text, const char* name) {
    auto* button = new QPushButton(text);
    button->setObjectName(QLatin1String(name));
    button->setAutoDefault(false);
    return button;
}

QGroupBox* Group(const QString& title, QWidget* input, QWidget* button, QWidget* result) {
    auto* group = new QGroupBox(title);
    auto* layout = new QGridLayout(group);
    layout->addWidget(input, 0, 0);
    layout->addWidget(button, 0, 1);
    layout->addWidget(result, 0, 2);
    layout->setColumnStretch(0, 1);
    layout->setColumnStretch(2, 1);
    const int width = group->fontMetrics().averageCharWidth() * 18;
    input->setMinimumWidth(width);
    result->setMinimumWidth(width);
    return group;
}

} // namespace

CConvertDates::CConvertDates() : QDialog(QApplication::activeWindow()) {
    setWindowTitle(tr("Convert Dates"));

    m_pJulian = Edit("Julian", tr("Julian date"), false);
    m_pJulian->setValidator(
        new QRegularExpressionValidator(QRegularExpression(QStringLiteral("[0-9]*")), m_pJulian));
    QPushButton* toGregorian = Button(tr("To Gregorian"), "ToGregorian");
    m_pGregorianResult = Edit("GregorianResult", tr("Calendar date, converted"), true);

    m_pDate = new CDateEdit(QDateTime::currentDateTime());
    m_pDate->setObjectName(QStringLiteral("Date"));
    m_pDate->setAccessibleName(tr("Calendar date"));
    m_pDate->setCalendarPopup(true);
    // Two digits would leave the century open.
    QString format = m_pDate->locale().dateFormat(QLocale::ShortFormat);
    if (!format.contains(QLatin1String("yyyy"))) {
        format.replace(QLatin1String("yy"), QLatin1String("yyyy"));
    }
#ifndef _WIN32
    format = QStringLiteral("yyyy-MM-dd");
#endif
    m_pDate->setDisplayFormat(format);
    QPushButton* toJulian = Button(tr("To Julian"), "ToJulian");
    m_pJulianResult = Edit("JulianResult", tr("Julian date, converted"), true);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(Group(tr("Julian"), m_pJulian, toGregorian, m_pGregorianResult));
    layout->addWidget(Group(tr("Gregorian"), m_pDate, toJulian, m_pJulianResult));
    const int width = std::max(toGregorian->sizeHint().width(), toJulian->sizeHint().width());
    toGregorian->setMinimumWidth(width);
    toJulian->setMinimumWidth(width);
    layout->addStretch();
    layout->addWidget(buttons);
    // In the dialog already: else it would forget it when the focus passes another button.
    buttons->button(QDialogButtonBox::Ok)->setDefault(true);
    m_pJulian->setFocus();

    connect(toGregorian, &QPushButton::clicked, this, &CConvertDates::OnToGregorian);
    connect(toJulian, &QPushButton::clicked, this, &CConvertDates::OnToJulian);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
}

void CConvertDates::OnToGregorian() {
    m_pGregorianResult->clear();
    const auto date = JulianToGregorian(ToUtf8(m_pJulian->text()));
    if (!date) {
        UserInterface().ShowMessage(QStringLiteral("Invalid Julian Date"));
        return;
    }
    m_pGregorianResult->setText(
        ToQString(platform::ShortDate(date->m_nYear, date->m_nMonth, date->m_nDay).value_or(std::string())));
}

void CConvertDates::OnToJulian() {
    const QDate date = m_pDate->date();
    const CCalendarDate calendar{date.year(), date.month(), date.day()};
    m_pJulianResult->setText(
        ToQString(GregorianToJulian(calendar, m_pDate->time().msecsSinceStartOfDay() / 1000)));
}

} // namespace carvelot
