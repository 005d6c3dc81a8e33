#pragma once

#include <latch>
#include <thread>
#include <vector>

inline constexpr unsigned threadCount = 8;

/// Runs @p work, with the number of the thread, in all threads, which begin together.
template <class Work>
void inThreads(Work const& work)
{
    std::latch start(threadCount);
    std::vector<std::jthread> threads;
    for (unsigned i = 0; i < threadCount; ++i) {
        threads.emplace_back([&, i] {
            start.arrive_and_wait();
            work(i);
        });
    }
}
