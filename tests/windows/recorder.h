// QBSUPPORT.dll on the stand-in platform: the library file's import table leads to the stand-in's
// functions, and QbSupportGetInfo and QbSupportReleaseBuffer are the library file's own. So tests
// that are written for a described machine hold for the library file too.
#ifndef QBSUPPORT_TESTS_WINDOWS_RECORDER_H
#define QBSUPPORT_TESTS_WINDOWS_RECORDER_H

#include <string>
#include <vector>

// Writes down every platform call with its parameters while it lives, one line a call: numbers up
// to 65,535 in decimal, larger ones in hexadecimal; what lies behind pointers to texts and numbers,
// the size field of a record, and "given" for other pointers.
class Recorder {
public:
    Recorder();
    Recorder(const Recorder&) = delete;
    Recorder& operator=(const Recorder&) = delete;
    ~Recorder();

    [[nodiscard]] const std::vector<std::string>& Calls() const { return m_calls; }
    void Add(std::string call) { m_calls.push_back(std::move(call)); }

private:
    std::vector<std::string> m_calls;
};

// The answer that stands for yes in version questions; any but 0 may.
extern int yesAnswer;

// The library's imports that do not lead to the stand-in.
const std::vector<std::string>& ImportsLeftAlone();

#endif
