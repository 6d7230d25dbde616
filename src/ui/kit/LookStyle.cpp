#include "ui/kit/LookStyle.h"

#include "settings/Commands.h"
#include "ui/kit/TabbedClientArea.h"

#include <QApplication>
#include <QDockWidget>
#include <QIconEngine>
#include <QMainWindow>
#include <QPainter>
#include <QPainterPath>
#include <QStyleFactory>
#include <QStyleOption>
#include <QTabBar>
#include <qdrawutil.h>

#include <array>

namespace carvelot {

namespace {

QColor Rgb(unsigned nColor) { return QColor::fromRgb(nColor); }

CLook Windows2000() {
    CLook look;
    look.m_nId = ID_APPLOOK_WINDOWS_2000;
    look.m_pszBase = "Windows";
    look.m_nTabShape = ETabShape::Classic;
    look.m_face = Rgb(0xD4D0C8);
    look.m_text = Qt::black;
    look.m_disabledText = Rgb(0x808080);
    look.m_border = Rgb(0x808080);
    look.m_selection = Rgb(0x0A246A);
    look.m_selectionText = Qt::white;
    look.m_workspaceText = Qt::black;
    look.m_menuBar = look.m_toolBar = look.m_menuGutter = look.m_header = {look.m_face, look.m_face};
    look.m_title = {Rgb(0x808080), Rgb(0xB5B5B5)};
    look.m_activeTitle = {Rgb(0x0A246A), Rgb(0xA6CAF0)};
    look.m_tab = look.m_activeTab = {look.m_face, look.m_face};
    look.m_workspace = {Rgb(0x808080), Rgb(0x808080)};
    look.m_hot = {look.m_face, look.m_face};
    look.m_pressed = {look.m_face, look.m_face};
    look.m_checked = {Rgb(0xE9E7E3), Rgb(0xE9E7E3)};
    look.m_hotBorder = Rgb(0x0A246A);
    look.m_menu = look.m_face;
    look.m_menuBarText = Qt::black;
    look.m_titleText = Rgb(0xE8E6E1);
    look.m_activeTitleText = Qt::white;
    look.m_tabText = look.m_activeTabText = Qt::black;
    look.m_bBoldActiveTab = false;
    look.m_bRaisedButtons = true;
    return look;
}

CLook OfficeXP() {
    CLook look;
    look.m_nId = ID_APPLOOK_OFFICE_XP;
    look.m_nTabShape = ETabShape::Flat;
    look.m_face = Rgb(0xE3E1D8);
    look.m_text = Qt::black;
    look.m_disabledText = Rgb(0x8C8A82);
    look.m_border = Rgb(0x8A867A);
    look.m_selection = Rgb(0x316AC5);
    look.m_selectionText = Qt::white;
    look.m_workspaceText = Rgb(0x1E1C16);
    look.m_menuBar = {look.m_face, look.m_face};
    look.m_toolBar = {Rgb(0xEFEDE6), Rgb(0xEFEDE6)};
    look.m_menuGutter = {Rgb(0xDBD8D1), Rgb(0xDBD8D1)};
    look.m_title = {Rgb(0xDAD7CC), Rgb(0xDAD7CC)};
    look.m_activeTitle = {Rgb(0x316AC5), Rgb(0x316AC5)};
    look.m_tab = {Rgb(0xF7F6F2), Rgb(0xF7F6F2)};
    look.m_activeTab = {look.m_face, look.m_face};
    look.m_header = {Rgb(0xECEAE3), Rgb(0xE3E1D8)};
    look.m_workspace = {Rgb(0x9A978C), Rgb(0x9A978C)};
    look.m_hot = {Rgb(0xC1D2EE), Rgb(0xC1D2EE)};
    look.m_pressed = {Rgb(0x98B5E2), Rgb(0x98B5E2)};
    look.m_checked = {Rgb(0xD4E0F3), Rgb(0xD4E0F3)};
    look.m_hotBorder = Rgb(0x316AC5);
    look.m_menu = Rgb(0xFCFCF9);
    look.m_menuBarText = Qt::black;
    look.m_titleText = Rgb(0x222222);
    look.m_activeTitleText = Qt::white;
    look.m_tabText = Rgb(0x5E5C55);
    look.m_activeTabText = Qt::black;
    look.m_bBoldActiveTab = false;
    return look;
}

CLook WindowsXP() {
    CLook look = OfficeXP();
    look.m_nId = ID_APPLOOK_WINDOWS_XP;
    look.m_nTabShape = ETabShape::Themed;
    look.m_face = Rgb(0xECE9D8);
    look.m_border = Rgb(0x919B9C);
    look.m_menuBar = {look.m_face, look.m_face};
    look.m_toolBar = {Rgb(0xF6F4EA), Rgb(0xE4E0CB)};
    look.m_menu = Qt::white;
    look.m_menuGutter = {Qt::white, Qt::white};
    look.m_title = {Rgb(0xC7C5B8), Rgb(0xDAD8CC)};
    look.m_activeTitle = {Rgb(0x0A5BE3), Rgb(0x3B8CF2)};
    look.m_tab = {Rgb(0xFFFFFF), Rgb(0xECEBE6)};
    look.m_activeTab = {Rgb(0xFCFCFE), Rgb(0xFCFCFE)};
    look.m_header = {Rgb(0xF4F3EA), Rgb(0xE4E1D0)};
    look.m_workspace = {Rgb(0x8E97A8), Rgb(0x8E97A8)};
    look.m_hot = {Rgb(0xFDFBF3), Rgb(0xEDE8D5)};
    look.m_pressed = {Rgb(0xDEDACA), Rgb(0xE6E2D2)};
    look.m_checked = {Rgb(0xFAF8F0), Rgb(0xFAF8F0)};
    look.m_hotBorder = Rgb(0xC6BFA4);
    look.m_bRoundButtons = true;
    return look;
}

CLook Office2003() {
    CLook look;
    look.m_nId = ID_APPLOOK_OFFICE_2003;
    look.m_nTabShape = ETabShape::Slanted;
    look.m_face = Rgb(0xC9DDF8);
    look.m_text = Qt::black;
    look.m_disabledText = Rgb(0x7D8FA8);
    look.m_border = Rgb(0x3B619C);
    look.m_selection = Rgb(0x316AC5);
    look.m_selectionText = Qt::white;
    look.m_workspaceText = Rgb(0x0B2A66);
    look.m_menuBar = {Rgb(0x9EBEF5), Rgb(0xC4DAFA)};
    look.m_toolBar = {Rgb(0xE3EFFF), Rgb(0x87ADE4)};
    look.m_menuGutter = {Rgb(0xE3EFFF), Rgb(0x9DBDEB)};
    look.m_title = {Rgb(0xDCE9FC), Rgb(0x90B4E8)};
    look.m_activeTitle = {Rgb(0xFFE9B8), Rgb(0xF7AE4A)};
    look.m_tab = {Rgb(0xD7E6FC), Rgb(0xA8C6F2)};
    look.m_activeTab = {Rgb(0xFFFFFF), Rgb(0xFFFFFF)};
    look.m_header = {Rgb(0xE9F2FF), Rgb(0xBAD3F5)};
    look.m_workspace = {Rgb(0x9EBEF5), Rgb(0xC4DAFA)};
    look.m_hot = {Rgb(0xFFF5CC), Rgb(0xFFD18C)};
    look.m_pressed = {Rgb(0xFE913F), Rgb(0xFFCD8B)};
    look.m_checked = {Rgb(0xFFD58C), Rgb(0xFFAD55)};
    look.m_hotBorder = Rgb(0x000080);
    look.m_menu = Rgb(0xF6F6F6);
    look.m_menuBarText = Qt::black;
    look.m_titleText = Rgb(0x0B2A66);
    look.m_activeTitleText = Qt::black;
    look.m_tabText = Rgb(0x1A3566);
    look.m_activeTabText = Qt::black;
    return look;
}

CLook VisualStudio2005() {
    CLook look;
    look.m_nId = ID_APPLOOK_VS_2005;
    look.m_nTabShape = ETabShape::Slanted;
    look.m_face = Rgb(0xECE9D8);
    look.m_text = Qt::black;
    look.m_disabledText = Rgb(0x94917F);
    look.m_border = Rgb(0xA7A38C);
    look.m_selection = Rgb(0x316AC5);
    look.m_selectionText = Qt::white;
    look.m_workspaceText = Rgb(0x1E1C16);
    look.m_menuBar = {Rgb(0xE5E5D7), Rgb(0xF4F2E8)};
    look.m_toolBar = {Rgb(0xFAF9F5), Rgb(0xD7D3BF)};
    look.m_menuGutter = {Rgb(0xFEFEFB), Rgb(0xE3E0CE)};
    look.m_title = {Rgb(0xD8D4C0), Rgb(0xCCC7AF)};
    look.m_activeTitle = {Rgb(0x3B80ED), Rgb(0x3169C6)};
    look.m_tab = {Rgb(0xF8F7F1), Rgb(0xE1DECC)};
    look.m_activeTab = {Qt::white, Qt::white};
    look.m_header = {Rgb(0xF7F5EC), Rgb(0xE0DCC8)};
    look.m_workspace = {Rgb(0xA8A594), Rgb(0xA8A594)};
    look.m_hot = {Rgb(0xC1D2EE), Rgb(0xC1D2EE)};
    look.m_pressed = {Rgb(0x98B5E2), Rgb(0x98B5E2)};
    look.m_checked = {Rgb(0xE1E6E8), Rgb(0xE1E6E8)};
    look.m_hotBorder = Rgb(0x316AC5);
    look.m_menu = Rgb(0xFCFCF9);
    look.m_menuBarText = Qt::black;
    look.m_titleText = Rgb(0x3C3A2F);
    look.m_activeTitleText = Qt::white;
    look.m_tabText = Rgb(0x5F5C4A);
    look.m_activeTabText = Qt::black;
    return look;
}

CLook VisualStudio2008() {
    CLook look;
    look.m_nId = ID_APPLOOK_VS_2008;
    look.m_nTabShape = ETabShape::OneNote;
    look.m_face = Rgb(0xEEF2F8);
    look.m_text = Rgb(0x1B2430);
    look.m_disabledText = Rgb(0x93A0B0);
    look.m_border = Rgb(0x93A5BE);
    look.m_selection = Rgb(0x3874C8);
    look.m_selectionText = Qt::white;
    look.m_workspaceText = Rgb(0x45566E);
    look.m_menuBar = {Rgb(0xE9EEF6), Rgb(0xD5DEEB)};
    look.m_toolBar = {Rgb(0xF7F9FC), Rgb(0xD6DFEC)};
    look.m_menuGutter = {Rgb(0xF0F4F9), Rgb(0xE4EAF3)};
    look.m_title = {Rgb(0xDEE6F1), Rgb(0xC5D2E3)};
    look.m_activeTitle = {Rgb(0x6E93CC), Rgb(0x4A74B5)};
    look.m_tab = {Rgb(0xEEF3F9), Rgb(0xD2DDEB)};
    look.m_activeTab = {Qt::white, Qt::white};
    look.m_header = {Rgb(0xFBFCFE), Rgb(0xE7EDF5)};
    look.m_workspace = {Rgb(0xC3CFE0), Rgb(0xD3DCE9)};
    look.m_hot = {Rgb(0xDCE9FA), Rgb(0xC4DAF5)};
    look.m_pressed = {Rgb(0xA9C7EC), Rgb(0xBAD3F1)};
    look.m_checked = {Rgb(0xE6EFFB), Rgb(0xD3E3F7)};
    look.m_hotBorder = Rgb(0x5B8CCB);
    look.m_menu = Rgb(0xFDFDFE);
    look.m_menuBarText = look.m_text;
    look.m_titleText = Rgb(0x2B3B52);
    look.m_activeTitleText = Qt::white;
    look.m_tabText = Rgb(0x4A5B73);
    look.m_activeTabText = Rgb(0x16202C);
    return look;
}

CLook Office2007(int nId, unsigned nFace, unsigned nLight, unsigned nDark, unsigned nBorder, unsigned nText,
                 unsigned nSelection) {
    CLook look;
    look.m_nId = nId;
    look.m_nTabShape = ETabShape::Rounded;
    look.m_face = Rgb(nFace);
    look.m_text = Rgb(0x1A1F27);
    look.m_disabledText = Rgb(0x8A8F97);
    look.m_border = Rgb(nBorder);
    look.m_selection = Rgb(nSelection);
    look.m_selectionText = Qt::white;
    look.m_menuBar = {Rgb(nLight), Rgb(nDark)};
    look.m_toolBar = {Rgb(nLight), Rgb(nDark)};
    look.m_menuGutter = {Rgb(0xF1F3F6), Rgb(0xE7EAEF)};
    look.m_title = {Rgb(nLight), Rgb(nDark)};
    look.m_activeTitle = {Rgb(0xFFF0C4), Rgb(0xFFCE69)};
    look.m_tab = {Rgb(nLight), Rgb(nDark)};
    look.m_activeTab = {Qt::white, Rgb(0xF7F9FC)};
    look.m_header = {Rgb(0xF9FAFC), Rgb(nLight)};
    look.m_workspace = {Rgb(nDark).darker(112), Rgb(nDark)};
    look.m_hot = {Rgb(0xFFFBE0), Rgb(0xFFE08F)};
    look.m_pressed = {Rgb(0xFCC07A), Rgb(0xFDE2A2)};
    look.m_checked = {Rgb(0xFFE7A8), Rgb(0xFFD26E)};
    look.m_hotBorder = Rgb(0xC9A44C);
    look.m_menu = Rgb(0xFAFAFA);
    look.m_menuBarText = look.m_titleText = look.m_tabText = look.m_workspaceText = Rgb(nText);
    look.m_activeTitleText = Rgb(0x3A2A00);
    look.m_activeTabText = Rgb(0x15223A);
    look.m_bRoundButtons = true;
    return look;
}

CLook Office2007Blue() {
    return Office2007(ID_APPLOOK_OFFICE_2007_BLUE, 0xDDE9F8, 0xE7F0FC, 0xB6CEEE, 0x7C9FCB, 0x15428B,
                      0x3D74C0);
}

CLook Office2007Black() {
    CLook look =
        Office2007(ID_APPLOOK_OFFICE_2007_BLACK, 0xD3D6DB, 0x6B6F76, 0x43464B, 0x2F3136, 0xFFFFFF, 0x4A5666);
    look.m_toolBar = {Rgb(0xE4E7EB), Rgb(0xB9BEC6)};
    look.m_header = {Rgb(0xF1F2F4), Rgb(0xD5D8DD)};
    look.m_workspace = {Rgb(0x535353), Rgb(0x3A3A3A)};
    return look;
}

CLook Office2007Silver() {
    return Office2007(ID_APPLOOK_OFFICE_2007_SILVER, 0xE9EBEF, 0xF6F7F9, 0xCDD1D9, 0x9DA3AE, 0x3B4350,
                      0x6B7688);
}

CLook Office2007Aqua() {
    CLook look =
        Office2007(ID_APPLOOK_OFFICE_2007_AQUA, 0xE2F1F5, 0xF2FAFC, 0xAED9E6, 0x6BA9BC, 0x0E4A5C, 0x1F8FB0);
    look.m_hot = {Rgb(0xEAF8FC), Rgb(0x9FDDF0)};
    look.m_pressed = {Rgb(0x7CC8E0), Rgb(0xA9E0F0)};
    look.m_checked = {Rgb(0xD2F0F8), Rgb(0xA4DCEC)};
    look.m_hotBorder = Rgb(0x3B9BB8);
    look.m_activeTitle = {Rgb(0x8FD3E6), Rgb(0x4FAFCB)};
    look.m_activeTitleText = Rgb(0x06303D);
    return look;
}

CLook Windows7() {
    CLook look = VisualStudio2008();
    look.m_nId = ID_APPLOOK_WINDOWS_7;
    look.m_nTabShape = ETabShape::Glass;
    look.m_face = Rgb(0xF0F0F0);
    look.m_text = Qt::black;
    look.m_disabledText = Rgb(0x6D6D6D);
    look.m_border = Rgb(0xA0AFC3);
    look.m_selection = Rgb(0x3399FF);
    look.m_menuBar = {Rgb(0xFFFFFF), Rgb(0xDCE5F4)};
    look.m_toolBar = {Rgb(0xFBFDFF), Rgb(0xDCE7F5)};
    look.m_menu = Rgb(0xF4F4F4);
    look.m_menuGutter = {Rgb(0xF0F0F0), Rgb(0xF0F0F0)};
    look.m_title = {Rgb(0xF6F9FD), Rgb(0xDCE6F2)};
    look.m_activeTitle = {Rgb(0xDDF0FC), Rgb(0x98CBEC)};
    look.m_activeTitleText = Rgb(0x10344F);
    look.m_tab = {Rgb(0xF4F4F4), Rgb(0xDFDFDF)};
    look.m_activeTab = {Qt::white, Qt::white};
    look.m_header = {Rgb(0xFFFFFF), Rgb(0xF3F4F6)};
    look.m_workspace = {Rgb(0xB8CBE2), Rgb(0xE4EDF7)};
    look.m_hot = {Rgb(0xEBF7FD), Rgb(0xB9E1F8)};
    look.m_pressed = {Rgb(0xC4E5F6), Rgb(0x84C5E8)};
    look.m_checked = {Rgb(0xE5F4FC), Rgb(0xC4E5F6)};
    look.m_hotBorder = Rgb(0x3C7FB1);
    look.m_menuBarText = Qt::black;
    look.m_titleText = Rgb(0x1E395B);
    look.m_tabText = Rgb(0x404040);
    look.m_activeTabText = Qt::black;
    look.m_bBoldActiveTab = false;
    look.m_bRoundButtons = true;
    return look;
}

const std::array<CLook, 11>& Looks() {
    static const std::array<CLook, 11> looks = {Windows2000(),    OfficeXP(),         WindowsXP(),
                                                Office2003(),     VisualStudio2005(), VisualStudio2008(),
                                                Office2007Blue(), Office2007Black(),  Office2007Silver(),
                                                Office2007Aqua(), Windows7()};
    return looks;
}

const CLook* s_pCurrent = nullptr;

void FillGradient(QPainter& painter, const QRect& rect, const CGradient& colors, bool bVertical = true) {
    if (colors.m_from == colors.m_to) {
        painter.fillRect(rect, colors.m_from);
        return;
    }
    QLinearGradient gradient(rect.topLeft(), bVertical ? rect.bottomLeft() : rect.topRight());
    gradient.setColorAt(0, colors.m_from);
    gradient.setColorAt(1, colors.m_to);
    painter.fillRect(rect, gradient);
}

// The small signs of titles and tabs, drawn so that they are sharp at every scale.
void DrawSign(QPainter& painter, const QRect& rect, QStyle::StandardPixmap nSign, const QColor& color) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    const double fSize = std::min(rect.width(), rect.height());
    painter.translate(rect.x() + (rect.width() - fSize) / 2, rect.y() + (rect.height() - fSize) / 2);
    painter.scale(fSize / 10, fSize / 10);
    painter.setPen(QPen(color, 1.3, Qt::SolidLine, Qt::FlatCap));
    if (nSign == QStyle::SP_TitleBarNormalButton || nSign == QStyle::SP_TitleBarMaxButton) {
        painter.setPen(QPen(color, 1));
        painter.drawRect(QRectF(3.5, 1.5, 5, 5));
        painter.fillRect(QRectF(3, 1, 6, 1.8), color);
        painter.fillRect(QRectF(1, 4, 1, 5), color);
        painter.fillRect(QRectF(1, 8, 5, 1), color);
    } else {
        painter.drawLine(QPointF(1.8, 1.8), QPointF(8.2, 8.2));
        painter.drawLine(QPointF(8.2, 1.8), QPointF(1.8, 8.2));
    }
    painter.restore();
}

class CSignEngine final : public QIconEngine {
public:
    CSignEngine(QStyle::StandardPixmap nSign, const QColor& color) : m_nSign(nSign), m_color(color) {}
    void paint(QPainter* pPainter, const QRect& rect, QIcon::Mode nMode, QIcon::State) override {
        QColor color = m_color;
        if (nMode == QIcon::Disabled)
            color.setAlpha(90);
        DrawSign(*pPainter, rect, m_nSign, color);
    }
    QPixmap pixmap(const QSize& size, QIcon::Mode nMode, QIcon::State nState) override {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(0, 0), size), nMode, nState);
        return pixmap;
    }
    QIconEngine* clone() const override { return new CSignEngine(*this); }

