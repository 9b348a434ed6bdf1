#include "machine/process_id.h"

#include "core/text.h"
#include "platform/snapshot.h"

namespace qb_support {

DWORD FindProcessId(std::string_view name) {
    const Snapshot snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
    if (!snapshot.IsValid()) {
        return 0;
    }
    PROCESSENTRY32 entry{};
    entry.dwSize = sizeof(entry);
    for (BOOL more = Process32First(snapshot.Handle(), &entry); more != 0;
         more = Process32Next(snapshot.Handle(), &entry)) {
        if (BufferText(entry.szExeFile) == name) {
            return entry.th32ProcessID;
        }
    }
    return 0;
}

}  // namespace qb_support
