// Every picture is a function that draws on a field of 16 by 16 units. One hand for all: shapes have a darker
// edge of one unit, light comes from above, and edges of boxes are moved to whole device pixels, so that a
// line is a line at 100 % and at 150 %.
#include "ui/kit/Icons.h"

#include "settings/Commands.h"

#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

#include <array>
#include <cmath>
#include <functional>
#include <numbers>

namespace carvelot {

namespace {

const QColor kPaper(0xFD, 0xFE, 0xFF);
const QColor kPaperEdge(0x6C, 0x7A, 0x8C);
const QColor kLine(0xA9, 0xB5, 0xC4);
const QColor kBlue(0x3B, 0x82, 0xD0);
const QColor kBlueDark(0x1D, 0x55, 0x98);
const QColor kBlueLight(0xBF, 0xDB, 0xF5);
const QColor kGreen(0x4C, 0xB0, 0x4F);
const QColor kGreenDark(0x1F, 0x7A, 0x2B);
const QColor kRed(0xE0, 0x48, 0x3E);
const QColor kRedDark(0xA5, 0x1F, 0x1A);
const QColor kYellow(0xFF, 0xCF, 0x48);
const QColor kYellowDark(0xA8, 0x77, 0x08);
const QColor kGrey(0xA6, 0xAE, 0xB8);
const QColor kGreyDark(0x5E, 0x68, 0x74);
const QColor kGreyLight(0xDF, 0xE4, 0xEA);
const QColor kInk(0x3A, 0x44, 0x52);

// A painter on the 16-unit field that knows how many device pixels a unit has.
class CPen {
public:
    CPen(QPainter& painter, double fScale) : m_painter(painter), m_fScale(fScale) {
        painter.setRenderHint(QPainter::Antialiasing);
    }

    double Snap(double fUnits) const { return std::round(fUnits * m_fScale) / m_fScale; }
    // The width of an edge: one unit, in whole device pixels.
    double Edge() const { return std::max(1.0, std::floor(m_fScale + 0.25)) / m_fScale; }

