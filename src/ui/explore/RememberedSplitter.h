// RememberedSplitter.h - two parts of a window, whose division the user finds again the next time.
#pragma once

#include <QSplitter>

#include <string>

namespace carvelot {

class CRememberedSplitter : public QSplitter {
    Q_OBJECT

public:
    // `name`: under which the division is kept; `share`: the first part's, in thousandths, as long as the
    // user has moved nothing.
    CRememberedSplitter(Qt::Orientation orientation, std::string name, int share);
    ~CRememberedSplitter() override;

    // Both parts, once.
    void SetParts(QWidget* first, QWidget* second);

private:
    const std::string m_strName;
    int m_nShare;
    bool m_bMoved = false;
};

} // namespace carvelot
