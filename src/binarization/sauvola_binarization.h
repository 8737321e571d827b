// The fast Sauvola binarizer that the drivers use.
#ifndef MORVANE_BINARIZATION_SAUVOLA_BINARIZATION_H
#define MORVANE_BINARIZATION_SAUVOLA_BINARIZATION_H

#include "binarization/binarization.h"
#include "binarization/quick_sauvola.h"

namespace geometric {

class SauvolaBinarization : public Binarization {
public:
    SauvolaBinarization(const common::Image* input, common::BasicImage* output);

    // The gray working copy is smoothed in place, never the input.
    void perform_quick_sauvola_binarization(common::Image* gray);

    SauvolaPara& get_para() { return para; }
    void set_para(const SauvolaPara& value) { para = value; }
    // The drivers set these two from their own parameters.
    void set_window_size(int window_size) { para.window_size = window_size; }
    void set_k(float k) { para.k = k; }

protected:
    bool run_binarization_imp(common::Image* gray) override;

private:
    SauvolaPara para;
};

}  // namespace geometric

#endif
