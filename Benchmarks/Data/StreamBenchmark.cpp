#include "Support/Pair.h"
#include "VekAppCore/Data/VekQVariantMap.h"
#include <QDataStream>
#include <QIODevice>

namespace vek::App
{
namespace
{
using Benchmark::Check;

constexpr int leafCount = 10'000;

QString GetKey(int leaf)
{
    return QStringLiteral("group%1/key%2").arg(leaf / 100, 2, 10, QLatin1Char('0')).arg(leaf % 100);
}

/// Whole numbers, numbers and texts in turn.
QVariant GetValue(int leaf)
{
    switch (leaf % 3)
    {
    case 0: return leaf;
    case 1: return leaf * 0.5;
    default: return QStringLiteral("text %1").arg(leaf);
    }
}

template <typename Map>
Map Make()
{
    Map map;
    for (int leaf = 0; leaf < leafCount; ++leaf)
        if constexpr (std::is_same_v<Map, VekQVariantMap>)
            map.SetValue(GetKey(leaf), GetValue(leaf));
        else
            map.insert(GetKey(leaf), GetValue(leaf));
    return map;
}

template <typename Map>
QByteArray Write(const Map& map)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(QDataStream::Qt_6_0);
    stream << map;
    return bytes;
}

/// A round: all leaves are written to memory.
template <typename Map>
void WriteAll(benchmark::State& state)
{
    const Map map = Make<Map>();
    QByteArray bytes;
    for ([[maybe_unused]] auto _ : state)
        bytes = Write(map);
    Check(state, bytes.size() > leafCount * 20, "Leaves are missing");
}

/// A round: all leaves are read from memory.
template <typename Map>
void ReadAll(benchmark::State& state)
{
    const Map map = Make<Map>();
    const QByteArray bytes = Write(map);
    Map read;
    for ([[maybe_unused]] auto _ : state)
    {
        read = Map();
        QDataStream stream(bytes);
        stream.setVersion(QDataStream::Qt_6_0);
        stream >> read;
    }
    Check(state, read == map, "A leaf is wrong");
}

const Benchmark::Pairs pairs{
    {"Stream/Write", "QVariantMap", 0.9, &WriteAll<VekQVariantMap>, &WriteAll<QVariantMap>},
    {"Stream/Read", "QVariantMap", 1.0, &ReadAll<VekQVariantMap>, &ReadAll<QVariantMap>}};
} // namespace
} // namespace vek::App
