#include "VekAppCore/Data/VekQVariant.h"
#include "Support/TestSupport.h"
#include "VekAppCore/Data/VekQVariantDescriptorBase.h"
#include "VekAppCore/Data/VekQVariantMap.h"
#include <gtest/gtest.h>
#include <sstream>
#include <thread>

namespace vek::App
{
namespace
{
template <typename Exception>
std::string GetMessage(const std::function<void()>& function)
{
    try
    {
        function();
    }
    catch (const Exception& exception)
    {
        return exception.what();
    }
    return "nothing thrown";
}

VekQVariant Number(int value) { return VekQVariant::From(value); }

struct PathCase
{
    const char* fault;
    HPath path;
    QStringList segments;
    QString text;
};
void PrintTo(const PathCase& row, std::ostream* out) { *out << row.fault; }
class HPathText : public testing::TestWithParam<PathCase>
{};

TEST_P(HPathText, IsSplitAndJoinedAtSlashes)
{
    EXPECT_EQ(GetParam().path.GetSegments(), GetParam().segments);
    EXPECT_EQ(GetParam().path.ToString(), GetParam().text);
}
INSTANTIATE_TEST_SUITE_P(
    Rows, HPathText,
    testing::Values(PathCase{"empty part kept", "/a//b/", {"a", "b"}, "a/b"},
                    PathCase{"slash taken for a segment", "/", {}, ""},
                    PathCase{"empty text not empty", QString(), {}, ""},
                    PathCase{"case lost", "A/a", {"A", "a"}, "A/a"},
                    PathCase{"last part lost", QString("a/b"), {"a", "b"}, "a/b"},
                    PathCase{"segments split again", QList<QString>{"a/b", ""}, {"a/b", ""}, "a/b/"}));

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
    using namespace Exception;
    EXPECT_EQ(GetMessage<KeyNotFoundException>([&] { node["b"]; }), "Key not found: b");
    EXPECT_EQ(GetMessage<WrongTypeException>([&] { node[quint64(0)]; }), "Wrong type");
    EXPECT_EQ(GetMessage<WrongTypeException>([&] { number["b"]; }), "Wrong type");
    EXPECT_EQ(GetMessage<std::out_of_range>([&] { node["a"][2]; }), "vector::at -- out of range");
    EXPECT_EQ(GetMessage<WrongTypeException>([&] { tree.As<VekQVariantList>(); }), "Wrong type");
    EXPECT_EQ(node["a"][1], number);
    try
    {
        static_cast<void>(number.AsConst<VekQVariantMap>());
        FAIL();
    }
    catch (const WrongTypeException& exception)
    {
        EXPECT_TRUE(QString(exception.GetLocation().file_name()).endsWith("VekQVariantTest.cpp"));
    }
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
        EXPECT_FALSE(tree.Find(path) || constTree.Find(path)) << path;
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
    std::vector<TestSupport::LogLine> lines;
    for (const char* line :
         {" (vek::App::VekQVariantMap): k1: 2.5; k2: [2]", "k1 (double): 2.5",
          "k2 (vek::App::VekQVariantList): x; y", "k2/0 (QString): x", "k2/1 (QString): y"})
        lines.push_back({Log::Verbosity::Debug, line});
    EXPECT_EQ(log.GetLines(), lines);
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

struct DescriptorCase
{
    const char* fault;
    VekQVariant before;
    QString type;
    bool isKept;
};
void PrintTo(const DescriptorCase& row, std::ostream* out) { *out << row.fault; }
class Descriptor : public testing::TestWithParam<DescriptorCase>
{};

VekQVariant MakeMap(const QString& type)
{
    VekQVariant node;
    node["child"] = Number(1);
    if (!type.isNull())
        node.As<VekQVariantMap>().SetType(type);
    return node;
}

TEST_P(Descriptor, KeepsAMapOfItsTypeAndReplacesAnythingElse)
{
    VekQVariant node = GetParam().before;
    VekQVariant partner = node;
    const bool isFit = [&node] {
        try
        {
            VekQVariantDescriptorBase(std::as_const(node), GetParam().type);
        }
        catch (const Exception::WrongTypeException&)
        {
            return false;
        }
        return true;
    }();
    EXPECT_EQ(isFit, GetParam().isKept);
    EXPECT_EQ(node, partner);
    VekQVariantDescriptorBase view(node, GetParam().type);
    EXPECT_EQ(&view.GetValueRef(), &node);
    const auto& map = node.AsConst<VekQVariantMap>();
    EXPECT_EQ(map.Contains("child"), GetParam().isKept);
    EXPECT_EQ(map.GetType(), GetParam().type);
    EXPECT_EQ(map.Contains("{type}"), !GetParam().type.isEmpty());
    EXPECT_EQ(partner == node, GetParam().isKept || partner.IsShared()); // its partners see it
}
INSTANTIATE_TEST_SUITE_P(Rows, Descriptor,
                         testing::Values(DescriptorCase{"fitting map emptied", MakeMap("T"), "T", true},
                                         DescriptorCase{"map without a type emptied", MakeMap({}), "", true},
                                         DescriptorCase{"invalid value kept", VekQVariant(), "T", false},
                                         DescriptorCase{"number kept", Number(1), "", false},
                                         DescriptorCase{"other type taken", MakeMap("t"), "T", false},
                                         DescriptorCase{"typed map taken for any", MakeMap("T"), "", false},
                                         DescriptorCase{"shared value left to its partners",
                                                        [] {
                                                            VekQVariant node = MakeMap("t");
                                                            node.Share();
                                                            return node;
                                                        }(),
                                                        "T", false}));
} // namespace
} // namespace vek::App
