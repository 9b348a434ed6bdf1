#include "machine/digit_grouping.h"

#include <charconv>
#include <utility>

#include "core/locale.h"

namespace qb_support {

namespace {

constexpr std::size_t kMostDigits = 20;  // of the largest 64-bit number

// Reads the platform's list of group sizes, one size per call.
class CGroupSizes {
public:
    explicit CGroupSizes(std::string_view sizes) : m_rest(sizes) {}

    // The size of the next group to the left, or 0 if the digits are not grouped at all. The list
    // ends before a 0 or anything else that is not a size, and its last size then repeats.
    std::size_t Next() {
        std::size_t size = 0;
        const char* const end = m_rest.data() + m_rest.size();
        const char* const read = std::from_chars(m_rest.data(), end, size).ptr;
        if (size != 0) {
            m_last = size;
            m_rest.remove_prefix(static_cast<std::size_t>(read - m_rest.data()));
            m_rest.remove_prefix(m_rest.starts_with(';') ? 1 : 0);
        }
        return m_last;
    }

private:
    std::string_view m_rest;
    std::size_t m_last = 0;
};

}  // namespace

CDigitGrouping::CDigitGrouping(CText sizes, CText separator)
    : m_sizes(std::move(sizes)), m_separator(std::move(separator)) {}

void CDigitGrouping::Append(CText& text, std::uint64_t number) const {
    if (m_sizes.Failed() || m_separator.Failed()) {
        text.Fail();
        return;
    }
    char digits[kMostDigits];
    const char* const end = std::to_chars(digits, digits + kMostDigits, number).ptr;
    const auto count = static_cast<std::size_t>(end - digits);

    bool startsGroup[kMostDigits] = {};
    CGroupSizes sizes(m_sizes.View());
    std::size_t left = count;
    for (std::size_t size = sizes.Next(); size != 0 && size < left; size = sizes.Next()) {
        left -= size;
        startsGroup[left] = true;
    }

    for (std::size_t i = 0; i < count; ++i) {
        if (startsGroup[i]) {
            text << m_separator;
        }
        text << digits[i];
    }
}

CDigitGrouping UserDigitGrouping() {
    // Without LOCALE_USE_CP_ACP, the platform gives the separator in the locale's own code page. In
    // a process that uses UTF-8, its bytes would mean nothing.
    return {QueryLocaleValue(LOCALE_SGROUPING),
            QueryLocaleValue(LOCALE_STHOUSAND | LOCALE_USE_CP_ACP)};
}

}  // namespace qb_support
