#include "machine/module_version.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "platform/windows_api.h"

namespace qb_support {

namespace {

struct FreeBlock {
    void operator()(void* block) const { std::free(block); }
};

// A file's version resource as it was read, in a block of the size that the platform asked for.
struct VersionBlock {
    std::unique_ptr<void, FreeBlock> bytes;
    DWORD size;
};

// The first language and code page under which the resource holds its texts.
struct Translation {
    WORD language;
    WORD codePage;
};

void AppendHexadecimal(Text& text, WORD number) {
    for (int shift = 12; shift >= 0; shift -= 4) {
        text << "0123456789abcdef"[(number >> shift) & 0xF];
    }
}

bool FindTranslation(const VersionBlock& block, Translation& translation) {
    void* value = nullptr;
    UINT size = 0;
    if (VerQueryValueA(block.bytes.get(), "\\VarFileInfo\\Translation", &value, &size) == 0 ||
        value == nullptr || size < sizeof(translation)) {
        return false;
    }
    std::memcpy(&translation, value, sizeof(translation));
    return true;
}

// The text of a value, which need not be terminated: it ends at its first NUL, after the length
// that the platform gives for it (0 tells nothing), or with the block at the latest. For a value
// that lies outside the block the distance wraps around and leaves the length to bound it.
std::string_view ValueText(const VersionBlock& block, const char* value, UINT length) {
    const char* const end = static_cast<const char*>(block.bytes.get()) + block.size;
    std::size_t limit =
        reinterpret_cast<std::uintptr_t>(end) - reinterpret_cast<std::uintptr_t>(value);
    if (length != 0) {
        limit = std::min<std::size_t>(limit, length);
    }
    const void* const terminator = std::memchr(value, '\0', limit);
    return {value, terminator != nullptr
                       ? static_cast<std::size_t>(static_cast<const char*>(terminator) - value)
                       : limit};
}

Text ProductVersion(const VersionBlock& block) {
    Translation translation{};
    if (!FindTranslation(block, translation)) {
        return Text();
    }
    Text path("\\StringFileInfo\\");
    AppendHexadecimal(path, translation.language);
    AppendHexadecimal(path, translation.codePage);
    path << "\\ProductVersion";

    // The call's result misleads: it is the value's address that tells whether there is one.
    void* value = nullptr;
    UINT length = 0;
    VerQueryValueA(block.bytes.get(), path.CStr(), &value, &length);
    if (value == nullptr) {
        return Text("Version info is not accessible!");
    }
    return Text(ValueText(block, static_cast<const char*>(value), length));
}

}  // namespace

Text GetModuleVersion(const char* name) {
    DWORD ignored = 0;
    const DWORD size = GetFileVersionInfoSizeA(name, &ignored);
    if (size == 0) {
        return Text("Modul or version info not found!");
    }
    const VersionBlock block{std::unique_ptr<void, FreeBlock>(std::malloc(size)), size};
    if (block.bytes == nullptr) {
        Text outOfMemory;
        outOfMemory.Fail();
        return outOfMemory;
    }
    std::memset(block.bytes.get(), 0, size);
    if (GetFileVersionInfoA(name, 0, size, block.bytes.get()) == 0) {
        return Text("No version info!");
    }
    return ProductVersion(block);
}

}  // namespace qb_support
