#include "explore/pictures/SvgCanvas.h"

#include "text/TextColumns.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace carvelot {

namespace {

// With two places at most, whatever the locale.
void AppendNumber(std::string& out, double number) {
    std::array<char, 64> digits{};
    const auto [end, error] =
        std::to_chars(digits.data(), digits.data() + digits.size(), number, std::chars_format::fixed, 2);
    std::string_view text(digits.data(),
                          error == std::errc() ? static_cast<std::size_t>(end - digits.data()) : 0);
    text = TrimRight(text, "0");
    out.append(TrimRight(text, "."));
}

void AppendAttribute(std::string& out, std::string_view name, double value) {
    out.append(" ").append(name).append("=\"");
    AppendNumber(out, value);
    out.append("\"");
}

// XML knows no control characters; what is no Unicode becomes U+FFFD.
void AppendEscaped(std::string& out, std::string_view text) {
    for (const char c : WithReplacements(text)) {
        switch (c) {
        case '&':
            out.append("&amp;");
            break;
        case '<':
            out.append("&lt;");
            break;
        case '>':
            out.append("&gt;");
            break;
        case '"':
            out.append("&quot;");
            break;
        default:
            out.push_back(static_cast<unsigned char>(c) < 0x20 || c == 0x7F ? ' ' : c);
        }
    }
}

// A byte of UTF-8 that begins no character.
bool IsContinuation(char c) { return (static_cast<unsigned char>(c) & 0xC0U) == 0x80; }

} // namespace

CSvgCanvas::CSvgCanvas(PictureSize size, ICanvas& screen, std::string_view fontFamily, double fontSize)
    : m_screen(screen), m_nFontSize(fontSize) {
    m_strBody = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<svg xmlns=\"http://www.w3.org/2000/svg\"";
    AppendAttribute(m_strBody, "width", size.width);
    AppendAttribute(m_strBody, "height", size.height);
    m_strBody.append(" font-family=\"");
    AppendEscaped(m_strBody, fontFamily);
    m_strBody.append("\"");
    AppendAttribute(m_strBody, "font-size", fontSize);
    m_strBody.append(">\n");
}

void CSvgCanvas::OpenRect(const PictureRect& rect) {
    m_strBody.append("<rect");
    AppendAttribute(m_strBody, "x", rect.x);
    AppendAttribute(m_strBody, "y", rect.y);
    AppendAttribute(m_strBody, "width", std::max(0.0, rect.width));
    AppendAttribute(m_strBody, "height", std::max(0.0, rect.height));
}

void CSvgCanvas::AddColor(std::string_view attribute, PictureColor color) {
    constexpr std::string_view digits = "0123456789abcdef";
    m_strBody.append(" ").append(attribute).append("=\"#");
    for (const unsigned part : {color.red, color.green, color.blue}) {
        m_strBody.push_back(digits[part >> 4U]);
        m_strBody.push_back(digits[part & 15U]);
    }
    m_strBody.append("\"");
    if (color.alpha != 255) {
        AppendAttribute(m_strBody, std::string(attribute).append("-opacity"), color.alpha / 255.0);
    }
}

void CSvgCanvas::Fill(const PictureRect& rect, PictureColor color) {
    OpenRect(rect);
    AddColor("fill", color);
    m_strBody.append("/>\n");
}

void CSvgCanvas::Outline(const PictureRect& rect, PictureColor color, double width) {
    OpenRect({rect.x + width / 2, rect.y + width / 2, rect.width - width, rect.height - width});
    m_strBody.append(" fill=\"none\"");
    AddColor("stroke", color);
    AppendAttribute(m_strBody, "stroke-width", width);
    m_strBody.append("/>\n");
}

void CSvgCanvas::Hatch(const PictureRect& rect, PictureColor color) {
    const std::string name = std::string(1, 'h').append(std::to_string(++m_nNames));
    m_strBody.append("<pattern id=\"").append(name);
    m_strBody.append("\" width=\"6\" height=\"6\" patternUnits=\"userSpaceOnUse\"><path d=\"M0 6L6 0\"");
    AddColor("stroke", color);
    m_strBody.append("/></pattern>\n");
    OpenRect(rect);
    m_strBody.append(" fill=\"url(#").append(name).append(")\"/>\n");
}

void CSvgCanvas::Polygon(std::span<const PicturePoint> points, PictureColor color) {
    m_strBody.append("<polygon points=\"");
    for (const PicturePoint& point : points) {
        AppendNumber(m_strBody, point.x);
        m_strBody.push_back(',');
        AppendNumber(m_strBody, point.y);
        m_strBody.push_back(' ');
    }
    m_strBody.append("\"");
    AddColor("fill", color);
    m_strBody.append("/>\n");
}

std::string CSvgCanvas::Cut(std::string_view text, double width) {
    if (m_screen.TextWidth(text) <= width) {
        return std::string(text);
    }
    // The longest beginning that fits with an ellipsis, found by halving.
    static constexpr std::string_view ellipsis = "\u2026";
    const auto cutTo = [text](std::size_t length) {
        while (length > 0 && IsContinuation(text[length])) {
            --length;
        }
        std::string cut(text);
        cut.resize(length);
        return cut.append(ellipsis);
    };
    std::size_t fits = 0;
    std::size_t tooLong = text.size();
    while (fits + 1 < tooLong) {
        const std::size_t middle = (fits + tooLong) / 2;
        (m_screen.TextWidth(cutTo(middle)) <= width ? fits : tooLong) = middle;
    }
    const std::string cut = cutTo(fits);
    return m_screen.TextWidth(cut) <= width ? cut : std::string();
}

void CSvgCanvas::Text(const PictureRect& rect, std::string_view text, PictureAlign align,
                      PictureColor color) {
    const std::string shown = Cut(text, rect.width);
    if (shown.empty()) {
        return;
    }
    const double x = align == PictureAlign::Left     ? rect.x
                     : align == PictureAlign::Center ? rect.x + rect.width / 2
                                                     : rect.Right();
    m_strBody.append("<text");
    AppendAttribute(m_strBody, "x", x);
    // The base line of letters that stand in the middle.
    AppendAttribute(m_strBody, "y", rect.y + rect.height / 2 + m_nFontSize * 0.35);
    if (align != PictureAlign::Left) {
        m_strBody.append(align == PictureAlign::Center ? " text-anchor=\"middle\"" : " text-anchor=\"end\"");
    }
    AddColor("fill", color);
    m_strBody.append(">");
    AppendEscaped(m_strBody, shown);
    m_strBody.append("</text>\n");
}

void CSvgCanvas::BeginClip(const PictureRect& rect) {
    const std::string name = std::string(1, 'c').append(std::to_string(++m_nNames));
    m_strBody.append("<clipPath id=\"").append(name).append("\">");
    OpenRect(rect);
    m_strBody.append("/></clipPath>\n<g clip-path=\"url(#").append(name).append(")\">\n");
}

void CSvgCanvas::EndClip() { m_strBody.append("</g>\n"); }

std::string CSvgCanvas::TakeFile() {
    m_strBody.append("</svg>\n");
    return std::move(m_strBody);
}

} // namespace carvelot
