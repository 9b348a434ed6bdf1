#include "machine/module_version.h"

#include <algorithm>
#include <cstring>

#include "core/growable_array.h"
#include "platform/windows_api.h"

namespace qb_support {

namespace {

// A file's version resource. It has `size` bytes, stored as words because the platform aligns its
// parts to them. The resources of most files fit in the object itself, which lies on the stack and
// is smaller than a page.
struct VersionBlock {
    CGrowableArray<DWORD, 768> words;
    DWORD size;
};

// The first language and code page for which the resource has texts.
struct Translation {
    WORD language;
    WORD codePage;
};

void AppendHexadecimal(CText& text, WORD number) {
    for (int shift = 12; shift >= 0; shift -= 4) {
        text << "0123456789abcdef"[(number >> shift) & 0xF];
    }
}

// The number of bytes from a value to the end of the block. For a value outside the block, which no
// known system returns, the number is so large that it limits nothing.
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

// The text of a value: up to its first NUL, or to the end of the block if there is none. The length
// that the platform gives is not used, because it counts characters, which have several bytes in
// some code pages.
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

    // The call's result is not reliable. Only the address says whether there is a value.
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
        // "Modul" is intended: support staff search reports for this exact text.
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
