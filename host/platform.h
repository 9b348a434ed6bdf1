// What the program needs from the system beyond the standard library.
#ifndef QBREPORT_PLATFORM_H
#define QBREPORT_PLATFORM_H

#include <cstdio>
#include <string>

#include "qbsupport/qbsupport.hpp"

/// The directory of this program's file, or an empty text when the system does not tell.
std::string ExecutableDirectory();

/// Loads the library that lies beside this program's file, and no other.
qbsupport::Library LoadLibraryBesideExecutable();

/// Makes writing to a stream whose reader has gone an error and not the end of the process.
void ReportClosedPipes();

bool IsTerminal(std::FILE* stream);

/// Stops the stream from changing line ends.
void SetBinaryMode(std::FILE* stream);

/// Why the standard library's last call failed.
std::string LastErrorText();

/// Whether the path names a device, a pipe or the like: something that exists and is not a file.
bool IsDevice(const std::string& path);

/// The file that the path leads to, in full, or the path itself where there is no such file.
std::string FullPath(const std::string& path);

/// Creates a file that must not exist yet, for writing in binary; null with errno set on failure.
std::FILE* CreateNewFile(const std::string& path);

/// Hands the file's bytes to the disk. False with errno set on failure.
bool FlushToDisk(std::FILE* file);

/// Gives a file a new name, in place of the file that may have that name. Returns what went wrong,
/// or an empty text.
std::string RenameOver(const std::string& from, const std::string& to);

#endif
