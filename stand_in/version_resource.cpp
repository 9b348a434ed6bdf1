#include <cstring>

#include "stand_in/calls.h"
#include "stand_in/machine.h"

using namespace stand_in;

namespace {

// A block has an entry, a path and bytes for each value. Each of these parts starts at a multiple
// of four, as in Windows' own blocks. Nothing follows the bytes of the last value.
struct Entry {
    DWORD pathSize;
    DWORD size;
    DWORD claimedLength;
    DWORD isLast;
};

std::string Block(const VersionResource& resource) {
    std::string block;
    const auto write = [&block](const void* part, std::size_t size) {
        block.resize((block.size() + 3) / 4 * 4, '\xCC');
        block.append(static_cast<const char*>(part), size);
    };
    for (const VersionValue& value : resource.values) {
        const auto length = static_cast<DWORD>(value.bytes.size());
        const Entry entry{static_cast<DWORD>(value.path.size()), length,
                          value.claimedLength.value_or(length), &value == &resource.values.back()};
        write(&entry, sizeof entry);
        write(value.path.data(), value.path.size());
        write(value.bytes.data(), value.bytes.size());
    }
    // A resource without values exists nevertheless.
    return block.empty() ? std::string(sizeof(Entry), '\0') : block;
}

const VersionResource* FindResource(LPCSTR file) {
    const auto& resources = CurrentMachine().versionResources;
    const auto resource = resources.find(std::string_view(file));
    return resource != resources.end() ? &resource->second : nullptr;
}

}  // namespace

DWORD GetFileVersionInfoSizeA(LPCSTR file, LPDWORD handle) {
    if (Fails(__func__)) {
        return 0;
    }
    *handle = 0;
    const VersionResource* const resource = FindResource(file);
    return resource ? static_cast<DWORD>(Block(*resource).size()) : 0;
}

BOOL GetFileVersionInfoA(LPCSTR file, DWORD, DWORD size, LPVOID memory) {
    if (Fails(__func__, memory, size)) {
        return FALSE;
    }
    const VersionResource* const resource = FindResource(file);
    const std::string block = resource ? Block(*resource) : "";
    if (!resource || !resource->readable || size < block.size()) {
        FillWithGarbage(memory, size);
        return FALSE;
    }
    std::memcpy(memory, block.data(), block.size());
    return TRUE;
}

BOOL VerQueryValueA(LPCVOID block, LPCSTR path, LPVOID* value, PUINT length) {
    if (Fails(__func__)) {
        return FALSE;
    }
    const char* place = static_cast<const char*>(block);
    for (;;) {
        Entry entry;
        std::memcpy(&entry, place, sizeof entry);
        const char* const entryPath = place + sizeof entry;
        const char* const bytes = entryPath + (std::size_t{entry.pathSize} + 3) / 4 * 4;
        if (SameName(path, {entryPath, entry.pathSize})) {
            *value = const_cast<char*>(bytes);
            *length = entry.claimedLength;
            return TRUE;
        }
        if (entry.isLast || entry.pathSize == 0) {
            return FALSE;
        }
        place = bytes + (std::size_t{entry.size} + 3) / 4 * 4;
    }
}
