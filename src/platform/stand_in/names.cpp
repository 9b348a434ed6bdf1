#include "platform/stand_in/names.h"

#include <algorithm>

namespace stand_in {
namespace {

char LowerCase(char character) {
    const bool isUpper = character >= 'A' && character <= 'Z';
    return isUpper ? static_cast<char>(character - 'A' + 'a') : character;
}

char PathCharacter(char character) {
    return character == '/' ? '\\' : LowerCase(character);
}

std::string_view WithoutClosingSlashes(std::string_view path) {
    while (!path.empty() && PathCharacter(path.back()) == '\\') {
        path.remove_suffix(1);
    }
    return path;
}

}  // namespace

bool SameName(std::string_view left, std::string_view right) {
    return std::ranges::equal(left, right, {}, LowerCase, LowerCase);
}

bool NameOrder::operator()(std::string_view left, std::string_view right) const {
    return std::ranges::lexicographical_compare(left, right, {}, LowerCase, LowerCase);
}

bool PathOrder::operator()(std::string_view left, std::string_view right) const {
    return std::ranges::lexicographical_compare(WithoutClosingSlashes(left),
                                                WithoutClosingSlashes(right), {}, PathCharacter,
                                                PathCharacter);
}

}  // namespace stand_in
