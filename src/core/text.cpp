#include "core/text.h"

#include <charconv>
#include <cstring>

namespace qb_support {

namespace {

// The decimal digits of a number, with its sign.
class Digits {
public:
    explicit Digits(std::uint64_t number)
        : m_end(std::to_chars(m_characters, m_characters + sizeof(m_characters), number).ptr) {}
    explicit Digits(std::int64_t number)
        : m_end(std::to_chars(m_characters, m_characters + sizeof(m_characters), number).ptr) {}

    [[nodiscard]] std::string_view View() const {
        return {m_characters, static_cast<std::size_t>(m_end - m_characters)};
    }

private:
    char m_characters[20];  // the longest: -9223372036854775808 and 18446744073709551615
    const char* m_end;
};

}  // namespace

Text& Text::operator<<(std::string_view text) {
    char* const room = m_characters.Extend(text.size());
    if (room != nullptr && !text.empty()) {
        std::memcpy(room, text.data(), text.size());
    }
    return *this;
}

Text& Text::operator<<(const char* text) {
    return *this << std::string_view(text);
}

Text& Text::operator<<(const Text& text) {
    if (text.Failed()) {
        Fail();
    }
    return *this << text.View();
}

Text& Text::operator<<(char character) {
    m_characters.Append(character);
    return *this;
}

Text& Text::operator<<(Padded padded) {
    const Digits digits(std::int64_t{padded.number});
    if (digits.View().size() < padded.width) {
        Fill(' ', padded.width - digits.View().size());
    }
    return *this << digits.View();
}

void Text::Fill(char character, std::size_t count) {
    char* const room = m_characters.Extend(count);
    if (room != nullptr) {
        std::memset(room, character, count);
    }
}

Text& Text::AppendSigned(std::int64_t number) {
    return *this << Digits(number).View();
}

Text& Text::AppendUnsigned(std::uint64_t number) {
    return *this << Digits(number).View();
}

void ReplaceAll(Text& text, std::string_view from, std::string_view to) {
    Text replaced;
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
