// Many threads, every kind: each call gets the text that it gets alone.
#include <gtest/gtest.h>

#include <atomic>
#include <cstdio>
#include <thread>
#include <vector>

#include "faults/checked_call.h"
#include "platform/stand_in/calls.h"
#include "platform/stand_in/machine.h"

namespace faults {
namespace {

struct Request {
    int kind;
    unsigned flags;
    const char* argument;
    std::optional<std::string> text;
};

std::vector<Request> EveryRequest() {
    std::vector<Request> requests;
    for (int kind = 1; kind <= kLastKind; ++kind) {
        for (const unsigned flags : {0U, 7U}) {
            for (const char* argument : {"", "HOME", "explorer.exe", "ntdll.dll", "C:\\Windows"}) {
                requests.push_back({kind, flags, argument, CallAlone(kind, flags, argument).text});
            }
        }
    }
    return requests;
}

TEST(Threads, EachCallGetsTheTextItGetsAlone) {
    stand_in::Machine machine;
    machine.environment["HOME"] = "C:\\Users\\ann";
    machine.monitors.resize(12, machine.monitors.front());
    const stand_in::ScopedMachine scope(machine);
    const std::vector<Request> requests = EveryRequest();

    constexpr std::size_t kThreads = 8;
    constexpr std::size_t kRounds = 20;
    std::atomic<std::size_t> calls = 0;
    std::atomic<std::size_t> differences = 0;
    std::vector<std::thread> threads;
    for (std::size_t thread = 0; thread < kThreads; ++thread) {
        threads.emplace_back([&, thread] {
            for (std::size_t i = 0; i < kRounds * requests.size(); ++i) {
                // Half of the threads make the same calls at the same time, the others do not.
                const Request& request = requests[(i + thread / 2 * 61) % requests.size()];
                const CallOutcome outcome = Call(request.kind, request.flags, request.argument);
                ++calls;
                differences += outcome.text != request.text || !outcome.violations.empty();
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(differences, 0U);
    EXPECT_EQ(stand_in::CountOpenHandles().Total(), 0);
    EXPECT_EQ(stand_in::HandleMisuses(), 0);
    std::printf("Tried: %zu calls on %zu threads at once\n", calls.load(), kThreads);
}

}  // namespace
}  // namespace faults
