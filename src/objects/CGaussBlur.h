#pragma once

#include "platform/graphics/Image.h"

#include <memory>
#include <vector>

// A Gaussian blur of the program's own for 32-bit bitmaps: a kernel of integer weights run
// along the rows and then along the columns of the locked bytes, per channel, in integer
// arithmetic. At the ends of a row or column only the weights that meet pixels count, and the
// left (top) end leaves out one pixel more than the right (bottom) end; shadows and glows have
// always been drawn so.
class CGaussBlur {
public:
    // The widest kernel: sigma 50.
    static constexpr int MaxKernelSize = 251;

    // A new bitmap with the channels whose bits are set in `channels` blurred (bit i is byte i
    // of B, G, R, A); the others are copied when copyOthers is set, else left 0. A sigma too
    // small to spread (a kernel of one weight) gives a plain copy; one that needs a kernel wider
    // than MaxKernelSize, or a cancelled blur, gives null.
    std::unique_ptr<gfx::Bitmap> Blur(gfx::Bitmap& bitmap, float sigma, int channels, bool copyOthers);

    // The weights of the last kernel made, and their sum.
    const std::vector<unsigned>& Kernel() const { return m_kernel; }
    unsigned KernelSum() const { return m_nKernelSum; }

    // Stops a blur between rows; it then gives null. Nothing in the program sets it.
    bool m_bCancel = false;

private:
    // False when the kernel would be wider than MaxKernelSize.
    bool MakeKernel(float sigma);
    // One pass from `from` into `to` (both of the same size), along rows or along columns.
    bool Pass(const gfx::BitmapData& from, const gfx::BitmapData& to, bool alongRows, int channels,
              bool copyOthers) const;

    std::vector<unsigned> m_kernel;
    unsigned m_nKernelSum = 0;
    int m_nKernelSize = 0;
};
