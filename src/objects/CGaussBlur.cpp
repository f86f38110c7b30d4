#include "objects/CGaussBlur.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <cstdint>
#include <thread>
#include <vector>

#if defined(__SSE2__)
#include <immintrin.h>
#endif

namespace {

// Weights are held below this so that two of them fit the signed 16 bits the row arithmetic
// multiplies in, and a sum of 255-valued bytes stays under 2^31 (what Divider takes). Only a
// sigma below about 0.2 reaches it, whose kernel is (1, W, 1): there any W above 510 truncates
// to the same results, so holding it changes no pixel.
constexpr std::uint32_t WeightLimit = 32767;
static_assert(std::uint64_t(WeightLimit) * 255 * CGaussBlur::MaxKernelSize < (1u << 31));

// The kernels of sigma above 1 weigh at most this (the middle weight is e^(r^2 / 2 sigma^2), with
// r about 2.5 sigma), which lets two weights share the 16 bits that one takes otherwise.
constexpr std::uint32_t SmallWeight = 64;

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
    std::uint64_t Multiplier() const { return m_multiplier; } // below 2^32
    int Shift() const { return m_shift; }

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

// sums[i] = the sum over k of weights[k] x base[k x step + i], for `bytes` bytes.
void weigh(const std::uint8_t* base, std::ptrdiff_t step, const std::int16_t* weights, int count, int bytes,
           std::uint32_t* sums)
{
    std::fill(sums, sums + bytes, 0u);
    for (int k = 0; k < count; ++k) {
        const std::uint8_t* row = base + k * step;
        for (int i = 0; i < bytes; ++i)
            sums[i] += std::uint32_t(weights[k]) * row[i];
    }
}

// The four sums of one pixel from `count` neighbouring pixels of a row (4 bytes each).
void weighPixel(const std::uint8_t* pixels, const std::int16_t* weights, int count, std::uint32_t* sums)
{
#if defined(__SSE2__)
    // Two pixels at a time: their bytes interleaved channel by channel, times their two weights.
    const __m128i zero = _mm_setzero_si128();
    __m128i acc = zero;
    int k = 0;
    for (; k + 2 <= count; k += 2) {
        std::uint64_t two;
        std::memcpy(&two, pixels + 4 * k, 8);
        const __m128i both = _mm_cvtsi64_si128(std::int64_t(two));
        const __m128i channels = _mm_unpacklo_epi8(_mm_unpacklo_epi8(both, _mm_srli_si128(both, 4)), zero);
        const __m128i w = _mm_set1_epi32(int(std::uint32_t(std::uint16_t(weights[k + 1])) << 16 | std::uint16_t(weights[k])));
        acc = _mm_add_epi32(acc, _mm_madd_epi16(channels, w));
    }
    _mm_storeu_si128(reinterpret_cast<__m128i*>(sums), acc);
    if (k < count) {
        for (int i = 0; i < 4; ++i)
            sums[i] += std::uint32_t(weights[k]) * pixels[4 * k + i];
    }
#else
    weigh(pixels, 4, weights, count, 4, sums);
#endif
}

// The same for 16 bytes, two weights at a time in 16-bit lanes where the processor has them.
void weigh16(const std::uint8_t* base, std::ptrdiff_t step, const std::int16_t* weights, int count,
             std::uint32_t* sums)
{
#if defined(__SSE2__)
    const __m128i zero = _mm_setzero_si128();
    __m128i acc[4] = {zero, zero, zero, zero};
    for (int k = 0; k < count; k += 2) {
        const bool pair = k + 1 < count;
        const __m128i a = _mm_loadu_si128(reinterpret_cast<const __m128i*>(base + k * step));
        const __m128i b = pair ? _mm_loadu_si128(reinterpret_cast<const __m128i*>(base + (k + 1) * step)) : zero;
        const int second = pair ? std::uint16_t(weights[k + 1]) : 0;
        const __m128i w = _mm_set1_epi32(second << 16 | std::uint16_t(weights[k]));
        const __m128i alo = _mm_unpacklo_epi8(a, zero), ahi = _mm_unpackhi_epi8(a, zero);
        const __m128i blo = _mm_unpacklo_epi8(b, zero), bhi = _mm_unpackhi_epi8(b, zero);
        acc[0] = _mm_add_epi32(acc[0], _mm_madd_epi16(_mm_unpacklo_epi16(alo, blo), w));
        acc[1] = _mm_add_epi32(acc[1], _mm_madd_epi16(_mm_unpackhi_epi16(alo, blo), w));
        acc[2] = _mm_add_epi32(acc[2], _mm_madd_epi16(_mm_unpacklo_epi16(ahi, bhi), w));
        acc[3] = _mm_add_epi32(acc[3], _mm_madd_epi16(_mm_unpackhi_epi16(ahi, bhi), w));
    }
    for (int i = 0; i < 4; ++i)
        _mm_storeu_si128(reinterpret_cast<__m128i*>(sums + 4 * i), acc[i]);
#else
    weigh(base, step, weights, count, 16, sums);
#endif
}

#if defined(__SSE2__) && (defined(__GNUC__) || defined(__clang__))
#define AVX2_INLINE __attribute__((target("avx2"), always_inline)) inline

AVX2_INLINE __m256i load(const std::uint8_t* at)
{
    return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(at));
}

