#include "VekAppCore/Analytics/AnalyticsService.h"
#include "Network/Servers.h"
#include "Support/TestSupport.h"
#include "VekAppCore/Analytics/ConsentPanel.h"
#include "VekAppCore/App/ApplicationFrame.h"
#include "VekAppCore/App/IAppFeatureService.h"
#include "VekAppCore/App/ServiceManager.h"
#include <QCheckBox>
#include <QGuiApplication>
#include <QPlainTextEdit>
#include <QScreen>
#include <gmock/gmock.h>

namespace vek::Analytics
{
namespace
{
using testing::AllOf, testing::ContainsRegex, testing::ElementsAre, testing::EndsWith, testing::HasSubstr,
    testing::StartsWith;
using Matcher = testing::Matcher<std::string>;

App::AppConfiguration MakeConfiguration(const TestSupport::ScriptedServer& server)
{
    App::AppConfiguration configuration;
    configuration.applicationName = "Probe";
    configuration.version = {1, 2, 3, 4};
    configuration.secondVersion = {5, 6, 7, 8};
    configuration.analyticsAddress = server.GetUrl("").toString();
    return configuration;
}
} // namespace

class AnalyticsServiceTest : public testing::Test
{
protected:
    AnalyticsServiceTest()
    {
        m_service.InitializeService({"G-1", "secret"}, "UA-1", "de", "AT", {}, "client");
        m_service.SetServiceUsed(true);
    }

    /// The lines and bodies that have come to these paths: "path?query", a line each.
    std::vector<std::string> WaitFor(std::size_t count)
    {
        std::vector<std::string> lines;
        EXPECT_TRUE(TestSupport::WaitFor([&] { return (lines = Take()).size() >= count; }));
        return lines;
    }
    [[nodiscard]] std::vector<std::string> Take() const
    {
        std::vector<std::string> lines;
        for (const QByteArray& connection : m_server.GetRequests())
            for (const QByteArray& request : connection.split('\0'))
            {
                const qsizetype end = request.indexOf("\r\n\r\n");
                const QByteArray target = request.split(' ').value(1);
                if (end >= 0)
                    for (const QByteArray& line : request.mid(end + 4).split('\n'))
                        lines.push_back(QByteArray(target + ' ' + line).replace('"', '\'').toStdString());
            }
        std::ranges::sort(lines);
        return lines;
    }

    /// What is sent with every query.
    [[nodiscard]] std::string GetBase() const
    {
        const QSize screen = QGuiApplication::primaryScreen()->size();
        const auto items = QString(
            "v=1&tid=UA-1&cid=client&an=Probe&ds=app&ul=de&av=1.2&aiid=1.2.3.4&aid=5.6.7.8&sr=%1x%2&fl=");
        return items.arg(screen.width()).arg(screen.height()).toStdString();
    }

