// The library as a host loads it.
#ifndef QBSUPPORT_TESTS_WINDOWS_LIBRARY_H
#define QBSUPPORT_TESTS_WINDOWS_LIBRARY_H

#include <optional>
#include <string>

#include "kinds.h"

// QBSUPPORT.dll beside the program, loaded as long as this lives.
class Library {
public:
    Library();
    Library(const Library&) = delete;
    Library& operator=(const Library&) = delete;
    ~Library();

    // The section's text, or nothing when the call failed; the out-pointer must then be untouched.
    std::optional<std::string> Report(int kind, unsigned int flags,
                                      const char* argument = nullptr) const;

    void* module;
    int (*getInfo)(int kind, unsigned int flags, char** buffer, const char* argument);
    bool (*release)(char* buffer);
};

// An argument that gives the kind's section something to say; null for kinds that take none.
const char* ArgumentFor(int kind);

// The directory of the running program, with its closing backslash.
std::string ProgramDirectory();

// What the program there writes to its standard output.
std::string Output(const std::string& program, const std::string& arguments);

#endif