private:
    QStyle::StandardPixmap m_nSign;
    QColor m_color;
};

bool IsSouth(QTabBar::Shape nShape) {
    return nShape == QTabBar::RoundedSouth || nShape == QTabBar::TriangularSouth;
}
bool IsNorth(QTabBar::Shape nShape) {
    return nShape == QTabBar::RoundedNorth || nShape == QTabBar::TriangularNorth;
}

constexpr int kGutter = 26; // of a menu: room for the icon

} // namespace

QPalette CLook::Palette() const {
    QPalette palette(m_face);
    palette.setColor(QPalette::Window, m_face);
    palette.setColor(QPalette::WindowText, m_text);
    palette.setColor(QPalette::Base, Qt::white);
    palette.setColor(QPalette::AlternateBase, Rgb(0xF5F7FA));
    palette.setColor(QPalette::Text, Rgb(0x14181E));
    palette.setColor(QPalette::Button, m_face);
    palette.setColor(QPalette::ButtonText, m_text);
    palette.setColor(QPalette::BrightText, Qt::white);
    palette.setColor(QPalette::Light, m_face.lighter(115));
    palette.setColor(QPalette::Midlight, m_face.lighter(107));
    palette.setColor(QPalette::Mid, m_face.darker(120));
    palette.setColor(QPalette::Dark, m_face.darker(150));
    palette.setColor(QPalette::Shadow, Rgb(0x404040));
    palette.setColor(QPalette::Highlight, m_selection);
    palette.setColor(QPalette::HighlightedText, m_selectionText);
    palette.setColor(QPalette::Link, Rgb(0x0A58C2));
    palette.setColor(QPalette::ToolTipBase, Rgb(0xFFFFE6));
    palette.setColor(QPalette::ToolTipText, Qt::black);
    palette.setColor(QPalette::PlaceholderText, Rgb(0x80868E));
    for (const QPalette::ColorRole nRole : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, nRole, m_disabledText);
    palette.setColor(QPalette::Disabled, QPalette::Base, m_face);
    // A selection stays visible in a window behind, in a calmer colour.
    const auto fnPale = [](int nPart) { return nPart + (255 - nPart) * 3 / 5; };
    palette.setColor(
        QPalette::Inactive, QPalette::Highlight,
        QColor(fnPale(m_selection.red()), fnPale(m_selection.green()), fnPale(m_selection.blue())));
    palette.setColor(QPalette::Inactive, QPalette::HighlightedText, Rgb(0x14181E));
    return palette;
}

