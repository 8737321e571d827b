// The projective warp, its output size, and the fill colour taken from the
// strips just inside the page's edges.
#include "correction/projective_correction.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <numeric>

#include "common/constants.h"
#include "common/scratch_buffer.h"
#include "correction/sampling_kernels.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif
// Where the compiler can build a function for a wider unit than the build's
// own, the warp carries one and picks it when the processor has the unit.
#if defined(__SSE2__) && defined(__GNUC__) && (defined(__x86_64__) || defined(__i386__)) && \
    !defined(MORVANE_PLAIN_WARP) && !defined(MORVANE_SSE2_WARP)
#define MORVANE_AVX_WARP 1
#include <immintrin.h>
#endif

namespace geometric {

namespace {

const char* const kOutputMismatch = "output image does not match the corrected image dimensions or the input type";
const char* const kAllocateFailed = "error while allocating image, could not allocate enough memory";

// Cut toward zero, saturating where the int cannot hold the value, so that
// absurd corners give absurd but defined sizes and positions.
int truncate_to_int(double value) {
    if (!(value > static_cast<double>(INT_MIN))) return value != value ? 0 : INT_MIN;
    if (value >= static_cast<double>(INT_MAX)) return INT_MAX;
    return static_cast<int>(value);
}

// Corner distance: single-precision differences and sum, rounded to single
// precision after the root.
float corner_distance(const Geocoordinate<float>& p, const Geocoordinate<float>& q) {
    const float dx = p.x - q.x;
    const float dy = p.y - q.y;
    return static_cast<float>(std::sqrt(static_cast<double>(dx * dx + dy * dy)));
}

// Source rows are met along a slanted or crossing line, which the
// hardware's own prefetching follows badly: the pixels that the warp will
// read some two hundred output pixels ahead are asked for now. Only a hint: the
// addresses are never dereferenced, so they may lie outside the buffer. Near
// the right end of a tile the hint reaches into the next tile, whose lines
// then wait in the cache: without the hints the tiled warp took 1.3 to 1.6
// times as long, upright pages too.
constexpr int kPrefetchDistance = 192;

// Byte distance between the source of a piece's first pixel and of the
// pixel kPrefetchDistance further along its row, from the mapping's slope there.
ptrdiff_t prefetch_offset(double nx, double ny, double w, double column_x, double column_y, double column_w,
                          int bytes, int row_size) {
    const double x0 = nx / w, y0 = ny / w;
    const double x1 = (nx + column_x) / (w + column_w), y1 = (ny + column_y) / (w + column_w);
    const double dx = (x1 - x0) * kPrefetchDistance, dy = (y1 - y0) * kPrefetchDistance;
    if (!(std::fabs(dx) < 1e6 && std::fabs(dy) < 1e6)) return 0;
    return static_cast<ptrdiff_t>(dx) * bytes + static_cast<ptrdiff_t>(dy) * row_size;
}

inline void prefetch(const unsigned char* source, ptrdiff_t ahead, int row_size) {
#if defined(__GNUC__)
    const uintptr_t at = reinterpret_cast<uintptr_t>(source) + static_cast<uintptr_t>(ahead);
    __builtin_prefetch(reinterpret_cast<const void*>(at));
    __builtin_prefetch(reinterpret_cast<const void*>(at + static_cast<uintptr_t>(row_size)));
#else
    (void)source;
    (void)ahead;
    (void)row_size;
#endif
}

// Copies n bytes, n known at compile time where the pixel size is.
template <int kBytes>
inline void copy_pixel(unsigned char* target, const unsigned char* source, int bytes) {
    if (kBytes > 0) {
        for (int i = 0; i < kBytes; ++i) target[i] = source[i];
    } else {
        for (int i = 0; i < bytes; ++i) target[i] = source[i];
    }
}

// What both forms of the warp read: the buffers and their sizes, the steps
// of the mapping's numerators and denominator per output column and row, and
// the sampler.
struct WarpJob {
    const unsigned char* input;
    unsigned char* output;
    int input_width;
    int input_height;
    int output_width;
    int output_height;
    int bytes_per_pixel;
    int row_size;
    const ProjectiveWarpCoefficients& k;
    const Sampling::Sampler& sampler;
    InterpolationType interpolation;
    double column_x, column_y, column_w;
    double row_x, row_y, row_w;

    WarpJob(const unsigned char* input_, unsigned char* output_, int input_width_, int input_height_,
            int output_width_, int output_height_, int bytes_per_pixel_, int row_size_,
            const ProjectiveWarpCoefficients& k_, const Sampling::Sampler& sampler_,
            InterpolationType interpolation_)
        : input(input_), output(output_), input_width(input_width_), input_height(input_height_),
          output_width(output_width_), output_height(output_height_), bytes_per_pixel(bytes_per_pixel_),
          row_size(row_size_), k(k_), sampler(sampler_), interpolation(interpolation_), column_x(k_.a / output_width_),
          column_y(k_.d / output_width_), column_w(k_.g / output_width_), row_x(k_.b / output_height_),
          row_y(k_.e / output_height_), row_w(k_.h / output_height_) {}

