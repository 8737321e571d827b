// Fuzz target of the line segment family: a search on a gray page (or a
// refused binary or colour one), the segments' fields, and the clean-up.
#include "fuzz_input.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    fuzz::Reader in(data, size);
    fuzz::Page page = fuzz::read_page(in);
    const uint8_t choice = in.u8();
    fuzz::finish_page(in, page);

    void* lsd = lsd_create();
    fuzz::require(lsd != nullptr, "lsd_create gives a handle");
    ImageCApi image = page.record();
    if ((choice & 15) == 15 && page.kind == fuzz::kGray) image.data = nullptr;  // documented: an all-black image
    const std::vector<unsigned char> before = page.pixels;

    int count = -1;
    double* lines = nullptr;
    bool thrown = true;
    MORVANE_FUZZ_CALL((lines = search_for_line_segments(lsd, &image, &count), thrown = false));
    if (!thrown) {
        fuzz::require(page.kind == fuzz::kGray, "binary and colour records are refused");
        fuzz::require(count >= 0, "the count is 0 or more");
        fuzz::require((count == 0) == (lines == nullptr), "NULL exactly when there is no segment");
        for (int i = 0; i < count; ++i) {
            const double* s = lines + 7 * i;
            for (int k = 0; k < 7; ++k) fuzz::require(std::isfinite(s[k]), "segment fields are finite");
            fuzz::require(s[5] > 0.0 && s[5] < 1.0, "the angle tolerance lies in (0, 1)");
            fuzz::require(s[6] > 0.0, "every segment has log_nfa above 0");
        }
        // A second search on the same handle gives the same bytes.
        if (choice & 16) {
            int again_count = -1;
            double* again = search_for_line_segments(lsd, &image, &again_count);
            fuzz::require(again_count == count, "a second search finds as many segments");
            fuzz::require(count == 0 || std::memcmp(again, lines, sizeof(double) * 7 * count) == 0,
                          "a second search gives the same bytes");
            clean_lines(again);
        }
    } else {
        fuzz::require(page.kind != fuzz::kGray, "a gray record is searched");
    }
    clean_lines(lines);
    destroy_lsd(lsd);
    fuzz::require(page.pixels == before, "the input is never written");
    return 0;
}