void CLook::FillWorkspace(QPainter& painter, const QRect& rect) const {
    FillGradient(painter, rect, m_workspace);
}

const CLook& LookOf(int nId, int& nOffice2007) {
    if (nId >= ID_APPLOOK_OFFICE_2007_BLUE && nId <= ID_APPLOOK_OFFICE_2007_AQUA)
        nOffice2007 = nId;
    const CLook* pOffice2007 = nullptr;
    for (const CLook& look : Looks()) {
        if (look.m_nId == nId)
            return look;
        if (look.m_nId == nOffice2007)
            pOffice2007 = &look;
    }
    return *pOffice2007;
}

QList<int> LookIds() {
    QList<int> listIds;
    for (const CLook& look : Looks())
        listIds << look.m_nId;
    return listIds;
}

const CLook& CurrentLook() {
    int nOffice2007 = ID_APPLOOK_OFFICE_2007_BLUE;
    return s_pCurrent != nullptr ? *s_pCurrent : LookOf(ID_APPLOOK_VS_2008, nOffice2007);
}

void ApplyLook(const CLook& look) {
    s_pCurrent = &look;
    QApplication::setPalette(look.Palette());
    QApplication::setStyle(new CLookStyle(look));
    QApplication::setPalette(look.Palette());
}

bool IsActivePane(const QWidget& pane) {
    const QWidget* pFocus = QApplication::focusWidget();
    return pFocus != nullptr && pane.isAncestorOf(pFocus);
}

