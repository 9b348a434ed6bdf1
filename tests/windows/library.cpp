#include "library.h"

#include <gtest/gtest.h>
#include <windows.h>

namespace {

template <typename Type>
Type* At(void* module, DWORD offset) {
    return reinterpret_cast<Type*>(static_cast<char*>(module) + offset);
}

}  // namespace

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

void Library::ForEachImport(const std::function<void(const char*, void*&)>& visit) const {
    const auto* const headers =
        At<IMAGE_NT_HEADERS>(module, static_cast<DWORD>(At<IMAGE_DOS_HEADER>(module, 0)->e_lfanew));
    const DWORD table =
        headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress;
    for (auto* library = At<IMAGE_IMPORT_DESCRIPTOR>(module, table); library->Name != 0;
         ++library) {
        const auto* name = At<IMAGE_THUNK_DATA>(module, library->OriginalFirstThunk);
        auto* slot = At<void*>(module, library->FirstThunk);
        for (; name->u1.AddressOfData != 0; ++name, ++slot) {
            const auto offset = static_cast<DWORD>(name->u1.AddressOfData);
            DWORD protection = 0;
            VirtualProtect(slot, sizeof(*slot), PAGE_READWRITE, &protection);
            visit(At<IMAGE_IMPORT_BY_NAME>(module, offset)->Name, *slot);
            VirtualProtect(slot, sizeof(*slot), protection, &protection);
        }
    }
}
