// Sorting blobs into regular and irregular text, and the points and slim
// blobs that the text route takes from them.
#include "pageanalysis/text_blob_filter.h"

#include <algorithm>
#include <iterator>
#include <limits>

#include "pageanalysis/text_blob_examiner.h"

namespace geometric {

namespace {

// Pass 2 of the vertical selection accepts slightly rounder blobs.
constexpr double kRelaxedEccentricity = 0.04;
// Lines needed by passes 1, 2 and 3 of the vertical selection.
constexpr std::size_t kFirstPassLines = 3;
constexpr std::size_t kSecondPassLines = 6;
constexpr std::size_t kThirdPassLines = 2;

bool box_holds(const Geobox<int>& box, const Geocoordinate<float>& point) {
    return point.x >= static_cast<float>(box.left) && point.x <= static_cast<float>(box.right) &&
           point.y >= static_cast<float>(box.top) && point.y <= static_cast<float>(box.bottom);
}

}  // namespace

float obtain_mean_blob_area(const std::list<TextBlob>& blobs, unsigned area_floor) {
    float sum = 0.0f;
    unsigned count = 0;
    for (const TextBlob& blob : blobs) {
        if (blob.area <= area_floor) continue;
        sum += static_cast<float>(blob.area);
        ++count;
    }
    if (count == 0) return std::numeric_limits<float>::quiet_NaN();
    return sum / static_cast<float>(count);
}

void move_blobs_outside_area(std::list<TextBlob>& blobs, std::list<TextBlob>& outside, float low, float high) {
    for (std::list<TextBlob>::iterator it = blobs.begin(); it != blobs.end();) {
        const float area = static_cast<float>(it->area);
        std::list<TextBlob>::iterator current = it++;
        if (area < low || area > high) outside.splice(outside.end(), blobs, current);
    }
}

bool box_touches_image_border(const Geobox<int>& box, int width, int height) {
    return box.right == width - 1 || box.left == 0 || box.bottom == height - 1 || box.top == 0;
}

TestBlobFilterPara& TestBlobFilterPara::operator=(const SimplePageanalysisPara& simple) {
    angle_tolerance = simple.angle_tolerance;
    minimum_text_blobs = simple.minimum_text_blobs;
    eccentricity_threshold = simple.eccentricity_threshold;
    lower_area_factor = simple.lower_area_factor;
    upper_area_factor = simple.upper_area_factor;
    use_median = simple.use_median != 0;
    return *this;
}

bool TextBlobFilter::select_blob_for_horizontal_vp() {
    filter_by_proximity();
    float typical = std::numeric_limits<float>::quiet_NaN();
    if (!para.use_median) {
        typical = obtain_text_area_mean();
    } else if (std::any_of(regular_blobs.begin(), regular_blobs.end(),
                           [this](const TextBlob& blob) { return blob.area > para.area_floor; })) {
        typical = static_cast<float>(obtain_text_area_median());
    }
    // Not-a-number bounds move no blob, as the mean of nothing does.
    filter_by_area(para.lower_area_factor * typical, para.upper_area_factor * typical);
    return regular_blobs.size() > para.minimum_text_blobs;
}

int TextBlobFilter::select_blob_for_vertical_vp(std::vector<GeolineBasePoints<float>>& lines,
                                                std::vector<double>& eccentricities) {
    TextBlobExaminer examiner(para.eccentricity_threshold, para.angle_tolerance);
    GeolineBasePoints<float> line;
    double eccentricity = 0.0;
    auto run = [&](const std::list<TextBlob>& blobs) {
        for (const TextBlob& blob : blobs) {
            if (!examiner.extract_line_from_blob(blob, line, eccentricity)) continue;
            lines.push_back(line);
            eccentricities.push_back(eccentricity);
        }
    };

    run(regular_blobs);
    if (lines.size() >= kFirstPassLines) return 1;

    lines.clear();
    eccentricities.clear();
    examiner.set_minimum_eccentricity(para.eccentricity_threshold - kRelaxedEccentricity);
    run(regular_blobs);
    if (lines.size() >= kSecondPassLines) return 2;

    examiner.set_minimum_eccentricity(para.eccentricity_threshold);
    run(irregular_blobs);
    return lines.size() >= kThirdPassLines ? 3 : 0;
}

float TextBlobFilter::obtain_text_area_mean() const { return obtain_mean_blob_area(regular_blobs, para.area_floor); }

unsigned TextBlobFilter::obtain_text_area_median() const {
    std::vector<unsigned> areas;
    areas.reserve(regular_blobs.size());
    for (const TextBlob& blob : regular_blobs)
        if (blob.area > para.area_floor) areas.push_back(blob.area);
    if (areas.empty()) return 0;
    const std::vector<unsigned>::iterator middle = areas.begin() + static_cast<std::ptrdiff_t>(areas.size() / 2);
    std::nth_element(areas.begin(), middle, areas.end());
    return *middle;
}

void TextBlobFilter::filter_by_proximity() {
    regular_blobs.remove_if([this](const TextBlob& blob) { return near_the_border(blob.box); });
}

void TextBlobFilter::filter_by_area(float low, float high) {
    irregular_blobs.clear();
    move_blobs_outside_area(regular_blobs, irregular_blobs, low, high);
}

bool TextBlobFilter::near_the_border(const Geobox<int>& box) const {
    return box_touches_image_border(box, width, height);
}

void TextBlobFilter::obtain_regular_text_bottom_centers(std::vector<Geocoordinate<float>>& points) const {
    for (const TextBlob& blob : regular_blobs)
        points.emplace_back(static_cast<float>((blob.box.left + blob.box.right) * 0.5),
                            static_cast<float>(blob.box.bottom));
}

const TextBlob* TextBlobFilter::find_regular_blob(const Geocoordinate<float>& point) const {
    for (const TextBlob& blob : regular_blobs)
        if (box_holds(blob.box, point)) return &blob;
    return nullptr;
}

void TextBlobFilter::obtain_regular_text_bottom_left(const std::vector<Geocoordinate<float>>& points,
                                                     std::vector<Geocoordinate<float>>& out) const {
    for (const Geocoordinate<float>& point : points) {
        const TextBlob* blob = find_regular_blob(point);
        if (blob == nullptr)
            out.emplace_back(0.0f, 0.0f);
        else
            out.emplace_back(static_cast<float>(blob->box.left), static_cast<float>(blob->box.bottom));
    }
}

void TextBlobFilter::obtain_regular_text_bottom_right(const std::vector<Geocoordinate<float>>& points,
                                                      std::vector<Geocoordinate<float>>& out, float step) const {
    out.assign(points.size(), Geocoordinate<float>());
    const int w = static_cast<int>(0.5f + step);
    for (std::size_t i = 0; i < points.size(); ++i) {
        const TextBlob* base = find_regular_blob(points[i]);
        if (base == nullptr) continue;
        const Geobox<int>& box = base->box;

        // Walk strips to the right through the irregular blobs beside the base box.
        float kept_right = 0.0f;
        float kept_bottom = 0.0f;
        int strip_left = box.right;
        int strip_right = box.right + w;
        bool found = true;
        while (found) {
            found = false;
            for (const TextBlob& blob : irregular_blobs) {
                const Geobox<int>& other = blob.box;
                if (other.left > strip_right || other.right < strip_left) continue;
                if (other.top > box.bottom || other.bottom < box.top) continue;
                found = true;
                if (static_cast<float>(other.right) > kept_right) {
                    kept_right = static_cast<float>(other.right);
                    kept_bottom = static_cast<float>(other.bottom);
                }
            }
            // A strip that cannot move would be looked at for ever.
            if (w < 1) break;
            strip_left += w;
            strip_right += w;
        }
        if (kept_right > 0.1f)
            out[i] = Geocoordinate<float>(kept_right, kept_bottom);
        else
            out[i] = Geocoordinate<float>(static_cast<float>(box.right), static_cast<float>(box.bottom));
    }
}

}  // namespace geometric
