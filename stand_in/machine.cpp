#include "stand_in/machine.h"

#include <algorithm>
#include <clocale>
#include <cstdio>
#include <utility>

#include "stand_in/calls.h"

namespace stand_in {
namespace {

std::string BytesOf(DWORD number) {
    std::string bytes;
    for (int shift = 0; shift < 32; shift += 8) {
        bytes.push_back(static_cast<char>(number >> shift & 0xFF));
    }
    return bytes;
}

constexpr std::uint64_t kilobyte = 1024;
constexpr std::uint64_t megabyte = 1024 * kilobyte;

char LowerCase(char character) {
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character + 32) : character;
}

char PathCharacter(char character) {
    return character == '/' ? '\\' : LowerCase(character);
}

std::string_view WithoutClosingSlashes(std::string_view path) {
    return path.substr(0, path.find_last_not_of("\\/") + 1);
}

}  // namespace

bool SameName(std::string_view left, std::string_view right) {
    return std::ranges::equal(left, right, {}, LowerCase, LowerCase);
}

bool NameOrder::operator()(std::string_view left, std::string_view right) const {
    return std::ranges::lexicographical_compare(left, right, {}, LowerCase, LowerCase);
}

bool PathOrder::operator()(std::string_view left, std::string_view right) const {
    return std::ranges::lexicographical_compare(WithoutClosingSlashes(left),
                                                WithoutClosingSlashes(right), {}, PathCharacter,
                                                PathCharacter);
}

RegistryValue RegistryText(std::string text) {
    text.push_back('\0');
    return {REG_SZ, std::move(text)};
}

RegistryValue RegistryNumber(DWORD number) {
    return {REG_DWORD, BytesOf(number)};
}

VersionResource ProductVersion(const std::string& version, WORD language, WORD codePage) {
    char path[64];
    static_cast<void>(std::snprintf(path, sizeof path, "\\StringFileInfo\\%04x%04x\\ProductVersion",
                                    static_cast<unsigned>(language),
                                    static_cast<unsigned>(codePage)));
    const DWORD translation = static_cast<DWORD>(codePage) << 16 | language;
    VersionResource resource;
    resource.values = {{"\\VarFileInfo\\Translation", BytesOf(translation)},
                       {path, version + '\0'}};
    return resource;
}

