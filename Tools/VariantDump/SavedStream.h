#pragma once
#include "VekAppCore/Data/VekQVariant.h"
#include <QStringList>
#include <optional>

namespace vek::VariantDump
{
enum class EKind
{
    Variant,
    Map,
    List,
};

/// How a stream is to be read; what is empty is found out.
struct Reading
{
    std::optional<EKind> kind;
    std::optional<int> streamVersion; ///< Of QDataStream.
};

/// What a stream holds, as far as it can be read.
struct SavedStream
{
    App::VekQVariant tree; ///< A map or a list that was saved by itself is its root.
    EKind kind = EKind::Variant;
    int streamVersion = 0;
    qint64 end = 0;  ///< Where reading has stopped, in bytes.
    QString problem; ///< Empty where all of it was read.
};

/// Of the ways in which @p bytes are read whole the first is taken: as a variant, a map, a list, the newest
/// stream version before older ones. When there is none, the one that comes furthest.
[[nodiscard]] SavedStream Read(const QByteArray& bytes, const Reading& reading);

/// One line a node: indented, with its name, type and text.
[[nodiscard]] QStringList ToLines(const App::VekQVariant& tree);

/// One line for every path that only one of two trees has, or that differs.
[[nodiscard]] QStringList Compare(const App::VekQVariant& a, const App::VekQVariant& b);
} // namespace vek::VariantDump
