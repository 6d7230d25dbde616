// LookPainting.h - what the files of CLookStyle share.
#pragma once

#include "ui/kit/Look.h"

#include <QIcon>
#include <QStyle>
#include <QTabBar>

namespace carvelot {

inline constexpr int kMenuGutter = 26; // of a menu: room for the icon

void FillGradient(QPainter& painter, const QRect& rect, const CGradient& colors, bool downwards = true);

// The small signs of titles and tabs, drawn so that they are sharp at every scale: a cross that closes, two
// windows for a pane that leaves or takes its place.
void DrawSign(QPainter& painter, const QRect& rect, QStyle::StandardPixmap sign, const QColor& color);
QIcon SignIcon(QStyle::StandardPixmap sign, const QColor& color);

inline bool IsSouth(QTabBar::Shape shape) {
    return shape == QTabBar::RoundedSouth || shape == QTabBar::TriangularSouth;
}
inline bool IsNorth(QTabBar::Shape shape) {
    return shape == QTabBar::RoundedNorth || shape == QTabBar::TriangularNorth;
}

// What a shape of tab brings with it, and how it is outlined.
struct CTabShape {
    QPainterPath (*m_fnOutline)(const QRectF& box); // of a tab above its page, without its lower edge
    int m_nAir = 18;                                // beside the text
    int m_nTextLead = 9;
    int m_nIconLead = 8;
    int m_nCloseGap = 4; // between the text and the sign that closes
    QPoint m_closeShift = {};
    bool m_bCurved = true;
    bool m_bLitEdges = false;  // light falls on the left and the upper edge
    bool m_bTwoHalves = false; // a tab behind is lighter in its upper half
    bool m_bMarkedTop = false; // a coloured band on the tab in front and the one below the pointer
};

const CTabShape& TabShapeOf(const CLook& look);

} // namespace carvelot
