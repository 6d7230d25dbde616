#include "ui/explore/TimelineWidget.h"

#include "explore/lists/ExploreNames.h"
#include "ui/explore/TimelineAccessible.h"
#include "ui/kit/Text.h"

#include <QAccessible>
#include <QApplication>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QToolTip>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>
#include <utility>

namespace carvelot {

namespace {

constexpr double kNotch = 120;  // of a wheel
constexpr double kPanStep = 60; // pixels a notch

PicturePoint ToPoint(QPointF point) { return {point.x(), point.y()}; }

QRect ToQRect(const PictureRect& rect) {
    return QRectF(rect.x, rect.y, rect.width, rect.height).toAlignedRect();
}

bool IsOwnShortcut(const QKeyEvent& event) {
    return event.matches(QKeySequence::Find) || event.key() == Qt::Key_F3 || event.key() == Qt::Key_Slash ||
           event.key() == Qt::Key_Home || event.key() == Qt::Key_End;
}

} // namespace

CTimelineWidget::CTimelineWidget(QWidget* parent) : QWidget(parent) {
    InstallTimelineAccessible();
    setAccessibleName(tr("Timeline"));
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setLayoutDirection(Qt::LeftToRight); // as time goes
    setMinimumSize(200, 120);
}

CTimelineWidget::~CTimelineWidget() = default;

void CTimelineWidget::Show(const CTimeline* timeline) {
    m_nDrag = Drag::None;
    m_pView = timeline != nullptr ? std::make_unique<CTimelineView>(*timeline) : nullptr;
    m_still = {};
    if (m_pView != nullptr) {
        TakeSize();
    }
    OnViewChanged();
}

void CTimelineWidget::TakeSize() {
    if (m_pLayouts == nullptr) {
        m_pLayouts = std::make_unique<CTextLayouts>(font());
    }
    if (m_pView != nullptr) {
        m_pView->SetSize(width(), height(), m_pLayouts->LineHeight());
    }
}

void CTimelineWidget::OnViewChanged() {
    update();
    emit ViewChanged();
}

void CTimelineWidget::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    TakeSize();
    OnViewChanged();
}

void CTimelineWidget::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange ||
        event->type() == QEvent::PaletteChange) {
        m_still = {};
        m_pLayouts.reset();
        TakeSize();
        OnViewChanged();
    }
}

void CTimelineWidget::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    if (m_pView == nullptr) {
        painter.fillRect(rect(), palette().base());
        return;
    }
    const CTimelinePicture picture(*m_pView, GroundOf(*this));
    const double ratio = devicePixelRatioF();
    const QSize size = (QSizeF(width(), height()) * ratio).toSize();
    if (m_still.size() != size || m_nStillRevision != m_pView->Revision()) {
        if (m_still.size() != size) {
            m_still = QImage(size, QImage::Format_RGB32);
            m_still.setDevicePixelRatio(ratio);
        }
        m_nStillRevision = m_pView->Revision();
        QPainter stillPainter(&m_still);
        CPainterCanvas canvas(stillPainter, *m_pLayouts);
        picture.DrawStill(canvas);
    }
    painter.drawImage(QPointF(0, 0), m_still);
    CPainterCanvas canvas(painter, *m_pLayouts);
    picture.DrawMarks(canvas);
    if (hasFocus() && m_pView->Selected() == kNoFrame) {
        const QRect area = ToQRect(m_pView->Plot());
        painter.setPen(QPen(palette().color(QPalette::Highlight), 1, Qt::DotLine));
        painter.drawRect(area.adjusted(0, 0, -1, -1));
    }
}

// What is selected.

void CTimelineWidget::SelectFrame(std::uint32_t frame) {
    m_pView->Select(frame);
    TellSelected();
    OnViewChanged();
    if (frame != kNoFrame) {
        emit FrameSelected(m_pView->Timeline().Frames()[frame].record);
    }
}

void CTimelineWidget::GoTo(std::uint32_t frame) {
    if (m_pView == nullptr || frame == kNoFrame) {
        return;
    }
    m_pView->Reveal(frame);
    SelectFrame(frame);
}

void CTimelineWidget::TellSelected() {
    if (hasFocus()) {
        TellTimelineFocus(*this);
    }
}

void CTimelineWidget::focusInEvent(QFocusEvent* event) {
    QWidget::focusInEvent(event);
    TellSelected();
}

