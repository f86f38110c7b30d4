#pragma once

#include "platform/Spooler.h"

#include <QByteArray>
#include <QList>
#include <QString>

class CDrawDoc;

// The options that make a queue print on its disc tray, found in the queue's own option list,
// never guessed: a source that feeds discs (Gutenprint's InputSlot "CD", HP's "CDDVDTray", a
// driverless printer's "Disc" or media-source "disc"), the tray page that holds the disc
// (Gutenprint's CD3Inch, CD5Inch, CDCustom, HP's CDDVD80, CDDVD120, disc media such as
// "disc_12cm_18x120mm"), a disc media type, and Gutenprint's disc diameters.
//
// What the user chose stands: a record whose source names anything but the queue's default
// or the disc tray keeps all it holds, and a disc page or disc media type already in a record
// stays. The diameters describe the label's disc and always follow it.
class DiscTray {
public:
    // Puts into the set-up record the options that make the queue print on its disc tray for the
    // document's PRINTER template, as the queue offers them; answers false (record unchanged)
    // when the template is a sheet or the queue offers no disc tray.
    static bool Apply(QByteArray& devMode, const QList<SpoolerChoice>& offered, const CDrawDoc& doc);
    // The same for a disc of these diameters (inches); false, the record unchanged, when the
    // queue offers no tray or the record names another source of the user's.
    static bool Apply(QByteArray& devMode, const QList<SpoolerChoice>& offered, double outerDia, double innerDia);
    // The same for the printer of that device name, whose options the spooler is asked for; a
    // spooler that can't say leaves the record as it is, on the printer's paper.
    static bool ApplyFor(QByteArray& devMode, const QString& deviceName, const CDrawDoc& doc);
    // Whether the queue has a disc tray.
    static bool Offers(const QList<SpoolerChoice>& offered);

    // The side, in points, of the square tray page that a page size or medium names; 0 when it
    // names no tray page.
    static double PageSide(const QString& keyword);
    // The side of the tray page a record prints on ("media", else "PageSize"); 0 for paper.
    static double PageSideOf(const QByteArray& devMode);
};