QColor TitleTextColor(const QWidget& pane) {
    return IsActivePane(pane) ? CurrentLook().m_activeTitleText : CurrentLook().m_titleText;
}

CLookStyle::CLookStyle(const CLook& look)
    : QProxyStyle(QStyleFactory::create(QString::fromLatin1(look.m_pszBase))), m_look(look) {
    setObjectName(QStringLiteral("carvelot-%1").arg(look.m_nId));
}

void CLookStyle::DrawButton(QPainter* pPainter, const QRect& rect, const CGradient& fill) const {
    pPainter->save();
    if (m_look.m_bRoundButtons) {
        pPainter->setRenderHint(QPainter::Antialiasing);
        QLinearGradient gradient(rect.topLeft(), rect.bottomLeft());
        gradient.setColorAt(0, fill.m_from);
        gradient.setColorAt(1, fill.m_to);
        pPainter->setPen(m_look.m_hotBorder);
        pPainter->setBrush(gradient);
        pPainter->drawRoundedRect(QRectF(rect).adjusted(0.5, 0.5, -0.5, -0.5), 2.5, 2.5);
    } else {
        FillGradient(*pPainter, rect, fill);
        pPainter->setPen(m_look.m_hotBorder);
        pPainter->setBrush(Qt::NoBrush);
        pPainter->drawRect(rect.adjusted(0, 0, -1, -1));
    }
    pPainter->restore();
}

// Filled edges stay whole at any scale.
void CLookStyle::DrawEdges(QPainter* pPainter, const QRect& rect) const {
    for (const QRect& edge :
         {QRect(rect.left(), rect.top(), rect.width(), 1), QRect(rect.left(), rect.bottom(), rect.width(), 1),
          QRect(rect.left(), rect.top(), 1, rect.height()),
          QRect(rect.right(), rect.top(), 1, rect.height())})
        pPainter->fillRect(edge, m_look.m_border);
}

void CLookStyle::drawPrimitive(PrimitiveElement nElement, const QStyleOption* pOption, QPainter* pPainter,
                               const QWidget* pWidget) const {
    const QRect rect = pOption->rect;
    switch (nElement) {
    case PE_PanelMenu:
        // The frame round a combo box's list asks for this too: nothing but its edges shows.
        if (pWidget != nullptr && pWidget->inherits("QComboBoxPrivateContainer")) {
            DrawEdges(pPainter, rect);
            return;
        }
        pPainter->fillRect(rect, m_look.m_menu);
        FillGradient(*pPainter, QRect(rect.left() + 1, rect.top() + 1, kGutter, rect.height() - 2),
                     m_look.m_menuGutter);
        return;
    case PE_FrameMenu:
        DrawEdges(pPainter, rect);
        return;
    case PE_PanelMenuBar:
        return;
    case PE_PanelToolBar:
    case PE_PanelStatusBar:
        FillGradient(*pPainter, rect, m_look.m_toolBar);
        return;
    case PE_FrameStatusBarItem:
        pPainter->fillRect(QRect(rect.left(), rect.top() + 3, 1, rect.height() - 6), m_look.m_border);
        return;
    case PE_FrameTabBarBase:
    case PE_FrameDockWidget:
        pPainter->save();
        pPainter->setPen(m_look.m_border);
        if (nElement == PE_FrameDockWidget) {
            pPainter->drawRect(rect.adjusted(0, 0, -1, -1));
        } else if (const auto* pBase = qstyleoption_cast<const QStyleOptionTabBarBase*>(pOption)) {
            const int nY = IsSouth(pBase->shape) ? rect.top() : rect.bottom();
            if (IsSouth(pBase->shape) || IsNorth(pBase->shape))
                pPainter->drawLine(rect.left(), nY, rect.right(), nY);
        }
        pPainter->restore();
        return;
    case PE_FrameTabWidget:
        pPainter->save();
        pPainter->setPen(m_look.m_border);
        pPainter->setBrush(m_look.m_activeTab.m_to);
        pPainter->drawRect(rect.adjusted(0, 0, -1, -1));
        pPainter->restore();
        return;
    case PE_IndicatorTabClose: {
        const bool bHot = (pOption->state & State_MouseOver) != 0 && (pOption->state & State_Enabled) != 0;
        const QRect box = rect.adjusted(1, 1, -1, -1);
        if (bHot)
            DrawButton(pPainter, box, (pOption->state & State_Sunken) != 0 ? m_look.m_pressed : m_look.m_hot);
        QColor color = m_look.m_activeTabText;
        if ((pOption->state & State_Selected) == 0 && !bHot)
            color = m_look.m_tabText;
        color.setAlpha(bHot ? 255 : 190);
        DrawSign(*pPainter, box.adjusted(3, 3, -3, -3), SP_TitleBarCloseButton, bHot ? m_look.m_text : color);
        return;
    }
    case PE_IndicatorToolBarSeparator: {
        const bool bHorizontal = (pOption->state & State_Horizontal) != 0;
        QColor light(255, 255, 255, 150);
        if (bHorizontal) {
            const int nX = rect.center().x();
            pPainter->fillRect(QRect(nX, rect.top() + 3, 1, rect.height() - 6), m_look.m_border);
            pPainter->fillRect(QRect(nX + 1, rect.top() + 4, 1, rect.height() - 6), light);
        } else {
            const int nY = rect.center().y();
            pPainter->fillRect(QRect(rect.left() + 3, nY, rect.width() - 6, 1), m_look.m_border);
            pPainter->fillRect(QRect(rect.left() + 4, nY + 1, rect.width() - 6, 1), light);
        }
        return;
    }
    case PE_IndicatorToolBarHandle: {
        const bool bHorizontal = (pOption->state & State_Horizontal) != 0;
        const int nLength = bHorizontal ? rect.height() : rect.width();
        for (int n = 5; n + 2 <= nLength - 4; n += 4) {
            const QPoint at = bHorizontal ? QPoint(rect.left() + 3, rect.top() + n)
                                          : QPoint(rect.left() + n, rect.top() + 3);
            pPainter->fillRect(QRect(at + QPoint(1, 1), QSize(2, 2)), QColor(255, 255, 255, 190));
            pPainter->fillRect(QRect(at, QSize(2, 2)), m_look.m_border);
        }
        return;
    }
    case PE_PanelButtonTool: {
        const bool bSunken = (pOption->state & State_Sunken) != 0;
        const bool bOn = (pOption->state & State_On) != 0;
        const bool bHot = (pOption->state & State_MouseOver) != 0 && (pOption->state & State_Enabled) != 0;
        if (m_look.m_bRaisedButtons) {
            if (bSunken || bOn || bHot) {
                pPainter->fillRect(rect, bOn && !bHot ? m_look.m_checked.m_from : m_look.m_face);
                qDrawShadeRect(pPainter, rect, pOption->palette, bSunken || bOn, 1);
            }
            return;
        }
        if (bSunken)
            DrawButton(pPainter, rect, m_look.m_pressed);
        else if (bHot)
            DrawButton(pPainter, rect, bOn ? m_look.m_pressed : m_look.m_hot);
        else if (bOn)
            DrawButton(pPainter, rect, m_look.m_checked);
        else if ((pOption->state & State_HasFocus) != 0)
            DrawButton(pPainter, rect, m_look.m_hot);
        return;
    }
    case PE_IndicatorDockWidgetResizeHandle:
        pPainter->fillRect(rect, m_look.m_face);
        return;
    default:
        break;
    }
    QProxyStyle::drawPrimitive(nElement, pOption, pPainter, pWidget);
}

