#include "app/Branding.h"

void Branding::Assign()
{
    BrandVendor = QStringLiteral("Palvex Systems ");
    BrandUpdateKey = QStringLiteral("Tessarelle_Rondelmark");
    BrandWebName = QStringLiteral("www.palvex-systems.example");
    BrandSupportUrl = QStringLiteral("https://www.palvex-systems.example/");
    BrandFaqUrl.clear();
    BrandQuickstart = QStringLiteral("manuals/rondelmark_quickstart.pdf");
    BrandManual = QStringLiteral("manuals/rondelmark_manual.pdf");
    BrandLogoUrl.clear();
}
