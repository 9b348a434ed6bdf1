#ifndef QBSUPPORT_PLATFORM_STAND_IN_ERRORS_H
#define QBSUPPORT_PLATFORM_STAND_IN_ERRORS_H

#include "platform/stand_in/types.h"

// Signed, as the registry functions return them.
inline constexpr LONG ERROR_SUCCESS = 0;
inline constexpr LONG ERROR_FILE_NOT_FOUND = 2;
inline constexpr LONG ERROR_PATH_NOT_FOUND = 3;
inline constexpr LONG ERROR_ACCESS_DENIED = 5;
inline constexpr LONG ERROR_INVALID_HANDLE = 6;
inline constexpr LONG ERROR_NOT_ENOUGH_MEMORY = 8;
inline constexpr LONG ERROR_NO_MORE_FILES = 18;
inline constexpr LONG ERROR_BAD_LENGTH = 24;
inline constexpr LONG ERROR_INVALID_PARAMETER = 87;
inline constexpr LONG ERROR_INSUFFICIENT_BUFFER = 122;
inline constexpr LONG ERROR_MOD_NOT_FOUND = 126;
inline constexpr LONG ERROR_PROC_NOT_FOUND = 127;
inline constexpr LONG ERROR_BAD_PATHNAME = 161;
inline constexpr LONG ERROR_MORE_DATA = 234;
inline constexpr LONG ERROR_MR_MID_NOT_FOUND = 317;
inline constexpr LONG ERROR_INVALID_FLAGS = 1004;
inline constexpr LONG ERROR_OLD_WIN_VERSION = 1150;
inline constexpr LONG ERROR_NONE_MAPPED = 1332;
inline constexpr LONG ERROR_NO_SYSTEM_RESOURCES = 1450;
inline constexpr LONG ERROR_INVALID_MONITOR_HANDLE = 1461;
inline constexpr LONG ERROR_RESOURCE_TYPE_NOT_FOUND = 1813;
inline constexpr LONG ERROR_RESOURCE_LANG_NOT_FOUND = 1815;

#endif
