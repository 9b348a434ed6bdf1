// Writes texts to a standard stream, or to a file that is written whole or not at all.
#ifndef QBREPORT_OUTPUT_H
#define QBREPORT_OUTPUT_H

#include <string>

/// Whether a Windows handle is that of a console.
bool IsConsole(void* handle);

/// Writes a text to a standard stream, such as STD_ERROR_HANDLE. On anything but a console, the
/// text is in the ANSI code page. Returns what went wrong, or an empty text.
std::string PrintText(unsigned long stream, const std::string& text);

/// Writes a report to standard output, byte for byte. On a console, it writes the characters that
/// the bytes stand for. Returns what went wrong, or an empty text.
std::string PrintReport(const std::string& report);

/// Saves the report in a file, in place of its old content. If that fails or is interrupted, the
/// file stays as it was, or does not exist. A device is written to directly. Returns what went
/// wrong, or an empty text.
std::string SaveReport(const std::string& report, const std::wstring& path);

/// The absolute path, or `path` itself if Windows does not give it.
std::wstring FullPath(const std::wstring& path);

#endif
