// How far one run of some work raises the resident memory of a fresh
// process: the benchmarks report it beside the time, as the counter peak_MB.
#ifndef MORVANE_BENCH_PEAK_MEMORY_H
#define MORVANE_BENCH_PEAK_MEMORY_H

#include <malloc.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>

namespace bench_memory {

// Resident kilobytes of this process: the current figure and its high-water mark.
inline long status_kilobytes(const char* field) {
    FILE* file = std::fopen("/proc/self/status", "r");
    if (file == nullptr) return -1;
    char line[256];
    long value = -1;
    const size_t length = std::strlen(field);
    while (std::fgets(line, sizeof line, file) != nullptr)
        if (std::strncmp(line, field, length) == 0) value = std::atol(line + length);
    std::fclose(file);
    return value;
}

// Runs work once in a forked child and answers how far it raised the
// resident size, in megabytes (-1 when the figures cannot be read). The child
// first gives its free heap back and fixes the allocator's mapping threshold,
// so that what the method allocates is touched afresh and counted, then
// resets its high-water mark.
inline double peak_growth_mb(const std::function<void()>& work) {
    int channel[2];
    if (pipe(channel) != 0) return -1.0;
    const pid_t child = fork();
    if (child == 0) {
        close(channel[0]);
        mallopt(M_MMAP_THRESHOLD, 64 * 1024);
        mallopt(M_TRIM_THRESHOLD, 64 * 1024);
        malloc_trim(0);
        if (FILE* clear = std::fopen("/proc/self/clear_refs", "w")) {
            std::fputs("5", clear);
            std::fclose(clear);
        }
        const long before = status_kilobytes("VmRSS:");
        work();
        const long peak = status_kilobytes("VmHWM:");
        const long growth = (before < 0 || peak < 0) ? -1024 : peak - before;
        if (write(channel[1], &growth, sizeof growth) != static_cast<ssize_t>(sizeof growth)) _exit(1);
        _exit(0);
    }
    close(channel[1]);
    long growth = -1024;
    if (child > 0) {
        if (read(channel[0], &growth, sizeof growth) != static_cast<ssize_t>(sizeof growth)) growth = -1024;
        waitpid(child, nullptr, 0);
    }
    close(channel[0]);
    return static_cast<double>(growth) / 1024.0;
}

}  // namespace bench_memory

#endif
