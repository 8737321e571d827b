// The one owner of a malloc'd scratch array: freed on every way out of the
// scope that made it, exceptions included.
#ifndef MORVANE_COMMON_SCRATCH_BUFFER_H
#define MORVANE_COMMON_SCRATCH_BUFFER_H

#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace common {

// `count` elements, uninitialised, from malloc like every pixel buffer of the
// library. When memory runs out, or count elements would not fit a size_t,
// the buffer is empty (get() is null): the owner decides whether that is a
// failed result or an exception. A count of 0 still gets a valid address.
template <typename T>
class ScratchBuffer {
public:
    explicit ScratchBuffer(std::size_t count)
        : data_(count <= SIZE_MAX / sizeof(T) ? static_cast<T*>(std::malloc(count > 0 ? count * sizeof(T) : 1))
                                              : nullptr) {}
    ~ScratchBuffer() { std::free(data_); }
    ScratchBuffer(const ScratchBuffer&) = delete;
    ScratchBuffer& operator=(const ScratchBuffer&) = delete;

    bool empty() const { return data_ == nullptr; }
    T* get() const { return data_; }
    T& operator[](std::size_t index) const { return data_[index]; }

private:
    T* data_;
};

}  // namespace common

#endif
