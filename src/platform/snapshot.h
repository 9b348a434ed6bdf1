// A snapshot of the running processes or of one process's modules.
#ifndef QBSUPPORT_PLATFORM_SNAPSHOT_H
#define QBSUPPORT_PLATFORM_SNAPSHOT_H

#include "platform/windows_api.h"

namespace qb_support {

// Owns a snapshot's handle, INVALID_HANDLE_VALUE when it could not be had.
class Snapshot {
public:
    explicit Snapshot(HANDLE handle) : m_handle(handle) {}
    Snapshot(const Snapshot&) = delete;
    Snapshot& operator=(const Snapshot&) = delete;
    ~Snapshot() {
        if (IsValid()) {
            CloseHandle(m_handle);
        }
    }

    [[nodiscard]] bool IsValid() const { return m_handle != INVALID_HANDLE_VALUE; }
    [[nodiscard]] HANDLE Handle() const { return m_handle; }

private:
    HANDLE m_handle;
};

}  // namespace qb_support

#endif
