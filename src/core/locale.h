// The user's regional settings.
#ifndef QBSUPPORT_CORE_LOCALE_H
#define QBSUPPORT_CORE_LOCALE_H

#include "core/text.h"
#include "platform/windows_api.h"

namespace qb_support {

// The value `lctype` of the user's default locale, in the ANSI code page. Empty when the platform
// does not give it or it is longer than 1,023 characters.
CText QueryLocaleValue(LCTYPE lctype);

}  // namespace qb_support

#endif
