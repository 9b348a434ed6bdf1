// Several threads call all kinds. Each call must return the text that it returns alone.
#include <atomic>
#include <thread>

#include "stand_in/calls.h"
#include "support.h"

TEST(Threads, EachCallGetsTheTextItGetsAlone) {
    stand_in::Machine machine;
    machine.environment["HOME"] = "C:\\Users\\ann";
    machine.monitors.resize(12, machine.monitors.front());
    const stand_in::ScopedMachine scope(machine);
    const std::vector<Request> requests =
        EveryRequest({"", "HOME", "explorer.exe", "ntdll.dll", "C:\\Windows"});
    std::vector<std::optional<std::string>> texts;
    for (const Request& request : requests) {
        texts.push_back(CallAlone(request).text);
    }

    std::atomic<std::size_t> differences = 0;
    std::vector<std::jthread> threads;
    for (std::size_t thread = 0; thread < 8; ++thread) {
        threads.emplace_back([&, thread] {
            for (std::size_t i = 0; i < 20 * requests.size(); ++i) {
                // Two threads each make the same calls at the same time.
                const std::size_t number = (i + thread / 2 * 61) % requests.size();
                const CallOutcome outcome = Call(requests[number]);
                differences += outcome.text != texts[number] || !outcome.violations.empty();
            }
        });
    }
    threads.clear();  // waits for them
    EXPECT_EQ(differences, 0U);
    EXPECT_EQ(stand_in::OpenHandles() + stand_in::HandleMisuses(), 0);
}
