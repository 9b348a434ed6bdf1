// What the programs need from the system beyond the standard library. Texts are in UTF-8 but where
// it says ANSI: what the library takes and gives, in the ANSI code page.
#ifndef QBREPORT_PLATFORM_H
#define QBREPORT_PLATFORM_H

#include <cstdio>
#include <string>
#include <vector>

#include "qbsupport/loader.hpp"

/// Keeps the system from opening dialogs about missing disks and from ending the program when the
/// reader of its output has gone.
void PrepareProcess();

/// The command line's arguments without the program's name.
#ifdef _WIN32
std::vector<std::string> Utf8Arguments(int argc, wchar_t** argv);
#else
std::vector<std::string> Utf8Arguments(int argc, char** argv);
#endif

/// A character that the ANSI code page lacks becomes another one, such as a question mark.
std::string AnsiOf(const std::string& utf8);
std::string Utf8Of(const std::string& ansi);

/// The directory of this program's file, or an empty text when the system does not tell.
std::string ExecutableDirectory();

/// Loads the library that lies beside this program's file, and no other.
qbsupport::Library LoadLibraryBesideExecutable();

/// Where a new report goes when the user did not say, best first: a file among the user's
/// documents, beside the program, among the temporary files. A directory that the system does not
/// tell is left out; at least one path is given.
std::vector<std::string> NewReportPaths();

/// Whether the program has a console, and no other program shares it.
bool OwnsConsole();

void WaitForKey();

bool IsTerminal(std::FILE* stream);

/// Writes ANSI bytes, on a terminal as the characters that they stand for. False with errno set on
/// failure.
bool WriteAnsi(std::FILE* stream, const std::string& text);

/// The same for a text, which goes elsewhere than to a terminal in the ANSI code page.
bool WriteText(std::FILE* stream, const std::string& text);

/// Stops the stream from changing line ends.
void SetBinaryMode(std::FILE* stream);

/// Why the standard library's last call failed.
std::string LastErrorText();

/// Opens a device, a pipe or the like for writing in binary: something that exists and is not a
/// file. Null with errno 0 where the path names no such thing, with another errno on failure.
std::FILE* OpenDevice(const std::string& path);

/// The path in full, on POSIX systems that of the file which links lead to; the path itself where
/// the system does not tell.
std::string FullPath(const std::string& path);

/// Creates a file that must not exist yet, for writing in binary; null with errno set on failure.
std::FILE* CreateNewFile(const std::string& path);

/// Hands the file's bytes to the disk. False with errno set on failure.
bool FlushToDisk(std::FILE* file);

/// Gives a file a new name, in place of the file that may have that name. Returns what went wrong,
/// or an empty text.
std::string RenameOver(const std::string& from, const std::string& to);

void RemoveFile(const std::string& path);

#endif
