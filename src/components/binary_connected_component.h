// A stroke: the runs of a component that formation attached to each other
// line by line, and at the same time one link of its component's chain.
#ifndef MORVANE_COMPONENTS_BINARY_CONNECTED_COMPONENT_H
#define MORVANE_COMPONENTS_BINARY_CONNECTED_COMPONENT_H

#include <memory_resource>
#include <utility>
#include <vector>

#include "common/basic_image.h"
#include "common/image.h"
#include "pixel/binary_run.h"
#include "textgeometry/geobox.h"
#include "textgeometry/geocoordinate.h"

namespace geometric {

// A component is the chain of strokes reachable by next from its head, the
// one stroke whose previous is null. Merging two components splices two
// chains; the cached pointers are union-find shortcuts that always point
// toward the head (cached_first) or the tail (cached_last), perhaps not all
// the way after later splices, so they are only ever shortened.
class BinaryConnectedComponent {
public:
    // A run of the stroke and the line on which it lies.
    typedef std::pair<const BinaryRun*, int> RunOnLine;
    // A growable array of runs; the calculator gives it memory from its own
    // arena, so that thousands of small arrays cost no heap calls.
    typedef std::pmr::vector<RunOnLine> StrokeRuns;

    BinaryConnectedComponent();
    explicit BinaryConnectedComponent(std::pmr::memory_resource* run_memory);
    BinaryConnectedComponent(const BinaryConnectedComponent&) = delete;
    BinaryConnectedComponent& operator=(const BinaryConnectedComponent&) = delete;

    // Head of the chain. Every stroke passed on the way remembers the head.
    BinaryConnectedComponent* get_first_element();
    // Tail of the chain, the mirror image of get_first_element.
    BinaryConnectedComponent* get_last_element();

    // Gray levels of a blob and around it, integer means.
    struct BlobNeighborForeBack {
        int foreground;  // mean gray of the interior pixels
        int all_pixels;  // mean gray of all pixels
        int background;  // mean of the ring averages at the contour pixels
    };
    // What a blob costs to code: prediction errors, spread of its inside and
    // of its surroundings, and how many contour pixels saw a background.
    struct BlobNeighborCost {
        double gradient_cost;
        double foreground_cost;
        double background_cost;
        double background_count;
    };

    // The component features below follow next from the stroke on which
    // they are called, except the box and the pixel count, which cover the
    // whole chain. Called on a head, they describe the component.

    // Pixel of the topmost recorded run: its start column and its line. The
    // first stroke in next order wins among equals; without recorded runs
    // the point is left alone.
    void get_top_point(Geocoordinate<int>& point) const;
    // Union of the boxes of the whole chain, in both directions.
    Geobox<int> get_bounding_box() const;
    // Pixels of the whole chain, in both directions.
    unsigned count_pixel() const;
    // 1 plus the number of next links behind this stroke.
    int count_stroke() const;
    // Sets (draw) or clears (undraw) the bits of every run in a BINARY image.
    void draw_blob_image(common::BasicImage& image) const;
    void undraw_blob_image(common::BasicImage& image) const;
    // Writes value into a GRAY image factor times larger: a run (start, end)
    // of line y covers lines y * factor .. y * factor + factor - 1 and columns
    // start * factor .. end * factor + factor - 1, clipped to the image.
    void draw_blob_image(common::BasicImage& image, int value, int factor) const;
    // True as soon as one run meets a set bit of the BINARY image.
    bool is_thick_blob(const common::Image& image) const;
    // Appends x and y of every pixel, run by run.
    void get_element_coordinates(std::vector<int>& xs, std::vector<int>& ys) const;
    // Outer contour by a Moore-neighbour trace from the top point, clockwise
    // in image terms. A contour that came back to its start more than once
    // repeats the start at its end. Without keep_all, points whose image x or
    // y equals 1 are left out, which is how the page-edge work drops points
    // lying on a one-pixel frame.
    void get_boundary(std::vector<int>& xs, std::vector<int>& ys, bool keep_all) const;
    // The same with the working memory of the trace handed in, so that a
    // caller tracing many components reuses it; its contents do not matter.
    void get_boundary(std::vector<int>& xs, std::vector<int>& ys, bool keep_all, std::vector<signed char>& grid,
                      std::vector<int>& cells) const;
    // Gray means of the blob in gray: a pixel with a clear 8-neighbour in
    // binary is a contour pixel and contributes the mean of the clear pixels
    // of dilated on the ring of radius window / 2 around it (when that ring
    // has any); other pixels are interior. The three images share one size.
    void fore_back_neighbor(const common::Image& binary, const common::Image& dilated, const common::Image& gray,
                            int window, BlobNeighborForeBack& result) const;
    // Coding cost of the blob against the means of fore_back_neighbor; adds
    // to cost.gradient_cost, sets the other three fields (background_cost
    // only when a contour pixel saw a background). Answers the count of such
    // contour pixels.
    double compression_cost(const common::Image& binary, const common::Image& dilated, const common::Image& gray,
                            int window, const BlobNeighborForeBack& means, BlobNeighborCost& cost) const;

    BinaryConnectedComponent* previous;
    BinaryConnectedComponent* next;
    BinaryConnectedComponent* cached_last;
    BinaryConnectedComponent* cached_first;
    // Pixels of this stroke's runs alone.
    unsigned pixels;
    // Filled only when the calculator stores runs; the runs live in the
    // calculator's RunsInImage.
    StrokeRuns runs;
    // Box of this stroke's runs alone; a stroke may hold two runs of one line.
    Geobox<int> box;
};

}  // namespace geometric

#endif
