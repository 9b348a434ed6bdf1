// Many threads on the real system: each call gets the text that it gets alone.
#include <gtest/gtest.h>

#include <atomic>
#include <cctype>
#include <cstdio>
#include <thread>

#include "library.h"

namespace {

// Time and memory change from call to call; only the shape of their lines stays.
std::string Comparable(int kind, std::string text) {
    if (kind == 2 || kind == 8) {
        std::erase_if(
            text, [](unsigned char letter) { return std::isdigit(letter) != 0 || letter == ','; });
    }
    return text;
}

// Threads that call at the same time ask for different things, so that a shared buffer shows.
struct Request {
    unsigned int flags;
    const char* argument;
    std::string text;
};

TEST(ConcurrentCalls, EachThreadGetsTheTextsOfAQuietProcess) {
    constexpr std::size_t kThreads = 16;
    const Library library;
    library.Report(5, 0);  // loads a library,
    library.Report(8, 0);  // and this another one, which the list of modules shows
    std::atomic<std::size_t> calls = 0;
    std::atomic<std::size_t> differences = 0;
    for (int kind = 1; kind <= kLastKind; ++kind) {
        std::vector<Request> requests = {{7, ArgumentFor(kind), ""},
                                         {0, kind == 17 ? "kernel32.dll" : "windir", ""}};
        const auto ask = [&library, kind](const Request& request) {
            const auto text = library.Report(kind, request.flags, request.argument);
            return Comparable(kind, text.value_or("failed"));
        };
        for (Request& request : requests) {
            request.text = ask(request);
        }
        const int rounds = kind == 16 ? 2 : 100;  // it reads every module's file
        std::vector<std::thread> threads;
        for (std::size_t thread = 0; thread < kThreads; ++thread) {
            threads.emplace_back([&, thread] {
                for (int i = 0; i < rounds; ++i) {
                    const Request& request = requests[thread % 2];
                    ++calls;
                    differences += ask(request) != request.text ? 1U : 0U;
                }
            });
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
        EXPECT_EQ(differences.exchange(0), 0U) << "kind " << kind;
    }
    std::printf("Tried: %zu calls on %zu threads at once\n", calls.load(), kThreads);
}

}  // namespace
