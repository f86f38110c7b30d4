#pragma once

#include "platform/graphics/Image.h"

// The four pictures that selection handles show instead of the plain squares where a handle
// does something special (resize, rotate, a text's handle, move). They are loaded once at
// start-up from the program's resources and live until the application releases them; until
// then every accessor answers null and the drawing code falls back to the squares.
class HandleImages {
public:
    // The resource numbers the pictures are known by.
    enum Id { ResizeId = 342, RotateId = 343, TextId = 344, MoveId = 345 };

    // Frees any earlier pictures, then loads all four. False when one of them could not be
    // read; that one stays null, the others are usable.
    static bool Load();
    static void Release();

    static const gfx::Image* Resize() { return Get(ResizeId); }
    static const gfx::Image* Rotate() { return Get(RotateId); }
    static const gfx::Image* Text() { return Get(TextId); }
    static const gfx::Image* Move() { return Get(MoveId); }
    // Null for a number that is not one of the four, or for a picture that is not loaded.
    static const gfx::Image* Get(int resourceId);
};
