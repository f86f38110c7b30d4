#include "templates/CTemplateObject.h"

double CTemplateObject::LeftEdge() const
{
    return CentreX - OuterDia / 2;
}

double CTemplateObject::TopEdge() const
{
    // A rectangle keeps its height in InnerDia; a disc is as tall as it is wide.
    return CentreY - (IsRect ? InnerDia : OuterDia) / 2;
}
