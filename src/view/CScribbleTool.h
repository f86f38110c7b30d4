#pragma once

#include "objects/CDrawPoly.h"
#include "view/CPolyTool.h"

// Makes a polyline; a right click ends it by rule C, a double-click by rule B.
class CScribbleTool : public CPolyTool {
public:
    CScribbleTool() : CPolyTool(Polyline, CDrawPoly::Polyline, Ending::B, Ending::C) {}
};