QString CTimelineWidget::SelectedText() const {
    if (m_pView == nullptr || m_pView->Selected() == kNoFrame) {
        return {};
    }
    const CTimeline& timeline = m_pView->Timeline();
    const std::uint32_t frame = m_pView->Selected();
    const std::uint32_t stream = timeline.Rows().StreamOf(frame);
    const TimelineBar bar{0, 0, frame, 2U};
    return ToQString(timeline.TipOf(bar)).replace(QLatin1Char('\n'), QLatin1String(", ")) +
           tr(", lane %1, depth %2")
               .arg(ToQString(timeline.NameOf(stream)))
               .arg(timeline.Rows().DepthOf(frame) + 1);
}

QString CTimelineWidget::LaneText(std::uint32_t stream) const {
    if (m_pView == nullptr) {
        return {};
    }
    const CTimeline& timeline = m_pView->Timeline();
    const QString name = tr("Lane %1, %2 s in calls")
                             .arg(ToQString(timeline.NameOf(stream)),
                                  ToQString(SecondsWithPlaces(timeline.ActivityOf(stream))));
    return m_pView->Lanes().IsFolded(stream) ? name + tr(", folded") : name;
}

QRect CTimelineWidget::LaneRect(std::uint32_t stream) const {
    const auto place = m_pView != nullptr ? m_pView->Lanes().Find(stream) : std::nullopt;
    if (!place) {
        return {};
    }
    const CTimelineLanes::Lane& lane = m_pView->Lanes().Shown()[*place];
    return ToQRect({0, m_pView->TopOf(lane), static_cast<double>(width()), lane.height});
}

QRect CTimelineWidget::SelectedRect() const {
    const auto place = m_pView != nullptr && m_pView->Selected() != kNoFrame
                           ? m_pView->RectOf(m_pView->Selected())
                           : std::nullopt;
    return place ? ToQRect(*place) : QRect();
}

// The mouse.

void CTimelineWidget::wheelEvent(QWheelEvent* event) {
    if (m_pView == nullptr) {
        event->ignore();
        return;
    }
    event->accept();
    const QPoint delta = event->angleDelta();
    const double notches = (delta.y() != 0 ? delta.y() : delta.x()) / kNotch;
    const bool sideways = delta.y() == 0 || event->modifiers().testFlag(Qt::ShiftModifier);
    const QPointF point = event->position();
    if (event->modifiers().testFlag(Qt::ControlModifier)) {
        m_pView->ZoomLanes(notches, point.y());
    } else if (sideways) {
        m_pView->Pan(-notches * kPanStep);
    } else if (m_pView->Names().Holds(ToPoint(point))) {
        m_pView->ScrollTo(m_pView->ScrollTop() - notches * 3 * m_pView->Lanes().RowHeight());
    } else {
        double x = point.x();
        if (m_pView->Strip().Holds(ToPoint(point))) {
            // Into what the strip shows there.
            const double middle = m_pView->Plot().x + m_pView->Plot().width / 2;
            m_pView->Pan(m_pView->XOf(m_pView->StripTime(x)) - middle);
            x = middle;
        }
        m_pView->Zoom(notches, x);
    }
    OnViewChanged();
}

void CTimelineWidget::mousePressEvent(QMouseEvent* event) {
    if (m_pView == nullptr || event->button() != Qt::LeftButton) {
        event->ignore();
        return;
    }
    using Part = CTimelineView::Part;
    m_pressed = m_dragged = event->position();
    switch (m_pView->At(ToPoint(m_pressed)).part) {
    case Part::Nothing:
        if (m_pressed.x() < m_pView->Plot().x || m_pressed.y() < m_pView->Plot().y) {
            return;
        }
        break;
    case Part::Name:
        return;
    case Part::StripFrom:
        m_nDrag = Drag::StripFrom;
        return;
    case Part::StripTo:
        m_nDrag = Drag::StripTo;
        return;
    case Part::Strip: {
        // What is pointed at comes into the middle, and from there on it is dragged.
        const double time = m_pView->XOf(m_pView->StripTime(m_pressed.x()));
        m_pView->Pan(time - m_pView->Plot().x - m_pView->Plot().width / 2);
        OnViewChanged();
        m_nDrag = Drag::StripFrame;
        return;
    }
    case Part::StripFrame:
        m_nDrag = Drag::StripFrame;
        return;
    default:
        break;
    }
    if (event->modifiers().testFlag(Qt::ShiftModifier)) {
        m_nDrag = Drag::Band;
        m_rangeBefore = m_pView->Range();
    } else {
        m_nDrag = Drag::Ready;
    }
}

