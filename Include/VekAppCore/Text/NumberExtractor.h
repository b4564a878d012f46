#pragma once
#include "VekAppCore/Text/StringUtility.h"
#include "VekAppCore/Text/UnitConvert.h"
#include <QValidator>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

/// @file
/// Numbers and quantities in what people type and files hold: the first one found anywhere in a text, written
/// with the separators of the locale in force (StringUtility::GetQSystemLocale, when the extractor is made)
/// or of the C locale. Signs and digits are ASCII. Reentrant.
///
/// @code
/// const Convert::LengthExtractor extractor(Unit::LengthUnit::Millimeter);
/// if (const auto length = extractor.FromString("12in"))
///     qDebug() << *length;
/// @endcode
namespace vek::Convert
{
/// One number found in a text.
struct ExtractedNumberInfo
{
    double value = 0;   ///< As it is written: in its unit.
    bool whole = false; ///< It is the entire text.
    int length = 0;     ///< Of the match, with its unit.
    int decimals = 0;   ///< Significant ones: those that were written less the exponent, not negative.
    int exponent = 0;   ///< The power of ten that was written; 0 without one.
    QString text;       ///< The unit that was found with it; empty without one.
};
/// Value and unit.
[[nodiscard]] VEKAPPCORE_EXPORT std::string ToLogText(const ExtractedNumberInfo& number);

namespace Details
{
struct NumberGrammar;
struct NumberPatterns;
} // namespace Details

/// Reads numbers of one kind, and judges text as it is typed, as a QValidator does.
///
/// What the locale in force refuses is read as in the C locale, which may be something else: where no single
/// digit stands before a group separator, as in Spanish, "1.234" is a little more than 1.
class VEKAPPCORE_EXPORT NumberExtractorBase
{
public:
    virtual ~NumberExtractorBase();

    /// Acceptable is a number that is written as ToString would write it, with as many decimals and with
    /// group separators or without; Intermediate is what reads as a number otherwise, or may become one.
    /// Neither argument is changed.
    [[nodiscard]] virtual QValidator::State Validate(QString& text, int& pos) const = 0;
    /// Rewrites the text as the number that it holds, with its decimals, at most 15; as 0 when it holds none,
    /// or one that does not fit.
    virtual void Fixup(QString& text) const = 0;

    /// The same for a list with "; " between its items, as the user's language writes it, with or without
    /// the blanks: as good as its worst item, with all of them in one locale.
    [[nodiscard]] virtual QValidator::State ValidateList(QString& text, int& pos) const = 0;
    /// Leaves out empty items.
    virtual void FixupList(QString& text) const;

    /// @param flag  true leaves the decimals at 0 where the match is not the entire text.
    [[nodiscard]] std::optional<ExtractedNumberInfo> ExtractNumber(const QString& text, bool flag) const;

    /// @{
    /// Whether group separators are read, between groups of three digits; they are at first.
    [[nodiscard]] bool UsesThousands() const noexcept { return m_useThousands; }
    void SetUseThousands(bool useThousands) noexcept { m_useThousands = useThousands; }
    /// @}

    /// The one in force when the extractor was made.
    [[nodiscard]] const QLocale& GetLocale() const noexcept { return m_locale; }

protected:
    /// @param grammar  of the kind of number.
    explicit NumberExtractorBase(const Details::NumberGrammar& grammar);
    NumberExtractorBase(const NumberExtractorBase&);
    NumberExtractorBase& operator=(const NumberExtractorBase&);

    /// Parses the text and writes it again, to be compared; empty when it cannot be parsed.
    using Formatter = std::function<QString(const QString& text, const NumberOptions& options)>;
    [[nodiscard]] QValidator::State _Validate(const QString& text, const Formatter& format) const;
    [[nodiscard]] QValidator::State _ValidateList(const QString& text, const Formatter& format) const;

    /// The items, trimmed.
    [[nodiscard]] QStringList _Split(const QString& text) const;

    /// How Fixup writes what it reads.
    [[nodiscard]] NumberOptions _GetFixupOptions(const QString& text) const;

private:
    [[nodiscard]] std::optional<ExtractedNumberInfo> _Extract(const QString& text, bool flag,
                                                              bool& hasGroups) const;
    [[nodiscard]] QValidator::State _Validate(const QString& text, const Formatter& format,
                                              const Details::NumberPatterns& patterns) const;

    QLocale m_locale;
    std::shared_ptr<const Details::NumberPatterns> m_system;
    std::shared_ptr<const Details::NumberPatterns> m_c;
    bool m_hasCSeparators; ///< Both patterns match the same.
    bool m_useThousands = true;
    QString m_listSeparator;
};

/// Whole numbers.
class VEKAPPCORE_EXPORT IntExtractor : public NumberExtractorBase
{
public:
    IntExtractor();

