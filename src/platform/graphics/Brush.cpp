#include "platform/graphics/Brush.h"

namespace gfx {

// Defined here so that the brushes' type information lives in one object file.
Brush::~Brush() = default;

} // namespace gfx