    // The pixel size, known at compile time where kBytes says it.
    template <int kBytes>
    int bytes() const {
        return kBytes > 0 ? kBytes : bytes_per_pixel;
    }
    // The input pixel at the floors (xi, yi).
    template <int kBytes>
    const unsigned char* source(int xi, int yi) const {
        return input + static_cast<ptrdiff_t>(yi) * row_size + static_cast<ptrdiff_t>(xi) * bytes<kBytes>();
    }
};

// The samplers as the loop calls them. The stored function serves every
// method; the methods the frame picks for gray, colour and four-byte images
// are inlined instead, the same kernels without the indirect call a pixel.
// pair() samples two neighbouring output pixels, with the fractions
// (fx, fy) of the first in lanes 0 and 1 and of the second in lanes 2 and 3.
#if defined(__SSE2__)
template <typename Single>
struct OneByOne {
    void pair(const unsigned char* first, const unsigned char* second, __m128 fractions, unsigned char* out,
              int bytes) const {
        const Single& single = static_cast<const Single&>(*this);
        single(first, _mm_cvtss_f32(fractions), _mm_cvtss_f32(_mm_shuffle_ps(fractions, fractions, 1)), out);
        single(second, _mm_cvtss_f32(_mm_shuffle_ps(fractions, fractions, 2)),
               _mm_cvtss_f32(_mm_shuffle_ps(fractions, fractions, 3)), out + bytes);
    }
};
#else
template <typename Single>
struct OneByOne {};
#endif

struct StoredSampler : OneByOne<StoredSampler> {
    const Sampling::Sampler& sampler;
    explicit StoredSampler(const WarpJob& job) : sampler(job.sampler) {}
    void operator()(const unsigned char* source, float fx, float fy, unsigned char* out) const {
        sampler(source, fx, fy, out);
    }
};

template <int kBytes>
struct LinearSampler : OneByOne<LinearSampler<kBytes>> {
    int row_size;
    explicit LinearSampler(const WarpJob& job) : row_size(job.row_size) {}
    void operator()(const unsigned char* source, float fx, float fy, unsigned char* out) const {
        sampling_kernels::linear_kernel(source, kBytes, row_size, fx, fy, out);
    }
};

struct ColorLinearSampler : OneByOne<ColorLinearSampler> {
    int row_size;
    explicit ColorLinearSampler(const WarpJob& job) : row_size(job.row_size) {}
    void operator()(const unsigned char* source, float fx, float fy, unsigned char* out) const {
        sampling_kernels::color_linear_kernel(source, 3, row_size, fx, fy, out);
    }
};

#if defined(MORVANE_AVX_WARP)
// interpolate() on eight lanes: the same single-precision operations in the
// same order, so every lane equals the scalar result bit for bit.
__attribute__((target("avx2"))) inline __m256i interpolate8(__m256 a, __m256 b, __m256 one_minus_f, __m256 f) {
    return _mm256_cvttps_epi32(_mm256_add_ps(_mm256_mul_ps(one_minus_f, a), _mm256_mul_ps(f, b)));
}

// color_linear_kernel on two neighbouring output pixels in the eight lanes of
// the wider unit: channels 0 to 3 of the first pixel low, of the second
// high, the same single-precision operations lane by lane.
struct ColorLinearPairSampler : ColorLinearSampler {
    explicit ColorLinearPairSampler(const WarpJob& job) : ColorLinearSampler(job) {}

    __attribute__((target("avx2"))) void pair(const unsigned char* first, const unsigned char* second,
                                              __m128 fractions, unsigned char* out, int) const {
        // fractions holds fx, fy of the first pixel and fx, fy of the second.
        const __m256 lanes = _mm256_castps128_ps256(fractions);
        const __m256 f = _mm256_permutevar8x32_ps(lanes, _mm256_setr_epi32(0, 0, 0, 0, 2, 2, 2, 2));
        const __m256 g = _mm256_permutevar8x32_ps(lanes, _mm256_setr_epi32(1, 1, 1, 1, 3, 3, 3, 3));
        const __m256 one = _mm256_set1_ps(1.0f);
        const __m256 one_minus_f = _mm256_sub_ps(one, f), one_minus_g = _mm256_sub_ps(one, g);
        const __m256i low_byte = _mm256_set1_epi32(0xff);
        __m256 left, right;
        channels(first, second, 0, left, right);
        const __m256i top = _mm256_and_si256(interpolate8(left, right, one_minus_f, f), low_byte);
        channels(first, second, row_size, left, right);
        const __m256i bottom = _mm256_and_si256(interpolate8(left, right, one_minus_f, f), low_byte);
        const __m256i value =
            interpolate8(_mm256_cvtepi32_ps(top), _mm256_cvtepi32_ps(bottom), one_minus_g, g);
        // 0..255 in every lane, so the saturating packs keep the values;
        // then the three channels of each pixel side by side.
        const __m128i words = _mm_packs_epi32(_mm256_castsi256_si128(value), _mm256_extracti128_si256(value, 1));
        const __m128i bytes = _mm_shuffle_epi8(_mm_packus_epi16(words, words),
                                               _mm_setr_epi8(0, 1, 2, 4, 5, 6, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1));
        const int first_four = _mm_cvtsi128_si32(bytes);
        const uint16_t last_two = static_cast<uint16_t>(_mm_extract_epi16(bytes, 2));
        std::memcpy(out, &first_four, 4);
        std::memcpy(out + 4, &last_two, 2);
    }

private:
    // Channels 0 to 3 of the pixel at offset and of its right neighbour, the
    // first pixel's low, from sixteen bytes a pixel and a line. The pixel lies
    // at least three pixels from its line's right end and at least one line
    // above the last, so the bytes past its line belong to the next line.
    __attribute__((target("avx2"))) static void channels(const unsigned char* first, const unsigned char* second,
                                                         int offset, __m256& left, __m256& right) {
        const __m256i own = _mm256_setr_epi8(0, -1, -1, -1, 1, -1, -1, -1, 2, -1, -1, -1, 3, -1, -1, -1,  //
                                             0, -1, -1, -1, 1, -1, -1, -1, 2, -1, -1, -1, 3, -1, -1, -1);
        const __m256i next = _mm256_setr_epi8(3, -1, -1, -1, 4, -1, -1, -1, 5, -1, -1, -1, 6, -1, -1, -1,  //
                                              3, -1, -1, -1, 4, -1, -1, -1, 5, -1, -1, -1, 6, -1, -1, -1);
        const __m256i bytes = _mm256_inserti128_si256(
            _mm256_castsi128_si256(_mm_loadu_si128(reinterpret_cast<const __m128i*>(first + offset))),
            _mm_loadu_si128(reinterpret_cast<const __m128i*>(second + offset)), 1);
        left = _mm256_cvtepi32_ps(_mm256_shuffle_epi8(bytes, own));
        right = _mm256_cvtepi32_ps(_mm256_shuffle_epi8(bytes, next));
    }
};
#endif

// Output pixels outside the sampled interior: inside the image a copy of the
// pixel at the floors, beyond it the fill colour, computed where first
// needed in mode 1.
template <int kBytes>
class BorderOrFill {
public:
    BorderOrFill(ProjectiveCorrection& correction, const WarpJob& job)
        : correction(correction), job(job), fill_pending(correction.get_filling_mode() == 1) {}

