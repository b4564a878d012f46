#include "VekAppCore/Analytics/Analytics4Query.h"
#include "Support/TestSupport.h"
#include <QJsonDocument>
#include <gtest/gtest.h>
#include <limits>

namespace vek::Analytics
{
namespace
{
std::string ToJson(const QJsonValue& value)
{
    return QJsonDocument(value.toObject()).toJson(QJsonDocument::Compact).toStdString();
}
} // namespace

TEST(Analytics4Query, EventsAreTheseObjects)
{
    EXPECT_EQ(ToJson(OldEvent("Menu", "Open File", {}, -1)),
              R"({"name":"open_file","params":{"event_category":"Menu"}})");
    EXPECT_EQ(
        ToJson(OldEvent("Menu", "Open  \u00c4", "a b", 0)),
        "{\"name\":\"open__\u00e4\",\"params\":{\"event_category\":\"Menu\",\"event_label\":\"a b\",\"event_value\":0}}");
    EXPECT_EQ(ToJson(PageViewEvent("Settings")),
              R"({"name":"page_view","params":{"page_location":"Settings","page_title":"Settings"}})");
    EXPECT_EQ(
        ToJson(TimingEvent("File", "load", 12.9, {})),
        R"({"name":"timer_tracking","params":{"timing_action":"load","timing_category":"File","value":12}})");
    EXPECT_EQ(
        ToJson(TimingEvent("File", "load", -12.9, "x")),
        R"({"name":"timer_tracking","params":{"timing_action":"load","timing_category":"File","timing_label":"x","value":-12}})");
    EXPECT_EQ(TimingEvent("a", "b", std::numeric_limits<double>::quiet_NaN(), {}).parameters[2].second, 0);
    EXPECT_EQ(TimingEvent("a", "b", 1e300, {}).parameters[2].second.toDouble(), 0x1p63 - 1024);
    OldEvent event("a", "b", {}, -1);
    event.parameters.emplace_back("my key", 1);
    event.parameters.emplace_back("my_key", 2);
    event.SetEngagement(1.5);
    event.isDebug = true;
    EXPECT_EQ(
        ToJson(event),
        R"({"name":"b","params":{"debug_mode":true,"engagement_time_msec":1.5,"event_category":"a","my_key":2}})");
}

TEST(Analytics4Query, BodyIsCompactJson)
{
    Analytics4Query query;
    EXPECT_EQ(query.GetPayload(),
              R"({"client_id":"","events":[],"timestamp_micros":0,"user_properties":{}})");
    EXPECT_TRUE(query.isValid());
    query = Analytics4Query({PageViewEvent("a"), OldEvent("b", "c", {}, 1)});
    query.AddEvent(PageViewEvent("d"));
    query.SetClientID("id");
    query.SetMeasurementID("G-1 &");
    query.SetApiSecretID("a+b%41");
    query.SetTimestamp(1'700'000'000'000'001);
    query.SetUserProperties({{"b", "2"}, {"a", "1"}});
    EXPECT_EQ(
        query.GetPayload(),
        R"({"client_id":"id","events":[{"name":"page_view","params":{"page_location":"a","page_title":"a"}},)"
        R"({"name":"c","params":{"event_category":"b","event_value":1}},)"
        R"({"name":"page_view","params":{"page_location":"d","page_title":"d"}}],)"
        R"("timestamp_micros":1700000000000001,"user_properties":{"a":{"value":"1"},"b":{"value":"2"}}})");
    EXPECT_EQ(query.GetUrlQuery().toString(QUrl::FullyEncoded),
              "measurement_id=G-1%20%26&api_secret=a%2Bb%2541");
}
} // namespace vek::Analytics
