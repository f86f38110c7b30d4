#pragma once

#include <QString>
#include <cstdint>

// 8-bit text to wide characters, as the system's conversion from a code page does. Code page 0
// (the default) and 1252 are Windows-1252, the code page the program takes for 8-bit text;
// any other code page is not available and the conversion fails. Appends to `out`.
bool AppendFromCodePage(uint32_t codePage, const char* bytes, qsizetype length, QString& out);

// One byte of Windows-1252 as its character. The five bytes the code page leaves undefined
// keep their own value, as the system maps them.
char16_t FromWindows1252(unsigned char byte);
