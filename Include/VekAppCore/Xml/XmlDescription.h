#pragma once
#include "VekAppCore/Xml/XmlDeserializer.h"
#include "VekBase/LogText.h"
#include <functional>
#include <limits>
#include <string>
#include <vector>

namespace vek
{
/// Something in a document that is not as it was described.
struct XmlFinding
{
    int line;        ///< From 1; 0 where it is not known.
    QString message; ///< For developers, not translated; it names line and element.
};
[[nodiscard]] VEKAPPCORE_EXPORT std::string ToLogText(const XmlFinding& finding);

/// What an element of a document holds: its attributes, its value and its children, in whatever order. A
/// plain value, put together in one go:
/// XmlDescription("Plate").Attribute<int>("number").Child(XmlDescription("Width").Value<Unit::Length>())
class VEKAPPCORE_EXPORT XmlDescription
{
public:
    /// For Child: as many as there are.
    static constexpr int anyNumber = (std::numeric_limits<int>::max)();

    /// @param name  of the element.
    explicit XmlDescription(const AsciiStringView& name) : m_name(name.GetText()) {}

    /// There is an attribute that is read as a T.
    template <typename T>
    XmlDescription& Attribute(const AsciiStringView& name)
    {
        return _AddAttribute<T>(name, true);
    }
    /// The same, where there is one.
    template <typename T>
    XmlDescription& OptionalAttribute(const AsciiStringView& name)
    {
        return _AddAttribute<T>(name, false);
    }

    /// The element itself is read as a T.
    template <typename T>
    XmlDescription& Value()
    {
        return _SetValue<T>(true);
    }
    /// The same for what stands as a text, where there is one.
    template <typename T>
    XmlDescription& OptionalValue()
    {
        return _SetValue<T>(false);
    }

    /// @param least  how many there are at least, 0 or more.
    /// @param most  how many there are at most, or anyNumber.
    XmlDescription& Child(XmlDescription description, int least = 1, int most = 1);

    /// Of the element.
    [[nodiscard]] const std::string& GetName() const noexcept { return m_name; }

    /// For an element that no description has.
    [[nodiscard]] static XmlFinding MakeUnexpected(const tinyxml2::XMLElement& element);

    /// All that is not as described in an element and below it, in the order of the document.
    [[nodiscard]] std::vector<XmlFinding> Check(const XmlDeserializer& element) const;

private:
    /// Reads something mandatory; throws what is wrong with it.
    using Read = std::function<void(const XmlDeserializer&)>;

    struct AttributeRule
    {
        std::string name;
        bool isMandatory;
        Read read;
    };

    template <typename T>
    XmlDescription& _AddAttribute(const AsciiStringView& name, bool isMandatory)
    {
        m_attributes.push_back(
            {name.GetText(), isMandatory, [name = std::string(name.GetText())](const auto& element) {
                 T value{};
                 element.GetAttribute(name, value, true);
             }});
        _AddKnownAttributes(XmlDetails::attributesOf<T>);
        return *this;
    }
    template <typename T>
    XmlDescription& _SetValue(bool isMandatory)
    {
        m_isMandatory = isMandatory;
        m_isText = XmlDetails::attributesOf<T>.size() == 0;
        m_value = [](const XmlDeserializer& element) {
            T value{};
            element.GetValue(value, true);
        };
        _AddKnownAttributes(XmlDetails::attributesOf<T>);
        return *this;
    }
    void _AddKnownAttributes(std::initializer_list<const char*> names);

    void _Check(const XmlDeserializer& element, std::vector<XmlFinding>& findings) const;
    void _CheckAttributes(const XmlDeserializer& element, std::vector<XmlFinding>& findings) const;
    void _CheckChildren(const XmlDeserializer& element, std::vector<XmlFinding>& findings) const;

    std::string m_name;
    std::vector<AttributeRule> m_attributes;
    std::vector<std::string> m_knownAttributes; ///< Those that values are made of.
    Read m_value;                               ///< Empty where the element has no value.
    bool m_isMandatory = true;                  ///< The value.
    bool m_isText = false;                      ///< The value is in the text of the element.
    std::vector<XmlDescription> m_children;
    int m_least = 1; ///< How many there are in the element above.
    int m_most = 1;
};
} // namespace vek
