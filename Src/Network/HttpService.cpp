#include "VekAppCore/Network/HttpService.h"
#include "VekAppCore/App/ErrorReporting.h"
#include "VekAppCore/App/Exception.h"
#include "VekAppCore/App/Log.h"
#include "VekAppCore/App/RegisterService.h"
#include "VekAppCore/QtUtility/SafeConnect.h"
#include "VekBase/Multithread.h"
#include <QCoreApplication>
#include <QEventLoop>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QSslConfiguration>
#include <QSysInfo>
#include <QTimer>
#include <QUrlQuery>
#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <limits>
#include <mutex>
#include <thread>
#include <unordered_map>
#include <vector>

namespace vek::Network
{
namespace
{
using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

/// A stop that is not signalled is noticed after this time.
constexpr auto longestWait = 100ms;

enum EMethod : qint32
{
    Get = 0,
    Post = 1,
};

/// What a caller may have made of text that is not his own: a line break would begin a header of another's.
bool IsHeader(const QString& name, const QString& value)
{
    const auto isTokenCharacter = [](QChar c) {
        return c < u'\x7f' && (c.isLetterOrNumber() || u"!#$%&'*+-.^_`|~"_s.contains(c));
    };
    const auto breaksLine = [](QChar c) { return c == u'\r' || c == u'\n' || c.isNull(); };
    return !name.isEmpty() && std::ranges::all_of(name, isTokenCharacter) &&
           std::ranges::none_of(value, breaksLine);
}

int ToMilliseconds(std::chrono::milliseconds timeout)
{
    constexpr std::chrono::milliseconds most(std::numeric_limits<int>::max());
    return static_cast<int>(std::clamp(timeout, 0ms, most).count());
}

void Warn(const QUrl& url, const QString& text)
{
    App::Log(Log::Verbosity::Warning, u"Error with HTTP request to %1 : %2"_s.arg(url.toString(), text));
}

std::shared_ptr<QNetworkAccessManager> MakeManager()
{
    // Its last reply may hold it, and is then in the middle of a signal.
    std::shared_ptr<QNetworkAccessManager> manager(new QNetworkAccessManager,
                                                   [](QNetworkAccessManager* dead) { dead->deleteLater(); });
    manager->setStrictTransportSecurityEnabled(true);
    manager->setRedirectPolicy(QNetworkRequest::NoLessSafeRedirectPolicy);
    return manager;
}

void Fail(std::promise<QString>& promise, const HttpException& exception)
{
    try
    {
        promise.set_exception(std::make_exception_ptr(exception));
    }
    catch (const std::future_error&)
    {
        // It has been told before.
    }
}
} // namespace

struct HttpService::Request
{
    QString body;
    QUrl url;
    qint32 method;
    Headers headers;
    std::promise<QString> promise{};

    // For one who is called back.
    std::optional<int> timeout{}; ///< In milliseconds.
    MoveOnlyFunction<void(std::future<QString>)> onEnd{};
    std::future<QString> future{};

    // Of the answer.
    QByteArray received{};
    QString refusal{}; ///< Why it was cut off by us; empty where it was not.
    bool hasFailed = false;

    Request(QString text, QUrl address, qint32 how, Headers extra)
        : body(std::move(text)), url(std::move(address)), method(how), headers(std::move(extra))
    {}
    Request(const Request&) = delete;
    Request& operator=(const Request&) = delete;
    ~Request() { End(); }

    /// The caller hears of it: where the promise has not been kept, that it never will be.
    void End()
    {
        promise = std::promise<QString>();
        if (auto call = std::exchange(onEnd, {}))
            App::SafeCallable([&] { call(std::move(future)); })();
    }
};

struct HttpService::Options
{
    QSslConfiguration sslConfiguration;
    int timeout = 0; ///< In milliseconds.
    qint64 mostBytes = usualMostBytes;
};

struct HttpService::State
{
    struct InFlight
    {
        std::shared_ptr<Request> request;
        std::shared_ptr<QNetworkAccessManager> manager; ///< Which sent it.
    };

    std::thread thread;
    std::mutex mutex; ///< Guards the next six.
    std::condition_variable hasWork;
    std::vector<std::unique_ptr<Request>> queue; ///< Not yet sent, the oldest first.
    Options options;
    std::atomic<bool> isRunning = false; ///< Set with the lock held.
    bool isStopped = false;              ///< For ever.
    QEventLoop* eventLoop = nullptr;     ///< Of the thread, while it runs.

    // The thread's own.
    std::shared_ptr<QNetworkAccessManager> manager;
    QSslConfiguration sslConfiguration; ///< Which the manager has made connections with.
    std::unordered_map<QNetworkReply*, InFlight> replies;

