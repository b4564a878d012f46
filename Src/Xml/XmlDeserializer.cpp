#include "VekAppCore/Xml/XmlDeserializer.h"
#include "Xml/PathDocument.h"
#include <algorithm>
#include <cstring>
#include <string_view>

namespace vek
{
namespace
{
using tinyxml2::XMLAttribute;
using tinyxml2::XMLElement;
using tinyxml2::XMLNode;

bool IsIgnored(std::string_view attribute, const std::vector<AsciiStringView>& ignored)
{
    return std::ranges::any_of(ignored,
                               [attribute](const auto& name) { return name.GetText() == attribute; });
}

bool HaveEqualAttributes(const XMLElement& a, const XMLElement& b,
                         const std::vector<AsciiStringView>& ignored)
{
    int counts[2] = {};
    for (const XMLAttribute* attribute = b.FirstAttribute(); attribute; attribute = attribute->Next())
        counts[1] += !IsIgnored(attribute->Name(), ignored);
    for (const XMLAttribute* attribute = a.FirstAttribute(); attribute; attribute = attribute->Next())
    {
        if (IsIgnored(attribute->Name(), ignored))
            continue;
        const char* const other = b.Attribute(attribute->Name());
        if (!other || std::strcmp(other, attribute->Value()) != 0)
            return false;
        ++counts[0];
    }
    return counts[0] == counts[1];
}

/// All text up to the next element, which @p node becomes; null behind the last one.
std::string TakeText(const XMLNode*& node)
{
    std::string text;
    for (; node && !node->ToElement(); node = node->NextSibling())
        if (node->ToText())
            text += node->Value();
    return text;
}

bool AreEqual(const XMLElement& a, const XMLElement& b, const std::vector<AsciiStringView>& ignored)
{
    if (std::strcmp(a.Name(), b.Name()) != 0 || !HaveEqualAttributes(a, b, ignored))
        return false;
    const XMLNode* childOfA = a.FirstChild();
    const XMLNode* childOfB = b.FirstChild();
    for (;; childOfA = childOfA->NextSibling(), childOfB = childOfB->NextSibling())
    {
        if (TakeText(childOfA) != TakeText(childOfB))
            return false;
        if (!childOfA || !childOfB)
            return childOfA == childOfB;
        if (!AreEqual(*childOfA->ToElement(), *childOfB->ToElement(), ignored))
            return false;
    }
}

[[noreturn]] void ThrowNoChild(const XMLElement& element, const char* form, const AsciiStringView& name,
                               const std::source_location& where)
{
    XmlDetails::ThrowAt(element, QLatin1String(form) + name.ToString() + u'>', where);
}
} // namespace

void XmlDeserializer::Child(const AsciiStringView& name, const Visit& visit, bool mandatory,
                            const std::source_location& where) const
{
    if (const XMLElement* const element = m_element->FirstChildElement(name.GetText()))
    {
        XmlDeserializer child(*element, m_version);
        visit(child);
    }
    else if (mandatory)
        ThrowNoChild(*m_element, " does contain the child <", name, where);
}

void XmlDeserializer::ForEachChild(const AsciiStringView& name, const Visit& visit, bool mandatory,
                                   const std::source_location& where) const
{
    const XMLElement* element = m_element->FirstChildElement(name.GetText());
    if (!element && mandatory)
        ThrowNoChild(*m_element, " does contain any child <", name, where);
    for (; element; element = element->NextSiblingElement(name.GetText()))
    {
        XmlDeserializer child(*element, m_version);
        visit(child);
    }
}

bool XmlDeserializer::HasChild(const AsciiStringView& name) const
{
    return m_element->FirstChildElement(name.GetText()) != nullptr;
}

bool XmlDeserializer::HasAttribute(const AsciiStringView& name) const
{
    return m_element->FindAttribute(name.GetText()) != nullptr;
}

QStringList XmlDeserializer::GetAllAtributes() const
{
    QStringList names;
    for (const XMLAttribute* attribute = m_element->FirstAttribute(); attribute;
         attribute = attribute->Next())
        names.push_back(QString::fromUtf8(attribute->Name()));
    return names;
}

QString XmlDeserializer::GetName() const { return QString::fromUtf8(m_element->Name()); }

bool XmlDeserializer::IsEqual(const XmlDeserializer& other,
                              const std::vector<AsciiStringView>& ignoredAttributes) const
{
    return AreEqual(*m_element, *other.m_element, ignoredAttributes);
}

void XmlDeserializer::Throw(const QString& message, const std::source_location& where) const
{
    XmlDetails::Throw(*m_element, message, where);
}
} // namespace vek
