#include "VekAppCore/Xml/XmlDescription.h"
#include <algorithm>
#include <map>

namespace vek
{
namespace
{
QString ToText(const char* utf8) { return QString::fromUtf8(utf8); }

/// Keeps what is thrown.
template <typename Function>
void Try(std::vector<XmlFinding>& findings, Function function)
{
    try
    {
        function();
    }
    catch (const XmlException& exception)
    {
        findings.push_back({exception.GetPlace().line, exception.GetMessage().ToString()});
    }
}
} // namespace

XmlDescription& XmlDescription::Child(XmlDescription description, int least, int most) &
{
    description.m_least = least;
    description.m_most = most;
    m_children.push_back(std::move(description));
    return *this;
}

XmlDescription XmlDescription::Child(XmlDescription description, int least, int most) &&
{
    return std::move(Child(std::move(description), least, most));
}

void XmlDescription::_AddKnownAttributes(std::initializer_list<const char*> names)
{
    m_knownAttributes.insert(m_knownAttributes.end(), names.begin(), names.end());
}

std::vector<XmlFinding> XmlDescription::Check(const XmlDeserializer& element) const
{
    std::vector<XmlFinding> findings;
    _Check(element, findings);
    std::ranges::stable_sort(findings, {}, &XmlFinding::line);
    return findings;
}

void XmlDescription::_Check(const XmlDeserializer& element, std::vector<XmlFinding>& findings) const
{
    _CheckAttributes(element, findings);
    Try(findings, [&] {
        if (m_value)
            m_value(element);
        else if (element.GetElement().GetText())
            element.Throw(QStringLiteral("no text is expected"));
    });
    _CheckChildren(element, findings);
}

void XmlDescription::_CheckAttributes(const XmlDeserializer& element, std::vector<XmlFinding>& findings) const
{
    for (const AttributeRule& rule : m_attributes)
        if (rule.isMandatory || element.HasAttribute(rule.name))
            Try(findings, [&] { rule.read(element); });
    const auto* attribute = element.GetElement().FirstAttribute();
    for (; attribute; attribute = attribute->Next())
        if (std::ranges::find(m_attributes, attribute->Name(), &AttributeRule::name) == m_attributes.end() &&
            std::ranges::find(m_knownAttributes, attribute->Name()) == m_knownAttributes.end())
            Try(findings, [&] {
                element.Throw(
                    QStringLiteral("the attribute <%1> is not expected").arg(ToText(attribute->Name())));
            });
}

void XmlDescription::_CheckChildren(const XmlDeserializer& element, std::vector<XmlFinding>& findings) const
{
    std::map<const XmlDescription*, int> counts;
    const auto* child = element.GetElement().FirstChildElement();
    for (; child; child = child->NextSiblingElement())
    {
        const auto rule =
            std::ranges::find(m_children, child->Name(), [](const XmlDescription& r) { return r.m_name; });
        Try(findings, [&] {
            if (rule == m_children.end())
                XmlDetails::Throw(*child, QStringLiteral("this element is not expected"));
            if (++counts[&*rule] == rule->m_most + 1L)
                XmlDetails::Throw(*child,
                                  QStringLiteral("one too many: at most %1 expected").arg(rule->m_most));
            rule->_Check(XmlDeserializer(*child, element.GetVersion()), findings);
        });
    }
    for (const XmlDescription& rule : m_children)
    {
        const int count = counts[&rule];
        const auto nothing = [](const XmlDeserializer&) {};
        Try(findings, [&] {
            if (count == 0 && rule.m_least == 1)
                element.Child(rule.m_name, nothing, true);
            else if (count == 0 && rule.m_least > 1)
                element.ForEachChild(rule.m_name, nothing, true);
            else if (count < rule.m_least)
                element.Throw(QStringLiteral("it has %1 <%2>; at least %3 expected")
                                  .arg(count)
                                  .arg(ToText(rule.m_name.c_str()))
                                  .arg(rule.m_least));
        });
    }
}
} // namespace vek
