// The corrector's driver: working image, search order, output check, corners
// and the rectification with its fill colour.
#include "registration/hybrid_registration.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>

#include "binarization/omin_binarization.h"
#include "binarization/sauvola_binarization.h"
#include "common/int_truncation.h"
#include "common/image_c_api_transformer.h"
#include "cornersearch/corner_examiner.h"
#include "correction/projective_correction.h"
#include "pageanalysis/apriori_pageanalysis.h"
#include "pageanalysis/area_pageanalysis.h"
#include "pixel/image_integer_down_sampling.h"
#include "registration/edge_registration.h"
#include "registration/line_registration.h"

namespace hybrid {

namespace {

const char* const kBgraToGray = "BGRA to grey level conversion nog implemented yet in common";
const char* const kUnknownToGray = "an image of UNKNOWN type has no grey level";
const char* const kFeatureBeforeEdge = "the edge search must run before the feature search";
const char* const kOutputNotBasicImage = "the corrected image must be a BasicImage";
const char* const kNoGrayToBinarize = "only 1-bit, gray and RGB images can be binarized";
const char* const kBinaryOutputSize = "the binarized image must be a 1-bit image of the input's size";

// The resolution that an image without a usable page analysis is taken to have.
const int kDefaultResolution = 300;

// Dots per inch of a page from the character size that its analysis finds;
// false when the analysis finds too little text.
bool page_resolution(geometric::Pageanalysis& analysis, int& dots_per_inch) {
    if (!analysis.run_page_analysis()) return false;
    dots_per_inch = analysis.obtain_spatial_resolution();
    return true;
}

// A gray page is analysed by text-picture separation ...
bool apriori_resolution(const common::Image& gray, int& dots_per_inch) {
    geometric::AprioriPageanalysis analysis(&gray, nullptr);
    return page_resolution(analysis, dots_per_inch);
}
// ... an image of any other type by dilation and area, which serves binary pages.
bool area_resolution(const common::Image& image, int& dots_per_inch) {
    geometric::AreaPageanalysis analysis(&image, nullptr);
    return page_resolution(analysis, dots_per_inch);
}

}  // namespace

HybridRegistration::HybridRegistration() : HybridRegistration(new common::BasicImage(), true) {}

HybridRegistration::HybridRegistration(common::BasicImage* input) : HybridRegistration(input, false) {}

HybridRegistration::HybridRegistration(common::BasicImage* input, bool owns_input)
    : binarization_method(0), binarization_k(MORVANE_DEFAULT_BINARIZATION_K),
      binarization_window(MORVANE_DEFAULT_BINARIZATION_WINDOW), downsampling_rate(1), downsampled_image(nullptr),
      input_image(input), corners_were_reset(false), owns_input_image(owns_input), edge_registration(nullptr),
      feature_registration(nullptr), hybrid_method(HYBRID_EDGES_AND_FEATURES), filling_color(nullptr) {}

HybridRegistration::~HybridRegistration() {
    if (owns_input_image) delete input_image;
    delete edge_registration;
    delete feature_registration;
    delete downsampled_image;
}

void HybridRegistration::set_input_image(const ImageCApi& image) {
    morvane::ImageCApiTransformer::transform_c_api_image_to_image(image, *input_image);
}

void HybridRegistration::set_registration_method(int method) {
    hybrid_method = method > 0 ? HYBRID_EDGES_AND_FEATURES : HYBRID_EDGES_ONLY;
}

void HybridRegistration::set_binarization_method(int method) {
    binarization_method = method < 0 ? 0 : (method > 1 ? 1 : method);
}

void HybridRegistration::set_binarization_k(float k) { binarization_k = k < 0.0f ? 0.01f : (k > 1.0f ? 0.99f : k); }

void HybridRegistration::set_binarization_window(int window) { binarization_window = window < 1 ? 3 : window; }

void HybridRegistration::set_minimum_aoi_area(float fraction) {
    // Single precision, so that 0.001 itself changes nothing.
    if (fraction > 0.001f) minimum_aoi_area = fraction;
}

// ---------------------------------------------------------------------------
// Runs
// ---------------------------------------------------------------------------

int HybridRegistration::run_program() {
    try {
        corners.clear();
        corners_were_reset = false;
        const int edge_result = run_edge_searching(false);
        if (hybrid_method == HYBRID_EDGES_ONLY) {
            // No object means preprocessing refused the image: that ends in the handler.
            if (edge_registration == nullptr) throw edge_result;
            edge_registration->obtain_corners();
            return return_hybrid_result(edge_registration->registration_output, true);
        }
        const int feature_result = run_feature_searching();
        if (feature_registration == nullptr) throw feature_result;
        // Once more, whatever the feature search did with its corners: the
        // answer of the second call is not looked at.
        feature_registration->obtain_corners();
        return return_hybrid_result(feature_registration->registration_output, true);
    } catch (...) {
        return 0;
    }
}

int HybridRegistration::run_edge_searching(bool check) {
    if (preprocessing() < 0) return -1;
    if (edge_registration == nullptr) create_edge_registration();
    edge_registration->para = static_cast<const ProjectiveRegistrationPara&>(*this);
    edge_registration->registration_output = edge_registration->run_registration();
    return return_hybrid_result(edge_registration->registration_output, check);
}

int HybridRegistration::run_feature_searching() {
    if (preprocessing() < 0) return -1;
    if (edge_registration == nullptr) throw kFeatureBeforeEdge;
    FeatureRegistration& feature = prepare_feature_searching();
    const geometric::ProjectiveRegistration& edge = *edge_registration;

    geometric::RegistrationOutputType result = feature.run_registration();
    feature.registration_output = result;
    // A preferred edge result without text below it keeps the edge's corners.
    const bool edge_corners_stand = feature.edge_result_is_preferred && !(feature.text_box.bottom.y > 1.0f);
    if (result != geometric::REGISTRATION_STRAIGHT_PAGE && !edge_corners_stand) {
        if (feature.obtain_corners()) {
            result = feature.registration_output;
        } else if (!feature.bounding_vanishing_points.vertical.has_vanishing_point &&
                   !edge.bounding_vanishing_points.vertical.has_vanishing_point &&
                   feature.vanishing_points.vertical.status != 2) {
            feature.registration_output = geometric::REGISTRATION_NO_GEOMETRY;
            result = geometric::REGISTRATION_NO_GEOMETRY;
        } else {
            // The vertical vanishing point is the doubtful one: try without it.
            feature.vanishing_points.vertical.has_vanishing_point = false;
            if (feature.obtain_corners()) {
                result = feature.registration_output;
            } else {
                feature.registration_output = geometric::REGISTRATION_NO_GEOMETRY;
                result = geometric::REGISTRATION_NO_GEOMETRY;
            }
        }
    }
    return return_hybrid_result(result, true);
}

FeatureRegistration& HybridRegistration::prepare_feature_searching() {
    if (feature_registration == nullptr) create_feature_registration();
    FeatureRegistration& feature = *feature_registration;
    // A down-sampled working image is smooth already and its strokes fainter.
    if (downsampling_rate > 1) {
        feature.para.apriori_binarization_k = 0.1f;
        feature.para.apriori_is_full_resolution = false;
    }
    const geometric::ProjectiveRegistration& edge = *edge_registration;

    // Everything the edge search found is the feature search's starting point.
    feature.registration_output = edge.registration_output;
    feature.bounding_lines = edge.bounding_lines;
    feature.bounding_line_property = edge.bounding_line_property;
    feature.vanishing_points = edge.vanishing_points;
    feature.bounding_vanishing_points = edge.bounding_vanishing_points;
    feature.output_width = edge.output_width;
    feature.output_height = edge.output_height;
    feature.corners = edge.corners;
    // Twice: the thresholds every registration reads, and the text route's copy.
    static_cast<geometric::ProjectiveRegistration&>(feature).para = static_cast<const ProjectiveRegistrationPara&>(*this);
    feature.para.registration = static_cast<const ProjectiveRegistrationPara&>(*this);
    return feature;
}

void HybridRegistration::create_edge_registration() {
    if (use_line_registration == 0) {
        edge_registration = new EdgeRegistration(downsampled_image);
        return;
    }
    // Edge search alone adds the line stage; before a text search the
    // contour stages decide.
    const geometric_test::OperationalBoundingEdgeRegistration::Method method =
        hybrid_method != HYBRID_EDGES_ONLY ? geometric_test::OperationalBoundingEdgeRegistration::BINARY_EDGE_SEARCH
                                           : geometric_test::OperationalBoundingEdgeRegistration::BINARY_EDGE_LINE_SEARCH;
    edge_registration = new geometric_test::LineRegistration(downsampled_image, method);
}

void HybridRegistration::create_feature_registration() {
    feature_registration = new FeatureRegistration(downsampled_image);
}

// ---------------------------------------------------------------------------
// Working image
// ---------------------------------------------------------------------------

int HybridRegistration::preprocessing() {
    if (downsampled_image != nullptr) return 2;
    const int height = input_image->get_height();
    const int width = input_image->get_width();
    const int longer = std::max(height, width);
    const int shorter = std::min(height, width);
    if (shorter < 10 || static_cast<float>(longer) / static_cast<float>(shorter) > 7.0f) return -1;
    make_working_image();
    return 1;
}

void HybridRegistration::make_working_image() {
    const common::ImageType type = input_image->get_image_type();
    if (type == common::BGRA) throw kBgraToGray;
    if (type != common::GRAY && type != common::RGB && type != common::BINARY) throw kUnknownToGray;
    obtain_downsampling_rate();

    // An RGB input that is down-sampled is turned gray line by line within
    // the reduction; otherwise the gray copy is built straight from the input
    // (the same bytes as a deep copy converted in place); a gray input that is
    // down-sampled needs none.
    std::unique_ptr<common::BasicImage> working(new common::BasicImage());
    if (type == common::RGB && downsampling_rate >= 2) {
        geometric::ImageIntegerDownSampling::DownSamplingCombinedLuminance(*input_image, *working, downsampling_rate);
        downsampled_image = working.release();
        return;
    }
    common::BasicImage converted;
    const common::BasicImage* gray = input_image;
    if (type == common::RGB) {
        converted.create_gray_from_rgb_luminance(*input_image);
        gray = &converted;
    } else if (type == common::BINARY) {
        converted.create_gray_from_binary(*input_image);
        gray = &converted;
    }
    if (downsampling_rate < 2) {
        if (gray == &converted)
            working->swap(converted);
        else
            *working = *gray;
    } else {
        geometric::ImageIntegerDownSampling::DownSamplingCombined(*gray, *working, downsampling_rate);
    }
    downsampled_image = working.release();
}

int HybridRegistration::obtain_downsampling_rate() {
    int rate = 1;
    int height = input_image->get_height();
    int width = input_image->get_width();
    while (maximum_dimension < height && height > 0) {
        height /= 2;
        width /= 2;
        ++rate;
    }
    while (maximum_dimension < width && width > 0) {
        width /= 2;
        ++rate;
    }
    downsampling_rate = rate;
    return rate;
}

// ---------------------------------------------------------------------------
// Judging the result
// ---------------------------------------------------------------------------

int HybridRegistration::return_hybrid_result(geometric::RegistrationOutputType r, bool check) {
    const bool checked = use_edge_corners && check;
    if (r == geometric::REGISTRATION_RESERVED) return 0;
    if (r == geometric::REGISTRATION_STRAIGHT_PAGE) {
        if (!checked) return 2;
        const int verdict = check_projective_output();
        return verdict == 1 ? 2 : verdict;
    }
    if (r <= 0) return r;
    return checked ? check_projective_output() : 1;
}

int HybridRegistration::check_projective_output() {
    obtain_internal_corners();
    return geometric::CornerExaminer::examine_page_output(corners, input_image->get_width(), input_image->get_height(),
                                                          within_the_image, minimum_quadrilateral_angle,
                                                          minimum_aoi_area,
                                                          minimum_largest_dimension_percentage_threshold);
}

// ---------------------------------------------------------------------------
// Corners
// ---------------------------------------------------------------------------

void HybridRegistration::obtain_internal_corners() {
    if (!corners.empty()) return;
    // A feature object without corners does not fall back to the edge object.
    const geometric::ProjectiveRegistration* source =
        feature_registration != nullptr ? feature_registration : edge_registration;
    const float rate = static_cast<float>(downsampling_rate);
    if (source != nullptr)
        for (const geometric::Geocoordinate<float>& c : source->corners) corners.emplace_back(c.x * rate, c.y * rate);
    if (!corners.empty()) return;
    const float right = static_cast<float>(input_image->get_width() - 1);
    const float bottom = static_cast<float>(input_image->get_height() - 1);
    corners = {{0.0f, 0.0f}, {right, 0.0f}, {right, bottom}, {0.0f, bottom}};
}

void HybridRegistration::obtain_four_corners(ControlPointCorners& out) {
    obtain_internal_corners();
    if (corners.size() < 4) return;
    // A corner beyond the int range (sides drawn through a far vanishing
    // point) gives the smallest int, as the processor's conversion does,
    // rather than undefined behaviour.
    for (int i = 0; i < 4; ++i) {
        out.x[i] = common::truncate_to_int32(std::floor(corners[i].x + 0.5));
        out.y[i] = common::truncate_to_int32(std::floor(corners[i].y + 0.5));
    }
}

void HybridRegistration::reset_four_corners(const ControlPointCorners& given) {
    std::vector<geometric::Geocoordinate<float>> replacement;
    for (int i = 0; i < 4; ++i) replacement.emplace_back(static_cast<float>(given.x[i]), static_cast<float>(given.y[i]));
    if (corners.empty()) {
        corners_were_reset = false;
        corners = replacement;
        return;
    }
    corners_were_reset = true;
    bool all_equal = corners.size() == replacement.size();
    for (size_t i = 0; all_equal && i < replacement.size(); ++i)
        all_equal = corners[i].x == replacement[i].x && corners[i].y == replacement[i].y;
    if (all_equal)
        corners_were_reset = false;
    else
        corners = replacement;
}

void HybridRegistration::obtain_vanishing_points(geometric::VanishingPointHorVerInfo& out) {
    const geometric::ProjectiveRegistration* source =
        feature_registration != nullptr ? feature_registration : edge_registration;
    if (source != nullptr) out = source->vanishing_points;
    const double rate = downsampling_rate;
    out.horizontal_point.x *= rate;
    out.horizontal_point.y *= rate;
    out.vertical_point.x *= rate;
    out.vertical_point.y *= rate;
}

void HybridRegistration::obtain_corrected_img_dimension(int& width, int& height) {
    obtain_internal_corners();
    geometric::ProjectiveCorrection::calculate_output_dimension(corners, width, height);
}

void HybridRegistration::obtain_corrected_img_dimension(std::vector<geometric::Geocoordinate<float>>& given,
                                                        int& width, int& height) {
    corners = given;
    obtain_corrected_img_dimension(width, height);
}

void HybridRegistration::obtain_corrected_downsampled_img_dimension(int& width, int& height) {
    if (downsampled_image == nullptr) {
        width = input_image->get_width();
        height = input_image->get_height();
        return;
    }
    obtain_internal_corners();
    const float rate = static_cast<float>(downsampling_rate);
    std::vector<geometric::Geocoordinate<float>> scaled;
    for (const geometric::Geocoordinate<float>& c : corners) scaled.emplace_back(c.x / rate, c.y / rate);
    geometric::ProjectiveCorrection::calculate_output_dimension(scaled, width, height);
}

// ---------------------------------------------------------------------------
// Rectification, binarization, resolution
// ---------------------------------------------------------------------------

int HybridRegistration::perform_correction(common::BasicImage& output) {
    geometric::ProjectiveCorrection correction(input_image, &output);
    obtain_internal_corners();
    int channels = 1;
    input_image->get_channels(channels);
    const common::ImageType type = input_image->get_image_type();
    unsigned char* filling_pixel = correction.get_filling_pixel();

    if (filling_color != nullptr) {
        std::memcpy(filling_pixel, filling_color, static_cast<size_t>(std::min(std::max(channels, 1), 4)));
        correction.set_filling_mode(0);
    } else if (corners_were_reset && !corners.empty()) {
        // The caller chose the corners: the paper colour is the brightest of
        // the pixels under those corners that lie inside the image.
        const int width = input_image->get_width();
        const int height = input_image->get_height();
        std::vector<unsigned char> samples;
        for (const geometric::Geocoordinate<float>& c : corners) {
            if (c.x < 0 || c.y < 0 || c.x >= width || c.y >= height) continue;
            const unsigned char* pixel =
                input_image->get_pixel_pointer(static_cast<int>(c.x), static_cast<int>(c.y));
            samples.insert(samples.end(), pixel, pixel + (type == common::RGB ? 3 : 1));
        }
        if (!samples.empty()) {
            correction.set_filling_mode(0);
            if (type == common::RGB) {
                const common::BasicImage row(samples.data(), 1, static_cast<int>(samples.size() / 3), common::RGB);
                const unsigned colour = row.obtain_brightest_color();
                filling_pixel[0] = static_cast<unsigned char>(colour & 0xFF);
                filling_pixel[1] = static_cast<unsigned char>((colour >> 8) & 0xFF);
                filling_pixel[2] = static_cast<unsigned char>((colour >> 16) & 0xFF);
            } else {
                filling_pixel[0] = *std::max_element(samples.begin(), samples.end());
            }
        }
    }
    correction.set_control_points(corners);
    return correction.run_correction();
}

int HybridRegistration::perform_correction_on_downsampled_gray_image(common::Image& output) {
    if (downsampled_image == nullptr) return 0;
    common::BasicImage* target = dynamic_cast<common::BasicImage*>(&output);
    if (target == nullptr) throw kOutputNotBasicImage;
    obtain_internal_corners();
    const float rate = static_cast<float>(downsampling_rate);
    std::vector<geometric::Geocoordinate<float>> scaled;
    for (const geometric::Geocoordinate<float>& c : corners) scaled.emplace_back(c.x / rate, c.y / rate);
    geometric::ProjectiveCorrection correction(downsampled_image, target);
    correction.set_control_points(scaled);
    return correction.run_correction();
}

void HybridRegistration::obtain_binarized_corrected_image(const common::Image& input, common::Image& output) {
    common::BasicImage* target = dynamic_cast<common::BasicImage*>(&output);
    if (target == nullptr) throw kOutputNotBasicImage;
    // The binarizer resets its output; a caller's buffer must never become
    // ours, so the result is made in an owned image and copied over.
    common::BasicImage result;
    bool binarized = false;
    if (binarization_method == 0) {
        geometric::SauvolaBinarization sauvola(&input, &result);
        sauvola.set_window_size(binarization_window);
        sauvola.set_k(binarization_k);
        binarized = sauvola.run_binarization();
    } else {
        // The multi-scale method chooses its own window.
        geometric::OminBinarization omin(&input, &result);
        omin.set_k(binarization_k);
        binarized = omin.run_binarization();
    }
    if (!binarized) throw kNoGrayToBinarize;
    if (target->get_data() == nullptr || target->get_image_type() != common::BINARY ||
        target->get_height() != result.get_height() || target->get_width() != result.get_width())
        throw kBinaryOutputSize;
    std::memcpy(target->get_data(), result.get_data(), static_cast<size_t>(result.get_data_size()));
}

int HybridRegistration::estimate_spatial_resolution() {
    if (feature_registration != nullptr && feature_registration->page_analysis != nullptr)
        return feature_registration->page_analysis->obtain_spatial_resolution() * downsampling_rate;
    if (downsampled_image == nullptr) return kDefaultResolution;
    int dots_per_inch = 0;
    if (apriori_resolution(*downsampled_image, dots_per_inch)) return dots_per_inch * downsampling_rate;
    return kDefaultResolution;
}

int HybridRegistration::estimate_spatial_resolution(common::Image& image) {
    int dots_per_inch = 0;
    bool found = false;
    if (image.get_image_type() == common::GRAY) {
        found = apriori_resolution(image, dots_per_inch);
    } else if (image.get_image_type() == common::RGB) {
        const common::BasicImage* rgb = dynamic_cast<const common::BasicImage*>(&image);
        const common::BasicImage copy = rgb != nullptr ? common::BasicImage() : common::BasicImage(image);
        common::BasicImage gray;
        gray.create_gray_from_rgb_luminance(rgb != nullptr ? *rgb : copy);
        found = apriori_resolution(gray, dots_per_inch);
    } else {
        found = area_resolution(image, dots_per_inch);
    }
    return found ? dots_per_inch : kDefaultResolution;
}

}  // namespace hybrid
