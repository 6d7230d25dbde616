// What buttons and menus look like below the pointer, pressed and checked: the colours of the look's table,
// in each look.
#include "ui/UiSupport.h"

#include "ui/kit/Look.h"
#include "ui/kit/LookStyle.h"

#include <QImage>
#include <QPainter>
#include <QStyleOptionMenuItem>

#include <cmath>

using namespace carvelot;
using namespace carvelot::test;

namespace {

constexpr QRect kRect(0, 0, 200, 24);

QColor MiddleOf(const CGradient& colors) {
    return QColor((colors.m_from.red() + colors.m_to.red()) / 2,
                  (colors.m_from.green() + colors.m_to.green()) / 2,
                  (colors.m_from.blue() + colors.m_to.blue()) / 2);
}

// The middle of a gradient is painted within a few shades.
bool IsNear(const QColor& one, const QColor& other) {
    return std::abs(one.red() - other.red()) <= 6 && std::abs(one.green() - other.green()) <= 6 &&
           std::abs(one.blue() - other.blue()) <= 6;
}

QByteArray Difference(const QColor& painted, const QColor& wanted) {
    return (painted.name() + QStringLiteral(" is painted instead of ") + wanted.name()).toUtf8();
}

} // namespace

class LookPaintTest : public QObject {
    Q_OBJECT

private slots:
    void aToolButtonShowsWhetherItIsHotPressedOrChecked_data() { AddLooks(); }
    void aToolButtonShowsWhetherItIsHotPressedOrChecked() {
        const CLook& look = Look();
        const auto painted = [&look](QStyle::State state) {
            QStyleOption option;
            option.rect = kRect;
            option.state = state;
            return Painted(look, [&](QPainter& painter, const CLookStyle& style) {
                style.drawPrimitive(QStyle::PE_PanelButtonTool, &option, &painter, nullptr);
            });
        };
        const bool raised = look.m_bRaisedButtons;
        struct CCase {
            QStyle::State state;
            QColor color;
        };
        const QStyle::State enabled = QStyle::State_Enabled;
        const QColor ground(Qt::magenta);
        const QList<CCase> cases{
            {enabled, ground},
            {QStyle::State_MouseOver, ground}, // it can't be pressed
            {enabled | QStyle::State_MouseOver, raised ? look.m_face : MiddleOf(look.m_hot)},
            {enabled | QStyle::State_Sunken, raised ? look.m_face : MiddleOf(look.m_pressed)},
            {enabled | QStyle::State_On, raised ? look.m_checked.m_from : MiddleOf(look.m_checked)},
            {enabled | QStyle::State_On | QStyle::State_MouseOver,
             raised ? look.m_face : MiddleOf(look.m_pressed)},
            {enabled | QStyle::State_HasFocus, raised ? ground : MiddleOf(look.m_hot)},
        };
        for (const CCase& each : cases) {
            const QColor color = painted(each.state).pixelColor(kRect.center());
            QVERIFY2(IsNear(color, each.color), Difference(color, each.color));
        }
    }

    void theSeparatorOfAToolBarOnASideLiesAcross_data() { AddLooks(); }
    void theSeparatorOfAToolBarOnASideLiesAcross() {
        const CLook& look = Look();
        QStyleOption option;
        option.rect = QRect(0, 0, 24, 24);
        const auto painted = [&](QStyle::State state) {
            option.state = state;
            return Painted(look, [&](QPainter& painter, const CLookStyle& style) {
                style.drawPrimitive(QStyle::PE_IndicatorToolBarSeparator, &option, &painter, nullptr);
            });
        };
        const QPoint center = option.rect.center();
        const QPoint beside = center + QPoint(6, 0);
        const QPoint above = center - QPoint(0, 6);
        const QImage standing = painted(QStyle::State_Horizontal);
        QCOMPARE(standing.pixelColor(above), look.m_border);
        QCOMPARE(standing.pixelColor(beside), QColor(Qt::magenta));
        const QImage lying = painted({});
        QCOMPARE(lying.pixelColor(beside), look.m_border);
        QCOMPARE(lying.pixelColor(above), QColor(Qt::magenta));
    }

    void aMenuItemShowsThatItIsChosen_data() { AddLooks(); }
    void aMenuItemShowsThatItIsChosen() {
        const CLook& look = Look();
        const QPoint besideTheText(kRect.right() - 40, kRect.center().y());
        const QColor ground(Qt::magenta);
        const bool raised = look.m_bRaisedButtons;
        const auto at = [&](QStyle::State state) {
            return MenuItem(look, [&](QStyleOptionMenuItem& item) { item.state = state; })
                .pixelColor(besideTheText);
        };
        QCOMPARE(at(QStyle::State_Enabled), ground);
        const QColor chosen = at(QStyle::State_Enabled | QStyle::State_Selected);
        const QColor wanted = raised ? look.m_selection : MiddleOf(look.m_hot);
        QVERIFY2(IsNear(chosen, wanted), Difference(chosen, wanted));
        // One that can't be run has a frame alone, or in the old look a shade.
        const QImage disabled =
            MenuItem(look, [](QStyleOptionMenuItem& item) { item.state = QStyle::State_Selected; });
        const QColor shade(look.m_face.darker(106).rgb());
        QCOMPARE(disabled.pixelColor(besideTheText), raised ? shade : ground);
        QCOMPARE(disabled.pixelColor(1, kRect.center().y()), raised ? shade : look.m_border);
    }

