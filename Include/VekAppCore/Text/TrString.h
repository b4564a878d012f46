#pragma once
#include "VekAppCore/Export.h"
#include "VekBase/LogText.h"
#include <QString>
#include <concepts>
#include <memory>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace vek
{
/// A truth value that is shown as the translated "Yes" or "No".
class Bool
{
public:
    /// Also from a plain truth value, where an argument is wanted.
    constexpr Bool(bool isTrue = false) noexcept : m_isTrue(isTrue) {}
    constexpr explicit operator bool() const noexcept { return m_isTrue; }
    constexpr bool operator==(const Bool&) const noexcept = default;

private:
    bool m_isTrue;
};

class TrString;

/// "Yes" or "No", translated in the empty context.
[[nodiscard]] VEKAPPCORE_EXPORT TrString ToTrString(Bool value);

/// A text for the user that is translated when it is shown: it holds the recipe of a text (what to look up,
/// arguments, replacements, pieces), so that one made before a change of language shows the new language
/// afterwards. Copies share the recipe until one of them is changed. Copying, dropping and rendering are
/// thread-safe; changing one object is not, and Replace changes all its copies.
///
/// @code
/// const TrString title = TrString::translate("Desk", "Reading %1").Arg(QString("Plate.xyz"));
/// const QString shown = title.ToString(); // in the language of now
/// @endcode
class VEKAPPCORE_EXPORT TrString
{
public:
    /// Shows nothing.
    TrString();
    /// @param source  the text to translate, in English; UTF-8 of it is looked up.
    TrString(std::string_view context, const QString& source, const QString& disambiguation);
    TrString(const TrString&) noexcept = default;
    /// The source is left without a recipe: it shows nothing and stays so.
    TrString(TrString&&) noexcept = default;
    TrString& operator=(const TrString&) noexcept = default;
    TrString& operator=(TrString&&) noexcept = default;
    ~TrString() = default;

    /// A text that is shown as it is in every language.
    [[nodiscard]] static TrString NoTranslate(const QString& text);

    /// A text to look up, as QCoreApplication::translate takes it; Qt's lupdate finds the calls. Views are
    /// UTF-8.
    [[nodiscard]] static TrString translate(std::string_view context, std::string_view source,
                                            const char* disambiguation = nullptr, int n = -1);

    /// @{
    /// Fills the lowest placeholder (%1 to %99) that is still open, like QString::arg: text, a TrString
    /// (rendered when this one is), an integer, a floating-point number or a Bool.
    template <typename T>
    TrString& Arg(const T& value) &
    {
        _AddArg(value);
        return *this;
    }
    template <typename T>
    [[nodiscard]] TrString Arg(const T& value) &&
    {
        _AddArg(value);
        return std::move(*this);
    }
    /// @}

    /// Replaces text in what is rendered, after the arguments; case-sensitive. All copies of this string see
    /// it.
    void Replace(const QString& before, const QString& after);

    TrString& operator+=(const TrString& other);
    [[nodiscard]] TrString operator+(const TrString& other) const;

    /// The text in the current language.
    /// @param key  true for the text without translation, as GetKey gives it.
    [[nodiscard]] QString ToString(bool key = false) const;

    /// The text in the source language, for logs and keys.
    [[nodiscard]] QString GetKey() const;

    /// True when there is neither text nor source nor piece; arguments do not count.
    [[nodiscard]] bool IsEmpty() const;

    /// Compares recipes, not texts. Replacements do not count, and a moved-from string is unequal to
    /// everything.
    bool operator==(const TrString& other) const;

protected:
    struct CreateClone
    {};

    /// @{
    /// As NoTranslate and translate, for derived classes; the last one takes a copy with a recipe of its own.
    explicit TrString(const QString& text);
    TrString(std::string_view context, std::string_view source, const char* disambiguation, int n);
    TrString(const TrString& other, CreateClone);
    /// @}

    void _Arg(const QString& value);
    void _Arg(const TrString& value);

private:
    struct Impl;

    template <typename T>
    void _AddArg(const T& value)
    {
        if constexpr (std::is_same_v<T, Bool>)
            _Arg(ToTrString(value));
        else if constexpr (std::floating_point<T>)
            _Arg(QStringLiteral("%1").arg(static_cast<double>(value)));
        else if constexpr (std::integral<T>)
        {
            static_assert(!std::is_same_v<T, bool>, "Use vek::Bool");
            _Arg(QStringLiteral("%1").arg(value));
        }
        else if constexpr (std::derived_from<T, TrString>)
            _Arg(static_cast<const TrString&>(value));
        else
            _Arg(QString(value));
    }

    void _CloneIfShared();
    [[nodiscard]] QString _Render(bool key) const;

    std::shared_ptr<Impl> m_body; ///< Null in a moved-from string only.
};

/// The text in the source language.
[[nodiscard]] VEKAPPCORE_EXPORT std::string ToLogText(const TrString& text);
/// Of nothing that converts to it, such as a pointer.
template <std::same_as<Bool> T>
[[nodiscard]] std::string ToLogText(T value)
{
    return ToLogText(ToTrString(value));
}

/// What the translation macros call.
class VEKAPPCORE_EXPORT TrStringHelper
{
public:
    /// As TrString::translate.
    [[nodiscard]] static TrString translate(const char* context, const char* source,
                                            const char* disambiguation = nullptr, int n = -1);
};

/// The strings of @p list with @p separator between them. Leading ones that are empty are left out with their
/// separator; later ones keep it.
[[nodiscard]] VEKAPPCORE_EXPORT TrString Join(const std::vector<TrString>& list, const TrString& separator);
} // namespace vek
