// The User Name section: the user's account name and display name.
#include "core/collector.h"
#include "platform/named_function.h"

namespace qb_support {

namespace {

void AppendName(CText& result, decltype(GetUserNameExA)& getUserName, EXTENDED_NAME_FORMAT form) {
    char name[1024] = {};
    ULONG size = sizeof(name);
    if (getUserName(form, name, &size) != 0) {
        result << BufferText(name);
    } else {
        result << "ERROR";
    }
}

}  // namespace

bool CQbSupportWindows::GetUserNameInfo(CText& result) {
    CQbSupport::GetUserNameInfo(result);
    auto* const getUserName =
        FindFunction<decltype(GetUserNameExA)>(LoadLibraryA("Secur32.dll"), "GetUserNameExA");
    if (getUserName == nullptr) {
        return true;
    }
    result << m_indent << "User name:         [";
    AppendName(result, *getUserName, NameSamCompatible);
    result << "]\n" << m_indent << "User display name: [";
    AppendName(result, *getUserName, NameDisplay);
    result << "]\n";
    if (m_separator) {
        result << '\n';
    }
    return true;
}

}  // namespace qb_support
