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

// An integer, right-aligned with spaces in a field of `width` characters. A longer one is not
// truncated.
struct Padded {
    std::int32_t number;
    std::size_t width;
};

// A growable text of 8-bit characters, which are never converted. It is always NUL-terminated and
// never throws. If memory runs out, the text has failed: it ignores what is appended later, and
// each text that it is appended to has failed too. Texts of up to 288 characters, such as any path
// that fits MAX_PATH and any text read from the registry, need no memory from the heap.
class CText {
public:
    CText() = default;
    explicit CText(std::string_view text) { *this << text; }

    [[nodiscard]] bool Failed() const { return m_characters.Failed(); }
    void Fail() { m_characters.Fail(); }

    // A failed text is not empty, because what it lost is unknown.
    [[nodiscard]] bool Empty() const { return m_characters.Size() == 0 && !Failed(); }
    [[nodiscard]] std::size_t Size() const { return m_characters.Size(); }
    [[nodiscard]] std::string_view View() const { return {CStr(), Size()}; }
    [[nodiscard]] const char* CStr() const { return m_characters.Data(); }

    // Makes the text empty. Keeps its memory, and a failure.
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

// Replaces every occurrence of `from`, which must not be empty, in `text` by `to`. Inserted text is
// not searched again.
void ReplaceAll(CText& text, std::string_view from, std::string_view to);

// The text in a buffer that a platform call filled: up to the first NUL, or the whole buffer if it
// has none, because not every call writes one.
template <std::size_t Size>
std::string_view BufferText(const char (&buffer)[Size]) {
    return {buffer, static_cast<std::size_t>(std::find(buffer, buffer + Size, '\0') - buffer)};
}

}  // namespace qb_support

#endif
