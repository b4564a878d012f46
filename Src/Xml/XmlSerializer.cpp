#include "VekAppCore/Xml/XmlSerializer.h"
#include "Xml/PathDocument.h"

namespace vek
{
namespace
{
using tinyxml2::XMLElement;
using tinyxml2::XMLNode;

// tinyxml2 counts the document, too, and stops where it reaches its limit.
constexpr int mostLevels = TINYXML2_MAX_ELEMENT_DEPTH - 2;

/// The root has 1.
int GetDepth(const XMLNode& element)
{
    int depth = 0;
    for (const XMLNode* node = &element; node && !node->ToDocument(); node = node->Parent())
        ++depth;
    return depth;
}
} // namespace

void XmlSerializer::Child(const AsciiStringView& name, const Visit& visit, const std::source_location& where)
{
    if (GetDepth(*m_element) >= mostLevels)
        XmlDetails::Throw(*m_element, QStringLiteral("a child would lie too deep to be read again"), where);
    XmlDetails::RequireName(*m_element, name, where);
    XmlSerializer child(*m_element->InsertNewChildElement(name.GetText()), m_version);
    visit(child);
}

QString XmlSerializer::Name() const { return QString::fromUtf8(m_element->Name()); }

void XmlSerializer::SetName(const AsciiStringView& name, const std::source_location& where)
{
    XmlDetails::RequireName(*m_element, name, where);
    m_element->SetName(name.GetText());
}

void XmlSerializer::SetVersion(int version)
{
    m_version = version;
    const XMLNode* const parent = m_element->Parent();
    if (parent && parent->ToDocument())
        m_element->SetAttribute("version", version);
}
} // namespace vek
