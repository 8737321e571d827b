// Run-based formation of connected components in one top-down pass: runs are
// attached to strokes, strokes chained into components, a component known by
// the head of its chain. No label image is made during the pass.
#ifndef MORVANE_COMPONENTS_CONNECTED_COMPONENT_CALCULATOR_H
#define MORVANE_COMPONENTS_CONNECTED_COMPONENT_CALCULATOR_H

#include <cstddef>
#include <iterator>
#include <list>
#include <memory>
#include <memory_resource>
#include <vector>

#include "common/basic_image.h"
#include "components/being_processed_stroke.h"
#include "components/binary_connected_component.h"
#include "components/stroke_array.h"
#include "pixel/runs_in_image.h"
#include "pixel/runs_in_line.h"
#include "textgeometry/geobox.h"
#include "textgeometry/geocoordinate.h"

namespace geometric {

// A component as the page analysis sees it, defined in
// pageanalysis/text_blob.h; only declared here, so that the components do
// not depend on the page analysis.
struct TextBlob;

// One calculator serves one image: a second formation appends to the strokes
// of the first and replaces the runs they point into. Queries that look like
// reads still write the chain shortcuts, so a calculator belongs to one
// thread at a time.
class ConnectedComponentCalculator {
public:
    typedef std::list<StrokeArray> StrokePool;

    // Visits the heads of the components in the order of their creation:
    // pool arrays oldest first, strokes in each array in creation order.
    class iterator {
    public:
        typedef std::forward_iterator_tag iterator_category;
        typedef BinaryConnectedComponent value_type;
        typedef std::ptrdiff_t difference_type;
        typedef BinaryConnectedComponent* pointer;
        typedef BinaryConnectedComponent& reference;

        iterator() : stroke(nullptr), array_end(nullptr) {}
        reference operator*() const { return *stroke; }
        pointer operator->() const { return stroke; }
        iterator& operator++();
        iterator operator++(int) {
            iterator before = *this;
            ++*this;
            return before;
        }
        bool operator==(const iterator& other) const { return stroke == other.stroke; }
        bool operator!=(const iterator& other) const { return stroke != other.stroke; }

    private:
        friend class ConnectedComponentCalculator;
        iterator(BinaryConnectedComponent* stroke_, BinaryConnectedComponent* array_end_, StrokePool::iterator node_,
                 StrokePool::iterator sentinel_)
            : stroke(stroke_), array_end(array_end_), node(node_), sentinel(sentinel_) {}
        // Moves on from stroke (included) to the first head, or to the end.
        void settle();

        BinaryConnectedComponent* stroke;
        BinaryConnectedComponent* array_end;
        StrokePool::iterator node;
        StrokePool::iterator sentinel;
    };

    // Both flags on, one pool array with room for 10 strokes.
    ConnectedComponentCalculator();
    ConnectedComponentCalculator(const ConnectedComponentCalculator&) = delete;
    ConnectedComponentCalculator& operator=(const ConnectedComponentCalculator&) = delete;

    // 4 selects the four-neighbourhood; every other value the eight-neighbourhood.
    void set_neighborhood(int neighborhood) { eight_neighborhood = neighborhood != 4; }
    bool get_eight_neighborhood() const { return eight_neighborhood; }
    // Nothing in the library clears it: without stored runs strokes know only
    // their boxes and pixel counts, and every line is scanned as bitonal.
    void set_store_runs(bool store) { store_runs = store; }
    bool get_store_runs() const { return store_runs; }
    int get_neighbor_reach() const { return neighbor_reach; }

    // The pass over the image. An image without lines forms nothing.
    void formulate_connected_components(const common::BasicImage& image);
    // One new stroke for every run of line 0.
    void init_strokes_of_first_line(const RunsInLine& runs, std::vector<BeingProcessedStroke>& current);
    // Attaches the runs of one line to the strokes of the line above; current
    // receives one entry for each run, in run order.
    void process_line(const RunsInLine& runs, int line, const std::vector<BeingProcessedStroke>& previous,
                      std::vector<BeingProcessedStroke>& current);

    // Forms the strokes a label image left unformed (see calculate_label_image).
    iterator begin();
    iterator end();
    // Number of components; walks the whole pool.
    std::size_t size();
    // True while the first pool array holds no stroke and no label image has
    // found a component whose strokes wait to be formed.
    bool isemptyblob() const { return !strokes_pending && pool.front().size() == 0; }
    // Runs of the last formation with stored runs; empty before.
    const std::shared_ptr<RunsInImage>& get_runs_in_image() const { return runs_in_image; }
    const StrokePool& get_pool() {
        settle_strokes();
        return pool;
    }

    // Queries. Each forms the components of image first when the calculator
    // is still empty; components are taken in the order of the iterator.

