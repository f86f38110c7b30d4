#include <QPainterPath>
#include <QtCore/QString>
#include "platform/Profile.h"