void CLookStyle::drawControl(ControlElement nElement, const QStyleOption* pOption, QPainter* pPainter,
                             const QWidget* pWidget) const {
    const QRect rect = pOption->rect;
    switch (nElement) {
    case CE_MenuBarEmptyArea:
        FillGradient(*pPainter, rect, m_look.m_menuBar);
        return;
    case CE_MenuBarItem: {
        const auto* pItem = qstyleoption_cast<const QStyleOptionMenuItem*>(pOption);
        if (pItem == nullptr)
            break;
        FillGradient(*pPainter,
                     pItem->menuRect.isValid()
                         ? QRect(rect.x(), pItem->menuRect.y(), rect.width(), pItem->menuRect.height())
                         : rect,
                     m_look.m_menuBar);
        const bool bOpen = (pItem->state & State_Sunken) != 0;
        const bool bHot = (pItem->state & State_Selected) != 0;
        QColor text = m_look.m_menuBarText;
        if (bOpen || bHot) {
            if (m_look.m_bRaisedButtons) {
                qDrawShadeRect(pPainter, rect, pOption->palette, bOpen, 1);
            } else if (bOpen) {
                pPainter->fillRect(rect, m_look.m_menu);
                pPainter->save();
                pPainter->setPen(m_look.m_border);
                pPainter->drawRect(rect.adjusted(0, 0, -1, 0));
                pPainter->restore();
                text = m_look.m_text;
            } else {
                DrawButton(pPainter, rect, m_look.m_hot);
                text = m_look.m_text;
            }
        }
        if ((pItem->state & State_Enabled) == 0)
            text = m_look.m_disabledText;
        pPainter->save();
        pPainter->setPen(text);
        const int nMnemonic = proxy()->styleHint(SH_UnderlineShortcut, pOption, pWidget) != 0
                                  ? Qt::TextShowMnemonic
                                  : Qt::TextHideMnemonic;
        pPainter->drawText(rect, Qt::AlignCenter | nMnemonic | Qt::TextSingleLine, pItem->text);
        pPainter->restore();
        return;
    }
    case CE_MenuItem:
        DrawMenuItem(pOption, pPainter, pWidget);
        return;
    case CE_MenuEmptyArea:
        return;
    case CE_ToolBar: {
        const auto* pBar = qstyleoption_cast<const QStyleOptionToolBar*>(pOption);
        const bool bHorizontal = pBar == nullptr || (pBar->state & State_Horizontal) != 0;
        FillGradient(*pPainter, rect, m_look.m_toolBar, bHorizontal);
        pPainter->fillRect(
            bHorizontal ? QRect(rect.left(), rect.bottom(), rect.width(), 1)
                        : QRect(rect.right(), rect.top(), 1, rect.height()),
            QColor(m_look.m_border.red(), m_look.m_border.green(), m_look.m_border.blue(), 110));
        return;
    }
    case CE_TabBarTabShape:
        DrawTab(pOption, pPainter, pWidget);
        return;
    case CE_TabBarTabLabel:
        DrawTabLabel(pOption, pPainter, pWidget);
        return;
    case CE_DockWidgetTitle:
        DrawTitle(pOption, pPainter, pWidget);
        return;
    case CE_Header:
        DrawHeaderWithTitle(pOption, pPainter, pWidget);
        return;
    case CE_HeaderSection:
        DrawHeader(pOption, pPainter);
        return;
    case CE_HeaderEmptyArea:
        FillGradient(*pPainter, rect, m_look.m_header);
        pPainter->fillRect(QRect(rect.left(), rect.bottom(), rect.width(), 1), m_look.m_border);
        return;
    case CE_HeaderLabel: {
        // The margin is one at the sides: above and below, the text takes what room there is.
        QStyleOptionHeaderV2 label;
        if (const auto* pHeader = qstyleoption_cast<const QStyleOptionHeaderV2*>(pOption))
            label = *pHeader;
        else if (const auto* pPlain = qstyleoption_cast<const QStyleOptionHeader*>(pOption))
            static_cast<QStyleOptionHeader&>(label) = *pPlain;
        const int nMargin = pixelMetric(PM_HeaderMargin, pOption, pWidget);
        label.rect.adjust(0, -nMargin, 0, nMargin);
        QProxyStyle::drawControl(nElement, &label, pPainter, pWidget);
        return;
    }
    case CE_PushButton:
        QProxyStyle::drawControl(nElement, pOption, pPainter, pWidget);
        // A default button has a frame as strong as that of the focus: the focus shows inside. The old look
        // has a mark of its own.
        if ((pOption->state & State_HasFocus) != 0 && (pOption->state & State_KeyboardFocusChange) != 0 &&
            !m_look.m_bRaisedButtons) {
            pPainter->save();
            pPainter->setPen(QPen(m_look.m_text, 1, Qt::DotLine));
            pPainter->setBrush(Qt::NoBrush);
            pPainter->drawRect(rect.adjusted(3, 3, -4, -4));
            pPainter->restore();
        }
        return;
    case CE_ToolButtonLabel: {
        // The toolkit's buttons in a title; their own icons know nothing of the focus.
        const auto* pButton = qstyleoption_cast<const QStyleOptionToolButton*>(pOption);
        if (pButton == nullptr || pWidget == nullptr || !pWidget->inherits("QDockWidgetTitleButton"))
            break;
        QStyleOptionToolButton label = *pButton;
        const bool bClose = pWidget->objectName() == QLatin1String("qt_dockwidget_closebutton");
        label.icon = QIcon(new CSignEngine(bClose ? SP_TitleBarCloseButton : SP_TitleBarNormalButton,
                                           TitleTextColor(*pWidget->parentWidget())));
        QProxyStyle::drawControl(nElement, &label, pPainter, pWidget);
        return;
    }
    case CE_Splitter:
        pPainter->fillRect(rect, m_look.m_face);
        return;
    default:
        break;
    }
    QProxyStyle::drawControl(nElement, pOption, pPainter, pWidget);
}

