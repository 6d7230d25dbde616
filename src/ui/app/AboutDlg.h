// AboutDlg.h - "About Carvelot": version, bitness and where to look for updates.
#pragma once

#include <QDialog>

namespace carvelot {

class CAboutDlg : public QDialog {
    Q_OBJECT

public:
    CAboutDlg();
};

} // namespace carvelot
