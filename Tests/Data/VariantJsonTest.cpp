#include "VekAppCore/Data/VariantJson.h"
#include "Support/TestSupport.h"
#include "VekAppCore/Data/VekQVariantMap.h"
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <gtest/gtest.h>
#include <limits>

namespace vek::App
{
namespace
{
TEST(VariantJson, TreesComeBackAndLossesAreTold)
{
    VekQVariant tree;
    tree["a"][0] = VekQVariant::From(std::numeric_limits<qint64>::max());
    tree["a"][1] = VekQVariant::From(0.1);
    tree["a"][2] = VekQVariant();
    tree["b"] = VekQVariant::From(true);
    tree["c"]["d"] = VekQVariant::From(QStringLiteral(u"\u00c4"));
    const VariantJson whole = ToJson(tree);
    EXPECT_TRUE(whole.losses.isEmpty());
    EXPECT_EQ(QJsonDocument(whole.value.toObject()).toJson(QJsonDocument::Compact),
              "{\"a\":[9223372036854775807,0.1,null],\"b\":true,\"c\":{\"d\":\"\xc3\x84\"}}");
    EXPECT_TRUE(HasEqualContents(FromJson(whole.value), tree));

    tree["b"] = VekQVariant::From(std::numeric_limits<double>::infinity());
    tree["c"]["d"] = VekQVariant::From(std::numeric_limits<quint64>::max());
    tree["c"].As<VekQVariantMap>().BeginGroup("g");
    tree["c"].Share();
    tree["uint"] = VekQVariant::From(4'000'000'000U);
    const VariantJson part = ToJson(tree);
    EXPECT_EQ(part.losses, QStringList({"b: double is kept as text", "c: sharing is left out",
                                        "c: open groups are left out", "c/d: qulonglong is kept as text"}));
    EXPECT_EQ(part.value["uint"].toInteger(), 4'000'000'000);
    EXPECT_EQ(part.value["b"], "inf");
    EXPECT_EQ(part.value["c"]["d"], "18446744073709551615");
}

TEST(VariantJson, NestingHasABound)
{
    QJsonValue value = 1;
    for (int level = 1; level < 512; ++level)
        value = QJsonArray{value};
    EXPECT_TRUE(FromJson(value).HasValue());
    EXPECT_THROW(static_cast<void>(FromJson(QJsonArray{value})), Exception::OutOfRangeException);
}
} // namespace
} // namespace vek::App
