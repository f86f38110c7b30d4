#pragma once

#include "printing/PRINTDLG.h"

// The printer the application as a whole has in force: what a print dialog starts with and
// what a job prints on unless told otherwise. Until something is selected it is the spooler's
// default printer, looked up when first asked for, and again whenever the printer held is
// marked as that default (the default may have changed since).
class AppPrinter {
public:
    // Copies of the two records in force into pd. False when there is no printer at all.
    static bool GetPrinterDeviceDefaults(PRINTDLG* pd);
    // Puts these records in force; absent records make the next question look up the default.
    static void SelectPrinter(HGLOBAL hDevNames, HGLOBAL hDevMode);

private:
    static void UpdatePrinterSelection();
};
