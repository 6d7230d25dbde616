#include "ui/tools/Settings.h"

#include "ui/tools/PropertyGrid.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QPushButton>

namespace carvelot {

namespace {

// What the grid leaves free for the buttons.
constexpr int kButtonArea = 35;

class CStore final : public CJDESettingsStore {
public:
    explicit CStore(CJDESettings& settings) : m_settings(settings) {}
    bool HasWebApplication() const override { return !m_settings.m_strWebInfDir.empty(); }
    void ReadLogProperties() override { m_settings.ReadLogProperties(); }
    void ReadIni() override { m_settings.ReadIni(); }
    std::unique_ptr<QDialog> MakeDialog() override { return std::make_unique<CSettings>(m_settings); }

private:
    CJDESettings& m_settings;
};

} // namespace

std::unique_ptr<CJDESettingsStore> MakeJDESettingsStore(CJDESettings& settings) {
    return std::make_unique<CStore>(settings);
}

CSettings::CSettings(const CJDESettings& settings)
    : QDialog(QApplication::activeWindow()), m_settings(settings) {
    setWindowTitle(tr("JDE Settings"));
    m_pGrid = new CPropertyGrid(this);

    auto* buttons =
        new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Apply | QDialogButtonBox::Cancel, this);
    m_pButtons = buttons;
    buttons->button(QDialogButtonBox::Ok)->setDefault(true);
    connect(buttons->button(QDialogButtonBox::Apply), &QPushButton::clicked, this, &CSettings::OnApply);
    connect(buttons, &QDialogButtonBox::accepted, this, &CSettings::OnOk);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    m_pGrid->setFocus();
    setMinimumSize(360, 300);
    const int character = fontMetrics().averageCharWidth();
    resize(std::max(560, character * 90), std::max(600, fontMetrics().height() * 40));
}

void CSettings::showEvent(QShowEvent* event) {
    if (m_listRows.empty()) {
        m_listRows = MakeSettingsRows(m_settings);
        m_pGrid->SetRows(m_listRows);
    }
    QDialog::showEvent(event);
}

void CSettings::resizeEvent(QResizeEvent* event) {
    QDialog::resizeEvent(event);
    // Buttons of a large font need more.
    const int buttons = m_pButtons->sizeHint().height();
    const int area = std::max(kButtonArea, buttons + 4);
    m_pGrid->setGeometry(0, 0, width(), height() - area);
    constexpr int kMargin = 8;
    m_pButtons->setGeometry(kMargin, height() - area + (area - buttons) / 2, width() - 2 * kMargin, buttons);
}

void CSettings::OnApply() {
    m_pGrid->EndEdit();
    WriteModifiedRows(m_listRows);
}

void CSettings::OnOk() {
    OnApply();
    accept();
}

} // namespace carvelot
