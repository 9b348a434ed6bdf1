// The Locale section: the run-time library's locale and Windows' own language settings.
#include <algorithm>

#include "core/collector.h"
#include "core/locale.h"

namespace qb_support {

namespace {

struct Category {
    int category;
    const char* label;
};

constexpr Category kCategories[] = {
    {LC_COLLATE, "APP [LC_COLLATE]:      ["},  {LC_CTYPE, "APP [LC_CTYPE]:        ["},
    {LC_MONETARY, "APP [LC_MONETARY]:     ["}, {LC_NUMERIC, "APP [LC_NUMERIC]:      ["},
    {LC_TIME, "APP [LC_TIME]:         ["},     {LC_ALL, "APP [LC_ALL]:          ["},
};

constexpr int kValueSize = 1024;

using ValueBuffer = char[kValueSize];

CText ValueText(const ValueBuffer& value, bool isWhole) {
    return isWhole ? CText(BufferText(value)) : CText();
}

CText SystemLanguageName() {
    ValueBuffer name = {};
    const DWORD length = VerLanguageNameA(GetSystemDefaultLangID(), name, kValueSize);
    return ValueText(name, length > 0 && length < kValueSize);
}

}  // namespace

CText QueryLocaleValue(LCTYPE lctype) {
    const int needed = GetLocaleInfoA(LOCALE_USER_DEFAULT, lctype, nullptr, 0);
    ValueBuffer value = {};
    const int offered = std::clamp(needed, 0, kValueSize);
    const int written = GetLocaleInfoA(LOCALE_USER_DEFAULT, lctype, value, offered);
    // If the offered size is 0, the platform writes nothing and returns the size once more.
    return ValueText(value, offered > 0 && offered == needed && written > 0);
}

bool CQbSupport::GetLocaleSectionInfo(CText& result) {
    AppendHeading(result, "Locale");
    for (const Category& category : kCategories) {
        const char* const setting = setlocale(category.category, nullptr);
        result << m_indent << category.label << (setting != nullptr ? setting : "Unknown")
               << "]\r\n";
    }
    result << "\r\n";
    return true;
}

bool CQbSupportWindows::GetLocaleSectionInfo(CText& result) {
    CQbSupport::GetLocaleSectionInfo(result);
    result << m_indent << "Windows language:      " << SystemLanguageName() << '\n'
           << m_indent << "User locale ID:        " << QueryLocaleValue(LOCALE_ILANGUAGE) << '\n'
           << m_indent << "User locale name:      " << QueryLocaleValue(LOCALE_SENGLANGUAGE) << '\n'
           << m_indent << "User locale abbr name: " << QueryLocaleValue(LOCALE_SABBREVLANGNAME)
           << '\n';
    if (m_separator) {
        result << '\n';
    }
    return true;
}

}  // namespace qb_support
