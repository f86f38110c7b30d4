#pragma once

#include "platform/CRect.h"
#include "printing/CPrintDC.h"
#include "printing/PRINTDLG.h"

#include <memory>

// What one print job carries from step to step: the print dialog's record, the device made
// from it, the pages and the area of a page in logical units.
struct CPrintInfo {
    PRINTDLG m_pd;
    std::unique_ptr<CPrintDC> m_pDC;
    int m_nMinPage = 1;
    int m_nMaxPage = 0xFFFF;
    int m_nCurPage = 1;
    bool m_bContinuePrinting = true;
    CRect m_rectDraw;

    // The device for the printer of the dialog's records; false without a DEVNAMES record.
    bool CreatePrinterDC()
    {
        m_pDC.reset();
        if (!m_pd.hDevNames)
            return false;
        m_pDC = std::make_unique<CPrintDC>(m_pd.hDevMode, m_pd.hDevNames);
        return true;
    }
};
