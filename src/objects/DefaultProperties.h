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
    float m_angle = 90;
    gfx::Color m_textColor{255, 0, 0, 0};
    int m_fontSize = 12;
    int m_fontStyle = 0;
    int m_textPathKind = 0;
    int m_justify = 1;
    std::uint8_t m_textTransparency = 0;
    std::uint8_t m_textStyle = 0;
    gfx::Color m_edgeColor{0u};
    std::uint8_t m_edgeSize = 1;
    std::uint8_t m_edgeBlur = 0;
    std::uint8_t m_edgeTransparency = 0;
    int m_shadowOn = 0;
    int m_shadowX = 0;
    int m_shadowY = 0;
    std::uint8_t m_shadowBlur = 0;
    std::uint8_t m_shadowTransparency = 0;
    int m_tracking = 0;
    int m_leading = 0;
};

extern DefaultProperties g_defaultProperties;

// Puts every default back to the program's own values.
void ResetDefaultProperties();
