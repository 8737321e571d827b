// Text pages built in code, with their answers known by construction: lines
// of glyph-like blobs at a known body size, optionally a bold headline above
// them and a photo block among them, laid out on the page plane and carried
// into the image by a homography. The text route's tests start from them.
#ifndef MORVANE_TESTS_SUPPORT_TEXT_PAGES_H
#define MORVANE_TESTS_SUPPORT_TEXT_PAGES_H

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include "common/basic_image.h"
#include "textgeometry/geobox.h"
#include "textgeometry/geocoordinate.h"

namespace support {

// Page plane to image: (x, y, w) = H (u, v, 1), row-major.
typedef std::array<double, 9> Homography;

inline Homography identity_homography() { return Homography{1, 0, 0, 0, 1, 0, 0, 0, 1}; }

inline Homography multiply(const Homography& a, const Homography& b) {
    Homography p{};
    for (int r = 0; r < 3; ++r)
        for (int c = 0; c < 3; ++c)
            for (int k = 0; k < 3; ++k) p[3 * r + c] += a[3 * r + k] * b[3 * k + c];
    return p;
}

// Turned by `degrees` about (cx, cy), counter-clockwise as seen on screen,
// then in perspective about the same point: w = 1 + tilt (y - cy) + pan (x - cx),
// so that a positive tilt narrows the page toward its bottom and a positive
// pan toward its right.
inline Homography turned_homography(double degrees, double cx, double cy, double tilt = 0.0, double pan = 0.0) {
    const double a = degrees * 3.14159265358979323846 / 180.0;
    const double c = std::cos(a), s = std::sin(a);
    const Homography to_centre{1, 0, -cx, 0, 1, -cy, 0, 0, 1};
    const Homography turn{c, s, 0, -s, c, 0, 0, 0, 1};
    const Homography perspective{1, 0, 0, 0, 1, 0, pan, tilt, 1};
    const Homography back{1, 0, cx, 0, 1, cy, 0, 0, 1};
    return multiply(back, multiply(perspective, multiply(turn, to_centre)));
}

inline geometric::Geocoordinate<double> apply(const Homography& m, double u, double v) {
    const double w = m[6] * u + m[7] * v + m[8];
    return geometric::Geocoordinate<double>((m[0] * u + m[1] * v + m[2]) / w, (m[3] * u + m[4] * v + m[5]) / w);
}

// Where the images of the page's horizontal lines meet: H (1, 0, 0). Only
// for a homography whose third row gives that direction a weight (m[6] != 0).
inline geometric::Geocoordinate<double> horizontal_vanishing_point(const Homography& m) {
    return geometric::Geocoordinate<double>(m[0] / m[6], m[3] / m[6]);
}

inline Homography inverse(const Homography& m) {
    const double a = m[4] * m[8] - m[5] * m[7], b = m[5] * m[6] - m[3] * m[8], c = m[3] * m[7] - m[4] * m[6];
    const double det = m[0] * a + m[1] * b + m[2] * c;
    return Homography{a / det,
                      (m[2] * m[7] - m[1] * m[8]) / det,
                      (m[1] * m[5] - m[2] * m[4]) / det,
                      b / det,
                      (m[0] * m[8] - m[2] * m[6]) / det,
                      (m[2] * m[3] - m[0] * m[5]) / det,
                      c / det,
                      (m[1] * m[6] - m[0] * m[7]) / det,
                      (m[0] * m[4] - m[1] * m[3]) / det};
}

struct TextPageSpec {
    int width = 1000;
    int height = 800;
    // The text on the page plane, in pixels of the image when the
    // homography is the identity: glyphs from `left` up to `right`, the
    // first line's boxes (or the headline) starting at `top`; split into
    // `columns` equal columns with `gutter` between them.
    int left = 80;
    int right = 920;
    int top = 80;
    int lines = 10;
    int columns = 1;
    int gutter = 80;
    // A body glyph's box is body_height high and glyph_width wide, drawn
    // with strokes `stroke` thick; line_pitch runs from box top to box top.
    int body_height = 22;
    int glyph_width = 14;
    int stroke = 3;
    int glyph_gap = 6;
    int word_gap = 20;
    int glyphs_per_word = 5;
    int line_pitch = 44;
    // Every stem_every-th glyph of a line is a stem, a bar `stroke` wide
    // in the middle of its box ("l"). None when 0.
    int stem_every = 0;
    // Glyphs joined_first up to joined_first + joined_count - 1 of a line
    // touch, through a bar over the lower 60% of their boxes: one wide blob,
    // such as smeared letters make, too large for text. In the first line
    // and every joined_line_step-th after it, in each column; none when
    // joined_count is 0.
    int joined_first = 0;
    int joined_count = 0;
    int joined_line_step = 1;
    // A ragged right edge: line k of a column ends (3 k) % (ragged + 1)
    // glyphs short of the column's right end. None when 0.
    int ragged = 0;
    unsigned char paper = 220;
    unsigned char ink = 40;
    // A bold headline above the body: headline_glyphs glyphs headline_height
    // high, their stems and bars headline_stem thick. None when 0 high.
    int headline_height = 0;
    int headline_stem = 20;
    int headline_glyphs = 5;
    // A photo block, a dark-to-mid gray shading, on the page plane; body
    // glyphs within word_gap of it are left out. None when right < left.
    geometric::Geobox<int> photo{-1, -1, 0, 0};
    Homography homography = identity_homography();
};

struct TextPage {
    common::BasicImage gray;  // GRAY
    common::BasicImage ink;   // BINARY: the pixels of every glyph, headline included, no photo
    // One entry a body line of a column, line by line from the top, the
    // columns of a line from the left: the bottom centres of its glyph boxes
    // (joined ones too) on the page plane, carried into the image.
    std::vector<std::vector<geometric::Geocoordinate<float>>> baselines;
    // Image boxes of the body glyphs and of the headline's glyphs.
    std::vector<geometric::Geobox<int>> glyph_boxes;
    std::vector<geometric::Geobox<int>> headline_boxes;
};

namespace text_pages_detail {

struct Rect {
    double left, top, right, bottom;  // half-open on the page plane
    bool holds(double u, double v) const { return u >= left && u < right && v >= top && v < bottom; }
};

// The strokes of a glyph that fills its box: "n", "o", "u" and "c" in turn.
inline std::vector<Rect> glyph_strokes(int kind, double l, double t, double w, double h, double s) {
    const double r = l + w, b = t + h;
    const Rect left{l, t, l + s, b}, right{r - s, t, r, b}, top{l, t, r, t + s}, bottom{l, b - s, r, b};
    switch (kind % 4) {
        case 0: return {left, right, top};
        case 1: return {left, right, top, bottom};
        case 2: return {left, right, bottom};
        default: return {left, top, bottom};
    }
}

// Draws the union of rects (one glyph) with `value`, and sets its ink
// pixels; answers the image box of what it drew.
inline geometric::Geobox<int> draw(const std::vector<Rect>& rects, const Homography& forward,
                                   const Homography& backward, unsigned char value, TextPage& page) {
    double x0 = 1e30, y0 = 1e30, x1 = -1e30, y1 = -1e30;
    for (const Rect& r : rects)
        for (const double u : {r.left, r.right})
            for (const double v : {r.top, r.bottom}) {
                const geometric::Geocoordinate<double> p = apply(forward, u, v);
                x0 = std::min(x0, p.x), y0 = std::min(y0, p.y), x1 = std::max(x1, p.x), y1 = std::max(y1, p.y);
            }
    geometric::Geobox<int> box{-1, -1, page.gray.get_width(), page.gray.get_height()};
    const int first_x = std::max(0, static_cast<int>(std::floor(x0)) - 1);
    const int last_x = std::min(page.gray.get_width() - 1, static_cast<int>(std::ceil(x1)) + 1);
    const int first_y = std::max(0, static_cast<int>(std::floor(y0)) - 1);
    const int last_y = std::min(page.gray.get_height() - 1, static_cast<int>(std::ceil(y1)) + 1);
    for (int y = first_y; y <= last_y; ++y)
        for (int x = first_x; x <= last_x; ++x) {
            const geometric::Geocoordinate<double> q = apply(backward, x, y);
            if (!std::any_of(rects.begin(), rects.end(), [&](const Rect& r) { return r.holds(q.x, q.y); })) continue;
            page.gray.get_line_pointer(y)[x] = value;
            page.ink.set_pixel(x, y, 1);
            box.left = std::min(box.left, x), box.top = std::min(box.top, y);
            box.right = std::max(box.right, x), box.bottom = std::max(box.bottom, y);
        }
    return box;
}

}  // namespace text_pages_detail

inline TextPage make_text_page(const TextPageSpec& spec) {
    using text_pages_detail::Rect;
    TextPage page;
    page.gray.reset(spec.height, spec.width, common::GRAY);
    std::fill(page.gray.get_data(), page.gray.get_data() + page.gray.get_data_size(), spec.paper);
    page.ink.reset(spec.height, spec.width, common::BINARY);
    const Homography backward = inverse(spec.homography);

    // The photo: shading from 25 at its top-left to 125 at its bottom-right.
    const geometric::Geobox<int>& photo = spec.photo;
    if (photo.right >= photo.left) {
        for (int y = 0; y < spec.height; ++y)
            for (int x = 0; x < spec.width; ++x) {
                const geometric::Geocoordinate<double> q = apply(backward, x, y);
                if (q.x < photo.left || q.x > photo.right || q.y < photo.top || q.y > photo.bottom) continue;
                const double share = ((q.x - photo.left) / (photo.right - photo.left + 1) +
                                      (q.y - photo.top) / (photo.bottom - photo.top + 1)) / 2.0;
                page.gray.get_line_pointer(y)[x] = static_cast<unsigned char>(25.0 + 100.0 * share);
            }
    }

    int line_top = spec.top;
    if (spec.headline_height > 0) {
        const int s = spec.headline_stem;
        for (int k = 0; k < spec.headline_glyphs; ++k) {
            const double l = spec.left + k * 4.0 * s;
            page.headline_boxes.push_back(text_pages_detail::draw(
                text_pages_detail::glyph_strokes(0, l, line_top, 3.0 * s, spec.headline_height, s), spec.homography,
                backward, spec.ink, page));
        }
        line_top += spec.headline_height + spec.line_pitch;
    }

    const auto near_photo = [&](double l, double t) {
        return photo.right >= photo.left && l + spec.glyph_width + spec.word_gap > photo.left &&
               l - spec.word_gap <= photo.right && t + spec.body_height + spec.word_gap > photo.top &&
               t - spec.word_gap <= photo.bottom;
    };
    const double column_width = (spec.right - spec.left - (spec.columns - 1.0) * spec.gutter) / spec.columns;
    for (int line = 0; line < spec.lines; ++line, line_top += spec.line_pitch)
        for (int column = 0; column < spec.columns; ++column) {
            std::vector<geometric::Geocoordinate<float>> baseline;
            const double column_left = spec.left + column * (column_width + spec.gutter);
            double l = column_left;
            const double short_by = (3 * line) % (spec.ragged + 1) * (spec.glyph_width + spec.glyph_gap);
            for (int k = 0; l + spec.glyph_width <= column_left + column_width - short_by; ++k) {
                const int gap = (k + 1) % spec.glyphs_per_word == 0 ? spec.word_gap : spec.glyph_gap;
                if (!near_photo(l, line_top)) {
                    std::vector<Rect> strokes =
                        text_pages_detail::glyph_strokes(k + line, l, line_top, spec.glyph_width, spec.body_height,
                                                         spec.stroke);
                    if (spec.stem_every > 0 && (k + 1) % spec.stem_every == 0) {
                        const double middle = l + (spec.glyph_width - spec.stroke) * 0.5;
                        strokes = {Rect{middle, double(line_top), middle + spec.stroke,
                                        double(line_top + spec.body_height)}};
                    }
                    const int joined = k - spec.joined_first;
                    if (joined >= 0 && joined < spec.joined_count - 1 && line % spec.joined_line_step == 0)
                        strokes.push_back(Rect{l, line_top + spec.body_height * 0.4,
                                               l + spec.glyph_width + gap, double(line_top + spec.body_height)});
                    page.glyph_boxes.push_back(
                        text_pages_detail::draw(strokes, spec.homography, backward, spec.ink, page));
                    const geometric::Geocoordinate<double> p =
                        apply(spec.homography, l + (spec.glyph_width - 1) * 0.5, line_top + spec.body_height - 1);
                    baseline.emplace_back(static_cast<float>(p.x), static_cast<float>(p.y));
                }
                l += spec.glyph_width + gap;
            }
            page.baselines.push_back(baseline);
        }
    return page;
}

}  // namespace support

#endif
