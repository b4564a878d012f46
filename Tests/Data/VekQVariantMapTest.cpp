#include "VekAppCore/Data/VekQVariantMap.h"
#include "Support/TestSupport.h"
#include <algorithm>
#include <gmock/gmock.h>
#include <random>

namespace vek::App
{
namespace
{
VekQVariant Number(int value) { return VekQVariant::From(value); }

VekQVariantMap MakeMap(std::initializer_list<const char*> keys)
{
    VekQVariantMap map;
    for (const char* const key : keys)
        map[key] = Number(1);
    return map;
}

TEST(VekQVariantMap, GroupsPrefixTheSlotsAndNothingElse)
{
    VekQVariantMap map;
    {
        const ScopeBase a = map.ScopeGroup("a");
        map.BeginGroup("b/c");
        map.SetValueAsVariant("k", Number(1));
        EXPECT_TRUE(map.Contains("k"));
        EXPECT_FALSE(map.Contains("a/b/c/k"));
        EXPECT_EQ(map.GetValueAsVariant("k"), Number(1));
        EXPECT_FALSE(map["k"].HasValue()); // a second entry, at the top
        map.SetType("T");
        EXPECT_EQ(map.AllKeys(""), QStringList({"a/b/c/k", "k", "{type}"}));
        EXPECT_EQ(map.AllKeys("k"), QStringList({"a/b/c/k"}));
        map.RemoveValues("k"); // a key prefixed twice is found nowhere
        EXPECT_TRUE(map.RemoveValue("k"));
        EXPECT_FALSE(map.RemoveValue("k"));
        map.EndGroup();
        EXPECT_FALSE(map.Contains("b/c", "k"));
    }
    map.EndGroup(); // none is open
    EXPECT_EQ(map.AllKeys(""), QStringList({"k", "{type}"}));
    map.BeginGroup("g");
    map.ClearValues();
    map.SetValueAsVariant("k", Number(1));
    EXPECT_EQ(map.AllKeys(""), QStringList("g/k"));
}

TEST(VekQVariantMap, AllKeysBeginWithThePrefixAsText)
{
    const VekQVariantMap map = MakeMap({"ab", "abc/x", "a.b", "aXb", "b", "Ab"});
    EXPECT_EQ(map.AllKeys("ab"), QStringList({"ab", "abc/x"}));
    EXPECT_EQ(map.AllKeys("a."), QStringList("a.b"));
    EXPECT_EQ(map.AllKeys(""), QStringList({"Ab", "a.b", "aXb", "ab", "abc/x", "b"}));
    EXPECT_TRUE(map.AllKeys("c").isEmpty());
}

TEST(VekQVariantMap, KeysAreInTheOrderOfTexts)
{
    std::mt19937 random(1);
    VekQVariantMap map;
    QStringList keys;
    for (int i = 0; i < 500; ++i)
    {
        QString key;
        for (auto length = random() % 4; length > 0; --length)
            key += QChar(static_cast<char16_t>(random() % 2 ? 'a' + random() % 3 : random() % 0x10000));
        map[key];
        keys += key;
    }
    keys.removeDuplicates();
    std::ranges::sort(keys); // as QString compares
    EXPECT_EQ(map.AllKeys(""), keys);
}

TEST(VekQVariantMap, AtNeverInsertsAndTypeIsAnOrdinaryEntry)
{
    VekQVariantMap map;
    EXPECT_EQ(map.GetType(), "");
    const auto isFromHere = [](const Exception::KeyNotFoundException& thrown) {
        return std::string(thrown.GetLocation().file_name()) == __FILE__;
    };
    EXPECT_THAT([&] { map.At("k%1") = Number(1); },
                testing::ThrowsMessage<Exception::KeyNotFoundException>("Key not found: k%1"));
    EXPECT_THAT([&] { map.At("k"); },
                testing::Throws<Exception::KeyNotFoundException>(testing::Truly(isFromHere)));
    EXPECT_THROW(std::as_const(map)["k"], Exception::KeyNotFoundException);
    EXPECT_EQ(map.Size(), 0U);
    map.SetType("T");
    EXPECT_EQ(map.AllKeys(""), QStringList("{type}"));
    EXPECT_EQ(map.GetType(), "T");
    map["{type}"] = Number(1);
    EXPECT_EQ(map.GetType(), "");
}

TEST(VekQVariantMap, CopiesAreIndependentExceptForSharedValues)
{
    VekQVariantMap map = MakeMap({"a", "s"});
    map["s"].Share();
    map.BeginGroup("g");
    VekQVariantMap copy = map;
    EXPECT_EQ(copy, map);
    copy["a"] = Number(2);
    copy["s"]["x"] = Number(3);
    copy.EndGroup();
    EXPECT_EQ(map["a"], Number(1));
    EXPECT_EQ(map["s"]["x"], Number(3));
    EXPECT_EQ(map.GetValueAsVariant("k").HasValue(), false);
    map.SetValueAsVariant("k", Number(1));
    EXPECT_TRUE(map.AllKeys("").contains("g/k")); // its group is still open
}

TEST(VekQVariantMap, EqualityCountsEntriesAndGroupsButNotTheFormat)
{
    VekQVariantMap one = MakeMap({"a"});
    VekQVariantMap other = MakeMap({"a"});
    other.SetPreferedStoreFormat(EVariantStoreFormat::Readable);
    EXPECT_EQ(one.PreferedStoreFormat(), EVariantStoreFormat(0));
    EXPECT_EQ(other.PreferedStoreFormat(), EVariantStoreFormat(1));
    EXPECT_EQ(one, other);
    other.BeginGroup("g");
    EXPECT_NE(one, other);
    one.BeginGroup("g");
    EXPECT_EQ(one, other);
    one["a"] = Number(2);
    EXPECT_NE(one, other);
    one.Append(other); // in its own group
    EXPECT_EQ(one.AllKeys(""), QStringList({"a", "g/a"}));
}
} // namespace
} // namespace vek::App
