#pragma once
#include <QByteArray>
#include <optional>
#include <string>
#include <string_view>

namespace vek
{
/// Of an element that is parsed.
constexpr int mostAttributes = 1024;

/// The text of an XML file as UTF-8 without a byte-order mark; empty where it cannot be decoded.
[[nodiscard]] std::optional<QByteArray> DecodeXml(QByteArray bytes);

/// What the parser must be kept from.
struct XmlScan
{
    /// Of a null character, or of the end of an element that has not begun: there, the parser would stop
    /// without a word. Or of an element with so many attributes that it would take forever, since it compares
    /// each with all before it. npos without one.
    std::size_t unparsable = std::string_view::npos;
    /// The text with the ampersands escaped that begin no entity known to the parser, which would put
    /// something else in their place; empty where there are none.
    std::string escaped;
};
[[nodiscard]] XmlScan ScanXml(std::string_view utf8);
} // namespace vek
