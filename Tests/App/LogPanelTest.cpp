#include "VekAppCore/App/LogPanel.h"
#include "Support/TestSupport.h"
#include <QCoreApplication>
#include <QListView>
#include <QScrollBar>
#include <thread>

namespace vek::App
{
using Log::Verbosity;

static void LogNumbers(int first, int last)
{
    for (int number = first; number <= last; ++number)
        App::Log(Verbosity::Info, QString::number(number));
}

/// Without the times, with a comma behind each.
static QString GetShown(const LogPanel& panel)
{
    QString shown;
    for (const QString& line : panel.GetShownLines())
        shown += line.section("  ", 1) + ',';
    return shown;
}

TEST(LogPanel, FiltersOldAndNewLinesAlike)
{
    const TestSupport::LogRecorder former;
    using Row = std::tuple<const char*, Verbosity, const char*, const char*>;
    for (const auto& [fault, mostVerbose, text, shown] :
         {Row{"less important lines shown", Verbosity::Error, "", "Probe lost,"},
          Row{"own level left out", Verbosity::Warning, "", "Probe lost,PROBE worn,"},
          Row{"case heeded", Verbosity::Trace, "probe", "Probe lost,PROBE worn,"},
          Row{"taken for a pattern", Verbosity::Trace, "[.*]", "[.*] second,"},
          Row{"time searched", Verbosity::Trace, ":", ""},
          Row{"one of two filters left out", Verbosity::Error, "worn", ""}})
    {
        SCOPED_TRACE(fault);
        LogPanel panel;
        panel.Install();
        App::Log(Verbosity::Error, "Probe lost");
        App::Log(Verbosity::Debug, "[.*]\nsecond");
        EXPECT_EQ(panel.GetShownLines().size(), 2);
        panel.SetMostVerbose(mostVerbose);
        panel.SetTextFilter(text);
        App::Log(Verbosity::Debug, "third");
        App::Log(Verbosity::Warning, "PROBE worn");
        EXPECT_EQ(GetShown(panel), shown);
    }
}

TEST(LogPanel, DropsTheOldestInTheInboxAndInTheListAndFollowsTheEnd)
{
    const TestSupport::LogRecorder former;
    LogPanel panel(nullptr, 50);
    panel.Install();
    panel.show();
    QScrollBar& bar = *panel.findChild<QListView*>()->verticalScrollBar();
    LogNumbers(1, 90);
    EXPECT_TRUE(GetShown(panel).startsWith("41,") && GetShown(panel).endsWith(",90,"));
    EXPECT_TRUE(TestSupport::WaitFor([&bar] { return bar.maximum() > 0 && bar.value() == bar.maximum(); }));
    bar.setValue(bar.maximum() - 5);
    const int position = bar.value();
    LogNumbers(91, 94);
    EXPECT_TRUE(GetShown(panel).startsWith("45,"));
    EXPECT_TRUE(TestSupport::WaitFor([&] { return bar.value() == position - 4; }))
        << "the lines being read moved";
    panel.SetTextFilter("100");
    panel.Clear();
    LogNumbers(95, 149);
    EXPECT_EQ(GetShown(panel), "100,") << "dropped or kept by what is shown";
}

TEST(LogPanel, ShowsOnceWhatThreadsLogAndDiesWithAWakeUpOnItsWay)
{
    const TestSupport::LogRecorder former;
    auto panel = std::make_unique<LogPanel>();
    panel->Install();
    panel->Install();
    const auto* const model = panel->findChild<QListView*>()->model();
    for (const int rows : {400, 800}) // the second time after a wake-up
    {
        for (std::vector<std::jthread> threads; threads.size() < 4;)
            threads.emplace_back([] { LogNumbers(1, 100); });
        EXPECT_TRUE(TestSupport::WaitFor([&] { return model->rowCount() == rows; }));
    }
    LogNumbers(1, 1);
    panel = std::make_unique<LogPanel>();
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(former.GetLines().size(), 801U);
}
} // namespace vek::App
