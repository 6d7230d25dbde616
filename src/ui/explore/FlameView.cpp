#include "ui/explore/FlameView.h"

#include "ui/kit/Text.h"

#include <QAccessibleWidget>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QToolTip>

#include <algorithm>
#include <cmath>

namespace carvelot {

namespace {

constexpr auto kNoPlace = CFlameLayout::kNoPlace;
constexpr double kSeen = 8; // pixels that a revealed call has at least, if it can

// The call that has the focus, for screen readers.
class CFocusedCall final : public QAccessibleInterface {
public:
    explicit CFocusedCall(CFlameView& view) : m_view(view) {}

    bool isValid() const override { return true; }
    QObject* object() const override { return nullptr; }
    QWindow* window() const override { return m_view.window()->windowHandle(); }
    QAccessibleInterface* childAt(int /*x*/, int /*y*/) const override { return nullptr; }
    QAccessibleInterface* parent() const override { return QAccessible::queryAccessibleInterface(&m_view); }
    QAccessibleInterface* child(int /*index*/) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface* /*child*/) const override { return -1; }
    QString text(QAccessible::Text kind) const override {
        const CFlamePicture* const picture = m_view.Shown();
        if (kind != QAccessible::Name || picture == nullptr || picture->m_focus == kNoPlace) {
            return {};
        }
        return ToQString(picture->Description(picture->m_focus));
    }
    void setText(QAccessible::Text /*kind*/, const QString& /*text*/) override {}
    QRect rect() const override {
        const CFlamePicture* const picture = m_view.Shown();
        if (picture == nullptr || picture->m_focus == kNoPlace) {
            return {};
        }
        const PictureRect rect = m_view.RectOnScreen(picture->m_focus);
        const QPoint corner =
            m_view.viewport()->mapToGlobal(QPoint(static_cast<int>(rect.x), static_cast<int>(rect.y)));
        return {corner, QSize(static_cast<int>(std::ceil(rect.width)), static_cast<int>(rect.height))};
    }
    QAccessible::Role role() const override { return QAccessible::ListItem; }
    QAccessible::State state() const override {
        QAccessible::State state;
        state.focusable = true;
        state.focused = m_view.hasFocus();
        state.selectable = true;
        state.selected = true;
        return state;
    }

private:
    CFlameView& m_view;
};

class CFlameAccess final : public QAccessibleWidget {
public:
    explicit CFlameAccess(CFlameView& view)
        : QAccessibleWidget(&view, QAccessible::List), m_view(view), m_pCall(new CFocusedCall(view)),
          m_call(QAccessible::registerAccessibleInterface(m_pCall)) {}
    ~CFlameAccess() override { QAccessible::deleteAccessibleInterface(m_call); }

    int childCount() const override { return HasCall() ? 1 : 0; }
    QAccessibleInterface* child(int index) const override {
        return index == 0 && HasCall() ? m_pCall : nullptr;
    }
    int indexOfChild(const QAccessibleInterface* child) const override {
        return child == m_pCall && HasCall() ? 0 : -1;
    }
    QAccessibleInterface* childAt(int x, int y) const override {
        return HasCall() && m_pCall->rect().contains(x, y) ? m_pCall : nullptr;
    }
    QAccessibleInterface* focusChild() const override {
        return HasCall() && m_view.hasFocus() ? m_pCall : nullptr;
    }

private:
    bool HasCall() const { return m_view.Shown() != nullptr && m_view.Shown()->m_focus != kNoPlace; }

    CFlameView& m_view;
    QAccessibleInterface* const m_pCall;
    const QAccessible::Id m_call;
};

QAccessibleInterface* MakeAccess(const QString& /*className*/, QObject* object) {
    auto* const view = qobject_cast<CFlameView*>(object);
    return view != nullptr ? new CFlameAccess(*view) : nullptr;
}

} // namespace

CFlameView::CFlameView(QWidget* parent)
    : QAbstractScrollArea(parent), m_pLayouts(std::make_unique<CTextLayouts>(font())) {
    [[maybe_unused]] static const bool installed = [] {
        QAccessible::installFactory(&MakeAccess);
        return true;
    }();
    setFocusPolicy(Qt::StrongFocus);
    setAccessibleName(tr("Flame graph"));
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    viewport()->setAttribute(Qt::WA_OpaquePaintEvent);
}

void CFlameView::Show(CFlamePicture* picture) {
    m_pPicture = picture;
    m_back.clear();
    m_pressed = kNoPlace;
    verticalScrollBar()->setValue(0);
    if (picture != nullptr) {
        picture->m_focus = CFlameLayout::kWhole;
    }
    Refresh();
    emit Zoomed();
}

