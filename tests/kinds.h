// The information kinds that there are.
#ifndef QBSUPPORT_TESTS_KINDS_H
#define QBSUPPORT_TESTS_KINDS_H

#include <iterator>

#include "qbsupport/sections.hpp"

inline constexpr int kLastKind = static_cast<int>(std::size(qbsupport::kSectionKinds));

#endif
