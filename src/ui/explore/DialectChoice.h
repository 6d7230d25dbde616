// DialectChoice.h - the dialects to choose from, each with a check mark.
#pragma once

#include "parse/Dialects.h"

#include <QDialog>
#include <QWidget>

#include <array>

class QCheckBox;

namespace carvelot {

class CDialectChoice : public QWidget {
    Q_OBJECT

public:
    explicit CDialectChoice(QWidget* parent = nullptr);

    // Marks `chosen`, and says of `offered` that they would read more of the log.
    void Show(CDialects chosen, CDialects offered);
    CDialects Chosen() const;

signals:
    void Changed();

private:
    std::array<QCheckBox*, kDialects.size()> m_boxes;
};

// The question after a load that left no record. Those that would help are marked.
class CDialectsDlg : public QDialog {
    Q_OBJECT

public:
    CDialectsDlg(const QString& logName, CDialects chosen, CDialects offered);

    CDialects Chosen() const { return m_pChoice->Chosen(); }

private:
    CDialectChoice* m_pChoice;
};

} // namespace carvelot