Machine::Machine() {
    currentUser = {{"", {}}, {"Software", {}}};
    localMachine = {
        {"", {KEY_READ}},
        {"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion",
         {KEY_READ,
          {{"ProductName", RegistryText("Windows 10 Enterprise")},
           {"EditionID", RegistryText("Enterprise")},
           {"DisplayVersion", RegistryText("21H2")},
           {"UBR", RegistryNumber(1288)}}}},
        {"HARDWARE\\DESCRIPTION\\System\\CentralProcessor\\0",
         {KEY_READ,
          {{"ProcessorNameString", RegistryText("Intel(R) Core(TM) i7-9700 CPU @ 3.00GHz")},
           {"Identifier", RegistryText("Intel64 Family 6 Model 158 Stepping 13")},
           {"VendorIdentifier", RegistryText("GenuineIntel")}}}},
    };

    memory.ullTotalPhys = 16384 * megabyte;
    memory.ullAvailPhys = 10240 * megabyte;
    memory.ullAvailPageFile = 12288 * megabyte;
    memory.ullTotalVirtual = 134217728 * megabyte - 128 * kilobyte;
    memory.ullAvailVirtual = 134213592 * megabyte;

    processMemory.cb = sizeof processMemory;
    processMemory.PageFaultCount = 12345;
    processMemory.PeakWorkingSetSize = 48 * megabyte;
    processMemory.WorkingSetSize = 40 * megabyte;
    processMemory.PagefileUsage = 32 * megabyte;
    processMemory.PeakPagefileUsage = 36 * megabyte;

    attributes = {
        {systemDirectory, FILE_ATTRIBUTE_DIRECTORY},
        {windowsDirectory, FILE_ATTRIBUTE_DIRECTORY},
        {tempDirectory, FILE_ATTRIBUTE_DIRECTORY},
        {executablePath, FILE_ATTRIBUTE_ARCHIVE},
        {currentDirectory, FILE_ATTRIBUTE_DIRECTORY},
        {"C:\\Tools\\Viewer", FILE_ATTRIBUTE_DIRECTORY},
    };

    processes = {
        {0, "[System Process]", {}, ERROR_ACCESS_DENIED},
        {4, "System", {}, ERROR_ACCESS_DENIED},
        {2104,
         "explorer.exe",
         {{"Explorer.EXE", "C:\\Windows\\Explorer.EXE"},
          {"ntdll.dll", "C:\\Windows\\SYSTEM32\\ntdll.dll"}}},
        {processId,
         "viewer.exe",
         {{"viewer.exe", executablePath},
          {"ntdll.dll", "C:\\Windows\\SYSTEM32\\ntdll.dll"},
          {"KERNEL32.DLL", "C:\\Windows\\System32\\KERNEL32.DLL"},
          {"USER32.dll", "C:\\Windows\\System32\\USER32.dll"},
          {"msvcrt.dll", "C:\\Windows\\System32\\msvcrt.dll"}}},
    };
    versionResources = {
        {"viewer.exe", ProductVersion("3.2.1.0")},
        {"Explorer.EXE", ProductVersion("10.0.19041.1288")},
        {"ntdll.dll", ProductVersion("10.0.19041.1288")},
        {"KERNEL32.DLL", ProductVersion("10.0.19041.1288")},
        {"USER32.dll", ProductVersion("10.0.19041.1202")},
        {"msvcrt.dll", ProductVersion("7.0.19041.546")},
    };

    monitors = {{{0, 0, 1920, 1080}, true}};
    systemMetrics = {{SM_CXVIRTUALSCREEN, 1920}, {SM_CYVIRTUALSCREEN, 1080}, {SM_SERVERR2, 0}};
    deviceCaps = {{LOGPIXELSX, 96}, {LOGPIXELSY, 96}};

    userNames = {{2, "WORKSTATION\\ann"}, {3, "Ann Example"}};

    locale = {{LOCALE_ILANGUAGE, "0409"},
              {LOCALE_SENGLANGUAGE, "English"},
              {LOCALE_SABBREVLANGNAME, "ENU"},
              {LOCALE_STHOUSAND | LOCALE_USE_CP_ACP, ","},
              {LOCALE_SGROUPING, "3;0"}};
    runtimeLocale = {{LC_COLLATE, "C"}, {LC_CTYPE, "C"}, {LC_MONETARY, "C"},
                     {LC_NUMERIC, "C"}, {LC_TIME, "C"},  {LC_ALL, "C"}};

    timeZone.Bias = -60;
    timeZone.DaylightBias = -60;

    environment = {{"SystemRoot", "C:\\Windows"}, {"USERNAME", "ann"}};

    messages = {
        {ERROR_FILE_NOT_FOUND, "The system cannot find the file specified.\r\n"},
        {ERROR_ACCESS_DENIED, "Access is denied.\r\n"},
        {ERROR_INVALID_HANDLE, "The handle is invalid.\r\n"},
        {ERROR_NOT_ENOUGH_MEMORY,
         "Not enough memory resources are available to process this command.\r\n"},
        {ERROR_NO_MORE_FILES, "There are no more files.\r\n"},
        {ERROR_BAD_LENGTH, "The program issued a command but the command length is incorrect.\r\n"},
        {ERROR_INVALID_PARAMETER, "The parameter is incorrect.\r\n"},
    };
}

int OpenHandles() {
    return OpenRegistryKeys() + OpenSnapshots() + OpenDeviceContexts();
}

Machine& CurrentMachine() {
    static Machine machine;
    return machine;
}

ScopedMachine::ScopedMachine(Machine machine)
    : m_previous(std::exchange(CurrentMachine(), std::move(machine))) {
    ResetCalls();
}

ScopedMachine::~ScopedMachine() {
    CurrentMachine() = std::move(m_previous);
    ResetCalls();
}

}  // namespace stand_in
