#include "ui/explore/TimelineAccessible.h"

#include "ui/explore/TimelineWidget.h"

#include <QAccessibleWidget>
#include <QPointer>

#include <map>

namespace carvelot {

namespace {

// A lane, or a frame while it is selected.
class CTimelinePart final : public QAccessibleInterface {
public:
    enum class Kind { Lane, Frame };
    CTimelinePart(CTimelineWidget& timeline, Kind kind, std::uint32_t number)
        : m_pTimeline(&timeline), m_nKind(kind), m_nNumber(number) {}

    bool isValid() const override {
        const CTimelineView* const view = View();
        return view != nullptr &&
               (m_nKind == Kind::Frame ? view->Selected() == m_nNumber
                                       : m_nNumber < view->Timeline().Rows().StreamCount());
    }
    QObject* object() const override { return nullptr; }
    QWindow* window() const override {
        return m_pTimeline != nullptr ? m_pTimeline->window()->windowHandle() : nullptr;
    }
    QAccessibleInterface* parent() const override {
        return m_pTimeline != nullptr ? QAccessible::queryAccessibleInterface(m_pTimeline) : nullptr;
    }
    QAccessibleInterface* child(int /*index*/) const override { return nullptr; }
    QAccessibleInterface* childAt(int /*x*/, int /*y*/) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface* /*child*/) const override { return -1; }
    QString text(QAccessible::Text text) const override {
        if (!isValid() || text != QAccessible::Name) {
            return {};
        }
        return m_nKind == Kind::Frame ? m_pTimeline->SelectedText() : m_pTimeline->LaneText(m_nNumber);
    }
    void setText(QAccessible::Text /*text*/, const QString& /*value*/) override {}
    QRect rect() const override {
        if (!isValid()) {
            return {};
        }
        const QRect place =
            m_nKind == Kind::Frame ? m_pTimeline->SelectedRect() : m_pTimeline->LaneRect(m_nNumber);
        return {m_pTimeline->mapToGlobal(place.topLeft()), place.size()};
    }
    QAccessible::Role role() const override { return QAccessible::ListItem; }
    QAccessible::State state() const override {
        QAccessible::State state;
        state.invalid = !isValid();
        if (m_nKind == Kind::Frame) {
            state.focusable = true;
            state.focused = m_pTimeline != nullptr && m_pTimeline->hasFocus();
            state.selectable = true;
            state.selected = true;
        } else if (const CTimelineView* const view = View()) {
            state.expandable = true;
            state.collapsed = isValid() && view->Lanes().IsFolded(m_nNumber);
            state.expanded = !state.collapsed;
        }
        return state;
    }

private:
    const CTimelineView* View() const { return m_pTimeline != nullptr ? m_pTimeline->View() : nullptr; }

    const QPointer<CTimelineWidget> m_pTimeline;
    const Kind m_nKind;
    const std::uint32_t m_nNumber; // stream or frame
};

class CTimelineAccessible final : public QAccessibleWidget {
public:
    explicit CTimelineAccessible(CTimelineWidget& timeline)
        : QAccessibleWidget(&timeline, QAccessible::List), m_timeline(timeline) {}
    ~CTimelineAccessible() override {
        for (const auto& [stream, id] : m_lanes) {
            QAccessible::deleteAccessibleInterface(id);
        }
        LetGoOfFrame();
    }

    int childCount() const override {
        return m_timeline.View() == nullptr ? 0 : LaneCount() + (SelectedFrame() != kNoFrame ? 1 : 0);
    }
    QAccessibleInterface* child(int index) const override {
        if (index < 0 || index >= childCount()) {
            return nullptr;
        }
        return index < LaneCount()
                   ? Lane(m_timeline.View()->Lanes().Shown()[static_cast<std::size_t>(index)].stream)
                   : FramePart();
    }
    int indexOfChild(const QAccessibleInterface* child) const override {
        for (int index = 0; index < childCount(); ++index) {
            if (this->child(index) == child) {
                return index;
            }
        }
        return -1;
    }
    QAccessibleInterface* childAt(int x, int y) const override {
        for (int index = childCount() - 1; index >= 0; --index) {
            if (child(index)->rect().contains(x, y)) {
                return child(index);
            }
        }
        return nullptr;
    }
    QAccessibleInterface* focusChild() const override {
        return m_timeline.hasFocus() ? FramePart() : nullptr;
    }
    // Null where none is selected.
    QAccessibleInterface* FramePart() const {
        const std::uint32_t frame = SelectedFrame();
        if (frame != m_nFrame) {
            LetGoOfFrame();
            if (frame != kNoFrame) {
                m_nFrame = frame;
                m_frame = QAccessible::registerAccessibleInterface(
                    new CTimelinePart(m_timeline, CTimelinePart::Kind::Frame, frame));
            }
        }
        return frame != kNoFrame ? QAccessible::accessibleInterface(m_frame) : nullptr;
    }

private:
    int LaneCount() const { return static_cast<int>(m_timeline.View()->Lanes().Shown().size()); }
    std::uint32_t SelectedFrame() const {
        return m_timeline.View() != nullptr ? m_timeline.View()->Selected() : kNoFrame;
    }
    QAccessibleInterface* Lane(std::uint32_t stream) const {
        const auto [entry, isNew] = m_lanes.try_emplace(stream, 0);
        if (isNew) {
            entry->second = QAccessible::registerAccessibleInterface(
                new CTimelinePart(m_timeline, CTimelinePart::Kind::Lane, stream));
        }
        return QAccessible::accessibleInterface(entry->second);
    }
    void LetGoOfFrame() const {
        if (m_nFrame != kNoFrame) {
            QAccessible::deleteAccessibleInterface(m_frame);
            m_nFrame = kNoFrame;
        }
    }

    CTimelineWidget& m_timeline;
    mutable std::map<std::uint32_t, QAccessible::Id> m_lanes; // by stream
    mutable std::uint32_t m_nFrame = kNoFrame;
    mutable QAccessible::Id m_frame = 0;
};

QAccessibleInterface* MakeTimelineAccessible(const QString&, QObject* object) {
    auto* const timeline = qobject_cast<CTimelineWidget*>(object);
    return timeline != nullptr ? new CTimelineAccessible(*timeline) : nullptr;
}

} // namespace

void InstallTimelineAccessible() { QAccessible::installFactory(MakeTimelineAccessible); }

void TellTimelineFocus(CTimelineWidget& timeline) {
    if (!QAccessible::isActive()) {
        return;
    }
    QAccessibleInterface* const whole = QAccessible::queryAccessibleInterface(&timeline);
    QAccessibleInterface* const part = whole != nullptr ? whole->focusChild() : nullptr;
    if (part != nullptr) {
        QAccessibleEvent event(part, QAccessible::Focus);
        QAccessible::updateAccessibility(&event);
    }
}

} // namespace carvelot
