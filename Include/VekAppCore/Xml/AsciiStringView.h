#pragma once
#include "VekBase/LogText.h"
#include <QString>
#include <algorithm>
#include <cassert>
#include <string>
#include <string_view>

namespace vek
{
/// The name of an element or an attribute: a view of ASCII text that a zero ends. What it views outlives it.
class AsciiStringView
{
public:
    /// @param text  not null.
    constexpr AsciiStringView(const char* text) noexcept : m_text(text)
    {
        assert(std::ranges::all_of(m_text, [](char c) { return static_cast<unsigned char>(c) < 0x80; }));
    }
    /// Up to the first zero.
    AsciiStringView(const std::string& text) noexcept : AsciiStringView(text.c_str()) {}

    /// @{
    /// The characters as they are, and as a QString.
    [[nodiscard]] constexpr const char* GetText() const noexcept { return m_text.data(); }
    [[nodiscard]] QString ToString() const
    {
        return QString::fromLatin1(m_text.data(), static_cast<qsizetype>(m_text.size()));
    }
    /// @}

    constexpr bool operator==(const AsciiStringView&) const noexcept = default;

private:
    std::string_view m_text;
};

[[nodiscard]] inline std::string ToLogText(const AsciiStringView& text) { return text.GetText(); }
} // namespace vek
