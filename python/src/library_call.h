// Every library call runs with the GIL released, and whatever it throws
// (int, const char*, std::string or a standard exception) leaves as a
// LibraryError, which Python sees as morvane.MorvaneError.
#ifndef MORVANE_PYTHON_LIBRARY_CALL_H
#define MORVANE_PYTHON_LIBRARY_CALL_H

#include <new>
#include <stdexcept>
#include <string>

#include <pybind11/pybind11.h>

namespace pymorvane {

class LibraryError : public std::runtime_error {
public:
    explicit LibraryError(const std::string& message) : std::runtime_error(message) {}
};

// Runs call without the GIL. call must not touch Python objects: the arrays
// it reads and writes are kept alive by the caller, which holds them.
template <typename Call>
auto call_library(Call call) -> decltype(call()) {
    pybind11::gil_scoped_release release;
    try {
        return call();
    } catch (const std::bad_alloc&) {
        throw;  // MemoryError
    } catch (const std::exception& error) {
        throw LibraryError(error.what());
    } catch (const char* text) {
        throw LibraryError(text);
    } catch (const std::string& text) {
        throw LibraryError(text);
    } catch (int code) {
        throw LibraryError("the library failed with code " + std::to_string(code));
    } catch (...) {
        throw LibraryError("the library failed");
    }
}

// A handle of one family, destroyed on every path.
template <void (*Destroy)(void*)>
class Handle {
public:
    explicit Handle(void* handle) : handle_(handle) {
        if (!handle_) throw std::bad_alloc();
    }
    ~Handle() { Destroy(handle_); }
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
    void* get() const { return handle_; }

private:
    void* handle_;
};

}  // namespace pymorvane

#endif
