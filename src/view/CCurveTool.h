#pragma once

#include "objects/CDrawPoly.h"
#include "view/CPolyTool.h"

// Makes an open curve; a right click ends it by rule C, a double-click by rule B.
class CCurveTool : public CPolyTool {
public:
    CCurveTool() : CPolyTool(Curve, CDrawPoly::Curve, Ending::B, Ending::C) {}
};
