#pragma once
#include "VekAppCore/Xml/XmlDetails.h"
#include <QStringList>
#include <functional>
#include <optional>
#include <vector>

namespace vek
{
/// Walks an XML document while reading: stands on one element. It does not outlive its document. One thread
/// at a time uses a document and what stands in it, also for reading.
///
/// Where something mandatory is missing or wrong, members throw an XmlException that names the line, and
/// carries the caller's location.
class VEKAPPCORE_EXPORT XmlDeserializer
{
public:
    /// Is handed the element that it stands on.
    using Visit = std::function<void(XmlDeserializer&)>;

    /// @param version  of the document, for GetVersion.
    explicit XmlDeserializer(const tinyxml2::XMLElement& element, int version = 0) noexcept
        : m_element(&element), m_version(version)
    {}

    /// Calls @p visit with the first child of that name.
    void Child(const AsciiStringView& name, const Visit& visit, bool mandatory,
               const std::source_location& where = std::source_location::current()) const;
    /// Calls @p visit with every child of that name, in their order.
    void ForEachChild(const AsciiStringView& name, const Visit& visit, bool mandatory,
                      const std::source_location& where = std::source_location::current()) const;

    /// Whether the value was read; @p value is as before where it was not.
    template <typename T>
    bool GetAttribute(const AsciiStringView& name, T& value, bool mandatory,
                      const std::source_location& where = std::source_location::current()) const
    {
        return XmlDetails::Details::Get(*m_element, name, value, mandatory, where);
    }
    /// The attribute, which is mandatory.
    template <typename T>
    [[nodiscard]] T GetAttribute(const AsciiStringView& name,
                                 const std::source_location& where = std::source_location::current()) const
    {
        T value{};
        GetAttribute(name, value, true, where);
        return value;
    }
    /// The attribute, or @p fallback where there is none that can be read.
    template <typename T>
    [[nodiscard]] T GetAttributeOr(const AsciiStringView& name, T fallback) const
    {
        GetAttribute(name, fallback, false);
        return fallback;
    }

    /// Reads the element itself. A missing text counts as read unless it is mandatory.
    template <typename T>
    bool GetValue(T& value, bool mandatory,
                  const std::source_location& where = std::source_location::current()) const
    {
        return XmlDetails::Details::Get(*m_element, value, mandatory, where);
    }
    /// The value of the element, which is mandatory.
    template <typename T>
    [[nodiscard]] T GetValue(const std::source_location& where = std::source_location::current()) const
    {
        T value{};
        GetValue(value, true, where);
        return value;
    }
    /// The value of the element, or @p fallback where there is none that can be read.
    template <typename T>
    [[nodiscard]] T GetValueOr(T fallback) const
    {
        GetValue(fallback, false);
        return fallback;
    }

    /// Reads the values of all children of that name, in their order; without any, there are no values.
    /// @param mandatory  each of them must be read; else one without text has the value of a new T.
    /// @return false, with @p values unchanged, where one of them cannot be read.
    template <typename Container>
    bool GetChildren(const AsciiStringView& name, Container& values, bool mandatory,
                     const std::source_location& where = std::source_location::current()) const
    {
        Container read;
        bool isRead = true;
        const auto add = [&](const XmlDeserializer& child) {
            typename Container::value_type value{};
            isRead = child.GetValue(value, mandatory, where) && isRead;
            read.insert(read.end(), std::move(value));
        };
        ForEachChild(name, add, false);
        if (isRead)
            values = std::move(read);
        return isRead;
    }

    /// @{
    /// Also where it cannot be read.
    [[nodiscard]] bool HasChild(const AsciiStringView& name) const;
    [[nodiscard]] bool HasAttribute(const AsciiStringView& name) const;
    /// @}

    /// The names, in their order.
    [[nodiscard]] QStringList GetAllAtributes() const;

    /// Of the element.
    [[nodiscard]] QString GetName() const;
    /// Of the root's attribute "version"; 0 without one.
    [[nodiscard]] int GetVersion() const noexcept { return m_version; }
    /// From 1; 0 for an element that was not read from a text.
    [[nodiscard]] int GetLine() const noexcept { return m_element->GetLineNum(); }
    /// For what this class does not offer; belongs to the document.
    [[nodiscard]] const tinyxml2::XMLElement& GetElement() const noexcept { return *m_element; }

    /// Whether both have the same name, attributes in whatever order, and children and texts in the same
    /// order, all the way down. Line numbers and comments do not matter.
    /// @param ignoredAttributes  of no element compared.
    [[nodiscard]] bool IsEqual(const XmlDeserializer& other,
                               const std::vector<AsciiStringView>& ignoredAttributes) const;

    /// Throws "Line %1: <%2>: %3", with @p message as the third.
    /// @throws XmlException  always.
    [[noreturn]] void Throw(const QString& message,
                            const std::source_location& where = std::source_location::current()) const;

private:
    const tinyxml2::XMLElement* m_element;
    int m_version;
};
} // namespace vek
