#pragma once

#include <functional>

// Runs a long off-screen painting on a thread of Qt's global pool and waits for it.
//
// Qt's raster engine splits every large antialiased fill into pieces for that same pool and
// blocks until they are done. A label is hundreds of such fills, and each hand-off costs a
// wake-up of another thread: on two cores that was a third of the time of a busy label, more
// than the pieces saved. On a thread of the pool the engine paints every fill itself.
//
// The caller is blocked while the painting runs, so the painting may use what the caller owns
// without locks; it must not open windows (messages are to be held and shown after).
class PaintingThread {
public:
    static void Run(const std::function<void()>& paint);
};
