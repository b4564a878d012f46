#include "VekAppCore/Xml/XmlException.h"
#include <utility>

namespace vek
{
XmlException::XmlException(const QString& message, Place place, const std::source_location& where)
    : InternalAppException(message, where), m_place(std::move(place))
{}

XmlException::~XmlException() = default;
} // namespace vek
