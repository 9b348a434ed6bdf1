// Where texts go: standard output, or a file that is written whole or not at all.
#ifndef QBREPORT_OUTPUT_H
#define QBREPORT_OUTPUT_H

#include <string>

/// Writes a text to standard output in the system's own line ends. Returns what went wrong, or an
/// empty text.
std::string PrintText(const std::string& text);

/// The same without changing a byte.
std::string PrintReport(const std::string& report);

/// Saves the report in a file, in place of what the file held. When that fails or is interrupted
/// the file stays as it was, or away. A device is written to directly. Returns what went wrong, or
/// an empty text.
std::string SaveReport(const std::string& report, const std::string& path);

#endif
