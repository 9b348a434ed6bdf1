// Windows' own texts and ours.
#ifndef QBREPORT_WIDE_H
#define QBREPORT_WIDE_H

#include <string>

/// Bytes that the code page does not know become replacement characters.
std::wstring Widen(unsigned int codePage, const std::string& text);
std::string Narrow(unsigned int codePage, const std::wstring& text);

#endif
