#include "printing/AppPrinter.h"

#include "printing/DEVMODE.h"
#include "printing/DEVNAMES.h"

namespace {

HGLOBAL g_hDevMode;
HGLOBAL g_hDevNames;

} // namespace

bool AppPrinter::GetPrinterDeviceDefaults(PRINTDLG* pd)
{
    UpdatePrinterSelection();
    pd->hDevMode = g_hDevMode;
    pd->hDevNames = g_hDevNames;
    return g_hDevNames.has_value();
}

void AppPrinter::SelectPrinter(HGLOBAL hDevNames, HGLOBAL hDevMode)
{
    g_hDevNames = std::move(hDevNames);
    g_hDevMode = std::move(hDevMode);
}

void AppPrinter::UpdatePrinterSelection()
{
    if (g_hDevNames && !(DEVNAMES::Default(*g_hDevNames) & DEVNAMES::DN_DEFAULTPRN))
        return;
    QString queue;
    SpoolerPrinter printer;
    // A spooler that can't be asked leaves what is held in force.
    if (!Spooler::DefaultDestination(&queue) || !Spooler::GetPrinter(queue, &printer))
        return;
    g_hDevMode = DEVMODE::For(printer);
    g_hDevNames = DEVNAMES::For(printer, DEVNAMES::DN_DEFAULTPRN);
}
