// What a host that joins sections to a report has to know about each kind of them.
#ifndef QBSUPPORT_SECTIONS_HPP
#define QBSUPPORT_SECTIONS_HPP

#include "qbsupport.h"

namespace qbsupport {

/// Whether QbSupportFlagSeparator ends a section of this kind in an empty line. It does not where a
/// host strings single lines together below another section.
constexpr bool HasSeparator(int kind) noexcept {
    return kind != QbSupportAppDirectory && kind != QbSupportUserAppKey &&
           kind != QbSupportMachineAppKey && kind != QbSupportModule;
}

}  // namespace qbsupport

#endif