void CTimelineWidget::mouseMoveEvent(QMouseEvent* event) {
    if (m_pView == nullptr) {
        return;
    }
    if (m_nDrag == Drag::None) {
        SetPointer(event->position());
        return;
    }
    if (m_nDrag == Drag::Ready) {
        if ((event->position() - m_pressed).manhattanLength() < QApplication::startDragDistance()) {
            return;
        }
        m_nDrag = Drag::Pan;
        setCursor(Qt::ClosedHandCursor);
    }
    DragTo(event->position());
}

void CTimelineWidget::SetPointer(QPointF point) {
    using Part = CTimelineView::Part;
    const Part part = m_pView->At(ToPoint(point)).part;
    if (part == Part::StripFrom || part == Part::StripTo) {
        setCursor(Qt::SizeHorCursor);
    } else if (part == Part::StripFrame) {
        setCursor(Qt::OpenHandCursor);
    } else {
        unsetCursor();
    }
}

void CTimelineWidget::DragTo(QPointF point) {
    CTimelineView& view = *m_pView;
    const double step = point.x() - m_dragged.x();
    const std::int64_t time = view.StripTime(point.x());
    switch (m_nDrag) {
    case Drag::Pan:
        view.Pan(-step);
        view.ScrollTo(view.ScrollTop() - (point.y() - m_dragged.y()));
        break;
    case Drag::Band: {
        const PictureRect plot = view.Plot();
        const auto timeAt = [&](double x) { return view.TimeAt(std::clamp(x, plot.x, plot.Right())); };
        view.SetRange(
            {timeAt(std::min(m_pressed.x(), point.x())), timeAt(std::max(m_pressed.x(), point.x()))});
        break;
    }
    case Drag::StripFrame: {
        // So many pixels of the strip are more of the lanes.
        const double whole = static_cast<double>(view.Timeline().To() - view.Timeline().From());
        view.Pan(step / view.Strip().width * whole / view.PerPixel());
        break;
    }
    case Drag::StripFrom:
        view.ShowSpan(std::min(time, view.To() - 1), view.To());
        break;
    case Drag::StripTo:
        view.ShowSpan(view.From(), std::max(time, view.From() + 1));
        break;
    default:
        return;
    }
    m_dragged = point;
    OnViewChanged();
}

void CTimelineWidget::mouseReleaseEvent(QMouseEvent* event) {
    if (m_pView == nullptr || event->button() != Qt::LeftButton) {
        return;
    }
    const Drag drag = std::exchange(m_nDrag, Drag::None);
    SetPointer(event->position());
    if (drag == Drag::Ready) {
        const CTimelineView::Hit hit = m_pView->At(ToPoint(event->position()));
        if (hit.bar) {
            SelectFrame(hit.bar->frame);
        } else if (hit.flag != nullptr) {
            emit FrameSelected(hit.flag->record);
        }
    } else if (drag == Drag::Band) {
        const ClockRange range = m_pView->Range();
        if (m_dragged == m_pressed || range.from >= range.to) {
            m_pView->SetRange(m_rangeBefore);
            OnViewChanged();
        } else {
            emit RangeChosen(range);
        }
    }
}

// The first click of the two has selected what is below.
void CTimelineWidget::mouseDoubleClickEvent(QMouseEvent* event) {
    if (m_pView == nullptr || event->button() != Qt::LeftButton) {
        event->ignore();
        return;
    }
    const CTimelineView::Hit hit = m_pView->At(ToPoint(event->position()));
    if (hit.part == CTimelineView::Part::Name) {
        m_pView->Fold(hit.stream, !m_pView->Lanes().IsFolded(hit.stream));
        OnViewChanged();
    } else if (hit.bar) {
        emit RecordWanted(m_pView->Timeline().Frames()[hit.bar->frame].record);
    } else if (hit.flag != nullptr) {
        emit RecordWanted(hit.flag->record);
    }
}

