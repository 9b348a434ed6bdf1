// Where texts go: a standard stream, or a file that is written whole or not at all.
#ifndef QBREPORT_OUTPUT_H
#define QBREPORT_OUTPUT_H

#include <string>

/// Whether a Windows handle is that of a console.
bool IsConsole(void* handle);

/// Writes a text to a standard stream, such as STD_ERROR_HANDLE: to a console as it is, elsewhere
/// in the ANSI code page. Returns what went wrong, or an empty text.
std::string PrintText(unsigned long stream, const std::string& text);

/// Writes a report to standard output byte for byte, on a console as the characters that the bytes
/// stand for. Returns what went wrong, or an empty text.
std::string PrintReport(const std::string& report);

/// Saves the report in a file, in place of what the file held. If that fails or is interrupted, the
/// file stays as it was, or does not exist. A device is written to directly. Returns what went
/// wrong, or an empty text.
std::string SaveReport(const std::string& report, const std::wstring& path);

/// The path in full, or the path itself if Windows does not tell.
std::wstring FullPath(const std::wstring& path);

#endif
