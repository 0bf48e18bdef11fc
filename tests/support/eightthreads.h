#pragma once

#include <array>
#include <barrier>
#include <functional>
#include <thread>

/// Runs `work` in eight threads that begin together, and waits for them.
inline void inEightThreads(const std::function<void()>& work)
{
    constexpr std::ptrdiff_t threadCount = 8;
    std::barrier<> start(threadCount);
    std::array<std::thread, threadCount> threads;
    for (std::thread& thread : threads) {
        thread = std::thread([&start, &work] {
            start.arrive_and_wait();
            work();
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}
