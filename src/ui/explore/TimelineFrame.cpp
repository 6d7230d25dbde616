#include "ui/explore/TimelineFrame.h"

#include "explore/lists/ExploreNames.h"
#include "settings/AppSettings.h"
#include "ui/kit/PlainText.h"
#include "ui/kit/Text.h"
#include "ui/kit/UserInterface.h"

#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QToolButton>

#include <algorithm>
#include <cmath>
#include <new>

namespace carvelot {

namespace {

constexpr char kFoldAll[] = "TimelineFoldLanes";
constexpr char kByActivity[] = "TimelineSortByActivity";
constexpr char kHideIdle[] = "TimelineHideIdleLanes";
constexpr char kRowHeight[] = "TimelineRowHeight"; // percent of a line of text
constexpr int kUsualRowHeight = 125;

} // namespace

CTimelineFrame::CTimelineFrame(CExploration& exploration)
    : CExploreFrame(exploration, tr("Timeline")), m_pWidget(nullptr), m_pScrollBar(nullptr),
      m_pSearchBar(nullptr), m_pSearch(nullptr), m_pMatches(nullptr) {
    auto* body = new QWidget;
    m_pWidget = new CTimelineWidget(body);
    m_pScrollBar = new QScrollBar(Qt::Vertical, body);
    auto* grid = new QGridLayout(body);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setSpacing(0);
    grid->addWidget(m_pWidget, 0, 0);
    grid->addWidget(m_pScrollBar, 0, 1);
    AddSearchBar(body);
    grid->addWidget(m_pSearchBar, 1, 0, 1, 2);
    grid->setRowStretch(0, 1);
    body->setFocusProxy(m_pWidget);
    SetBody(body);

    auto* lanes = new QToolButton(m_pWidget);
    lanes->setText(tr("Lanes"));
    lanes->setToolTip(tr("Which lanes are shown, and how"));
    lanes->setArrowType(Qt::DownArrow);
    lanes->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    lanes->setAutoRaise(true);
    lanes->setFocusPolicy(Qt::NoFocus); // the menu key of the lanes brings up the same
    lanes->move(4, 4);

    connect(lanes, &QToolButton::clicked, this,
            [this, lanes] { RunMenu(lanes->mapToGlobal(lanes->rect().bottomLeft())); });
    connect(m_pWidget, &CTimelineWidget::MenuWanted, this, &CTimelineFrame::RunMenu);
    connect(m_pWidget, &CTimelineWidget::ViewChanged, this, &CTimelineFrame::RefreshScrollBar);
    connect(m_pWidget, &CTimelineWidget::FrameSelected, this,
            [this](RecordIndex record) { Exploration().Select(record); });
    connect(m_pWidget, &CTimelineWidget::RecordWanted, this,
            [this](RecordIndex record) { Exploration().ShowInSession(record); });
    connect(m_pWidget, &CTimelineWidget::RangeChosen, this,
            [this](const ClockRange& range) { Exploration().SetRange(range); });
    connect(m_pWidget, &CTimelineWidget::SearchWanted, this, &CTimelineFrame::OpenSearch);
    connect(m_pWidget, &CTimelineWidget::NextMatchWanted, this, &CTimelineFrame::GoToMatch);
    connect(m_pScrollBar, &QScrollBar::valueChanged, this,
            [this](int value) { m_pWidget->Change([value](CTimelineView& view) { view.ScrollTo(value); }); });
}

CTimelineFrame::~CTimelineFrame() {
    KeepRowHeight();
    m_pWidget->Show(nullptr); // it is gone later than the timeline
}

void CTimelineFrame::AddSearchBar(QWidget* body) {
    m_pSearchBar = new QWidget(body);
    auto* row = new QHBoxLayout(m_pSearchBar);
    row->setContentsMargins(6, 3, 6, 3);
    auto* label = new QLabel(tr("Sea&rch:"), m_pSearchBar);
    m_pSearch = new QLineEdit(m_pSearchBar);
    m_pSearch->setAccessibleName(tr("Search frames by name"));
    m_pSearch->setClearButtonEnabled(true);
    m_pSearch->setMaximumWidth(320);
    m_pSearch->installEventFilter(this);
    label->setBuddy(m_pSearch);
    m_pMatches = PlainLabel();
    row->addWidget(label);
    row->addWidget(m_pSearch);
    row->addWidget(m_pMatches);
    row->addStretch();
    m_pSearchBar->hide();
    connect(m_pSearch, &QLineEdit::textChanged, this, [this](const QString& text) {
        m_pWidget->Change([&text](CTimelineView& view) { view.Search(ToUtf8(text)); });
        const CTimelineView* const view = m_pWidget->View();
        m_pMatches->setText(
            text.isEmpty() || view == nullptr ? QString() : ToQString(Counted(view->MatchCount(), "frame")));
    });
}

IPicture* CTimelineFrame::Picture() {
    if (m_pWidget->View() == nullptr) {
        return nullptr;
    }
    m_pPicture = std::make_unique<CTimelinePicture>(*m_pWidget->View(), GroundOf(*m_pWidget));
    return m_pPicture.get();
}

QString CTimelineFrame::EmptyText() const {
    if (m_bNoMemory) {
        return tr("There is not enough memory to draw the timeline of this log.");
    }
    return Exploration().Explored().frames.Count() == 0 ? tr("This log holds no calls.") : QString();
}

void CTimelineFrame::ShowResults() {
    auto made = std::make_shared<std::unique_ptr<CTimeline>>();
    auto progress = std::make_shared<CExploreProgress>();
    const ExploredSession& explored = Exploration().Explored();
    const std::span<const Finding> findings = Exploration().Findings();
    m_bNoMemory = false;
    m_pWork = std::make_unique<CBackgroundWork>(
        [made, progress, &explored, findings] {
            try {
                *made = std::make_unique<CTimeline>(explored, findings, progress.get());
            } catch (const ExploringEnded&) {
                // nobody waits for it
            } catch (const std::bad_alloc&) {
                made->reset();
            }
        },
        [progress] { progress->End(); },
        [this, made] {
            m_pWork.release()->deleteLater(); // the call comes from inside of it
            TakeTimeline(std::move(*made));
        });
}

void CTimelineFrame::TakeTimeline(std::unique_ptr<CTimeline> timeline) {
    m_pTimeline = std::move(timeline);
    m_bNoMemory = m_pTimeline == nullptr;
    m_pWidget->Show(m_pTimeline.get());
    m_pWidget->Change([this](CTimelineView& view) {
        view.FoldAll(GetWorkspaceInt(kFoldAll, 0) != 0);
        view.SortByActivity(GetWorkspaceInt(kByActivity, 0) != 0);
        view.HideIdle(GetWorkspaceInt(kHideIdle, 0) != 0);
        view.SetRowHeight(view.LineHeight() * GetWorkspaceInt(kRowHeight, kUsualRowHeight) / 100);
        view.Search(ToUtf8(m_pSearch->text()));
    });
    ShowScope();
    ShowSelected();
    RefreshPage();
    emit PictureCame();
}

void CTimelineFrame::ShowScope() {
    m_pWidget->Change([this](CTimelineView& view) {
        view.SetScope(Exploration().ScopeSelection());
        view.SetRange(Exploration().Range());
    });
}

void CTimelineFrame::ShowSelected() {
    const std::optional<RecordIndex> record = Exploration().Selected();
    m_pWidget->Change([&](CTimelineView& view) {
        view.Mark(record);
        if (!record) {
            view.Select(kNoFrame);
            return;
        }
        const std::uint32_t selected = view.Selected();
        if (selected != kNoFrame && m_pTimeline->Frames()[selected].record == *record) {
            return; // it was selected here
        }
        const std::uint32_t frame = m_pTimeline->FrameAt(*record);
        view.Select(frame);
        if (frame != kNoFrame) {
            view.Reveal(frame);
        }
    });
}

void CTimelineFrame::KeepRowHeight() const {
    if (const CTimelineView* const view = m_pWidget->View()) {
        const double percent = 100 * view->Lanes().RowHeight() / view->LineHeight();
        WriteWorkspaceInt(kRowHeight, static_cast<std::int32_t>(std::lround(percent)));
    }
}

void CTimelineFrame::DropResults() {
    KeepRowHeight();
    m_pWork.reset();
    m_pPicture.reset();
    m_pWidget->Show(nullptr);
    m_pTimeline.reset();
}

void CTimelineFrame::RefreshScrollBar() {
    const CTimelineView* const view = m_pWidget->View();
    const QSignalBlocker quiet(m_pScrollBar);
    m_pScrollBar->setRange(0, view != nullptr ? static_cast<int>(std::min(view->MostScroll(), 1e9)) : 0);
    if (view != nullptr) {
        m_pScrollBar->setPageStep(static_cast<int>(view->Plot().height));
        m_pScrollBar->setSingleStep(static_cast<int>(view->Lanes().RowHeight()));
        m_pScrollBar->setValue(static_cast<int>(view->ScrollTop()));
    }
}

// Search.

void CTimelineFrame::OpenSearch() {
    m_pSearchBar->show();
    m_pSearch->setFocus(Qt::ShortcutFocusReason);
    m_pSearch->selectAll();
}

void CTimelineFrame::CloseSearch() {
    m_pSearch->clear();
    m_pSearchBar->hide();
    m_pWidget->setFocus();
}

void CTimelineFrame::GoToMatch(bool forward) {
    if (m_pWidget->View() == nullptr) {
        return;
    }
    if (m_pWidget->View()->Matches() == nullptr) {
        OpenSearch();
        return;
    }
    m_pWidget->GoTo(m_pWidget->View()->NextMatch(forward));
}

bool CTimelineFrame::eventFilter(QObject* object, QEvent* event) {
    const bool isKey = event->type() == QEvent::KeyPress || event->type() == QEvent::ShortcutOverride;
    if (object != m_pSearch || !isKey) {
        return CExploreFrame::eventFilter(object, event);
    }
    const auto& key = static_cast<const QKeyEvent&>(*event);
    const bool backward = key.modifiers().testFlag(Qt::ShiftModifier);
    const bool isEnter = key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter;
    if (!isEnter && key.key() != Qt::Key_F3 && key.key() != Qt::Key_Escape) {
        return false;
    }
    event->accept();
    if (event->type() == QEvent::ShortcutOverride) {
        return true;
    }
    if (key.key() == Qt::Key_Escape) {
        CloseSearch();
    } else {
        GoToMatch(!backward);
    }
    return true;
}

// How lanes are shown.

void CTimelineFrame::RunMenu(const QPoint& screenPoint) {
    const CTimelineView* const view = m_pWidget->View();
    if (view == nullptr) {
        return;
    }
    QMenu menu;
    const auto add = [&](const QString& text, bool checked, const char* setting, auto change) {
        QAction* const action = menu.addAction(text);
        action->setCheckable(true);
        action->setChecked(checked);
        connect(action, &QAction::toggled, this, [this, setting, change](bool on) {
            WriteWorkspaceInt(setting, on ? 1 : 0);
            m_pWidget->Change([on, change](CTimelineView& changed) { (changed.*change)(on); });
        });
    };
    add(tr("&Fold All Lanes"), view->Lanes().AreAllFolded(), kFoldAll, &CTimelineView::FoldAll);
    add(tr("&Sort by Activity"), view->Lanes().IsSortedByActivity(), kByActivity,
        &CTimelineView::SortByActivity);
    add(tr("&Hide Idle Lanes"), view->Lanes().HidesIdle(), kHideIdle, &CTimelineView::HideIdle);
    UserInterface().RunMenu(menu, screenPoint);
}

} // namespace carvelot
