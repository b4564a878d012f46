#include "VekAppCore/Network/HttpService.h"
#include "Network/Servers.h"
#include "Support/TestSupport.h"
#include "VekAppCore/App/Exception.h"
#include <QFile>
#include <QNetworkReply>
#include <QSslCertificate>
#include <QSslConfiguration>
#include <QSysInfo>
#include <QUrlQuery>
#include <gmock/gmock.h>
#include <thread>

namespace vek::Network
{
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class HttpServiceTest : public testing::Test
{
protected:
    HttpServiceTest() { m_service->Start(); }

    std::future<QString> Get(const QString& path)
    {
        return m_service->SendGetRequest(m_server.GetUrl(path), {});
    }

    /// The body, or why there is none: "status text", "broken promise".
    static std::string GetResult(std::future<QString> future)
    {
        try
        {
            return future.get().toStdString();
        }
        catch (const HttpException& exception)
        {
            EXPECT_EQ(exception.what(), exception.GetText().toStdString());
            return std::to_string(exception.GetStatusCode()) + ' ' + exception.what();
        }
        catch (const std::future_error& error)
        {
            return error.code() == std::future_errc::broken_promise ? "broken promise" : error.what();
        }
    }

    TestSupport::LogRecorder m_log;
    TestSupport::ScriptedServer m_server;
    std::unique_ptr<HttpService> m_service = std::make_unique<HttpService>();
};

TEST_F(HttpServiceTest, RequestsAreTheseBytes)
{
    const QByteArray agent = "User-Agent: Havlen/1.0 (Windows NT " + QSysInfo::kernelVersion().toUtf8() + ")";
    const QByteArray plain = "Content-Type: text/plain";
    QUrlQuery query;
    query.addQueryItem("a b", u"1&\u00e4"_s);
    const QUrl url = m_server.GetUrl("/echo?old=1");
    const auto expect = [&](std::future<QString> future, const QByteArray& line,
                            const QByteArrayList& headers, const QByteArray& body) {
        const QByteArray sent = future.get().toUtf8();
        const qsizetype end = sent.indexOf("\r\n\r\n");
        QByteArrayList lines = sent.first(end).replace("\r\n", "\n").split('\n');
        EXPECT_EQ(lines.takeFirst(), line);
        // The languages of this machine, and what its Qt can unpack.
        lines.removeIf([](const QByteArray& header) { return header.startsWith("Accept-"); });
        QByteArrayList all = headers + QByteArrayList{"Host: 127.0.0.1:" + QByteArray::number(url.port()),
                                                      "Connection: Keep-Alive"};
        std::ranges::sort(lines);
        std::ranges::sort(all);
        EXPECT_EQ(lines.join('\n').toStdString(), all.join('\n').toStdString());
        EXPECT_EQ(sent.sliced(end + 4), body);
    };
    expect(m_service->SendGetRequest(url, query), "GET /echo?a%20b=1%26%C3%A4 HTTP/1.1", {agent, plain}, {});
    expect(m_service->SendGetRequest(url, {}), "GET /echo HTTP/1.1", {agent, plain}, {});
    expect(m_service->SendPostRequest(url, query, u"\u00e4\n"_s), "POST /echo?a%20b=1%26%C3%A4 HTTP/1.1",
           {agent, plain, "Content-Length: 3"}, "\xc3\xa4\n");
    expect(m_service->SendPostRequest(url, {}, "{}",
                                      {{"content-TYPE", "application/json"},
                                       {"X-Any", u"\u00e4 b"_s},
                                       {"X-Empty", {}},
                                       {"user-agent", "Me"}}),
           "POST /echo HTTP/1.1",
           {"content-TYPE: application/json", "X-Any: \xc3\xa4 b", "X-Empty: ", "user-agent: Me",
            "Content-Length: 2"},
           "{}");
    expect(m_service->SendPostRequest(url, {}, {}), "POST /echo HTTP/1.1",
           {agent, plain, "Content-Length: 0"}, {});
}

TEST_F(HttpServiceTest, AnswersAndFaultsReachTheFuture)
{
    m_service->SetMostBytes(100'000);
    const struct
    {
        const char* path;
        const char* result; ///< Its beginning.
        int warnings;
    } rows[] = {{"/bytes/c3a46c", "\xc3\xa4l", 0},
                {"/bytes/e46c", "\xef\xbf\xbdl", 0},
                {"/status/200", "", 0},
                {"/status/204", "broken promise", 0},
                {"/status/201", "broken promise", 0},
                {"/status/404", "404 Error transferring http", 1},
                {"/status/500", "500 Error transferring http", 1},
                {"/close", "0 Connection closed", 1},
                {"/late", "late", 0},
                {"/endless", "200 The answer is larger than 100000 bytes", 1}};
    for (const auto& row : rows)
    {
        const std::size_t before = m_log.GetLines().size();
        EXPECT_THAT(GetResult(Get(row.path)), testing::StartsWith(row.result)) << row.path;
        const auto lines = m_log.GetLines();
        ASSERT_EQ(lines.size() - before, row.warnings) << row.path;
        if (row.warnings > 0)
        {
            EXPECT_EQ(lines.back().verbosity, Log::Verbosity::Warning);
            EXPECT_THAT(lines.back().message.toStdString(),
                        testing::StartsWith("Error with HTTP request to " +
                                            m_server.GetUrl(row.path).toString().toStdString() + " : "));
        }
    }
    try
    {
        Get("/status/404").get();
    }
    catch (const HttpException& exception)
    {
        EXPECT_EQ(exception.GetUrl(), m_server.GetUrl("/status/404"));
        EXPECT_EQ(exception.GetErrorCode(), QNetworkReply::ContentNotFoundError);
    }
    m_service->SetTransferTimeout(50ms);
    EXPECT_EQ(GetResult(Get("/hang")), "0 Operation canceled");
    m_service->SetTransferTimeout(0ms);
    EXPECT_THAT(GetResult(m_service->SendGetRequest(QUrl("http://127.0.0.1:1/"), {})),
                testing::StartsWith("0 Connection refused"));
    EXPECT_THAT(GetResult(m_service->SendGetRequest(QUrl("http://no.invalid/"), {})),
                testing::StartsWith("0 Host no.invalid not found"));
}

TEST_F(HttpServiceTest, WhatCannotBeSentIsRefused)
{
    const auto header = [this](const QString& name, const QString& value) {
        return GetResult(m_service->SendGetRequest(m_server.GetUrl("/echo"), {}, {{name, value}}));
    };
    for (const auto& [name, value] : {std::pair{u""_s, u"a"_s},
                                      {u"a b"_s, u"a"_s},
                                      {u"a:"_s, u"a"_s},
                                      {u"\u00e4"_s, u"a"_s},
                                      {u"a"_s, u"b\r\nc: d"_s},
                                      {u"a\n"_s, u"b"_s},
                                      {u"a"_s, u"\n"_s},
                                      {u"a"_s, QString(QChar(u'\0'))}})
        EXPECT_EQ(header(name, value), "0 A header has no valid name or value");
    for (const char* url : {"", "ftp://127.0.0.1/", "file:///etc/passwd", "data:,a", "127.0.0.1"})
        EXPECT_EQ(GetResult(m_service->SendGetRequest(QUrl(url), {})),
                  "0 The URL has no scheme http or https")
            << url;
    EXPECT_TRUE(m_server.GetRequests().empty());
    EXPECT_EQ(m_log.GetLines().size(), 13U);
}

TEST_F(HttpServiceTest, RequestsOfOnePassAreSentInTheirOrder)
{
    HttpService service;
    std::vector<std::future<QString>> futures;
    for (int i = 0; i < 4; ++i)
        futures.push_back(service.SendGetRequest(m_server.GetUrl("/bytes/3" + QString::number(i)), {}));
    service.Start();
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(futures[static_cast<std::size_t>(i)].get(), QString::number(i));
    const auto requests = m_server.GetRequests();
    ASSERT_EQ(requests.size(), 4U);
    for (int i = 0; i < 4; ++i)
        EXPECT_THAT(requests[static_cast<std::size_t>(i)].toStdString(),
                    testing::StartsWith("GET /bytes/3" + std::to_string(i)));
    EXPECT_THROW(service.Start(), Exception::InternalAppException);
}

TEST_F(HttpServiceTest, DeathEndsAllFuturesWhateverTheServersDo)
{
    auto queued = std::make_unique<std::future<QString>>();
    {
        HttpService service;
        *queued = service.SendGetRequest(m_server.GetUrl("/echo"), {});
    }
    EXPECT_EQ(GetResult(std::move(*queued)), "broken promise");

    std::vector<std::future<QString>> futures;
    for (const char* path : {"/hang", "/endless", "/late", "/hang"})
        futures.push_back(Get(path));
    ASSERT_TRUE(TestSupport::WaitFor([this] { return m_server.GetRequests().size() >= 4; }));
    futures.push_back(Get("/hang"));
    m_service.reset();
    for (auto& future : futures)
    {
        ASSERT_EQ(future.wait_for(0s), std::future_status::ready);
        EXPECT_THAT(GetResult(std::move(future)), testing::AnyOf("broken promise", "late"));
    }
}

TEST_F(HttpServiceTest, RealServerIsUnderstood)
{
    const TestSupport::Nginx nginx;
    QFile certificate(nginx.GetCertificateFile());
    ASSERT_TRUE(certificate.open(QIODevice::ReadOnly));
    const auto get = [&](const char* scheme, const char* path) {
        return GetResult(m_service->SendGetRequest(nginx.GetUrl(scheme, path), {}));
    };
    const std::string text = "a text of thirty-two characters.";
    EXPECT_THAT(get("https", "/text"),
                testing::StartsWith("0 SSL handshake failed")); // nobody vouches for it
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setCaCertificates(QSslCertificate::fromDevice(&certificate));
    m_service->SetSSLConfiguration(configuration);
    for (const char* scheme : {"http", "https"})
    {
        EXPECT_EQ(get(scheme, "/text"), text);
        EXPECT_EQ(get(scheme, "/empty"), "");
        EXPECT_EQ(get(scheme, "/none"), "broken promise");
        EXPECT_EQ(get(scheme, "/zipped"), std::string(1000, 'z'));
        EXPECT_EQ(get(scheme, "/redirect"), text);
        EXPECT_THAT(get(scheme, "/bad"), testing::StartsWith("500 "));
        EXPECT_THAT(get(scheme, "/loop"), testing::EndsWith("Too many redirects"));
    }
    EXPECT_EQ(get("http", "/insecure"), text);
    EXPECT_THAT(get("https", "/insecure"), testing::EndsWith("Insecure redirect"));
    m_service->SetMostBytes(999);
    EXPECT_EQ(get("http", "/zipped"), "200 The answer is larger than 999 bytes");
}

TEST_F(HttpServiceTest, BearsFaultsFromManyThreads)
{
    constexpr int perThread = 250;
    constexpr std::pair<const char*, const char*> rows[] = {
        {"/bytes/6f6b", "ok"}, {"/bytes/6f6b", "ok"}, {"/status/500", "500 "},
        {"/close", "0 "},      {"/late", "late"},     {"/status/204", "broken promise"}};
    std::atomic<int> ended = 0;
    std::atomic<int> asExpected = 0;
    std::vector<std::jthread> threads;
    for (int thread = 0; thread < 4; ++thread)
        threads.emplace_back([&, thread] {
            for (int i = 0; i < perThread; ++i)
            {
                const auto& [path, expected] = rows[(i + thread) % std::size(rows)];
                std::future<QString> future = Get(path);
                if (i % 10 == 0)
                {
                    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
                    configuration.setPeerVerifyDepth(i % 20); // another one each time: connections begin anew
                    m_service->SetSSLConfiguration(configuration);
                    static_cast<void>(Get("/bytes/")); // dropped
                }
                const std::string result = GetResult(std::move(future));
                asExpected += result.starts_with(expected);
                ++ended;
            }
        });
    threads.clear();
    EXPECT_EQ(ended, 4 * perThread);
    // A connection that is reset may take the request down that comes next on it.
    EXPECT_GE(asExpected, 4 * perThread * 7 / 10);
}
} // namespace vek::Network
