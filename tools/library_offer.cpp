// The probes of what this build of the library offers, and the two small
// scenes they run on: a page on a dark table, and a page of text whose
// edges are out of view.
#include "library_offer.h"

#include <cmath>

#include "page_finder.h"
#include "scan_error.h"

namespace scan {
namespace {

constexpr unsigned char kTable = 50, kPaper = 235, kInk = 25;

// A scene: paper (on a dark table, or filling the picture), with lines of
// glyphs inside a margin, all turned about the picture's centre.
struct Scene {
    int width, height;
    double degrees;
    bool on_table;
    double left, top, right, bottom;  // the paper before turning
    double margin;                    // from the paper's edge to the text
    double glyph_width, glyph_height, stroke;
    double pitch_x, pitch_y;  // from glyph to glyph, and line to line
};

// A glyph like a capital H: two stems and a bar, with strokes thin enough
// for page analysis to take it for a character rather than a picture.
bool in_glyph(const Scene& scene, double u, double v) {
    if (u >= scene.glyph_width || v >= scene.glyph_height) return false;
    const double bar = (scene.glyph_height - scene.stroke) / 2;
    return u < scene.stroke || u >= scene.glyph_width - scene.stroke || (v >= bar && v < bar + scene.stroke);
}

Raster draw(const Scene& scene) {
    Raster image = make_raster(scene.width, scene.height, 1);
    const double cx = scene.width / 2.0, cy = scene.height / 2.0;
    const double c = std::cos(scene.degrees * M_PI / 180.0), s = std::sin(scene.degrees * M_PI / 180.0);
    for (int y = 0; y < scene.height; ++y) {
        unsigned char* row = image.row(y);
        for (int x = 0; x < scene.width; ++x) {
            // The pixel's place on the paper before it was turned.
            const double u = cx + c * (x - cx) + s * (y - cy);
            const double v = cy - s * (x - cx) + c * (y - cy);
            const bool paper = !scene.on_table || (u >= scene.left && u <= scene.right && v >= scene.top && v <= scene.bottom);
            // Whole glyphs only, inside the margin.
            const double tu = u - scene.left - scene.margin, tv = v - scene.top - scene.margin;
            const double gu = std::fmod(tu, scene.pitch_x), gv = std::fmod(tv, scene.pitch_y);
            const bool text = paper && tu >= 0 && tv >= 0 &&
                              tu - gu + scene.glyph_width <= scene.right - scene.left - 2 * scene.margin &&
                              tv - gv + scene.glyph_height <= scene.bottom - scene.top - 2 * scene.margin &&
                              in_glyph(scene, gu, gv);
            row[x] = text ? kInk : paper ? kPaper : kTable;
        }
    }
    return image;
}

// A plain page turned by 4 degrees on a dark table, with small text.
const Raster& page_on_table() {
    static const Raster scene = draw({480, 360, 4.0, true, 70, 50, 410, 310, 25, 8, 12, 2, 12, 20});
    return scene;
}

// Text filling the picture, no paper edge in view, turned by 3 degrees. The
// characters are 33 pixels tall: 450 dots per inch by the rule that body
// text is 22 pixels tall at 300.
const Raster& text_without_edges() {
    static const Raster scene = draw({640, 480, 3.0, false, 0, 0, 639, 479, 60, 20, 33, 4, 28, 50});
    return scene;
}

// A probe that fails in the library has its answer: not offered.
template <typename Probe>
bool answers(Probe probe) {
    try {
        return probe();
    } catch (const ImageProblem&) {
        return false;
    }
}

}  // namespace

bool edge_search_offered() {
    static const bool offered = answers([] { return find_with_corrector(page_on_table(), true).found; });
    return offered;
}

bool text_search_offered() {
    // Not against the edge-only mode: its line stage answers on lines of
    // text too, while the default mode's edge search, the contour stages
    // alone, sees no page here. Only the text search can find one.
    static const bool offered = answers([] { return find_with_corrector(text_without_edges(), false).found; });
    return offered;
}

bool engine_method_offered(int method) {
    static int offered[8] = {-1, -1, -1, -1, -1, -1, -1, -1};
    if (method < 0 || method > 7) return false;
    if (offered[method] < 0) {
        offered[method] = answers([&] { return find_with_engine(method, page_on_table()).found; }) ? 1 : 0;
    }
    return offered[method] == 1;
}

bool resolution_estimate_offered() {
    static const bool offered = answers([] { return estimate_resolution(text_without_edges()) != 300; });
    return offered;
}

}  // namespace scan
