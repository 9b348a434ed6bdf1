#include "platform.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdlib>
#include <cstring>

#include "report.h"

namespace {

// The path up to and with its last slash.
std::string ExecutableLocation() {
    char path[PATH_MAX] = {};
    const ssize_t length = readlink("/proc/self/exe", path, sizeof(path) - 1);
    const std::string text(path, length > 0 ? static_cast<std::size_t>(length) : 0);
    return text.substr(0, text.rfind('/') + 1);
}

}  // namespace

void PrepareProcess() {
    static_cast<void>(std::signal(SIGPIPE, SIG_IGN));
}

std::vector<std::string> Utf8Arguments(int argc, char** argv) {
    return {argv + (argc > 0 ? 1 : 0), argv + argc};
}

std::string AnsiOf(const std::string& utf8) {
    return utf8;
}

std::string Utf8Of(const std::string& ansi) {
    return ansi;
}

std::string ExecutableDirectory() {
    const std::string location = ExecutableLocation();
    return location.size() > 1 ? location.substr(0, location.size() - 1) : location;
}

qbsupport::Library LoadLibraryBesideExecutable() {
    return qbsupport::Library((ExecutableLocation() + qbsupport::kLibraryFileName).c_str());
}

std::vector<std::string> NewReportPaths() {
    return {NewReportName()};
}

bool OwnsConsole() {
    return false;
}

void WaitForKey() {}

bool IsTerminal(std::FILE* stream) {
    return isatty(fileno(stream)) != 0;
}

bool WriteAnsi(std::FILE* stream, const std::string& text) {
    return std::fwrite(text.data(), 1, text.size(), stream) == text.size() &&
           std::fflush(stream) == 0;
}

bool WriteText(std::FILE* stream, const std::string& text) {
    return WriteAnsi(stream, text);
}

void SetBinaryMode(std::FILE* /*stream*/) {}

std::string LastErrorText() {
    return std::strerror(errno);
}

std::FILE* OpenDevice(const std::string& path) {
    struct stat status = {};
    if (stat(path.c_str(), &status) != 0 || S_ISREG(status.st_mode)) {
        errno = 0;
        return nullptr;
    }
    return std::fopen(path.c_str(), "wb");
}

std::string FullPath(const std::string& path) {
    char full[PATH_MAX] = {};
    return realpath(path.c_str(), full) != nullptr ? full : path;
}

std::FILE* CreateNewFile(const std::string& path) {
    const int file = open(path.c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, 0666);
    return file >= 0 ? fdopen(file, "wb") : nullptr;
}

bool FlushToDisk(std::FILE* file) {
    return std::fflush(file) == 0 && fsync(fileno(file)) == 0;
}

std::string RenameOver(const std::string& from, const std::string& to) {
    return std::rename(from.c_str(), to.c_str()) == 0 ? "" : LastErrorText();
}

void RemoveFile(const std::string& path) {
    static_cast<void>(std::remove(path.c_str()));
}
