#pragma once
#include "VekAppCore/Xml/XmlDetails.h"
#include <functional>

namespace vek
{
/// Builds an XML document while writing: stands on one element. It does not outlive its document. One
/// thread at a time uses a document and what stands in it.
class VEKAPPCORE_EXPORT XmlSerializer
{
public:
    /// Is handed the element that was added.
    using Visit = std::function<void(XmlSerializer&)>;

    /// @param version  of the document, for GetVersion.
    explicit XmlSerializer(tinyxml2::XMLElement& element, int version = 0) noexcept
        : m_element(&element), m_version(version)
    {}

    /// Adds a child at the end and calls @p visit with it.
    /// @throws XmlException  it would lie deeper than can be read again, which is 98 elements, or the name is
    /// none of XML.
    void Child(const AsciiStringView& name, const Visit& visit,
               const std::source_location& where = std::source_location::current());

    /// Adds the attribute or gives it another value.
    /// @throws XmlException  it could not be read again; see XmlDetails::SetAttribute.
    template <typename T>
    void SetAttribute(const AsciiStringView& name, const T& value,
                      const std::source_location& where = std::source_location::current())
    {
        XmlDetails::Details::Set(*m_element, name, value, where);
    }
    /// Writes the element itself. It throws as SetAttribute does.
    template <typename T>
    void SetValue(const T& value, const std::source_location& where = std::source_location::current())
    {
        XmlDetails::Details::Set(*m_element, value, where);
    }
    /// Adds a child of that name for each value.
    template <typename Container>
    void AddChildren(const AsciiStringView& name, const Container& values,
                     const std::source_location& where = std::source_location::current())
    {
        for (const auto& value : values)
            Child(
                name, [&](XmlSerializer& child) { child.SetValue(value, where); }, where);
    }

    /// Of the element.
    [[nodiscard]] QString Name() const;
    /// @throws XmlException  it is none of XML.
    void SetName(const AsciiStringView& name,
                 const std::source_location& where = std::source_location::current());

    /// 0 unless SetVersion was called on this element or, before this one was added, on one above it.
    [[nodiscard]] int GetVersion() const noexcept { return m_version; }
    /// The version of the document: children that are added from now on carry it, and the root has it as its
    /// attribute "version".
    void SetVersion(int version);

    /// For what this class does not offer; belongs to the document.
    [[nodiscard]] tinyxml2::XMLElement& GetElement() const noexcept { return *m_element; }

private:
    tinyxml2::XMLElement* m_element;
    int m_version;
};
} // namespace vek
