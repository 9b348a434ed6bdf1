// The functions of the Windows run-time library that differ from this system's own. They are in the
// library's namespace, where an unqualified call finds them first.
#ifndef QBSUPPORT_STAND_IN_RUNTIME_H
#define QBSUPPORT_STAND_IN_RUNTIME_H

#include <clocale>
#include <cstdint>

namespace qb_support {

std::int64_t _time64(std::int64_t* time);

/// The local time as text, with two digits for the day and an LF at the end, or null outside the
/// years 1970 to 3000. The text is valid until the thread's next call.
char* _ctime64(const std::int64_t* time);

void _tzset();

/// Ignores upper and lower case in the name.
char* getenv(const char* name);

/// Only reports the setting. Any `locale` but null is refused.
char* setlocale(int category, const char* locale);

}  // namespace qb_support

#endif
