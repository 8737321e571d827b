// Every exported family on a 12-megapixel photo while the Nth allocation
// fails, or every allocation from the Nth on: each use completes with the
// answer of a run without failures, or ends the way the interface documents
// for a resource failure (std::bad_alloc, a text that names memory, or 0 from
// run_projective_correction). The handle then still answers as a fresh one
// does, and nothing leaks (the leak check of the AddressSanitizer build).
#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <exception>
#include <map>
#include <new>
#include <string>
#include <vector>

#include "allocation/failing_allocator.h"
#include "api/exported_families.h"

namespace {

const families::PhotographedPage& photo() {
    static const families::PhotographedPage twelve_megapixels(4000, 3000, 3);
    return twelve_megapixels;
}

bool names_memory(const std::string& text) { return text.find("memory") != std::string::npos; }

// What one use of a family came to, and a complaint when that is not an
// acceptable end.
struct Attempt {
    std::string outcome;
    std::string fault;
};

Attempt attempt(const families::Family& family, const families::Answer& clean, long fail_at, bool from_then_on) {
    Attempt result;
    void* handle = nullptr;
    families::Answer answer;
    std::exception_ptr error;
    failing_allocator::arm(fail_at, from_then_on);
    try {
        if (family.create != nullptr) handle = family.create();
        family.run(handle, photo(), answer);
    } catch (...) {
        error = std::current_exception();  // looked at once allocations work again
    }
    failing_allocator::disarm();
    bool acceptable = true;
    try {
        if (error) std::rethrow_exception(error);
        int code = -1;
        if (answer.size() >= sizeof code) std::memcpy(&code, answer.data(), sizeof code);
        if (answer == clean) {
            result.outcome = "completed";
        } else if (family.run == families::run_corrector && code == 0) {
            result.outcome = "run_projective_correction returned 0";
        } else {
            result.outcome = "completed with another answer";
            acceptable = false;
        }
    } catch (const std::bad_alloc&) {
        result.outcome = "std::bad_alloc";
    } catch (const std::exception& e) {
        result.outcome = std::string("exception \"") + e.what() + "\"";
        acceptable = names_memory(e.what());
    } catch (const char* text) {
        result.outcome = std::string("const char* \"") + text + "\"";
        acceptable = names_memory(text);
    } catch (const std::string& text) {
        result.outcome = "std::string \"" + text + "\"";
        acceptable = names_memory(text);
    } catch (...) {
        result.outcome = "another exception";
        acceptable = false;
    }
    if (!acceptable) result.fault = result.outcome;
    // A handle that went through a failure answers as a fresh one.
    if (handle != nullptr && result.outcome != "completed") {
        families::Answer again;
        try {
            family.run(handle, photo(), again);
            if (again != clean) result.fault += " then a different answer from the same handle";
        } catch (...) {
            result.fault += " then a failure from the same handle";
        }
    }
    if (handle != nullptr) family.destroy(handle);
    return result;
}

// Outcome counts and faults of one family, for one way of failing.
struct Sweep {
    long allocations = 0;
    long runs = 0;
    std::map<std::string, int> outcomes;
    std::vector<std::string> faults;
};

// Allocations 1 to 8, then every stride-th, and the last one.
long next_failure(long n, long last, long stride) {
    if (n < 8) return n + 1;
    if (n < last && n + stride > last) return last;
    return n + stride;
}

Sweep sweep(const families::Family& family, bool from_then_on, long stride) {
    Sweep result;
    photo();  // made before counting starts
    failing_allocator::arm(0);
    const families::Answer clean = families::answer_of(family, photo());
    result.allocations = failing_allocator::disarm();
    for (long n = 1; n <= result.allocations; n = next_failure(n, result.allocations, stride)) {
        const Attempt a = attempt(family, clean, n, from_then_on);
        ++result.runs;
        ++result.outcomes[a.outcome];
        if (!a.fault.empty()) result.faults.push_back("allocation " + std::to_string(n) + ": " + a.fault);
    }
    return result;
}

void check_every_family(long stride, bool print) {
    for (const families::Family& family : families::all())
        for (bool from_then_on : {false, true}) {
            const Sweep s = sweep(family, from_then_on, stride);
            const char* way = from_then_on ? "from the Nth on" : "the Nth only";
            for (const std::string& fault : s.faults) ADD_FAILURE() << family.name << ", " << way << ", " << fault;
            if (!print) continue;
            for (const auto& outcome : s.outcomes)
                std::printf("| %s | %s | %ld of %ld | %s | %d |\n", family.name, way, s.runs, s.allocations,
                            outcome.first.c_str(), outcome.second);
            std::fflush(stdout);
        }
}

}  // namespace

TEST(AllocationFailures, EveryFamilyCompletesOrReportsTheFailureOnATwelveMegapixelPhoto) { check_every_family(400, true); }

// The whole table, every allocation of every family: run with
// --gtest_also_run_disabled_tests; it takes the better part of an hour.
TEST(AllocationFailures, DISABLED_EveryAllocationOfEveryFamily) { check_every_family(1, true); }
