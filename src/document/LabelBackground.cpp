#include "document/LabelBackground.h"

#include "document/CArchive.h"

void LabelBackground::Serialize(CArchive& ar)
{
    if (ar.IsStoring()) {
        ar << std::int32_t(HatchStyle) << std::uint32_t(BackColor) << std::uint32_t(BackColor2) << ImageFile
           << std::int32_t(OffsetX) << std::int32_t(OffsetY) << Scale << std::int32_t(WrapMode) << FitMode;
    } else {
        ar >> HatchStyle >> BackColor >> BackColor2 >> ImageFile >> OffsetX >> OffsetY >> Scale >> WrapMode >> FitMode;
    }
}
