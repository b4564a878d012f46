#pragma once
#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace vek::StringUtility
{
/// How many units two texts have in common at their begin. Texts that are compared are short and begin alike:
/// four units are compared at a time, as long as they are there.
[[nodiscard]] inline std::size_t GetCommonSize(std::u16string_view a, std::u16string_view b) noexcept
{
    const std::size_t size = std::min(a.size(), b.size());
    std::size_t common = 0;
    for (; common + 4 <= size; common += 4)
    {
        std::uint64_t aFour;
        std::uint64_t bFour;
        std::memcpy(&aFour, a.data() + common, sizeof aFour);
        std::memcpy(&bFour, b.data() + common, sizeof bFour);
        if (const std::uint64_t difference = aFour ^ bFour)
        {
            const int bit = std::endian::native == std::endian::little ? std::countr_zero(difference)
                                                                       : std::countl_zero(difference);
            return common + static_cast<std::size_t>(bit / 16);
        }
    }
    while (common < size && a[common] == b[common])
        ++common;
    return common;
}
} // namespace vek::StringUtility
