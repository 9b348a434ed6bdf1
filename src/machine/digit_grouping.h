// The user's digit grouping.
#ifndef QBSUPPORT_MACHINE_DIGIT_GROUPING_H
#define QBSUPPORT_MACHINE_DIGIT_GROUPING_H

#include <cstdint>

#include "core/text.h"

namespace qb_support {

// How the user's regional settings group the digits of a number.
class CDigitGrouping {
public:
    // `sizes` are the groups' sizes as the platform writes them, the rightmost group first. The
    // last size repeats, and a final ";0" changes nothing: "3" and "3;0" group by three, "3;2" and
    // "3;2;0" by three and then by two. "0" or an empty text means no grouping. `separator` may be
    // longer than one byte.
    CDigitGrouping(CText sizes, CText separator);

    // Appends a number with its digits grouped. If the memory for the sizes or the separator ran
    // out, `text` has failed afterwards.
    void Append(CText& text, std::uint64_t number) const;

private:
    CText m_sizes;
    CText m_separator;
};

// The grouping of the user's default locale, or no grouping if the platform does not give it.
CDigitGrouping UserDigitGrouping();

}  // namespace qb_support

#endif