    /// The first number, truncated toward zero; empty when there is none, or it does not fit.
    [[nodiscard]] std::optional<int> FromString(const QString& text) const;
    /// The same; beyond 2^53 as exact as a double.
    [[nodiscard]] std::optional<qint64> FromString64(const QString& text) const;
    /// @{
    /// Of each item that has one.
    [[nodiscard]] std::vector<int> ListFromString(const QString& text) const;
    [[nodiscard]] std::vector<qint64> ListFromString64(const QString& text) const;
    /// @}

    [[nodiscard]] QValidator::State Validate(QString& text, int& pos) const override;
    void Fixup(QString& text) const override;
    [[nodiscard]] QValidator::State ValidateList(QString& text, int& pos) const override;

    /// The pattern before it is localised: %thousand and %decimal stand for the separators.
    [[nodiscard]] static const QString& GetUnlocalizedRegexStr();
};

/// Numbers without a unit.
class VEKAPPCORE_EXPORT DoubleExtractor : public NumberExtractorBase
{
public:
    DoubleExtractor();

    /// The first number; empty when there is none.
    [[nodiscard]] std::optional<double> FromString(const QString& text) const;
    /// Of each item that has one.
    [[nodiscard]] std::vector<double> ListFromString(const QString& text) const;

    [[nodiscard]] QValidator::State Validate(QString& text, int& pos) const override;
    void Fixup(QString& text) const override;
    [[nodiscard]] QValidator::State ValidateList(QString& text, int& pos) const override;

    /// As that of IntExtractor.
    [[nodiscard]] static const QString& GetUnlocalizedRegexStr();
};

/// Numbers with a unit behind them, a blank between or none: Unit::Angle, Area, Length, Percent and Volume.
template <Unit::AnyQuantity U>
class VEKAPPCORE_EXPORT ValueWithUnitExtractor : public NumberExtractorBase
{
public:
    /// The enumeration of units of U.
    using UnitType = typename U::UnitType;

    ValueWithUnitExtractor();
    /// @param projectUnit  of what is written without one.
    explicit ValueWithUnitExtractor(UnitType projectUnit);

    /// The first number with its unit, or in the project unit; empty when there is none.
    [[nodiscard]] std::optional<U> FromString(const QString& text) const;
    /// Of each item that has one.
    [[nodiscard]] std::vector<U> ListFromString(const QString& text) const;

    /// The one that was set, else the default of Unit at the time of asking.
    [[nodiscard]] UnitType GetProjectUnit() const;
    /// @param unit  empty to follow the default.
    void SetProjectUnit(std::optional<UnitType> unit) { m_projectUnit = unit; }

    /// The whole text is a number with a unit of this kind.
    [[nodiscard]] bool IsTypedValue(const QString& text) const;

    [[nodiscard]] QValidator::State Validate(QString& text, int& pos) const override;
    void Fixup(QString& text) const override;
    [[nodiscard]] QValidator::State ValidateList(QString& text, int& pos) const override;

    /// As that of IntExtractor.
    [[nodiscard]] static const QString& GetUnlocalizedRegexStr();

private:
    std::optional<UnitType> m_projectUnit;
};

/// @{
/// Those that exist.
using LengthExtractor = ValueWithUnitExtractor<Unit::Length>;
using AreaExtractor = ValueWithUnitExtractor<Unit::Area>;
using VolumeExtractor = ValueWithUnitExtractor<Unit::Volume>;
using AngleExtractor = ValueWithUnitExtractor<Unit::Angle>;
using PercentExtractor = ValueWithUnitExtractor<Unit::Percent>;
/// @}

/// A number with the coordinate that was written before it.
struct DoubleWithPrefix
{
    QString prefix;   ///< In lower case, such as "x" or "dz"; empty without one.
    double value = 0; ///< The number.
    bool operator==(const DoubleWithPrefix&) const = default;
};
/// Prefix and value: "x=1.5".
[[nodiscard]] VEKAPPCORE_EXPORT std::string ToLogText(const DoubleWithPrefix& number);

/// The numbers of a text such as "X=1.5 y: 2 3", in their order, with the separators of either locale; what
/// is no number in any of them, such as "1.2.3", is left out.
[[nodiscard]] VEKAPPCORE_EXPORT std::vector<DoubleWithPrefix>
ExtractDoubleWithPrefixList(const QString& text);

/// Removes blanks around the text and, where the locale in force separates groups with a blank, any kind of
/// blank between digits.
VEKAPPCORE_EXPORT void SanitizeSingleValue(QString& text);
/// The same for a list. Where nothing else separates its items, blanks between digits do. Tabs and line feeds
/// become ";".
VEKAPPCORE_EXPORT void SanitizeListOfValues(QString& text);
} // namespace vek::Convert
