// Texts. The programs' own are in UTF-8, the library's in the ANSI code page, Windows' in UTF-16.
#ifndef QBREPORT_TEXT_H
#define QBREPORT_TEXT_H

#include <string>

/// Bytes that the code page, such as CP_UTF8, does not know become replacement characters.
std::wstring Widen(unsigned int codePage, const std::string& text);

/// A character that the code page lacks becomes another one, such as a question mark.
std::string Narrow(unsigned int codePage, const std::wstring& text);

std::string AnsiOf(const std::string& utf8);
std::string Utf8Of(const std::string& ansi);

/// The text with each line end as CR LF, whichever it was.
std::string WithCrLf(const std::string& text);

/// What Windows says about an error code, as one line without a line end, in UTF-8.
std::string ErrorText(unsigned long error);

#endif
