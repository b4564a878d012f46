#pragma once
#include "VekAppCore/Data/VekQVariant.h"
#include <QJsonValue>
#include <QStringList>

/// @file
/// Trees as JSON. Reentrant.
namespace vek::App
{
/// A tree, and what JSON could not say of it.
struct VariantJson
{
    QJsonValue value; ///< An object, array or value.
    /// What JSON has no place for, one line a node with its path: it is left out, or kept as text, as it
    /// says.
    QStringList losses;
};

/// Maps become objects, lists arrays, numbers numbers; other values their text.
[[nodiscard]] VEKAPPCORE_EXPORT VariantJson ToJson(const VekQVariant& node);

/// Objects become maps, arrays lists; whole numbers are read as 64-bit integers.
/// @throws Exception::OutOfRangeException  more than 512 levels.
[[nodiscard]] VEKAPPCORE_EXPORT VekQVariant FromJson(const QJsonValue& value);
} // namespace vek::App
