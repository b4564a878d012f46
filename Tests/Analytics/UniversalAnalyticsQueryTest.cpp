#include "VekAppCore/Analytics/UniversalAnalyticsQuery.h"
#include "Support/TestSupport.h"
#include <gtest/gtest.h>

namespace vek::Analytics
{
TEST(UniversalAnalyticsQuery, ItemsAreThoseOfTheProtocol)
{
    UAEventQuery event("Menu", "Open");
    EXPECT_EQ(event.GetPayload(), "t=event&ec=Menu&ea=Open");
    event.SetEventLabel("a");
    event.SetEventValue(-5'000'000'000);
    event.SetPage("/a b");
    event.SetEventLabel("b"); // in its place
    event.AddCustomDimension({3, "x"});
    event.AddCustomMetric({12, "y"});
    EXPECT_EQ(event.GetPayload(), "t=event&ec=Menu&ea=Open&el=b&ev=-5000000000&dp=%2Fa%20b&cd3=x&cm12=y");
    UATimingQuery timing("File", "load", 12);
    timing.SetTimingLabel("l");
    EXPECT_EQ(timing.GetPayload(), "t=timing&utc=File&utv=load&utt=12&utl=l");
    EXPECT_EQ(UAPageviewQuery("/").GetPayload(), "t=pageview&dp=%2F");
    EXPECT_EQ(UAPageviewQuery().GetPayload(), "t=pageview");

    UniversalAnalyticsQuery query;
    query.AddQueryItem("a+b&=", "1+1=2&%\n\u00e4");
    query.AddQueryItem("a+b&=", QString());
    EXPECT_EQ(query.GetPayload(), "a%2Bb%26%3D=1%2B1%3D2%26%25%0A%C3%A4&a%2Bb%26%3D=");
    query += query;
    EXPECT_EQ(query.GetItems().size(), 4);
}

TEST(UniversalAnalyticsQuery, IsValidWithFourItems)
{
    const UniversalAnalyticsQuery::Items items{{"v", "1"}, {"tid", "U"}, {"cid", "c"}, {"t", "event"}};
    for (qsizetype missing = -1; missing < items.size(); ++missing)
    {
        UniversalAnalyticsQuery query;
        for (qsizetype i = 0; i < items.size(); ++i)
            query.AddQueryItem(items[i].first, i == missing ? QString() : items[i].second);
        EXPECT_EQ(query.isValid(), missing < 0) << missing;
    }
}
} // namespace vek::Analytics
