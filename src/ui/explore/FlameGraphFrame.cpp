#include "ui/explore/FlameGraphFrame.h"

#include "explore/lists/ExploreNames.h"
#include "explore/lists/ScopeNames.h"
#include "settings/AppSettings.h"
#include "ui/kit/PlainText.h"
#include "ui/kit/Text.h"

#include <QComboBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>
#include <vector>

namespace carvelot {

namespace {

constexpr std::size_t kMostSteps = 4; // of the path, besides the whole
constexpr int kMostInStep = 24;       // characters
constexpr const char* kColoringName = "FlameColoring";

} // namespace

CFlameGraphFrame::CFlameGraphFrame(CExploration& exploration)
    : CExploreFrame(exploration, tr("Flame Graph")) {
    auto* const body = new QWidget;
    auto* const column = new QVBoxLayout(body);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(MakeTools());
    m_pView = new CFlameView(body);
    column->addWidget(m_pView, 1);
    SetBody(body);
    m_pSearch->installEventFilter(this);
    connect(m_pView, &CFlameView::Zoomed, this, &CFlameGraphFrame::RefreshPath);
    connect(m_pSearch, &QLineEdit::textChanged, this, &CFlameGraphFrame::Search);
    connect(m_pColoring, &QComboBox::activated, this, [this](int coloring) {
        WriteWorkspaceInt(kColoringName, coloring);
        if (m_pPicture != nullptr) {
            m_pPicture->m_coloring = static_cast<CFlamePicture::Coloring>(coloring);
            m_pView->Refresh();
        }
    });
}

CFlameGraphFrame::~CFlameGraphFrame() { m_pView->Show(nullptr); }

QList<QWidget*> CFlameGraphFrame::WindowPanes() const { return {m_pSearch, m_pView}; }

QWidget* CFlameGraphFrame::MakeTools() {
    auto* const tools = new QWidget;
    auto* const row = new QHBoxLayout(tools);
    row->setContentsMargins(6, 2, 6, 2);
    m_pPath = new QWidget(tools);
    m_pPath->setAccessibleName(tr("Path to what is shown"));
    m_pPathRow = new QHBoxLayout(m_pPath);
    m_pPathRow->setContentsMargins(0, 0, 0, 0);
    m_pPathRow->setSpacing(0);
    m_pPathRow->addStretch();
    m_pHits = PlainLabel();
    m_pSearch = new QLineEdit(tools);
    m_pSearch->setPlaceholderText(tr("Search"));
    m_pSearch->setAccessibleName(tr("Search for names"));
    m_pSearch->setClearButtonEnabled(true);
    m_pSearch->setMaximumWidth(220);
    auto* const coloringName = new QLabel(tr("&Color:"), tools);
    m_pColoring = new QComboBox(tools);
    m_pColoring->setAccessibleName(tr("Color"));
    m_pColoring->addItems({tr("By kind"), tr("By self time")});
    m_pColoring->setCurrentIndex(std::clamp(GetWorkspaceInt(kColoringName, 0), 0, 1));
    coloringName->setBuddy(m_pColoring);
    // A long path is cut, not the window made wider.
    m_pPath->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    row->addWidget(m_pPath, 1);
    row->addWidget(m_pHits);
    row->addWidget(m_pSearch);
    row->addWidget(coloringName);
    row->addWidget(m_pColoring);
    return tools;
}

void CFlameGraphFrame::ShowScope() {
    if (Exploration().Scope() == nullptr) {
        return; // what is shown stays until the counts are there
    }
    m_pView->Show(nullptr);
    m_pPicture.reset();
    m_pShown = Exploration().SharedScope();
    m_pLayout = std::make_unique<CFlameLayout>(m_pShown->profile.m_tree);
    m_pPicture = std::make_unique<CFlamePicture>(*m_pLayout, Exploration().Explored().frames.Keys(),
                                                 ShownScope(Exploration().ScopeSelection()));
    m_pPicture->m_coloring = static_cast<CFlamePicture::Coloring>(m_pColoring->currentIndex());
    m_pView->Show(m_pPicture.get());
    Search();
}

// The call that a record begins gets the focus.
void CFlameGraphFrame::ShowSelected() {
    const auto record = Exploration().Selected();
    if (!record || m_pPicture == nullptr) {
        return;
    }
    const CFrames& frames = Exploration().Explored().frames;
    std::uint32_t frame = frames.FrameAt(*record);
    if (frame == kNoFrame || !m_pShown->cut.Holds(frame)) {
        return;
    }
    std::vector<std::uint32_t> keys;
    for (; frame != kNoFrame; frame = frames[frame].parent) {
        keys.push_back(frames[frame].key);
    }
    CFlameLayout::Place place = CFlameLayout::kWhole;
    for (auto key = keys.rbegin(); key != keys.rend(); ++key) {
        CFlameLayout::Place child = m_pLayout->ChildBegin(place);
        while (child < m_pLayout->ChildEnd(place) && m_pLayout->Key(child) != *key) {
            ++child;
        }
        if (child == m_pLayout->ChildEnd(place)) {
            return;
        }
        place = child;
    }
    if (m_pLayout->Total(place) > 0) {
        m_pView->Reveal(place);
    }
}

void CFlameGraphFrame::DropResults() {
    m_pView->Show(nullptr);
    m_pPicture.reset();
    m_pLayout.reset();
    m_pShown.reset();
    m_pHits->clear();
}

QString CFlameGraphFrame::EmptyText() const {
    if (m_pShown == nullptr || m_pLayout->Total(CFlameLayout::kWhole) > 0) {
        return {};
    }
    if (Exploration().Explored().frames.Count() == 0) {
        return tr("This log holds no calls.");
    }
    return m_pShown->profile.m_tree.empty() ? tr("Nothing lies in this scope and range.")
                                            : tr("What lies in this scope and range took no time.");
}

void CFlameGraphFrame::Search() {
    if (m_pPicture == nullptr) {
        return;
    }
    m_pPicture->m_search =
        CFlameSearch(*m_pLayout, Exploration().Explored().frames.Keys(), ToUtf8(m_pSearch->text()));
    const CFlameSearch& search = m_pPicture->m_search;
    m_pHits->setText(
        search.IsOn()
            ? ToQString(Counted(search.Count(), "hit") + ", " + SecondsWithPlaces(search.Total()) + " s (" +
                        PercentText(search.Total(), m_pLayout->Total(CFlameLayout::kWhole)) + ')')
            : QString());
    m_pView->Refresh();
}

void CFlameGraphFrame::RefreshPath() {
    // The button that was pressed may be among them.
    for (QToolButton* const step : m_pPath->findChildren<QToolButton*>(Qt::FindDirectChildrenOnly)) {
        m_pPathRow->removeWidget(step);
        step->hide();
        step->setParent(nullptr);
        step->deleteLater();
    }
    if (m_pPicture == nullptr || m_pView->Shown() == nullptr) {
        return;
    }
    std::vector<CFlameLayout::Place> places;
    for (CFlameLayout::Place place = m_pPicture->Zoomed(); place != CFlameLayout::kNoPlace;
         place = m_pLayout->Parent(place)) {
        places.push_back(place);
    }
    std::reverse(places.begin(), places.end());
    const std::size_t left = places.size() > kMostSteps + 1 ? places.size() - kMostSteps : 1;
    for (std::size_t at = 0; at < places.size(); at = at == 0 ? left : at + 1) {
        const QString name = ToQString(m_pPicture->Name(places[at]));
        auto* const step = new QToolButton(m_pPath);
        const QString shown = name.size() > kMostInStep ? name.left(kMostInStep) + QChar(0x2026) : name;
        QString text = at == 0 ? shown : QStringLiteral("> ") + shown;
        if (at == left && left > 1) {
            text = QStringLiteral("> ") + QChar(0x2026) + QStringLiteral(" > ") + shown;
        }
        step->setText(text.replace(QLatin1Char('&'), QLatin1String("&&")));
        step->setAccessibleName(name);
        step->setToolTip(name);
        step->setAutoRaise(true);
        connect(step, &QToolButton::clicked, m_pView, [this, place = places[at]] { m_pView->ZoomTo(place); });
        m_pPathRow->insertWidget(m_pPathRow->count() - 1, step);
        step->show();
    }
}

// Keys that may be commands of the main window are meant for the picture here.
bool CFlameGraphFrame::event(QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride) {
        const auto& key = static_cast<const QKeyEvent&>(*event);
        if (key.matches(QKeySequence::Find) || key.key() == Qt::Key_F3) {
            event->accept();
            return true;
        }
    }
    return CExploreFrame::event(event);
}

void CFlameGraphFrame::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Find) || event->text() == QLatin1String("/")) {
        m_pSearch->setFocus(Qt::ShortcutFocusReason);
        m_pSearch->selectAll();
        event->accept();
    } else if (event->key() == Qt::Key_F3) {
        m_pView->WalkHits(!event->modifiers().testFlag(Qt::ShiftModifier));
        event->accept();
    } else {
        CExploreFrame::keyPressEvent(event);
    }
}

// Enter walks the hits, Esc lets go of the search.
bool CFlameGraphFrame::eventFilter(QObject* object, QEvent* event) {
    if (object != m_pSearch || event->type() != QEvent::KeyPress) {
        return CExploreFrame::eventFilter(object, event);
    }
    const int key = static_cast<const QKeyEvent&>(*event).key();
    if (key == Qt::Key_Return || key == Qt::Key_Enter) {
        m_pView->WalkHits(true);
    } else if (key == Qt::Key_Escape) {
        m_pSearch->clear();
    } else {
        return false;
    }
    m_pView->setFocus();
    return true;
}

} // namespace carvelot
