// The library's byte string and line builder.
#ifndef QBSUPPORT_CORE_TEXT_H
#define QBSUPPORT_CORE_TEXT_H

#include <algorithm>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <type_traits>

#include "core/growable_array.h"

namespace qb_support {

// An integer right-aligned with spaces in a field of `width` characters; a longer one is written
// whole.
struct Padded {
    std::int32_t number;
    std::size_t width;
};

// A growable text of 8-bit characters, never converted. It is always NUL-terminated, and never
// throws: when memory runs out it remembers so and ignores what follows, and every text that it is
// appended to remembers it too. Texts up to 288 characters (any path that fits MAX_PATH, any
// registry text that we read) need no memory of their own.
class CText {
public:
    CText() = default;
    explicit CText(std::string_view text) { *this << text; }

    [[nodiscard]] bool Failed() const { return m_characters.Failed(); }
    void Fail() { m_characters.Fail(); }

    // False for a text that memory ran out for: what it lacks is not known to be nothing.
    [[nodiscard]] bool Empty() const { return m_characters.Size() == 0 && !Failed(); }
    [[nodiscard]] std::size_t Size() const { return m_characters.Size(); }
    [[nodiscard]] std::string_view View() const { return {CStr(), Size()}; }
    [[nodiscard]] const char* CStr() const { return m_characters.Data(); }

    // Makes the text empty and keeps its memory and a remembered failure.
    void Clear() { m_characters.Clear(); }

    CText& operator<<(std::string_view text);
    CText& operator<<(const char* text);
    CText& operator<<(const CText& text);
    CText& operator<<(char character);
    CText& operator<<(Padded padded);

    // Plain decimal, without grouping.
    template <std::integral Number>
    CText& operator<<(Number number) {
        if constexpr (std::is_signed_v<Number>) {
            return AppendSigned(number);
        } else {
            return AppendUnsigned(number);
        }
    }

    // Appends `character` `count` times.
    void Fill(char character, std::size_t count);

private:
    CText& AppendSigned(std::int64_t number);
    CText& AppendUnsigned(std::uint64_t number);

    CGrowableArray<char, 288> m_characters;
};

// Replaces, in `text` itself, every occurrence of `from` (not empty) by `to`. What was inserted is
// not searched again.
void ReplaceAll(CText& text, std::string_view from, std::string_view to);

// The text of a buffer that a platform call filled: up to its first NUL, or all of it when there is
// none, since a terminator is never taken for granted.
template <std::size_t Size>
std::string_view BufferText(const char (&buffer)[Size]) {
    return {buffer, static_cast<std::size_t>(std::find(buffer, buffer + Size, '\0') - buffer)};
}

}  // namespace qb_support

#endif
