// EXIF facts through libexif, from the first image directory only: the
// second describes the thumbnail.
#include "exif_reader.h"

#include <memory>

#include <libexif/exif-data.h>

#include "raster.h"

namespace scan {
namespace {

struct ExifDataReleaser {
    void operator()(ExifData* data) const { exif_data_unref(data); }
};

// EXIF's ResolutionUnit: 1 none (the resolutions give only an aspect), 2 the
// inch (also when the tag is absent), 3 the centimetre.
constexpr int kNoUnit = 1;
constexpr int kUnitCentimetre = 3;

const ExifEntry* entry(ExifData* data, ExifTag tag, ExifFormat format) {
    const ExifEntry* found = exif_content_get_entry(data->ifd[EXIF_IFD_0], tag);
    if (found == nullptr || found->format != format || found->components < 1 || found->data == nullptr) return nullptr;
    return found;
}

// A resolution as whole dots per inch; 0 when it is missing or out of range.
int dots_per_inch(ExifData* data, ExifTag tag, double inches_per_unit) {
    const ExifEntry* found = entry(data, tag, EXIF_FORMAT_RATIONAL);
    if (found == nullptr) return 0;
    const ExifRational value = exif_get_rational(found->data, exif_data_get_byte_order(data));
    if (value.denominator == 0) return 0;
    const double dpi = static_cast<double>(value.numerator) / value.denominator / inches_per_unit;
    return dpi >= 0.5 && dpi <= kMaximumDpi ? static_cast<int>(dpi + 0.5) : 0;
}

}  // namespace

ExifFacts read_exif(const std::string& block) {
    ExifFacts facts;
    const std::unique_ptr<ExifData, ExifDataReleaser> data(exif_data_new());
    if (!data) return facts;
    // Following the EXIF standard, libexif would add the tags a block lacks, with
    // made-up values such as 72 dots per inch: only what the file says counts.
    exif_data_unset_option(data.get(), EXIF_DATA_OPTION_FOLLOW_SPECIFICATION);
    exif_data_load_data(data.get(), reinterpret_cast<const unsigned char*>(block.data()),
                        static_cast<unsigned int>(block.size()));
    const ExifByteOrder order = exif_data_get_byte_order(data.get());

    if (const ExifEntry* orientation = entry(data.get(), EXIF_TAG_ORIENTATION, EXIF_FORMAT_SHORT)) {
        const int value = exif_get_short(orientation->data, order);
        if (value >= 1 && value <= 8) facts.orientation = value;
    }
    double inches_per_unit = 1.0;
    if (const ExifEntry* unit = entry(data.get(), EXIF_TAG_RESOLUTION_UNIT, EXIF_FORMAT_SHORT)) {
        const int value = exif_get_short(unit->data, order);
        if (value == kNoUnit) return facts;
        if (value == kUnitCentimetre) inches_per_unit = 1.0 / 2.54;
    }
    facts.x_dpi = dots_per_inch(data.get(), EXIF_TAG_X_RESOLUTION, inches_per_unit);
    facts.y_dpi = dots_per_inch(data.get(), EXIF_TAG_Y_RESOLUTION, inches_per_unit);
    return facts;
}

}  // namespace scan
