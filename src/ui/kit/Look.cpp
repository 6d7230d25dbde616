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
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        palette.setColor(QPalette::Disabled, role, m_disabledText);
    }
    palette.setColor(QPalette::Disabled, QPalette::Base, m_face);
    // A selection stays visible in a window behind, in a calmer colour.
    const auto paler = [](int part) { return part + (255 - part) * 3 / 5; };
    palette.setColor(QPalette::Inactive, QPalette::Highlight,
                     QColor(paler(m_selection.red()), paler(m_selection.green()), paler(m_selection.blue())));
    palette.setColor(QPalette::Inactive, QPalette::HighlightedText, QColor(0x14, 0x18, 0x1E));
    return palette;
}

void CLook::FillWorkspace(QPainter& painter, const QRect& rect) const {
    FillGradient(painter, rect, m_workspace);
}

const CLook& LookOf(int id, int& office2007) {
    if (id >= ID_APPLOOK_OFFICE_2007_BLUE && id <= ID_APPLOOK_OFFICE_2007_AQUA) {
        office2007 = id;
    }
    const CLook* ofOffice2007 = nullptr;
    for (const CLook& look : Looks()) {
        if (look.m_nId == id) {
            return look;
        }
        if (look.m_nId == office2007) {
            ofOffice2007 = &look;
        }
    }
    return *ofOffice2007;
}

QList<int> LookIds() {
    QList<int> ids;
    for (const CLook& look : Looks()) {
        ids << look.m_nId;
    }
    return ids;
}

const CLook& CurrentLook() {
    int office2007 = ID_APPLOOK_OFFICE_2007_BLUE;
    return s_pCurrent != nullptr ? *s_pCurrent : LookOf(ID_APPLOOK_VS_2008, office2007);
}

void ApplyLook(const CLook& look) {
    s_pCurrent = &look;
    QApplication::setPalette(look.Palette());
    QApplication::setStyle(new CLookStyle(look));
    QApplication::setPalette(look.Palette());
}

} // namespace carvelot
