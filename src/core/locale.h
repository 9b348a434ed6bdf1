// The user's regional settings.
#ifndef QBSUPPORT_CORE_LOCALE_H
#define QBSUPPORT_CORE_LOCALE_H

#include "core/text.h"
#include "platform/windows_api.h"

namespace qb_support {

// The value `lctype` of the user's default locale, in that locale's ANSI code page, or in the
// process's if `lctype` includes LOCALE_USE_CP_ACP. Empty if the platform call fails or if the
// value is longer than 1,023 characters.
CText QueryLocaleValue(LCTYPE lctype);

}  // namespace qb_support

#endif
