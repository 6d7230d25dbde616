// Settings.h - "JDE Settings": a grid over the settings of a JDE workstation that writes changed rows back.
#pragma once

#include "tools/JDEPropSetting.h"
#include "tools/JDESettings.h"

#include <QDialog>

#include <memory>
#include <vector>

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
    void showEvent(QShowEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void OnApply();
    void OnOk();

    const CJDESettings& m_settings;
    std::vector<CJDEPropSetting> m_listRows;
    CPropertyGrid* m_pGrid;
    QWidget* m_pButtons;
};

// The store of JDE settings as the application object needs it around its dialog.
class CJDESettingsStore {
public:
    virtual ~CJDESettingsStore() = default;
    virtual bool HasWebApplication() const = 0;
    virtual void ReadLogProperties() = 0;
    virtual void ReadIni() = 0;
    virtual std::unique_ptr<QDialog> MakeDialog() = 0;
};

// What the application object runs around the dialog.
std::unique_ptr<CJDESettingsStore> MakeJDESettingsStore(CJDESettings& settings);

} // namespace carvelot
