// What the native tests share: a machine of their own, and calls of the library with everything
// checked that must hold whatever fails.
#ifndef QBSUPPORT_TESTS_SUPPORT_H
#define QBSUPPORT_TESTS_SUPPORT_H

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "qbsupport/sections.hpp"
#include "stand_in/machine.h"

using qbsupport::kLastKind;

struct Request {
    int kind;
    unsigned flags;
    const char* argument;
};

// The library's allocations that fail, by their number, 1 for the first; none when `first` is 0.
struct AllocationFault {
    std::size_t first = 0;
    std::size_t last = 0;
};

struct CallOutcome {
    std::optional<std::string> text;  // nothing when the call failed
    std::size_t allocations = 0;      // the library's, those that failed included
    std::string violations;           // of the promises below, empty when all were kept
};

// A failed call leaves the caller's pointer alone. A successful one hands out a terminated block of
// the text's size and one. Either way no memory stays.
CallOutcome Call(const Request& request, AllocationFault fault = {});

// Besides: nothing is open, and no handle was misused. For one thread at a time.
CallOutcome CallAlone(const Request& request, AllocationFault fault = {});

// The text of a section by a call alone that keeps all promises.
std::optional<std::string> GetInfo(int kind, unsigned flags, const char* argument = nullptr);

// Every kind without and with all flags, with each of the arguments.
std::vector<Request> EveryRequest(const std::vector<const char*>& arguments);

// A test on a machine of its own, which is at first the default one.
class DescribedMachineTest : public testing::Test {
protected:
    stand_in::ScopedMachine m_scope;
    stand_in::Machine& m_machine = stand_in::CurrentMachine();
};

#endif
