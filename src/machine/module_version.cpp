#include "machine/module_version.h"

#include <algorithm>
#include <cstring>

#include "core/growable_array.h"
#include "platform/windows_api.h"

namespace qb_support {

namespace {

// A file's version resource as it was read: the bytes that the platform asked for, aligned as it
// lays them out. Those of most files fit on the stack, in less than a page of it.
struct VersionBlock {
    CGrowableArray<DWORD, 768> words;
    DWORD size;
};

// The first language and code page under which the resource holds its texts.
struct Translation {
    WORD language;
    WORD codePage;
};

void AppendHexadecimal(CText& text, WORD number) {
    for (int shift = 12; shift >= 0; shift -= 4) {
        text << "0123456789abcdef"[(number >> shift) & 0xF];
    }
}

// How far it is from a value to the block's end. For a value that lies outside the block, which no
// system is known to hand out, the distance is too large and bounds nothing.
std::size_t RoomAt(const VersionBlock& block, const void* value) {
    const auto end = reinterpret_cast<std::uintptr_t>(block.words.Data()) + block.size;
    return end - reinterpret_cast<std::uintptr_t>(value);
}

bool FindTranslation(const VersionBlock& block, Translation& translation) {
    void* value = nullptr;
    UINT size = 0;
    if (VerQueryValueA(block.words.Data(), "\\VarFileInfo\\Translation", &value, &size) == 0 ||
        value == nullptr ||
        std::min<std::size_t>(size, RoomAt(block, value)) < sizeof(translation)) {
        return false;
    }
    std::memcpy(&translation, value, sizeof(translation));
    return true;
}

// The text of a value: up to its first NUL, or to the end of the block when it has none. The length
// that the platform claims is no bound: it counts characters, of which some code pages have several
// bytes in one.
std::string_view ValueText(const VersionBlock& block, const char* value) {
    const std::size_t room = RoomAt(block, value);
    const void* const terminator = std::memchr(value, '\0', room);
    return {value, terminator != nullptr
                       ? static_cast<std::size_t>(static_cast<const char*>(terminator) - value)
                       : room};
}

CText ProductVersion(const VersionBlock& block) {
    Translation translation{};
    if (!FindTranslation(block, translation)) {
        return CText();
    }
    CText path("\\StringFileInfo\\");
    AppendHexadecimal(path, translation.language);
    AppendHexadecimal(path, translation.codePage);
    path << "\\ProductVersion";

    // The call's result misleads: it is the value's address that tells whether there is one.
    void* value = nullptr;
    UINT ignored = 0;
    VerQueryValueA(block.words.Data(), path.CStr(), &value, &ignored);
    if (value == nullptr) {
        return CText("Version info is not accessible!");
    }
    return CText(ValueText(block, static_cast<const char*>(value)));
}

}  // namespace

CText GetModuleVersion(const char* name) {
    DWORD ignored = 0;
    const DWORD size = GetFileVersionInfoSizeA(name, &ignored);
    if (size == 0) {
        return CText("Modul or version info not found!");
    }
    VersionBlock block{{}, size};
    const std::size_t wordCount = (std::size_t{size} + sizeof(DWORD) - 1) / sizeof(DWORD);
    DWORD* const words = block.words.Extend(wordCount);
    if (words == nullptr) {
        CText outOfMemory;
        outOfMemory.Fail();
        return outOfMemory;
    }
    std::memset(words, 0, wordCount * sizeof(DWORD));
    if (GetFileVersionInfoA(name, 0, size, words) == 0) {
        return CText("No version info!");
    }
    return ProductVersion(block);
}

}  // namespace qb_support