    void operator()(bool inside, int xi, int yi, unsigned char* out) {
        if (inside) {
            copy_pixel<kBytes>(out, job.source<kBytes>(xi, yi), job.bytes<kBytes>());
            return;
        }
        if (fill_pending) {
            correction.calculate_filling_pixel();
            fill_pending = false;
        }
        copy_pixel<kBytes>(out, correction.get_filling_pixel(), job.bytes<kBytes>());
    }

private:
    ProjectiveCorrection& correction;
    const WarpJob& job;
    bool fill_pending;
};

// Where a piece of an output row starts: the accumulated numerators x, y and
// denominator w, and a zero lane, so that the wide loop loads it whole.
struct alignas(32) RowPosition {
    double n[4];
};

// The output is written in tiles of kTileRows rows and kTileColumns columns.
// Where the output rows run across the photo's rows (a page lying sideways),
// a whole output row reads two lines of thousands of photo rows, which have
// left the cache when the next output row comes back to them; within a tile
// the lines one row reads serve the rows below it. Where the output rows run
// along the photo's rows, a tile's photo rows stay cached from one output
// row to the next as well, and the tiles measured a little faster than
// whole rows there too.
constexpr int kTileRows = 128;
constexpr int kTileColumns = 256;  // even: the wide loop takes two pixels at a time

// Each position is still the row's base plus the column steps before it,
// added one by one: a piece starts from the sums at which the piece to its
// left stopped, so the pieces of a row see the sums of the whole row.
template <typename Pieces>
void warp_in_tiles(const WarpJob& job, Pieces& pieces) {
    const int bytes = job.bytes_per_pixel;
    const ptrdiff_t row_bytes = static_cast<ptrdiff_t>(job.output_width) * bytes;
    RowPosition starts[kTileRows];
    RowPosition base = {{job.k.x0, job.k.y0, 1.0, 0.0}};
    for (int v0 = 0; v0 < job.output_height; v0 += kTileRows) {
        const int rows = std::min(kTileRows, job.output_height - v0);
        for (int r = 0; r < rows; ++r) {
            starts[r] = base;
            base.n[0] += job.row_x;
            base.n[1] += job.row_y;
            base.n[2] += job.row_w;
        }
        unsigned char* band = job.output + static_cast<ptrdiff_t>(v0) * row_bytes;
        for (int u0 = 0; u0 < job.output_width; u0 += kTileColumns) {
            const int count = std::min(kTileColumns, job.output_width - u0);
            unsigned char* out = band + static_cast<ptrdiff_t>(u0) * bytes;
            for (int r = 0; r < rows; ++r, out += row_bytes) pieces(starts[r], out, count);
        }
    }
}

// Every form writes its pieces in the same tiles.
template <typename Pieces>
void warp_by(ProjectiveCorrection& correction, const WarpJob& job) {
    Pieces pieces(correction, job);
    warp_in_tiles(job, pieces);
}

// The warp, piece of row by piece of row. The position is accumulated, not
// computed afresh for each pixel: the row's base plus repeated column steps,
// in double precision, so that the output depends on these roundings and on
// no others. The floor tests are made on the double values, which is the
// same as comparing floors with integer limits and avoids converting values
// that do not fit an int. 1 <= X < input_width - 2 and
// 1 <= Y < input_height - 2 is sampled; the rest goes to BorderOrFill.
template <int kBytes, bool kParallelogram>
class PlainPieces {
public:
    PlainPieces(ProjectiveCorrection& correction, const WarpJob& job) : job(job), border_or_fill(correction, job) {}

    void operator()(RowPosition& start, unsigned char* out, int count) {
        const int bytes = job.bytes<kBytes>();
        const double inner_right = job.input_width - 2, inner_bottom = job.input_height - 2;
        const double right = job.input_width, bottom = job.input_height;
        double nx = start.n[0], ny = start.n[1], w = start.n[2];
        const ptrdiff_t ahead =
            prefetch_offset(nx, ny, w, job.column_x, job.column_y, job.column_w, bytes, job.row_size);
        for (int u = 0; u < count; ++u, out += bytes) {
            // In a parallelogram w stays exactly 1, and a division by 1 changes nothing.
            const double X = kParallelogram ? nx : nx / w;
            const double Y = kParallelogram ? ny : ny / w;
            nx += job.column_x;
            ny += job.column_y;
            if (!kParallelogram) w += job.column_w;
            if (X >= 1.0 && X < inner_right && Y >= 1.0 && Y < inner_bottom) {
                const int xi = static_cast<int>(X);
                const int yi = static_cast<int>(Y);
                const unsigned char* source = job.source<kBytes>(xi, yi);
                prefetch(source, ahead, job.row_size);
                job.sampler(source, static_cast<float>(X - xi), static_cast<float>(Y - yi), out);
            } else {
                const bool inside = X >= 0.0 && X < right && Y >= 0.0 && Y < bottom;
                border_or_fill(inside, inside ? static_cast<int>(X) : 0, inside ? static_cast<int>(Y) : 0, out);
            }
        }
        start.n[0] = nx;
        start.n[1] = ny;
        start.n[2] = w;
    }

private:
    const WarpJob& job;
    BorderOrFill<kBytes> border_or_fill;
};

#if defined(__SSE2__)
// PlainPieces with x and y travelling together in one register: the same
// additions, divisions and tests, lane by lane, so the same bits.
template <int kBytes, bool kParallelogram, typename Sampler>
class Sse2Pieces {
public:
    Sse2Pieces(ProjectiveCorrection& correction, const WarpJob& job)
        : job(job), border_or_fill(correction, job), sample(job) {}