    /// With the lock held.
    void Wake()
    {
        hasWork.notify_one();
        if (eventLoop)
            eventLoop->wakeUp();
    }
};

VEK_DECLARE_SERVICE(HttpService, HttpService);

HttpService::HttpService() : m_state(std::make_shared<State>()) {}

HttpService::~HttpService()
{
    std::vector<std::unique_ptr<Request>> queue; // its requests call back without the lock
    {
        const std::scoped_lock lock(m_state->mutex);
        m_state->isRunning = false;
        m_state->isStopped = true;
        queue.swap(m_state->queue);
        m_state->Wake();
    }
    queue.clear();
    if (m_state->thread.joinable())
        m_state->thread.join();
}

std::future<QString> HttpService::SendGetRequest(const QUrl& url, const QUrlQuery& query,
                                                 const Headers& headers)
{
    return GetSender().SendGetRequest(url, query, headers);
}

std::future<QString> HttpService::SendPostRequest(const QUrl& url, const QUrlQuery& query,
                                                  const QString& body, const Headers& headers)
{
    return GetSender().SendPostRequest(url, query, body, headers);
}

HttpSender HttpService::GetSender() const { return HttpSender(m_state); }

void HttpService::SetSSLConfiguration(const QSslConfiguration& configuration)
{
    const std::scoped_lock lock(m_state->mutex);
    m_state->options.sslConfiguration = configuration;
}

void HttpService::SetTransferTimeout(std::chrono::milliseconds timeout)
{
    const std::scoped_lock lock(m_state->mutex);
    m_state->options.timeout = ToMilliseconds(timeout);
}

void HttpService::SetMostBytes(qint64 mostBytes)
{
    const std::scoped_lock lock(m_state->mutex);
    m_state->options.mostBytes = std::max<qint64>(mostBytes, 0);
}

void HttpService::Start()
{
    if (m_state->thread.joinable())
        throw Exception::InternalAppException(u"The HTTP service has been started"_s);
    m_state->isRunning = true;
    m_state->thread = std::thread([this] { Run(); });
}

void HttpService::Run()
{
    Multithread::SetCurrentThreadName("Http Service thread");
    m_state->manager = MakeManager();
    QEventLoop eventLoop;
    QTimer timer; // ends a wait for events
    timer.setInterval(longestWait);

    std::unique_lock lock(m_state->mutex);
    m_state->eventLoop = &eventLoop;
    for (;;)
    {
        // While answers are awaited, the event loop waits for them and for requests at once.
        const bool isIdle = m_state->replies.empty();
        if (isIdle)
            m_state->hasWork.wait_until(lock, std::chrono::steady_clock::now() + longestWait,
                                        [this] { return !m_state->queue.empty() || !m_state->isRunning; });
        if (!m_state->isRunning)
            break;
        const bool hasRequests = !m_state->queue.empty();
        lock.unlock();
        if (hasRequests)
            App::SafeCallable([this] { ProcessRequests(); })();
        QEventLoop::ProcessEventsFlags flags = QEventLoop::ExcludeUserInputEvents;
        if (m_state->replies.empty())
            timer.stop();
        else
        {
            flags |= QEventLoop::WaitForMoreEvents;
            if (!timer.isActive())
                timer.start();
        }
        eventLoop.processEvents(flags);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); // which this loop does not send
        lock.lock();
    }
    m_state->eventLoop = nullptr;
    lock.unlock();
    for (const auto& [reply, inFlight] : m_state->replies)
        delete reply;
    m_state->replies.clear();
    m_state->manager.reset();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void HttpService::ProcessRequests()
{
    std::unique_lock lock(m_state->mutex);
    auto queue = std::exchange(m_state->queue, {});
    const Options options = m_state->options;
    lock.unlock();
    // A manager would use the connections that it has made with another configuration.
    if (std::exchange(m_state->sslConfiguration, options.sslConfiguration) != options.sslConfiguration)
        m_state->manager = MakeManager();
    for (auto& request : queue)
        if (m_state->isRunning)
            _SendNow(std::move(request), options);
}

void HttpService::_SendNow(const std::shared_ptr<Request>& request, const Options& options)
{
    QNetworkRequest sent;
    if (!options.sslConfiguration.isNull())
        sent.setSslConfiguration(options.sslConfiguration);
    sent.setUrl(request->url);
    sent.setHeader(QNetworkRequest::UserAgentHeader,
                   u"%1 (Windows NT %3)"_s.arg(u"Havlen/1.0"_s, QSysInfo::kernelVersion()));
    sent.setHeader(QNetworkRequest::ContentTypeHeader, u"text/plain"_s);
    for (const auto& [name, value] : request->headers)
        sent.setRawHeader(name.toUtf8(),
                          value.isEmpty() ? QByteArray("") : value.toUtf8()); // a null one erases
    // What a server sets is nobody's business in the next request.
    sent.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    sent.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    sent.setTransferTimeout(request->timeout.value_or(options.timeout));
    sent.setDecompressedSafetyCheckThreshold(
        options.mostBytes); // what is larger is refused below in any case
    QNetworkReply* reply = nullptr;
    switch (request->method)
    {
    case Get: reply = m_state->manager->get(sent); break;
    case Post: reply = m_state->manager->post(sent, request->body.toUtf8()); break;
    default: return;
    }
    m_state->replies.emplace(reply, State::InFlight{request, m_state->manager});
    const auto fail = [reply, request] {
        request->hasFailed = true;
        const QString text = request->refusal.isEmpty() ? reply->errorString() : request->refusal;
        Warn(reply->url(), text);
        Fail(request->promise,
             HttpException(text, reply->url(),
                           reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt(),
                           reply->error()));
    };
    const auto receive = [reply, request, mostBytes = options.mostBytes] {
        if (reply->isOpen())
            request->received += reply->readAll();
        if (request->received.size() <= mostBytes || !request->refusal.isEmpty())
            return;
        request->refusal = u"The answer is larger than %1 bytes"_s.arg(mostBytes);
        reply->abort(); // which fails, unless it has come to its end
    };
    const auto complete = [this, reply, request, receive, fail] {
        receive();
        if (!request->refusal.isEmpty() && !request->hasFailed)
            fail();
        reply->deleteLater();
        m_state->replies.erase(reply);
        if (!request->hasFailed && reply->attribute(QNetworkRequest::HttpStatusCodeAttribute) == 200 &&
            reply->error() == QNetworkReply::NoError)
            request->promise.set_value(QString::fromUtf8(request->received));
        request->End(); // now, and here: it lives as long as the reply, and may die on a thread of Qt's
    };
    QtUtility::SafeConnect(reply, &QNetworkReply::readyRead, reply, receive);
    QtUtility::SafeConnect(reply, &QNetworkReply::finished, reply, complete);
    QtUtility::SafeConnect(reply, &QNetworkReply::errorOccurred, reply, fail);
}

HttpSender::HttpSender(std::shared_ptr<HttpService::State> state) : m_state(std::move(state)) {}

std::future<QString> HttpSender::SendGetRequest(const QUrl& url, const QUrlQuery& query,
                                                const HttpService::Headers& headers) const
{
    auto request = std::make_unique<HttpService::Request>(QString(), url, Get, headers);
    std::future<QString> future = request->promise.get_future();
    _Send(query, std::move(request));
    return future;
}

std::future<QString> HttpSender::SendPostRequest(const QUrl& url, const QUrlQuery& query, const QString& body,
                                                 const HttpService::Headers& headers) const
{
    auto request = std::make_unique<HttpService::Request>(body, url, Post, headers);
    std::future<QString> future = request->promise.get_future();
    _Send(query, std::move(request));
    return future;
}

void HttpSender::SendGetRequest(const QUrl& url, const QUrlQuery& query, std::chrono::milliseconds timeout,
                                MoveOnlyFunction<void(std::future<QString>)> onEnd) const
{
    _Send(query, std::make_unique<HttpService::Request>(QString(), url, Get, HttpService::Headers()), timeout,
          std::move(onEnd));
}

void HttpSender::SendPostRequest(const QUrl& url, const QUrlQuery& query, const QString& body,
                                 std::chrono::milliseconds timeout,
                                 MoveOnlyFunction<void(std::future<QString>)> onEnd) const
{
    _Send(query, std::make_unique<HttpService::Request>(body, url, Post, HttpService::Headers()), timeout,
          std::move(onEnd));
}

void HttpSender::_Send(const QUrlQuery& query, std::unique_ptr<HttpService::Request> request,
                       std::chrono::milliseconds timeout,
                       MoveOnlyFunction<void(std::future<QString>)> onEnd) const
{
    request->timeout = ToMilliseconds(timeout);
    request->future = request->promise.get_future();
    request->onEnd = std::move(onEnd);
    _Send(query, std::move(request));
}

void HttpSender::_Send(const QUrlQuery& query, std::unique_ptr<HttpService::Request> request) const
{
    request->url.setQuery(query);
    const bool areHeaders = std::ranges::all_of(
        request->headers, [](const auto& header) { return IsHeader(header.first, header.second); });
    const QString scheme = request->url.scheme();
    if (!areHeaders || (scheme != u"http" && scheme != u"https"))
    {
        const QString text =
            areHeaders ? u"The URL has no scheme http or https"_s : u"A header has no valid name or value"_s;
        Warn(request->url, text);
        Fail(request->promise,
             HttpException(text, request->url, 0, QNetworkReply::ProtocolInvalidOperationError));
        return;
    }
    const std::scoped_lock lock(m_state->mutex);
    if (m_state->isStopped)
        return; // the request dies after the lock: it may call back
    m_state->queue.push_back(std::move(request));
    m_state->Wake();
}
} // namespace vek::Network