// Adds 16-bit sums, for bytes 0-7 (lo) and 8-15 (hi) of each 128-bit half, to the 32-bit ones.
AVX2_INLINE void widen(__m256i* acc, __m256i lo, __m256i hi)
{
    const __m256i zero = _mm256_setzero_si256();
    acc[0] = _mm256_add_epi32(acc[0], _mm256_unpacklo_epi16(lo, zero));
    acc[1] = _mm256_add_epi32(acc[1], _mm256_unpackhi_epi16(lo, zero));
    acc[2] = _mm256_add_epi32(acc[2], _mm256_unpacklo_epi16(hi, zero));
    acc[3] = _mm256_add_epi32(acc[3], _mm256_unpackhi_epi16(hi, zero));
}

// The 32-bit sums of 32 bytes: their 256-bit lanes interleave within their 128-bit halves, so
// acc[i] holds bytes 4i..4i+3 of each half.
AVX2_INLINE void storeSums(const __m256i* acc, std::uint32_t* out)
{
    for (int i = 0; i < 4; ++i) {
        _mm_storeu_si128(reinterpret_cast<__m128i*>(out + 4 * i), _mm256_castsi256_si128(acc[i]));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(out + 16 + 4 * i), _mm256_extracti128_si256(acc[i], 1));
    }
}

// The same for 32 bytes, for processors with 256-bit lanes.
__attribute__((target("avx2"))) void weigh32(const std::uint8_t* base, std::ptrdiff_t step,
                                             const std::int16_t* weights, int count, std::uint32_t* sums)
{
    const __m256i zero = _mm256_setzero_si256();
    __m256i acc[4] = {zero, zero, zero, zero};
    for (int k = 0; k < count; k += 2) {
        const bool pair = k + 1 < count;
        const __m256i a = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(base + k * step));
        const __m256i b =
            pair ? _mm256_loadu_si256(reinterpret_cast<const __m256i*>(base + (k + 1) * step)) : zero;
        const int second = pair ? std::uint16_t(weights[k + 1]) : 0;
        const __m256i w = _mm256_set1_epi32(second << 16 | std::uint16_t(weights[k]));
        const __m256i alo = _mm256_unpacklo_epi8(a, zero), ahi = _mm256_unpackhi_epi8(a, zero);
        const __m256i blo = _mm256_unpacklo_epi8(b, zero), bhi = _mm256_unpackhi_epi8(b, zero);
        acc[0] = _mm256_add_epi32(acc[0], _mm256_madd_epi16(_mm256_unpacklo_epi16(alo, blo), w));
        acc[1] = _mm256_add_epi32(acc[1], _mm256_madd_epi16(_mm256_unpackhi_epi16(alo, blo), w));
        acc[2] = _mm256_add_epi32(acc[2], _mm256_madd_epi16(_mm256_unpacklo_epi16(ahi, bhi), w));
        acc[3] = _mm256_add_epi32(acc[3], _mm256_madd_epi16(_mm256_unpackhi_epi16(ahi, bhi), w));
    }
    storeSums(acc, sums);
}

