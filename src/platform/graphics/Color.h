#pragma once

#include <QColor>
#include <cstdint>

namespace gfx {

// A COLORREF is 0x00BBGGRR: red is the low byte.
using COLORREF = std::uint32_t;
constexpr COLORREF RGB(int r, int g, int b) { return COLORREF(r & 0xFF) | COLORREF(g & 0xFF) << 8 | COLORREF(b & 0xFF) << 16; }
constexpr int GetRValue(COLORREF c) { return int(c & 0xFF); }
constexpr int GetGValue(COLORREF c) { return int(c >> 8 & 0xFF); }
constexpr int GetBValue(COLORREF c) { return int(c >> 16 & 0xFF); }

// A 32-bit colour 0xAARRGGBB, as brushes and pens take it.
class Color {
public:
    constexpr Color() = default; // opaque black
    constexpr explicit Color(std::uint32_t argb) : m_argb(argb) {}
    constexpr Color(int r, int g, int b) : Color(255, r, g, b) {}
    constexpr Color(int a, int r, int g, int b)
        : m_argb(std::uint32_t(a & 0xFF) << 24 | std::uint32_t(r & 0xFF) << 16 | std::uint32_t(g & 0xFF) << 8
                 | std::uint32_t(b & 0xFF))
    {
    }

    constexpr int GetA() const { return int(m_argb >> 24); }
    constexpr int GetR() const { return int(m_argb >> 16 & 0xFF); }
    constexpr int GetG() const { return int(m_argb >> 8 & 0xFF); }
    constexpr int GetB() const { return int(m_argb & 0xFF); }
    constexpr std::uint32_t GetValue() const { return m_argb; }

    static constexpr Color FromCOLORREF(COLORREF c, int alpha = 255)
    {
        return Color(alpha, GetRValue(c), GetGValue(c), GetBValue(c));
    }
    constexpr COLORREF ToCOLORREF() const { return RGB(GetR(), GetG(), GetB()); }
    QColor toQColor() const { return QColor::fromRgba(m_argb); }

    friend constexpr bool operator==(const Color&, const Color&) = default;

private:
    std::uint32_t m_argb = 0xFF000000;
};

} // namespace gfx
