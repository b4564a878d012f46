#include "VekAppCore/Analytics/GoogleAnalyticsService.h"
#include "VekAppCore/App/Log.h"
#include "VekAppCore/App/SafeCallable.h"
#include "VekBase/Exception.h"
#include "VekBase/Multithread.h"
#include <algorithm>
#include <array>
#include <condition_variable>
#include <deque>
#include <map>
#include <mutex>
#include <thread>
#include <variant>

namespace vek::Analytics
{
namespace
{
using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

constexpr std::size_t batchSize = 20;
constexpr auto longestPending = 60s;
constexpr auto longestStop = 150ms;
constexpr auto answerInterval = 50ms; ///< Between looks at the answers, in debug mode only.

struct ParameterRow
{
    EApplicationParameter parameter;
    const char* item;         ///< Of Universal Analytics; null without one.
    const char* userProperty; ///< Of GA4; null without one.
};
constexpr std::array parameterRows{
    ParameterRow{EApplicationParameter::ClientId, "cid", nullptr},
    ParameterRow{EApplicationParameter::TrackingId, "tid", nullptr},
    ParameterRow{EApplicationParameter::MeasurementId, nullptr, nullptr},
    ParameterRow{EApplicationParameter::ApiSecret, nullptr, nullptr},
    ParameterRow{EApplicationParameter::DataSource, "ds", nullptr},
    ParameterRow{EApplicationParameter::ApplicationName, "an", nullptr},
    ParameterRow{EApplicationParameter::ApplicationId, "aid", nullptr},
    ParameterRow{EApplicationParameter::ApplicationVersion, "av", nullptr},
    ParameterRow{EApplicationParameter::FullVersion, "aiid", "corvane_version"},
    ParameterRow{EApplicationParameter::Processor, "fl", "cpu"},
    ParameterRow{EApplicationParameter::GraphicsCard, "sd", "gpu"},
    ParameterRow{EApplicationParameter::ScreenSize, "sr", nullptr},
    ParameterRow{EApplicationParameter::Language, "ul", "application_language"},
    ParameterRow{EApplicationParameter::HostName, "dh", nullptr},
};

void Replace(UniversalAnalyticsQuery::Items& items, const QString& key, const QString& value)
{
    const auto found = std::ranges::find(items, key, &UniversalAnalyticsQuery::Items::value_type::first);
    if (found == items.end())
        items.emplace_back(key, value);
    else
        found->second = value;
}

/// The answer of a request, for the log, and for the one who asked.
struct Answer
{
    std::future<QString> future;
    std::promise<QString> asker;
};

void Pass(Answer& answer)
{
    try
    {
        const QString text = answer.future.get();
        App::Log(Log::Verbosity::Debug, text);
        answer.asker.set_value(text);
    }
    catch (...)
    {
        answer.asker.set_exception(std::current_exception());
    }
}

bool IsReady(const std::future<QString>& future) { return future.wait_for(0s) == std::future_status::ready; }
} // namespace

/// What is sent with every report. Never changed, but replaced: reports keep the one that they were made
/// with.
struct GoogleAnalyticsService::Parameters
{
    UniversalAnalyticsQuery::Items baseItems{{u"v"_s, u"1"_s}};
    std::map<QString, QString> userProperties;
    QString clientId;
    QString measurementId;
    QString apiSecret;

    [[nodiscard]] UniversalAnalyticsQuery Prepare(const UniversalAnalyticsQuery& query) const
    {
        UniversalAnalyticsQuery prepared;
        prepared.AddQueryItems(baseItems);
        return prepared += query;
    }

