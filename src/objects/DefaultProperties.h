#pragma once

#include "objects/DrawObjProperties.h"

#include <QString>

// The appearance a new object starts with. There is one record for the whole program: the
// constructors copy it, and the property panels write to it while nothing is selected.
struct DefaultProperties : DrawObjProperties {
    QString m_text = QStringLiteral("Text");
    QString m_fontName = QStringLiteral("Arial");
};

extern DefaultProperties g_defaultProperties;

// Puts every default back to the program's own values.
void ResetDefaultProperties();
