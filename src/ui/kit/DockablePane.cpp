#include "ui/kit/DockablePane.h"

#include "ui/kit/LookStyle.h"
#include "ui/kit/MainWindow.h"
#include "ui/kit/Text.h"

#include <QAbstractButton>
#include <QAccessibleWidget>
#include <QEvent>
#include <QFontMetricsF>
#include <QPainter>
#include <QScreen>
#include <QStyleOptionToolButton>

#include <algorithm>

namespace carvelot {

namespace {

// The pane's inside; it passes its size hint on so that a floating pane opens at a useful size.
class CPaneClient : public QWidget {
public:
    explicit CPaneClient(QSize initial) : m_initial(initial) {
        setBackgroundRole(QPalette::Window);
        setAutoFillBackground(true);
    }
    QSize sizeHint() const override { return m_initial.expandedTo({420, 180}); }
    QSize minimumSizeHint() const override { return {60, 40}; }

private:
    QSize m_initial;
};

// The pin in the title, beside the toolkit's own buttons.
class CPinButton : public QAbstractButton {
public:
    explicit CPinButton(CDockablePane& pane) : QAbstractButton(&pane), m_pane(pane) {
        setObjectName(QStringLiteral("PinButton"));
        setToolTip(CDockablePane::tr("Auto Hide"));
        setAccessibleName(CDockablePane::tr("Auto Hide"));
        setFocusPolicy(Qt::TabFocus);
        setAttribute(Qt::WA_Hover);
        setCursor(Qt::ArrowCursor);
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        QStyleOptionToolButton option;
        option.initFrom(this);
        option.state |= QStyle::State_AutoRaise;
        if (underMouse()) {
            option.state |= isDown() ? QStyle::State_Sunken : QStyle::State_Raised;
        }
        if (underMouse() || isDown()) {
            style()->drawPrimitive(QStyle::PE_PanelButtonTool, &option, &painter, this);
        }
        const QColor color = underMouse() ? CurrentLook().m_text : TitleTextColor(m_pane);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.translate(QRectF(rect()).center());
        if (!m_pane.IsPinned()) {
            painter.rotate(90);
        }
        painter.setPen(QPen(color, 1));
        painter.drawRect(QRectF(-2.5, -4.5, 5, 5));
        painter.fillRect(QRectF(0.5, -4.5, 2, 5), color);
        painter.drawLine(QPointF(-4, 0.5), QPointF(4, 0.5));
        painter.drawLine(QPointF(0, 1), QPointF(0, 5));
        if (hasFocus()) {
            painter.setPen(QPen(color, 1, Qt::DotLine));
            painter.resetTransform();
            painter.drawRect(rect().adjusted(0, 0, -1, -1));
        }
    }

private:
    CDockablePane& m_pane;
};

// The toolkit's own account of a pane leaves the pin out, and calls a pane that it has parked shown.
class CPaneAccessible final : public QAccessibleWidget {
public:
    explicit CPaneAccessible(CDockablePane& pane)
        : QAccessibleWidget(&pane, QAccessible::Window), m_pane(pane) {}

    QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        state.invisible = !m_pane.IsInFront();
        return state;
    }

private:
    const CDockablePane& m_pane;
};

QAccessibleInterface* PaneAccessible(const QString&, QObject* object) {
    auto* pane = qobject_cast<CDockablePane*>(object);
    return pane != nullptr ? new CPaneAccessible(*pane) : nullptr;
}

constexpr char kFloatButton[] = "qt_dockwidget_floatbutton";
constexpr char kCloseButton[] = "qt_dockwidget_closebutton";

} // namespace

QFont CellFont(const QString& face, int height) {
    QFont font(face);
    font.setStyleHint(QFont::TypeWriter);
    if (height == 0) {
        return font;
    }
    if (height < 0) {
        font.setPixelSize(-std::max(height, -1000));
        return font;
    }
    height = std::min(height, 1000);
    font.setPixelSize(height);
    for (int size = height; size > 1 && QFontMetricsF(font).height() > height + 0.5; --size) {
        font.setPixelSize(size - 1);
    }
    return font;
}

QFont SettingsFont() { return CellFont(ToQString(Settings().m_strFontName), Settings().m_nFontHeight); }

CDockablePane::CDockablePane(const QString& title, const QString& name, QSize initial)
    : QDockWidget(title), m_pPin(new CPinButton(*this)), m_pClient(new CPaneClient(initial)) {
    QAccessible::installFactory(PaneAccessible);
    setObjectName(name);
    setAllowedAreas(Qt::AllDockWidgetAreas);
    setFeatures(DockWidgetClosable | DockWidgetMovable | DockWidgetFloatable);
    setAccessibleName(title);
    m_pClient->setAccessibleName(title);
    m_pClient->installEventFilter(this);
    QSizePolicy policy = m_pClient->sizePolicy();
    policy.setRetainSizeWhenHidden(true); // behind a tab the pane takes as much room as before it
    m_pClient->setSizePolicy(policy);
    setWidget(m_pClient);
    m_pPin->hide();
    if (const QAbstractButton* floatButton = TitleButton(kFloatButton)) {
        connect(floatButton, &QAbstractButton::pressed, this, [this] { m_docked = GlobalRect(); });
        connect(floatButton, &QAbstractButton::clicked, this, &CDockablePane::PlaceFloating);
    }
    connect(m_pPin, &QAbstractButton::clicked, this, [this] {
        if (m_fnPin) {
            m_fnPin();
        }
    });
}

