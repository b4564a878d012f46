#pragma once
#include "VekBase/Export.h"
#include <concepts>
#include <iosfwd>
#include <string>
#include <utility>

class QDebug;

namespace vek
{
/// T has a free function "std::string ToLogText(const T&)" in its namespace: what logs and developers see of
/// a value, in UTF-8, never translated. qDebug then prints it, and so do fmt (VekAppCore/Text/Format.h) and
/// GoogleTest, which in namespaces other than vek asks for "using vek::PrintTo;" beside that function. It is
/// declared where the type is, before anything can print it.
template <typename T>
concept HasLogText = std::same_as<decltype(ToLogText(std::declval<const T&>())), std::string>;

namespace Details
{
VEKBASE_EXPORT void WriteLogText(QDebug& debug, const std::string& text);
VEKBASE_EXPORT void WriteLogText(std::ostream& stream, const std::string& text);
} // namespace Details

/// For GoogleTest.
template <HasLogText T>
void PrintTo(const T& value, std::ostream* out)
{
    Details::WriteLogText(*out, ToLogText(value));
}
} // namespace vek

/// Beside QDebug, where it is found for types of every namespace.
template <std::same_as<QDebug> Debug, vek::HasLogText T>
Debug operator<<(Debug debug, const T& value)
{
    vek::Details::WriteLogText(debug, ToLogText(value));
    return debug;
}
