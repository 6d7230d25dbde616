// OptionsDlg.h - "Carvelot Options": the window over COptionsModel.
#pragma once

#include "settings/OptionsModel.h"

#include <QDialog>

class QCheckBox;
class QLineEdit;
class QTreeWidget;

namespace carvelot {

class COptionsDlg : public QDialog {
    Q_OBJECT

public:
    // Works on copies; OK writes into the settings and their store.
    explicit COptionsDlg(CAppSettings& settings);

private:
    void ReadSelection();
    void ShowRows();
    void OnAdd();
    void OnRemove();
    void OnToggleStatus();
    void OnChooseFont();
    void OnOk();

    CAppSettings& m_settings;
    COptionsModel m_model;
    QCheckBox* m_pAutoRefresh;
    QLineEdit* m_pRate;
    QLineEdit* m_pApplication;
    QTreeWidget* m_pList;
    QLineEdit* m_pFontName;
    QLineEdit* m_pFontHeight;
    QLineEdit* m_pThreshold;
};

} // namespace carvelot
