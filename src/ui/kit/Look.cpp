#include "ui/kit/Look.h"

#include "settings/Commands.h"
#include "ui/kit/LookPainting.h"
#include "ui/kit/LookStyle.h"

#include <QApplication>

namespace carvelot {

namespace {

const CLook* s_pCurrent = nullptr;

} // namespace

QPalette CLook::Palette() const {
    QPalette palette(m_face);
    palette.setColor(QPalette::Window, m_face);
    palette.setColor(QPalette::WindowText, m_text);
    palette.setColor(QPalette::Base, Qt::white);
    palette.setColor(QPalette::AlternateBase, QColor(0xF5, 0xF7, 0xFA));
    palette.setColor(QPalette::Text, QColor(0x14, 0x18, 0x1E));
    palette.setColor(QPalette::Button, m_face);
    palette.setColor(QPalette::ButtonText, m_text);
    palette.setColor(QPalette::BrightText, Qt::white);
    palette.setColor(QPalette::Light, m_face.lighter(115));
    palette.setColor(QPalette::Midlight, m_face.lighter(107));
    palette.setColor(QPalette::Mid, m_face.darker(120));
    palette.setColor(QPalette::Dark, m_face.darker(150));
    palette.setColor(QPalette::Shadow, QColor(0x40, 0x40, 0x40));
    palette.setColor(QPalette::Highlight, m_selection);
    palette.setColor(QPalette::HighlightedText, m_selectionText);
    palette.setColor(QPalette::Link, QColor(0x0A, 0x58, 0xC2));
    palette.setColor(QPalette::ToolTipBase, QColor(0xFF, 0xFF, 0xE6));
    palette.setColor(QPalette::ToolTipText, Qt::black);
    palette.setColor(QPalette::PlaceholderText, QColor(0x80, 0x86, 0x8E));
    for (const QPalette::ColorRole nRole : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, nRole, m_disabledText);
    palette.setColor(QPalette::Disabled, QPalette::Base, m_face);
    // A selection stays visible in a window behind, in a calmer colour.
    const auto fnPale = [](int nPart) { return nPart + (255 - nPart) * 3 / 5; };
    palette.setColor(
        QPalette::Inactive, QPalette::Highlight,
        QColor(fnPale(m_selection.red()), fnPale(m_selection.green()), fnPale(m_selection.blue())));
    palette.setColor(QPalette::Inactive, QPalette::HighlightedText, QColor(0x14, 0x18, 0x1E));
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

} // namespace carvelot