// The sums of `Blocks` blocks of 32 bytes for weighRunSmall: pair p of taps takes rows 2p and
// 2p + 1 from `row`, but the pair numbered `single` takes row 2p alone.
template <int Blocks>
AVX2_INLINE void weighBlocks(const std::uint8_t* row, std::ptrdiff_t step, const __m256i* paired,
                             const int* groupEnd, int groups, int single, std::uint32_t* sums)
{
    const __m256i zero = _mm256_setzero_si256();
    __m256i acc[Blocks][4];
    for (auto& block : acc)
        block[0] = block[1] = block[2] = block[3] = zero;
    for (int g = 0, p = 0; g < groups; ++g) {
        __m256i lo[Blocks], hi[Blocks];
        for (int b = 0; b < Blocks; ++b)
            lo[b] = hi[b] = zero;
        for (; p < groupEnd[g]; ++p) {
            const std::uint8_t* first = row + 2 * p * step;
            for (int b = 0; b < Blocks; ++b) {
                const __m256i x = load(first + 32 * b), y = p == single ? zero : load(first + step + 32 * b);
                lo[b] = _mm256_add_epi16(lo[b], _mm256_maddubs_epi16(_mm256_unpacklo_epi8(x, y), paired[p]));
                hi[b] = _mm256_add_epi16(hi[b], _mm256_maddubs_epi16(_mm256_unpackhi_epi8(x, y), paired[p]));
            }
        }
        for (int b = 0; b < Blocks; ++b)
            widen(acc[b], lo[b], hi[b]);
    }
    for (int b = 0; b < Blocks; ++b)
        storeSums(acc[b], sums + 32 * b);
}

// Sums for a run of `bytes` bytes (a multiple of 32 is done; the count is returned) for kernels
// whose weights are at most SmallWeight: unsigned pixel bytes times signed weight bytes, a pair of
// taps at a time into 16 bits (at most 255 x 128, no saturation), added up in 16-bit lanes for as
// many pairs as keep the sum below 2^16 before they are widened to 32 bits. Two blocks of 32
// bytes go together where they can, so that each pair's weights are fetched once for both.
__attribute__((target("avx2"))) int weighRunSmall(const std::uint8_t* base, std::ptrdiff_t step,
                                                  const std::int16_t* weights, int count, int bytes,
                                                  std::uint32_t* sums)
{
    // Each pair's two weights, as bytes repeated over the lanes; an odd last tap pairs with 0.
    // Pairs are widened in groups whose weights add up to at most 65535 / 255.
    constexpr int MaxPairs = (CGaussBlur::MaxKernelSize + 1) / 2;
    __m256i paired[MaxPairs];
    int groupEnd[MaxPairs];
    const int pairs = (count + 1) / 2;
    int groups = 0, groupWeight = 0;
    for (int p = 0; p < pairs; ++p) {
        const int second = 2 * p + 1 < count ? weights[2 * p + 1] : 0;
        paired[p] = _mm256_set1_epi16(std::int16_t(second << 8 | weights[2 * p]));
        const int pairWeight = weights[2 * p] + second;
        if (p > 0 && 255 * (groupWeight + pairWeight) > 65535) {
            groupEnd[groups++] = p;
            groupWeight = 0;
        }
        groupWeight += pairWeight;
    }
    groupEnd[groups++] = pairs;
    const int single = count % 2 != 0 ? pairs - 1 : -1;
    int j = 0;
    for (; j + 64 <= bytes; j += 64)
        weighBlocks<2>(base + j, step, paired, groupEnd, groups, single, sums + j);
    for (; j + 32 <= bytes; j += 32)
        weighBlocks<1>(base + j, step, paired, groupEnd, groups, single, sums + j);
    return j;
}

bool hasWideLanes()
{
    static const bool wide = __builtin_cpu_supports("avx2");
    return wide;
}
#else
int weighRunSmall(const std::uint8_t*, std::ptrdiff_t, const std::int16_t*, int, int, std::uint32_t*)
{
    return 0;
}

void weigh32(const std::uint8_t* base, std::ptrdiff_t step, const std::int16_t* weights, int count,
             std::uint32_t* sums)
{
    weigh16(base, step, weights, count, sums);
    weigh16(base + 16, step, weights, count, sums + 16);
}

