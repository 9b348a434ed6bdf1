#include "core/text.h"

#include <charconv>
#include <cstring>

namespace qb_support {

namespace {

// The decimal digits of a number, with its sign.
class CDigits {
public:
    explicit CDigits(std::uint64_t number)
        : m_end(std::to_chars(m_characters, m_characters + sizeof(m_characters), number).ptr) {}
    explicit CDigits(std::int64_t number)
        : m_end(std::to_chars(m_characters, m_characters + sizeof(m_characters), number).ptr) {}

    [[nodiscard]] std::string_view View() const {
        return {m_characters, static_cast<std::size_t>(m_end - m_characters)};
    }

private:
    char m_characters[20];  // the longest: -9223372036854775808 and 18446744073709551615
    const char* m_end;
};

}  // namespace

CText& CText::operator<<(std::string_view text) {
    char* const room = m_characters.Extend(text.size());
    if (room != nullptr && !text.empty()) {
        std::memcpy(room, text.data(), text.size());
    }
    return *this;
}

CText& CText::operator<<(const char* text) {
    return *this << std::string_view(text);
}

CText& CText::operator<<(const CText& text) {
    if (text.Failed()) {
        Fail();
    }
    return *this << text.View();
}

CText& CText::operator<<(char character) {
    m_characters.Append(character);
    return *this;
}

CText& CText::operator<<(Padded padded) {
    const CDigits digits(std::int64_t{padded.number});
    if (digits.View().size() < padded.width) {
        Fill(' ', padded.width - digits.View().size());
    }
    return *this << digits.View();
}

void CText::Fill(char character, std::size_t count) {
    char* const room = m_characters.Extend(count);
    if (room != nullptr) {
        std::memset(room, character, count);
    }
}

CText& CText::AppendSigned(std::int64_t number) {
    return *this << CDigits(number).View();
}

CText& CText::AppendUnsigned(std::uint64_t number) {
    return *this << CDigits(number).View();
}

void ReplaceAll(CText& text, std::string_view from, std::string_view to) {
    CText replaced;
    std::string_view rest = text.View();
    for (std::size_t found = rest.find(from); found != std::string_view::npos;
         found = rest.find(from)) {
        replaced << std::string_view(rest.data(), found) << to;
        rest.remove_prefix(found + from.size());
    }
    replaced << rest;
    text.Clear();
    text << replaced;
}

}  // namespace qb_support
