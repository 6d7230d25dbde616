// KeptSplitter.h - a splitter that is found again where the user left it.
#pragma once

#include <QSplitter>

#include <string>

namespace carvelot {

class CKeptSplitter : public QSplitter {
    Q_OBJECT

public:
    // The sizes are stored below a name; `parts` are those that its widgets have at first, as in a window of
    // usual size. In a larger one they grow in proportion.
    CKeptSplitter(Qt::Orientation orientation, std::string name, QList<int> parts);

    // To be called when all widgets are in it.
    void TakeSizes();

protected:
    QSplitterHandle* createHandle() override;
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    const std::string m_strName;
    const QList<int> m_listParts;
    bool m_bDragged = false;
};

} // namespace carvelot
