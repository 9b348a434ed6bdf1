#include <algorithm>
#include <utility>

#include "stand_in/calls.h"
#include "stand_in/handles.h"
#include "stand_in/machine.h"

using namespace stand_in;

namespace {

struct OpenKey {
    const RegistryKey* key;
    REGSAM access;
};
Handles<OpenKey> openKeys;

const RegistryKeys* KeysUnder(HKEY root) {
    return root == HKEY_CURRENT_USER    ? &CurrentMachine().currentUser
           : root == HKEY_LOCAL_MACHINE ? &CurrentMachine().localMachine
                                        : nullptr;
}

}  // namespace

int stand_in::OpenRegistryKeys() {
    return openKeys.Count();
}

LSTATUS RegOpenKeyExA(HKEY root, LPCSTR path, DWORD options, REGSAM access, HKEY* result) {
    if (Fails(__func__)) {
        return ERROR_NOT_ENOUGH_MEMORY;
    }
    const RegistryKeys* const keys = KeysUnder(root);
    const bool isKnown =
        access == KEY_READ || access == (KEY_READ | KEY_WRITE) || access == KEY_ALL_ACCESS;
    if (options != 0 || !keys || !isKnown) {
        return ERROR_INVALID_PARAMETER;
    }
    std::string_view name(path);
    if (name.starts_with('\\')) {
        return ERROR_BAD_PATHNAME;
    }
    if (name.ends_with('\\')) {
        name.remove_suffix(1);
    }
    const auto key = keys->find(name);
    if (key == keys->end()) {
        return ERROR_FILE_NOT_FOUND;
    }
    if ((access & ~key->second.access) != 0) {
        return ERROR_ACCESS_DENIED;
    }
    *result = static_cast<HKEY>(openKeys.Open({&key->second, access}));
    return ERROR_SUCCESS;
}

LSTATUS RegQueryValueExA(HKEY key, LPCSTR name, LPDWORD reserved, LPDWORD type, LPBYTE data,
                         LPDWORD size) {
    if (Fails(__func__, data, *size)) {
        return ERROR_NOT_ENOUGH_MEMORY;
    }
    const OpenKey* const open = openKeys.Find(key);
    if (!open || reserved) {
        return ERROR_INVALID_HANDLE;
    }
    if ((open->access & KEY_QUERY_VALUE) == 0) {
        return ERROR_ACCESS_DENIED;
    }
    const auto value = open->key->values.find(std::string_view(name));
    if (value == open->key->values.end()) {
        return ERROR_FILE_NOT_FOUND;
    }
    const std::string& bytes = value->second.bytes;
    const DWORD offered = std::exchange(*size, static_cast<DWORD>(bytes.size()));
    *type = value->second.type;
    if (offered < bytes.size()) {
        FillWithGarbage(data, offered);
        return ERROR_MORE_DATA;
    }
    // A text that was stored without its NUL is also handed out without it.
    std::ranges::copy(bytes, data);
    return ERROR_SUCCESS;
}

LSTATUS RegCloseKey(HKEY key) {
    Count(__func__);
    return openKeys.Release(key) ? ERROR_SUCCESS : ERROR_INVALID_HANDLE;
}