    void operator()(RowPosition& start, unsigned char* out, int count) {
        const int bytes = job.bytes<kBytes>();
        const __m128d column_step = _mm_set_pd(job.column_y, job.column_x);
        const __m128d inner_low = _mm_set1_pd(1.0);
        const __m128d inner_high = _mm_set_pd(job.input_height - 2, job.input_width - 2);
        const __m128d outer_low = _mm_setzero_pd();
        const __m128d outer_high = _mm_set_pd(job.input_height, job.input_width);
        __m128d n = _mm_loadu_pd(start.n);
        double w = start.n[2];
        const ptrdiff_t ahead = prefetch_offset(start.n[0], start.n[1], w, job.column_x, job.column_y,
                                                job.column_w, bytes, job.row_size);
        for (int u = 0; u < count; ++u, out += bytes) {
            const __m128d p = kParallelogram ? n : _mm_div_pd(n, _mm_set1_pd(w));
            n = _mm_add_pd(n, column_step);
            if (!kParallelogram) w += job.column_w;
            const int inner = _mm_movemask_pd(_mm_and_pd(_mm_cmpge_pd(p, inner_low), _mm_cmplt_pd(p, inner_high)));
            if (inner == 3) {
                const __m128i floors = _mm_cvttpd_epi32(p);
                const __m128 fractions = _mm_cvtpd_ps(_mm_sub_pd(p, _mm_cvtepi32_pd(floors)));
                const unsigned char* source =
                    job.source<kBytes>(_mm_cvtsi128_si32(floors), _mm_cvtsi128_si32(_mm_shuffle_epi32(floors, 1)));
                prefetch(source, ahead, job.row_size);
                sample(source, _mm_cvtss_f32(fractions), _mm_cvtss_f32(_mm_shuffle_ps(fractions, fractions, 1)), out);
            } else {
                const bool inside =
                    _mm_movemask_pd(_mm_and_pd(_mm_cmpge_pd(p, outer_low), _mm_cmplt_pd(p, outer_high))) == 3;
                const __m128i floors = inside ? _mm_cvttpd_epi32(p) : _mm_setzero_si128();
                border_or_fill(inside, _mm_cvtsi128_si32(floors), _mm_cvtsi128_si32(_mm_shuffle_epi32(floors, 1)),
                               out);
            }
        }
        _mm_storeu_pd(start.n, n);
        start.n[2] = w;
    }

private:
    const WarpJob& job;
    BorderOrFill<kBytes> border_or_fill;
    Sampler sample;
};

#if defined(MORVANE_AVX_WARP)
// Sse2Pieces two pixels at a time: the numerators and the denominator
// travel in one register, (x, y, w, 0), and take the same column steps as
// before, one addition a pixel; the two pixels' divisions are made in one
// instruction. Lane by lane the same operations, so the same bits. Built for
// the unit with its 256-bit integer instructions (AVX2) and without fused
// multiply-add, which is a unit of its own and would change the roundings.
// (a, b, c, 0) in the four lanes, by a masked load rather than a set: for
// the set the compiler picks a register-to-register vmovq, an encoding that
// valgrind 3.19 cannot decode, and the warp could not be profiled.
__attribute__((target("avx2"))) inline __m256d three_and_zero(double a, double b, double c) {
    const double lanes[3] = {a, b, c};
    return _mm256_maskload_pd(lanes, _mm256_setr_epi64x(-1, -1, -1, 0));
}

// The next two pixels: their positions, x and y of the first in the low
// lanes and of the second in the high ones; the interior test, bits 0 and 1
// set where the first pixel's x and y lie from 1 up to inner_high, bits 2
// and 3 for the second; the floors and the single-precision fractions.
// n moves on by two columns.
struct PairPositions {
    __m256d p;
    int inner;
    __m128i floors;
    __m128 fractions;
};

template <bool kParallelogram>
__attribute__((target("avx2"))) inline PairPositions next_pair(__m256d& n, __m256d column_step, __m256d inner_high) {
    const __m256d first = n, second = _mm256_add_pd(first, column_step);
    n = _mm256_add_pd(second, column_step);
    const __m256d numerators = _mm256_permute2f128_pd(first, second, 0x20);
    // In a parallelogram w stays exactly 1, and a division by 1 changes nothing.
    const __m256d p =
        kParallelogram
            ? numerators
            : _mm256_div_pd(numerators, _mm256_movedup_pd(_mm256_permute2f128_pd(first, second, 0x31)));
    const int inner = _mm256_movemask_pd(
        _mm256_and_pd(_mm256_cmp_pd(p, _mm256_set1_pd(1.0), _CMP_GE_OQ), _mm256_cmp_pd(p, inner_high, _CMP_LT_OQ)));
    const __m128i floors = _mm256_cvttpd_epi32(p);
    return {p, inner, floors, _mm256_cvtpd_ps(_mm256_sub_pd(p, _mm256_cvtepi32_pd(floors)))};
}

// The interior's upper limits, x and y for both pixels of a pair.
__attribute__((target("avx2"))) inline __m256d inner_limits(const WarpJob& job) {
    const double right = job.input_width - 2, bottom = job.input_height - 2;
    return _mm256_set_pd(bottom, right, bottom, right);
}

// One pixel that is not sampled inside: a copy or the fill colour.
template <int kBytes>
void border_pixel(BorderOrFill<kBytes>& border_or_fill, const WarpJob& job, __m128d p, unsigned char* target) {
    const __m128d outer_high = _mm_set_pd(job.input_height, job.input_width);
    const bool inside = _mm_movemask_pd(_mm_and_pd(_mm_cmpge_pd(p, _mm_setzero_pd()), _mm_cmplt_pd(p, outer_high))) == 3;
    const __m128i floors = inside ? _mm_cvttpd_epi32(p) : _mm_setzero_si128();
    border_or_fill(inside, _mm_cvtsi128_si32(floors), _mm_cvtsi128_si32(_mm_shuffle_epi32(floors, 1)), target);
}

template <int kBytes, bool kParallelogram, typename Sampler>
class AvxPieces {
public:
    AvxPieces(ProjectiveCorrection& correction, const WarpJob& job)
        : job(job), border_or_fill(correction, job), sample(job) {}

