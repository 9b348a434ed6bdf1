// The functions of the Windows run-time library that behave differently from this system's own.
// They live in the library's namespace, so that an unqualified call finds them first.
#ifndef QBSUPPORT_STAND_IN_RUNTIME_H
#define QBSUPPORT_STAND_IN_RUNTIME_H

#include <clocale>
#include <cstdint>

namespace qb_support {

std::int64_t _time64(std::int64_t* time);

/// The local time as text, two-digit day, LF at the end; null outside the years 1970 to 3000.
/// The text lives until the thread's next call.
char* _ctime64(const std::int64_t* time);

void _tzset();

/// Finds the name without regard to case.
char* getenv(const char* name);

/// Only reports: any locale other than null is refused.
char* setlocale(int category, const char* locale);

}  // namespace qb_support

#endif
