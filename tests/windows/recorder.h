// QBSUPPORT.dll on the stand-in platform: the library file's import table leads to the stand-in's
// functions, and QbSupportGetInfo and QbSupportReleaseBuffer are the library file's own. So tests
// that are written for a described machine hold for the library file too.
#ifndef QBSUPPORT_TESTS_WINDOWS_RECORDER_H
#define QBSUPPORT_TESTS_WINDOWS_RECORDER_H

#include <string>
#include <vector>

// Where every platform call is written down with its parameters, one line a call; null for nowhere.
// Shown are numbers; what lies behind pointers to texts and numbers; the size field of a record;
// and "given" for other pointers. GetLastError is left out: it may be asked as often as is handy.
extern std::string* recording;

// Up to 65,535 in decimal, larger ones in hexadecimal.
std::string Digits(unsigned long long number);

// The library's imports that do not lead to the stand-in.
const std::vector<std::string>& ImportsLeftAlone();

#endif
