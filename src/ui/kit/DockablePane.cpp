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
        if (underMouse())
            option.state |= isDown() ? QStyle::State_Sunken : QStyle::State_Raised;
        if (underMouse() || isDown())
            style()->drawPrimitive(QStyle::PE_PanelButtonTool, &option, &painter, this);
        const QColor color = underMouse() ? CurrentLook().m_text : TitleTextColor(m_pane);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.translate(QRectF(rect()).center());
        if (!m_pane.IsPinned())
            painter.rotate(90);
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

QAccessibleInterface* PaneAccessible(const QString&, QObject* pObject) {
    auto* pPane = qobject_cast<CDockablePane*>(pObject);
    return pPane != nullptr ? new CPaneAccessible(*pPane) : nullptr;
}

constexpr char kFloatButton[] = "qt_dockwidget_floatbutton";
constexpr char kCloseButton[] = "qt_dockwidget_closebutton";

} // namespace

QFont CellFont(const QString& strFace, int nHeight) {
    QFont font(strFace);
    font.setStyleHint(QFont::TypeWriter);
    if (nHeight == 0)
        return font;
    if (nHeight < 0) {
        font.setPixelSize(-std::max(nHeight, -1000));
        return font;
    }
    nHeight = std::min(nHeight, 1000);
    font.setPixelSize(nHeight);
    for (int nSize = nHeight; nSize > 1 && QFontMetricsF(font).height() > nHeight + 0.5; --nSize)
        font.setPixelSize(nSize - 1);
    return font;
}

QFont SettingsFont() { return CellFont(ToQString(Settings().m_strFontName), Settings().m_nFontHeight); }

CDockablePane::CDockablePane(const QString& strTitle, const QString& strName, QSize initial)
    : QDockWidget(strTitle), m_pPin(new CPinButton(*this)), m_pClient(new CPaneClient(initial)) {
    QAccessible::installFactory(PaneAccessible);
    setObjectName(strName);
    setAllowedAreas(Qt::AllDockWidgetAreas);
    setFeatures(DockWidgetClosable | DockWidgetMovable | DockWidgetFloatable);
    setAccessibleName(strTitle);
    m_pClient->setAccessibleName(strTitle);
    m_pClient->installEventFilter(this);
    QSizePolicy policy = m_pClient->sizePolicy();
    policy.setRetainSizeWhenHidden(true); // behind a tab the pane takes as much room as before it
    m_pClient->setSizePolicy(policy);
    setWidget(m_pClient);
    m_pPin->hide();
    if (const QAbstractButton* pFloat = TitleButton(kFloatButton)) {
        connect(pFloat, &QAbstractButton::pressed, this, [this] { m_docked = GlobalRect(); });
        connect(pFloat, &QAbstractButton::clicked, this, &CDockablePane::PlaceFloating);
    }
    connect(m_pPin, &QAbstractButton::clicked, this, [this] {
        if (m_fnPin)
            m_fnPin();
    });
}

void CDockablePane::SetPinned(bool bPinned) {
    m_bPinned = bPinned;
    m_pPin->setToolTip(bPinned ? tr("Auto Hide") : tr("Dock"));
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
    const bool bFront = IsInFront();
    // Else the toolkit would hand the focus on to the next part of the window, be it a session's.
    if (isVisible() && !bFront && IsActivePane(*this))
        window()->setFocus(Qt::OtherFocusReason);
    m_pClient->setVisible(bFront);
    if (!isWindow()) {
        if (QAbstractButton* pFloat = TitleButton(kFloatButton))
            pFloat->setVisible(bFront && features().testFlag(DockWidgetFloatable));
        if (QAbstractButton* pClose = TitleButton(kCloseButton))
            pClose->setVisible(bFront && features().testFlag(DockWidgetClosable));
    }
    PlacePin();
}

QAbstractButton* CDockablePane::TitleButton(const char* pszName) const {
    return findChild<QAbstractButton*>(QLatin1String(pszName), Qt::FindDirectChildrenOnly);
}

