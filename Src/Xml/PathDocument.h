#pragma once
#include "VekAppCore/Xml/AsciiStringView.h"
#include "VekAppCore/Xml/XmlException.h"
#include <tinyxml2.h>

namespace vek
{
/// What messages are to name: a document that knows the file it was read from.
struct PathDocument : tinyxml2::XMLDocument
{
    QString path; ///< Empty without one.
};

namespace XmlDetails
{
/// Throws "Line %1: <%2>" and @p rest.
[[noreturn]] void ThrowAt(const tinyxml2::XMLElement& element, const QString& rest,
                          const std::source_location& where);

/// @throws XmlException  at @p element, for what could not be read again.
void RequireName(const tinyxml2::XMLElement& element, const AsciiStringView& name,
                 const std::source_location& where);
} // namespace XmlDetails
} // namespace vek