    void aMenuItemHasADotWhereOneOfSeveralIsChosenAndAnArrowAheadOfAMenu_data() { AddLooks(); }
    void aMenuItemHasADotWhereOneOfSeveralIsChosenAndAnArrowAheadOfAMenu() {
        const CLook& look = Look();
        const QPoint dot(14, kRect.center().y() + 1); // within the box for pictures
        const auto textColored = [&look](const QImage& image, const QRect& part) {
            int count = 0;
            for (int y = part.top(); y <= part.bottom(); ++y) {
                for (int x = part.left(); x <= part.right(); ++x) {
                    count += IsNear(image.pixelColor(x, y), look.m_text) ? 1 : 0;
                }
            }
            return count;
        };
        const QRect box(dot - QPoint(8, 8), QSize(16, 16));
        const QRect end(kRect.right() - 16, 0, 16, kRect.height());
        const auto item = [&look](bool chosen, QStyleOptionMenuItem::MenuItemType type) {
            return MenuItem(look, [&](QStyleOptionMenuItem& made) {
                made.state = QStyle::State_Enabled;
                made.menuItemType = type;
                made.checkType = QStyleOptionMenuItem::Exclusive;
                made.checked = chosen;
            });
        };
        const QImage plain = item(false, QStyleOptionMenuItem::Normal);
        QCOMPARE(textColored(plain, box), 0);
        QCOMPARE(textColored(plain, end), 0);
        // Circle and arrow of four pixels, less what their edges are blended with.
        const int inDot = textColored(item(true, QStyleOptionMenuItem::Normal), box);
        QVERIFY2(inDot >= 16 && inDot <= 45, QByteArray::number(inDot));
        const int inArrow = textColored(item(false, QStyleOptionMenuItem::SubMenu), end);
        QVERIFY2(inArrow >= 8 && inArrow <= 20, QByteArray::number(inArrow));
    }

    void aMenuOfTheBarShowsThatItIsBelowThePointerOrOpen_data() { AddLooks(); }
    void aMenuOfTheBarShowsThatItIsBelowThePointerOrOpen() {
        const CLook& look = Look();
        const auto painted = [&look](QStyle::State state) {
            QStyleOptionMenuItem item;
            item.rect = kRect;
            item.state = state;
            item.text = QStringLiteral("X");
            item.palette = look.Palette();
            return Painted(look, [&](QPainter& painter, const CLookStyle& style) {
                style.drawControl(QStyle::CE_MenuBarItem, &item, &painter, nullptr);
            });
        };
        const QPoint besideTheText(20, kRect.center().y());
        const QImage resting = painted(QStyle::State_Enabled);
        const QImage hot = painted(QStyle::State_Enabled | QStyle::State_Selected);
        const QImage open = painted(QStyle::State_Enabled | QStyle::State_Selected | QStyle::State_Sunken);
        if (look.m_bRaisedButtons) {
            // Edges as of a button, light and dark in turn.
            QCOMPARE(hot.pixelColor(besideTheText), resting.pixelColor(besideTheText));
            QVERIFY(hot.pixelColor(0, 12).lightness() > hot.pixelColor(kRect.right(), 12).lightness());
            QVERIFY(open.pixelColor(0, 12).lightness() < open.pixelColor(kRect.right(), 12).lightness());
        } else {
            QVERIFY2(IsNear(hot.pixelColor(besideTheText), MiddleOf(look.m_hot)),
                     Difference(hot.pixelColor(besideTheText), MiddleOf(look.m_hot)));
            QCOMPARE(open.pixelColor(besideTheText), look.m_menu);
        }
        // What can't be opened is written in another colour.
        const QRect text(kRect.center() - QPoint(6, 6), QSize(12, 12));
        QVERIFY(painted({}).copy(text) != resting.copy(text));
    }

private:
    static void AddLooks() {
        QTest::addColumn<int>("id");
        for (const int id : LookIds()) {
            QTest::addRow("%d", id) << id;
        }
    }
    static const CLook& Look() {
        int office2007 = ID_APPLOOK_OFFICE_2007_BLUE;
        const int id = *static_cast<int*>(QTest::qData("id", qMetaTypeId<int>()));
        return LookOf(id, office2007);
    }
    static QImage Painted(const CLook& look, const std::function<void(QPainter&, const CLookStyle&)>& paint) {
        QImage image(kRect.size(), QImage::Format_RGB32);
        image.fill(Qt::magenta);
        QPainter painter(&image);
        painter.setFont(QApplication::font());
        const CLookStyle style(look);
        paint(painter, style);
        painter.end();
        return image;
    }
    static QImage MenuItem(const CLook& look, const std::function<void(QStyleOptionMenuItem&)>& change) {
        QStyleOptionMenuItem item;
        item.rect = kRect;
        item.text = QStringLiteral("X");
        item.font = QApplication::font();
        item.palette = look.Palette();
        item.menuItemType = QStyleOptionMenuItem::Normal;
        item.checkType = QStyleOptionMenuItem::NotCheckable;
        change(item);
        return Painted(look, [&](QPainter& painter, const CLookStyle& style) {
            style.drawControl(QStyle::CE_MenuItem, &item, &painter, nullptr);
        });
    }
};

QTEST_MAIN(LookPaintTest)
#include "LookPaintTest.moc"
