#include "objects/CGaussBlur.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>

namespace {

// Weights are held below this so that a sum of 255-valued bytes stays under 2^31 (what Divider
// takes). Only a sigma below about 0.2 reaches it, whose kernel is (1, W, 1): there any W above
// 510 truncates to the same results, so holding it changes no pixel.
constexpr std::uint32_t WeightLimit = (1u << 31) / 255 / CGaussBlur::MaxKernelSize;

// Truncating division of x < 2^31 by a fixed divisor, by one multiplication:
// x / d = x * ceil(2^s / d) >> s with s = 31 + ceil(log2 d). A divisor of 0 divides nothing.
class Divider {
public:
    explicit Divider(std::uint64_t divisor)
    {
        if (divisor <= 1)
            return;
        m_shift = 31 + int(std::bit_width(divisor - 1));
        m_multiplier = ((std::uint64_t(1) << m_shift) + divisor - 1) / divisor;
    }
    std::uint8_t operator()(std::uint32_t x) const
    {
        return std::uint8_t(std::min<std::uint64_t>((x * m_multiplier) >> m_shift, 255));
    }

private:
    std::uint64_t m_multiplier = 1;
    int m_shift = 0;
};

// The pixels and weights that make position i of a line of `length` pixels, for a radius
// (at most length / 2): pixels from `first`, weights from kernel index `weight`, `count` of each.
struct Window {
    int first;
    int weight;
    int count;
};

Window windowAt(int i, int length, int radius)
{
    if (i < radius)
        return {0, radius - i, std::min(i + radius, length)}; // one pixel short of the kernel's end
    if (i >= length - radius) {
        const int first = std::max(i - radius, 0);
        return {first, 0, length - first};
    }
    return {i - radius, 0, 2 * radius + 1};
}

void accumulate(std::uint32_t* sums, const std::uint8_t* bytes, int count, std::uint32_t weight)
{
    for (int j = 0; j < count; ++j)
        sums[j] += weight * bytes[j];
}

} // namespace

bool CGaussBlur::MakeKernel(float sigma)
{
    const auto round = [](float v) { return std::floor(v + 0.5f); };
    const float size = round(5 * sigma + 1);
    if (!(size <= float(MaxKernelSize)))
        return false;
    m_nKernelSize = std::max(int(size), 0) | 1;
    const int r = m_nKernelSize >> 1;
    m_kernel.assign(std::size_t(m_nKernelSize), 0);
    m_nKernelSum = 0;
    if (r == 0) {
        m_kernel[0] = 1;
        m_nKernelSum = 1;
        return true;
    }
    const float q = 2 * sigma * sigma;
    const float top = std::exp(float(r * r) / q);
    const auto weight = [&](float v) { return std::uint32_t(std::min(round(v), float(WeightLimit))); };
    m_kernel[std::size_t(r)] = weight(top);
    for (int i = 1; i <= r; ++i)
        m_kernel[std::size_t(r - i)] = m_kernel[std::size_t(r + i)] = weight(std::exp(-float(i * i) / q) * top);
    for (unsigned w : m_kernel)
        m_nKernelSum += w;
    return true;
}

