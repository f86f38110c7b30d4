#include "fields/Windows1252.h"

#include <array>

namespace {

// 0x80 to 0x9F differ from Latin-1; the rest of the code page is the same.
constexpr char16_t HighControls[32] = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};

} // namespace

char16_t FromWindows1252(unsigned char byte)
{
    return byte >= 0x80 && byte < 0xA0 ? HighControls[byte - 0x80] : char16_t(byte);
}

namespace {

// Every byte at once, so that a long text converts without a branch per character.
const std::array<char16_t, 256> CodePage1252 = [] {
    std::array<char16_t, 256> table{};
    for (int byte = 0; byte < 256; ++byte)
        table[size_t(byte)] = FromWindows1252(static_cast<unsigned char>(byte));
    return table;
}();

} // namespace

bool AppendFromCodePage(uint32_t codePage, const char* bytes, qsizetype length, QString& out)
{
    if (codePage != 0 && codePage != 1252)
        return false;
    const qsizetype start = out.size();
    out.resize(start + length);
    char16_t* target = reinterpret_cast<char16_t*>(out.data()) + start;
    for (qsizetype i = 0; i < length; ++i)
        target[i] = CodePage1252[static_cast<unsigned char>(bytes[i])];
    return true;
}
