#include "VekAppCore/Analytics/GoogleAnalyticsService.h"
#include "VekAppCore/App/ErrorReporting.h"
#include "VekAppCore/App/Log.h"
#include "VekBase/Exception.h"
#include "VekBase/Multithread.h"
#include <algorithm>
#include <array>
#include <condition_variable>
#include <deque>
#include <map>
#include <mutex>
#include <thread>

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
    std::optional<std::promise<QString>> asker;
};

void Pass(Answer& answer)
{
    try
    {
        const QString text = answer.future.get();
        App::Log(Log::Verbosity::Debug, text);
        if (answer.asker)
            answer.asker->set_value(text);
    }
    catch (...)
    {
        if (answer.asker)
            answer.asker->set_exception(std::current_exception());
    }
}

bool IsReady(const std::future<QString>& future) { return future.wait_for(0s) == std::future_status::ready; }
} // namespace

struct GoogleAnalyticsService::State
{
    mutable std::mutex mutex; ///< Guards all but the thread.
    std::condition_variable wake;
    std::thread thread;
    std::optional<Network::HttpSender> http;
    QUrl address;
    UniversalAnalyticsQuery::Items baseItems{{u"v"_s, u"1"_s}};
    std::map<QString, QString> userProperties;
    QString clientId;
    QString measurementId;
    QString apiSecret;
    std::vector<UniversalAnalyticsQuery> pending; ///< Prepared, the oldest first.
    std::vector<Answer> answers;                  ///< Awaited in debug mode.
    std::deque<Sent> sent;
    quint64 sentCount = 0;
    quint64 droppedCount = 0;
    const qint64 sessionId = QDateTime::currentSecsSinceEpoch();
    bool isSuppressing = false;
    bool isDebug = false;
    bool isWoken = false;
    bool isStopping = false;

    UniversalAnalyticsQuery Prepare(const UniversalAnalyticsQuery& query) const
    {
        UniversalAnalyticsQuery prepared;
        prepared.AddQueryItems(baseItems);
        return prepared += query;
    }

    /// With the lock held, which keeps the switch from being set meanwhile.
    std::future<QString> Post(const QString& path, const QUrlQuery& query, const QString& payload)
    {
        if (!http)
            throw Exception::NullptrException();
        QUrl url = address;
        url.setPath(isDebug ? u"/debug"_s + path : path);
        ++sentCount;
        sent.push_back({QDateTime::currentDateTime(), url.path(), payload});
        if (sent.size() > mostSentKept)
            sent.pop_front();
        return http->SendPostRequest(url, query, payload);
    }

