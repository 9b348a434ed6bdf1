#include "stand_in/runtime.h"

#include <chrono>
#include <cstdio>

#include "stand_in/calls.h"
#include "stand_in/machine.h"

using namespace stand_in;

namespace {

// The last second of the year 3000.
constexpr std::int64_t lastTime = 32535215999;

constexpr const char* dayNames[] = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
constexpr const char* monthNames[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                      "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

std::int64_t BiasSeconds() {
    const Machine& machine = CurrentMachine();
    std::int64_t minutes = machine.timeZone.Bias;
    if (machine.timeZoneId == TIME_ZONE_ID_STANDARD) {
        minutes += machine.timeZone.StandardBias;
    } else if (machine.timeZoneId == TIME_ZONE_ID_DAYLIGHT) {
        minutes += machine.timeZone.DaylightBias;
    }
    return minutes * 60;
}

}  // namespace

std::int64_t qb_support::_time64(std::int64_t* time) {
    Count(__func__);
    const std::int64_t now = CurrentMachine().clock;
    if (time) {
        *time = now;
    }
    return now;
}

char* qb_support::_ctime64(const std::int64_t* time) {
    if (Fails(__func__) || *time < 0 || *time > lastTime) {
        return nullptr;
    }
    const std::chrono::sys_seconds local{std::chrono::seconds{*time - BiasSeconds()}};
    const auto day = std::chrono::floor<std::chrono::days>(local);
    const std::chrono::year_month_day date(day);
    const std::chrono::hh_mm_ss clock(local - day);
    thread_local char text[64];
    static_cast<void>(std::snprintf(
        text, sizeof text, "%s %s %02u %02d:%02d:%02d %04d\n",
        dayNames[std::chrono::weekday(day).c_encoding()],
        monthNames[static_cast<unsigned>(date.month()) - 1], static_cast<unsigned>(date.day()),
        static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count()),
        static_cast<int>(clock.seconds().count()), static_cast<int>(date.year())));
    return text;
}

void qb_support::_tzset() {
    Count(__func__);
}

char* qb_support::getenv(const char* name) {
    if (Fails(__func__)) {
        return nullptr;
    }
    auto& environment = CurrentMachine().environment;
    const auto variable = environment.find(std::string_view(name));
    return variable != environment.end() ? variable->second.data() : nullptr;
}

char* qb_support::setlocale(int category, const char* locale) {
    if (Fails(__func__) || locale) {
        return nullptr;
    }
    auto& settings = CurrentMachine().runtimeLocale;
    const auto setting = settings.find(category);
    return setting != settings.end() ? setting->second.data() : nullptr;
}