bool CGaussBlur::Pass(const gfx::BitmapData& from, const gfx::BitmapData& to, bool alongRows, int channels,
                      bool copyOthers) const
{
    // Every line (a row, or a column) has `length` pixels, and the pixels of a line lie `step`
    // bytes apart. Lines are worked in bulk: along rows a whole row of sums at once, along
    // columns one output row at a time from whole input rows.
    const int width = from.Width, height = from.Height;
    const int length = alongRows ? width : height;
    const int radius = std::min(m_nKernelSize >> 1, length / 2);
    const int rowBytes = 4 * width;
    const auto divisorOf = [&](const Window& w) {
        std::uint64_t sum = 0;
        for (int k = 0; k < w.count; ++k)
            sum += m_kernel[std::size_t(w.weight + k)];
        return sum;
    };
    std::vector<std::uint32_t> sums(static_cast<std::size_t>(rowBytes));
    // Per byte of a row: blurred, copied, or 0.
    const auto store = [&](std::uint8_t* out, const std::uint8_t* in, int begin, int end, const Divider& divide) {
        for (int j = begin; j < end; ++j) {
            const int channel = j & 3;
            if (channels >> channel & 1)
                out[j] = divide(sums[std::size_t(j)]);
            else
                out[j] = copyOthers ? in[j] : 0;
        }
    };

    if (alongRows) {
        const Window middle{0, 0, 2 * radius + 1};
        const Divider middleDivide(divisorOf(middle));
        for (int y = 0; y < height; ++y) {
            if (m_bCancel)
                return false;
            const std::uint8_t* in = from.Scan0 + std::ptrdiff_t(y) * from.Stride;
            std::uint8_t* out = to.Scan0 + std::ptrdiff_t(y) * to.Stride;
            std::fill(sums.begin(), sums.end(), 0);
            // The middle: each weight over the whole run of pixels it meets.
            const int begin = 4 * radius, end = 4 * (width - radius);
            if (end > begin) {
                for (int k = 0; k <= 2 * radius; ++k)
                    accumulate(sums.data() + begin, in + begin + 4 * (k - radius), end - begin, m_kernel[std::size_t(k)]);
                store(out, in, begin, end, middleDivide);
            }
            // The ends, pixel by pixel.
            for (int x = 0; x < width; ++x) {
                if (x == radius && width - radius > radius)
                    x = width - radius;
                const Window w = windowAt(x, width, radius);
                std::uint32_t* s = sums.data() + 4 * x;
                for (int k = 0; k < w.count; ++k)
                    accumulate(s, in + 4 * (w.first + k), 4, m_kernel[std::size_t(w.weight + k)]);
                store(out, in, 4 * x, 4 * x + 4, Divider(divisorOf(w)));
            }
        }
        return true;
    }

    for (int y = 0; y < height; ++y) {
        if (m_bCancel)
            return false;
        const Window w = windowAt(y, height, radius);
        std::fill(sums.begin(), sums.end(), 0);
        for (int k = 0; k < w.count; ++k)
            accumulate(sums.data(), from.Scan0 + std::ptrdiff_t(w.first + k) * from.Stride, rowBytes,
                       m_kernel[std::size_t(w.weight + k)]);
        store(to.Scan0 + std::ptrdiff_t(y) * to.Stride, from.Scan0 + std::ptrdiff_t(y) * from.Stride, 0, rowBytes,
              Divider(divisorOf(w)));
    }
    return true;
}

std::unique_ptr<gfx::Bitmap> CGaussBlur::Blur(gfx::Bitmap& bitmap, float sigma, int channels, bool copyOthers)
{
    if (!MakeKernel(sigma))
        return nullptr;
    if (m_nKernelSize <= 1 || bitmap.image().isNull())
        return std::make_unique<gfx::Bitmap>(bitmap.image());

    const int width = int(bitmap.GetWidth()), height = int(bitmap.GetHeight());
    auto result = std::make_unique<gfx::Bitmap>(width, height);
    if (result->GetLastStatus() != gfx::Status::Ok)
        return nullptr;
    // The pass along the rows goes to plain memory; only the source and the result are bitmaps.
    std::vector<std::uint8_t> across(std::size_t(width) * std::size_t(height) * 4);
    const gfx::BitmapData between{width, height, 4 * width, across.data()};
    gfx::BitmapData source = bitmap.LockBits(gfx::ImageLockMode::Read);
    gfx::BitmapData target = result->LockBits(gfx::ImageLockMode::Write);
    const bool done = source.Scan0 && target.Scan0 && Pass(source, between, true, channels, copyOthers)
                      && Pass(between, target, false, channels, copyOthers);
    bitmap.UnlockBits(source);
    result->UnlockBits(target);
    if (!done)
        return nullptr;
    return result;
}
