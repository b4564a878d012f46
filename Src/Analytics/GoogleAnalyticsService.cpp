#include "VekAppCore/Analytics/GoogleAnalyticsService.h"
#include "Base/EnumText.h"
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
constexpr auto longestAnswer = 30s;
constexpr int mostInFlight = 4; ///< The rest stays with us, where it can be dropped.

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

/// Passes an answer on.
/// @return its text; empty without one.
std::optional<QString> Pass(std::future<QString> answer, std::promise<QString>& asker)
{
    try
    {
        const QString text = answer.get();
        asker.set_value(text);
        return text;
    }
    catch (...)
    {
        asker.set_exception(std::current_exception());
        return std::nullopt;
    }
}
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

struct GoogleAnalyticsService::State : std::enable_shared_from_this<State>
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
    std::deque<Single> singles;                  ///< The oldest first.
    std::deque<UniversalAnalyticsQuery> pending; ///< For batches, prepared, the oldest first.
    std::deque<Sent> sent;
    quint64 sentCount = 0;
    quint64 droppedCount = 0;
    int inFlight = 0;
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
        std::unique_lock lock(mutex);
        if (isSuppressing || isStopping)
            return future;
        singles.push_back(
            {parameters, std::move(report), static_cast<quint64>(time), isDebug, std::move(promise)});
        const bool isFirstDropped = DropOldest(singles);
        wake.notify_one();
        lock.unlock();
        WarnOfDropping(isFirstDropped);
        return future;
    }

    /// With the lock held.
    /// @return that it is the first time.
    bool DropOldest(auto& reports)
    {
        if (reports.size() <= mostPending)
            return false;
        reports.pop_front();
        return ++droppedCount == 1;
    }

    static void WarnOfDropping(bool isFirst)
    {
        if (isFirst)
            App::Log(
                Log::Verbosity::Warning,
                u"Analytics: more than %1 reports are pending, the oldest are dropped"_s.arg(mostPending));
    }

    /// On the thread, without the lock: what is called may log, and the log is the application's. Nothing is
    /// sent where the switch has been set meanwhile.
    void Post(const QString& path, const QUrlQuery& query, const QString& payload, bool toDebug,
              std::promise<QString> promise)
    {
        std::unique_lock lock(mutex);
        if (isSuppressing)
            return;
        if (!http)
        {
            pending.clear(); // the others would only say the same
            singles.clear();
            throw Exception::NullptrException();
        }
        QUrl url = address;
        url.setPath(toDebug ? u"/debug"_s + path : path);
        ++sentCount;
        sent.push_back({QDateTime::currentDateTime(), url.path(), payload});
        if (sent.size() > mostSentKept)
            sent.pop_front();
        ++inFlight;
        const Network::HttpSender sender = *http;
        lock.unlock();
        auto end = [state = weak_from_this(), toDebug,
                    asker = std::move(promise)](std::future<QString> answer) mutable {
            const std::optional<QString> text = Pass(std::move(answer), asker);
            if (text && toDebug)
                App::Log(Log::Verbosity::Debug, *text);
            if (const auto alive = state.lock())
            {
                const std::scoped_lock ended(alive->mutex);
                --alive->inFlight;
                alive->wake.notify_one();
            }
        };
        sender.SendPostRequest(url, query, payload, longestAnswer, std::move(end));
    }

    void Post(Single single)
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

    void Post(const std::vector<UniversalAnalyticsQuery>& chunk, bool toDebug)
    {
        QStringList lines;
        for (const UniversalAnalyticsQuery& query : chunk)
            lines.push_back(query.GetPayload());
        Post(u"/batch"_s, {}, lines.join(u'\n'), toDebug, {});
    }

    /// The next ones of the pending. With the lock held.
    std::vector<UniversalAnalyticsQuery> TakeChunk()
    {
        const auto end = pending.begin() + static_cast<std::ptrdiff_t>(std::min(batchSize, pending.size()));
        std::vector<UniversalAnalyticsQuery> chunk(std::make_move_iterator(pending.begin()),
                                                   std::make_move_iterator(end));
        pending.erase(pending.begin(), end);
        return chunk;
    }
};

GoogleAnalyticsService::GoogleAnalyticsService() : m_state(std::make_shared<State>()) {}
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
    std::unique_lock lock(m_state->mutex);
    UniversalAnalyticsQuery prepared = m_state->parameters->Prepare(query);
    const bool isFirst = m_state->pending.empty();
    if (prepared.isValid() && !m_state->isSuppressing && !m_state->isStopping)
        m_state->pending.push_back(std::move(prepared));
    const bool isFirstDropped = m_state->DropOldest(m_state->pending);
    const bool isDue = !m_state->pending.empty() && (flush || m_state->pending.size() >= batchSize);
    m_state->isWoken = m_state->isWoken || isDue;
    if (isDue || isFirst) // from the first one on, the time counts
        m_state->wake.notify_one();
    lock.unlock();
    State::WarnOfDropping(isFirstDropped);
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
    {
        const std::scoped_lock lock(m_state->mutex);
        m_state->isStopping = false;
    }
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
        const auto now = std::chrono::steady_clock::now();
        if (m_state->pending.empty())
        {
            pendingEnd = never;
            m_state->isWoken = false;
        }
        else if (pendingEnd == never)
            pendingEnd = now + longestPending;
        const bool isFree = m_state->isStopping || m_state->inFlight < mostInFlight;
        const bool isDue = m_state->isStopping || m_state->isWoken || now >= pendingEnd;
        if (isFree && !m_state->singles.empty())
        {
            State::Single single = std::move(m_state->singles.front());
            m_state->singles.pop_front();
            lock.unlock();
            App::SafeCallable([&] { m_state->Post(std::move(single)); })();
        }
        else if (isFree && isDue && !m_state->pending.empty())
        {
            const std::vector<UniversalAnalyticsQuery> chunk = m_state->TakeChunk();
            const bool toDebug = m_state->isDebug;
            lock.unlock();
            App::SafeCallable([&] { m_state->Post(chunk, toDebug); })();
        }
        else if (m_state->isStopping)
            break;
        else if (isFree && pendingEnd != never)
            m_state->wake.wait_until(lock, pendingEnd);
        else
            m_state->wake.wait(lock);
        if (!lock.owns_lock())
            lock.lock();
    }
    m_state->wake.wait_for(lock, longestStop, [this] { return m_state->inFlight == 0; });
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

std::string ToLogText(EApplicationParameter parameter)
{
    return Details::ToEnumText(parameter, EApplicationParameter::ClientId,
                               {"ClientId", "TrackingId", "MeasurementId", "ApiSecret", "DataSource",
                                "ApplicationName", "ApplicationId", "ApplicationVersion", "FullVersion",
                                "Processor", "GraphicsCard", "ScreenSize", "Language", nullptr, nullptr,
                                "HostName"});
}

std::string ToLogText(const GoogleAnalyticsService::Sent& sent)
{
    return (sent.path + u' ' + sent.payload).toStdString();
}
} // namespace vek::Analytics
