// The User Name section: the user's account name and display name.
#include "core/collector.h"
#include "platform/named_function.h"

namespace qb_support {

namespace {

// The form of a name, a value of the platform's EXTENDED_NAME_FORMAT.
enum NameForm { kSamCompatible = 2, kDisplay = 3 };

// Returns one byte: what stands in the rest of the register is undefined.
using GetUserNameFunction = BOOLEAN WINAPI(int, char*, ULONG*);

void AppendName(Text& result, GetUserNameFunction& getUserName, NameForm form) {
    char name[1024] = {};
    ULONG size = sizeof(name);
    if (getUserName(form, name, &size) != 0) {
        result << BufferText(name);
    } else {
        result << "ERROR";
    }
}

}  // namespace

bool CQbSupportWindows::GetUserNameInfo(Text& result) {
    CQbSupport::GetUserNameInfo(result);
    auto* const getUserName =
        FindFunction<GetUserNameFunction>(LoadLibraryA("Secur32.dll"), "GetUserNameExA");
    if (getUserName == nullptr) {
        return true;
    }
    result << m_indent << "User name:         [";
    AppendName(result, *getUserName, kSamCompatible);
    result << "]\n" << m_indent << "User display name: [";
    AppendName(result, *getUserName, kDisplay);
    result << "]\n";
    if (m_separator) {
        result << '\n';
    }
    return true;
}

}  // namespace qb_support