    void Fill(double fX, double fY, double fW, double fH, const QColor& color) {
        const double fLeft = Snap(fX);
        const double fTop = Snap(fY);
        m_painter.fillRect(QRectF(fLeft, fTop, std::max(Snap(fX + fW) - fLeft, 1 / m_fScale),
                                  std::max(Snap(fY + fH) - fTop, 1 / m_fScale)),
                           color);
    }
    void Box(double fX, double fY, double fW, double fH, const QColor& fill, const QColor& edge) {
        const double fLeft = Snap(fX);
        const double fTop = Snap(fY);
        const QRectF outer(fLeft, fTop, Snap(fX + fW) - fLeft, Snap(fY + fH) - fTop);
        const double fEdge = Edge();
        m_painter.fillRect(outer, edge);
        m_painter.fillRect(outer.adjusted(fEdge, fEdge, -fEdge, -fEdge), fill);
    }
    void Path(const QPainterPath& path, const QColor& fill) { m_painter.fillPath(path, fill); }
    void Path(const QPainterPath& path, const QColor& fill, const QColor& edge, double fWidth = 1.0) {
        m_painter.setPen(QPen(edge, fWidth, Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin));
        m_painter.setBrush(fill);
        m_painter.drawPath(path);
    }
    void Polygon(const QPolygonF& polygon, const QColor& fill, const QColor& edge) {
        QPainterPath path;
        path.addPolygon(polygon);
        path.closeSubpath();
        m_painter.setPen(QPen(edge, 1, Qt::SolidLine, Qt::FlatCap, Qt::RoundJoin));
        m_painter.setBrush(fill);
        m_painter.drawPath(path);
    }
    void Disc(double fX, double fY, double fRadius, const QColor& fill, const QColor& edge) {
        QRadialGradient gradient(fX - fRadius / 3, fY - fRadius / 2, fRadius * 1.7);
        gradient.setColorAt(0, fill.lighter(125));
        gradient.setColorAt(0.6, fill);
        gradient.setColorAt(1, fill.darker(115));
        m_painter.setPen(QPen(edge, 1));
        m_painter.setBrush(gradient);
        m_painter.drawEllipse(QPointF(fX, fY), fRadius - 0.5, fRadius - 0.5);
    }
    void Ring(double fX, double fY, double fRadius, double fWidth, const QColor& color) {
        m_painter.setPen(QPen(color, fWidth));
        m_painter.setBrush(Qt::NoBrush);
        m_painter.drawEllipse(QPointF(fX, fY), fRadius - fWidth / 2, fRadius - fWidth / 2);
    }
    void Stroke(const QPolygonF& points, const QColor& color, double fWidth,
                Qt::PenCapStyle nCap = Qt::FlatCap) {
        m_painter.setPen(QPen(color, fWidth, Qt::SolidLine, nCap, Qt::MiterJoin));
        m_painter.setBrush(Qt::NoBrush);
        m_painter.drawPolyline(points);
    }
    // A stroke with a darker edge around it.
    void Bold(const QPolygonF& points, const QColor& color, const QColor& edge, double fWidth) {
        Stroke(points, edge, fWidth + 1.4, Qt::SquareCap);
        Stroke(points, color, fWidth, Qt::SquareCap);
    }
    QPainter& Painter() { return m_painter; }

private:
    QPainter& m_painter;
    double m_fScale;
};

using FDraw = std::function<void(CPen&)>;

// --- parts that several pictures share
// -------------------------------------------------------------------------

void Page(CPen& pen, double fX, double fY, double fW, double fH, const QColor& edge = kPaperEdge) {
    const double fFold = 3;
    const double fLeft = pen.Snap(fX) + 0.5;
    const double fTop = pen.Snap(fY) + 0.5;
    const double fRight = pen.Snap(fX + fW) - 0.5;
    const double fBottom = pen.Snap(fY + fH) - 0.5;
    pen.Polygon(
        {{fLeft, fTop}, {fRight - fFold, fTop}, {fRight, fTop + fFold}, {fRight, fBottom}, {fLeft, fBottom}},
        kPaper, edge);
    pen.Polygon({{fRight - fFold, fTop}, {fRight - fFold, fTop + fFold}, {fRight, fTop + fFold}}, kGreyLight,
                edge);
}

void Lines(CPen& pen, double fX, double fY, double fW, int nLines, double fStep = 2,
           const QColor& color = kLine) {
    for (int n = 0; n < nLines; ++n)
        pen.Fill(fX, fY + n * fStep, n == nLines - 1 ? fW * 0.65 : fW, 1, color);
}

void Tick(CPen& pen, double fX, double fY, double fSize) {
    pen.Bold({{fX + fSize * 0.06, fY + fSize * 0.55},
              {fX + fSize * 0.36, fY + fSize * 0.86},
              {fX + fSize * 0.94, fY + fSize * 0.14}},
             kGreen, kGreenDark, fSize * 0.15);
}

void Triangle(CPen& pen, double fX, double fY, double fSize) {
    const double fHeight = fSize * 0.9;
    pen.Polygon({{fX + fSize / 2, fY + 0.6}, {fX + fSize - 0.6, fY + fHeight}, {fX + 0.6, fY + fHeight}},
                kYellow, kYellowDark);
    const double fMiddle = fX + fSize / 2;
    pen.Stroke({{fMiddle, fY + fHeight * 0.36}, {fMiddle, fY + fHeight * 0.68}}, kInk, fSize * 0.125);
    pen.Stroke({{fMiddle, fY + fHeight * 0.76}, {fMiddle, fY + fHeight * 0.76 + fSize * 0.12}}, kInk,
               fSize * 0.125);
}

void NoEntry(CPen& pen) {
    pen.Disc(8, 7.5, 7, kRed, kRedDark);
    pen.Fill(4, 6, 8, 3, Qt::white);
}

// The colour with some white in it.
QColor Paler(const QColor& color, double fWhite) {
    const auto fnMix = [fWhite](int nPart) { return static_cast<int>(nPart + (255 - nPart) * fWhite); };
    return QColor(fnMix(color.red()), fnMix(color.green()), fnMix(color.blue()));
}

void Cylinder(CPen& pen, double fX, double fY, double fW, double fH, const QColor& fill, const QColor& edge) {
    const double fCap = fW * 0.32;
    QPainterPath body;
    body.moveTo(fX + 0.5, fY + fCap / 2);
    body.lineTo(fX + 0.5, fY + fH - fCap / 2);
    body.arcTo(QRectF(fX + 0.5, fY + fH - fCap - 0.5, fW - 1, fCap), 180, 180);
    body.lineTo(fX + fW - 0.5, fY + fCap / 2);
    body.arcTo(QRectF(fX + 0.5, fY + 0.5, fW - 1, fCap), 0, -180);
    QLinearGradient gradient(fX, 0, fX + fW, 0);
    gradient.setColorAt(0, fill);
    gradient.setColorAt(0.35, Paler(fill, 0.35));
    gradient.setColorAt(1, fill.darker(112));
    pen.Painter().setPen(QPen(edge, 1));
    pen.Painter().setBrush(gradient);
    pen.Painter().drawPath(body);
    pen.Painter().setBrush(Paler(fill, 0.6));
    pen.Painter().drawEllipse(QRectF(fX + 0.5, fY + 0.5, fW - 1, fCap));
}

void Gear(CPen& pen, double fX, double fY, double fRadius, const QColor& fill, const QColor& edge) {
    QPainterPath path;
    constexpr int kTeeth = 8;
    for (int n = 0; n < kTeeth * 4; ++n) {
        const double fAngle = (n - 0.5) * std::numbers::pi / (kTeeth * 2);
        const double fNow = n % 4 < 2 ? fRadius : fRadius * 0.72;
        const QPointF point(fX + fNow * std::cos(fAngle), fY + fNow * std::sin(fAngle));
        if (n == 0)
            path.moveTo(point);
        else
            path.lineTo(point);
    }
    path.closeSubpath();
    path.addEllipse(QPointF(fX, fY), fRadius * 0.3, fRadius * 0.3);
    pen.Path(path, fill, edge, 0.9);
}

void ArrowRight(CPen& pen) {
    pen.Polygon({{1.5, 5.5}, {7.5, 5.5}, {7.5, 2}, {14.5, 7.5}, {7.5, 13}, {7.5, 9.5}, {1.5, 9.5}}, kGreen,
                kGreenDark);
}

void ArrowLeft(CPen& pen) {
    pen.Polygon({{14.5, 5.5}, {8.5, 5.5}, {8.5, 2}, {1.5, 7.5}, {8.5, 13}, {8.5, 9.5}, {14.5, 9.5}}, kGreen,
                kGreenDark);
}

void InfoDisc(CPen& pen) {
    pen.Disc(8, 7.5, 7, kBlue, kBlueDark);
    pen.Fill(7, 3, 2, 2, Qt::white);
    pen.Fill(7, 6, 2, 6, Qt::white);
}

void Plus(CPen& pen, double fX, double fY, double fSize, const QColor& color, const QColor& edge) {
    const double fArm = fSize / 3;
    pen.Fill(fX + fArm - 0.8, fY - 0.8, fArm + 1.6, fSize + 1.6, edge);
    pen.Fill(fX - 0.8, fY + fArm - 0.8, fSize + 1.6, fArm + 1.6, edge);
    pen.Fill(fX + fArm, fY, fArm, fSize, color);
    pen.Fill(fX, fY + fArm, fSize, fArm, color);
}

void Cross(CPen& pen, double fX, double fY, double fSize) {
    const QPolygonF down{{fX, fY}, {fX + fSize, fY + fSize}};
    const QPolygonF up{{fX, fY + fSize}, {fX + fSize, fY}};
    pen.Stroke(down, Qt::white, 4, Qt::SquareCap);
    pen.Stroke(up, Qt::white, 4, Qt::SquareCap);
    pen.Stroke(down, kRedDark, 2.6, Qt::SquareCap);
    pen.Stroke(up, kRedDark, 2.6, Qt::SquareCap);
    pen.Stroke(down, kRed, 1.6, Qt::SquareCap);
    pen.Stroke(up, kRed, 1.6, Qt::SquareCap);
}

void Pencil(CPen& pen, double fX, double fY, double fSize, const QColor& wood, const QColor& edge) {
    // From the tip at the lower left to the upper right.
    const double fW = fSize * 0.22;
    const QPointF tip(fX, fY + fSize);
    const QPointF head(fX + fSize, fY);
    pen.Polygon({tip,
                 {tip.x() + fSize * 0.08, tip.y() - fSize * 0.34},
                 {head.x() - fW, head.y() - fW * 0.1},
                 {head.x() + fW * 0.1, head.y() + fW},
                 {tip.x() + fSize * 0.34, tip.y() - fSize * 0.08}},
                wood, edge);
    pen.Polygon({tip,
                 {tip.x() + fSize * 0.05, tip.y() - fSize * 0.2},
                 {tip.x() + fSize * 0.2, tip.y() - fSize * 0.05}},
                edge, edge);
}

void Lens(CPen& pen, double fX, double fY, double fRadius, const QColor& rim = kGreyDark) {
    pen.Stroke({{fX + fRadius * 0.65, fY + fRadius * 0.65}, {fX + fRadius * 1.75, fY + fRadius * 1.75}},
               kYellowDark, fRadius * 0.62, Qt::RoundCap);
    QColor glass = kBlueLight;
    glass.setAlpha(235);
    pen.Painter().setPen(QPen(rim, 1.4));
    pen.Painter().setBrush(glass);
    pen.Painter().drawEllipse(QPointF(fX, fY), fRadius - 0.5, fRadius - 0.5);
    pen.Stroke(
        {{fX - fRadius * 0.45, fY}, {fX - fRadius * 0.3, fY - fRadius * 0.35}, {fX, fY - fRadius * 0.45}},
        Qt::white, 1);
}

void CurvedArrow(CPen& pen, double fX, double fY, double fRadius, double fStart, double fSpan,
                 const QColor& color, double fWidth) {
    QPainterPath path;
    const QRectF circle(fX - fRadius, fY - fRadius, fRadius * 2, fRadius * 2);
    path.arcMoveTo(circle, fStart);
    path.arcTo(circle, fStart, fSpan);
    pen.Painter().setPen(QPen(color, fWidth, Qt::SolidLine, Qt::FlatCap));
    pen.Painter().setBrush(Qt::NoBrush);
    pen.Painter().drawPath(path);
    const double fEnd = (fStart + fSpan) * std::numbers::pi / 180;
    const QPointF at(fX + fRadius * std::cos(fEnd), fY - fRadius * std::sin(fEnd));
    const double fSign = fSpan > 0 ? 1 : -1;
    const QPointF along(-std::sin(fEnd) * fSign, -std::cos(fEnd) * fSign);
    const QPointF across(along.y(), -along.x());
    const double fHead = fWidth * 1.5;
    QPainterPath head;
    head.addPolygon(QPolygonF(
        {at + along * fHead * 1.25, at + across * fHead - along * 0.2, at - across * fHead - along * 0.2}));
    pen.Path(head, color);
}

void Window(CPen& pen, double fX, double fY, double fW, double fH, const QColor& edge, const QColor& bar) {
    pen.Box(fX, fY, fW, fH, kPaper, edge);
    pen.Fill(fX + 1, fY + 1, fW - 2, 2, bar);
}

void Letter(CPen& pen, const QString& strText, const QRectF& box, const QColor& color, const QColor& edge) {
    QFont font(QStringLiteral("Liberation Sans"));
    font.setStyleHint(QFont::SansSerif);
    font.setBold(true);
    font.setPixelSize(48);
    QPainterPath path;
    path.addText(0, 0, font, strText);
    const QRectF from = path.boundingRect();
    if (from.isEmpty())
        return;
    QTransform to;
    to.translate(box.x(), box.y());
    to.scale(box.width() / from.width(), box.height() / from.height());
    to.translate(-from.x(), -from.y());
    if (edge.isValid())
        pen.Path(to.map(path), color, edge, 0.7);
    pen.Path(to.map(path), color);
}

// --- the strip of the session trees
// ------------------------------------------------------------------------------

void GreyDisc(CPen& pen) {
    pen.Disc(8, 7.5, 7, kGrey, kGreyDark);
    pen.Painter().setPen(QPen(kGreyDark, 1));
    pen.Painter().setBrush(Qt::white);
    pen.Painter().drawEllipse(QPointF(8, 7.5), 2, 2);
}

void MarkedDisc(CPen& pen, const QColor& fill, const QColor& edge) {
    GreyDisc(pen);
    pen.Disc(11.5, 11, 4, fill, edge);
}

void UnderRing(CPen& pen) { pen.Ring(8, 7.5, 7.5, 1.6, kRed); }

const std::vector<FDraw>& TreeDrawings() {
    static const std::vector<FDraw> list = {
        /* 0 */ NoEntry,
        /* 1 */ [](CPen& pen) { Triangle(pen, 0.5, 0.5, 15); },
        /* 2 */ [](CPen& pen) { Tick(pen, 1, 1, 13.5); },
        /* 3 */
        [](CPen& pen) {
            Page(pen, 1, 0, 10, 14);
            Lines(pen, 3, 4, 5, 2);
            Cylinder(pen, 6, 6, 9, 9, kBlue, kBlueDark);
        },
        /* 4 */ ArrowRight,
        /* 5 */ ArrowLeft,
        /* 6 */
        [](CPen& pen) {
            Letter(pen, QStringLiteral("ER"), {1, 3, 14, 9.4}, kGreen, kGreenDark);
        },
        /* 7 */
        [](CPen& pen) {
            pen.Box(1, 2, 14, 11, QColor(0xFF, 0xE7, 0x9E), kYellowDark);
            pen.Fill(2, 3, 12, 2, kYellow);
        },
        /* 8 */
        [](CPen& pen) {
            Page(pen, 2, 0, 12, 15);
            Lines(pen, 4, 4, 5, 1);
            pen.Fill(4, 6, 3, 3, kBlue);
            pen.Fill(8, 7, 4, 1, kLine);
            pen.Fill(4, 10, 3, 3, kRed);
            pen.Fill(8, 11, 4, 1, kLine);
        },
        /* 9 */
        [](CPen& pen) {
            pen.Box(1, 1, 14, 13, kPaper, kBlueDark);
            pen.Fill(2, 2, 12, 3, kBlue);
            pen.Fill(11, 3, 1, 1, Qt::white);
            pen.Fill(9, 3, 1, 1, Qt::white);
            pen.Fill(3, 7, 7, 1, kLine);
            pen.Fill(3, 9, 9, 1, kLine);
            pen.Fill(3, 11, 5, 1, kLine);
        },
        /* 10 */
        [](CPen& pen) {
            Tick(pen, 4, 3.8, 8);
            UnderRing(pen);
        },
        /* 11 */
        [](CPen& pen) {
            Triangle(pen, 3.2, 2.4, 9.6);
            UnderRing(pen);
        },
        /* 12 */ InfoDisc,
        /* 13 */
        [](CPen& pen) {
            QPainterPath body;
            body.moveTo(2, 14.5);
            body.cubicTo(2, 9.5, 5, 8.5, 8, 8.5);
            body.cubicTo(11, 8.5, 14, 9.5, 14, 14.5);
            body.closeSubpath();
            pen.Path(body, kBlue, kBlueDark);
            pen.Disc(8, 4.5, 4, QColor(0xF2, 0xC5, 0x9A), QColor(0x96, 0x62, 0x33));
        },
        /* 14 */
        [](CPen& pen) {
            pen.Box(1, 1, 14, 10, kGreyLight, kGreyDark);
            pen.Box(2, 2, 12, 8, kBlue, kBlueDark);
            pen.Fill(3, 3, 10, 2, kBlue.lighter(135));
            pen.Fill(6, 11, 4, 2, kGreyDark);
            pen.Fill(4, 13, 8, 1.2, kGreyDark);
        },
        /* 15 */
        [](CPen& pen) { Pencil(pen, 1.5, 1.5, 12, QColor(0x55, 0x60, 0x70), QColor(0x20, 0x28, 0x34)); },
        /* 16 */ [](CPen& pen) { Gear(pen, 8, 7.5, 7.2, kGrey, kGreyDark); },
        /* 17 */ GreyDisc,
        /* 18 */ [](CPen& pen) { MarkedDisc(pen, kBlue, kBlueDark); },
        /* 19 */ [](CPen& pen) { MarkedDisc(pen, kGreen, kGreenDark); },
        /* 20 */ [](CPen& pen) { MarkedDisc(pen, kRed, kRedDark); },
        /* 21 */
        [](CPen& pen) {
            pen.Box(2, 0, 12, 15, kPaper, kBlue);
            pen.Fill(2, 0, 12, 2, kBlue);
            pen.Fill(2, 13, 12, 2, kBlue);
            Lines(pen, 5, 4, 6, 4);
        },
        /* 22 */
        [](CPen& pen) {
            pen.Fill(3, 1, 1.4, 14, kGreyDark);
            QPainterPath flag;
            flag.moveTo(4.5, 1.5);
            flag.cubicTo(7, 0.2, 9, 3.4, 14, 1.8);
            flag.lineTo(14, 8.8);
            flag.cubicTo(9, 10.2, 7, 7.2, 4.5, 8.6);
            flag.closeSubpath();
            pen.Path(flag, kRed, kRedDark);
        },
    };
    return list;
}

// --- the strip of the Cache Details pane: a store with what was done to it
// ------------------------------------------

const QColor kStore(0x3F, 0xA7, 0xA3);
const QColor kStoreDark(0x1B, 0x6A, 0x68);

void Store(CPen& pen) { Cylinder(pen, 1, 1, 11, 12, kStore, kStoreDark); }

void CursorBar(CPen& pen, const QColor& color) {
    // The bar of a text cursor beside three rows.
    Lines(pen, 1, 3, 8, 1, 2, kGrey);
    pen.Fill(1, 7, 8, 1, kGreyDark);
    Lines(pen, 1, 11, 8, 1, 2, kGrey);
    pen.Fill(11, 2, 1.4, 11, color);
    pen.Fill(9.6, 1, 4.2, 1.2, color);
    pen.Fill(9.6, 13, 4.2, 1.2, color);
}

const std::vector<FDraw>& CacheDrawings() {
    static const std::vector<FDraw> list = {
        /* 0 a cache */ [](CPen& pen) { Cylinder(pen, 2, 1, 12, 13, kStore, kStoreDark); },
        /* 1 add */
        [](CPen& pen) {
            Store(pen);
            Plus(pen, 8.5, 7.5, 6, kGreen, Qt::white);
        },
        /* 2 delete */
        [](CPen& pen) {
            Store(pen);
            Cross(pen, 9.5, 8.5, 4);
        },
        /* 3 change */
        [](CPen& pen) {
            Store(pen);
            Pencil(pen, 6.5, 5, 8.5, kYellow, kInk);
        },
        /* 4 initialise */
        [](CPen& pen) {
            Store(pen);
            QPainterPath bolt;
            bolt.addPolygon(QPolygonF(
                {{12, 4.5}, {7, 10.5}, {10, 10.5}, {8.5, 15}, {14.5, 8.5}, {11.4, 8.5}, {13.5, 4.5}}));
            bolt.closeSubpath();
            pen.Path(bolt, kYellow, kYellowDark, 0.9);
        },
        /* 5 fetch */
        [](CPen& pen) {
            Store(pen);
            pen.Polygon(
                {{7.5, 9.5}, {10.5, 9.5}, {10.5, 7}, {15, 11}, {10.5, 14.6}, {10.5, 12.5}, {7.5, 12.5}},
                kBlue, Qt::white);
        },
        /* 6 a row */
        [](CPen& pen) {
            pen.Box(1, 3, 14, 9, kPaper, kStoreDark);
            pen.Fill(2, 4, 12, 2, kStore);
            pen.Fill(5, 4, 1, 7, kStoreDark);
            pen.Fill(10, 4, 1, 7, kStoreDark);
        },
        /* 7 a cursor */ [](CPen& pen) { CursorBar(pen, kGreyDark); },
        /* 8 close a cursor */
        [](CPen& pen) {
            CursorBar(pen, kGreyDark);
            Cross(pen, 9.5, 8.5, 4);
        },
        /* 9 open a cursor */
        [](CPen& pen) {
            CursorBar(pen, kBlueDark);
            pen.Polygon({{2, 4.5}, {8, 7.5}, {2, 10.5}}, kBlue, Qt::white);
        },
        /* 10 terminate */
        [](CPen& pen) {
            Cylinder(pen, 1, 1, 11, 12, kGrey, kGreyDark);
            pen.Polygon({{9, 6.5},
                         {12.5, 6.5},
                         {14.9, 8.9},
                         {14.9, 12.4},
                         {12.5, 14.6},
                         {9, 14.6},
                         {6.7, 12.4},
                         {6.7, 8.9}},
                        kRed, Qt::white);
            pen.Fill(8.6, 9.7, 4.4, 1.8, Qt::white);
        },
    };
    return list;
}

// --- commands
// ---------------------------------------------------------------------------------------------------------

void Folder(CPen& pen) {
    pen.Polygon({{1.5, 13.5}, {1.5, 3.5}, {6, 3.5}, {7.5, 5.5}, {13.5, 5.5}, {13.5, 13.5}},
                QColor(0xE9, 0xB2, 0x2E), kYellowDark);
    pen.Polygon({{1.5, 13.5}, {4, 7.5}, {15.5, 7.5}, {13, 13.5}}, QColor(0xFF, 0xDD, 0x7A), kYellowDark);
}

void LookSwatch(CPen& pen, const QColor& bar, const QColor& body) {
    pen.Box(1, 2, 14, 12, body, kPaperEdge);
    pen.Fill(2, 3, 12, 3, bar);
    pen.Fill(2, 6, 4, 7, bar.lighter(125));
}

void Groups(CPen& pen, bool bHorizontal) {
    if (bHorizontal) {
        Window(pen, 1, 1, 14, 7, kBlueDark, kBlue);
        Window(pen, 1, 8, 14, 7, kBlueDark, kBlue);
    } else {
        Window(pen, 1, 2, 7, 12, kBlueDark, kBlue);
        Window(pen, 8, 2, 7, 12, kBlueDark, kBlue);
    }
}

void Calendar(CPen& pen) {
    pen.Box(1, 2, 14, 13, kPaper, kPaperEdge);
    pen.Fill(1, 2, 14, 4, kRed);
    pen.Fill(4, 1, 1.2, 3, kInk);
    pen.Fill(11, 1, 1.2, 3, kInk);
    for (int nRow = 0; nRow < 3; ++nRow) {
        for (int nColumn = 0; nColumn < 4; ++nColumn) {
            const bool bToday = nRow == 1 && nColumn == 2;
            pen.Fill(3 + nColumn * 3, 8 + nRow * 2, 2, 1, bToday ? kRed : kGreyDark);
        }
    }
}

void Table(CPen& pen, double fX, double fY, double fW, double fH, const QColor& head, const QColor& edge) {
    pen.Box(fX, fY, fW, fH, kPaper, edge);
    pen.Fill(fX + 1, fY + 1, fW - 2, 2, head);
    for (double fLine = fY + 3; fLine < fY + fH - 1; fLine += 3)
        pen.Fill(fX + 1, fLine, fW - 2, 1, kLine);
    pen.Fill(fX + std::floor(fW / 3), fY + 1, 1, fH - 2, kLine);
    pen.Fill(fX + std::floor(fW * 2 / 3), fY + 1, 1, fH - 2, kLine);
}

void Globe(CPen& pen, double fX, double fY, double fRadius) {
    pen.Disc(fX, fY, fRadius, kBlue, kBlueDark);
    QPainter& painter = pen.Painter();
    painter.setPen(QPen(QColor(255, 255, 255, 200), 0.8));
    painter.setBrush(Qt::NoBrush);
    painter.drawEllipse(QPointF(fX, fY), fRadius * 0.4, fRadius - 1);
    painter.drawLine(QPointF(fX - fRadius + 1, fY), QPointF(fX + fRadius - 1, fY));
}

void Refresh(CPen& pen, const QColor& color) {
    CurvedArrow(pen, 8, 8, 5.3, 170, -135, color, 2.1);
    CurvedArrow(pen, 8, 8, 5.3, -10, -135, color, 2.1);
}

void Wrench(CPen& pen) {
    pen.Stroke({{4, 12.5}, {9.5, 7}}, kGreyDark, 3.6, Qt::RoundCap);
    pen.Stroke({{4, 12.5}, {9.5, 7}}, kGrey, 2, Qt::RoundCap);
    QPainterPath jaw;
    jaw.addEllipse(QPointF(11, 5), 4.2, 4.2);
    QPainterPath notch;
    notch.addPolygon(QPolygonF({{10.4, 5.6}, {13, -1}, {17, 3}}));
    notch.closeSubpath();
    pen.Path(jaw.subtracted(notch), kGrey, kGreyDark);
}

void ChartPage(CPen& pen) {
    Page(pen, 1, 0, 11, 15);
    pen.Fill(3, 9, 1.6, 3, kBlue);
    pen.Fill(5.4, 6, 1.6, 6, kGreen);
    pen.Fill(7.8, 8, 1.6, 4, kYellow);
    Lens(pen, 10.5, 9, 3.6);
}

FDraw CommandDrawing(int nId) {
    switch (nId) {
    case ID_FILE_NEW:
        return [](CPen& pen) { Page(pen, 2, 0, 12, 16); };
    case ID_FILE_OPEN:
        return Folder;
    case ID_FILE_SAVE:
        return [](CPen& pen) {
            pen.Box(1, 1, 14, 14, kBlue, kBlueDark);
            pen.Fill(4, 2, 8, 5, kPaper);
            pen.Fill(9, 3, 2, 3, kBlueDark);
            pen.Fill(4, 9, 8, 5, kGreyLight);
            Lines(pen, 5, 10, 6, 2, 2, kGreyDark);
        };
    case ID_FILE_PRINT:
        return [](CPen& pen) {
            pen.Box(4, 1, 8, 6, kPaper, kPaperEdge);
            pen.Box(1, 6, 14, 6, kGrey, kGreyDark);
            pen.Fill(12, 8, 1, 1, kGreen);
            pen.Box(4, 10, 8, 5, kPaper, kPaperEdge);
            Lines(pen, 6, 12, 4, 1);
        };
    case ID_EDIT_UNDO:
        return [](CPen& pen) { CurvedArrow(pen, 8.5, 9, 5, 20, 140, kBlueDark, 2.1); };
    case ID_EDIT_CUT:
        return [](CPen& pen) {
            pen.Stroke({{4.5, 1}, {10, 11}}, kGreyDark, 1.6);
            pen.Stroke({{11.5, 1}, {6, 11}}, kGreyDark, 1.6);
            pen.Ring(4.6, 12, 2.8, 1.5, kBlueDark);
            pen.Ring(11.4, 12, 2.8, 1.5, kBlueDark);
        };
    case ID_EDIT_COPY:
        return [](CPen& pen) {
            Page(pen, 1, 0, 9, 11);
            Page(pen, 6, 4, 9, 12);
            Lines(pen, 8, 9, 5, 3);
        };
    case ID_EDIT_PASTE:
        return [](CPen& pen) {
            pen.Box(1, 2, 11, 13, QColor(0xC9, 0x97, 0x5A), QColor(0x7A, 0x52, 0x21));
            pen.Box(4, 1, 5, 3, kGreyLight, kGreyDark);
            Page(pen, 6, 6, 9, 10);
            Lines(pen, 8, 10, 5, 2);
        };
    case ID_SESSION_ANALYZE:
    case ID_PROCESS_ANALYZE:
        return ChartPage;
    case ID_SESSION_CLEAR_DEBUG_FILE:
    case ID_PROCESS_TRUNC:
        return [](CPen& pen) {
            Page(pen, 1, 0, 11, 15);
            Lines(pen, 3, 5, 6, 3);
            Cross(pen, 10, 9.5, 4);
        };
    case ID_SESSION_OPEN_AS_TEXT:
        return [](CPen& pen) {
            Page(pen, 2, 0, 12, 16);
            Letter(pen, QStringLiteral("A"), {4.2, 3.4, 4.6, 5}, kBlueDark, QColor());
            pen.Fill(10, 7, 2, 1, kInk);
            Lines(pen, 4, 10, 8, 2, 2, kInk);
        };
    case ID_CACHE_DEFINE_STRUCTURE:
        return [](CPen& pen) {
            Table(pen, 1, 1, 13, 12, kStore, kStoreDark);
            Pencil(pen, 7, 6, 8.5, kYellow, kInk);
        };
    case ID_CACHE_REFRESH_DATA:
        return [](CPen& pen) {
            Cylinder(pen, 1, 0, 10, 12, kStore, kStoreDark);
            pen.Disc(11, 11, 5, kPaper, kGreyDark);
            CurvedArrow(pen, 11, 11, 2.5, 200, -260, kGreenDark, 1.3);
        };
    case ID_CACHE_BROWSE_DATA:
        return [](CPen& pen) {
            Table(pen, 1, 1, 13, 12, kStore, kStoreDark);
            Lens(pen, 10, 9, 3.5);
        };
    case ID_TOOLS_GLOBAL_TABLES:
        return [](CPen& pen) {
            Table(pen, 1, 1, 13, 12, kBlue, kBlueDark);
            Globe(pen, 10.8, 10.8, 5);
        };
    case ID_TOOLS_CONVERT_DATES:
        return Calendar;
    case ID_TOOLS_JDE_SETTINGS:
        return [](CPen& pen) {
            pen.Box(1, 1, 12, 9, kBlueLight, kBlueDark);
            pen.Fill(2, 2, 10, 2, kBlue);
            pen.Fill(5, 10, 4, 2, kGreyDark);
            pen.Fill(3, 12, 8, 1.2, kGreyDark);
            pen.Painter().save();
            pen.Painter().translate(5, 4.6);
            pen.Painter().scale(0.7, 0.7);
            Wrench(pen);
            pen.Painter().restore();
        };
    case ID_TOOLS_OPTIONS:
        return [](CPen& pen) { Gear(pen, 8, 8, 7.4, QColor(0x7F, 0xA6, 0xD3), kBlueDark); };
    case ID_VIEW_CUSTOMIZE:
        return Wrench;
    case ID_VIEW_RESTORE_LAYOUT:
        return [](CPen& pen) {
            Window(pen, 1, 1, 14, 13, kBlueDark, kBlue);
            pen.Fill(2, 4, 4, 9, kBlueLight);
            pen.Fill(6, 10, 8, 3, kGreyLight);
            CurvedArrow(pen, 10.4, 8, 3, 30, 220, kGreenDark, 1.6);
        };
    case ID_VIEW_STATUS_BAR:
        return [](CPen& pen) {
            Window(pen, 1, 1, 14, 14, kPaperEdge, kGreyLight);
            pen.Fill(2, 11, 12, 3, kBlue);
        };
    case ID_VIEW_TOOLBAR:
        return [](CPen& pen) {
            Window(pen, 1, 1, 14, 14, kPaperEdge, kGreyLight);
            pen.Fill(2, 4, 12, 3, kBlue);
        };
    case ID_PROCESS_REFRESH:
        return [](CPen& pen) { Refresh(pen, kGreenDark); };
    case ID_PROCESS_TOGGLE:
        return [](CPen& pen) {
            QPainterPath arc;
            arc.arcMoveTo(QRectF(2.5, 3, 11, 11), 125);
            arc.arcTo(QRectF(2.5, 3, 11, 11), 125, 290);
            pen.Painter().setPen(QPen(kGreenDark, 2.2, Qt::SolidLine, Qt::RoundCap));
            pen.Painter().setBrush(Qt::NoBrush);
            pen.Painter().drawPath(arc);
            pen.Stroke({{8, 1.5}, {8, 8}}, kGreenDark, 2.2, Qt::RoundCap);
        };
    case ID_PROCESS_CLEAR_CACHE:
        return [](CPen& pen) {
            Cylinder(pen, 1, 1, 11, 13, kStore, kStoreDark);
            Cross(pen, 10, 9.5, 4);
        };
    case ID_FIND_FIND:
        return [](CPen& pen) { Lens(pen, 6.5, 6.5, 5.2); };
    case ID_FILE_CLOSE:
        return [](CPen& pen) {
            Window(pen, 1, 1, 13, 12, kPaperEdge, kGreyLight);
            Cross(pen, 9.5, 9.5, 4);
        };
    case ID_WINDOW_CLOSE_ALL:
        return [](CPen& pen) {
            Window(pen, 3, 0, 12, 10, kPaperEdge, kGreyLight);
            Window(pen, 0, 3, 12, 11, kPaperEdge, kGreyLight);
            Cross(pen, 9.5, 9.5, 4);
        };
    case ID_WINDOW_WINDOWS:
        return [](CPen& pen) {
            Window(pen, 4, 1, 11, 9, kBlueDark, kBlue);
            Window(pen, 1, 5, 11, 10, kBlueDark, kBlue);
        };
    case ID_WINDOW_NEW_HORIZONTAL_GROUP:
        return [](CPen& pen) { Groups(pen, true); };
    case ID_WINDOW_NEW_VERTICAL_GROUP:
        return [](CPen& pen) { Groups(pen, false); };
    case ID_WINDOW_NEXT_PANE:
        return [](CPen& pen) {
            Window(pen, 1, 1, 14, 13, kBlueDark, kBlue);
            pen.Polygon({{5.5, 5.5}, {11, 9}, {5.5, 12.5}}, kGreen, kGreenDark);
        };
    case ID_WINDOW_PREV_PANE:
        return [](CPen& pen) {
            Window(pen, 1, 1, 14, 13, kBlueDark, kBlue);
            pen.Polygon({{10.5, 5.5}, {5, 9}, {10.5, 12.5}}, kGreen, kGreenDark);
        };
    case ID_APP_ABOUT:
        return [](CPen& pen) {
            pen.Disc(8, 8, 7.5, kBlue, kBlueDark);
            Letter(pen, QStringLiteral("?"), {5.4, 3.4, 5.2, 9.2}, Qt::white, QColor());
        };
    case ID_APP_EXIT:
        return [](CPen& pen) {
            pen.Box(1, 1, 8, 14, QColor(0xC9, 0x97, 0x5A), QColor(0x7A, 0x52, 0x21));
            pen.Fill(6, 8, 1.4, 1.4, kYellow);
            pen.Polygon({{8, 6.5}, {11, 6.5}, {11, 4}, {15.4, 8}, {11, 12}, {11, 9.5}, {8, 9.5}}, kGreen,
                        kGreenDark);
        };
    case ID_APPLOOK_WINDOWS_2000:
        return [](CPen& pen) { LookSwatch(pen, QColor(0x0A, 0x24, 0x6A), QColor(0xD4, 0xD0, 0xC8)); };
    case ID_APPLOOK_OFFICE_XP:
        return [](CPen& pen) { LookSwatch(pen, QColor(0x31, 0x6A, 0xC5), QColor(0xEF, 0xED, 0xDE)); };
    case ID_APPLOOK_WINDOWS_XP:
        return [](CPen& pen) { LookSwatch(pen, QColor(0x00, 0x54, 0xE3), QColor(0xEC, 0xE9, 0xD8)); };
    case ID_APPLOOK_OFFICE_2003:
        return [](CPen& pen) { LookSwatch(pen, QColor(0x7B, 0xA4, 0xE0), QColor(0xC3, 0xDA, 0xF9)); };
    case ID_APPLOOK_VS_2005:
        return [](CPen& pen) { LookSwatch(pen, QColor(0xA8, 0xB8, 0xC8), QColor(0xE8, 0xE4, 0xD4)); };
    case ID_APPLOOK_VS_2008:
        return [](CPen& pen) { LookSwatch(pen, QColor(0x93, 0xA9, 0xC9), QColor(0xE9, 0xEE, 0xF6)); };
    case ID_APPLOOK_OFFICE_2007_BLUE:
        return [](CPen& pen) { LookSwatch(pen, QColor(0x8D, 0xB2, 0xE3), QColor(0xDC, 0xE9, 0xF9)); };
    case ID_APPLOOK_OFFICE_2007_BLACK:
        return [](CPen& pen) { LookSwatch(pen, QColor(0x45, 0x45, 0x45), QColor(0xA0, 0xA4, 0xAA)); };
    case ID_APPLOOK_OFFICE_2007_SILVER:
        return [](CPen& pen) { LookSwatch(pen, QColor(0xB4, 0xB9, 0xC4), QColor(0xEE, 0xF0, 0xF4)); };
    case ID_APPLOOK_OFFICE_2007_AQUA:
        return [](CPen& pen) { LookSwatch(pen, QColor(0x6F, 0xB1, 0xC9), QColor(0xDD, 0xEF, 0xF5)); };
    case ID_APPLOOK_WINDOWS_7:
        return [](CPen& pen) { LookSwatch(pen, QColor(0x7F, 0xB2, 0xDE), QColor(0xF3, 0xF7, 0xFC)); };
    default:
        return {};
    }
}

void DrawApplication(CPen& pen) {
    // A log page whose lines become a call tree, under the analyst's lens.
    Page(pen, 1, 0, 12, 16, kBlueDark);
    pen.Fill(3, 3, 5, 1, kBlue);
    pen.Fill(4, 5, 1, 6, kGrey);
    pen.Fill(4, 6, 2, 1, kGrey);
    pen.Fill(6, 6, 4, 1, kGreen);
    pen.Fill(4, 8, 2, 1, kGrey);
    pen.Fill(6, 8, 3, 1, kRed);
    pen.Fill(4, 10, 2, 1, kGrey);
    pen.Fill(6, 10, 3, 1, kGreen);
    Lens(pen, 10.2, 9.6, 4, kBlueDark);
}

void DrawSession(CPen& pen) { ChartPage(pen); }

// --- the engine
// ------------------------------------------------------------------------------------------------------

class CDrawnIconEngine final : public QIconEngine {
public:
    CDrawnIconEngine(FDraw fnDraw, double fHeight) : m_fnDraw(std::move(fnDraw)), m_fHeight(fHeight) {}