    __attribute__((target("avx2"))) void operator()(RowPosition& start, unsigned char* out, int count) {
        const int bytes = job.bytes<kBytes>();
        const __m256d column_step = three_and_zero(job.column_x, job.column_y, job.column_w);
        const __m256d inner_high = inner_limits(job);
        const ptrdiff_t ahead = prefetch_offset(start.n[0], start.n[1], start.n[2], job.column_x, job.column_y,
                                                job.column_w, bytes, job.row_size);
        // Local copies: the compiler must assume that every byte stored to
        // the output may change the job's and the sampler's fields, and
        // would load them again for every pair.
        const Sampler sampler = sample;
        const unsigned char* const input = job.input;
        const ptrdiff_t row_size = job.row_size;
        auto source_at = [input, row_size, bytes](int xi, int yi) {
            return input + static_cast<ptrdiff_t>(yi) * row_size + static_cast<ptrdiff_t>(xi) * bytes;
        };
        __m256d n = _mm256_load_pd(start.n);
        for (int u = 0; u < count; u += 2) {
            const PairPositions pp = next_pair<kParallelogram>(n, column_step, inner_high);
            const __m256d p = pp.p;
            const int inner = pp.inner;
            const __m128i floors = pp.floors;
            const __m128 fractions = pp.fractions;
            const bool pair = u + 1 < count;
            if (inner == 15 && pair) {
                const unsigned char* first_source =
                    source_at(_mm_cvtsi128_si32(floors), _mm_cvtsi128_si32(_mm_shuffle_epi32(floors, 1)));
                prefetch(first_source, ahead, row_size);
                sampler.pair(first_source,
                            source_at(_mm_cvtsi128_si32(_mm_shuffle_epi32(floors, 2)),
                                               _mm_cvtsi128_si32(_mm_shuffle_epi32(floors, 3))),
                            fractions, out, bytes);
                out += 2 * bytes;
                continue;
            }
            if ((inner & 3) == 3) {
                const unsigned char* source =
                    source_at(_mm_cvtsi128_si32(floors), _mm_cvtsi128_si32(_mm_shuffle_epi32(floors, 1)));
                prefetch(source, ahead, row_size);
                sampler(source, _mm_cvtss_f32(fractions), _mm_cvtss_f32(_mm_shuffle_ps(fractions, fractions, 1)),
                       out);
            } else {
                border(_mm256_castpd256_pd128(p), out);
            }
            out += bytes;
            if (!pair) break;
            if ((inner & 12) == 12) {
                sampler(source_at(_mm_cvtsi128_si32(_mm_shuffle_epi32(floors, 2)),
                                          _mm_cvtsi128_si32(_mm_shuffle_epi32(floors, 3))),
                       _mm_cvtss_f32(_mm_shuffle_ps(fractions, fractions, 2)),
                       _mm_cvtss_f32(_mm_shuffle_ps(fractions, fractions, 3)), out);
            } else {
                border(_mm256_extractf128_pd(p, 1), out);
            }
            out += bytes;
        }
        _mm256_store_pd(start.n, n);
    }

private:
    void border(__m128d p, unsigned char* target) { border_pixel(border_or_fill, job, p, target); }

    const WarpJob& job;
    BorderOrFill<kBytes> border_or_fill;
    Sampler sample;
};

// Gray bilinear samples eight at a time for the staged loop below: both
// lines' bytes of each pixel by one gather a line, then linear_kernel's
// single-precision operations in its order, lane by lane.
struct GrayLinearEight : LinearSampler<1> {
    explicit GrayLinearEight(const WarpJob& job) : LinearSampler<1>(job) {}

    __attribute__((target("avx2"))) void eight(const unsigned char* input, const int32_t* offsets, const float* fx,
                                               const float* fy, unsigned char* out) const {
        const __m256i at = _mm256_load_si256(reinterpret_cast<const __m256i*>(offsets));
        // Four bytes from each offset: the pixel, its right neighbour and
        // two more, which lie inside the image wherever a neighbourhood does.
        const __m256i upper = _mm256_i32gather_epi32(reinterpret_cast<const int*>(input), at, 1);
        const __m256i lower = _mm256_i32gather_epi32(reinterpret_cast<const int*>(input + row_size), at, 1);
        const __m256i low_byte = _mm256_set1_epi32(0xff);
        const __m256 f = _mm256_load_ps(fx), g = _mm256_load_ps(fy);
        const __m256 one = _mm256_set1_ps(1.0f);
        const __m256 one_minus_f = _mm256_sub_ps(one, f), one_minus_g = _mm256_sub_ps(one, g);
        const __m256i top = _mm256_and_si256(
            interpolate8(byte_lanes(upper, 0), byte_lanes(upper, 8), one_minus_f, f), low_byte);
        const __m256i bottom = _mm256_and_si256(
            interpolate8(byte_lanes(lower, 0), byte_lanes(lower, 8), one_minus_f, f), low_byte);
        const __m256i value = interpolate8(_mm256_cvtepi32_ps(top), _mm256_cvtepi32_ps(bottom), one_minus_g, g);
        // 0..255 in every lane, so the saturating packs keep the values.
        const __m256i words = _mm256_packs_epi32(value, value);
        const __m256i bytes = _mm256_packus_epi16(words, words);
        _mm_storel_epi64(reinterpret_cast<__m128i*>(out),
                         _mm_unpacklo_epi32(_mm256_castsi256_si128(bytes), _mm256_extracti128_si256(bytes, 1)));
    }

private:
    __attribute__((target("avx2"))) static __m256 byte_lanes(__m256i lanes, int shift) {
        return _mm256_cvtepi32_ps(_mm256_and_si256(_mm256_srli_epi32(lanes, shift), _mm256_set1_epi32(0xff)));
    }
};

// The colour pairs four times over for the staged loop.
struct ColorLinearEight : ColorLinearPairSampler {
    explicit ColorLinearEight(const WarpJob& job) : ColorLinearPairSampler(job) {}

    __attribute__((target("avx2"))) void eight(const unsigned char* input, const int32_t* offsets, const float* fx,
                                               const float* fy, unsigned char* out) const {
        const __m256 f = _mm256_load_ps(fx), g = _mm256_load_ps(fy);
        // fx, fy of pixels 0, 1, 4, 5 and of 2, 3, 6, 7.
        const __m256 low = _mm256_unpacklo_ps(f, g), high = _mm256_unpackhi_ps(f, g);
        pair(input + offsets[0], input + offsets[1], _mm256_castps256_ps128(low), out, 3);
        pair(input + offsets[2], input + offsets[3], _mm256_castps256_ps128(high), out + 6, 3);
        pair(input + offsets[4], input + offsets[5], _mm256_extractf128_ps(low, 1), out + 12, 3);
        pair(input + offsets[6], input + offsets[7], _mm256_extractf128_ps(high, 1), out + 18, 3);
    }
};

// AvxPieces in two passes over a piece. The first runs the mapping alone,
// two pixels a step as there: for every sampled pixel it keeps the source's
// byte offset and the fractions, asks for the source lines to be fetched
// (the second pass reads them a piece later), and writes the border and fill
// pixels at once. The second samples the kept pixels eight at a time. The
// mapping's long chain of dependent additions and the samplers' loads no
// longer wait on each other. The offsets are 32-bit: the form serves photos
// of under 2 GB, and the caller keeps AvxPieces for the rest.
template <int kBytes, bool kParallelogram, typename Sampler>
class StagedPieces {
public:
    StagedPieces(ProjectiveCorrection& correction, const WarpJob& job)
        : job(job), border_or_fill(correction, job), sample(job) {}

