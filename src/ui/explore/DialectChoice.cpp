#include "ui/explore/DialectChoice.h"

#include "explore/lists/AboutLogRows.h"
#include "ui/kit/PlainText.h"
#include "ui/kit/Text.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace carvelot {

CDialectChoice::CDialectChoice(QWidget* parent) : QWidget(parent) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    for (std::size_t i = 0; i < kDialects.size(); ++i) {
        m_boxes[i] = new QCheckBox(this);
        m_boxes[i]->setObjectName(ToQString(kDialects[i].name));
        connect(m_boxes[i], &QCheckBox::toggled, this, &CDialectChoice::Changed);
        column->addWidget(m_boxes[i]);
    }
    Show({}, {});
}

void CDialectChoice::Show(CDialects chosen, CDialects offered) {
    for (std::size_t i = 0; i < kDialects.size(); ++i) {
        const Dialect dialect = kDialects[i].dialect;
        const QString sentence = ToQString(DialectSentence(dialect));
        m_boxes[i]->setText(offered.Has(dialect) ? tr("%1 (reads more of this log)").arg(sentence)
                                                 : sentence);
        m_boxes[i]->setChecked(chosen.Has(dialect));
    }
}

CDialects CDialectChoice::Chosen() const {
    CDialects chosen;
    for (std::size_t i = 0; i < kDialects.size(); ++i) {
        if (m_boxes[i]->isChecked()) {
            chosen.Add(kDialects[i].dialect);
        }
    }
    return chosen;
}

CDialectsDlg::CDialectsDlg(const QString& logName, CDialects chosen, CDialects offered)
    : m_pChoice(new CDialectChoice) {
    setWindowTitle(tr("No Records"));
    auto* layout = new QVBoxLayout(this);
    QLabel* const question =
        PlainLabel(tr("No line of %1 became a record. Read it anew with a dialect?").arg(logName));
    question->setWordWrap(true);
    layout->addWidget(question);
    layout->addWidget(m_pChoice);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    buttons->button(QDialogButtonBox::Ok)->setText(tr("&Read Anew"));
    buttons->button(QDialogButtonBox::Ok)->setDefault(true);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(buttons);
    CDialects marked = chosen;
    marked.Add(offered);
    m_pChoice->Show(marked, offered);
}

} // namespace carvelot
