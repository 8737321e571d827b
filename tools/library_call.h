// Library calls may throw int, const char*, std::string or standard
// exceptions; the tool turns each into one line.
#ifndef MORVANE_TOOLS_LIBRARY_CALL_H
#define MORVANE_TOOLS_LIBRARY_CALL_H

#include <new>
#include <stdexcept>
#include <string>

#include "scan_error.h"

namespace scan {

inline ImageProblem library_failure(const std::string& text) {
    if (names_memory(text)) return ImageProblem("not enough memory");
    return ImageProblem("the library failed: " + text);
}

template <typename Call>
auto call_library(Call call) -> decltype(call()) {
    try {
        return call();
    } catch (const ImageProblem&) {
        throw;
    } catch (const std::bad_alloc&) {
        throw ImageProblem("not enough memory");
    } catch (const std::exception& error) {
        throw library_failure(error.what());
    } catch (const char* text) {
        throw library_failure(text);
    } catch (const std::string& text) {
        throw library_failure(text);
    } catch (int code) {
        throw ImageProblem("the library failed with code " + std::to_string(code));
    } catch (...) {
        throw ImageProblem("the library failed");
    }
}

}  // namespace scan

#endif
