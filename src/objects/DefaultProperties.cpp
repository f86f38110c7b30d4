#include "objects/DefaultProperties.h"

DefaultProperties g_defaultProperties;

void ResetDefaultProperties()
{
    g_defaultProperties = DefaultProperties();
}