    [[nodiscard]] Analytics4Query Prepare(const Analytics4Query::Event& event, quint64 microseconds) const
    {
        Analytics4Query query(event);
        query.SetClientID(clientId);
        query.SetUserProperties(userProperties);
        query.SetMeasurementID(measurementId);
        query.SetApiSecretID(apiSecret);
        query.SetTimestamp(microseconds);
        return query;
    }
};

struct GoogleAnalyticsService::State
{
    /// A report that is sent at once. It is made on the thread, so that the caller need not wait for that.
    struct Single
    {
        std::shared_ptr<const Parameters> parameters;
        std::variant<Analytics4Query::Event, UniversalAnalyticsQuery> report;
        quint64 microseconds; ///< Since 1970, UTC.
        bool isDebug;
        std::promise<QString> promise;
    };

    mutable std::mutex mutex; ///< Guards all but the thread.
    std::condition_variable wake;
    std::thread thread;
    std::optional<Network::HttpSender> http;
    QUrl address;
    std::shared_ptr<const Parameters> parameters = std::make_shared<Parameters>();
    std::vector<Single> singles;                  ///< The oldest first.
    std::vector<UniversalAnalyticsQuery> pending; ///< For batches, prepared, the oldest first.
    std::vector<Answer> answers;                  ///< Awaited in debug mode.
    std::deque<Sent> sent;
    quint64 sentCount = 0;
    quint64 droppedCount = 0;
    const qint64 sessionId = QDateTime::currentSecsSinceEpoch();
    bool isSuppressing = false;
    bool isDebug = false;
    bool isWoken = false;
    bool isStopping = false;

    void Change(const std::function<void(Parameters&)>& change)
    {
        const std::scoped_lock lock(mutex);
        auto changed = std::make_shared<Parameters>(*parameters);
        change(*changed);
        parameters = std::move(changed);
    }

    std::future<QString> AddSingle(std::variant<Analytics4Query::Event, UniversalAnalyticsQuery> report)
    {
        const auto now = std::chrono::system_clock::now().time_since_epoch();
        const auto time = std::chrono::duration_cast<std::chrono::microseconds>(now).count();
        std::promise<QString> promise;
        std::future<QString> future = promise.get_future();
        const std::scoped_lock lock(mutex);
        if (isSuppressing || isStopping)
            return future;
        singles.push_back(
            {parameters, std::move(report), static_cast<quint64>(time), isDebug, std::move(promise)});
        DropOldest(singles);
        wake.notify_one();
        return future;
    }

    template <typename T>
    void DropOldest(std::vector<T>& reports)
    {
        if (reports.size() <= mostPending)
            return;
        reports.erase(reports.begin());
        if (++droppedCount == 1)
            App::Log(
                Log::Verbosity::Warning,
                u"Analytics: more than %1 reports are pending, the oldest are dropped"_s.arg(mostPending));
    }

    /// On the thread. Nothing is sent where the switch has been set meanwhile.
    void Post(const QString& path, const QUrlQuery& query, const QString& payload, bool toDebug,
              std::promise<QString> promise)
    {
        const std::scoped_lock lock(mutex);
        if (isSuppressing)
            return;
        if (!http)
            throw Exception::NullptrException();
        QUrl url = address;
        url.setPath(toDebug ? u"/debug"_s + path : path);
        ++sentCount;
        sent.push_back({QDateTime::currentDateTime(), url.path(), payload});
        if (sent.size() > mostSentKept)
            sent.pop_front();
        if (toDebug)
            answers.push_back({http->SendPostRequest(url, query, payload), std::move(promise)});
        else
            http->SendPostRequest(url, query, payload, std::move(promise));
    }

    void Post(Single& single)
    {
        if (const auto* const event = std::get_if<Analytics4Query::Event>(&single.report))
        {
            const Analytics4Query query = single.parameters->Prepare(*event, single.microseconds);
            Post(u"/mp/collect"_s, query.GetUrlQuery(), query.GetPayload(), single.isDebug,
                 std::move(single.promise));
            return;
        }
        const auto query = single.parameters->Prepare(std::get<UniversalAnalyticsQuery>(single.report));
        if (query.isValid())
            Post(u"/collect"_s, {}, query.GetPayload(), single.isDebug, std::move(single.promise));
    }