    __attribute__((target("avx2"))) void operator()(RowPosition& start, unsigned char* out, int count) {
        const int bytes = kBytes;
        const __m256d column_step = three_and_zero(job.column_x, job.column_y, job.column_w);
        const __m256d inner_high = inner_limits(job);
        const __m128i scale = _mm_setr_epi32(bytes, job.row_size, bytes, job.row_size);
        const unsigned char* const input = job.input;
        const ptrdiff_t row_size = job.row_size;
        out_base = out;
        __m256d n = _mm256_load_pd(start.n);
        for (int u = 0; u < count; u += 2) {
            const PairPositions pp = next_pair<kParallelogram>(n, column_step, inner_high);
            // The offsets of both pixels: x * bytes + y * row_size, in lanes 0 and 1.
            const __m128i scaled = _mm_mullo_epi32(pp.floors, scale);
            const __m128i offsets = _mm_hadd_epi32(scaled, scaled);
            _mm_storel_epi64(reinterpret_cast<__m128i*>(offset + u), offsets);
            const __m128 split = _mm_shuffle_ps(pp.fractions, pp.fractions, _MM_SHUFFLE(3, 1, 2, 0));
            _mm_storel_pi(reinterpret_cast<__m64*>(fx + u), split);
            _mm_storeh_pi(reinterpret_cast<__m64*>(fy + u), split);
            // Only a hint: the offset of a pixel outside is never used otherwise.
            prefetch(input, _mm_cvtsi128_si32(offsets), row_size);
            // The second pixel of the last pair of an odd piece lies past
            // it: the second pass never reads its code.
            if (pp.inner != 15) {
                if ((pp.inner & 3) != 3) border(_mm256_castpd256_pd128(pp.p), out + u * bytes);
                if (u + 1 < count && (pp.inner & 12) != 12)
                    border(_mm256_extractf128_pd(pp.p, 1), out + (u + 1) * bytes);
            }
            codes[u >> 1] = static_cast<unsigned char>(pp.inner);
        }
        _mm256_store_pd(start.n, n);

        const Sampler sampler = sample;
        int u = 0;
        for (; u + 8 <= count; u += 8) {
            uint32_t four;
            std::memcpy(&four, codes + (u >> 1), 4);
            if (four == 0x0f0f0f0fu) {
                sampler.eight(input, offset + u, fx + u, fy + u, out + u * bytes);
            } else {
                for (int i = u; i < u + 8; ++i) single(sampler, i);
            }
        }
        for (; u < count; ++u) single(sampler, u);
    }

private:
    // One pixel sampled alone, where it was kept.
    void single(const Sampler& sampler, int u) {
        const int lanes = codes[u >> 1] >> ((u & 1) * 2);
        if ((lanes & 3) == 3) sampler(job.input + offset[u], fx[u], fy[u], out_base + u * kBytes);
    }
    void border(__m128d p, unsigned char* target) { border_pixel(border_or_fill, job, p, target); }

