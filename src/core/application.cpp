// The Application section, and the line of a single environment variable.
#include "core/collector.h"
#include "directories/paths.h"
#include "platform/environment.h"

namespace qb_support {

namespace {

constexpr const char* kVariables[] = {"QB_ROOT_PATH", "PRODUCT", "PACKET", "HOME", "TMPDIR"};

}  // namespace

bool CQbSupportWindows::GetApplicationInfo(CText& result, CText& argument) {
    CQbSupport::GetApplicationInfo(result, argument);
    const CText path = GetExecutablePath();
    result << m_indent << "Application: ";
    if (path.Empty()) {
        result << "Can not get application binary location!\n";
    } else {
        result << '[' << path << "]\n";
    }
    for (const char* const variable : kVariables) {
        CText name(variable);
        GetEnvironmentInfo(result, name);
    }
    return true;
}

bool CQbSupportWindows::GetEnvironmentInfo(CText& result, CText& argument) {
    const char* const name = argument.CStr();
    const char* const value = FindVariable(name);
    result << m_indent << "Environment: [" << name << "] = ";
    if (value != nullptr) {
        result << '[' << value << "]\n";
    } else {
        result << "Not set!\n";
    }
    return true;
}

}  // namespace qb_support
