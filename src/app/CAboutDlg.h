#pragma once

#include "controls/CToolTipDialog.h"

class CSendrillApp;

// "About Tessarelle": the vendor's name as a link to its site, the version and the copyright,
// and the vendor's logo as a link when it has one.
class CAboutDlg : public CToolTipDialog {
    Q_OBJECT

public:
    CAboutDlg(const CSendrillApp& app, QWidget* parent = nullptr);
};