void CFlameView::Refresh() {
    if (m_pPicture != nullptr) {
        m_pPicture->m_ground = GroundOf(*this);
        m_pPicture->m_nWidth = std::max(1, viewport()->width());
        m_pPicture->m_nRowHeight = std::ceil(m_pLayouts->LineHeight()) + 4;
    }
    UpdateBars();
    viewport()->update();
}

void CFlameView::UpdateBars() {
    QScrollBar& bar = *verticalScrollBar();
    const int row = m_pPicture != nullptr ? static_cast<int>(m_pPicture->m_nRowHeight) : 1;
    const double height = m_pPicture != nullptr ? m_pPicture->Rows() * m_pPicture->m_nRowHeight : 0;
    bar.setRange(0, static_cast<int>(std::clamp(height - viewport()->height(), 0.0, 1e9)));
    bar.setSingleStep(row);
    bar.setPageStep(viewport()->height());
}

void CFlameView::ZoomTo(Place place) {
    if (m_pPicture == nullptr || place == m_pPicture->Zoomed()) {
        return;
    }
    const Place before = m_pPicture->Zoomed();
    if (!m_pPicture->ZoomTo(place)) {
        return;
    }
    m_back.push_back(before);
    verticalScrollBar()->setValue(0);
    SetFocused(place);
    Refresh();
    emit Zoomed();
}

bool CFlameView::GoBack() {
    if (m_pPicture == nullptr || m_back.empty()) {
        return false;
    }
    const Place left = m_pPicture->Zoomed();
    m_pPicture->ZoomTo(m_back.back());
    m_back.pop_back();
    Refresh();
    SetFocused(left);
    emit Zoomed();
    return true;
}

void CFlameView::SetFocused(Place place) {
    if (m_pPicture == nullptr || place == m_pPicture->m_focus) {
        return;
    }
    m_pPicture->m_focus = place;
    ScrollToFocus();
    viewport()->update();
    TellFocus();
}

void CFlameView::TellFocus() {
    if (!hasFocus() || !QAccessible::isActive()) {
        return;
    }
    QAccessibleInterface* const access = QAccessible::queryAccessibleInterface(this);
    if (QAccessibleInterface* const call = access != nullptr ? access->child(0) : nullptr) {
        QAccessibleEvent event(call, QAccessible::Focus);
        QAccessible::updateAccessibility(&event);
    }
}

void CFlameView::Reveal(Place place) {
    if (m_pPicture == nullptr) {
        return;
    }
    if (m_pPicture->RectOf(place).width < 2) {
        const CFlameLayout& layout = m_pPicture->Layout();
        const auto total = static_cast<double>(layout.Total(place));
        Place above = place;
        while (layout.Parent(above) != kNoPlace &&
               total / static_cast<double>(layout.Total(layout.Parent(above))) * m_pPicture->m_nWidth >=
                   kSeen) {
            above = layout.Parent(above);
        }
        ZoomTo(above);
    }
    SetFocused(place);
}

void CFlameView::WalkHits(bool forward) {
    if (m_pPicture == nullptr || m_pPicture->m_search.Count() == 0) {
        return;
    }
    const std::vector<Place>& hits = m_pPicture->m_search.Hits();
    const auto here = std::find(hits.begin(), hits.end(), m_pPicture->m_focus);
    std::size_t next = forward ? 0 : hits.size() - 1;
    if (here != hits.end()) {
        const auto at = static_cast<std::size_t>(here - hits.begin());
        next = (at + (forward ? 1 : hits.size() - 1)) % hits.size();
    }
    Reveal(hits[next]);
}

PictureRect CFlameView::RectOnScreen(Place place) const {
    PictureRect rect = m_pPicture->RectOf(place);
    rect.y -= verticalScrollBar()->value();
    return rect;
}

void CFlameView::ScrollToFocus() {
    const PictureRect rect = m_pPicture->RectOf(m_pPicture->m_focus);
    QScrollBar& bar = *verticalScrollBar();
    if (rect.y < bar.value()) {
        bar.setValue(static_cast<int>(rect.y));
    } else if (rect.Bottom() > bar.value() + viewport()->height()) {
        bar.setValue(static_cast<int>(rect.Bottom()) + 1 - viewport()->height());
    }
}

CFlameView::Place CFlameView::PlaceAt(QPointF point) const {
    return m_pPicture != nullptr ? m_pPicture->At({point.x(), point.y() + verticalScrollBar()->value()})
                                 : kNoPlace;
}