    /// The answers that have come. With the lock held.
    std::vector<Answer> TakeReady()
    {
        const auto ready = std::ranges::stable_partition(
            answers, [](const Answer& answer) { return !IsReady(answer.future); });
        std::vector<Answer> taken(std::make_move_iterator(ready.begin()),
                                  std::make_move_iterator(ready.end()));
        answers.erase(ready.begin(), ready.end());
        return taken;
    }

    /// @return the futures of the batches.
    std::vector<std::future<QString>> Post(const std::vector<UniversalAnalyticsQuery>& queries)
    {
        std::unique_lock lock(mutex);
        const bool isBatchDebug = isDebug;
        lock.unlock();
        std::vector<std::future<QString>> futures;
        for (std::size_t begin = 0; begin < queries.size(); begin += batchSize)
        {
            QStringList lines;
            for (std::size_t i = begin; i < std::min(begin + batchSize, queries.size()); ++i)
                lines.push_back(queries[i].GetPayload());
            std::promise<QString> promise;
            futures.push_back(promise.get_future());
            Post(u"/batch"_s, {}, lines.join(u'\n'), isBatchDebug, std::move(promise));
        }
        return futures;
    }
};

GoogleAnalyticsService::GoogleAnalyticsService() : m_state(std::make_unique<State>()) {}
GoogleAnalyticsService::~GoogleAnalyticsService() { Stop(); }

void GoogleAnalyticsService::SetHttp(const Network::HttpSender& http)
{
    const std::scoped_lock lock(m_state->mutex);
    m_state->http = http;
}

void GoogleAnalyticsService::SetAddress(const QUrl& address)
{
    const std::scoped_lock lock(m_state->mutex);
    m_state->address = address;
}

void GoogleAnalyticsService::SetApplicationParameter(EApplicationParameter parameter, const QString& value)
{
    const auto row = std::ranges::find(parameterRows, parameter, &ParameterRow::parameter);
    if (row == parameterRows.end())
        return;
    m_state->Change([&](Parameters& parameters) {
        if (row->item)
            Replace(parameters.baseItems, QLatin1String(row->item), value);
        if (row->userProperty)
            parameters.userProperties[QLatin1String(row->userProperty)] = value;
        if (parameter == EApplicationParameter::ClientId)
            parameters.clientId = value;
        if (parameter == EApplicationParameter::MeasurementId)
            parameters.measurementId = value;
        if (parameter == EApplicationParameter::ApiSecret)
            parameters.apiSecret = value;
    });
}

void GoogleAnalyticsService::SetCustomDimension(const CustomDimension& dimension)
{
    m_state->Change([&dimension](Parameters& parameters) {
        Replace(parameters.baseItems, u"cd%1"_s.arg(dimension.number), dimension.value);
    });
}

void GoogleAnalyticsService::SetUserProperty(const QString& name, const QString& value)
{
    m_state->Change([&](Parameters& parameters) { parameters.userProperties[name] = value; });
}

void GoogleAnalyticsService::SetSuppressing(bool isSuppressing)
{
    const std::scoped_lock lock(m_state->mutex);
    m_state->isSuppressing = isSuppressing;
    if (!isSuppressing)
        return;
    m_state->pending.clear();
    m_state->singles.clear();
}

void GoogleAnalyticsService::SetDebug(bool isDebug)
{
    const std::scoped_lock lock(m_state->mutex);
    m_state->isDebug = isDebug;
}

bool GoogleAnalyticsService::IsDebug() const
{
    const std::scoped_lock lock(m_state->mutex);
    return m_state->isDebug;
}

void GoogleAnalyticsService::BatchQuery(const UniversalAnalyticsQuery& query, bool flush)
{
    const std::scoped_lock lock(m_state->mutex);
    UniversalAnalyticsQuery prepared = m_state->parameters->Prepare(query);
    const bool isFirst = m_state->pending.empty();
    if (prepared.isValid() && !m_state->isSuppressing && !m_state->isStopping)
        m_state->pending.push_back(std::move(prepared));
    m_state->DropOldest(m_state->pending);
    const bool isDue = flush || m_state->pending.size() >= batchSize;
    m_state->isWoken = m_state->isWoken || isDue;
    if (isDue || isFirst) // from the first one on, the time counts
        m_state->wake.notify_one();
}

std::future<QString> GoogleAnalyticsService::SendQuery(const UniversalAnalyticsQuery& query)
{
    return m_state->AddSingle(query);
}

std::future<QString> GoogleAnalyticsService::SendEvent(const Analytics4Query::Event& event)
{
    return m_state->AddSingle(event);
}

void GoogleAnalyticsService::StartSession(const QString& page)
{
    UAPageviewQuery query(page);
    query.AddQueryItem(u"sc"_s, u"start"_s);
    SendQuery(query);
    PageViewEvent event(page);
    event.parameters.emplace_back(u"session_id"_s, m_state->sessionId);
    SendEvent(event);
}

void GoogleAnalyticsService::StopSession()
{
    UAPageviewQuery query;
    query.AddQueryItem(u"sc"_s, u"stop"_s);
    SendQuery(query);
}

void GoogleAnalyticsService::Start()
{
    if (m_state->thread.joinable())
        return;
    m_state->isStopping = false;
    m_state->thread = std::thread([this] { Run(); });
}

void GoogleAnalyticsService::Stop()
{
    {
        const std::scoped_lock lock(m_state->mutex);
        m_state->isStopping = true;
        m_state->wake.notify_one();
    }
    if (m_state->thread.joinable())
        m_state->thread.join();
}

void GoogleAnalyticsService::Run()
{
    Multithread::SetCurrentThreadName("Analytics Service thread");
    constexpr auto never = std::chrono::steady_clock::time_point::max();
    auto pendingEnd = never; // counted from when the first one is pending
    std::unique_lock lock(m_state->mutex);
    for (;;)
    {
        const bool isLast = m_state->isStopping;
        const auto now = std::chrono::steady_clock::now();
        if (m_state->pending.empty())
            pendingEnd = never;
        else if (pendingEnd == never)
            pendingEnd = now + longestPending;
        const bool isDue = isLast || m_state->isWoken || now >= pendingEnd;
        auto singles = std::exchange(m_state->singles, {});
        std::vector<UniversalAnalyticsQuery> queries;
        if (isDue)
        {
            queries = std::exchange(m_state->pending, {});
            m_state->isWoken = false;
            pendingEnd = never;
        }
        std::vector<Answer> ready = m_state->TakeReady();
        if (isLast || !singles.empty() || !queries.empty() || !ready.empty())
        {
            lock.unlock();
            for (State::Single& single : singles)
                App::SafeCallable([&] { m_state->Post(single); })();
            std::vector<std::future<QString>> batches;
            App::SafeCallable([&] { batches = m_state->Post(queries); })();
            std::ranges::for_each(ready, Pass);
            if (isLast)
            {
                for (const std::future<QString>& batch : batches)
                    batch.wait_until(now + longestStop);
                return;
            }
            lock.lock();
            continue; // more may have come
        }
        if (!m_state->answers.empty()) // they do not tell
            m_state->wake.wait_for(lock, answerInterval);
        else if (pendingEnd != never)
            m_state->wake.wait_until(lock, pendingEnd);
        else
            m_state->wake.wait(lock);
    }
}

std::vector<GoogleAnalyticsService::Sent> GoogleAnalyticsService::GetSent() const
{
    const std::scoped_lock lock(m_state->mutex);
    return {m_state->sent.begin(), m_state->sent.end()};
}

quint64 GoogleAnalyticsService::GetSentCount() const
{
    const std::scoped_lock lock(m_state->mutex);
    return m_state->sentCount;
}

quint64 GoogleAnalyticsService::GetDroppedCount() const
{
    const std::scoped_lock lock(m_state->mutex);
    return m_state->droppedCount;
}
} // namespace vek::Analytics
