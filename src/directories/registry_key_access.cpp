#include "directories/registry_key_access.h"

#include "platform/registry_key.h"

namespace qb_support {

namespace {

struct AccessTest {
    REGSAM access;
    const char* annotation;
};

constexpr AccessTest kAccessTests[] = {
    {KEY_READ, "(RO)"},
    {KEY_READ | KEY_WRITE, "(RW)"},
    {KEY_ALL_ACCESS, "(RWA)"},
};

}  // namespace

Text RegistryKeyAccessText(HKEY root, const Text& path) {
    const char* text = "(N/A)";
    for (const AccessTest& test : kAccessTests) {
        if (RegistryKey(root, path.CStr(), test.access).IsOpen()) {
            text = test.annotation;
        }
    }
    return Text(text);
}

}  // namespace qb_support
