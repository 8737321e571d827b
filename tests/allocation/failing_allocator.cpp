// The program's own malloc family and operator new, in front of the ones it
// would otherwise use (the C library's, or a sanitizer's), which are found
// with dlsym(RTLD_NEXT) and do the real work. The shared library's
// allocations resolve to these too.
#include "failing_allocator.h"

#include <dlfcn.h>

#include <cstddef>
#include <cstdint>
#include <new>

namespace {

typedef void* (*MallocFunction)(size_t);
typedef void* (*CallocFunction)(size_t, size_t);
typedef void* (*ReallocFunction)(void*, size_t);
typedef void (*FreeFunction)(void*);

MallocFunction real_malloc = nullptr;
CallocFunction real_calloc = nullptr;
ReallocFunction real_realloc = nullptr;
FreeFunction real_free = nullptr;

// dlsym may allocate while the real functions are being looked up: those
// few blocks come from here and are never given back.
alignas(std::max_align_t) unsigned char bootstrap[4096];
size_t bootstrap_used = 0;
bool resolving = false;

bool armed = false;
bool from_then_on = false;
bool has_failed = false;
long counted = 0;
long fail_at = 0;

void* from_bootstrap(size_t size) {
    const size_t step = (size + alignof(std::max_align_t) - 1) / alignof(std::max_align_t) * alignof(std::max_align_t);
    if (bootstrap_used + step > sizeof bootstrap) return nullptr;
    void* block = bootstrap + bootstrap_used;
    bootstrap_used += step;
    return block;
}

bool in_bootstrap(const void* block) {
    const unsigned char* p = static_cast<const unsigned char*>(block);
    return p >= bootstrap && p < bootstrap + sizeof bootstrap;
}

void resolve() {
    if (real_free != nullptr) return;
    resolving = true;
    real_malloc = reinterpret_cast<MallocFunction>(dlsym(RTLD_NEXT, "malloc"));
    real_calloc = reinterpret_cast<CallocFunction>(dlsym(RTLD_NEXT, "calloc"));
    real_realloc = reinterpret_cast<ReallocFunction>(dlsym(RTLD_NEXT, "realloc"));
    real_free = reinterpret_cast<FreeFunction>(dlsym(RTLD_NEXT, "free"));
    resolving = false;
}

// One more allocation counted; true when it is to fail.
bool next_fails() {
    if (!armed) return false;
    ++counted;
    const bool fails = fail_at > 0 && (counted == fail_at || (from_then_on && counted > fail_at));
    has_failed = has_failed || fails;
    return fails;
}

}  // namespace

namespace failing_allocator {

void arm(long fail, bool every_later) {
    resolve();
    counted = 0;
    fail_at = fail;
    from_then_on = every_later;
    has_failed = false;
    armed = true;
}

long disarm() {
    armed = false;
    return counted;
}

bool failed() { return has_failed; }

}  // namespace failing_allocator

extern "C" {

void* malloc(size_t size) {
    if (resolving) return from_bootstrap(size);
    resolve();
    return next_fails() ? nullptr : real_malloc(size);
}

void* calloc(size_t count, size_t size) {
    if (resolving) {
        void* block = count != 0 && size > SIZE_MAX / count ? nullptr : from_bootstrap(count * size);
        return block;  // static storage, already zero
    }
    resolve();
    return next_fails() ? nullptr : real_calloc(count, size);
}

void* realloc(void* block, size_t size) {
    resolve();
    if (in_bootstrap(block)) return nullptr;
    return size > 0 && next_fails() ? nullptr : real_realloc(block, size);
}

void free(void* block) {
    if (block == nullptr || in_bootstrap(block)) return;
    resolve();
    real_free(block);
}

}  // extern "C"

void* operator new(size_t size) {
    void* block = malloc(size > 0 ? size : 1);
    if (block == nullptr) throw std::bad_alloc();
    return block;
}

void* operator new[](size_t size) { return operator new(size); }

void* operator new(size_t size, const std::nothrow_t&) noexcept { return malloc(size > 0 ? size : 1); }

void* operator new[](size_t size, const std::nothrow_t&) noexcept { return malloc(size > 0 ? size : 1); }

void operator delete(void* block) noexcept { free(block); }

void operator delete[](void* block) noexcept { free(block); }

void operator delete(void* block, size_t) noexcept { free(block); }

void operator delete[](void* block, size_t) noexcept { free(block); }

void operator delete(void* block, const std::nothrow_t&) noexcept { free(block); }

void operator delete[](void* block, const std::nothrow_t&) noexcept { free(block); }
