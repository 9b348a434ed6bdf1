// The Date and Time section: local time and the time zone's bias.
#include "core/collector.h"

namespace qb_support {

namespace {

constexpr std::uint32_t Magnitude(std::int32_t number) {
    const auto bits = static_cast<std::uint32_t>(number);
    return number < 0 ? 0U - bits : bits;
}

// The biases come from the registry and may have any value, so sums and products wrap around
// instead of overflowing.
constexpr std::int32_t SecondsOf(LONG minutes, LONG moreMinutes) {
    const auto sum = static_cast<std::uint32_t>(minutes) + static_cast<std::uint32_t>(moreMinutes);
    return static_cast<std::int32_t>(sum * 60U);
}

void AppendHoursAndMinutes(CText& text, std::int32_t minutes) {
    text << minutes / 60 << ':' << Magnitude(minutes) % 60 << 'h';
}

void AppendCurrentTime(CText& result) {
    const auto now = _time64(nullptr);
    // The text ends in a line feed. It is null if the run time does not support the year.
    const char* const text = _ctime64(&now);
    result << (text != nullptr ? text : "\n");
}

}  // namespace

bool CQbSupport::GetDateTimeInfo(CText& result) {
    AppendHeading(result, "Date and Time");
    result << m_indent;
    AppendCurrentTime(result);

    std::int32_t biasSeconds = 0;
    bool isDaylight = false;
    CText biasText;
    std::int32_t biasMinutes = 0;
    std::int32_t daylightBias = 0;
    if (!GetTimeZone(biasSeconds, isDaylight, biasText, biasMinutes, daylightBias)) {
        return true;
    }

    result << m_indent << "Time zone GMT/UTC bias:  " << biasSeconds / 3600 << ':'
           << Magnitude(biasSeconds) % 3600 / 60 << "h [" << biasSeconds << "s]\n";
    if (!biasText.Empty()) {
        result << m_indent << "Time zone:               " << biasText << '\n';
    }
    result << m_indent << "Time zone DST effective: ";
    if (isDaylight) {
        result << "Yes [";
        AppendHoursAndMinutes(result, daylightBias);
        result << "]\n";
    } else {
        result << "No\n";
    }
    return true;
}

bool CQbSupport::GetTimeZone(std::int32_t& biasSeconds, bool& isDaylight, CText& biasText,
                             std::int32_t& biasMinutes, std::int32_t& daylightBias) {
    isDaylight = false;

    _tzset();
    TIME_ZONE_INFORMATION zone{};
    const DWORD season = GetTimeZoneInformation(&zone);
    if (season == TIME_ZONE_ID_INVALID) {
        zone = {};  // after a failed call its content is undefined
    }

    if (season == TIME_ZONE_ID_DAYLIGHT) {
        biasSeconds = SecondsOf(zone.Bias, zone.DaylightBias);
        isDaylight = true;
    } else if (season == TIME_ZONE_ID_STANDARD) {
        biasSeconds = SecondsOf(zone.Bias, zone.StandardBias);
    } else {
        biasSeconds = SecondsOf(zone.Bias, 0);
    }

    biasMinutes = zone.Bias;
    biasText.Clear();
    AppendHoursAndMinutes(biasText, zone.Bias);
    daylightBias = zone.DaylightBias;
    return true;
}

}  // namespace qb_support
