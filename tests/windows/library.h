// The library as a host loads it, and checks that say what they found.
#ifndef QBSUPPORT_TESTS_WINDOWS_LIBRARY_H
#define QBSUPPORT_TESTS_WINDOWS_LIBRARY_H

#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "kinds.h"

inline int failedChecks = 0;

// Says what does not hold, and goes on.
inline void Check(bool holds, const std::string& what, const char* file = __builtin_FILE(),
                  int line = __builtin_LINE()) {
    if (!holds) {
        std::printf("%s:%d: FAILED: %s\n", file, line, what.c_str());
        ++failedChecks;
    }
}

template <class Found, class Expected>
void CheckEqual(const Found& found, const Expected& expected, const char* file = __builtin_FILE(),
                int line = __builtin_LINE()) {
    if constexpr (std::is_arithmetic_v<Found>) {
        CheckEqual(std::to_string(found), std::to_string(expected), file, line);
    } else {
        Check(found == expected, "found <" + found + ">, expected <" + expected + ">", file, line);
    }
}

// An argument that gives most kinds' sections something to say.
inline const char* ArgumentFor(int kind) {
    return kind == QbSupportModules ? nullptr : "Software";
}

// The library file at a path, loaded as long as this lives.
class Library {
public:
    explicit Library(const char* path) {
        char whole[MAX_PATH] = {};  // Wine's loader does not take this system's own form
        GetFullPathNameA(path, MAX_PATH, whole, nullptr);
        m_module = LoadLibraryA(whole);
        m_getInfo = Find<decltype(m_getInfo)>("QbSupportGetInfo");
        m_release = Find<decltype(m_release)>("QbSupportReleaseBuffer");
    }
    Library(const Library&) = delete;
    Library& operator=(const Library&) = delete;
    ~Library() { FreeLibrary(m_module); }

    // The section's text, or "nothing" when the call failed, which must not touch the out-pointer.
    std::string Report(int kind, unsigned int flags, const char* argument = nullptr) const {
        char untouched = 0;
        char* buffer = &untouched;
        const int result = m_getInfo(kind, flags, &buffer, argument);
        const bool succeeded = buffer != &untouched;
        CheckEqual(result, succeeded ? 1 : 0);
        const std::string text = succeeded ? buffer : "nothing";
        Check(!succeeded || m_release(buffer), "release after kind " + std::to_string(kind));
        return text;
    }

private:
    template <class Function>
    Function Find(const char* name) const {
        return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(m_module, name)));
    }

    HMODULE m_module;
    decltype(&QbSupportGetInfo) m_getInfo;
    decltype(&QbSupportReleaseBuffer) m_release;
};

#endif
