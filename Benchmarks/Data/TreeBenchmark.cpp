#include "Support/Pair.h"
#include "VekAppCore/Data/VekQVariantMap.h"
#include <QJsonObject>
#include <array>
#include <numeric>

namespace vek::App
{
namespace
{
using Benchmark::Check;

/// Four levels of ten names each, or of the root's own number.
constexpr int width = 10;
const QStringList& Names(int first)
{
    static const QStringList few = [] {
        QStringList names;
        for (int i = 0; i < width; ++i)
            names += QStringLiteral("key%1").arg(i);
        return names;
    }();
    static const QStringList many = [] {
        QStringList names;
        for (int i = 0; i < width * width; ++i)
            names += QStringLiteral("key%1").arg(i, 2, 10, QLatin1Char('0'));
        return names;
    }();
    return first == width ? few : many;
}

template <typename SetLeaf>
void ForEachLeaf(int first, SetLeaf setLeaf)
{
    int value = 0;
    for (const QString& a : Names(first))
        for (const QString& b : Names(width))
            for (const QString& c : Names(width))
                for (const QString& d : Names(width))
                    setLeaf(std::array{&a, &b, &c, &d}, value++);
}

/// A tree of ours.
struct Vek
{
    VekQVariant root;

    void Set(const std::array<const QString*, 4>& path, int value)
    {
        root[*path[0]][*path[1]][*path[2]][*path[3]].SetValue(value);
    }
    [[nodiscard]] int Get(const HPath& path) const
    {
        const VekQVariant* const node = root.Find(path);
        return node ? node->AsConst<int>() : -1;
    }
    [[nodiscard]] int GetByText(const QString& path) const
    {
        const VekQVariant* const node = root.Find(path);
        return node ? node->AsConst<int>() : -1;
    }
};

/// One of Qt, changed and walked in place.
struct Qt
{
    QVariantMap root;

    static QVariantMap& Enter(QVariant& node)
    {
        if (node.metaType() != QMetaType::fromType<QVariantMap>())
            node = QVariantMap();
        return *static_cast<QVariantMap*>(node.data());
    }
    void Set(const std::array<const QString*, 4>& path, int value)
    {
        Enter(Enter(Enter(root[*path[0]])[*path[1]])[*path[2]])[*path[3]] = value;
    }
    [[nodiscard]] int Get(const QStringList& path) const
    {
        const QVariantMap* map = &root;
        for (qsizetype i = 0;; ++i)
        {
            const auto child = map->constFind(path[i]);
            if (child == map->constEnd())
                return -1;
            if (i + 1 == path.size())
                return *static_cast<const int*>(child->constData());
            if (child->metaType() != QMetaType::fromType<QVariantMap>())
                return -1;
            map = static_cast<const QVariantMap*>(child->constData());
        }
    }
    [[nodiscard]] int GetByText(const QString& path) const
    {
        return Get(path.split(u'/', ::Qt::SkipEmptyParts));
    }
};

struct Json
{
    QJsonObject root;

    [[nodiscard]] int GetByText(const QString& path) const
    {
        QJsonValue value = root;
        for (const QString& segment : path.split(u'/', ::Qt::SkipEmptyParts))
            value = value.toObject().value(segment);
        return value.toInt(-1);
    }
};

template <typename Tree>
Tree Build(int first)
{
    Tree tree;
    ForEachLeaf(first, [&tree](const auto& path, int value) { tree.Set(path, value); });
    return tree;
}

template <>
Json Build<Json>(int first)
{
    return {QJsonObject::fromVariantMap(Build<Qt>(first).root)};
}

constexpr int leafCount = width * width * width * width;
constexpr qint64 sumOfLeaves = qint64(leafCount) * (leafCount - 1) / 2;

template <typename Path>
const std::vector<Path>& Paths()
{
    static const std::vector<Path> paths = [] {
        std::vector<Path> made;
        ForEachLeaf(width, [&made](const auto& names, int) {
            const QStringList segments{*names[0], *names[1], *names[2], *names[3]};
            if constexpr (std::is_same_v<Path, QString>)
                made.push_back(segments.join(u'/'));
            else
                made.push_back(segments);
        });
        return made;
    }();
    return paths;
}

/// A round: every leaf is found by its path.
template <typename Tree, typename Path>
void Find(benchmark::State& state)
{
    const Tree tree = Build<Tree>(width);
    const std::vector<Path>& paths = Paths<Path>();
    qint64 sum = 0;
    for ([[maybe_unused]] auto _ : state)
    {
        sum = 0;
        for (const Path& path : paths)
            if constexpr (std::is_same_v<Path, QString>)
                sum += tree.GetByText(path);
            else
                sum += tree.Get(path);
    }
    Check(state, sum == sumOfLeaves, "A leaf is wrong");
}

/// A round: every leaf is set once more.
template <typename Tree>
void Set(benchmark::State& state)
{
    Tree tree = Build<Tree>(width);
    int added = 0;
    for ([[maybe_unused]] auto _ : state)
    {
        ++added;
        ForEachLeaf(width, [&](const auto& path, int value) { tree.Set(path, value + added); });
    }
    Check(state,
          tree.Get(Paths<std::conditional_t<std::is_same_v<Tree, Vek>, HPath, QStringList>>()[5]) ==
              5 + added,
          "A leaf is wrong");
}

/// A round: the tree is made and dropped.
template <typename Tree>
void BuildAll(benchmark::State& state)
{
    int last = 0;
    for ([[maybe_unused]] auto _ : state)
        last = Build<Tree>(width).GetByText(QStringLiteral("key9/key9/key9/key9"));
    Check(state, last == leafCount - 1, "The last leaf is wrong");
}

/// A round: a tree of 100,000 leaves is copied, and one leaf of the copy changed.
template <typename Tree>
void CopyAndChangeOne(benchmark::State& state)
{
    const Tree tree = Build<Tree>(width * width);
    const std::array names{QStringLiteral("key50"), QStringLiteral("key5"), QStringLiteral("key5"),
                           QStringLiteral("key5")};
    const QString path = QStringLiteral("key50/key5/key5/key5");
    int changed = 0;
    for ([[maybe_unused]] auto _ : state)
    {
        Tree copy = tree;
        copy.Set({&names[0], &names[1], &names[2], &names[3]}, -5);
        changed = copy.GetByText(path);
        benchmark::DoNotOptimize(copy);
    }
    Check(state, changed == -5 && tree.GetByText(path) == 50'555, "A leaf is wrong");
}

const Benchmark::Pairs pairs{
    {"Tree/Find", "QVariantMap in place", 1.1, &Find<Vek, HPath>, &Find<Qt, QStringList>},
    {"Tree/FindByText", "QVariantMap, split", 1.5, &Find<Vek, QString>, &Find<Qt, QString>},
    {"Tree/FindByText", "QJsonObject", 1.5, &Find<Vek, QString>, &Find<Json, QString>},
    {"Tree/Set", "QVariantMap in place", 1.1, &Set<Vek>, &Set<Qt>},
    {"Tree/Build", "QVariantMap in place", 1.1, &BuildAll<Vek>, &BuildAll<Qt>},
    {"Tree/CopyAndChangeOne", "QVariantMap in place", 1.0, &CopyAndChangeOne<Vek>, &CopyAndChangeOne<Qt>}};
} // namespace
} // namespace vek::App
