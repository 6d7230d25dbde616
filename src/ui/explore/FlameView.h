// FlameView.h - the flame graph as a widget: what the mouse and the keys do with the picture.
#pragma once

#include "explore/pictures/FlamePicture.h"
#include "ui/explore/PainterCanvas.h"

#include <QAbstractScrollArea>

#include <memory>
#include <vector>

namespace carvelot {

// A click zooms into a call. Arrows walk from call to call, Enter zooms into the one that has the focus,
// Backspace goes back.
class CFlameView : public QAbstractScrollArea {
    Q_OBJECT

public:
    using Place = CFlamePicture::Place;

    explicit CFlameView(QWidget* parent);

    // The picture belongs to the caller; null shows none.
    void Show(CFlamePicture* picture);
    CFlamePicture* Shown() const { return m_pPicture; }
    void ZoomTo(Place place);
    // To where the user was before; false where that is nowhere.
    bool GoBack();
    void SetFocused(Place place);
    // Gives it the focus and zooms so that it can be seen.
    void Reveal(Place place);
    void WalkHits(bool forward);
    // What the picture shows has changed.
    void Refresh();

    PictureRect RectOnScreen(Place place) const; // of the viewport

signals:
    void Zoomed();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    bool viewportEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;

private:
    Place PlaceAt(QPointF point) const;
    void Walk(int key);
    void ScrollToFocus();
    void UpdateBars();
    void TellFocus();

    CFlamePicture* m_pPicture = nullptr;
    std::unique_ptr<CTextLayouts> m_pLayouts;
    std::vector<Place> m_back; // what was zoomed into ahead of what is
    Place m_pressed = CFlameLayout::kNoPlace;
};

} // namespace carvelot
