#pragma once
#include "VekAppCore/App/Exception.h"
#include <algorithm>
#include <charconv>
#include <string_view>

/// Telling what is wrong with a file, and taking lines and numbers from the front of a text. All in the
/// header, so that plug-ins can use it too.
namespace vek::Desk
{
[[noreturn]] inline void FailReading(const TrString& reason) { throw Exception::AppException(reason); }

[[noreturn]] inline void FailReading(const QString& path, const TrString& reason)
{
    FailReading(TrString::translate("InspectionDesk", "%1: %2").Arg(path).Arg(reason));
}

/// Runs @p work, whose failures then name the file.
template <typename Work>
auto NameInFailures(const QString& path, Work work)
{
    try
    {
        return work();
    }
    catch (const Exception::AppException& exception)
    {
        FailReading(path, exception.GetMessage());
    }
    catch (const std::bad_alloc&)
    {
        FailReading(path, TrString::translate("InspectionDesk", "there is not enough memory for it"));
    }
}

/// Without its line feed; a carriage return in front of it counts as a blank.
inline std::string_view TakeLine(std::string_view& text)
{
    const std::string_view line = text.substr(0, text.find('\n'));
    text.remove_prefix(std::min(line.size() + 1, text.size()));
    return line;
}

inline void SkipBlanks(std::string_view& text)
{
    text.remove_prefix(std::min(text.find_first_not_of(" \t\r"), text.size()));
}

/// A number, whatever the locale, with the blanks around it and a comma or semicolon behind it. False, and
/// the text is unspecified, when there is none or something else adheres to it.
inline bool TakeNumber(std::string_view& text, double& value)
{
    SkipBlanks(text);
    if (text.starts_with('+') && !text.starts_with("+-"))
        text.remove_prefix(1);
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    const std::size_t lengthBefore = text.size();
    SkipBlanks(text);
    if (text.starts_with(',') || text.starts_with(';'))
        text.remove_prefix(1);
    return error == std::errc() && (text.empty() || text.size() < lengthBefore);
}
} // namespace vek::Desk
