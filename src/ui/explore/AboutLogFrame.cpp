#include "ui/explore/AboutLogFrame.h"

#include "ui/explore/DialectChoice.h"
#include "ui/explore/ListMenu.h"
#include "ui/explore/TitledView.h"
#include "ui/kit/PlainText.h"
#include "ui/kit/Text.h"

#include <QFormLayout>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>

namespace carvelot {

CAboutLogFrame::CAboutLogFrame(CExploration& exploration)
    : CMDIChildWnd(exploration.Document(), EWindow::Further), m_exploration(exploration),
      m_pRefused(new CRowList<RefusedRow>(tr("First lines that are no records"), nullptr)),
      m_pChoice(new CDialectChoice), m_pReadAnew(new QPushButton(tr("&Read Anew"))) {
    setWindowTitle(tr("About This Log - %1").arg(exploration.LogName()));
    // The window may be lower than all of it.
    auto* area = new QScrollArea(this);
    area->setFrameShape(QFrame::NoFrame);
    area->setWidgetResizable(true);
    auto* whole = new QVBoxLayout(this);
    whole->setContentsMargins(0, 0, 0, 0);
    whole->addWidget(area);
    auto* body = new QWidget;
    auto* layout = new QVBoxLayout(body);
    auto* form = new QFormLayout;
    for (const AboutFact& fact : AboutFacts({})) {
        QLabel* const text = m_facts.emplace_back(PlainLabel());
        text->setTextInteractionFlags(Qt::TextSelectableByMouse);
        text->setWordWrap(true);
        text->setAccessibleName(ToQString(fact.name));
        form->addRow(ToQString(fact.name) + QLatin1Char(':'), text);
    }
    layout->addLayout(form);
    layout->addWidget(Titled(tr("First lines that are no records"), *m_pRefused), 1);
    auto* dialects = new QGroupBox(tr("Dialects"));
    auto* column = new QVBoxLayout(dialects);
    column->addWidget(m_pChoice);
    column->addWidget(m_pReadAnew, 0, Qt::AlignLeft);
    layout->addWidget(dialects);
    area->setWidget(body);
    m_pRefused->header()->setStretchLastSection(true);
    new CListMenu(*m_pRefused, QStringLiteral("RefusedLines"));
    connect(m_pReadAnew, &QPushButton::clicked, this, [this] { emit DialectsWanted(m_pChoice->Chosen()); });
    connect(m_pChoice, &CDialectChoice::Changed, this,
            [this] { m_pReadAnew->setEnabled(m_pChoice->Chosen() != m_exploration.Session().m_dialects); });
    ShowFacts();
}

QList<QWidget*> CAboutLogFrame::WindowPanes() const { return {m_pRefused, m_pChoice}; }

void CAboutLogFrame::ShowFacts() {
    const LogFacts facts = FactsOf(m_exploration.Session());
    ShowTexts(facts);
    m_pRefused->ShowRows(MakeRefusedRows(facts));
    CDialects marked = facts.dialects;
    marked.Add(facts.offered);
    m_pChoice->Show(marked, facts.offered);
    m_pReadAnew->setEnabled(marked != m_exploration.Session().m_dialects);
}

void CAboutLogFrame::ShowGrowth() {
    const LogFacts facts = FactsOf(m_exploration.Session());
    ShowTexts(facts);
    // Those that are listed stay the first ones of their reasons.
    std::vector<RefusedRow> refused = MakeRefusedRows(facts);
    if (static_cast<int>(refused.size()) != m_pRefused->Model().rowCount()) {
        m_pRefused->ShowRows(std::move(refused));
    }
    m_pChoice->Show(m_pChoice->Chosen(), facts.offered);
}

void CAboutLogFrame::ShowTexts(const LogFacts& facts) {
    const std::vector<AboutFact> texts = AboutFacts(facts);
    for (std::size_t i = 0; i < texts.size(); ++i) {
        m_facts[i]->setText(ToQString(texts[i].text));
    }
}

} // namespace carvelot