    const WarpJob& job;
    BorderOrFill<kBytes> border_or_fill;
    Sampler sample;
    unsigned char* out_base = nullptr;
    alignas(32) int32_t offset[kTileColumns];
    alignas(32) float fx[kTileColumns];
    alignas(32) float fy[kTileColumns];
    unsigned char codes[kTileColumns / 2];
};

#endif

// A vector form with the sampler inlined, in its two instantiations: the
// mapping of a parallelogram needs no division.
template <template <int, bool, typename> class Pieces, int kBytes, typename Sampler>
void warp_form(ProjectiveCorrection& correction, const WarpJob& job) {
    if (job.k.parallelogram) {
        warp_by<Pieces<kBytes, true, Sampler>>(correction, job);
    } else {
        warp_by<Pieces<kBytes, false, Sampler>>(correction, job);
    }
}

template <int kBytes, typename Sampler>
void warp_sse2_with_sampler(ProjectiveCorrection& correction, const WarpJob& job) {
#if defined(MORVANE_AVX_WARP)
    if (__builtin_cpu_supports("avx2")) {
        warp_form<AvxPieces, kBytes, Sampler>(correction, job);
        return;
    }
#endif
    warp_form<Sse2Pieces, kBytes, Sampler>(correction, job);
}

#if defined(MORVANE_AVX_WARP)
// The staged form keeps 32-bit byte offsets into the photo.
bool can_stage(const WarpJob& job) {
    return __builtin_cpu_supports("avx2") && static_cast<int64_t>(job.row_size) * job.input_height <= INT32_MAX;
}
#endif

// The inlined sampler where the method and the pixel size are those the
// frame gives gray, RGB and BGRA images, gray and RGB in two passes where
// the processor and the photo's size allow; the stored function otherwise.
template <int kBytes>
void warp_sse2(ProjectiveCorrection& correction, const WarpJob& job) {
    if constexpr (kBytes == 1) {
        if (job.interpolation == INTERPOLATION_LINEAR) {
#if defined(MORVANE_AVX_WARP)
            if (can_stage(job)) return warp_form<StagedPieces, 1, GrayLinearEight>(correction, job);
#endif
            return warp_sse2_with_sampler<1, LinearSampler<1>>(correction, job);
        }
    } else if constexpr (kBytes == 3) {
        if (job.interpolation == INTERPOLATION_COLOR_LINEAR) {
#if defined(MORVANE_AVX_WARP)
            if (can_stage(job)) return warp_form<StagedPieces, 3, ColorLinearEight>(correction, job);
            return warp_sse2_with_sampler<3, ColorLinearPairSampler>(correction, job);
#else
            return warp_sse2_with_sampler<3, ColorLinearSampler>(correction, job);
#endif
        }
    } else if constexpr (kBytes == 4) {
        if (job.interpolation == INTERPOLATION_LINEAR) return warp_sse2_with_sampler<4, LinearSampler<4>>(correction, job);
    }
    warp_sse2_with_sampler<kBytes, StoredSampler>(correction, job);
}
#endif

// The form this build runs: the vector one where the unit is there (the
// wider one where the processor has it), unless MORVANE_PLAIN_WARP or
// MORVANE_SSE2_WARP asks for the plain or the narrower one, which the tests
// build too.
template <int kBytes>
void warp_with_pixel_size(ProjectiveCorrection& correction, const WarpJob& job) {
#if defined(__SSE2__) && !defined(MORVANE_PLAIN_WARP)
    warp_sse2<kBytes>(correction, job);
#else
    if (job.k.parallelogram) {
        warp_by<PlainPieces<kBytes, true>>(correction, job);
    } else {
        warp_by<PlainPieces<kBytes, false>>(correction, job);
    }
#endif
}

}  // namespace

ProjectiveCorrection::ProjectiveCorrection(common::BasicImage* input_, common::BasicImage* output_)
    : Correction(input_, output_), filling_mode(1), filling_pixel{255, 255, 255, 255} {}

void ProjectiveCorrection::calculate_output_dimension(const std::vector<Geocoordinate<float>>& corners, int& width,
                                                      int& height) {
    if (corners.size() < 4) {
        width = 0;
        height = 0;
        return;
    }
    const float top = corner_distance(corners[0], corners[1]);
    const float bottom = corner_distance(corners[3], corners[2]);
    const float left = corner_distance(corners[0], corners[3]);
    const float right = corner_distance(corners[1], corners[2]);
    width = truncate_to_int(0.5 * top + 0.5 * bottom + 1.0 + 0.5);
    height = truncate_to_int(0.5 * left + 0.5 * right + 1.0 + 0.5);
}

void ProjectiveCorrection::obtain_output_img_dimension(int& width, int& height) {
    calculate_output_dimension(control_points, width, height);
}

ProjectiveWarpCoefficients ProjectiveCorrection::calculate_warp_coefficients(
    const std::vector<Geocoordinate<float>>& corners) {
    const float x0 = corners[0].x, y0 = corners[0].y;
    const float x1 = corners[1].x, y1 = corners[1].y;
    const float x2 = corners[2].x, y2 = corners[2].y;
    const float x3 = corners[3].x, y3 = corners[3].y;
    ProjectiveWarpCoefficients k;
    k.x0 = x0;
    k.y0 = y0;
    // The parallelogram test is made in single precision.
    const float sx = (x0 - x1) + (x2 - x3);
    const float sy = (y0 - y1) + (y2 - y3);
    if (sx == 0.0f && sy == 0.0f) {
        k.parallelogram = true;
        k.g = 0.0;
        k.h = 0.0;
        k.b = static_cast<double>(x2) - x1;
        k.e = static_cast<double>(y2) - y1;
    } else {
        k.parallelogram = false;
        const double dx1 = static_cast<double>(x1) - x2;
        const double dx2 = static_cast<double>(x3) - x2;
        const double dy1 = static_cast<double>(y1) - y2;
        const double dy2 = static_cast<double>(y3) - y2;
        const double det = dx1 * dy2 - dx2 * dy1;
        k.g = (sx * dy2 - dx2 * sy) / det;
        k.h = (dx1 * sy - dy1 * sx) / det;
        k.b = (static_cast<double>(x3) - x0) + x3 * k.h;
        k.e = (static_cast<double>(y3) - y0) + y3 * k.h;
    }
    k.a = (static_cast<double>(x1) - x0) + x1 * k.g;
    k.d = (static_cast<double>(y1) - y0) + y1 * k.g;
    return k;
}

int ProjectiveCorrection::run_correction() {
    int width = 0;
    int height = 0;
    obtain_output_img_dimension(width, height);
    if (output_is_owned) {
        // A binary input has been gray since construction.
        output->reset(height, width, input->get_image_type(), constants::kBoundaryResolution,
                      constants::kBoundaryResolution);
        perspective_transformation_general(input->get_data(), output->get_data(), input->get_width(),
                                           input->get_height(), width, height, control_points);
        if (input_type == common::BINARY) output->convert_gray_to_binary(128);
        return 1;
    }
    // A view is written in place: a wrong size or layout would write past the caller's buffer.
    if (output->get_width() != width || output->get_height() != height || output->get_image_type() != input_type)
        throw kOutputMismatch;
    if (input_type != common::BINARY) {
        perspective_transformation_general(input->get_data(), output->get_data(), input->get_width(),
                                           input->get_height(), width, height, control_points);
        return 1;
    }
    // Binary view: warp as gray into a scratch buffer, then write the bits.
    const common::ScratchBuffer<unsigned char> gray(static_cast<size_t>(width) * static_cast<size_t>(height));
    if (gray.empty()) throw kAllocateFailed;
    output->set_image_type(common::GRAY);
    try {
        perspective_transformation_general(input->get_data(), gray.get(), input->get_width(), input->get_height(),
                                           width, height, control_points);
    } catch (...) {
        output->set_image_type(common::BINARY);
        throw;
    }
    output->set_image_type(common::BINARY);
    const unsigned char* row = gray.get();
    for (int y = 0; y < height; ++y, row += width)
        for (int x = 0; x < width; ++x) output->set_pixel(x, y, row[x] < 129 ? 1u : 0u);
    return 1;
}

void ProjectiveCorrection::perspective_transformation_general(const unsigned char* input_data,
                                                              unsigned char* output_data, int input_width,
                                                              int input_height, int output_width, int output_height,
                                                              std::vector<Geocoordinate<float>>& corners) {
    if (output_width < 1 || output_height < 1 || corners.size() < 4) return;
    const Sampling sampling(output->get_image_type(), input_width, para.interpolation);
    const ProjectiveWarpCoefficients k = calculate_warp_coefficients(corners);
    const WarpJob job(input_data, output_data, input_width, input_height, output_width, output_height,
                      sampling.get_bytes_per_pixel(), sampling.get_row_size(), k, sampling.get_sampler(),
                      para.interpolation);
    switch (job.bytes_per_pixel) {
        case 1: warp_with_pixel_size<1>(*this, job); break;
        case 3: warp_with_pixel_size<3>(*this, job); break;
        case 4: warp_with_pixel_size<4>(*this, job); break;
        default: warp_with_pixel_size<0>(*this, job); break;
    }
}

void ProjectiveCorrection::calculate_filling_pixel() {
    if (control_points.size() < 4) return;
    std::vector<Geocoordinate<float>> c(control_points.begin(), control_points.begin() + 4);
    std::vector<unsigned char> pixels;
    get_pixels_on_hor_line(c[0], c[1], pixels, true);
    get_pixels_on_hor_line(c[3], c[2], pixels, false);
    get_pixels_on_ver_line(c[1], c[2], pixels, false);
    get_pixels_on_ver_line(c[0], c[3], pixels, true);
    if (pixels.empty()) return;
    if (input->get_image_type() == common::RGB) {
        find_above_median_color(static_cast<int>(pixels.size() / 3), pixels.data(), filling_pixel);
        return;
    }
    std::sort(pixels.begin(), pixels.end(), [](unsigned char p, unsigned char q) { return p > q; });
    const int half = static_cast<int>(pixels.size() / 2);
    float sum = 0.0f;
    for (int i = 0; i < half; ++i) sum += pixels[i];
    // A single byte leaves an empty half: black, as for a single RGB pixel.
    filling_pixel[0] = half > 0 ? static_cast<unsigned char>(static_cast<int>(sum / static_cast<float>(half))) : 0;
}

void ProjectiveCorrection::find_above_median_color(int count, const unsigned char* pixels, unsigned char* color) {
    if (count < 2) {
        color[0] = color[1] = color[2] = 0;
        return;
    }
    std::vector<int> brightness(static_cast<size_t>(count));
    for (int i = 0; i < count; ++i) {
        const unsigned char* p = pixels + 3 * i;
        brightness[static_cast<size_t>(i)] = constants::luminance(p[0], p[1], p[2]);
    }
    std::vector<int> order(static_cast<size_t>(count));
    std::iota(order.begin(), order.end(), 0);
    // Stable: among equally bright pixels the earlier ones stay in the brighter half.
    std::stable_sort(order.begin(), order.end(),
                     [&brightness](int p, int q) { return brightness[static_cast<size_t>(p)] > brightness[static_cast<size_t>(q)]; });
    const unsigned half = static_cast<unsigned>(count / 2);
    unsigned sum[3] = {0, 0, 0};
    for (unsigned i = 0; i < half; ++i) {
        const unsigned char* p = pixels + 3 * order[i];
        sum[0] += p[0];
        sum[1] += p[1];
        sum[2] += p[2];
    }
    for (int c = 0; c < 3; ++c) color[c] = static_cast<unsigned char>(sum[c] / half);
}

namespace {

// One side of the page as a x + b y + c = 0: a = 1, b = 0 for a vertical side,
// otherwise b = -1 and a the slope.
struct SideLine {
    double a, b, c;
    SideLine(const Geocoordinate<float>& p, const Geocoordinate<float>& q) {
        if (std::fabs(p.x - q.x) <= constants::kFloatEpsilon) {
            a = 1.0;
            b = 0.0;
            c = -static_cast<double>(p.x);
        } else {
            a = (static_cast<double>(p.y) - q.y) / (static_cast<double>(p.x) - q.x);
            b = -1.0;
            c = q.y - a * q.x;
        }
    }
};

// The walk shared by both sides, in the side's own coordinates: `along` runs
// down the side (rows of a vertical side, columns of a horizontal one),
// `across` is the other coordinate, found from the line by across_at(along).
// Appends the bytes at every step between the first and last places inside
// the image, shifted inward by offset and clipped.
template <typename AcrossAt, typename Append>
void walk_side(int first_along, int first_across, int last_along, int last_across, int along_size, int across_size,
               int offset, bool increase, AcrossAt across_at, Append append) {
    if (first_along > last_along) {
        std::swap(first_along, last_along);
        std::swap(first_across, last_across);
    }
    auto inside = [&](int along, int across) {
        return along >= 0 && along < along_size && across >= 0 && across < across_size;
    };
    // Forward until inside or past the end; places before 0 are never
    // inside, so the walk may start at -1.
    if (!inside(first_along, first_across)) {
        if (first_along < -1) first_along = -1;
        while (first_along < along_size) {
            ++first_along;
            first_across = across_at(first_along);
            if (inside(first_along, first_across)) break;
        }
    }
    // Backward until inside or at the first place; places past the end are never inside.
    if (!inside(last_along, last_across) && last_along > first_along) {
        if (last_along > along_size) last_along = std::max(along_size, first_along);
        while (last_along > first_along) {
            --last_along;
            last_across = across_at(last_along);
            if (inside(last_along, last_across)) break;
        }
    }
    const int span = last_along - first_along;
    if (span < 1) return;
    const int step = span > 7 ? span / 8 : 1;
    for (int along = first_along; along <= last_along; along += step) {
        int across = across_at(along);
        if (increase) {
            across += offset;
            if (across > across_size - 1) across = across_size - 1;
        } else {
            across -= offset;
            if (across < 0) across = 0;
        }
        // A place can still fall outside when the side runs along the far
        // border: it is skipped rather than read outside the buffer.
        if (inside(along, across)) append(along, across);
    }
}

}  // namespace

void ProjectiveCorrection::get_pixels_on_ver_line(Geocoordinate<float>& first, Geocoordinate<float>& second,
                                                  std::vector<unsigned char>& pixels, bool rightward) {
    const int width = input->get_width();
    const int height = input->get_height();
    const int offset = width > 499 ? width / 100 : 5;
    const SideLine line(first, second);
    if (line.a == 0.0) return;  // a horizontal line crosses no rows
    common::BasicImage* image = input;
    const int channels = image->get_image_type() == common::RGB ? 3 : 1;
    walk_side(static_cast<int>(first.y), static_cast<int>(first.x), static_cast<int>(second.y),
              static_cast<int>(second.x), height, width, offset, rightward,
              [&line](int y) { return truncate_to_int(-(line.c + line.b * y) / line.a); },
              [&](int y, int x) {
                  const unsigned char* p = image->get_pixel_pointer(x, y);
                  pixels.insert(pixels.end(), p, p + channels);
              });
}

void ProjectiveCorrection::get_pixels_on_hor_line(Geocoordinate<float>& first, Geocoordinate<float>& second,
                                                  std::vector<unsigned char>& pixels, bool downward) {
    const int width = input->get_width();
    const int height = input->get_height();
    const int offset = height > 499 ? height / 100 : 5;
    const SideLine line(first, second);
    if (line.b == 0.0) return;  // a vertical line crosses no columns
    common::BasicImage* image = input;
    const int channels = image->get_image_type() == common::RGB ? 3 : 1;
    walk_side(static_cast<int>(first.x), static_cast<int>(first.y), static_cast<int>(second.x),
              static_cast<int>(second.y), width, height, offset, downward,
              [&line](int x) { return truncate_to_int(-(line.c + line.a * x) / line.b); },
              [&](int x, int y) {
                  const unsigned char* p = image->get_pixel_pointer(x, y);
                  pixels.insert(pixels.end(), p, p + channels);
              });
}

}  // namespace geometric
