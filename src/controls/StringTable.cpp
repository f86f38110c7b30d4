#include "controls/StringTable.h"

#include <algorithm>
#include <iterator>

namespace {

struct Entry {
    int nId;
    const char16_t* pszText;
};

// Sorted by number, so that a look-up is a binary search.
constexpr Entry Strings[] = {
    {1000, u"Background Color,Pattern or Image"},
    {1001, u"Fill Color/Picture/Pattern/Gradient"},
    {1003, u"Select Background Image"},
    {1005, u"Adjust Background Position/Scale"},
    {1006, u"Outline Color/Gradient"},
    {1007, u"Select Background Hatch Pattern"},
    {1010, u"Inner Diameter in Inches"},
    {1013, u"Inner Diameter in Inches"},
    {1015, u"Outer Diameter in Inches"},
    {1016, u"Outer Diameter in Inches"},
    {1017, u"Backlground Image Scale Value"},
    {1018, u"Background Image Scale Value"},
    {1020, u"Move Background Image/Pattern Left"},
    {1022, u"Move background Image/Pattern Down"},
    {1024, u"Move Background Image/Pattern Right"},
    {1027, u"Move Background Image/Pattern Up"},
    {1030, u"Select Default Printer and Quality Settings"},
    {1031, u"Background Image/Pattern Y Position"},
    {1033, u"Business Card Edge Diameter in Inches"},
    {1035, u"Business Card Edge Diameter in Inches"},
    {1038, u"Start Arrow Head Style"},
    {1040, u"End Arrow Head Style"},
    {1042, u"Background Image/Pattern X Position"},
    {1044, u"Move Selected Object Back One Level"},
    {1045, u"Move Selected Object Forward One Level"},
    {1046, u"Move Selected Object To Back"},
    {1048, u"Move Selected Object To Front"},
    {1054, u"Arc Tool"},
    {1056, u"Select Default CD/DVD Template Size"},
    {1057, u"Line Style"},
    {1059, u"Closed Curve Tool"},
    {1061, u"Open Curve Tool"},
    {1062, u"Freehand Tool"},
    {1063, u"Start Arrow Head Size"},
    {1064, u"Set Selected Objects Fill Color"},
    {1065, u"Set Selected Objects Line Color"},
    {1066, u"End Arrow Head Size"},
    {1068, u"Outline Thinkness"},
    {1076, u"Transparency"},
    {1077, u"Transparency"},
    {1080, u"Zoom Full Size"},
    {1081, u"Dash Endcap Style"},
    {1083, u"Enter text here"},
    {1084, u"Show/Hide Grid"},
    {1086, u"Shape"},
    {1089, u"Create a New Label"},
    {1103, u"Copy and Paste Selected Object"},
    {1105, u"Load Project/Template"},
    {1106, u"Save Current Project"},
    {1107, u"Close Adjustment Window"},
    {31841, u"Set Default Fill Color"},
    {31842, u"Set Default Line Color"},
    {31846, u"Text Tool"},
    {32764, u"Ellipse Tool"},
    {32771, u"Line Tool"},
    {32772, u"Rectangle Tool"},
    {32773, u"Rounded Rectangle Tool"},
    {32785, u"Polygon Tool"},
    {32798, u"Arrow Tool"},
    {32808, u"Selection Tool"},
    {32829, u"Zoom In"},
    {32830, u"Zoom Out"},
    {32831, u"Halo Tool"},
    {32834, u"Clipart Tool"},
    {57634, u"Copy Selected Object"},
    {57637, u"Paste Object"},
    {57643, u"Undo Last Action"},
    {57644, u"Redo Last Action Undone"},
};

static_assert(std::ranges::adjacent_find(Strings, std::ranges::greater_equal {}, &Entry::nId) == std::end(Strings),
              "the string table must be sorted by number without repeats");

} // namespace

namespace StringTable {

std::optional<QString> LoadString(int nId)
{
    const auto it = std::ranges::lower_bound(Strings, nId, {}, &Entry::nId);
    if (it == std::end(Strings) || it->nId != nId)
        return std::nullopt;
    return QString::fromUtf16(it->pszText);
}

} // namespace StringTable
