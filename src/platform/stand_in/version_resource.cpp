#include "platform/stand_in/version_resource.h"

#include <cstring>
#include <string_view>

#include "platform/stand_in/calls.h"
#include "platform/stand_in/machine.h"

using namespace stand_in;

namespace {

// The block: this header, then for every value an entry, its path and its bytes. Each part starts
// at a multiple of four as in Windows' own blocks, and nothing follows the last value's bytes.
struct BlockHeader {
    DWORD signature;
    DWORD size;
};
constexpr DWORD blockSignature = 0x56455242;

struct ValueEntry {
    DWORD pathSize;
    DWORD size;
    DWORD claimedLength;
};

DWORD Aligned(DWORD offset) {
    return (offset + 3) & ~DWORD{3};
}

/// Without memory it only counts.
class BlockWriter {
public:
    explicit BlockWriter(char* memory) : m_memory(memory) {}

    void Write(const void* part, std::size_t size) {
        const DWORD start = Aligned(m_size);
        if (m_memory) {
            FillWithGarbage(m_memory + m_size, start - m_size);
            std::memcpy(m_memory + start, part, size);
        }
        m_size = start + static_cast<DWORD>(size);
    }

    [[nodiscard]] DWORD Size() const { return m_size; }

private:
    char* m_memory;
    DWORD m_size = 0;
};

DWORD WriteBlock(const VersionResource& resource, DWORD size, char* memory) {
    BlockWriter writer(memory);
    const BlockHeader header{blockSignature, size};
    writer.Write(&header, sizeof header);
    for (const VersionValue& value : resource.values) {
        const auto length = static_cast<DWORD>(value.bytes.size());
        const ValueEntry entry{static_cast<DWORD>(value.path.size()), length,
                               value.claimedLength.value_or(length)};
        writer.Write(&entry, sizeof entry);
        writer.Write(value.path.data(), value.path.size());
        writer.Write(value.bytes.data(), value.bytes.size());
    }
    return writer.Size();
}

DWORD BlockSize(const VersionResource& resource) {
    return WriteBlock(resource, 0, nullptr);
}

const VersionResource* FindResource(LPCSTR file) {
    const auto& resources = CurrentMachine().versionResources;
    const auto resource = resources.find(std::string_view(file ? file : ""));
    return resource != resources.end()
               ? &resource->second
               : Refuse<const VersionResource*>(ERROR_FILE_NOT_FOUND, nullptr);
}

}  // namespace

DWORD GetFileVersionInfoSizeA(LPCSTR file, LPDWORD handle) {
    if (CallFails(PlatformCall::GetFileVersionInfoSizeA)) {
        return 0;
    }
    if (handle) {
        *handle = 0;
    }
    const VersionResource* resource = FindResource(file);
    return resource ? BlockSize(*resource) : 0;
}

BOOL GetFileVersionInfoA(LPCSTR file, DWORD, DWORD size, LPVOID block) {
    if (CallFails(PlatformCall::GetFileVersionInfoA)) {
        FillWithGarbage(block, size);
        return FALSE;
    }
    if (!block) {
        return Refuse(ERROR_INVALID_PARAMETER, FALSE);
    }
    const VersionResource* resource = FindResource(file);
    if (!resource) {
        return FALSE;
    }
    if (!resource->readable) {
        FillWithGarbage(block, size);
        return Refuse(ERROR_RESOURCE_TYPE_NOT_FOUND, FALSE);
    }
    const DWORD needed = BlockSize(*resource);
    if (size < needed) {
        return Refuse(ERROR_INSUFFICIENT_BUFFER, FALSE);
    }
    WriteBlock(*resource, needed, static_cast<char*>(block));
    return TRUE;
}

BOOL VerQueryValueA(LPCVOID block, LPCSTR path, LPVOID* value, PUINT length) {
    if (CallFails(PlatformCall::VerQueryValueA) || !block || !path || !value || !length) {
        return FALSE;
    }
    const char* const start = static_cast<const char*>(block);
    BlockHeader header;
    std::memcpy(&header, start, sizeof header);
    if (header.signature != blockSignature) {
        return FALSE;
    }
    DWORD offset = sizeof header;
    while (offset < header.size) {
        const DWORD entryStart = Aligned(offset);
        ValueEntry entry;
        std::memcpy(&entry, start + entryStart, sizeof entry);
        const DWORD pathStart = entryStart + static_cast<DWORD>(sizeof entry);
        const DWORD valueStart = Aligned(pathStart + entry.pathSize);
        if (SameName(path, {start + pathStart, entry.pathSize})) {
            *value = const_cast<char*>(start + valueStart);
            *length = entry.claimedLength;
            return TRUE;
        }
        offset = valueStart + entry.size;
    }
    return FALSE;
}
