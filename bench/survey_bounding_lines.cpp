// A survey, not a timed benchmark: the bounding line creator of the classic
// edge route on page photos, as the corrector would run it on each photo's
// working image.
//
//   survey_bounding_lines PHOTO
//
// Prints `lines N found F` (the lines returned and whether the creator said
// four), then the corners where the four sides cross, in full-size pixels,
// as the last line: {"corners": [[x,y],...]} (top-left, top-right,
// bottom-right, bottom-left), or {"corners": null} without four sides; so
// the evaluation scripts score whether the lines lie on the page's sides.
#include <cstdio>
#include <exception>
#include <stdexcept>
#include <vector>

#include "common/basic_image.h"
#include "cornersearch/bounding_line_creator.h"
#include "edgelines/bounding_lines_operator.h"
#include "image_file.h"
#include "registration/hybrid_registration.h"

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: survey_bounding_lines PHOTO\n");
        return 2;
    }
    try {
        const scan::Raster raster = scan::read_image_file(argv[1]).raster;
        hybrid::HybridRegistration driver;
        driver.set_input_image(raster.c_api());
        if (driver.preprocessing() < 0) throw std::runtime_error("the photo is refused");
        const int rate = driver.downsampling_rate;

        geometric::CornerSearchPara para;
        std::vector<geometric::BoundingLine> lines, partial;
        const bool found =
            geometric::BoundingLineCreator::formulate_bounding_lines(para, *driver.downsampled_image, lines, partial);
        std::printf("lines %zu found %d\n", lines.size(), found ? 1 : 0);

        geometric::BoundingLineProperty property;
        geometric::BoundingLinesOperator::initializeBoundingLineProperty(lines, property);
        if (property.left_index < 0 || property.right_index < 0 || property.top_index < 0 ||
            property.bottom_index < 0) {
            std::printf("{\"corners\": null}\n");
            return 0;
        }
        std::vector<geometric::Geocoordinate<float>> corners;
        geometric::BoundingLinesOperator::obtainBoundingLineControlPoints(lines, property, corners);
        std::printf("{\"corners\": [");
        for (std::size_t k = 0; k < corners.size(); ++k)
            std::printf("%s[%.1f,%.1f]", k ? "," : "", corners[k].x * rate, corners[k].y * rate);
        std::printf("]}\n");
    } catch (const std::exception& e) {
        std::fprintf(stderr, "survey_bounding_lines: %s\n", e.what());
        return 1;
    }
    return 0;
}