void CFlameView::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(viewport());
    if (m_pPicture == nullptr) {
        painter.fillRect(viewport()->rect(), palette().base());
        return;
    }
    CPainterCanvas canvas(painter, *m_pLayouts);
    m_pPicture->DrawPart(canvas, {0, static_cast<double>(verticalScrollBar()->value()),
                                  static_cast<double>(viewport()->width()),
                                  static_cast<double>(viewport()->height())});
}

void CFlameView::resizeEvent(QResizeEvent* event) {
    QAbstractScrollArea::resizeEvent(event);
    Refresh();
}

void CFlameView::changeEvent(QEvent* event) {
    QAbstractScrollArea::changeEvent(event);
    if (event->type() == QEvent::FontChange) {
        m_pLayouts = std::make_unique<CTextLayouts>(font());
    }
    if (event->type() == QEvent::FontChange || event->type() == QEvent::PaletteChange ||
        event->type() == QEvent::StyleChange) {
        Refresh();
    }
}

bool CFlameView::viewportEvent(QEvent* event) {
    if (event->type() != QEvent::ToolTip) {
        return QAbstractScrollArea::viewportEvent(event);
    }
    const auto& help = static_cast<const QHelpEvent&>(*event);
    const Place place = PlaceAt(help.pos());
    QToolTip::showText(help.globalPos(),
                       place != kNoPlace ? ToQString(m_pPicture->Description(place)) : QString(), this);
    return true;
}

void CFlameView::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) {
        m_pressed = PlaceAt(event->position());
    }
}

void CFlameView::mouseReleaseEvent(QMouseEvent* event) {
    const Place pressed = std::exchange(m_pressed, kNoPlace);
    if (event->button() == Qt::LeftButton && pressed != kNoPlace && pressed == PlaceAt(event->position())) {
        SetFocused(pressed);
        ZoomTo(pressed);
    }
}

// What the first click has brought below the pointer is not what was meant.
void CFlameView::mouseDoubleClickEvent(QMouseEvent* /*event*/) { m_pressed = kNoPlace; }

void CFlameView::keyPressEvent(QKeyEvent* event) {
    if (m_pPicture == nullptr) {
        QAbstractScrollArea::keyPressEvent(event);
        return;
    }
    switch (event->key()) {
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_Up:
    case Qt::Key_Down:
        Walk(event->key());
        break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (m_pPicture->m_focus != kNoPlace) {
            ZoomTo(m_pPicture->m_focus);
        }
        break;
    case Qt::Key_Home:
        ZoomTo(CFlameLayout::kWhole);
        break;
    case Qt::Key_Backspace:
        GoBack();
        break;
    case Qt::Key_Escape:
        if (GoBack()) {
            break;
        }
        [[fallthrough]];
    default:
        QAbstractScrollArea::keyPressEvent(event);
        return;
    }
    event->accept();
}

void CFlameView::focusInEvent(QFocusEvent* event) {
    QAbstractScrollArea::focusInEvent(event);
    TellFocus();
}

// To a neighbour that took some time; up and down stay among what the zoomed one holds.
void CFlameView::Walk(int key) {
    const CFlameLayout& layout = m_pPicture->Layout();
    const Place here = m_pPicture->m_focus;
    const Place zoomed = m_pPicture->Zoomed();
    if (here == kNoPlace || m_pPicture->RectOf(here).height == 0) {
        SetFocused(zoomed);
        return;
    }
    const std::uint32_t level = layout.LevelOf(here);
    const auto isInside = [&](Place place) {
        return layout.Start(place) >= layout.Start(zoomed) && layout.End(place) <= layout.End(zoomed);
    };
    Place next = kNoPlace;
    if (key == Qt::Key_Up) {
        next = here != zoomed ? layout.Parent(here) : kNoPlace;
    } else if (key == Qt::Key_Down) {
        next = layout.WidestChild(here);
    } else if (here != zoomed && key == Qt::Key_Right) {
        next = layout.FirstEndingBehind(level, here, layout.End(here));
        next = next < layout.LevelBegin(level + 1) && isInside(next) ? next : kNoPlace;
    } else if (here != zoomed) {
        for (next = here; next-- > layout.LevelBegin(level) && layout.Total(next) == 0;) {
        }
        next = next >= layout.LevelBegin(level) && next < here && isInside(next) ? next : kNoPlace;
    }
    if (next != kNoPlace && layout.Total(next) > 0) {
        SetFocused(next);
    }
}

} // namespace carvelot
