#include "InspectionDesk/UsageReport.h"
#include "InspectionDesk/DeskFixture.h"
#include "Network/Servers.h"
#include <QCoreApplication>

namespace vek::Desk
{
class UsageReportTest : public DeskFixture
{
protected:
    UsageReportTest() { QCoreApplication::setApplicationVersion("2.0"); }
    ~UsageReportTest() override { QCoreApplication::setApplicationVersion({}); }

    const TestSupport::LogRecorder m_log;
    TestSupport::ScriptedServer m_server;
};

TEST_F(UsageReportTest, OnlyANewerVersionIsTold)
{
    std::vector<QString> told;
    const auto look = [&](const QString& address) {
        LookForUpdate(address, [&told](const QString& version) { told.push_back(version); });
    };
    const auto serve = [this](const QByteArray& text) {
        return m_server.GetUrl("/bytes/" + text.toHex()).toString();
    };
    look({});
    for (const char* text : {"2.0", "1.9.9", "", "news", "2"})
        look(serve(text));
    look(m_server.GetUrl("/status/500").toString());
    EXPECT_TRUE(TestSupport::WaitFor([this] { return !m_log.GetLines().empty(); }));
    look(serve("2.0.1\n"));
    look(serve("10.0"));
    EXPECT_TRUE(TestSupport::WaitFor([&told] { return told.size() == 2; }));
    EXPECT_THAT(told, testing::UnorderedElementsAre("2.0.1", "10.0"));
    EXPECT_EQ(m_log.GetLines().size(), 1U) << "asked without an address";
}
} // namespace vek::Desk