    // The runs of the image, shared with the strokes that point into them.
    std::shared_ptr<RunsInImage> obtain_runs_in_image(const common::BasicImage& image);
    // Label of every pixel in a frame of border pixels: (width + 2 border) x
    // (height + 2 border) entries, 0 for background and frame, components
    // numbered from 1. Entries already in labels are not cleared.
    void calculate_label_image(const common::BasicImage& image, std::vector<int>& labels, int border);
    // The same into a caller's array of that many entries, every one of
    // which is written; no second copy of the labels is made. On an empty
    // calculator the labels come from the runs alone and the strokes are
    // formed only when something asks for them, from the runs kept: the
    // components, their numbers and every later answer are those of a
    // formation before the labels.
    void calculate_label_image(const common::BasicImage& image, int* labels, int border);
    // Appends one blob a component: its whole box, its whole pixel count
    // and its head, which the blob points to and does not own.
    void calculate_feature_blobs(const common::BasicImage& image, std::list<TextBlob>& blobs);
    // Appends the height (width) of each component's whole box.
    void calculate_blob_heights(const common::BasicImage& image, std::vector<int>& heights);
    void calculate_blob_widths(const common::BasicImage& image, std::vector<int>& widths);
    void calculate_blob_dimensions(const common::BasicImage& image, std::vector<int>& heights,
                                   std::vector<int>& widths);
    // Appends the top point of each component.
    void obtain_blob_top_points(const common::BasicImage& image, std::vector<Geocoordinate<int>>& points);
    // Appends the kept contour points of every component, one component after
    // the other with nothing between them.
    void obtain_blob_contours_one_by_one(const common::BasicImage& image, std::vector<Geocoordinate<int>>& points);
    // Draws into a BINARY output the components at the given positions. The
    // indices are sorted; a repeated index stops the drawing there, so that
    // 1, 1, 3 draws component 1 alone.
    void create_images_formulated_with_selected_blobs(std::vector<int> indices, common::BasicImage& output);
    // Box of the component with the largest box area, the first among
    // equals; answers that area, or 0 and leaves box alone when there is no
    // component. Does not form.
    int calculate_largest_blob_bounding_box(Geobox<int>& box);
    // Forms, on this calculator whatever its state, the components of a
    // canvas spanning the points in which the listed points are 255 and all
    // else 0; 255 being background, the components are those of the pixels
    // not listed. Writes the box and the pixels of the component with the
    // most pixels (the first among equals), in the points' coordinates, and
    // answers its pixel count; 0 with nothing written when there is none.
    unsigned calculate_largest_blob_bounding_box(const std::vector<int>& xs, const std::vector<int>& ys,
                                                 Geobox<int>& box, std::vector<int>& out_xs,
                                                 std::vector<int>& out_ys);
    // One step of the blob-size scale map: forms the components of the
    // BINARY binary_image (whatever the calculator's state), erases from it
    // those under minimum_pixels or over maximum_pixels, and those whose
    // height (use_height) or width is below minimum_size scaled down to the
    // level, and draws the others with value level + 1 into the GRAY
    // scale_image, scaled up from level to base_level. Answers 1 when a
    // component was over maximum_pixels. Levels run from base_level to 5;
    // throws a const char* for levels outside the table.
    int create_scale_img(int level, common::BasicImage& scale_image, common::BasicImage& binary_image, int base_level,
                         int minimum_size, bool use_height, double maximum_pixels, double minimum_pixels);
    // As create_scale_img, except that components under minimum_pixels or
    // over maximum_pixels are passed over and stay in binary_image, and that
    // it does not serve level 5 (level difference 5 throws, level 5 draws
    // nothing).
    int create_scale_img_only(int level, common::BasicImage& scale_image, common::BasicImage& binary_image,
                              int base_level, int minimum_size, bool use_height, double maximum_pixels,
                              double minimum_pixels);

private:
    // Forms the components of image when the calculator is still empty.
    void formulate_if_empty(const common::BasicImage& image) {
        if (isemptyblob()) formulate_connected_components(image);
    }
    // The strokes of the runs of lines, appended to the pool.
    void form_strokes(const RunsInImage& lines);
    // Forms the strokes that a label image left waiting, if any.
    void settle_strokes();
    // Writes the label of every run into a framed array already sized.
    void write_labels(int* labels, std::size_t framed_width, int border);
    int create_scale_image(const int (&factors)[6], bool erase_out_of_range, int level,
                           common::BasicImage& scale_image, common::BasicImage& binary_image, int base_level,
                           int minimum_size, bool use_height, double maximum_pixels, double minimum_pixels);

    // A stroke of one run: box of the run, its pixels, the run recorded when
    // runs are stored.
    BinaryConnectedComponent* take_new_stroke(const BinaryRun& run, int line);
    // Adds a run of this line to a stroke of the line above.
    void extend_stroke(BinaryConnectedComponent* stroke, const BinaryRun& run, int line);

    bool store_runs;
    bool eight_neighborhood;
    // Set by a label image on an empty calculator that found components:
    // runs_in_image and neighbor_reach are those of its formation, the
    // strokes are not yet formed.
    bool strokes_pending;
    // Memory of the strokes' run arrays, released with the calculator; it
    // must outlive the pool, whose strokes give their arrays back to it. A
    // pool, not an arena: a block outgrown by one stroke's array serves a
    // younger stroke, which keeps the memory a page touches near what its
    // runs need.
    std::pmr::unsynchronized_pool_resource run_memory;
    StrokePool pool;
    std::shared_ptr<RunsInImage> runs_in_image;
    int neighbor_reach;
};

}  // namespace geometric

#endif
