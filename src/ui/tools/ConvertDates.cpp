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

QLineEdit* Edit(const char* pszName, const QString& strAccessible, bool bReadOnly) {
    auto* pEdit = new QLineEdit;
    pEdit->setObjectName(QLatin1String(pszName));
    pEdit->setAccessibleName(strAccessible);
    pEdit->setReadOnly(bReadOnly);
    if (bReadOnly) {
        // What cannot be typed into does not look as if it could.
        QPalette palette = pEdit->palette();
        palette.setColor(QPalette::Base, palette.color(QPalette::Window));
        pEdit->setPalette(palette);
    }
    return pEdit;
}

QPushButton* Button(const QString& strText, const char* pszName) {
    auto* pButton = new QPushButton(strText);
    pButton->setObjectName(QLatin1String(pszName));
    pButton->setAutoDefault(false);
    return pButton;
}

QGroupBox* Group(const QString& strTitle, QWidget* pInput, QWidget* pButton, QWidget* pResult) {
    auto* pGroup = new QGroupBox(strTitle);
    auto* pLayout = new QGridLayout(pGroup);
    pLayout->addWidget(pInput, 0, 0);
    pLayout->addWidget(pButton, 0, 1);
    pLayout->addWidget(pResult, 0, 2);
    pLayout->setColumnStretch(0, 1);
    pLayout->setColumnStretch(2, 1);
    const int nWidth = pGroup->fontMetrics().averageCharWidth() * 18;
    pInput->setMinimumWidth(nWidth);
    pResult->setMinimumWidth(nWidth);
    return pGroup;
}

} // namespace

CConvertDates::CConvertDates() : QDialog(QApplication::activeWindow()) {
    setWindowTitle(tr("Convert Dates"));

    m_pJulian = Edit("Julian", tr("Julian date"), false);
    m_pJulian->setValidator(
        new QRegularExpressionValidator(QRegularExpression(QStringLiteral("[0-9]*")), m_pJulian));
    QPushButton* pToGregorian = Button(tr("To Gregorian"), "ToGregorian");
    m_pGregorianResult = Edit("GregorianResult", tr("Calendar date, converted"), true);

    m_pDate = new CDateEdit(QDateTime::currentDateTime());
    m_pDate->setObjectName(QStringLiteral("Date"));
    m_pDate->setAccessibleName(tr("Calendar date"));
    m_pDate->setCalendarPopup(true);
    // Two digits would leave the century open.
    QString strFormat = m_pDate->locale().dateFormat(QLocale::ShortFormat);
    if (!strFormat.contains(QLatin1String("yyyy")))
        strFormat.replace(QLatin1String("yy"), QLatin1String("yyyy"));
#ifndef _WIN32
    strFormat = QStringLiteral("yyyy-MM-dd");
#endif
    m_pDate->setDisplayFormat(strFormat);
    QPushButton* pToJulian = Button(tr("To Julian"), "ToJulian");
    m_pJulianResult = Edit("JulianResult", tr("Julian date, converted"), true);

    auto* pButtons = new QDialogButtonBox(QDialogButtonBox::Ok);

    auto* pLayout = new QVBoxLayout(this);
    pLayout->addWidget(Group(tr("Julian"), m_pJulian, pToGregorian, m_pGregorianResult));
    pLayout->addWidget(Group(tr("Gregorian"), m_pDate, pToJulian, m_pJulianResult));
    const int nWidth = std::max(pToGregorian->sizeHint().width(), pToJulian->sizeHint().width());
    pToGregorian->setMinimumWidth(nWidth);
    pToJulian->setMinimumWidth(nWidth);
    pLayout->addStretch();
    pLayout->addWidget(pButtons);
    // In the dialog already: else it would forget it when the focus passes another button.
    pButtons->button(QDialogButtonBox::Ok)->setDefault(true);
    m_pJulian->setFocus();

    connect(pToGregorian, &QPushButton::clicked, this, &CConvertDates::OnToGregorian);
    connect(pToJulian, &QPushButton::clicked, this, &CConvertDates::OnToJulian);
    connect(pButtons, &QDialogButtonBox::accepted, this, &QDialog::accept);
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
