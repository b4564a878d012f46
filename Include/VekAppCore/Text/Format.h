#pragma once
#include "VekBase/LogText.h"
#include <fmt/format.h>
#include <string_view>
#include <type_traits>

/// Lets fmt print what has a log text, such as quantities: "{:>10}" and the like. For programs that have fmt.
template <vek::HasLogText T>
struct fmt::formatter<T>
    : private fmt::formatter<std::string_view> // private, or ranges would put it in quotes
{
    using fmt::formatter<std::string_view>::parse;

    template <typename Context>
    auto format(const T& value, Context& context) const
    {
        return fmt::formatter<std::string_view>::format(ToLogText(value), context);
    }
};

FMT_BEGIN_NAMESPACE
template <typename T, typename Char>
struct is_range;

/// Where fmt/ranges.h is included as well, trees are no ranges.
template <vek::HasLogText T, typename Char>
struct is_range<T, Char> : std::false_type
{};
FMT_END_NAMESPACE
