#include "library.h"

#include <gtest/gtest.h>
#include <windows.h>

Library::Library() {
    const HMODULE loaded = LoadLibraryA((ProgramDirectory() + "QBSUPPORT.dll").c_str());
    const auto find = [loaded](const char* name) {
        return reinterpret_cast<void*>(GetProcAddress(loaded, name));
    };
    module = loaded;
    getInfo = reinterpret_cast<decltype(getInfo)>(find("QbSupportGetInfo"));
    release = reinterpret_cast<decltype(release)>(find("QbSupportReleaseBuffer"));
}

Library::~Library() {
    FreeLibrary(static_cast<HMODULE>(module));
}

std::optional<std::string> Library::Report(int kind, unsigned int flags,
                                           const char* argument) const {
    char untouched = 0;
    char* buffer = &untouched;
    const int result = getInfo(kind, flags, &buffer, argument);
    EXPECT_TRUE(result == 0 || result == 1) << "kind " << kind << " returned " << result;
    EXPECT_EQ(result == 0, buffer == &untouched) << "out-pointer, kind " << kind;
    if (result == 0 || buffer == &untouched) {
        return std::nullopt;
    }
    std::string text(buffer);
    EXPECT_TRUE(release(buffer));
    return text;
}

const char* ArgumentFor(int kind) {
    switch (kind) {
        case QbSupportAppDirectory:
            return "C:\\windows\\system32";
        case QbSupportRegistry:
        case QbSupportUserAppKey:
        case QbSupportMachineAppKey:
            return "Software";
        case QbSupportEnvironment:
            return "PATH";
        case QbSupportModule:
            return "QBSUPPORT.dll";
        default:
            return nullptr;
    }
}

std::string ProgramDirectory() {
    char path[MAX_PATH] = {};
    GetModuleFileNameA(nullptr, path, MAX_PATH);
    const std::string program(path);
    return program.substr(0, program.rfind('\\') + 1);
}

std::string Output(const std::string& program, const std::string& arguments) {
    const std::string command = "\"\"" + ProgramDirectory() + program + "\" " + arguments + "\"";
    std::string output;
    if (FILE* const pipe = _popen(command.c_str(), "rb")) {
        for (int character = std::fgetc(pipe); character != EOF; character = std::fgetc(pipe)) {
            output += static_cast<char>(character);
        }
        EXPECT_EQ(_pclose(pipe), 0);
    }
    return output;
}
