#pragma once
#include "VekAppCore/Analytics/Analytics4Query.h"
#include "VekAppCore/Analytics/UniversalAnalyticsQuery.h"
#include "VekAppCore/Network/HttpService.h"
#include "VekBase/LogText.h"
#include <QDateTime>
#include <memory>
#include <optional>
#include <vector>

namespace vek::Analytics
{
/// What is sent with every report. Other values are ignored.
enum class EApplicationParameter : int
{
    ClientId = 0,
    TrackingId = 1,
    MeasurementId = 2,
    ApiSecret = 3,
    DataSource = 4,
    ApplicationName = 5,
    ApplicationId = 6,
    ApplicationVersion = 7,
    FullVersion = 8,
    Processor = 9,
    GraphicsCard = 10,
    ScreenSize = 11,
    Language = 12,
    HostName = 15,
};
[[nodiscard]] VEKAPPCORE_EXPORT std::string ToLogText(EApplicationParameter parameter);
using vek::PrintTo;

/// Sends reports by the HTTP service, Universal Analytics queries in batches by a thread of its own, and
/// knows what is sent with each of them. Thread-safe, but for Start and Stop.
class VEKAPPCORE_EXPORT GoogleAnalyticsService
{
public:
    /// What has been handed to the HTTP service.
    struct Sent
    {
        QDateTime time;  ///< When.
        QString path;    ///< Of the address.
        QString payload; ///< The body, as it went.
    };
    static constexpr std::size_t mostSentKept = 50;  ///< GetSent has the last ones.
    static constexpr std::size_t mostPending = 1000; ///< Queries; the oldest are dropped.

    GoogleAnalyticsService();
    /// As Stop.
    ~GoogleAnalyticsService();
    GoogleAnalyticsService(const GoogleAnalyticsService&) = delete;
    GoogleAnalyticsService& operator=(const GoogleAnalyticsService&) = delete;

    /// Without one, what is to be sent is reported as an error, and dropped.
    void SetHttp(const Network::HttpSender& http);
    /// Scheme, host and port of the collection host.
    void SetAddress(const QUrl& address);
    /// Another value for one that has been set replaces it.
    void SetApplicationParameter(EApplicationParameter parameter, const QString& value);
    /// Sent with every Universal Analytics query from now on; replaces one of that number.
    void SetCustomDimension(const CustomDimension& dimension);
    /// Sent with every GA4 event from now on.
    void SetUserProperty(const QString& name, const QString& value);

    /// While it is set, nothing is sent, and what is pending is dropped.
    void SetSuppressing(bool isSuppressing);
    /// Reports go to the "/debug" paths, and the answers into the log, at level 4.
    void SetDebug(bool isDebug);
    /// False at first.
    [[nodiscard]] bool IsDebug() const;

    /// Sends the query with the next batch: with 20 that are pending, or within 60 seconds. Of more than 1000
    /// that are pending, the oldest are dropped.
    /// @param flush  at once.
    void BatchQuery(const UniversalAnalyticsQuery& query, bool flush);
    /// @{
    /// Sends it at once, by the thread. The future may be dropped, as that of SendEvent; both are a broken
    /// promise where nothing is sent.
    std::future<QString> SendQuery(const UniversalAnalyticsQuery& query);
    std::future<QString> SendEvent(const Analytics4Query::Event& event);
    /// @}

    /// @{
    /// Reports the begin and the end of a session, at once.
    void StartSession(const QString& page);
    void StopSession();
    /// @}

    /// Starts the thread.
    void Start();
    /// Sends what is pending, waits for it for 150 ms at most, and ends the thread.
    void Stop();

    /// The newest last.
    [[nodiscard]] std::vector<Sent> GetSent() const;
    /// Rises with every payload.
    [[nodiscard]] quint64 GetSentCount() const;
    /// That were pending, because there were too many.
    [[nodiscard]] quint64 GetDroppedCount() const;

private:
    struct Parameters;
    struct State;

    /// The thread's body.
    void Run();

    std::shared_ptr<State> m_state; ///< Answers may come later.
};

[[nodiscard]] VEKAPPCORE_EXPORT std::string ToLogText(const GoogleAnalyticsService::Sent& sent);
} // namespace vek::Analytics
