#pragma once

#include "objects/CDrawPoly.h"
#include "view/CPolyTool.h"

// Makes a closed curve; a right click ends it by rule C, a double-click by rule A.
class CClosedCurveTool : public CPolyTool {
public:
    CClosedCurveTool() : CPolyTool(ClosedCurve, CDrawPoly::ClosedCurve, Ending::A, Ending::C) {}
};
