// Edge detection: scaled Sobel gradients with repeated borders, magnitudes
// from a square-root table, non-maximum suppression in 16.16 fixed point and
// a hysteresis follow on an explicit stack bounded at kFollowDepth.
#include "pixel/canny_edge_detector.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

namespace geometric {

namespace {

const char* const kNotGray = "edge detection is defined for GRAY images only";

const unsigned char kCandidate = 128;
const unsigned char kEdge = 255;

// Scaled gradients lie in [-128, 127], so dx^2 + dy^2 <= 2 * 128^2.
const int kLargestSquare = 2 * 128 * 128;

// round(sqrt(i)) for every i up to kLargestSquare: k for k^2 - k + 1 <= i <= k^2 + k
// (the halfway squares (k + 1/2)^2 are never integers). The largest is 181.
struct SquareRootTable {
    unsigned char root[kLargestSquare + 1];
    SquareRootTable() {
        int k = 0;
        for (int i = 0; i <= kLargestSquare; ++i) {
            while (i > k * k + k) ++k;
            root[i] = static_cast<unsigned char>(k);
        }
    }
};

const SquareRootTable& square_roots() {
    static const SquareRootTable table;
    return table;
}

// Step 2: scaled Sobel sums, the missing line or column outside the image
// repeating the nearest one.
void compute_gradients(const common::Image& gray, int width, int height, signed char* dx, signed char* dy) {
    for (int y = 0; y < height; ++y) {
        const unsigned char* above = gray.get_line_pointer(y > 0 ? y - 1 : 0);
        const unsigned char* centre = gray.get_line_pointer(y);
        const unsigned char* below = gray.get_line_pointer(y + 1 < height ? y + 1 : height - 1);
        signed char* gx = dx + static_cast<ptrdiff_t>(y) * width;
        signed char* gy = dy + static_cast<ptrdiff_t>(y) * width;
        for (int x = 0; x < width; ++x) {
            const int left = x > 0 ? x - 1 : 0;
            const int right = x + 1 < width ? x + 1 : width - 1;
            const int sum_x = (above[right] + 2 * centre[right] + below[right]) - (above[left] + 2 * centre[left] + below[left]);
            const int sum_y = (below[left] + 2 * below[x] + below[right]) - (above[left] + 2 * above[x] + above[right]);
            gx[x] = static_cast<signed char>(CannyEdgeDetector::scale_sobel_sum(sum_x));
            gy[x] = static_cast<signed char>(CannyEdgeDetector::scale_sobel_sum(sum_y));
        }
    }
}

// Step 3.
void compute_magnitudes(const signed char* dx, const signed char* dy, unsigned char* magnitude, size_t count) {
    const unsigned char* root = square_roots().root;
    for (size_t i = 0; i < count; ++i) magnitude[i] = root[dx[i] * dx[i] + dy[i] * dy[i]];
}

// Step 4. A candidate (magnitude >= low) off the frame is marked 128 when its
// magnitude, in 16.16 fixed point, is above the magnitude interpolated one
// step ahead along its gradient and not below the one a step behind. The
// axis neighbour and the diagonal neighbour on the gradient's side are
// mixed by the ratio r = (smaller component << 16) / larger component,
// truncated. The strict test ahead and the lax one behind keep one pixel of
// a step edge, the one on the side the gradient points to. A pixel without
// gradient is no maximum.
void suppress_non_maxima(const signed char* dx, const signed char* dy, const unsigned char* magnitude,
                         unsigned char* marks, int width, int height, int low) {
    for (int y = 1; y + 1 < height; ++y)
        for (int x = 1; x + 1 < width; ++x) {
            const ptrdiff_t i = static_cast<ptrdiff_t>(y) * width + x;
            const int m = magnitude[i];
            if (m < low) continue;
            const int gx = dx[i];
            const int gy = dy[i];
            if (gx == 0 && gy == 0) continue;
            const int ax = gx < 0 ? -gx : gx;
            const int ay = gy < 0 ? -gy : gy;
            ptrdiff_t axis, diagonal;
            int32_t r;
            if (ax >= ay) {
                axis = gx > 0 ? 1 : -1;
                diagonal = axis + (gy >= 0 ? width : -width);
                r = (ay << 16) / ax;
            } else {
                axis = gy > 0 ? width : -width;
                diagonal = axis + (gx >= 0 ? 1 : -1);
                r = (ax << 16) / ay;
            }
            const int32_t ahead = magnitude[i + axis] * (65536 - r) + magnitude[i + diagonal] * r;
            const int32_t behind = magnitude[i - axis] * (65536 - r) + magnitude[i - diagonal] * r;
            const int32_t centre = m << 16;
            if (centre > ahead && centre >= behind) marks[i] = kCandidate;
        }
}

}  // namespace

int CannyEdgeDetector::scale_sobel_sum(int sum) {
    if (sum < -511) return -128;
    if (sum >= 512) return 127;
    return sum / 4;
}

unsigned char CannyEdgeDetector::magnitude_of(int dx, int dy) { return square_roots().root[dx * dx + dy * dy]; }

// The follow is a depth-first walk: each frame holds a pixel and the next of
// its eight neighbours to look at, exactly as nested calls would.
void CannyEdgeDetector::follow_edges(unsigned char* marks, const unsigned char* magnitude, int width, int height,
                                     int low, int high) {
    const size_t count = static_cast<size_t>(width) * static_cast<size_t>(height);
    for (size_t i = 0; i < count; ++i)
        if (marks[i] != kCandidate) marks[i] = 0;
    if (width < 3 || height < 3) {
        std::memset(marks, 0, count);
        return;
    }
    std::memset(marks, 0, static_cast<size_t>(width));
    std::memset(marks + static_cast<ptrdiff_t>(height - 1) * width, 0, static_cast<size_t>(width));
    for (int y = 1; y + 1 < height; ++y) {
        marks[static_cast<ptrdiff_t>(y) * width] = 0;
        marks[static_cast<ptrdiff_t>(y) * width + width - 1] = 0;
    }

    const ptrdiff_t w = width;
    const ptrdiff_t neighbour[8] = {-w - 1, -w, -w + 1, -1, 1, w - 1, w, w + 1};
    struct Frame {
        ptrdiff_t pixel;
        int next;
    };
    Frame stack[kFollowDepth];
    for (ptrdiff_t seed = w + 1; seed < static_cast<ptrdiff_t>(count) - w - 1; ++seed) {
        if (marks[seed] != kCandidate || magnitude[seed] < high) continue;
        marks[seed] = kEdge;
        int depth = 0;  // of the frame on top; the seed is at depth 0
        stack[0] = Frame{seed, 0};
        while (depth >= 0) {
            Frame& frame = stack[depth];
            if (frame.next == 8) {
                --depth;
                continue;
            }
            const ptrdiff_t q = frame.pixel + neighbour[frame.next++];
            if (marks[q] != kCandidate || magnitude[q] <= low) continue;
            marks[q] = kEdge;
            // A pixel at depth kFollowDepth is kept and not continued from.
            if (depth + 1 < kFollowDepth) stack[++depth] = Frame{q, 0};
        }
    }
    for (size_t i = 0; i < count; ++i)
        if (marks[i] == kCandidate) marks[i] = 0;
}

void CannyEdgeDetector::perform_edge_detect(int low, int high, const common::Image& gray,
                                            common::BasicImage& output) {
    if (gray.get_image_type() != common::GRAY) throw kNotGray;
    const int width = gray.get_width();
    const int height = gray.get_height();
    const size_t count = static_cast<size_t>(width) * static_cast<size_t>(height);
    common::BasicImage result;
    unsigned char* work = nullptr;
    try {
        common::BasicImage fresh(height, width, common::GRAY);
        result.swap(fresh);
        if (count > 0) {
            work = static_cast<unsigned char*>(std::malloc(3 * count));
            if (work == nullptr) throw std::string();
        }
    } catch (const std::string&) {
        common::BasicImage empty;
        output.swap(empty);
        return;
    }
    if (count > 0) {
        signed char* dx = reinterpret_cast<signed char*>(work);
        signed char* dy = dx + count;
        unsigned char* magnitude = work + 2 * count;
        unsigned char* marks = result.get_data();
        std::memset(marks, kEdge, count);
        compute_gradients(gray, width, height, dx, dy);
        compute_magnitudes(dx, dy, magnitude, count);
        suppress_non_maxima(dx, dy, magnitude, marks, width, height, low);
        follow_edges(marks, magnitude, width, height, low, high);
        std::free(work);
    }
    output.swap(result);
}

}  // namespace geometric