void CLookStyle::DrawMenuItem(const QStyleOption* pOption, QPainter* pPainter, const QWidget* pWidget) const {
    const auto* pItem = qstyleoption_cast<const QStyleOptionMenuItem*>(pOption);
    if (pItem == nullptr)
        return;
    const QRect rect = pItem->rect;
    pPainter->save();
    if (pItem->menuItemType == QStyleOptionMenuItem::Separator) {
        pPainter->fillRect(
            QRect(rect.left() + kGutter + 6, rect.center().y(), rect.width() - kGutter - 8, 1),
            QColor(m_look.m_border.red(), m_look.m_border.green(), m_look.m_border.blue(), 140));
        pPainter->restore();
        return;
    }
    const bool bEnabled = (pItem->state & State_Enabled) != 0;
    const bool bSelected = (pItem->state & State_Selected) != 0;
    QColor text = bEnabled ? m_look.m_text : m_look.m_disabledText;
    if (bSelected) {
        if (m_look.m_bRaisedButtons) {
            pPainter->fillRect(rect, bEnabled ? m_look.m_selection : m_look.m_face.darker(106));
            text = bEnabled ? m_look.m_selectionText : m_look.m_disabledText;
        } else if (bEnabled) {
            DrawButton(pPainter, rect.adjusted(1, 0, -1, 0), m_look.m_hot);
        } else {
            pPainter->setPen(m_look.m_border);
            pPainter->drawRect(rect.adjusted(1, 0, -2, -1));
        }
    }
    const QRect box(rect.left() + (kGutter - 20) / 2, rect.center().y() - 9, 20, 20);
    const bool bChecked = pItem->checkType != QStyleOptionMenuItem::NotCheckable && pItem->checked;
    if (bChecked && !m_look.m_bRaisedButtons)
        DrawButton(pPainter, box, m_look.m_checked);
    if (bChecked && (pItem->icon.isNull() || pItem->checkType == QStyleOptionMenuItem::Exclusive)) {
        pPainter->setRenderHint(QPainter::Antialiasing);
        const QPointF center = QRectF(box).center();
        if (pItem->checkType == QStyleOptionMenuItem::Exclusive) {
            pPainter->setPen(Qt::NoPen);
            pPainter->setBrush(text);
            pPainter->drawEllipse(center, 3.2, 3.2);
        } else {
            pPainter->setPen(QPen(text, 1.8));
            pPainter->drawPolyline(
                QPolygonF({center + QPointF(-4, 0), center + QPointF(-1.2, 3), center + QPointF(4, -3.4)}));
        }
        pPainter->setRenderHint(QPainter::Antialiasing, false);
    } else if (!pItem->icon.isNull()) {
        const QRect icon(box.center() - QPoint(7, 7), QSize(16, 16));
        pItem->icon.paint(pPainter, icon, Qt::AlignCenter, bEnabled ? QIcon::Normal : QIcon::Disabled);
    }

    const QRect label = rect.adjusted(kGutter + 8, 0, -22, 0);
    const qsizetype nTab = pItem->text.indexOf(QLatin1Char('\t'));
    const int nMnemonic = proxy()->styleHint(SH_UnderlineShortcut, pOption, pWidget) != 0
                              ? Qt::TextShowMnemonic
                              : Qt::TextHideMnemonic;
    pPainter->setFont(pItem->font);
    pPainter->setPen(text);
    pPainter->drawText(label,
                       int{Qt::AlignLeft} | int{Qt::AlignVCenter} | nMnemonic | int{Qt::TextSingleLine},
                       nTab < 0 ? pItem->text : pItem->text.left(nTab));
    if (nTab >= 0)
        pPainter->drawText(label, Qt::AlignRight | Qt::AlignVCenter | Qt::TextSingleLine,
                           pItem->text.mid(nTab + 1));
    if (pItem->menuItemType == QStyleOptionMenuItem::SubMenu) {
        pPainter->setRenderHint(QPainter::Antialiasing);
        const double fX = rect.right() - 12;
        const double fY = rect.top() + rect.height() / 2.0;
        pPainter->setPen(Qt::NoPen);
        pPainter->setBrush(text);
        pPainter->drawPolygon(QPolygonF({{fX, fY - 4}, {fX + 4, fY}, {fX, fY + 4}}));
    }
    pPainter->restore();
}

void CLookStyle::DrawTab(const QStyleOption* pOption, QPainter* pPainter, const QWidget*) const {
    const auto* pTab = qstyleoption_cast<const QStyleOptionTab*>(pOption);
    if (pTab == nullptr)
        return;
    const bool bSelected = (pTab->state & State_Selected) != 0;
    const bool bHot = (pTab->state & State_MouseOver) != 0 && (pTab->state & State_Enabled) != 0;
    pPainter->save();
    // Drawn as a tab above its page; one below is the same turned over.
    QRectF rect(pTab->rect);
    if (IsSouth(pTab->shape)) {
        pPainter->translate(0, rect.top() + rect.bottom());
        pPainter->scale(1, -1);
    } else if (!IsNorth(pTab->shape)) {
        pPainter->fillRect(rect, bSelected ? m_look.m_activeTab.m_from : m_look.m_tab.m_from);
        pPainter->setPen(m_look.m_border);
        pPainter->drawRect(rect.adjusted(0, 0, -1, -1));
        pPainter->restore();
        return;
    }
    const CGradient fill = bSelected ? m_look.m_activeTab
                           : bHot    ? CGradient{m_look.m_tab.m_from.lighter(104), m_look.m_activeTab.m_to}
                                     : m_look.m_tab;
    const double fTop = rect.top() + (bSelected ? 1 : 3);
    const double fLeft = rect.left() + 0.5;
    const double fRight = rect.right() - 0.5;
    const double fBottom = rect.bottom();
    QPainterPath path;
    switch (m_look.m_nTabShape) {
    case ETabShape::Classic:
        path.moveTo(fLeft, fBottom);
        path.lineTo(fLeft, fTop + 2.5);
        path.lineTo(fLeft + 2, fTop + 0.5);
        path.lineTo(fRight - 2, fTop + 0.5);
        path.lineTo(fRight, fTop + 2.5);
        path.lineTo(fRight, fBottom);
        break;
    case ETabShape::Flat:
        path.moveTo(fLeft, fBottom);
        path.lineTo(fLeft, fTop + 0.5);
        path.lineTo(fRight, fTop + 0.5);
        path.lineTo(fRight, fBottom);
        break;
    case ETabShape::Themed:
    case ETabShape::Glass:
    case ETabShape::Rounded: {
        const double fRadius = m_look.m_nTabShape == ETabShape::Rounded ? 4.5 : 2.5;
        path.moveTo(fLeft, fBottom);
        path.lineTo(fLeft, fTop + 0.5 + fRadius);
        path.quadTo(fLeft, fTop + 0.5, fLeft + fRadius, fTop + 0.5);
        path.lineTo(fRight - fRadius, fTop + 0.5);
        path.quadTo(fRight, fTop + 0.5, fRight, fTop + 0.5 + fRadius);
        path.lineTo(fRight, fBottom);
        break;
    }
    case ETabShape::Slanted: {
        const double fSlant = std::min(10.0, rect.width() / 4);
        path.moveTo(fLeft, fBottom);
        path.lineTo(fLeft + fSlant, fTop + 2);
        path.quadTo(fLeft + fSlant + 1, fTop + 0.5, fLeft + fSlant + 3, fTop + 0.5);
        path.lineTo(fRight - 2, fTop + 0.5);
        path.lineTo(fRight, fTop + 2.5);
        path.lineTo(fRight, fBottom);
        break;
    }
    case ETabShape::OneNote: {
        const double fSlant = std::min(9.0, rect.width() / 4);
        path.moveTo(fLeft, fBottom);
        path.lineTo(fLeft, fTop + 3);
        path.quadTo(fLeft, fTop + 0.5, fLeft + 2.5, fTop + 0.5);
        path.lineTo(fRight - fSlant - 3, fTop + 0.5);
        path.cubicTo(fRight - fSlant, fTop + 0.5, fRight - fSlant + 2, fTop + 2.5, fRight - fSlant + 4,
                     fTop + 6);
        path.lineTo(fRight, fBottom);
        break;
    }
    }
    QLinearGradient gradient(0, fTop, 0, fBottom);
    gradient.setColorAt(0, fill.m_from);
    if (m_look.m_nTabShape == ETabShape::Glass && !bSelected) {
        gradient.setColorAt(0.49, fill.m_from.darker(102));
        gradient.setColorAt(0.5, fill.m_to);
    }
    gradient.setColorAt(1, fill.m_to);
    const bool bCurved = m_look.m_nTabShape != ETabShape::Flat && m_look.m_nTabShape != ETabShape::Classic;
    pPainter->setRenderHint(QPainter::Antialiasing, bCurved);
    pPainter->fillPath(path, gradient);
    pPainter->setPen(QPen(m_look.m_border, 1));
    pPainter->drawPath(path);
    pPainter->setRenderHint(QPainter::Antialiasing, false);
    if (m_look.m_nTabShape == ETabShape::Themed && (bSelected || bHot))
        pPainter->fillRect(QRectF(rect.left() + 1, fTop, rect.width() - 2, 3), Rgb(0xFFB93B));
    if (m_look.m_nTabShape == ETabShape::Classic) {
        pPainter->fillRect(QRectF(rect.left() + 1, fTop + 3, 1, fBottom - fTop - 3), Qt::white);
        pPainter->fillRect(QRectF(rect.left() + 3, fTop + 1, rect.width() - 6, 1), Qt::white);
    }
    if (bSelected) // the page and its tab are one
        pPainter->fillRect(QRectF(rect.left() + 1, fBottom - 1, rect.width() - 2, 2), fill.m_to);
    pPainter->restore();
}

