// The sections on the real system, against what that system tells in another way. Arguments: the
// library; with a kind after it, the program only writes that section.
#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include <psapi.h>

#include <algorithm>
#include <clocale>
#include <cmath>
#include <fstream>
#include <sstream>
#include <vector>

#include "library.h"

namespace {

const char* libraryPath = nullptr;

std::string Section(int kind, const char* argument = nullptr) {
    static const Library library(libraryPath);
    return library.Report(kind, 0, argument);
}

std::string ForwardSlashes(std::string path) {
    std::ranges::replace(path, '\\', '/');
    return path;
}

std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

std::string ProgramPath() {
    char path[MAX_PATH] = {};
    GetModuleFileNameA(nullptr, path, MAX_PATH);
    return path;
}

// The Operating System section as another program shows it.
std::string OperatingSystemIn(const std::string& program) {
    const std::string command = "\"\"" + program + "\" \"" + libraryPath + "\" 3\"";
    FILE* const pipe = _popen(command.c_str(), "rb");
    char output[1000] = {};
    std::fread(output, 1, sizeof(output) - 1, pipe);
    Check(_pclose(pipe) == 0, command);
    return output;
}

// A copy of this program under a name of its own, to which Wine shows a chosen Windows version.
void CheckVersion(bool manifest, const std::string& version, const std::string& name,
                  const std::string& number) {
    std::string host = ProgramPath();
    host.resize(host.rfind(".exe"));
    host += manifest ? "" : "_without_manifest";
    const std::string copy = host + "_" + version + ".exe";
    const std::string key =
        "Software\\Wine\\AppDefaults\\" + copy.substr(copy.find_last_of('\\') + 1);
    CopyFileA((host + ".exe").c_str(), copy.c_str(), FALSE);
    RegSetKeyValueA(HKEY_CURRENT_USER, key.c_str(), "Version", REG_SZ, version.c_str(),
                    static_cast<DWORD>(version.size() + 1));
    const std::string text = OperatingSystemIn(copy);
    RegDeleteKeyA(HKEY_CURRENT_USER, key.c_str());
    DeleteFileA(copy.c_str());

    const std::string line = Lines(text + '\n').at(0);
    Check(line.starts_with("Microsoft Windows " + name) && line.ends_with(name + ", 64-bit") &&
              text.find("\n" + number) != std::string::npos,
          version + ":\n" + text);
    Check(
        (text.find("\nService Pack") != std::string::npos) == (number < "6.2" && number[0] != '1'),
        "service pack of " + version + ":\n" + text);
}

void SeveralVersionsOfWindows() {
    if (GetProcAddress(GetModuleHandleA("ntdll.dll"), "wine_get_version") == nullptr) {
        std::printf("SKIPPED: only Wine can pretend to be another version of Windows\n");
        return;
    }
    CheckVersion(true, "winxp64", "XP Professional x64 Edition", "5.2 Build 3790\n");
    CheckVersion(true, "win2008", "Server 2008", "6.0 Build 6002\n");
    CheckVersion(true, "win7", "", "6.1 Build 7601\n");  // Wine confuses its name
    CheckVersion(true, "win81", "8.1", "6.3 Build 9600\n");
    CheckVersion(true, "win10", "10", "10.0 Build 1");
    // A host that does not name the systems it knows is told of none after Windows 8.
    CheckVersion(false, "vista", "Vista", "6.0 Build 6002\n");
    CheckVersion(false, "win10", "8", "6.2 Build 9200\n");
}

void UserHardwareMemoryAndDisplay() {
    const std::string user = Section(QbSupportUserName);
    Check(user.find("\\" + std::string(std::getenv("USERNAME")) + "]\n") != std::string::npos,
          user);
    CheckEqual(Lines(Section(QbSupportHardware)).at(3),
               "Number of CPUs:    " + std::string(std::getenv("NUMBER_OF_PROCESSORS")));
    std::string memory = Lines(Section(QbSupportMemory)).at(0);
    Check(memory.starts_with("Physical:         ") && memory.ends_with(" KB\r"), memory);
    std::erase_if(memory, [](char letter) { return letter < '0' || letter > '9'; });
    std::ifstream file("Z:\\proc\\meminfo");  // what Linux tells about the machine below Wine
    double installed = 0;
    if (std::string label; file >> label >> installed) {
        Check(std::abs(std::atof(memory.c_str()) - installed) <= 64, memory);
    }
    CheckEqual(Lines(Section(QbSupportDisplay)).size(), 7 + GetSystemMetrics(SM_CMONITORS));
}

void DirectoriesAndEnvironment() {
    const std::string windows = ForwardSlashes(std::getenv("windir"));
    const std::string program = ForwardSlashes(ProgramPath());
    const std::string directories = Section(QbSupportSystemDirectories);
    CheckEqual(Lines(directories).at(0), "System:      [" + windows + "/system32] (DIR:RW)");
    CheckEqual(Lines(directories).at(1), "Windows:     [" + windows + "] (DIR:RW)");
    Check(Lines(directories).at(3).starts_with("Exe:         [" + program + "] ("), directories);
    CheckEqual(Lines(directories).size(), 6);
    CheckEqual(Section(QbSupportAppDirectory, "C:\\no\\such"), "App:         [C:/no/such] (N/A)\n");
    // What a host tells its run-time library, the library's own tells as well.
    std::setlocale(LC_NUMERIC, "German_Germany");
    const std::string locale = Section(QbSupportLocale);
    Check(locale.find("[LC_NUMERIC]:      [German_Germany") != std::string::npos, locale);
    _putenv("QB_ROOT_PATH=C:\\some where");
    const std::string value = "] = [C:\\some where]\n";
    const std::string application = Section(QbSupportApplication);
    Check(application.starts_with("Application: [" + program + "]\nEnvironment: [QB_ROOT_PATH" +
                                  value),
          application);
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
    const std::size_t count = size / sizeof(modules[0]);
    for (std::size_t i = 0; i < count; ++i) {
        char path[MAX_PATH] = {};
        GetModuleFileNameA(modules[i], path, MAX_PATH);
        Check(own.find(ForwardSlashes(path) + "  [") != std::string::npos, path);
    }
    CheckEqual(Lines(own).size(), count + 1);
    const std::string program = ProgramPath();
    CheckEqual(Section(QbSupportModules, &program[program.find_last_of('\\') + 1]), own);
    CheckEqual(Section(QbSupportModule, "QBSUPPORT.dll"),
               "QBSUPPORT.dll  [" PROJECT_VERSION "]\r\n");
}

}  // namespace

int main(int count, char** arguments) {
    libraryPath = arguments[1];
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