    void paint(QPainter* pPainter, const QRect& rect, QIcon::Mode nMode, QIcon::State nState) override {
        const double fRatio = pPainter->device() != nullptr ? pPainter->device()->devicePixelRatio() : 1.0;
        pPainter->drawPixmap(rect, scaledPixmap(rect.size() * fRatio, nMode, nState, fRatio));
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode nMode, QIcon::State nState) override {
        return scaledPixmap(size, nMode, nState, 1.0);
    }

    // size is in device pixels.
    QPixmap scaledPixmap(const QSize& size, QIcon::Mode nMode, QIcon::State, qreal) override {
        QImage image(size, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        if (size.isEmpty())
            return {};
        {
            QPainter painter(&image);
            const double fScale = std::min(size.width() / 16.0, size.height() / m_fHeight);
            painter.translate(std::floor((size.width() - 16 * fScale) / 2),
                              std::floor((size.height() - m_fHeight * fScale) / 2));
            painter.scale(fScale, fScale);
            CPen pen(painter, fScale);
            m_fnDraw(pen);
        }
        if (nMode == QIcon::Disabled)
            FadeToGrey(image);
        return QPixmap::fromImage(std::move(image));
    }

    QSize actualSize(const QSize& size, QIcon::Mode, QIcon::State) override { return size; }
    bool isNull() override { return false; }
    QIconEngine* clone() const override { return new CDrawnIconEngine(*this); }
    QString key() const override { return QStringLiteral("carvelot"); }
    QList<QSize> availableSizes(QIcon::Mode, QIcon::State) override {
        QList<QSize> listSizes;
        for (const int nSize : {16, 20, 24, 32, 48, 64, 128, 256})
            listSizes << QSize(nSize, nSize);
        return listSizes;
    }

private:
    static void FadeToGrey(QImage& image) {
        for (int nY = 0; nY < image.height(); ++nY) {
            auto* pLine = reinterpret_cast<QRgb*>(image.scanLine(nY));
            for (int nX = 0; nX < image.width(); ++nX) {
                const QRgb pixel = qUnpremultiply(pLine[nX]);
                const int nGrey = 96 + qGray(pixel) * 5 / 9;
                pLine[nX] = qPremultiply(qRgba(nGrey, nGrey, nGrey, qAlpha(pixel) * 5 / 8));
            }
        }
    }

    FDraw m_fnDraw;
    double m_fHeight;
};

QIcon Drawn(FDraw fnDraw, double fHeight = 16) {
    return QIcon(new CDrawnIconEngine(std::move(fnDraw), fHeight));
}

} // namespace

bool LoadImageStrip(const char* pszName, QList<QIcon>& listImages) {
    listImages.clear();
    const QLatin1String strName(pszName);
    const bool bTree = strName == QLatin1String("TreeImages");
    if (!bTree && strName != QLatin1String("cacheicons"))
        return false;
    for (const FDraw& fnDraw : bTree ? TreeDrawings() : CacheDrawings())
        listImages << Drawn(fnDraw, kStripImageSize.height());
    return true;
}

QIcon CommandIcon(int nId) {
    FDraw fnDraw = CommandDrawing(nId);
    return fnDraw ? Drawn(std::move(fnDraw)) : QIcon();
}

QIcon ApplicationIcon() { return Drawn(DrawApplication); }

QIcon SessionIcon() { return Drawn(DrawSession); }

QIcon CacheIcon() { return Drawn(CacheDrawings().front(), kStripImageSize.height()); }

} // namespace carvelot