void CLookStyle::DrawTabLabel(const QStyleOption* pOption, QPainter* pPainter, const QWidget* pWidget) const {
    const auto* pTab = qstyleoption_cast<const QStyleOptionTab*>(pOption);
    if (pTab == nullptr)
        return;
    if (!IsNorth(pTab->shape) && !IsSouth(pTab->shape)) {
        QProxyStyle::drawControl(CE_TabBarTabLabel, pOption, pPainter, pWidget);
        return;
    }
    const bool bSelected = (pTab->state & State_Selected) != 0;
    pPainter->save();
    QRect rect = subElementRect(SE_TabBarTabText, pOption, pWidget);
    if (!pTab->icon.isNull()) {
        const QRect icon(pTab->rect.left() + (m_look.m_nTabShape == ETabShape::Slanted ? 15 : 8),
                         rect.center().y() - 7, 16, 16);
        pTab->icon.paint(pPainter, icon);
        rect.setLeft(icon.right() + 6);
    }
    pPainter->setPen((pTab->state & State_Enabled) == 0 ? m_look.m_disabledText
                     : bSelected                        ? m_look.m_activeTabText
                                                        : m_look.m_tabText);
    QFont font = pPainter->font();
    if (bSelected && m_look.m_bBoldActiveTab && (pWidget == nullptr || !pWidget->property("calm").toBool()))
        font.setBold(true);
    // The panes' tabs share a narrow room, with none for the bold face: the whole name tells more.
    if (IsSouth(pTab->shape) && QFontMetrics(font).horizontalAdvance(pTab->text) > rect.width())
        font.setBold(false);
    pPainter->setFont(font);
    const QFontMetrics metrics = pPainter->fontMetrics();
    if (const auto* pBar = qobject_cast<const CTabBar*>(pWidget))
        pPainter->drawText(rect, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                           pBar->ShortText(pTab->tabIndex, metrics, rect.width()));
    else
        pPainter->drawText(
            rect,
            Qt::AlignLeft | Qt::AlignAbsolute | Qt::AlignVCenter | Qt::TextSingleLine | Qt::TextHideMnemonic,
            metrics.elidedText(pTab->text, Qt::ElideMiddle, rect.width(), Qt::TextShowMnemonic));
    pPainter->restore();
    if ((pTab->state & State_HasFocus) != 0) {
        QStyleOptionFocusRect focus;
        focus.QStyleOption::operator=(*pTab);
        focus.rect = rect.adjusted(-2, 2, 2, -2);
        QProxyStyle::drawPrimitive(PE_FrameFocusRect, &focus, pPainter, pWidget);
    }
}

void CLookStyle::DrawTitle(const QStyleOption* pOption, QPainter* pPainter, const QWidget* pWidget) const {
    const auto* pTitle = qstyleoption_cast<const QStyleOptionDockWidget*>(pOption);
    if (pTitle == nullptr)
        return;
    const auto* pDock = qobject_cast<const QDockWidget*>(pWidget);
    const bool bActive = pDock != nullptr && IsActivePane(*pDock);
    pPainter->save();
    const QRect rect = pTitle->rect;
    FillGradient(*pPainter, rect, bActive ? m_look.m_activeTitle : m_look.m_title,
                 m_look.m_nId != ID_APPLOOK_WINDOWS_2000);
    pPainter->setPen(m_look.m_border);
    pPainter->drawRect(rect.adjusted(0, 0, -1, -1));
    constexpr int kMargin = 5;
    const int nPin = pDock != nullptr ? 22 : 0;
    const bool bMirrored = pTitle->direction == Qt::RightToLeft;
    const QRect label = subElementRect(SE_DockWidgetTitleBarText, pOption, pWidget)
                            .adjusted(bMirrored ? nPin : kMargin, 0, bMirrored ? -kMargin : -nPin, 0);
    pPainter->setPen(bActive ? m_look.m_activeTitleText : m_look.m_titleText);
    pPainter->drawText(label, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                       pPainter->fontMetrics().elidedText(pTitle->title, Qt::ElideRight, label.width()));
    pPainter->restore();
}

// The toolkit puts the arrow of a sorted column beside the title and cuts that off; here it stands above the
// title's middle.
void CLookStyle::DrawHeaderWithTitle(const QStyleOption* pOption, QPainter* pPainter,
                                     const QWidget* pWidget) const {
    QStyleOptionHeaderV2 option;
    if (const auto* pNewer = qstyleoption_cast<const QStyleOptionHeaderV2*>(pOption))
        option = *pNewer;
    else if (const auto* pHeader = qstyleoption_cast<const QStyleOptionHeader*>(pOption))
        static_cast<QStyleOptionHeader&>(option) = *pHeader;
    const QRect rect = pOption->rect;
    pPainter->save();
    pPainter->setClipRect(rect);
    drawControl(CE_HeaderSection, &option, pPainter, pWidget);
    const int nMargin = pixelMetric(PM_HeaderMargin, pOption, pWidget);
    option.rect = rect.adjusted(nMargin, nMargin + 1, -nMargin, -nMargin + 1);
    drawControl(CE_HeaderLabel, &option, pPainter, pWidget);
    if (option.sortIndicator != QStyleOptionHeader::None) {
        const QRectF arrow(rect.center().x() - 3, rect.top() + 1, 7, 3.5);
        // The toolkit says "down" for what ascends.
        const bool bUp = option.sortIndicator == QStyleOptionHeader::SortDown;
        const double fBase = bUp ? arrow.bottom() : arrow.top();
        const double fTip = bUp ? arrow.top() : arrow.bottom();
        pPainter->setRenderHint(QPainter::Antialiasing);
        pPainter->setPen(Qt::NoPen);
        pPainter->setBrush(m_look.m_text);
        pPainter->drawPolygon(
            QPolygonF({{arrow.left(), fBase}, {arrow.right(), fBase}, {arrow.center().x(), fTip}}));
    }
    pPainter->restore();
}

