// The bodies of the samplers, shared by Sampling and by the warp, which
// inlines the method of the common image types into its own loop.
#ifndef MORVANE_CORRECTION_SAMPLING_KERNELS_H
#define MORVANE_CORRECTION_SAMPLING_KERNELS_H

#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace geometric {

namespace sampling_kernels {

// One bilinear step in single precision, cut toward zero.
inline int interpolate(int first, int second, float f) {
    return static_cast<int>((1 - f) * static_cast<float>(first) + f * static_cast<float>(second));
}

// Bilinear value of the channel at source: the row values keep their low
// byte before the vertical step.
inline int bilinear(const unsigned char* source, int b, int s, float fx, float fy) {
    const int top = interpolate(source[0], source[b], fx) & 0xff;
    const int bottom = interpolate(source[s], source[s + b], fx) & 0xff;
    return interpolate(top, bottom, fy);
}

// Catmull-Rom through s0..s3 at t in [0, 1): the integer coefficients are
// formed in integers, the bracket in single precision, the factor 0.5 in
// double precision, as the results depend on it.
inline double catmull_rom(int s0, int s1, int s2, int s3, float t) {
    const float bracket = ((static_cast<float>(3 * s1 - s0 - 3 * s2 + s3) * t +
                            static_cast<float>(4 * s2 + 2 * s0 - 5 * s1 - s3)) * t +
                           static_cast<float>(s2 - s0)) * t +
                          static_cast<float>(2 * s1);
    return 0.5 * static_cast<double>(bracket);
}

// Cut toward zero, then the low byte: values past 0..255 wrap around.
inline int low_byte(double value) { return static_cast<int>(value) & 0xff; }

inline unsigned char clamp_byte(int value) {
    return static_cast<unsigned char>(value < 0 ? 0 : (value > 255 ? 255 : value));
}

// One body per method: the member functions, the stored function and the
// warp's own loop all inline it.
#if defined(__GNUC__)
#define MORVANE_KERNEL inline __attribute__((always_inline))
#else
#define MORVANE_KERNEL inline
#endif

MORVANE_KERNEL void nearest_kernel(const unsigned char* source, int, int, float, float, unsigned char* output) {
    output[0] = source[0];
}

MORVANE_KERNEL void linear_kernel(const unsigned char* source, int b, int s, float fx, float fy,
                                  unsigned char* output) {
    output[0] = static_cast<unsigned char>(bilinear(source, b, s, fx, fy));
}

#if defined(__SSE2__)
// Channels 0 to 3 of the pixel at p as floats. Reads four bytes: the
// fourth belongs to the next pixel when pixels have three, which exists
// wherever a bilinear neighbourhood does (the caller stays three pixels
// from the right edge).
inline __m128 load_channels(const unsigned char* p) {
    int bytes;
    std::memcpy(&bytes, p, 4);
    const __m128i zero = _mm_setzero_si128();
    const __m128i words = _mm_unpacklo_epi8(_mm_cvtsi32_si128(bytes), zero);
    return _mm_cvtepi32_ps(_mm_unpacklo_epi16(words, zero));
}

// interpolate() on four lanes: the same single-precision operations in the
// same order, so every lane equals the scalar result bit for bit.
inline __m128i interpolate_lanes(__m128 first, __m128 second, __m128 one_minus_f, __m128 f) {
    return _mm_cvttps_epi32(_mm_add_ps(_mm_mul_ps(one_minus_f, first), _mm_mul_ps(f, second)));
}
#endif

// The three channels at once where the vector unit allows; the plain
// per-channel form is the definition.
MORVANE_KERNEL void color_linear_kernel(const unsigned char* source, int b, int s, float fx, float fy,
                                        unsigned char* output) {
#if defined(__SSE2__)
    const __m128 f = _mm_set1_ps(fx), one_minus_f = _mm_set1_ps(1 - fx);
    const __m128 g = _mm_set1_ps(fy), one_minus_g = _mm_set1_ps(1 - fy);
    const __m128i low_byte = _mm_set1_epi32(0xff);
    const __m128i top = _mm_and_si128(
        interpolate_lanes(load_channels(source), load_channels(source + b), one_minus_f, f), low_byte);
    const __m128i bottom = _mm_and_si128(
        interpolate_lanes(load_channels(source + s), load_channels(source + s + b), one_minus_f, f), low_byte);
    const __m128i value = interpolate_lanes(_mm_cvtepi32_ps(top), _mm_cvtepi32_ps(bottom), one_minus_g, g);
    // 0..255 in every lane, so the saturating packs keep the values.
    const __m128i words = _mm_packs_epi32(value, value);
    const int packed = _mm_cvtsi128_si32(_mm_packus_epi16(words, words));
    output[0] = static_cast<unsigned char>(packed);
    output[1] = static_cast<unsigned char>(packed >> 8);
    output[2] = static_cast<unsigned char>(packed >> 16);
#else
    output[0] = static_cast<unsigned char>(bilinear(source, b, s, fx, fy));
    output[1] = static_cast<unsigned char>(bilinear(source + 1, b, s, fx, fy));
    output[2] = static_cast<unsigned char>(bilinear(source + 2, b, s, fx, fy));
#endif
}

MORVANE_KERNEL void color_kernel(const unsigned char* source, int b, int s, float fx, float fy,
                                 unsigned char* output) {
    const int y = bilinear(source, b, s, fx, fy);
    const int u = bilinear(source + 1, b, s, fx, fy) - 128;
    const int v = bilinear(source + 2, b, s, fx, fy) - 128;
    output[0] = clamp_byte(y + 91881 * u / 65536);
    output[1] = clamp_byte(y + (-22553 * v - 46802 * u) / 65536);
    output[2] = clamp_byte(y + 116130 * v / 65536);
}

MORVANE_KERNEL void bicubic_kernel(const unsigned char* source, int b, int s, float fx, float fy,
                                   unsigned char* output) {
    int rows[4];
    for (int k = 0; k < 4; ++k) {
        const unsigned char* row = source + (k - 1) * s;
        rows[k] = low_byte(catmull_rom(row[-b], row[0], row[b], row[2 * b], fx));
    }
    output[0] = static_cast<unsigned char>(low_byte(catmull_rom(rows[0], rows[1], rows[2], rows[3], fy)));
}

}  // namespace sampling_kernels

}  // namespace geometric

#endif