void CTimelineWidget::contextMenuEvent(QContextMenuEvent* event) {
    const bool isByKey = event->reason() == QContextMenuEvent::Keyboard;
    emit MenuWanted(isByKey ? mapToGlobal(QPoint(20, 20)) : event->globalPos());
}

QString CTimelineWidget::TipAt(QPointF point) const {
    if (m_pView == nullptr) {
        return {};
    }
    const CTimelineView::Hit hit = m_pView->At(ToPoint(point));
    const CTimeline& timeline = m_pView->Timeline();
    if (hit.bar) {
        return ToQString(timeline.TipOf(*hit.bar));
    }
    if (hit.flag != nullptr) {
        return ToQString(timeline.TipOf(*hit.flag));
    }
    return hit.part == CTimelineView::Part::Name ? LaneText(hit.stream) : QString();
}

// The keyboard.

bool CTimelineWidget::event(QEvent* event) {
    if (event->type() == QEvent::ToolTip) {
        const auto& help = static_cast<const QHelpEvent&>(*event);
        const QString tip = TipAt(help.pos());
        if (tip.isEmpty()) {
            QToolTip::hideText();
            event->ignore();
        } else {
            QToolTip::showText(help.globalPos(), tip, this);
        }
        return true;
    }
    if (event->type() == QEvent::ShortcutOverride && IsOwnShortcut(static_cast<const QKeyEvent&>(*event))) {
        event->accept();
        return true;
    }
    return QWidget::event(event);
}

bool CTimelineWidget::focusNextPrevChild(bool next) {
    const std::uint32_t frame =
        m_pView != nullptr ? m_pView->Beside(next ? CTimelineView::Step::Next : CTimelineView::Step::Previous)
                           : kNoFrame;
    if (frame == kNoFrame) {
        return QWidget::focusNextPrevChild(next);
    }
    GoTo(frame);
    return true;
}

bool CTimelineWidget::Step(int key) {
    using Step = CTimelineView::Step;
    switch (key) {
    case Qt::Key_Left:
        GoTo(m_pView->Beside(Step::Earlier));
        return true;
    case Qt::Key_Right:
        GoTo(m_pView->Beside(Step::Later));
        return true;
    case Qt::Key_Up:
        GoTo(m_pView->Beside(Step::Parent));
        return true;
    case Qt::Key_Down:
        GoTo(m_pView->Beside(Step::Child));
        return true;
    default:
        return false;
    }
}

void CTimelineWidget::keyPressEvent(QKeyEvent* event) {
    if (m_pView == nullptr) {
        QWidget::keyPressEvent(event);
        return;
    }
    CTimelineView& view = *m_pView;
    const PictureRect plot = view.Plot();
    const auto zoom = [&](double notches) {
        // What is selected stays where it is.
        const QRect selected = SelectedRect();
        const double x = selected.isNull() ? plot.x + plot.width / 2 : selected.center().x();
        view.Zoom(notches, std::clamp(x, plot.x, plot.Right()));
        OnViewChanged();
    };
    if (event->matches(QKeySequence::Find) || event->key() == Qt::Key_Slash) {
        emit SearchWanted();
        return;
    }
    switch (event->key()) {
    case Qt::Key_F3:
        emit NextMatchWanted(!event->modifiers().testFlag(Qt::ShiftModifier));
        return;
    case Qt::Key_Plus:
    case Qt::Key_Equal:
        zoom(1);
        return;
    case Qt::Key_Minus:
        zoom(-1);
        return;
    case Qt::Key_Home:
        view.ShowAll();
        break;
    case Qt::Key_End:
        view.ShowEnd();
        break;
    case Qt::Key_PageUp:
        view.ScrollTo(view.ScrollTop() - plot.height);
        break;
    case Qt::Key_PageDown:
        view.ScrollTo(view.ScrollTop() + plot.height);
        break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (view.Selected() != kNoFrame) {
            emit RecordWanted(view.Timeline().Frames()[view.Selected()].record);
        }
        return;
    case Qt::Key_Escape:
        if (m_nDrag == Drag::Band) {
            m_nDrag = Drag::None;
            view.SetRange(m_rangeBefore);
            break;
        }
        event->ignore(); // the window lets go of the range, or ends what runs
        return;
    default:
        if (event->modifiers().testFlag(Qt::ControlModifier) || !Step(event->key())) {
            QWidget::keyPressEvent(event);
        }
        return;
    }
    OnViewChanged();
}

} // namespace carvelot