    TestSupport::LogRecorder m_log;
    TestSupport::ScriptedServer m_server;
    App::ApplicationFrame m_frame{MakeConfiguration(m_server)};
    AnalyticsService& m_service = (m_frame.Start(), GetAnalyticsService());
    GoogleAnalyticsService& m_backEnd = *m_service.GetBackEnd();
};

TEST_F(AnalyticsServiceTest, EveryReportGoesOutTwice)
{
    ScopeBase page = m_service.OpenPage("Settings");
    EXPECT_EQ(m_service.CurrentPage(), "/Settings");
    const Matcher universal = AllOf(StartsWith("/batch " + GetBase()), HasSubstr("&cd1=AT&"),
                                    testing::Not(HasSubstr("cd2")), EndsWith("&t=pageview&dp=%2FSettings"));
    const Matcher ga4 = AllOf(
        StartsWith(
            "/mp/collect?measurement_id=G-1&api_secret=secret {'client_id':'client','events':[{'name':'page_view',"
            "'params':{'page_location':'Settings','page_title':'Settings'}}],'timestamp_micros':1"),
        HasSubstr("'application_language':{'value':'de'}"),
        HasSubstr("'corvane_version':{'value':'1.2.3.4'}"),
        ContainsRegex("'cpu':.'value':'.*.Core: [0-9]+ . RAM: [0-9]+Go.'"));
    EXPECT_THAT(WaitFor(2), ElementsAre(universal, ga4));

    m_service.SendEvent("Menu", "Open File", {}, -1);
    m_service.SendEvent("Menu", "Save", "as", 3);
    m_service.SendTiming("File", "load", std::chrono::duration<double, std::milli>(12.9), "big");
    m_service.SendCrash(); // flushes
    EXPECT_EQ(m_service.CurrentPage(), "/Settings");
    const Matcher rows[] = {
        AllOf(StartsWith("/batch "), EndsWith("&t=event&ec=Menu&ea=Open%20File&dp=%2FSettings")),
        AllOf(StartsWith("/batch "), EndsWith("&t=event&ec=Menu&ea=Save&dp=%2FSettings&el=as&ev=3")),
        AllOf(StartsWith("/batch "), EndsWith("&t=timing&utc=File&utv=load&utt=12&utl=big")),
        AllOf(StartsWith("/batch "), EndsWith("&t=pageview&dp=%2FCrash")),
        ContainsRegex(
            "'name':'open_file','params':.'engagement_time_msec':[0-9.e-]+,'event_category':'Menu'[}]"),
        HasSubstr("'event_category':'Menu','event_label':'as','event_value':3}}"),
        HasSubstr(
            "'params':{'timing_action':'load','timing_category':'File','timing_label':'big','value':12}}"),
        HasSubstr("{'page_location':'Crash','page_title':'Crash'}")};
    EXPECT_THAT(WaitFor(10), testing::IsSupersetOf(rows));
    EXPECT_EQ(m_backEnd.GetSent().size(), 7U); // of which two batches
}

TEST_F(AnalyticsServiceTest, PageBeforeIsReportedWhenOneIsClosed)
{
    ScopeBase main = m_service.OpenPage("/");
    ScopeBase first = m_service.OpenPage("First");
    ScopeBase second = m_service.OpenPage("Second");
    first.Release(); // it is not the current one
    EXPECT_EQ(m_service.CurrentPage(), "/Second");
    second.Release();
    EXPECT_EQ(m_service.CurrentPage(), "/"); // the first is closed
    m_service.ResetCurrentPage("Other");
    EXPECT_EQ(m_service.CurrentPage(), "/Other");
    std::vector<std::string> pages;
    EXPECT_TRUE(TestSupport::WaitFor([&] {
        pages.clear();
        for (const auto& sent : m_backEnd.GetSent())
            if (sent.path == "/mp/collect")
                pages.push_back(sent.payload.section("page_title\":\"", 1).section('"', 0, 0).toStdString());
        return pages.size() >= 4;
    }));
    EXPECT_THAT(pages, ElementsAre("MainWindow", "First", "Second", "MainWindow"));
}

TEST_F(AnalyticsServiceTest, NothingIsSentWithoutConsent)
{
    m_service.SetServiceUsed(false);
    const auto report = [&] {
        ScopeBase page = m_service.OpenPage("a");
        m_service.SendEvent("b", "c");
        m_service.SendTiming("d", "e", std::chrono::milliseconds(1));
        m_service.SendCrash();
        m_backEnd.BatchQuery(UAPageviewQuery("x"), true);
        m_backEnd.StartSession("f");
        m_backEnd.StopSession();
    };
    report();
    m_service.SetServiceUsed(true);
    m_service.SendEvent("g", "h"); // its batch is pending when the consent is withdrawn
    EXPECT_TRUE(TestSupport::WaitFor([&] { return m_backEnd.GetSentCount() == 1; }));
    m_service.SetServiceUsed(false);
    report();
    m_service.Stop();
    EXPECT_THAT(WaitFor(1), ElementsAre(HasSubstr("'name':'h'")));
    EXPECT_EQ(m_backEnd.GetSentCount(), 1U);
    App::Services().RemoveService(typeid(App::IAppFeatureService));
    EXPECT_FALSE(AnalyticsService::IsServiceUsed());
}

TEST_F(AnalyticsServiceTest, QueriesAreSentInBatchesOfTwenty)
{
    for (int i = 0; i < 19; ++i)
        m_backEnd.BatchQuery(UAPageviewQuery("/" + QString::number(i)), false);
    m_backEnd.BatchQuery(UniversalAnalyticsQuery(), false); // not valid: it has no type
    EXPECT_EQ(m_backEnd.GetSentCount(), 0U);
    m_backEnd.BatchQuery(UAPageviewQuery("/19"), false);
    EXPECT_EQ(WaitFor(20).size(), 20U);
    EXPECT_EQ(m_backEnd.GetSentCount(), 1U);

    m_service.Stop(); // sends what is pending
    m_service.Start();
    for (int i = 0; i < 5; ++i)
        m_backEnd.BatchQuery(UAPageviewQuery("/last"), false);
    m_service.Stop();
    EXPECT_EQ(Take().size(), 25U);
    EXPECT_EQ(m_backEnd.GetSentCount(), 2U);
}

TEST_F(AnalyticsServiceTest, SessionsAndDebugModeHaveTheirPaths)
{
    m_backEnd.StartSession("/start");
    m_backEnd.StopSession();
    m_service.SetDebug(true);
    m_backEnd.SendEvent(PageViewEvent("b"));
    m_backEnd.SendQuery(UAPageviewQuery("/c"));
    m_backEnd.BatchQuery(UAPageviewQuery("/d"), true);
    EXPECT_THAT(WaitFor(6), testing::UnorderedElementsAre(
                                AllOf(StartsWith("/collect "), EndsWith("&t=pageview&dp=%2Fstart&sc=start")),
                                AllOf(StartsWith("/collect "), EndsWith("&t=pageview&sc=stop")),
                                AllOf(StartsWith("/mp/collect?"), ContainsRegex("'session_id':1[0-9]+[,}]")),
                                StartsWith("/debug/mp/collect?"), StartsWith("/debug/collect "),
                                StartsWith("/debug/batch ")));
}

TEST_F(AnalyticsServiceTest, OldestPendingAreDroppedAndToldOnce)
{
    GoogleAnalyticsService backEnd; // not started
    backEnd.SetAddress(m_server.GetUrl(""));
    for (int i = 0; i < 4; ++i)
        backEnd.SetApplicationParameter(static_cast<EApplicationParameter>(i), "x");
    backEnd.SetApplicationParameter(static_cast<EApplicationParameter>(13), "x"); // ignored
    const std::size_t before = m_log.GetLines().size();
    for (int i = 0; i < 1003; ++i)
        backEnd.BatchQuery(UAPageviewQuery('/' + QString::number(i)), true);
    EXPECT_EQ(backEnd.GetDroppedCount(), 3U);
    EXPECT_EQ(m_log.GetLines().size(), before + 1);
    {
        GoogleAnalyticsService deaf; // without an HTTP service
        std::future<QString> future = deaf.SendEvent(PageViewEvent("a"));
        deaf.SendEvent(PageViewEvent("b"));
        deaf.Start();
        EXPECT_THROW(future.get(), std::future_error);
    }
    const auto lines = m_log.GetLines();
    EXPECT_EQ(std::ranges::count(lines, Log::Verbosity::Error, &TestSupport::LogLine::verbosity), 1);

    backEnd.SetHttp(App::Services().Require<Network::HttpService>().GetSender());
    backEnd.Start();
    const auto sent = WaitFor(1000);
    const auto has = [&sent](const char* end) {
        return std::ranges::any_of(sent, [end](const std::string& line) { return line.ends_with(end); });
    };
    EXPECT_FALSE(has("=%2F2"));
    EXPECT_TRUE(has("=%2F3") && has("=%2F1002"));
}

TEST_F(AnalyticsServiceTest, HangingHostTakesFourRequestsAndNoMore)
{
    m_server.Hang();
    for (int i = 0; i < 2000; ++i)
        m_service.SendEvent("a", "b");
    EXPECT_TRUE(TestSupport::WaitFor([this] { return m_server.GetRequests().size() == 4; }));
    EXPECT_EQ(m_backEnd.GetSentCount(), 4U);
    EXPECT_GE(m_backEnd.GetDroppedCount(), 996U + 980U); // of the events and of the queries
    std::future<QString> future = m_backEnd.SendEvent(PageViewEvent("a"));
    m_service.SetServiceUsed(false);
    ASSERT_EQ(future.wait_for(std::chrono::seconds(10)),
              std::future_status::ready); // dropped, while the host hangs
    EXPECT_THROW(future.get(), std::future_error);
    m_service.Stop();
    EXPECT_EQ(m_backEnd.GetSentCount(), 4U);
}

TEST_F(AnalyticsServiceTest, ConsentPanelShowsAndSwitches)
{
    ConsentPanel panel;
    panel.show();
    auto& box = *panel.findChild<QCheckBox*>();
    const auto& sent = *panel.findChild<QPlainTextEdit*>();
    EXPECT_TRUE(box.isChecked());
    std::vector<bool> switches;
    const Connection connection = panel.OnSwitched([&switches](bool isUsed) { switches.push_back(isUsed); });
    m_service.SendEvent("a", "first");
    EXPECT_TRUE(TestSupport::WaitFor([&] { return sent.toPlainText().contains("\"name\":\"first\""); }));
    box.click();
    EXPECT_FALSE(AnalyticsService::IsServiceUsed());
    m_service.SendEvent("a", "second");
    m_service.SetServiceUsed(true);
    m_service.SendEvent("a", "third");
    EXPECT_TRUE(TestSupport::WaitFor([&] { return sent.toPlainText().contains("\"name\":\"third\""); }));
    EXPECT_FALSE(sent.toPlainText().contains("\"name\":\"second\""));
    EXPECT_TRUE(box.isChecked());
    EXPECT_THAT(switches, ElementsAre(false));
}
} // namespace vek::Analytics
