// How Windows compares names and paths; both orders take a string_view without making a string.
#ifndef QBSUPPORT_PLATFORM_STAND_IN_NAMES_H
#define QBSUPPORT_PLATFORM_STAND_IN_NAMES_H

#include <string_view>

namespace stand_in {

bool SameName(std::string_view left, std::string_view right);

/// Without regard to case.
struct NameOrder {
    using is_transparent = void;
    bool operator()(std::string_view left, std::string_view right) const;
};

/// Without regard to case, the kind of slash and slashes at the end.
struct PathOrder {
    using is_transparent = void;
    bool operator()(std::string_view left, std::string_view right) const;
};

}  // namespace stand_in

#endif
