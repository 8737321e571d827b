// Handles of every family used in four threads at once, each thread with its
// own handles and its own photo, answer byte for byte what one thread does.
// Built with -DMORVANE_SANITIZE=thread, this is also the race test.
#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "api/exported_families.h"

TEST(Threads, FourThreadsOfEveryFamilyAnswerWhatOneThreadDoes) {
    constexpr int kThreads = 4;
    constexpr int kRounds = 3;
    const std::vector<families::Family>& table = families::all();
    std::vector<families::PhotographedPage> photos;
    for (int t = 0; t < kThreads; ++t) photos.emplace_back(240 + 40 * t, 300 - 30 * t, t % 2 == 0 ? 1 : 3);

    // The threads run first, so that they are the ones that fill the lazily
    // filled reciprocal cache of the segment scoring.
    std::atomic<int> waiting(kThreads);
    std::vector<std::vector<families::Answer>> answers(kThreads);
    std::vector<std::string> failures(kThreads);
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t)
        threads.emplace_back([&, t] {
            for (--waiting; waiting.load() > 0;) std::this_thread::yield();  // all start together
            // Each round every thread takes the next photo, so that no two work on the same one.
            for (int round = 0; round < kRounds; ++round)
                for (size_t f = 0; f < table.size(); ++f) {
                    try {
                        answers[t].push_back(families::answer_of(table[f], photos[(t + round) % kThreads]));
                    } catch (...) {
                        answers[t].emplace_back();
                        failures[t] += std::string(" ") + table[f].name + " threw;";
                    }
                }
        });
    for (std::thread& thread : threads) thread.join();

    for (int t = 0; t < kThreads; ++t) {
        EXPECT_EQ(failures[t], "") << "thread " << t;
        for (int round = 0; round < kRounds; ++round)
            for (size_t f = 0; f < table.size(); ++f) {
                const int p = (t + round) % kThreads;
                EXPECT_TRUE(answers[t][round * table.size() + f] == families::answer_of(table[f], photos[p]))
                    << table[f].name << " on photo " << p << " in thread " << t << ", round " << round;
            }
    }
}
