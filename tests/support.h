// What tests of the library on a described machine share.
#ifndef QBSUPPORT_TESTS_SUPPORT_H
#define QBSUPPORT_TESTS_SUPPORT_H

#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "stand_in/machine.h"

// The text of one section, nothing when the call failed. Checks what faults::CallAlone does. Not
// for several threads at once: what they have open would be taken for a leak.
std::optional<std::string> GetInfo(int kind, unsigned flags, const char* argument = nullptr);

// A test on a machine of its own, which is at first the default one.
class DescribedMachineTest : public testing::Test {
private:
    stand_in::ScopedMachine m_scope;

protected:
    stand_in::Machine& m_machine = stand_in::CurrentMachine();
};

#endif
