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
using testing::AllOf, testing::AnyOf, testing::EndsWith, testing::Property, testing::StartsWith,
    testing::Throws;

class HttpServiceTest : public testing::Test
{
protected:
    HttpServiceTest() { m_service->Start(); }

    std::future<QString> Get(const QString& path)
    {
        return m_service->SendGetRequest(m_server.GetUrl(path), {});
    }

    /// The body, or why there is none: "status text" without the server's address, "broken promise".
    std::string GetResult(std::future<QString> future) const
    {
        try
        {
            return future.get().toStdString();
        }
        catch (const HttpException& exception)
        {
            EXPECT_EQ(exception.what(), exception.GetText().toStdString());
            return std::to_string(exception.GetStatusCode()) + ' ' +
                   QString(exception.what()).remove(m_server.GetUrl("").toString()).toStdString();
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
    const QString agent = "User-Agent: Havlen/1.0 (Windows NT " + QSysInfo::kernelVersion() + ")";
    const QString plain = "Content-Type: text/plain";
    QUrlQuery query;
    query.addQueryItem("a b", u"1&\u00e4"_s);
    const QUrl url = m_server.GetUrl("/echo?old=1");
    const auto expect = [&url](std::future<QString> future, QStringList lines, const QString& body) {
        lines += {u"Host: 127.0.0.1:%1"_s.arg(url.port()), "Connection: Keep-Alive"};
        const QString sent = future.get();
        QStringList sentLines = sent.section("\r\n\r\n", 0, 0).split("\r\n");
        // The languages of this machine, and what its Qt can unpack.
        sentLines.removeIf([](const QString& header) { return header.startsWith("Accept-"); });
        EXPECT_THAT(sentLines, testing::UnorderedElementsAreArray(lines));
        EXPECT_EQ(sent.section("\r\n\r\n", 1), body);
    };
    expect(m_service->SendGetRequest(url, query), {"GET /echo?a%20b=1%26%C3%A4 HTTP/1.1", agent, plain}, {});
    expect(m_service->SendGetRequest(url, {}), {"GET /echo HTTP/1.1", agent, plain}, {});
    expect(m_service->SendPostRequest(url, query, u"\u00e4\n"_s),
           {"POST /echo?a%20b=1%26%C3%A4 HTTP/1.1", agent, plain, "Content-Length: 3"}, u"\u00e4\n"_s);
    expect(m_service->SendPostRequest(url, {}, "{}",
                                      {{"content-TYPE", "application/json"},
                                       {"X-Any", u"\u00e4 b"_s},
                                       {"X-Empty", {}},
                                       {"user-agent", "Me"}}),
           {"POST /echo HTTP/1.1", "content-TYPE: application/json", u"X-Any: \u00e4 b"_s,
            "X-Empty: ", "user-agent: Me", "Content-Length: 2"},
           "{}");
    expect(m_service->SendPostRequest(url, {}, {}),
           {"POST /echo HTTP/1.1", agent, plain, "Content-Length: 0"}, {});
}

TEST_F(HttpServiceTest, AnswersAndFaultsReachTheFuture)
{
    m_service->SetMostBytes(100'000);
    const struct
    {
        QString path;
        std::string result;
        bool isFault = false;
    } rows[] = {{"/bytes/c3a46c", "\xc3\xa4l"},
                {"/bytes/e46c", "\xef\xbf\xbdl"},
                {"/status/200", ""},
                {"/status/204", "broken promise"},
                {"/status/201", "broken promise"},
                {"/status/404", "404 Error transferring /status/404 - server replied: Any", true},
                {"/status/500", "500 Error transferring /status/500 - server replied: Any", true},
                {"/close", "0 Connection closed", true},
                {"/late", "late"},
                {"/endless", "200 The answer is larger than 100000 bytes", true}};
    QStringList warnings;
    for (const auto& [path, result, isFault] : rows)
    {
        EXPECT_EQ(GetResult(Get(path)), result) << path.toStdString();
        if (isFault)
            warnings +=
                "Error with HTTP request to " + path + " : " + QString::fromStdString(result).section(' ', 1);
    }
    QStringList logged;
    for (auto [verbosity, message] : m_log.GetLines())
    {
        EXPECT_EQ(verbosity, Log::Verbosity::Warning);
        logged += message.remove(m_server.GetUrl("").toString());
    }
    EXPECT_EQ(logged, warnings);
    EXPECT_THAT([this] { Get("/status/404").get(); },
                Throws<HttpException>(
                    AllOf(Property(&HttpException::GetUrl, m_server.GetUrl("/status/404")),
                          Property(&HttpException::GetErrorCode, QNetworkReply::ContentNotFoundError))));
    m_service->SetTransferTimeout(50ms);
    EXPECT_EQ(GetResult(Get("/hang")), "0 Operation canceled");
    m_service->SetTransferTimeout(0ms);
    EXPECT_THAT(GetResult(m_service->SendGetRequest(QUrl("http://127.0.0.1:1/"), {})),
                StartsWith("0 Connection refused"));
    EXPECT_THAT(GetResult(m_service->SendGetRequest(QUrl("http://no.invalid/"), {})),
                StartsWith("0 Host no.invalid not found"));
}

TEST_F(HttpServiceTest, WhatCannotBeSentIsRefused)
{
    for (const QString& header :
         {u"=a"_s, u"a b=a"_s, u"a:=a"_s, u"\u00e4=a"_s, u"a=b\r\nc: d"_s, u"a\n=b"_s, u"a=\n"_s, u"a=\0"_s})
        EXPECT_EQ(GetResult(m_service->SendGetRequest(m_server.GetUrl("/echo"), {},
                                                      {{header.section('=', 0, 0), header.section('=', 1)}})),
                  "0 A header has no valid name or value")
            << header.toStdString();
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
    // Without an answer, none goes over the connection of another.
    for (const char* number : {"1", "2", "3", "4"})
        futures.push_back(service.SendGetRequest(m_server.GetUrl("/hang"), QUrlQuery({{"n", number}})));
    service.Start();
    const auto getLines = [this] {
        QByteArray lines;
        for (const QByteArray& connection : m_server.GetRequests())
            lines += connection.left(connection.indexOf(" HTTP")) + '\n';
        return lines;
    };
    const QByteArray expected = "GET /hang?n=1\nGET /hang?n=2\nGET /hang?n=3\nGET /hang?n=4\n";
    EXPECT_TRUE(TestSupport::WaitFor([&] { return getLines() == expected; })) << getLines().toStdString();
    EXPECT_THROW(service.Start(), Exception::InternalAppException);
}

TEST_F(HttpServiceTest, DeathEndsAllFuturesWhateverTheServersDo)
{
    std::future<QString> queued = HttpService().SendGetRequest(m_server.GetUrl("/echo"), {});
    EXPECT_EQ(GetResult(std::move(queued)), "broken promise");
    std::vector<std::future<QString>> futures;
    for (const char* path : {"/hang", "/endless", "/late", "/hang"})
        futures.push_back(Get(path));
    ASSERT_TRUE(TestSupport::WaitFor([this] { return m_server.GetRequests().size() >= 4; }));
    futures.push_back(Get("/hang"));
    m_service.reset();
    for (auto& future : futures)
    {
        ASSERT_EQ(future.wait_for(0s), std::future_status::ready);
        EXPECT_THAT(GetResult(std::move(future)), AnyOf("broken promise", "late"));
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
                StartsWith("0 SSL handshake failed")); // nobody vouches for it
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
        EXPECT_THAT(get(scheme, "/bad"), StartsWith("500 "));
        EXPECT_THAT(get(scheme, "/loop"), EndsWith("Too many redirects"));
    }
    EXPECT_EQ(get("http", "/insecure"), text);
    EXPECT_THAT(get("https", "/insecure"), EndsWith("Insecure redirect"));
    m_service->SetMostBytes(999);
    EXPECT_EQ(get("http", "/zipped"), "200 The answer is larger than 999 bytes");
}

TEST_F(HttpServiceTest, BearsFaultsFromManyThreads)
{
    constexpr int perThread = 250;
    constexpr std::pair<const char*, const char*> rows[] = {
        {"/bytes/6f6b", "ok"}, {"/bytes/6f6b", "ok"}, {"/status/500", "500 "},
        {"/close", "0 "},      {"/late", "late"},     {"/status/204", "broken promise"}};
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
                asExpected += GetResult(std::move(future)).starts_with(expected);
            }
        });
    threads.clear();
    // A connection that is reset may take the request down that comes next on it.
    EXPECT_GE(asExpected, 4 * perThread * 7 / 10);
}
} // namespace vek::Network
