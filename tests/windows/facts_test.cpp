// Compares the sections with what the system says in another way. Arguments: the library, and
// optionally a kind, in which case the program only prints that section.
#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include <psapi.h>

#include <algorithm>
#include <clocale>
#include <cstdio>
#include <cstdlib>

#include "library.h"

namespace {

const char* libraryPath;
std::string program;  // this program's path

std::string Section(int kind, const char* argument = nullptr) {
    static const Library library(libraryPath);
    return library.Report(kind, 0, argument);
}

std::string ForwardSlashes(std::string path) {
    std::ranges::replace(path, '\\', '/');
    return path;
}

auto Lines(const std::string& text) {
    return std::ranges::count(text, '\n');
}

// Runs copies of this program under other names, for which Wine pretends to be other versions.
void SeveralVersionsOfWindows() {
    if (GetProcAddress(GetModuleHandleA("ntdll.dll"), "wine_get_version") == nullptr) {
        std::printf("SKIPPED: only Wine can pretend to be another version of Windows\n");
        return;
    }
    const struct {
        const char* host;
        std::string version, name, number;
        bool hasServicePack;
    } cases[] = {
        {"", "winxp64", "XP Professional x64 Edition, 64-bit\n", "5.2 Build 3790\n", true},
        {"", "win2008", "Server 2008, 64-bit\n", "6.0 Build 6002\n", true},
        {"", "win7", "", "6.1 Build 7601\n", true},  // Wine takes it for a server
        {"", "win81", "8.1, 64-bit\n", "6.3 Build 9600\n", false},
        {"", "win10", "10, 64-bit\n", "10.0 Build 1", false},
        // Without a manifest, a host is not told of any version after Windows 8.
        {"_without_manifest", "vista", "Vista, 64-bit\n", "6.0 Build 6002\n", true},
        {"_without_manifest", "win10", "8, 64-bit\n", "6.2 Build 9200\n", false},
    };
    for (const auto& [host, version, name, number, hasServicePack] : cases) {
        const std::string base = program.substr(0, program.rfind(".exe")) + host;
        const std::string copy = base + "_" + version + ".exe";
        const std::string key =
            "Software\\Wine\\AppDefaults\\" + copy.substr(copy.find_last_of('\\') + 1);
        CopyFileA((base + ".exe").c_str(), copy.c_str(), FALSE);
        RegSetKeyValueA(HKEY_CURRENT_USER, key.c_str(), "Version", REG_SZ, version.c_str(),
                        static_cast<DWORD>(version.size() + 1));
        FILE* const pipe = _popen(("\"\"" + copy + "\" \"" + libraryPath + "\" 3\"").c_str(), "rb");
        char output[1000] = {};
        std::fread(output, 1, sizeof(output) - 1, pipe);
        Check(_pclose(pipe) == 0, copy);
        RegDeleteKeyA(HKEY_CURRENT_USER, key.c_str());
        DeleteFileA(copy.c_str());
        const std::string text = output;
        Check(text.starts_with("Microsoft Windows " + name), text);
        CheckHas(text, "\n" + number);
        CheckEqual(text.find("\nService Pack") != std::string::npos, hasServicePack);
    }
}

void UserHardwareMemoryAndDisplay() {
    CheckHas(Section(QbSupportUserName), "\\" + std::string(std::getenv("USERNAME")) + "]\n");
    CheckHas(Section(QbSupportHardware),
             "\nNumber of CPUs:    " + std::string(std::getenv("NUMBER_OF_PROCESSORS")) + "\n");
    std::string memory = Section(QbSupportMemory);
    memory.resize(memory.find(" KB\r\n"));
    Check(memory.starts_with("Physical:         "), memory);
    std::erase_if(memory, [](char letter) { return letter < '0' || letter > '9'; });
    MEMORYSTATUSEX status{};
    status.dwLength = sizeof(status);
    GlobalMemoryStatusEx(&status);
    CheckEqual(memory, std::to_string(status.ullTotalPhys / 1024));
    CheckEqual(Lines(Section(QbSupportDisplay)), 7 + GetSystemMetrics(SM_CMONITORS));
}

void DirectoriesAndEnvironment() {
    const std::string windows = ForwardSlashes(std::getenv("windir"));
    const std::string directories = Section(QbSupportSystemDirectories);
    Check(directories.starts_with("System:      [" + windows +
                                  "/system32] (DIR:RW)\nWindows:     [" + windows + "] (DIR:RW)\n"),
          directories);
    CheckHas(directories, "\nExe:         [" + ForwardSlashes(program) + "] (");
    CheckEqual(Lines(directories), 6);
    CheckEqual(Section(QbSupportAppDirectory, "C:\\no\\such"), "App:         [C:/no/such] (N/A)\n");
    // The library sees what a host on the same run-time library sets in it.
    std::setlocale(LC_NUMERIC, "German_Germany");
    CheckHas(Section(QbSupportLocale), "[LC_NUMERIC]:      [German_Germany");
    _putenv("QB_ROOT_PATH=C:\\some where");
    const std::string value = "] = [C:\\some where]\n";
    CheckHas(Section(QbSupportApplication),
             "Application: [" + ForwardSlashes(program) + "]\nEnvironment: [QB_ROOT_PATH" + value);
    CheckEqual(Section(QbSupportEnvironment, "Qb_Root_Path"), "Environment: [Qb_Root_Path" + value);
}

void RegistryKeys() {
    HKEY key = nullptr;
    RegCreateKeyA(HKEY_CURRENT_USER, "Software\\QbSupportTest", &key);
    RegCloseKey(key);
    const std::string line = "[HKEY_CURRENT_USER\\Software\\QbSupportTest] ";
    CheckEqual(Section(QbSupportRegistry, "Software\\QbSupportTest"),
               "User root:    " + line + "(RWA)\n");
    RegDeleteKeyA(HKEY_CURRENT_USER, "Software\\QbSupportTest");
    CheckEqual(Section(QbSupportUserAppKey, "Software\\QbSupportTest"),
               "App:          " + line + "(N/A)\n");
}

void Modules() {
    const std::string own = Section(QbSupportModules);
    HMODULE modules[200] = {};
    DWORD size = 0;
    EnumProcessModules(GetCurrentProcess(), modules, sizeof(modules), &size);
    CheckEqual(Lines(own), size / sizeof(modules[0]) + 1);
    for (HMODULE* module = modules; *module != nullptr; ++module) {
        char path[MAX_PATH] = {};
        GetModuleFileNameA(*module, path, MAX_PATH);
        CheckHas(own, ForwardSlashes(path) + "  [");
    }
    CheckEqual(Section(QbSupportModules, &program[program.find_last_of('\\') + 1]), own);
    // By its path, because Windows may not find the file by its name.
    char path[MAX_PATH] = {};
    GetModuleFileNameA(GetModuleHandleA("QBSUPPORT.dll"), path, MAX_PATH);
    CheckEqual(Section(QbSupportModule, path), std::string(path) + "  [" PROJECT_VERSION "]\r\n");
}

}  // namespace

int main(int count, char** arguments) {
    libraryPath = arguments[1];
    program.resize(MAX_PATH);
    program.resize(GetModuleFileNameA(nullptr, program.data(), MAX_PATH));
    if (count > 2) {
        _setmode(_fileno(stdout), _O_BINARY);
        std::fputs(Section(std::atoi(arguments[2])).c_str(), stdout);
        return 0;
    }
    SeveralVersionsOfWindows();
    UserHardwareMemoryAndDisplay();
    DirectoriesAndEnvironment();
    RegistryKeys();
    Modules();
    return failedChecks == 0 ? 0 : 1;
}
