#pragma once
#include <initializer_list>
#include <string>

namespace vek::Details
{
/// The name of an enumerator, for logs; the number of what has no name.
/// @param names  in order, the one of @p first first; null where there is no enumerator.
template <typename Enum>
std::string ToEnumText(Enum value, Enum first, std::initializer_list<const char*> names)
{
    const auto number = static_cast<long long>(value);
    const auto index = number - static_cast<long long>(first);
    const bool isKnown = index >= 0 && index < static_cast<long long>(names.size());
    return isKnown && names.begin()[index] ? names.begin()[index] : std::to_string(number);
}
} // namespace vek::Details
