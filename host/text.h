// Texts: UTF-8 in the programs, the ANSI code page in the library, and UTF-16 in Windows.
#ifndef QBREPORT_TEXT_H
#define QBREPORT_TEXT_H

#include <string>

/// Bytes that the code page, such as CP_UTF8, does not know become replacement characters.
std::wstring Widen(unsigned int codePage, const std::string& text);

/// A character that the code page lacks becomes another one, such as a question mark.
std::string Narrow(unsigned int codePage, const std::wstring& text);

std::string AnsiOf(const std::string& utf8);
std::string Utf8Of(const std::string& ansi);

/// The text with each line end changed to CR LF.
std::string WithCrLf(const std::string& text);

/// Windows' message for an error code, in UTF-8, as one line without a line end.
std::string ErrorText(unsigned long error);

#endif
