#include "VekAppCore/Analytics/Analytics4Query.h"
#include "Support/TestSupport.h"
#include <gtest/gtest.h>
#include <limits>

namespace vek::Analytics
{
TEST(Analytics4Query, EventsAreTheseObjects)
{
    OldEvent event("a", "b", {}, -1);
    event.parameters.emplace_back("my key", 1);
    event.parameters.emplace_back("my_key", 2);
    event.SetEngagement(1.5);
    event.isDebug = true;
    const std::pair<Analytics4Query::Event, const char*> rows[] = {
        {OldEvent("Menu", "Open File", {}, -1), R"({"name":"open_file","params":{"event_category":"Menu"}})"},
        {OldEvent("Menu", "Open  \u00c4", "a b", 0),
         R"({"name":"open__ä","params":{"event_category":"Menu","event_label":"a b","event_value":0}})"},
        {PageViewEvent("Settings"),
         R"({"name":"page_view","params":{"page_location":"Settings","page_title":"Settings"}})"},
        {TimingEvent("File", "load", 12.9, {}),
         R"({"name":"timer_tracking","params":{"timing_action":"load","timing_category":"File","value":12}})"},
        {TimingEvent("File", "load", -12.9, "x"),
         R"({"name":"timer_tracking","params":{"timing_action":"load","timing_category":"File","timing_label":"x","value":-12}})"},
        {event,
         R"({"name":"b","params":{"debug_mode":true,"engagement_time_msec":1.5,"event_category":"a","my_key":2}})"}};
    for (const auto& [row, json] : rows)
        EXPECT_EQ(ToLogText(row), json);
    EXPECT_EQ(TimingEvent::Truncate(std::numeric_limits<double>::quiet_NaN()), 0);
    EXPECT_EQ(TimingEvent::Truncate(1e300), 0x7ffffffffffffc00);
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
