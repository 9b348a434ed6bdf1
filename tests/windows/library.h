// The library as a host loads it, and its import table.
#ifndef QBSUPPORT_TESTS_WINDOWS_LIBRARY_H
#define QBSUPPORT_TESTS_WINDOWS_LIBRARY_H

#include <optional>
#include <string>
#include <vector>

constexpr int kLastKind = 20;
constexpr int kReservedKind = 19;

// QBSUPPORT.dll beside the program, loaded as long as this lives. Without it the program ends.
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

// One function that a loaded module calls through its import table.
struct Import {
    std::string name;
    void** slot;

    void ReplaceBy(void* function) const;
};

std::vector<Import> ImportsOf(void* module);

#endif
