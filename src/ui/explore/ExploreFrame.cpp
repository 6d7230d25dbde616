#include "ui/explore/ExploreFrame.h"

#include "explore/lists/ScopeNames.h"
#include "explore/lists/WallClock.h"
#include "ui/kit/MainWindow.h"
#include "ui/kit/PlainText.h"
#include "ui/kit/Text.h"

#include <QCheckBox>
#include <QComboBox>
#include <QKeyEvent>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QSignalBlocker>
#include <QStackedWidget>
#include <QStyle>
#include <QToolButton>
#include <QVBoxLayout>

namespace carvelot {

namespace {

QToolButton* NewCross(const QString& name, QWidget* parent) {
    auto* cross = new QToolButton(parent);
    cross->setAutoRaise(true);
    cross->setIcon(cross->style()->standardIcon(QStyle::SP_TitleBarCloseButton));
    cross->setToolTip(name);
    cross->setAccessibleName(name);
    return cross;
}

} // namespace

CExploreFrame::CExploreFrame(CExploration& exploration, const QString& title)
    : CMDIChildWnd(exploration.Document(), EWindow::Further), m_exploration(exploration) {
    setWindowTitle(title + QStringLiteral(" - ") + exploration.LogName());
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    AddHead();
    m_pPages = new QStackedWidget(this);
    layout->addWidget(m_pPages, 1);

    auto* page = new QWidget(m_pPages);
    auto* column = new QVBoxLayout(page);
    m_pMessage = PlainLabel();
    m_pMessage->setAlignment(Qt::AlignCenter);
    m_pMessage->setWordWrap(true);
    m_pProgress = new QProgressBar(page);
    m_pProgress->setRange(0, 100);
    m_pProgress->setFixedWidth(240);
    m_pProgress->setAccessibleName(tr("Progress of exploring"));
    m_pAgain = new QPushButton(tr("Explore A&gain"), page);
    column->addStretch();
    column->addWidget(m_pMessage);
    column->addWidget(m_pProgress, 0, Qt::AlignCenter);
    column->addWidget(m_pAgain, 0, Qt::AlignCenter);
    column->addStretch();
    m_pPages->addWidget(page);

    connect(m_pAgain, &QPushButton::clicked, &m_exploration, &CExploration::Start);
    connect(&m_exploration, &CExploration::StateChanged, this, &CExploreFrame::OnState);
    connect(&m_exploration, &CExploration::ProgressChanged, m_pProgress,
            [this](int percent) { m_pProgress->setValue(std::max(0, percent)); });
    connect(&m_exploration, &CExploration::ResultsGo, this, [this] {
        if (std::exchange(m_bShowsResults, false)) {
            DropResults();
        }
        m_pPages->setCurrentIndex(0);
    });
    connect(&m_exploration, &CExploration::ScopeChanged, this, [this] {
        RefreshHead();
        if (m_bShowsResults) {
            ShowScope();
            RefreshPage();
        }
    });
    connect(&m_exploration, &CExploration::SelectedChanged, this, [this] {
        if (m_bShowsResults) {
            ShowSelected();
        }
    });
}

void CExploreFrame::SetBody(QWidget* body) {
    m_pBody = body;
    m_pPages->addWidget(body);
}

void CExploreFrame::AddHead() {
    auto* head = new QWidget(this);
    auto* row = new QHBoxLayout(head);
    row->setContentsMargins(6, 3, 6, 3);
    auto* scopeName = new QLabel(tr("Sco&pe:"), head);
    m_pScope = new QComboBox(head);
    m_pScope->setAccessibleName(tr("Scope"));
    m_pScope->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    m_pScope->setMaximumWidth(320);
    scopeName->setBuddy(m_pScope);
    m_pNoScope = NewCross(tr("Back to the whole log"), head);
    m_pFollows = new QCheckBox(tr("F&ollow the session's selection"), head);
    m_pRange = PlainLabel();
    m_pNoRange = NewCross(tr("Let go of the range"), head);
    row->addWidget(scopeName);
    row->addWidget(m_pScope);
    row->addWidget(m_pNoScope);
    row->addSpacing(8);
    row->addWidget(m_pFollows);
    row->addStretch();
    row->addWidget(m_pRange);
    row->addWidget(m_pNoRange);
    layout()->addWidget(head);

    connect(m_pScope, &QComboBox::activated, this, [this](int at) {
        const std::vector<Selection> scopes = ScopesOf(m_exploration.Session());
        m_exploration.SetFollowsSession(false);
        m_exploration.SetScope(scopes[static_cast<std::size_t>(at)]);
    });
    connect(m_pNoScope, &QToolButton::clicked, this, [this] {
        m_exploration.SetFollowsSession(false);
        m_exploration.SetScope({});
    });
    connect(m_pFollows, &QCheckBox::toggled, &m_exploration, &CExploration::SetFollowsSession);
    connect(m_pNoRange, &QToolButton::clicked, this, [this] { m_exploration.SetRange({}); });
}

void CExploreFrame::FillScopes() {
    m_pScope->clear();
    for (const Selection& scope : ScopesOf(m_exploration.Session())) {
        m_pScope->addItem(ToQString(ShownScope(scope)));
    }
}

void CExploreFrame::RefreshHead() {
    const bool isDone = m_exploration.GetState() == CExploration::State::Done;
    const Selection& scope = m_exploration.ScopeSelection();
    if (isDone) {
        const std::vector<Selection> scopes = ScopesOf(m_exploration.Session());
        const auto at = std::find(scopes.begin(), scopes.end(), scope);
        m_pScope->setCurrentIndex(static_cast<int>(at - scopes.begin()));
    }
    m_pScope->setEnabled(isDone);
    m_pNoScope->setVisible(isDone && scope.What() != Selection::Kind::Nothing);
    m_pFollows->setEnabled(isDone);
    const QSignalBlocker quiet(m_pFollows);
    m_pFollows->setChecked(m_exploration.FollowsSession());
    const bool isCut = isDone && !m_exploration.Range().IsWhole();
    const QString range =
        isCut ? ToQString(RangeText(CWallClock(m_exploration.Explored()), m_exploration.Range())) : QString();
    m_pRange->setText(range);
    m_pRange->setVisible(isCut);
    m_pNoRange->setVisible(isCut);
}

void CExploreFrame::OnState() {
    if (m_exploration.GetState() == CExploration::State::Done && !m_bShowsResults) {
        FillScopes();
        m_bShowsResults = true;
        ShowResults();
    }
    RefreshHead();
    RefreshPage();
}

void CExploreFrame::RefreshPage() {
    using State = CExploration::State;
    const State state = m_exploration.GetState();
    QString message;
    switch (state) {
    case State::Nothing:
        message = tr("Nothing was read yet.");
        break;
    case State::Running:
        message = tr("Exploring %1. Esc ends it.").arg(m_exploration.LogName());
        break;
    case State::Done:
        message = EmptyText();
        break;
    case State::Ended:
        message = tr("Exploring was ended.");
        break;
    case State::NoMemory:
        message = tr("There is not enough memory to explore this log.");
        break;
    }
    m_pMessage->setText(message);
    m_pProgress->setVisible(state == State::Running);
    m_pAgain->setVisible(state == State::Ended || state == State::NoMemory);
    m_pPages->setCurrentIndex(message.isEmpty() && m_pBody != nullptr ? 1 : 0);
}

void CExploreFrame::OnSetFocus() { emit CameToFront(); }

void CExploreFrame::showEvent(QShowEvent* event) {
    CMDIChildWnd::showEvent(event);
    m_exploration.StartFirst();
    OnState();
}

void CExploreFrame::keyPressEvent(QKeyEvent* event) {
    if (event->key() != Qt::Key_Escape) {
        CMDIChildWnd::keyPressEvent(event);
        return;
    }
    event->accept();
    if (m_exploration.Progress() >= 0) {
        m_exploration.Stop();
    } else {
        m_exploration.SetRange({});
    }
}

} // namespace carvelot
