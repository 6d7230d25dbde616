// TimelineWidget.h - a timeline on the screen, for mouse and keyboard.
#pragma once

#include "explore/pictures/TimelinePicture.h"
#include "explore/pictures/TimelineView.h"
#include "ui/explore/PainterCanvas.h"

#include <QImage>
#include <QWidget>

#include <memory>
#include <optional>

namespace carvelot {

class CTimelineWidget : public QWidget {
    Q_OBJECT

public:
    explicit CTimelineWidget(QWidget* parent);
    ~CTimelineWidget() override;

    // In the place of what was shown; null shows nothing. The timeline must outlive its time here.
    void Show(const CTimeline* timeline);
    // Null without a timeline.
    const CTimelineView* View() const { return m_pView.get(); }
    // Changes the view and shows it so; nothing without a timeline.
    template <class Work> void Change(const Work& work) {
        if (m_pView != nullptr) {
            work(*m_pView);
            OnViewChanged();
        }
    }
    // As the keyboard does: selects a frame and brings it into view.
    void GoTo(std::uint32_t frame);
    // What a screen reader says of the selected frame and of a lane.
    QString SelectedText() const;
    QString LaneText(std::uint32_t stream) const;
    QRect LaneRect(std::uint32_t stream) const; // in the widget
    QRect SelectedRect() const;

signals:
    void ViewChanged();
    void FrameSelected(RecordIndex record);
    void RecordWanted(RecordIndex record);
    void RangeChosen(const ClockRange& range);
    void SearchWanted();
    void NextMatchWanted(bool forward);
    void MenuWanted(const QPoint& screenPoint);

protected:
    bool event(QEvent* event) override;
    bool focusNextPrevChild(bool next) override;
    void changeEvent(QEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    enum class Drag { None, Ready, Pan, Band, StripFrame, StripFrom, StripTo };

    void OnViewChanged();
    void TakeSize();
    void SelectFrame(std::uint32_t frame);
    void TellSelected();
    void DragTo(QPointF point);
    void SetPointer(QPointF point);
    bool Step(int key);
    QString TipAt(QPointF point) const;

    std::unique_ptr<CTimelineView> m_pView;
    std::unique_ptr<CTextLayouts> m_pLayouts;
    QImage m_still; // what was drawn last of all but the marks
    std::uint64_t m_nStillRevision = 0;
    Drag m_nDrag = Drag::None;
    QPointF m_pressed;
    QPointF m_dragged; // where the pointer was last
    ClockRange m_rangeBefore;
};

} // namespace carvelot
