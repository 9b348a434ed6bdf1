// Loads the library as a host does. Checks that print what they found.
#ifndef QBSUPPORT_TESTS_WINDOWS_LIBRARY_H
#define QBSUPPORT_TESTS_WINDOWS_LIBRARY_H

#include <windows.h>

#include <iostream>
#include <string>

#include "qbsupport/sections.hpp"

using qbsupport::kLastKind;

inline int failedChecks = 0;

// Prints what is not as expected, and goes on.
template <class Value>
void CheckEqual(const Value& found, const std::type_identity_t<Value>& expected,
                int line = __builtin_LINE()) {
    if (found != expected) {
        std::cout << "FAILED: line " << line << ": <" << found << ">, not <" << expected << ">\n";
        ++failedChecks;
    }
}

inline void Check(bool holds, const std::string& what, int line = __builtin_LINE()) {
    CheckEqual(holds ? "good" : what, "good", line);
}

inline void CheckHas(const std::string& text, const std::string& part,
                     int line = __builtin_LINE()) {
    Check(text.find(part) != std::string::npos, text + "> without <" + part, line);
}

// The library file at a path, loaded during the life of this object.
class Library {
public:
    explicit Library(const char* path) {
        char whole[MAX_PATH] = {};  // Wine's loader does not accept a Linux path
        GetFullPathNameA(path, MAX_PATH, whole, nullptr);
        m_module = LoadLibraryA(whole);
        Find("QbSupportGetInfo", m_getInfo);
        Find("QbSupportReleaseBuffer", m_release);
    }
    ~Library() { FreeLibrary(m_module); }

    // The section's text, or "nothing" if the call failed. Then the out-pointer must be unchanged.
    std::string Report(int kind, unsigned int flags, const char* argument = nullptr) const {
        char untouched = 0;
        char* buffer = &untouched;
        const bool succeeded = m_getInfo(kind, flags, &buffer, argument) == 1;
        CheckEqual(buffer != &untouched, succeeded);
        const std::string text = succeeded ? buffer : "nothing";
        Check(!succeeded || m_release(buffer), "release after kind " + std::to_string(kind));
        return text;
    }

private:
    template <class Function>
    void Find(const char* name, Function& function) {
        function =
            reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(m_module, name)));
    }

    HMODULE m_module;
    decltype(&QbSupportGetInfo) m_getInfo;
    decltype(&QbSupportReleaseBuffer) m_release;
};

#endif
