#pragma once
#include <QByteArray>
#include <optional>
#include <string_view>

namespace vek
{
/// The text of an XML file as UTF-8 without a byte-order mark; empty where it cannot be decoded.
[[nodiscard]] std::optional<QByteArray> DecodeXml(QByteArray bytes);

/// Where it holds what must not be given to the parser: a null character, at which it would stop as if the
/// text ended there, or an element with so many attributes that it would take forever, since it compares each
/// with all before it. npos where there is neither.
[[nodiscard]] std::size_t FindUnparsable(std::string_view utf8);
} // namespace vek
