#include "library.h"

#include <gtest/gtest.h>
#include <windows.h>

namespace {

template <typename Type>
Type* At(void* module, DWORD offset) {
    return reinterpret_cast<Type*>(static_cast<char*>(module) + offset);
}

template <typename Function>
void Find(HMODULE module, const char* name, Function*& function) {
    function = reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(module, name)));
}

// Wine would start a debugger for minutes and then report success.
LONG WINAPI EndCrashedProgram(EXCEPTION_POINTERS* crash) {
    std::printf("crashed with %lx\n", crash->ExceptionRecord->ExceptionCode);
    std::fflush(stdout);
    TerminateProcess(GetCurrentProcess(), 3);
    return EXCEPTION_EXECUTE_HANDLER;
}

}  // namespace

Library::Library() {
    SetUnhandledExceptionFilter(EndCrashedProgram);
    const HMODULE loaded = LoadLibraryA((ProgramDirectory() + "QBSUPPORT.dll").c_str());
    if (loaded == nullptr) {
        std::printf("QBSUPPORT.dll does not load: error %lu\n", GetLastError());
        std::exit(1);
    }
    module = loaded;
    Find(loaded, "QbSupportGetInfo", getInfo);
    Find(loaded, "QbSupportReleaseBuffer", release);
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
        case 10:
            return "C:\\windows\\system32";
        case 11:
        case 12:
        case 13:
            return "Software";
        case 15:
            return "PATH";
        case 17:
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

void Import::ReplaceBy(void* function) const {
    DWORD protection = 0;
    VirtualProtect(slot, sizeof(*slot), PAGE_READWRITE, &protection);
    *slot = function;
    VirtualProtect(slot, sizeof(*slot), protection, &protection);
}

std::vector<Import> ImportsOf(void* module) {
    const auto* const headers =
        At<IMAGE_NT_HEADERS>(module, static_cast<DWORD>(At<IMAGE_DOS_HEADER>(module, 0)->e_lfanew));
    const DWORD table =
        headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress;
    std::vector<Import> imports;
    for (auto* library = At<IMAGE_IMPORT_DESCRIPTOR>(module, table); library->Name != 0;
         ++library) {
        const auto* name = At<IMAGE_THUNK_DATA>(module, library->OriginalFirstThunk);
        auto* slot = At<void*>(module, library->FirstThunk);
        for (; name->u1.AddressOfData != 0; ++name, ++slot) {
            const auto offset = static_cast<DWORD>(name->u1.AddressOfData);
            imports.push_back({At<IMAGE_IMPORT_BY_NAME>(module, offset)->Name, slot});
        }
    }
    return imports;
}