void CDockablePane::SetPinned(bool pinned) {
    m_bPinned = pinned;
    m_pPin->setToolTip(pinned ? tr("Auto Hide") : tr("Dock"));
    m_pPin->setAccessibleName(m_pPin->toolTip());
    PlacePin();
    m_pPin->update();
}

bool CDockablePane::IsInFront() const {
    // The toolkit parks panes behind tabs above and left of the window, and calls them visible there.
    return isVisible() && (isWindow() || (geometry().right() >= 0 && geometry().bottom() >= 0));
}

// Neither the keyboard nor a screen reader reaches the parts of a pane behind a tab.
void CDockablePane::ShowParts() {
    const bool front = IsInFront();
    // Else the toolkit would hand the focus on to the next part of the window, be it a session's.
    if (isVisible() && !front && IsActivePane(*this)) {
        window()->setFocus(Qt::OtherFocusReason);
    }
    m_pClient->setVisible(front);
    if (!isWindow()) {
        if (QAbstractButton* floatButton = TitleButton(kFloatButton)) {
            floatButton->setVisible(front && features().testFlag(DockWidgetFloatable));
        }
        if (QAbstractButton* close = TitleButton(kCloseButton)) {
            close->setVisible(front && features().testFlag(DockWidgetClosable));
        }
    }
    PlacePin();
}

QAbstractButton* CDockablePane::TitleButton(const char* name) const {
    return findChild<QAbstractButton*>(QLatin1String(name), Qt::FindDirectChildrenOnly);
}

void CDockablePane::PlacePin() {
    // Before the buttons that the toolkit puts at a title's end; a floating pane has the system's title.
    QRect beside;
    for (const char* name : {kFloatButton, kCloseButton}) {
        const QAbstractButton* button = TitleButton(name);
        if (button != nullptr && !button->isHidden() && beside.isNull()) {
            beside = button->geometry();
        }
    }
    const bool show = m_fnPin && !isFloating() && !beside.isNull();
    const int step = beside.width() + 1;
    if (show) {
        m_pPin->setGeometry(beside.translated(isRightToLeft() ? step : -step, 0));
    }
    m_pPin->setVisible(show);
    m_pPin->raise();
}

QRect CDockablePane::GlobalRect() const { return {mapToGlobal(QPoint()), size()}; }

// A pane that floats for the first time covers the place where it was docked: it looks as if nothing had
// happened.
void CDockablePane::PlaceFloating() {
    if (!isFloating() || GlobalRect() != m_docked) {
        return;
    }
    const QRect screenRect = screen()->availableGeometry();
    QRect rect(m_docked.topLeft() + QPoint(32, -64), m_docked.size().boundedTo({640, 260}));
    rect.moveRight(std::min(rect.right(), screenRect.right()));
    rect.moveBottom(std::min(rect.bottom(), screenRect.bottom()));
    rect.moveLeft(std::max(rect.left(), screenRect.left()));
    rect.moveTop(std::max(rect.top(), screenRect.top()));
    setGeometry(rect);
}

bool CDockablePane::event(QEvent* event) {
    const bool doubleClick = event->type() == QEvent::MouseButtonDblClick;
    if (doubleClick) {
        m_docked = isFloating() ? QRect() : GlobalRect();
    }
    const bool done = QDockWidget::event(event);
    if (doubleClick) {
        PlaceFloating();
    }
    if (event->type() == QEvent::Resize || event->type() == QEvent::LayoutRequest ||
        event->type() == QEvent::Show || event->type() == QEvent::StyleChange ||
        event->type() == QEvent::Move) {
        ShowParts();
    }
    return done;
}

void CDockablePane::AddCaption() {
    m_pCaption = new QLineEdit(m_pClient);
    m_pCaption->setReadOnly(true);
    m_pCaption->setFont(SettingsFont());
    m_pCaption->setAccessibleName(tr("%1: shown for").arg(windowTitle()));
    UseEditMenu(m_pCaption);
}

void CDockablePane::SetCaption(const QString& text) {
    if (m_pCaption == nullptr) {
        return;
    }
    m_pCaption->setText(text);
    m_pCaption->setCursorPosition(0);
}

QString CDockablePane::GetCaption() const { return m_pCaption != nullptr ? m_pCaption->text() : QString(); }

int CDockablePane::LayOutCaption(int width) {
    if (m_pCaption == nullptr) {
        return 0;
    }
    // A font larger than the usual one makes room for itself.
    const int caption = std::max(kCaptionHeight, m_pCaption->fontMetrics().height() + 4);
    m_pCaption->setGeometry(0, 0, width, caption);
    return caption + (kListTop - kCaptionHeight);
}

void CDockablePane::UseEditMenu(QWidget* edit) {
    edit->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(edit, &QWidget::customContextMenuRequested, this, [edit](const QPoint& point) {
        edit->setFocus(Qt::MouseFocusReason);
        if (CMainWindow* const main = MainWindow()) {
            main->ShowEditMenu(edit->mapToGlobal(point));
        }
    });
}

bool CDockablePane::eventFilter(QObject* object, QEvent* event) {
    if (object == m_pClient && (event->type() == QEvent::Resize || event->type() == QEvent::FontChange ||
                                event->type() == QEvent::Show)) {
        OnSize(m_pClient->width(), m_pClient->height());
    }
    return QDockWidget::eventFilter(object, event);
}

} // namespace carvelot
