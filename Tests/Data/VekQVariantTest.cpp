#include "VekAppCore/Data/VekQVariant.h"
#include "Support/TestSupport.h"
#include "VekAppCore/Data/VekQVariantDescriptorBase.h"
#include "VekAppCore/Data/VekQVariantMap.h"
#include <gmock/gmock.h>
#include <sstream>
#include <thread>

namespace vek::App
{
namespace
{
VekQVariant Number(int value) { return VekQVariant::From(value); }

TEST(HPath, IsSplitAndJoinedAtSlashes)
{
    using Row = std::tuple<const char*, HPath, QStringList, QString>;
    for (const auto& [fault, path, segments, text] :
         {Row("empty part kept", "/a//b/", {"a", "b"}, "a/b"), Row("slash taken for a segment", "/", {}, ""),
          Row("empty text not empty", QString(), {}, ""), Row("case lost", "A/a", {"A", "a"}, "A/a"),
          Row("last part lost", QString("a/b"), {"a", "b"}, "a/b"),
          Row("segments split again", QList<QString>{"a/b", ""}, {"a/b", ""}, "a/b/")})
    {
        EXPECT_EQ(path.GetSegments(), segments) << fault;
        EXPECT_EQ(path.ToString(), text) << fault;
    }
}

TEST(VekQVariant, MutableNavigationMakesTheContainerThatItNeeds)
{
    VekQVariant node = Number(5);
    node["k"] = Number(1);
    EXPECT_EQ(node.TypeName(), "vek::App::VekQVariantMap");
    EXPECT_EQ(node.As<VekQVariantMap>().Size(), 1U);
    VekQVariant list;
    list[3].Share();
    EXPECT_EQ(list.As<VekQVariantList>().size(), 4U);
    EXPECT_FALSE(list[0].HasValue() || list[0].IsShared());
    list[1] = Number(1);
    EXPECT_EQ(list.As<VekQVariantList>().size(), 4U);
    list["k"];
    EXPECT_TRUE(list.Is<VekQVariantMap>());
    EXPECT_TRUE(VekQVariant::From(VekQVariantMap()).HasValue());
}

TEST(VekQVariant, ConstNavigationRefusesWhatIsNotThere)
{
    VekQVariant tree;
    tree["a"][1] = Number(1);
    const VekQVariant& node = tree;
    const VekQVariant number = Number(1);
    using testing::ThrowsMessage;
    using namespace Exception;
    EXPECT_THAT([&] { node["b"]; }, ThrowsMessage<KeyNotFoundException>("Key not found: b"));
    EXPECT_THAT([&] { node[quint64(0)]; }, ThrowsMessage<WrongTypeException>("Wrong type"));
    EXPECT_THAT([&] { number["b"]; }, ThrowsMessage<WrongTypeException>("Wrong type"));
    EXPECT_THAT([&] { node["a"][2]; }, ThrowsMessage<std::out_of_range>("vector::at -- out of range"));
    EXPECT_THAT([&] { tree.As<VekQVariantList>(); }, ThrowsMessage<WrongTypeException>("Wrong type"));
    EXPECT_THAT(
        [&] { number.AsConst<VekQVariantMap>(); },
        testing::Throws<WrongTypeException>(testing::ResultOf(
            [](const auto& thrown) { return thrown.GetLocation().file_name(); }, testing::StrEq(__FILE__))));
    EXPECT_EQ(node["a"][1], number);
}

TEST(VekQVariant, FindGoesThroughMapsOnly)
{
    VekQVariant tree;
    tree["a"]["b"] = Number(1);
    tree["list"][0] = Number(2);
    tree["a/b"] = Number(3); // not reached by splitting
    const VekQVariant& constTree = tree;
    EXPECT_EQ(tree.Find(HPath()), &tree);
    EXPECT_EQ(*constTree.Find("a/b"), Number(1));
    EXPECT_EQ(*tree.Find(QList<QString>{"a/b"}), Number(3));
    for (const char* path : {"list/0", "a/c", "a/b/c", "A"})
        EXPECT_FALSE(tree.Find(path) || constTree.Find(path) || tree.Find(QString(path))) << path;
    VekQVariant number = Number(5);
    EXPECT_EQ(number.Find("/"), &number);
    *tree.Find("a/b") = Number(9);
    EXPECT_EQ(constTree["a"]["b"], Number(9));
}

TEST(VekQVariant, SharedCopiesSeeEachOtherUntilTheyUnshare)
{
    VekQVariant b = Number(1);
    const VekQVariant before = b;
    b.Share();
    VekQVariant a = Number(0);
    a = b;
    VekQVariant third = a;
    a["x"] = Number(2); // replaces the shared value
    EXPECT_EQ(std::as_const(b)["x"], Number(2));
    EXPECT_EQ(before, Number(1));
    a.Unshare();
    a["x"] = Number(3);
    EXPECT_EQ(std::as_const(b)["x"], Number(2));
    EXPECT_FALSE(a.IsShared());
    EXPECT_TRUE(b.IsShared());
    b.Reset();
    EXPECT_TRUE(b.IsShared());
    EXPECT_FALSE(third.HasValue());
    b.Share(); // again: nothing
    b = b.Clone();
    EXPECT_FALSE(b.IsShared());
    EXPECT_TRUE(third.IsShared());
}

TEST(VekQVariant, SwapExchangesValuesAndLeavesTheSharing)
{
    VekQVariant shared = Number(1);
    shared.Share();
    const VekQVariant partner = shared;
    VekQVariant owned = Number(2);
    shared.Swap(owned);
    EXPECT_TRUE(shared.IsShared());
    EXPECT_FALSE(owned.IsShared());
    EXPECT_EQ(owned, Number(1));
    EXPECT_EQ(partner.ToQVariant(), QVariant(2));
}

TEST(VekQVariant, CloneSharesNothingHoweverDeep)
{
    VekQVariant tree;
    VekQVariant shared = Number(1);
    shared.Share();
    tree["list"][1]["s"] = shared;
    VekQVariant clone = tree.Clone();
    EXPECT_FALSE(clone.Find("list")->operator[](1)["s"].IsShared());
    shared["new"] = Number(2);
    EXPECT_EQ(clone["list"][1]["s"], Number(1));
    EXPECT_TRUE(tree["list"][1]["s"].IsShared()); // the source is as before
    for (const VekQVariant& holder :
         {VekQVariant::From(VekQVariantMaps(1, tree.AsConst<VekQVariantMap>())), VekQVariant::From(tree),
          VekQVariant::From(QVariantList{tree.ToQVariant()}),
          VekQVariant::From(QVariantMap{{"k", tree.ToQVariant()}})})
    {
        EXPECT_NE(holder.Clone(), holder) << holder.TypeName().toStdString();
        EXPECT_TRUE(HasEqualContents(holder, holder.Clone()));
    }
    EXPECT_EQ(tree["list"][1]["s"]["new"], Number(2));
}

TEST(VekQVariant, EqualityIsOfOwnedValuesOrOfTheSameSharedOne)
{
    const auto makeTree = [](int leaf) {
        VekQVariant tree;
        tree["a"][0]["b"] = Number(leaf);
        return tree;
    };
    EXPECT_EQ(makeTree(1), makeTree(1));
    EXPECT_NE(makeTree(1), makeTree(2));
    VekQVariant one = Number(1);
    VekQVariant other = Number(1);
    one.Share();
    EXPECT_NE(one, other);
    EXPECT_TRUE(HasEqualContents(one, other));
    other.Share();
    EXPECT_NE(one, other); // equal, but not the same
    EXPECT_EQ(one, VekQVariant(one));
    VekQVariant tree = makeTree(1);
    tree["a"][0]["b"].Share();
    EXPECT_NE(tree, makeTree(1)); // down in the tree
    EXPECT_TRUE(HasEqualContents(tree, makeTree(1)));
    EXPECT_FALSE(HasEqualContents(tree, makeTree(2)));
    tree["a"][1];
    EXPECT_FALSE(HasEqualContents(tree, makeTree(1)));
}

TEST(VekQVariant, StatesAfterAMoveAreDestroyedAndAssignedTo)
{
    VekQVariant shared = Number(1);
    shared.Share();
    VekQVariant taken = std::move(shared);
    EXPECT_TRUE(shared.IsShared()); // NOLINT: that is what a moved-from one says
    shared = Number(2);
    EXPECT_EQ(shared, Number(2));
    EXPECT_EQ(taken.ToQVariant(), QVariant(1));
}

TEST(VekQVariant, TakesItsOwnChildInItsPlace)
{
    const auto check = [](const auto& assign) {
        VekQVariant node;
        node["a"][1]["b"] = Number(7);
        assign(node);
        EXPECT_EQ(node, Number(7));
    };
    check([](VekQVariant& node) { node = *&node["a"][1]["b"]; });
    check([](VekQVariant& node) { node = std::move(node["a"][1]["b"]); });
    check([](VekQVariant& node) {
        node["a"][1]["b"].Share();
        node = node["a"][1]["b"];
        EXPECT_TRUE(node.IsShared());
        node.Unshare();
    });
    check([](VekQVariant& node) {
        auto& map = node.As<VekQVariantMap>();
        map = map["a"][1].As<VekQVariantMap>();
        node = node["b"];
    });
    check([](VekQVariant& node) {
        node["a"][1] = VekQVariant::From(VekQVariantList(1, Number(7)));
        auto& list = node["a"].As<VekQVariantList>();
        list = list[1].As<VekQVariantList>();
        node = node["a"][0];
    });
}

TEST(VekQVariant, ListThatCannotBeLosesNothing)
{
    VekQVariant node = Number(1);
    for (const quint64 index : {~quint64(0), ~quint64(0) / 40})
    {
        EXPECT_THROW(node[index], std::length_error);
        EXPECT_EQ(node, Number(1));
    }
}

TEST(VekQVariant, MutableAccessCopiesNothingThatItOwnsAlone)
{
    VekQVariant tree;
    const VekQVariant* const leaf = &tree["a"][0]["b"]["leaf"];
    tree["a"][0]["b"]["other"] = Number(1);
    EXPECT_EQ(&tree["a"][0]["b"]["leaf"], leaf);
    EXPECT_EQ(tree["a"].Find("b"), nullptr);
    const VekQVariant copy = tree;
    tree["a"][0]["b"]["other"] = Number(2); // now there is another owner
    EXPECT_EQ(copy["a"][0]["b"]["other"], Number(1));
}

TEST(VekQVariant, TraverseAndDumpGoThroughParentsFirst)
{
    VekQVariant tree;
    tree["k2"][0] = VekQVariant::From(QString("x"));
    tree["k2"][1] = VekQVariant::From(QString("y"));
    tree["k1"] = Number(1);
    QStringList visited;
    tree.Traverse([&visited](const HPath& path, VekQVariant& node) {
        visited += path.ToString();
        if (node.Is<int>())
            node = VekQVariant::From(2.5);
    });
    EXPECT_EQ(visited, QStringList({"", "k1", "k2", "k2/0", "k2/1"}));
    const TestSupport::LogRecorder log;
    DumpStructure(tree);
    using Line = TestSupport::LogLine;
    const auto debug = Log::Verbosity::Debug;
    EXPECT_THAT(log.GetLines(),
                testing::ElementsAre(Line{debug, " (vek::App::VekQVariantMap): k1: 2.5; k2: [2]"},
                                     Line{debug, "k1 (double): 2.5"},
                                     Line{debug, "k2 (vek::App::VekQVariantList): x; y"},
                                     Line{debug, "k2/0 (QString): x"}, Line{debug, "k2/1 (QString): y"}));
    std::ostringstream printed;
    PrintTo(tree["k1"], &printed);
    EXPECT_EQ(printed.str(), R"(VekQVariant("double", "2.5"))");
}

TEST(VekQVariant, SharedCopiesAreMadeAndDroppedOnManyThreads)
{
    VekQVariant node = Number(1);
    node.Share();
    {
        std::vector<std::jthread> threads;
        for (int i = 0; i < 4; ++i)
            threads.emplace_back([copy = node] {
                for (int round = 0; round < 10'000; ++round)
                    VekQVariant(copy).Unshare();
            });
    }
    EXPECT_EQ(node.ToQVariant(), QVariant(1));
}

TEST(VekQVariantDescriptorBase, KeepsAMapOfItsTypeAndReplacesAnythingElse)
{
    const auto makeMap = [](const QString& type) {
        VekQVariant node;
        node["child"] = Number(1);
        if (!type.isEmpty())
            node.As<VekQVariantMap>().SetType(type);
        return node;
    };
    VekQVariant shared = makeMap("t");
    shared.Share();
    using Row = std::tuple<const char*, VekQVariant, QString, bool>;
    for (const auto& [fault, before, type, isKept] :
         {Row("fitting map emptied", makeMap("T"), "T", true),
          Row("map without a type emptied", makeMap(""), "", true),
          Row("invalid value kept", VekQVariant(), "T", false), Row("number kept", Number(1), "", false),
          Row("other type taken", makeMap("t"), "T", false),
          Row("typed map taken for any", makeMap("T"), "", false),
          Row("shared value left to its partners", shared, "T", false)})
    {
        SCOPED_TRACE(fault);
        VekQVariant node = before;
        const VekQVariant partner = node;
        bool isFit = true;
        try
        {
            VekQVariantDescriptorBase(std::as_const(node), type);
        }
        catch (const Exception::WrongTypeException&)
        {
            isFit = false;
        }
        EXPECT_EQ(isFit, isKept);
        EXPECT_EQ(node, partner);
        VekQVariantDescriptorBase view(node, type);
        EXPECT_EQ(&view.GetValueRef(), &node);
        const auto& map = node.AsConst<VekQVariantMap>();
        EXPECT_EQ(map.Contains("child"), isKept);
        EXPECT_EQ(map.GetType(), type);
        EXPECT_EQ(map.Contains("{type}"), !type.isEmpty());
        EXPECT_EQ(partner == node, isKept || partner.IsShared()); // its partners see it
    }
}
} // namespace
} // namespace vek::App
