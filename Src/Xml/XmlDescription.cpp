#include "VekAppCore/Xml/XmlDescription.h"
#include <algorithm>

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

XmlDescription& XmlDescription::Child(XmlDescription description, int least, int most)
{
    description.m_least = least;
    description.m_most = most;
    m_children.push_back(std::move(description));
    return *this;
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

XmlFinding XmlDescription::MakeUnexpected(const tinyxml2::XMLElement& element)
{
    std::vector<XmlFinding> findings;
    Try(findings, [&element] { XmlDetails::Throw(element, QStringLiteral("this element is not expected")); });
    return findings.front();
}

void XmlDescription::_Check(const XmlDeserializer& element, std::vector<XmlFinding>& findings) const
{
    _CheckAttributes(element, findings);
    if (m_value && (m_isMandatory || element.GetElement().GetText()))
        Try(findings, [&] { m_value(element); });
    const auto* child = element.GetElement().FirstChild();
    while (child && !child->ToText())
        child = child->NextSibling();
    if (child && !m_isText)
        Try(findings, [&] { element.Throw(QStringLiteral("no text is expected")); });
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
    std::vector<int> counts(m_children.size());
    const auto* child = element.GetElement().FirstChildElement();
    for (; child; child = child->NextSiblingElement())
    {
        const auto rule = std::ranges::find(m_children, child->Name(), &XmlDescription::m_name);
        if (rule == m_children.end())
        {
            findings.push_back(MakeUnexpected(*child));
            continue;
        }
        if (counts[static_cast<std::size_t>(rule - m_children.begin())]++ == rule->m_most)
            Try(findings, [&] {
                XmlDetails::Throw(*child,
                                  QStringLiteral("one too many: at most %1 expected").arg(rule->m_most));
            });
        rule->_Check(XmlDeserializer(*child, element.GetVersion()), findings);
    }
    for (std::size_t i = 0; i < counts.size(); ++i)
    {
        const XmlDescription& rule = m_children[i];
        const auto nothing = [](const XmlDeserializer&) {};
        Try(findings, [&] {
            if (counts[i] == 0 && rule.m_least == 1)
                element.Child(rule.m_name, nothing, true);
            else if (counts[i] == 0 && rule.m_least > 1)
                element.ForEachChild(rule.m_name, nothing, true);
            else if (counts[i] < rule.m_least)
                element.Throw(QStringLiteral("it has %1 <%2>; at least %3 expected")
                                  .arg(counts[i])
                                  .arg(ToText(rule.m_name.c_str()))
                                  .arg(rule.m_least));
        });
    }
}

std::string ToLogText(const XmlFinding& finding) { return finding.message.toStdString(); }
} // namespace vek
