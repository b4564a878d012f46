#include "VekAppCore/Xml/XmlException.h"
#include <utility>

namespace vek
{
XmlException::XmlException(const QString& message, Place place, const std::source_location& where)
    : InternalAppException(message, where), m_place(std::move(place))
{}

XmlException::~XmlException() = default;

std::string ToLogText(const XmlException::Place& place)
{
    return place.path.toStdString() + ':' + std::to_string(place.line) + ": " + place.element.toStdString();
}
} // namespace vek
