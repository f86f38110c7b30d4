#pragma once

#include <QByteArray>
#include <optional>

// A block of memory that holds one printer record (DEVMODE or DEVNAMES): absent, or the
// record's bytes. Copies are copies of the bytes; nothing is shared between holders.
using HGLOBAL = std::optional<QByteArray>;

// What a print or printer set-up dialog starts with and hands back: the printer's two records
// and the dialog's flags.
struct PRINTDLG {
    static constexpr unsigned PD_PRINTTOFILE = 0x20;
    static constexpr unsigned PD_RETURNDC = 0x100;

    HGLOBAL hDevMode;
    HGLOBAL hDevNames;
    unsigned Flags = 0;
};
