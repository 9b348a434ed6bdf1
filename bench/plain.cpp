// Three sections as a plain implementation writes them, with string streams, strings and vectors.
#include <iomanip>
#include <locale>
#include <sstream>
#include <vector>

#include "bench.h"
#include "os/registry_values.h"
#include "os/version_tests.h"
#include "platform/named_function.h"
#include "platform/registry_key.h"
#include "platform/snapshot.h"
#include "platform/system_info.h"

namespace qb_support::bench {

namespace {

const std::string kIndent = "   ";

std::string ReadText(const char* name) {
    const RegistryKey key(HKEY_LOCAL_MACHINE, kCurrentVersionKey, KEY_READ);
    RegistryKey::TextBuffer text;
    DWORD type = REG_NONE;
    key.QueryText(name, text, type);
    return type == REG_DWORD ? std::to_string(*reinterpret_cast<DWORD*>(text)) : text;
}

std::string LocaleValue(LCTYPE type) {
    std::string value(
        static_cast<std::size_t>(GetLocaleInfoA(LOCALE_USER_DEFAULT, type, nullptr, 0)), '\0');
    GetLocaleInfoA(LOCALE_USER_DEFAULT, type, value.data(), static_cast<int>(value.size()));
    return value;
}

class UserGrouping : public std::numpunct<char> {
    std::string do_grouping() const override { return m_sizes; }
    char do_thousands_sep() const override { return m_separator; }

    std::string m_sizes{static_cast<char>(LocaleValue(LOCALE_SGROUPING)[0] - '0')};
    char m_separator = LocaleValue(LOCALE_STHOUSAND)[0];
};

std::string ModuleVersion(const std::string& name) {
    DWORD ignored = 0;
    const DWORD size = GetFileVersionInfoSizeA(name.c_str(), &ignored);
    std::vector<char> block(size);
    GetFileVersionInfoA(name.c_str(), 0, size, block.data());
    void* value = nullptr;
    UINT length = 0;
    VerQueryValueA(block.data(), "\\VarFileInfo\\Translation", &value, &length);
    std::ostringstream path;
    path << "\\StringFileInfo\\" << std::hex << std::setfill('0') << std::setw(4)
         << static_cast<WORD*>(value)[0] << std::setw(4) << static_cast<WORD*>(value)[1]
         << "\\ProductVersion";
    VerQueryValueA(block.data(), path.str().c_str(), &value, &length);
    return static_cast<char*>(value);
}

}  // namespace

std::string PlainOperatingSystem() {
    OSVERSIONINFOEXA version;
    DetectVersionFromTable(version);
    const std::string editionId = ReadText("EditionID");
    DWORD type = 0;
    FindFunction<BOOL WINAPI(DWORD, DWORD, DWORD, DWORD, DWORD*)>(
        GetModuleHandleA("kernel32.dll"), "GetProductInfo")(10, 0, 0, 0, &type);
    const std::string edition = type == 4 ? "Enterprise Edition" : editionId;
    const std::string product = ReadText("ProductName");
    const std::string release = ReadText("DisplayVersion");
    const std::string revision = ReadText("UBR");
    const bool is64Bit = QuerySystemInfo().wProcessorArchitecture == 9;

    std::ostringstream lines;
    lines << "Operating System\r\n----------------\r\n"
          << kIndent << "Microsoft Windows 10, " << (is64Bit ? "64-bit" : "32-bit") << '\n'
          << kIndent << edition << '\n'
          << kIndent << version.dwMajorVersion << '.' << version.dwMinorVersion << " Build "
          << version.dwBuildNumber << '\n'
          << kIndent << '[' << release << " -- " << version.dwBuildNumber << '.' << revision
          << "]\n"
          << kIndent << '\n'
          << kIndent << "[OS ID: " << product << "]\n"
          << kIndent << "[Edition ID: " << editionId << "]\n"
          << "\r\n";
    return lines.str();
}

std::string PlainMemory() {
    std::ostringstream lines;
    lines.imbue(std::locale(std::locale::classic(), new UserGrouping));
    const auto writeBytes = [&](const char* label, std::uint64_t bytes) {
        lines << kIndent << label << (bytes >> 10) << " KB\r\n";
    };
    MEMORYSTATUSEX memory{};
    memory.dwLength = sizeof(memory);
    GlobalMemoryStatusEx(&memory);
    lines << "Memory:\r\n-------\r\n";
    writeBytes("Physical:         ", memory.ullTotalPhys);
    writeBytes("Avail. Physical:  ", memory.ullAvailPhys);
    writeBytes("Avail. Page File: ", memory.ullAvailPageFile);
    writeBytes("Virtual:          ", memory.ullTotalVirtual);
    writeBytes("Avail. Virtual:   ", memory.ullAvailVirtual);
    PROCESS_MEMORY_COUNTERS process{};
    FindFunction<BOOL WINAPI(HANDLE, PROCESS_MEMORY_COUNTERS*, DWORD)>(
        LoadLibraryA("psapi.dll"), "GetProcessMemoryInfo")(GetCurrentProcess(), &process,
                                                           sizeof(process));
    lines << '\n';
    writeBytes("Process working set:      ", process.WorkingSetSize);
    writeBytes("Process peak working set: ", process.PeakWorkingSetSize);
    writeBytes("Process pagefile usage:   ", process.PagefileUsage);
    writeBytes("Process peak pf. usage:   ", process.PeakPagefileUsage);
    lines << kIndent << "Process page faults:      " << process.PageFaultCount << "\r\n\n\r\n";
    return lines.str();
}

std::string PlainModules() {
    const Snapshot snapshot(
        CreateToolhelp32Snapshot(TH32CS_SNAPMODULE | TH32CS_SNAPMODULE32, GetCurrentProcessId()));
    MODULEENTRY32 entry{};
    entry.dwSize = sizeof(entry);
    std::ostringstream lines;
    lines << "Modules\r\n-------\r\n";
    for (BOOL more = Module32First(snapshot.Handle(), &entry); more != 0;
         more = Module32Next(snapshot.Handle(), &entry)) {
        std::string path = entry.szExePath;
        for (std::size_t found = path.find('\\'); found != std::string::npos;
             found = path.find('\\', found + 1)) {
            path.replace(found, 1, "/");
        }
        lines << kIndent << path << "  [" << ModuleVersion(entry.szModule) << "]\r\n";
    }
    lines << "\r\n\r\n";
    return lines.str();
}

}  // namespace qb_support::bench