bool hasWideLanes()
{
    return false;
}
#endif

// Output bytes from 16 sums: divided where `blurred` has 0xFF, else the input byte where
// `copied` has 0xFF, else 0.
void store16(const std::uint32_t* sums, const std::uint8_t* in, std::uint8_t* out, const Divider& divide,
             const std::uint8_t* blurred, const std::uint8_t* copied)
{
#if defined(__SSE2__)
    const __m128i multiplier = _mm_set1_epi32(int(std::uint32_t(divide.Multiplier())));
    const __m128i shift = _mm_cvtsi32_si128(divide.Shift());
    __m128i quotients[4];
    for (int i = 0; i < 4; ++i) {
        const __m128i x = _mm_loadu_si128(reinterpret_cast<const __m128i*>(sums + 4 * i));
        const __m128i even = _mm_srl_epi64(_mm_mul_epu32(x, multiplier), shift);
        const __m128i odd = _mm_srl_epi64(_mm_mul_epu32(_mm_srli_epi64(x, 32), multiplier), shift);
        quotients[i] = _mm_or_si128(even, _mm_slli_epi64(odd, 32));
    }
    const __m128i bytes = _mm_packus_epi16(_mm_packs_epi32(quotients[0], quotients[1]),
                                           _mm_packs_epi32(quotients[2], quotients[3]));
    const __m128i keep = _mm_and_si128(_mm_loadu_si128(reinterpret_cast<const __m128i*>(in)),
                                       _mm_loadu_si128(reinterpret_cast<const __m128i*>(copied)));
    const __m128i result =
        _mm_or_si128(_mm_and_si128(bytes, _mm_loadu_si128(reinterpret_cast<const __m128i*>(blurred))), keep);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out), result);
#else
    for (int j = 0; j < 16; ++j)
        out[j] = blurred[j] ? divide(sums[j]) : in[j] & copied[j];
#endif
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
    // Output rows depend on the input alone, so a large bitmap is shared out between two threads.
    const int height = from.Height;
    if (height < 256 || std::thread::hardware_concurrency() < 2)
        return PassRows(from, to, alongRows, channels, copyOthers, 0, height);
    bool lowerDone = false;
    std::thread lower([&] { lowerDone = PassRows(from, to, alongRows, channels, copyOthers, height / 2, height); });
    const bool upperDone = PassRows(from, to, alongRows, channels, copyOthers, 0, height / 2);
    lower.join();
    return upperDone && lowerDone;
}

