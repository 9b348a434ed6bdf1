#include <algorithm>
#include <cstring>

#include "platform/stand_in/calls.h"
#include "platform/stand_in/machine.h"

using namespace stand_in;

LANGID GetSystemDefaultLangID() {
    CountCall(PlatformCall::GetSystemDefaultLangID);
    return CurrentMachine().language;
}

DWORD VerLanguageNameA(DWORD language, LPSTR buffer, DWORD size) {
    if (CallFails(PlatformCall::VerLanguageNameA) || !buffer || size == 0) {
        FillWithGarbage(buffer, size);
        return 0;
    }
    static const std::string unknownLanguage = "Language Neutral";
    const std::string& name =
        language == CurrentMachine().language ? CurrentMachine().languageName : unknownLanguage;
    const std::size_t copied = std::min<std::size_t>(name.size(), size - 1);
    std::memcpy(buffer, name.data(), copied);
    buffer[copied] = '\0';
    return static_cast<DWORD>(name.size());
}

int GetLocaleInfoA(LCID locale, LCTYPE type, LPSTR buffer, int size) {
    if (CallFails(PlatformCall::GetLocaleInfoA)) {
        FillWithGarbage(buffer, static_cast<std::size_t>(std::max(size, 0)));
        return 0;
    }
    if (locale != LOCALE_USER_DEFAULT || size < 0 || (size > 0 && !buffer)) {
        return Refuse(ERROR_INVALID_PARAMETER, 0);
    }
    const auto& values = CurrentMachine().locale;
    const auto value = values.find(type);
    if (value == values.end()) {
        return Refuse(ERROR_INVALID_FLAGS, 0);
    }
    const int needed = static_cast<int>(value->second.size()) + 1;
    if (size == 0) {
        return needed;
    }
    if (size < needed) {
        FillWithGarbage(buffer, static_cast<std::size_t>(size));
        return Refuse(ERROR_INSUFFICIENT_BUFFER, 0);
    }
    std::memcpy(buffer, value->second.c_str(), static_cast<std::size_t>(needed));
    return needed;
}
