// Corner finding through the corner search family.
#include "page_finder.h"

namespace scan {
namespace {

// The method travels as the header's own argument type, an enumeration or int.
template <typename Method>
void* create_engine(void* (*create)(Method), int method) {
    return create(static_cast<Method>(method));
}

class Engine {
public:
    explicit Engine(int method) : handle_(create_engine(&create_corner_search_enginee, method)) {
        if (!handle_) throw ImageProblem("not enough memory");
    }
    ~Engine() { destroy_corner_search_enginee(handle_); }
    Engine(const Engine&) = delete;
    Engine& operator=(const Engine&) = delete;
    void* handle() const { return handle_; }

private:
    void* handle_;
};

}  // namespace

bool corner_search_available() { return true; }

FindOutcome find_with_engine(int method, const Raster& image) {
    return call_library([&] {
        Engine engine(method);
        const ImageCApi input = image.c_api();
        FindOutcome outcome;
        outcome.code = perform_corner_searching(engine.handle(), &input, &outcome.corners);
        outcome.found = outcome.code > 0;
        return outcome;
    });
}

}  // namespace scan