bool CGaussBlur::PassRows(const gfx::BitmapData& from, const gfx::BitmapData& to, bool alongRows, int channels,
                          bool copyOthers, int firstRow, int endRow) const
{
    // Every line (a row, or a column) has `length` pixels, and the pixels of a line lie `step`
    // bytes apart. Along rows the weights run over neighbouring pixels of the same row; along
    // columns over whole rows, so that both passes work on runs of bytes.
    const int width = from.Width, height = from.Height;
    const int length = alongRows ? width : height;
    const int radius = std::min(m_nKernelSize >> 1, length / 2);
    const std::ptrdiff_t step = alongRows ? 4 : from.Stride;
    const int rowBytes = 4 * width;
    const std::vector<std::int16_t> weights(m_kernel.begin(), m_kernel.end());
    const std::uint32_t largest = *std::max_element(m_kernel.begin(), m_kernel.end());
    const bool smallWeights = largest <= SmallWeight;
    // The divisor of each window: the sum of the weights that meet pixels.
    const auto dividerOf = [&](const Window& w) {
        std::uint64_t sum = 0;
        for (int k = 0; k < w.count; ++k)
            sum += m_kernel[std::size_t(w.weight + k)];
        return Divider(sum);
    };
    // Along rows, the windows cut at both ends of a line are the same on every row.
    std::vector<Divider> endDividers;
    if (alongRows) {
        for (int x = 0; x < radius; ++x)
            endDividers.push_back(dividerOf(windowAt(x, length, radius)));
        for (int x = std::max(length - radius, radius); x < length; ++x)
            endDividers.push_back(dividerOf(windowAt(x, length, radius)));
    }
    std::vector<std::uint32_t> sums(static_cast<std::size_t>(rowBytes));
    const bool wide = hasWideLanes();
    // Which bytes of 16 (four pixels) are blurred, and which are copied.
    std::uint8_t blurred[16], copied[16];
    for (int j = 0; j < 16; ++j) {
        blurred[j] = channels >> (j & 3) & 1 ? 0xFF : 0;
        copied[j] = !blurred[j] && copyOthers ? 0xFF : 0;
    }
    // Bytes begin..end of an output row from the sums.
    const auto store = [&](std::uint8_t* out, const std::uint8_t* in, int begin, int end, const Divider& divide) {
        int j = begin;
        for (; j + 16 <= end; j += 16)
            store16(sums.data() + j, in + j, out + j, divide, blurred, copied);
        for (; j < end; ++j)
            out[j] = blurred[j & 15] ? divide(sums[std::size_t(j)]) : in[j] & copied[j & 15];
    };
    // Sums for bytes begin..end of a row: byte j from base + j - back on, by `step`.
    const auto weighRun = [&](const std::uint8_t* base, int back, const Window& w, int begin, int end) {
        const std::int16_t* k = weights.data() + w.weight;
        int j = begin;
        if (wide && smallWeights) {
            j += weighRunSmall(base + (j - back), step, k, w.count, end - j, sums.data() + j);
        } else if (wide) {
            for (; j + 32 <= end; j += 32)
                weigh32(base + (j - back), step, k, w.count, sums.data() + j);
        }
        for (; j + 16 <= end; j += 16)
            weigh16(base + (j - back), step, k, w.count, sums.data() + j);
        if (j < end)
            weigh(base + (j - back), step, k, w.count, end - j, sums.data() + j);
    };

    for (int y = firstRow; y < endRow; ++y) {
        if (m_bCancel)
            return false;
        const std::uint8_t* in = from.Scan0 + std::ptrdiff_t(y) * from.Stride;
        std::uint8_t* out = to.Scan0 + std::ptrdiff_t(y) * to.Stride;
        if (!alongRows) {
            const Window w = windowAt(y, height, radius);
            weighRun(from.Scan0 + std::ptrdiff_t(w.first) * from.Stride, 0, w, 0, rowBytes);
            store(out, in, 0, rowBytes, dividerOf(w));
            continue;
        }
        // The middle of the row in runs, the ends pixel by pixel.
        const Window middle{0, 0, 2 * radius + 1};
        if (width - radius > radius) {
            weighRun(in, 4 * radius, middle, 4 * radius, 4 * (width - radius));
            store(out, in, 4 * radius, 4 * (width - radius), dividerOf(middle));
        }
        auto divider = endDividers.begin();
        const auto endPixel = [&](int x) {
            const Window w = windowAt(x, width, radius);
            weighPixel(in + 4 * w.first, weights.data() + w.weight, w.count, sums.data() + 4 * x);
            store(out, in, 4 * x, 4 * x + 4, *divider++);
        };
        for (int x = 0; x < radius; ++x)
            endPixel(x);
        for (int x = std::max(width - radius, radius); x < width; ++x)
            endPixel(x);
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
    // The passes write plain 32-bit memory, left as it is allocated: every byte is written.
    // The result becomes a bitmap at the end.
    const std::size_t bytes = std::size_t(width) * std::size_t(height) * 4;
    const auto across = std::make_unique_for_overwrite<std::uint8_t[]>(bytes);
    QImage pixels(width, height, QImage::Format_ARGB32);
    if (pixels.isNull())
        return nullptr;
    const gfx::BitmapData between{width, height, 4 * width, across.get()};
    const gfx::BitmapData target{width, height, int(pixels.bytesPerLine()), pixels.bits()};
    gfx::BitmapData source = bitmap.LockBits(gfx::ImageLockMode::Read);
    const bool done = source.Scan0 && Pass(source, between, true, channels, copyOthers)
                      && Pass(between, target, false, channels, copyOthers);
    bitmap.UnlockBits(source);
    if (!done)
        return nullptr;
    pixels.convertTo(QImage::Format_ARGB32_Premultiplied); // in place: the bitmap's own format
    auto result = std::make_unique<gfx::Bitmap>(std::move(pixels));
    return result->GetLastStatus() == gfx::Status::Ok ? std::move(result) : nullptr;
}