    /// The same for one who gets the answer.
    std::future<QString> PostFor(const QString& path, const QUrlQuery& query, const QString& payload)
    {
        std::future<QString> future = Post(path, query, payload);
        if (!isDebug || !thread.joinable())
            return future;
        Answer& answer = answers.emplace_back(std::move(future), std::promise<QString>());
        wake.notify_one();
        return answer.asker->get_future();
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
    const std::scoped_lock lock(m_state->mutex);
    if (row->item)
        Replace(m_state->baseItems, QLatin1String(row->item), value);
    if (row->userProperty)
        m_state->userProperties[QLatin1String(row->userProperty)] = value;
    if (parameter == EApplicationParameter::ClientId)
        m_state->clientId = value;
    if (parameter == EApplicationParameter::MeasurementId)
        m_state->measurementId = value;
    if (parameter == EApplicationParameter::ApiSecret)
        m_state->apiSecret = value;
}

void GoogleAnalyticsService::SetCustomDimension(const CustomDimension& dimension)
{
    const std::scoped_lock lock(m_state->mutex);
    Replace(m_state->baseItems, u"cd%1"_s.arg(dimension.number), dimension.value);
}

void GoogleAnalyticsService::SetUserProperty(const QString& name, const QString& value)
{
    const std::scoped_lock lock(m_state->mutex);
    m_state->userProperties[name] = value;
}

void GoogleAnalyticsService::SetSuppressing(bool isSuppressing)
{
    const std::scoped_lock lock(m_state->mutex);
    m_state->isSuppressing = isSuppressing;
    if (isSuppressing)
        m_state->pending.clear();
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
    bool isFirstDropped = false;
    {
        const std::scoped_lock lock(m_state->mutex);
        UniversalAnalyticsQuery prepared = m_state->Prepare(query);
        if (prepared.isValid() && !m_state->isSuppressing && !m_state->isStopping)
            m_state->pending.push_back(std::move(prepared));
        if (m_state->pending.size() > mostPending)
        {
            m_state->pending.erase(m_state->pending.begin());
            isFirstDropped = ++m_state->droppedCount == 1;
        }
        if (flush || m_state->pending.size() >= batchSize)
            m_state->isWoken = true;
        m_state->wake.notify_one(); // also to begin to count the time that it is pending
    }
    if (isFirstDropped)
        App::Log(Log::Verbosity::Warning,
                 u"Analytics: more than %1 reports are pending, the oldest are dropped"_s.arg(mostPending));
}

std::future<QString> GoogleAnalyticsService::SendQuery(const UniversalAnalyticsQuery& query)
{
    const std::scoped_lock lock(m_state->mutex);
    const UniversalAnalyticsQuery prepared = m_state->Prepare(query);
    if (m_state->isSuppressing || !prepared.isValid())
        return std::promise<QString>().get_future();
    return m_state->PostFor(u"/collect"_s, {}, prepared.GetPayload());
}

std::future<QString> GoogleAnalyticsService::SendEvent(const Analytics4Query::Event& event)
{
    const std::scoped_lock lock(m_state->mutex);
    if (m_state->isSuppressing)
        return std::promise<QString>().get_future();
    Analytics4Query query(event);
    query.SetClientID(m_state->clientId);
    query.SetUserProperties(m_state->userProperties);
    query.SetMeasurementID(m_state->measurementId);
    query.SetApiSecretID(m_state->apiSecret);
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    query.SetTimestamp(
        static_cast<quint64>(std::chrono::duration_cast<std::chrono::microseconds>(now).count()));
    return m_state->PostFor(u"/mp/collect"_s, query.GetUrlQuery(), query.GetPayload());
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
    std::unique_lock lock(m_state->mutex);
    for (bool isLast = false; !isLast;)
    {
        isLast = m_state->isStopping;
        m_state->isWoken = false;
        std::vector<std::future<QString>> last; // sent now
        const std::vector<UniversalAnalyticsQuery> queries = std::exchange(m_state->pending, {});
        try
        {
            for (std::size_t begin = 0; begin < queries.size() && !m_state->isSuppressing; begin += batchSize)
            {
                QStringList lines;
                for (std::size_t i = begin; i < std::min(begin + batchSize, queries.size()); ++i)
                    lines.push_back(queries[i].GetPayload());
                std::future<QString> future = m_state->Post(u"/batch"_s, {}, lines.join(u'\n'));
                if (m_state->isDebug && !isLast)
                    m_state->answers.push_back({std::move(future), std::nullopt});
                else
                    last.push_back(std::move(future));
            }
        }
        catch (...)
        {
            lock.unlock();
            App::HandleAppException(TrString());
            lock.lock();
        }
        if (isLast)
        {
            lock.unlock();
            const auto deadline = std::chrono::steady_clock::now() + longestStop;
            for (const std::future<QString>& future : last)
                future.wait_until(deadline);
            return;
        }
        const auto isDue = [this] { return m_state->isWoken || m_state->isStopping; };
        std::optional<std::chrono::steady_clock::time_point> pendingEnd; // from when the first one is pending
        while (!isDue())
        {
            if (!m_state->pending.empty() && !pendingEnd)
                pendingEnd = std::chrono::steady_clock::now() + longestPending;
            if (pendingEnd && std::chrono::steady_clock::now() >= *pendingEnd)
                break;
            std::vector<Answer> ready;
            const auto firstReady = std::ranges::stable_partition(
                m_state->answers, [](const Answer& answer) { return !IsReady(answer.future); });
            std::ranges::move(firstReady, std::back_inserter(ready));
            m_state->answers.erase(firstReady.begin(), firstReady.end());
            if (!ready.empty())
            {
                lock.unlock();
                std::ranges::for_each(ready, Pass);
                lock.lock();
            }
            else if (!m_state->answers.empty()) // they do not tell
                m_state->wake.wait_for(lock, answerInterval);
            else if (m_state->pending.empty())
                m_state->wake.wait(lock);
            else
                m_state->wake.wait_until(lock, *pendingEnd);
        }
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
