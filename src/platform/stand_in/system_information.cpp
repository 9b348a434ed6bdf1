#include "platform/stand_in/system_information.h"

#include <cstring>

#include "platform/stand_in/calls.h"
#include "platform/stand_in/machine.h"

using namespace stand_in;

void stand_in::FillSystemInfo(SYSTEM_INFO& info, WORD architecture) {
    const DWORD processors = CurrentMachine().processors;
    info.wProcessorArchitecture = architecture;
    info.wReserved = 0;
    info.dwPageSize = 4096;
    info.lpMinimumApplicationAddress = reinterpret_cast<LPVOID>(ULONG_PTR{0x10000});
    info.lpMaximumApplicationAddress = reinterpret_cast<LPVOID>(ULONG_PTR{0x7FFFFFFEFFFF});
    info.dwActiveProcessorMask = processors < 64 ? (DWORD_PTR{1} << processors) - 1 : ~DWORD_PTR{0};
    info.dwNumberOfProcessors = processors;
    info.dwProcessorType = 8664;
    info.dwAllocationGranularity = 65536;
    info.wProcessorLevel = 6;
    info.wProcessorRevision = 0x9E0D;
}

void GetSystemInfo(SYSTEM_INFO* info) {
    CountCall(PlatformCall::GetSystemInfo);
    FillSystemInfo(*info, CurrentMachine().architecture);
}

BOOL GlobalMemoryStatusEx(MEMORYSTATUSEX* status) {
    if (CallFails(PlatformCall::GlobalMemoryStatusEx)) {
        return FALSE;
    }
    if (!status || status->dwLength != sizeof *status) {
        return Refuse(ERROR_INVALID_PARAMETER, FALSE);
    }
    *status = CurrentMachine().memory;
    status->dwLength = sizeof *status;
    return TRUE;
}

HANDLE GetCurrentProcess() {
    CountCall(PlatformCall::GetCurrentProcess);
    // The pseudo handle of the own process has the value of the invalid handle.
    return INVALID_HANDLE_VALUE;
}

DWORD GetCurrentProcessId() {
    CountCall(PlatformCall::GetCurrentProcessId);
    return CurrentMachine().processId;
}

DWORD GetTimeZoneInformation(TIME_ZONE_INFORMATION* zone) {
    if (CallFails(PlatformCall::GetTimeZoneInformation)) {
        FillWithGarbage(zone, sizeof *zone);
        return TIME_ZONE_ID_INVALID;
    }
    if (!zone) {
        return Refuse(ERROR_INVALID_PARAMETER, TIME_ZONE_ID_INVALID);
    }
    *zone = CurrentMachine().timeZone;
    return CurrentMachine().timeZoneId;
}

DWORD FormatMessageA(DWORD flags, LPCVOID, DWORD message, DWORD language, LPSTR buffer, DWORD size,
                     void*) {
    if (CallFails(PlatformCall::FormatMessageA)) {
        FillWithGarbage(buffer, size);
        return 0;
    }
    // Without ignoring the inserts a message with one would read arguments that nobody passed.
    if (flags != (FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS) || !buffer) {
        return Refuse(ERROR_INVALID_PARAMETER, 0u);
    }
    if (language != MAKELANGID(LANG_NEUTRAL, SUBLANG_DEFAULT)) {
        return Refuse(ERROR_RESOURCE_LANG_NOT_FOUND, 0u);
    }
    const auto& messages = CurrentMachine().messages;
    const auto text = messages.find(message);
    if (text == messages.end()) {
        return Refuse(ERROR_MR_MID_NOT_FOUND, 0u);
    }
    const auto length = static_cast<DWORD>(text->second.size());
    if (size <= length) {
        FillWithGarbage(buffer, size);
        return Refuse(ERROR_INSUFFICIENT_BUFFER, 0u);
    }
    std::memcpy(buffer, text->second.c_str(), length + 1);
    return length;
}
