// Settings.h - "JDE Settings": a grid over the settings of a JDE workstation that writes changed rows back.
#pragma once

#include "tools/JDEPropSetting.h"
#include "ui/app/CarvelotApp.h"

#include <QDialog>

namespace carvelot {

class CPropertyGrid;

class CSettings : public QDialog {
    Q_OBJECT

public:
    // The grid is filled when the dialog is shown, from what the store holds then.
    explicit CSettings(const CJDESettings& settings);
    // An editor that is still open gives its value back when the window goes: while there are rows.
    ~CSettings() override { hide(); }

protected:
    void showEvent(QShowEvent* pEvent) override;
    void resizeEvent(QResizeEvent* pEvent) override;

private:
    void OnApply();
    void OnOk();

    const CJDESettings& m_settings;
    std::vector<CJDEPropSetting> m_listRows;
    CPropertyGrid* m_pGrid;
    QWidget* m_pButtons;
};

// What the application object runs around the dialog.
std::unique_ptr<CJDESettingsStore> MakeJDESettingsStore(CJDESettings& settings);

} // namespace carvelot