void CLookStyle::DrawHeader(const QStyleOption* pOption, QPainter* pPainter) const {
    const QRect rect = pOption->rect;
    const bool bEnabled = (pOption->state & State_Enabled) != 0;
    const bool bHot = bEnabled && (pOption->state & State_MouseOver) != 0;
    if (m_look.m_bRaisedButtons) {
        pPainter->fillRect(rect, m_look.m_face);
        qDrawShadePanel(pPainter, rect, pOption->palette, (pOption->state & State_Sunken) != 0, 1);
        return;
    }
    FillGradient(*pPainter, rect,
                 (pOption->state & State_Sunken) != 0 ? m_look.m_pressed
                 : bHot                               ? m_look.m_hot
                                                      : m_look.m_header);
    QColor line = m_look.m_border;
    pPainter->fillRect(QRect(rect.left(), rect.bottom(), rect.width(), 1), line);
    line.setAlpha(130);
    pPainter->fillRect(QRect(rect.right(), rect.top() + 3, 1, rect.height() - 6), line);
}

int CLookStyle::pixelMetric(PixelMetric nMetric, const QStyleOption* pOption, const QWidget* pWidget) const {
    switch (nMetric) {
    case PM_ToolBarIconSize:
    case PM_SmallIconSize:
    case PM_TabBarIconSize:
    case PM_ListViewIconSize:
        return 16;
    case PM_HeaderMargin:
        return 6;
    case PM_ToolBarItemSpacing:
        return 1;
    case PM_ToolBarItemMargin:
        return 2;
    case PM_ToolBarHandleExtent:
        return 9;
    case PM_ToolBarSeparatorExtent:
        return 7;
    case PM_ToolBarFrameWidth:
        return 0;
    case PM_ToolBarExtensionExtent:
        return 14;
    case PM_MenuPanelWidth:
        return 1;
    case PM_MenuHMargin:
        return 0;
    case PM_MenuVMargin:
        return 1;
    case PM_MenuBarHMargin:
        return 4;
    case PM_MenuBarVMargin:
        return 2;
    case PM_MenuBarPanelWidth:
        return 0;
    case PM_MenuBarItemSpacing:
        return 0;
    case PM_TabBarTabOverlap:
        return 0;
    case PM_TabBarTabHSpace:
        return m_look.m_nTabShape == ETabShape::Slanted || m_look.m_nTabShape == ETabShape::OneNote ? 26 : 18;
    case PM_TabBarTabVSpace:
        return 9;
    case PM_TabBarBaseOverlap:
        return 1;
    case PM_TabBarTabShiftVertical:
    case PM_TabBarTabShiftHorizontal:
        return 0;
    case PM_TabCloseIndicatorWidth:
    case PM_TabCloseIndicatorHeight:
        return 18;
    case PM_DockWidgetTitleMargin:
        return 3;
    case PM_DockWidgetTitleBarButtonMargin:
        return 2;
    case PM_DockWidgetSeparatorExtent:
    case PM_SplitterWidth:
        return 5;
    case PM_DockWidgetFrameWidth:
        return 1;
    case PM_TitleBarButtonIconSize:
    case PM_DockWidgetHandleExtent:
        return 12;
    default:
        return QProxyStyle::pixelMetric(nMetric, pOption, pWidget);
    }
}

QPixmap CLookStyle::generatedIconPixmap(QIcon::Mode nMode, const QPixmap& pixmap,
                                        const QStyleOption* pOption) const {
    return nMode == QIcon::Selected ? pixmap : QProxyStyle::generatedIconPixmap(nMode, pixmap, pOption);
}

int CLookStyle::styleHint(StyleHint nHint, const QStyleOption* pOption, const QWidget* pWidget,
                          QStyleHintReturn* pReturn) const {
    switch (nHint) {
    case SH_TabBar_Alignment:
        return Qt::AlignLeft;
    case SH_TabBar_CloseButtonPosition:
        return QTabBar::RightSide;
    case SH_TabBar_PreferNoArrows:
        return 0;
    case SH_ItemView_ActivateItemOnSingleClick:
        return 0;
    case SH_DockWidget_ButtonsHaveFrame:
        return 0;
    case SH_EtchDisabledText:
    case SH_DialogButtonBox_ButtonsHaveIcons:
        return 0;
    case SH_MenuBar_AltKeyNavigation:
        return 1;
    case SH_Menu_Mask:
        return 0;
    case SH_ItemView_ShowDecorationSelected:
        return 0;
    default:
        return QProxyStyle::styleHint(nHint, pOption, pWidget, pReturn);
    }
}

QSize CLookStyle::sizeFromContents(ContentsType nType, const QStyleOption* pOption, const QSize& size,
                                   const QWidget* pWidget) const {
    if (nType == CT_MenuItem) {
        const auto* pItem = qstyleoption_cast<const QStyleOptionMenuItem*>(pOption);
        if (pItem != nullptr && pItem->menuItemType == QStyleOptionMenuItem::Separator)
            return {10, 5};
        const int nHeight = std::max(22, (pItem != nullptr ? QFontMetrics(pItem->font).height() : 14) + 7);
        const bool bShortcut = pItem != nullptr && pItem->text.contains(QLatin1Char('\t'));
        return {size.width() + kGutter + 8 + 26 + (bShortcut ? 20 : 0), nHeight};
    }
    if (nType == CT_MenuBarItem)
        return {size.width() + 14, std::max(size.height() + 6, 22)};
    QSize result = QProxyStyle::sizeFromContents(nType, pOption, size, pWidget);
    if (nType == CT_TabBarTab) {
        const auto* pTab = qstyleoption_cast<const QStyleOptionTab*>(pOption);
        if (pTab != nullptr && m_look.m_bBoldActiveTab) {
            QFont bold = pWidget != nullptr ? pWidget->font() : QApplication::font();
            bold.setBold(true);
            result.rwidth() += std::max(0, QFontMetrics(bold).horizontalAdvance(pTab->text) -
                                               pTab->fontMetrics.horizontalAdvance(pTab->text));
        }
    }
    if (nType == CT_PushButton) {
        const auto* pButton = qstyleoption_cast<const QStyleOptionButton*>(pOption);
        constexpr int kAir = 20; // beside the text
        if (pButton != nullptr && !pButton->text.isEmpty())
            result.setWidth(std::max(result.width(), size.width() + kAir));
    }
    if (nType == CT_ItemViewItem)
        result.setHeight(std::max(result.height(), pOption->fontMetrics.height() + 4));
    if (nType == CT_HeaderSection)
        result.setHeight(pOption->fontMetrics.height() + 7);
    return result;
}

QRect CLookStyle::subElementRect(SubElement nElement, const QStyleOption* pOption,
                                 const QWidget* pWidget) const {
    QRect rect = QProxyStyle::subElementRect(nElement, pOption, pWidget);
    if (nElement == SE_TabBarTabText) {
        const auto* pTab = qstyleoption_cast<const QStyleOptionTab*>(pOption);
        if (pTab != nullptr && (IsNorth(pTab->shape) || IsSouth(pTab->shape))) {
            const int nLead = m_look.m_nTabShape == ETabShape::Slanted ? 16 : 9;
            rect = pTab->rect.adjusted(nLead, IsSouth(pTab->shape) ? -1 : 2, -5, 0);
            if (!pTab->rightButtonSize.isEmpty())
                rect.adjust(
                    0, 0, -pTab->rightButtonSize.width() - (m_look.m_nTabShape == ETabShape::OneNote ? 8 : 4),
                    0);
        }
    }
    if (nElement == SE_TabBarTabRightButton && m_look.m_nTabShape == ETabShape::OneNote)
        rect.translate(-5, 1);
    return rect;
}

QIcon CLookStyle::standardIcon(StandardPixmap nIcon, const QStyleOption* pOption,
                               const QWidget* pWidget) const {
    if (nIcon == SP_TitleBarCloseButton || nIcon == SP_TitleBarNormalButton || nIcon == SP_TitleBarMaxButton)
        return QIcon(new CSignEngine(nIcon, m_look.m_titleText));
    return QProxyStyle::standardIcon(nIcon, pOption, pWidget);
}

} // namespace carvelot
