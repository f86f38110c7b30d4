#include "app/CAboutDlg.h"

#include "app/Branding.h"
#include "app/CSendrillApp.h"
#include "platform/Shell.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

CAboutDlg::CAboutDlg(const CSendrillApp& app, QWidget* parent) : CToolTipDialog(parent)
{
    setWindowTitle(QStringLiteral("About Tessarelle"));
    auto* layout = new QVBoxLayout(this);

    auto* name = new QPushButton(Branding::BrandVendor + QStringLiteral("Tessarelle"), this);
    name->setFlat(true);
    name->setCursor(Qt::PointingHandCursor);
    name->setToolTip(Branding::BrandWebName);
    connect(name, &QPushButton::clicked, this, [] {
        Shell::Open(QStringLiteral("https://") + Branding::BrandWebName);
    });
    SetControlId(name, 1247);
    layout->addWidget(name);

    auto* version = new QLabel(QStringLiteral("version %1.%2.%3.%4")
                                   .arg(unsigned(app.m_nVersion[0]))
                                   .arg(unsigned(app.m_nVersion[1]))
                                   .arg(unsigned(app.m_nVersion[2]))
                                   .arg(unsigned(app.m_nVersion[3])),
                               this);
    SetControlId(version, 1178);
    layout->addWidget(version);
    auto* copyright = new QLabel(app.m_strLegalCopyright, this);
    SetControlId(copyright, 1177);
    layout->addWidget(copyright);

    if (!Branding::BrandLogoUrl.isEmpty()) {
        auto* logo = new QPushButton(QStringLiteral("Logo"), this);
        SetControlId(logo, 1164);
        connect(logo, &QPushButton::clicked, this, [] { Shell::Open(Branding::BrandLogoUrl); });
        layout->addWidget(logo);
    }

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    layout->addWidget(buttons);
}
