#pragma once

#include "objects/DrawObjProperties.h"
#include "platform/CPoint.h"

#include <QString>

// The appearance a new object starts with. There is one record for the whole program: the
// constructors copy it, and the property panels write to it while nothing is selected.
struct DefaultProperties : DrawObjProperties {
    // The rectangle family. The shape code is set by the tool that makes the object.
    int m_shape = 0;
    CPoint m_cornerSize{100, 100};
    float m_startAngle = 90;
    float m_endAngle = 0;
    float m_ringX = 40;
    float m_ringY = 40;

    // The text object.
    QString m_text = QStringLiteral("Text");
    QString m_fontName = QStringLiteral("Arial");
};

extern DefaultProperties g_defaultProperties;

// Puts every default back to the program's own values.
void ResetDefaultProperties();
