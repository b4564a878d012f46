#pragma once
#include "VekAppCore/Export.h"
#include "VekBase/ScopeBase.h"
#include <QChar>
#include <QLocale>
#include <QString>
#include <optional>

/// Small text tasks. Thread-safe, but for changing the locale in force.
namespace vek::StringUtility
{
/// -1, 0 or 1, with runs of the digits 0 to 9 compared as numbers: "file2" comes before "file10". A run
/// beyond 64 bits counts as 0.
[[nodiscard]] VEKAPPCORE_EXPORT int NumberAwareCompare(const QString& a, const QString& b,
                                                       Qt::CaseSensitivity cs);

/// The items with separators between them; of more than 2 @p n only the first and last @p n, "..." between
/// them. The first item always is there.
[[nodiscard]] VEKAPPCORE_EXPORT QString GetQStringFromList(const QList<QString>& list,
                                                           const QString& separator, int n);

/// With the words "_", "plus", "minus" and "dot" in place of blank, +, - and point.
[[nodiscard]] VEKAPPCORE_EXPORT QString CleanString(const QString& s);

/// The name of a type without "class", namespaces and blanks.
[[nodiscard]] VEKAPPCORE_EXPORT QString ExtractRttiClassName(const QString& s);

/// Only characters from the blank to 0x7F: neither tabs nor line feeds.
[[nodiscard]] VEKAPPCORE_EXPORT bool IsOnlyAsciiCharacters(const QString& s);

/// @{
/// ": " and "; " with the spacing of the user's language.
[[nodiscard]] VEKAPPCORE_EXPORT QString Colon();
[[nodiscard]] VEKAPPCORE_EXPORT QString SemiColon();
/// @}

/// Of the locale in force, or of the C locale.
[[nodiscard]] VEKAPPCORE_EXPORT QString GetDecimalSeparator(bool useSystemLocale);
/// Of the locale in force, or the C locale's decimal point.
[[nodiscard]] VEKAPPCORE_EXPORT QString GetThousandSeparator(bool useSystemLocale);

/// Between the columns of exported tables: ";" where @p locale writes a decimal comma, else ",". Without a
/// locale, of the one in force; unless it was changed, what the system has for it.
[[nodiscard]] VEKAPPCORE_EXPORT QChar GetColumnSeparator(const std::optional<QLocale>& locale = std::nullopt);

/// The locale in force: the system's, unless it was changed.
[[nodiscard]] VEKAPPCORE_EXPORT QLocale GetQSystemLocale();

/// Puts a locale into force until the scope ends; then that of before is again. Main thread only, while no
/// other thread asks for it.
/// @param locale  empty for the system's.
[[nodiscard]] VEKAPPCORE_EXPORT ScopeBase ChangeQSystemLocale(const std::optional<QLocale>& locale);
} // namespace vek::StringUtility
