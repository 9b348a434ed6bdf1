// The information kinds that there are.
#ifndef QBSUPPORT_TESTS_KINDS_H
#define QBSUPPORT_TESTS_KINDS_H

#include "qbsupport/qbsupport.h"

inline constexpr int kLastKind = QbSupportDisplay;

#endif