void CDockablePane::PlacePin() {
    // Before the buttons that the toolkit puts at a title's end; a floating pane has the system's title.
    QRect beside;
    for (const char* pszName : {kFloatButton, kCloseButton}) {
        const QAbstractButton* pButton = TitleButton(pszName);
        if (pButton != nullptr && !pButton->isHidden() && beside.isNull())
            beside = pButton->geometry();
    }
    const bool bShow = m_fnPin && !isFloating() && !beside.isNull();
    const int nStep = beside.width() + 1;
    if (bShow)
        m_pPin->setGeometry(beside.translated(isRightToLeft() ? nStep : -nStep, 0));
    m_pPin->setVisible(bShow);
    m_pPin->raise();
}

QRect CDockablePane::GlobalRect() const { return {mapToGlobal(QPoint()), size()}; }

// A pane that floats for the first time covers the place where it was docked: it looks as if nothing had
// happened.
void CDockablePane::PlaceFloating() {
    if (!isFloating() || GlobalRect() != m_docked)
        return;
    const QRect screenRect = screen()->availableGeometry();
    QRect rect(m_docked.topLeft() + QPoint(32, -64), m_docked.size().boundedTo({640, 260}));
    rect.moveRight(std::min(rect.right(), screenRect.right()));
    rect.moveBottom(std::min(rect.bottom(), screenRect.bottom()));
    rect.moveLeft(std::max(rect.left(), screenRect.left()));
    rect.moveTop(std::max(rect.top(), screenRect.top()));
    setGeometry(rect);
}

bool CDockablePane::event(QEvent* pEvent) {
    const bool bDoubleClick = pEvent->type() == QEvent::MouseButtonDblClick;
    if (bDoubleClick)
        m_docked = isFloating() ? QRect() : GlobalRect();
    const bool bDone = QDockWidget::event(pEvent);
    if (bDoubleClick)
        PlaceFloating();
    if (pEvent->type() == QEvent::Resize || pEvent->type() == QEvent::LayoutRequest ||
        pEvent->type() == QEvent::Show || pEvent->type() == QEvent::StyleChange ||
        pEvent->type() == QEvent::Move)
        ShowParts();
    return bDone;
}

void CDockablePane::AddCaption() {
    m_pCaption = new QLineEdit(m_pClient);
    m_pCaption->setReadOnly(true);
    m_pCaption->setFont(SettingsFont());
    m_pCaption->setAccessibleName(tr("%1: shown for").arg(windowTitle()));
    UseEditMenu(m_pCaption);
}

void CDockablePane::SetCaption(const QString& strText) {
    if (m_pCaption == nullptr)
        return;
    m_pCaption->setText(strText);
    m_pCaption->setCursorPosition(0);
}

QString CDockablePane::GetCaption() const { return m_pCaption != nullptr ? m_pCaption->text() : QString(); }

int CDockablePane::LayOutCaption(int nWidth) {
    if (m_pCaption == nullptr) {
        return 0;
    }
    // A font larger than the usual one makes room for itself.
    const int nCaption = std::max(kCaptionHeight, m_pCaption->fontMetrics().height() + 4);
    m_pCaption->setGeometry(0, 0, nWidth, nCaption);
    return nCaption + (kListTop - kCaptionHeight);
}

void CDockablePane::UseEditMenu(QWidget* pEdit) {
    pEdit->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(pEdit, &QWidget::customContextMenuRequested, this, [pEdit](const QPoint& point) {
        pEdit->setFocus(Qt::MouseFocusReason);
        if (CMainWindow* const pMain = MainWindow())
            pMain->ShowEditMenu(pEdit->mapToGlobal(point));
    });
}

bool CDockablePane::eventFilter(QObject* pObject, QEvent* pEvent) {
    if (pObject == m_pClient && (pEvent->type() == QEvent::Resize || pEvent->type() == QEvent::FontChange ||
                                 pEvent->type() == QEvent::Show))
        OnSize(m_pClient->width(), m_pClient->height());
    return QDockWidget::eventFilter(pObject, pEvent);
}

} // namespace carvelot
