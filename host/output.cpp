#include "output.h"

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <iterator>
#include <memory>
#include <utility>

#include "platform.h"

namespace {

struct CloseFile {
    void operator()(std::FILE* file) const { static_cast<void>(std::fclose(file)); }
};

using File = std::unique_ptr<std::FILE, CloseFile>;

#ifdef _WIN32
constexpr char kPathSeparators[] = "\\/:";
#else
constexpr char kPathSeparators[] = "/";
#endif

std::atomic<bool> interrupted = false;

void NoteInterruption(int signal) {
    interrupted = true;
    // Some run-time libraries forget a handler once it was called.
    static_cast<void>(std::signal(signal, NoteInterruption));
}

constexpr int kStopSignals[] = {
    SIGINT,
    SIGTERM,
#ifdef SIGBREAK
    SIGBREAK,
#endif
#ifdef SIGHUP
    SIGHUP,
#endif
};

// While it lives, a request to stop is noted, so that there is time to clean up. A request that
// the program was started to ignore stays ignored.
class InterruptionNotes {
public:
    InterruptionNotes() {
        for (std::size_t index = 0; index < std::size(kStopSignals); ++index) {
            m_before[index] = std::signal(kStopSignals[index], NoteInterruption);
            if (m_before[index] == SIG_IGN) {
                static_cast<void>(std::signal(kStopSignals[index], SIG_IGN));
            }
        }
    }
    ~InterruptionNotes() {
        for (std::size_t index = 0; index < std::size(kStopSignals); ++index) {
            static_cast<void>(std::signal(kStopSignals[index], m_before[index]));
        }
    }
    InterruptionNotes(const InterruptionNotes&) = delete;
    InterruptionNotes& operator=(const InterruptionNotes&) = delete;

private:
    void (*m_before[std::size(kStopSignals)])(int) = {};
};

bool Close(File file) {
    return std::fclose(file.release()) == 0;
}

// Opens a file that did not exist before, beside the target, and gives its path. Its name owes
// nothing to the target's, which may be as long as names can be.
File CreateTemporaryFile(const std::string& target, std::string& path) {
    constexpr int kMostTries = 100;
    const std::string directory = target.substr(0, target.find_last_of(kPathSeparators) + 1);
    File file;
    errno = EEXIST;
    for (int number = 1; number <= kMostTries && file == nullptr && errno == EEXIST; ++number) {
        path = directory + "qbreport" + std::to_string(number) + ".tmp";
        file.reset(CreateNewFile(path));
    }
    return file;
}

std::string WriteDevice(File file, const std::string& report) {
    return WriteAnsi(file.get(), report) && Close(std::move(file)) ? "" : LastErrorText();
}

std::string WriteTemporaryFile(File file, const std::string& report) {
    if (!WriteAnsi(file.get(), report) || !FlushToDisk(file.get()) || !Close(std::move(file))) {
        return LastErrorText();
    }
    return interrupted ? "interrupted" : "";
}

std::string ReplaceFileContent(const std::string& report, const std::string& target) {
    const InterruptionNotes notes;
    std::string path;
    File file = CreateTemporaryFile(target, path);
    if (file == nullptr) {
        return LastErrorText();
    }
    std::string problem = WriteTemporaryFile(std::move(file), report);
    if (problem.empty()) {
        problem = RenameOver(path, target);
    }
    if (!problem.empty()) {
        RemoveFile(path);
    }
    return problem;
}

}  // namespace

std::string PrintText(const std::string& text) {
    const bool written = WriteAnsi(stdout, text) && std::fclose(stdout) == 0;
    return written ? "" : LastErrorText();
}

std::string PrintReport(const std::string& report) {
    // What the library may have printed itself goes out in the mode that it was printed in.
    static_cast<void>(std::fflush(stdout));
    SetBinaryMode(stdout);
    return PrintText(report);
}

std::string SaveReport(const std::string& report, const std::string& path) {
    File device(OpenDevice(path));
    if (device != nullptr) {
        return WriteDevice(std::move(device), report);
    }
    return errno == 0 ? ReplaceFileContent(report, FullPath(path)) : LastErrorText();
}
