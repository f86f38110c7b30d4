#pragma once

#include <QString>
#include <cstdint>

// One data field: a tag that stands as plain text in label text, and what replaces it on
// each disc. The kinds are the values of `Type`.
struct DATAFIELD {
    enum Kind { Year = 0, Month = 1, Day = 2, Time = 3, Disc = 4, SerialNumber = 5, DataFile = 6 };
    enum FileDelimiter { Line = 0, Comma = 1, SemiColon = 2 };

    QString Tag;
    int32_t Type = -1;
    uint32_t DiscNumber = 1;
    uint32_t DiscTotal = 1;
    QString FileName;
    int32_t Delimiter = Line;
    uint64_t Serial = 0;
    uint32_t SerialIncrement = 1;
    uint32_t FileIndex = 0;
    uint32_t FileIncrement = 1;
    int32_t TwoDigitYear = 0;
    int32_t MonthNames = 0;
    int32_t DayNames = 0;
    int32_t Hours24 = 0;
    int32_t ShowSeconds = 0;
};
