// What the native tests share: a machine for each test, and calls of the library that check what
// must be true in any case.
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

// Which of the library's allocations fail, where 1 is the first of a call. None if `first` is 0.
struct AllocationFault {
    std::size_t first = 0;
    std::size_t last = 0;
};

struct CallOutcome {
    std::optional<std::string> text;  // nothing if the call failed
    std::size_t allocations = 0;      // of the library, including failed ones
    std::string violations;           // of the promises below, empty if it kept them
};

// Makes a call and checks the library's promises: a failed call does not change the caller's
// pointer, a successful one hands out a terminated block of the text's size and one, and no memory
// leaks.
CallOutcome Call(const Request& request, AllocationFault fault = {});

// Also checks that no handle stays open or is misused. For a single thread only.
CallOutcome CallAlone(const Request& request, AllocationFault fault = {});

// The text of a section, from CallAlone, which must find no violation.
std::optional<std::string> GetInfo(int kind, unsigned flags, const char* argument = nullptr);

// Requests for every kind, without flags and with all flags, with each of the arguments.
std::vector<Request> EveryRequest(const std::vector<const char*>& arguments);

// A test with its own machine, which is the default one at first.
class DescribedMachineTest : public testing::Test {
protected:
    stand_in::ScopedMachine m_scope;
    stand_in::Machine& m_machine = stand_in::CurrentMachine();
};

#endif
