#include "platform/stand_in/registry.h"

#include <algorithm>
#include <string_view>

#include "platform/stand_in/calls.h"
#include "platform/stand_in/handles.h"
#include "platform/stand_in/machine.h"

using namespace stand_in;

namespace {

const RegistryKeys* KeysUnder(HKEY root) {
    if (root == HKEY_CURRENT_USER) {
        return &CurrentMachine().currentUser;
    }
    return root == HKEY_LOCAL_MACHINE ? &CurrentMachine().localMachine : nullptr;
}

}  // namespace

LSTATUS RegOpenKeyExA(HKEY root, LPCSTR path, DWORD options, REGSAM access, HKEY* result) {
    if (CallFails(PlatformCall::RegOpenKeyExA)) {
        return ERROR_NOT_ENOUGH_MEMORY;
    }
    if (options != 0 || !result) {
        return ERROR_INVALID_PARAMETER;
    }
    const RegistryKeys* keys = KeysUnder(root);
    if (!keys) {
        return ERROR_INVALID_HANDLE;
    }
    std::string_view name(path ? path : "");
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
    if (access == 0 || (access & ~key->second.access) != 0) {
        return ERROR_ACCESS_DENIED;
    }
    HandleState state;
    state.key = &key->second;
    state.access = access;
    void* const handle = OpenHandle(HandleKind::RegistryKey, state);
    if (!handle) {
        return ERROR_NO_SYSTEM_RESOURCES;
    }
    *result = static_cast<HKEY>(handle);
    return ERROR_SUCCESS;
}

LSTATUS RegQueryValueExA(HKEY key, LPCSTR name, LPDWORD reserved, LPDWORD type, LPBYTE data,
                         LPDWORD size) {
    if (CallFails(PlatformCall::RegQueryValueExA)) {
        FillWithGarbage(data, size ? *size : 0);
        return ERROR_NOT_ENOUGH_MEMORY;
    }
    if (reserved || (data && !size)) {
        return ERROR_INVALID_PARAMETER;
    }
    const auto state = StateOf(HandleKind::RegistryKey, key);
    if (!state) {
        return ERROR_INVALID_HANDLE;
    }
    if ((state->access & KEY_QUERY_VALUE) == 0) {
        return ERROR_ACCESS_DENIED;
    }
    const auto& values = state->key->values;
    const auto value = values.find(std::string_view(name ? name : ""));
    if (value == values.end()) {
        return ERROR_FILE_NOT_FOUND;
    }
    if (type) {
        *type = value->second.type;
    }
    if (!size) {
        return ERROR_SUCCESS;
    }
    const std::string& bytes = value->second.bytes;
    const DWORD offered = *size;
    *size = static_cast<DWORD>(bytes.size());
    if (!data) {
        return ERROR_SUCCESS;
    }
    if (offered < bytes.size()) {
        FillWithGarbage(data, offered);
        return ERROR_MORE_DATA;
    }
    // A text that was stored without its NUL is handed out without one.
    std::copy(bytes.begin(), bytes.end(), static_cast<char*>(static_cast<void*>(data)));
    return ERROR_SUCCESS;
}

LSTATUS RegCloseKey(HKEY key) {
    CountCall(PlatformCall::RegCloseKey);
    // Closing a predefined key succeeds and does nothing.
    if (KeysUnder(key)) {
        return ERROR_SUCCESS;
    }
    return ReleaseHandle(HandleKind::RegistryKey, key) ? ERROR_SUCCESS : ERROR_INVALID_HANDLE;
}
