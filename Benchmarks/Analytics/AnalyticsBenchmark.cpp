#include "Network/Servers.h"
#include "Support/Pair.h"
#include "VekAppCore/Analytics/AnalyticsService.h"
#include "VekAppCore/App/ApplicationFrame.h"
#include <QDeadlineTimer>
#include <QJsonDocument>
#include <chrono>
#include <thread>

namespace vek::Analytics
{
namespace
{
using Benchmark::Check;

/// A round: one event is reported on the main thread. What the other threads do with it is waited for between
/// the rounds.
void SendEvent_Vek(benchmark::State& state)
{
    const TestSupport::ScriptedServer server;
    App::AppConfiguration configuration;
    configuration.analyticsAddress = server.GetUrl("").toString();
    App::ApplicationFrame frame(configuration);
    frame.Start();
    AnalyticsService& service = GetAnalyticsService();
    service.InitializeService({"G-1", "secret"}, "UA-1", "en", {}, {}, "client");
    service.SetServiceUsed(true);
    constexpr int events = 20;
    quint64 sent = 0;
    for ([[maybe_unused]] auto _ : state)
    {
        const auto begin = std::chrono::steady_clock::now();
        for (int i = 0; i < events; ++i)
            service.SendEvent("Menu", "Open File", "recent", i);
        const std::chrono::duration<double> time = std::chrono::steady_clock::now() - begin;
        state.SetIterationTime(time.count() / events);
        sent += events + 1; // and a batch of queries
        const QDeadlineTimer deadline(10'000);
        while (service.GetBackEnd()->GetSentCount() < sent && !deadline.hasExpired())
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    Check(state, service.GetBackEnd()->GetSentCount() == sent, "Not all was sent");
}
void SendEvent_Bound(benchmark::State& state)
{
    for ([[maybe_unused]] auto _ : state)
        state.SetIterationTime(20e-6);
}

const QString expected = QStringLiteral(
    R"({"client_id":"client","events":[{"name":"open_file","params":{"event_category":"Menu","event_label":"recent","event_value":5}}],)"
    R"("timestamp_micros":1700000000000001,"user_properties":{"cpu":{"value":"any"}}})");

void Payload_Vek(benchmark::State& state)
{
    QString payload;
    for ([[maybe_unused]] auto _ : state)
    {
        Analytics4Query query(OldEvent("Menu", "Open File", "recent", 5));
        query.SetClientID("client");
        query.SetUserProperties({{"cpu", "any"}});
        query.SetTimestamp(1'700'000'000'000'001);
        payload = query.GetPayload();
    }
    Check(state, payload == expected, "The payload is wrong");
}
void Payload_Qt(benchmark::State& state)
{
    QString payload;
    for ([[maybe_unused]] auto _ : state)
    {
        const QJsonObject parameters{
            {"event_category", "Menu"}, {"event_label", "recent"}, {"event_value", 5}};
        const QJsonObject event{{"name", QString("Open File").toLower().replace(' ', '_')},
                                {"params", parameters}};
        const QJsonObject body{{"client_id", "client"},
                               {"user_properties", QJsonObject{{"cpu", QJsonObject{{"value", "any"}}}}},
                               {"events", QJsonArray{event}},
                               {"timestamp_micros", qint64{1'700'000'000'000'001}}};
        payload = QString::fromUtf8(QJsonDocument(body).toJson(QJsonDocument::Compact));
    }
    Check(state, payload == expected, "The payload is wrong");
}

const Benchmark::Pairs pairs{
    {"Analytics/SendEvent", "20 us", 1.0, SendEvent_Vek, SendEvent_Bound, Benchmark::ETiming::Own},
    {"Analytics/Payload", "QJsonDocument", 0.9, Payload_Vek, Payload_Qt},
};
} // namespace
} // namespace vek::Analytics
