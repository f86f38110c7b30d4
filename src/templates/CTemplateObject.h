#pragma once

#include "templates/Perf.h"

#include <QString>
#include <vector>

// One label area of a template: a disc, a business-card disc or a rectangle, placed on the
// sheet by its centre. A plain value: copies are deep.
class CTemplateObject {
public:
    int Selected = 0;     // 1: the area takes part in printing (sheet templates)
    int LabelNumber = 0;  // one-based label shown in this area
    QString ObjectName;
    int IsRect = 0;       // 0: disc outline, 1: rectangle
    double CentreX = 0.0; // inches from the sheet's left edge
    double CentreY = 0.0; // inches from the sheet's top edge
    double OuterDia = 0.0; // disc: outer diameter; rectangle: width
    double InnerDia = 0.0; // disc: hole; rectangle: height
    double Rotation = 0.0; // degrees around the centre
    double EdgeDia = 0.0;  // business-card disc: width across its two straight edges
    std::vector<Perf> Perfs;

    // The area's left and top edges on the sheet, the reference of the perforations in a file.
    double LeftEdge() const;
    double TopEdge() const;
};
