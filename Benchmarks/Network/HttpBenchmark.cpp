#include "Network/Servers.h"
#include "Support/Pair.h"
#include "VekAppCore/Network/HttpService.h"
#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QUrlQuery>
#include <ctime>
#include <curl/curl.h>
#include <thread>

namespace vek::Network
{
namespace
{
using Benchmark::Check;

constexpr std::size_t manyRequests = 100;
const QString expected = QStringLiteral("a text of thirty-two characters.");

const TestSupport::Nginx& GetServer()
{
    static const TestSupport::Nginx server;
    return server;
}
QUrl GetAddress() { return GetServer().GetUrl("http", "/text"); }

/// What a user would write: a manager on a thread of its own, which calls the caller's thread back.
class ManagerOnAThread
{
public:
    ManagerOnAThread()
    {
        m_manager->moveToThread(&m_thread);
        QObject::connect(&m_thread, &QThread::finished, m_manager, &QObject::deleteLater);
        m_thread.start();
    }
    ~ManagerOnAThread()
    {
        m_thread.quit();
        m_thread.wait();
    }
    ManagerOnAThread(const ManagerOnAThread&) = delete;
    ManagerOnAThread& operator=(const ManagerOnAThread&) = delete;

    void Get(const QUrl& url, QObject* caller, std::function<void(QString)> callback)
    {
        const auto send = [this, url, caller, callback = std::move(callback)] {
            QNetworkReply* const reply = m_manager->get(QNetworkRequest(url));
            QObject::connect(reply, &QNetworkReply::finished, reply, [reply, caller, callback] {
                const QString body = QString::fromUtf8(reply->readAll());
                QMetaObject::invokeMethod(caller, [callback, body] { callback(body); });
                reply->deleteLater();
            });
        };
        QMetaObject::invokeMethod(m_manager, send);
    }

private:
    QThread m_thread;
    QNetworkAccessManager* const m_manager = new QNetworkAccessManager;
};

template <std::size_t count>
void Requests_Vek(benchmark::State& state)
{
    HttpService service;
    service.Start();
    std::size_t right = 0;
    std::size_t sent = 0;
    for ([[maybe_unused]] auto _ : state)
    {
        std::vector<std::future<QString>> futures;
        for (std::size_t i = 0; i < count; ++i)
            futures.push_back(service.SendGetRequest(GetAddress(), {}));
        sent += count;
        for (auto& future : futures)
            right += future.get().startsWith(expected);
    }
    Check(state, right == sent, "An answer is wrong");
}

template <std::size_t count>
void Requests_Qt(benchmark::State& state)
{
    ManagerOnAThread manager;
    std::size_t right = 0;
    std::size_t sent = 0;
    QObject caller;
    for ([[maybe_unused]] auto _ : state)
    {
        std::size_t received = 0;
        for (std::size_t i = 0; i < count; ++i)
            manager.Get(GetAddress(), &caller, [&](const QString& body) {
                ++received;
                right += body.startsWith(expected);
            });
        sent += count;
        while (received < count)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    Check(state, right == sent, "An answer is wrong");
}

void Requests_Curl(benchmark::State& state)
{
    const std::unique_ptr<CURLM, decltype(&curl_multi_cleanup)> multi(curl_multi_init(), &curl_multi_cleanup);
    const QByteArray address = GetAddress().toEncoded();
    std::vector<QByteArray> bodies(manyRequests);
    std::vector<CURL*> handles;
    const curl_write_callback write = [](char* data, std::size_t size, std::size_t count, void* body) {
        static_cast<QByteArray*>(body)->append(data, static_cast<qsizetype>(size * count));
        return size * count;
    };
    for (QByteArray& body : bodies)
    {
        CURL* const handle = handles.emplace_back(curl_easy_init());
        curl_easy_setopt(handle, CURLOPT_URL, address.constData());
        curl_easy_setopt(handle, CURLOPT_WRITEFUNCTION, write);
        curl_easy_setopt(handle, CURLOPT_WRITEDATA, &body);
    }
    bool isRight = true;
    for ([[maybe_unused]] auto _ : state)
    {
        for (CURL* const handle : handles)
            curl_multi_add_handle(multi.get(), handle);
        for (int running = 1; running > 0;)
        {
            curl_multi_perform(multi.get(), &running);
            if (running > 0)
                curl_multi_poll(multi.get(), nullptr, 0, 1000, nullptr);
        }
        for (CURL* const handle : handles)
            curl_multi_remove_handle(multi.get(), handle);
        for (QByteArray& body : bodies)
            isRight = std::exchange(body, {}).startsWith(expected.toUtf8()) && isRight;
    }
    for (CURL* const handle : handles)
        curl_easy_cleanup(handle);
    Check(state, isRight, "An answer is wrong");
}

/// The processor time of this process in ten seconds.
void IdleCpu(benchmark::State& state, const QString& path)
{
    using namespace std::chrono_literals;
    TestSupport::ScriptedServer server;
    HttpService service;
    service.Start();
    std::future<QString> outstanding;
    if (!path.isEmpty())
        outstanding = service.SendGetRequest(server.GetUrl(path), {});
    std::this_thread::sleep_for(500ms); // what starting takes is another matter
    for ([[maybe_unused]] auto _ : state)
    {
        const std::clock_t begin = std::clock();
        std::this_thread::sleep_for(10s);
        state.SetIterationTime(static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC);
    }
    Check(state, path.isEmpty() || outstanding.wait_for(0s) == std::future_status::timeout,
          "It is not outstanding");
}
void IdleCpu_Idle(benchmark::State& state) { IdleCpu(state, {}); }
void IdleCpu_Outstanding(benchmark::State& state) { IdleCpu(state, "/hang"); }
void IdleCpu_Bound(benchmark::State& state)
{
    for ([[maybe_unused]] auto _ : state)
        state.SetIterationTime(0.010);
}

const Benchmark::Pairs pairs{
    {"Http/Sequential", "manager on a thread", 0.9, Requests_Vek<1>, Requests_Qt<1>},
    {"Http/100AtOnce", "manager on a thread", 0.9, Requests_Vek<manyRequests>, Requests_Qt<manyRequests>},
    {"Http/100AtOnce", "curl_multi", std::nullopt, Requests_Vek<manyRequests>, Requests_Curl},
    {"Http/IdleCpu", "10 ms in 10 s, idle", 1.0, IdleCpu_Idle, IdleCpu_Bound, Benchmark::ETiming::OwnOnce},
    {"Http/IdleCpu", "10 ms in 10 s, waiting", 1.0, IdleCpu_Outstanding, IdleCpu_Bound,
     Benchmark::ETiming::OwnOnce},
};
} // namespace
} // namespace vek::Network
