#pragma once
#include "VekAppCore/App/ServiceBase.h"
#include "VekAppCore/Network/HttpException.h"
#include "VekBase/MoveOnlyFunction.h"
#include <chrono>
#include <future>
#include <map>
#include <memory>

class QSslConfiguration;
class QUrlQuery;

namespace vek::Network
{
class HttpSender;

/// Sends HTTP requests on a thread of its own and hands the body of the answer back by a future. Thread-safe,
/// but for Start.
///
/// A future gets the body of an answer with the status 200, decoded as UTF-8, or an HttpException, which is
/// logged as a warning, too. It ends as a broken promise where the answer has another status that is no
/// error, such as 204, and where the service dies first. Redirections are followed, but not from HTTPS to
/// HTTP. A future that nobody wants may be dropped. Cookies are neither kept nor sent. It needs a
/// QCoreApplication.
///
/// @code
/// auto& http = App::Services().Require<Network::HttpService>();
/// std::future<QString> answer = http.SendGetRequest(QUrl("https://example.com/version"), {});
/// @endcode
class VEKAPPCORE_EXPORT HttpService final : public App::IService<HttpService>
{
public:
    /// Names and values, UTF-8. One named like a header of ours, in whatever case, replaces it.
    using Headers = std::map<QString, QString>;

    /// Of a body, unpacked, unless SetMostBytes says otherwise.
    static constexpr qint64 usualMostBytes = 64 * 1024 * 1024;

    /// Requests wait for Start.
    HttpService();
    /// Ends all futures at once, whatever the servers do, and the thread.
    /// Not on the thread of the service itself.
    ~HttpService() override;

    /// @param query  replaces that of the URL.
    /// @param headers  one with a name or value that no header can have fails the future, and nothing is
    /// sent; so does a URL that is neither http nor https.
    [[nodiscard]] std::future<QString> SendGetRequest(const QUrl& url, const QUrlQuery& query,
                                                      const Headers& headers = {});
    /// @param body  is sent as UTF-8, as "text/plain" unless a header says otherwise.
    [[nodiscard]] std::future<QString> SendPostRequest(const QUrl& url, const QUrlQuery& query,
                                                       const QString& body, const Headers& headers = {});

    /// For threads that may outlive the service, since services die in no order.
    [[nodiscard]] HttpSender GetSender() const;

    /// Of requests that are sent from now on.
    void SetSSLConfiguration(const QSslConfiguration& configuration);
    /// How long a server may be silent, of requests that are sent from now on; 0, as at first, for ever.
    /// The time that a request waits for others to the same host counts, too.
    void SetTransferTimeout(std::chrono::milliseconds timeout);
    /// The largest body, unpacked, in bytes, of requests that are sent from now on.
    void SetMostBytes(qint64 mostBytes);

    /// Starts the thread; the declaration of the service does so.
    /// @throws Exception::InternalAppException  it has been started.
    void Start();
    /// Called by the declaration of the service.
    void PostRegistration() { Start(); }

private:
    friend class HttpSender;
    struct Request;
    struct Options;
    struct State;

    /// The thread's body.
    void Run();
    /// Sends what waits in the queue; on the thread of the service.
    void ProcessRequests();
    void _SendNow(const std::shared_ptr<Request>& request, const Options& options);

    std::shared_ptr<State> m_state;
};

/// Sends by a service that may be gone: the futures are then broken promises. Thread-safe.
class VEKAPPCORE_EXPORT HttpSender
{
public:
    /// @{
    /// As the members of the service.
    [[nodiscard]] std::future<QString> SendGetRequest(const QUrl& url, const QUrlQuery& query,
                                                      const HttpService::Headers& headers = {}) const;
    [[nodiscard]] std::future<QString> SendPostRequest(const QUrl& url, const QUrlQuery& query,
                                                       const QString& body,
                                                       const HttpService::Headers& headers = {}) const;
    /// @}

    /// @{
    /// For one who has no thread to wait with.
    /// @param timeout  in the place of that of the service.
    /// @param onEnd  called once, with a future that is ready: on the thread of the service, or at once where
    /// nothing can be sent.
    void SendGetRequest(const QUrl& url, const QUrlQuery& query, std::chrono::milliseconds timeout,
                        MoveOnlyFunction<void(std::future<QString>)> onEnd) const;
    void SendPostRequest(const QUrl& url, const QUrlQuery& query, const QString& body,
                         std::chrono::milliseconds timeout,
                         MoveOnlyFunction<void(std::future<QString>)> onEnd) const;
    /// @}

private:
    friend class HttpService;
    explicit HttpSender(std::shared_ptr<HttpService::State> state);
    void _Send(const QUrlQuery& query, std::unique_ptr<HttpService::Request> request) const;
    void _Send(const QUrlQuery& query, std::unique_ptr<HttpService::Request> request,
               std::chrono::milliseconds timeout, MoveOnlyFunction<void(std::future<QString>)> onEnd) const;

    std::shared_ptr<HttpService::State> m_state;
};
} // namespace vek::Network
