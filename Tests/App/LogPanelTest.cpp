#include "VekAppCore/App/LogPanel.h"
#include "Support/TestSupport.h"
#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QListView>
#include <QScrollBar>
#include <gmock/gmock.h>
#include <thread>

namespace vek::App
{
namespace
{
using Log::Verbosity;
using vek::Test::WaitFor;

class LogPanelTest : public testing::Test
{
protected:
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
    static QListView& GetView(const LogPanel& panel) { return *panel.findChild<QListView*>(); }
    static bool WaitForRows(const LogPanel& panel, int rows)
    {
        return WaitFor([&panel, rows] { return GetView(panel).model()->rowCount() == rows; });
    }

    const vek::Test::LogRecorder m_recorder; ///< The former callback.
};

TEST_F(LogPanelTest, FiltersOldAndNewLinesAlike)
{
    const struct
    {
        const char* fault;
        Verbosity mostVerbose;
        QString text;
        QString shown;
    } rows[] = {{"less important lines shown", Verbosity::Error, "", "Probe lost,"},
                {"own level left out", Verbosity::Warning, "", "Probe lost,PROBE worn,"},
                {"case heeded", Verbosity::Trace, "probe", "Probe lost,PROBE worn,"},
                {"taken for a pattern", Verbosity::Trace, "[.*]", "[.*] second,"},
                {"time searched", Verbosity::Trace, ":", ""},
                {"one of two filters left out", Verbosity::Error, "worn", ""}};
    for (const auto& row : rows)
    {
        SCOPED_TRACE(row.fault);
        LogPanel before;
        LogPanel after;
        before.Install();
        after.Install();
        before.SetMostVerbose(row.mostVerbose);
        before.SetTextFilter(row.text);
        App::Log(Verbosity::Error, "Probe lost");
        App::Log(Verbosity::Warning, "PROBE worn");
        App::Log(Verbosity::Debug, "[.*]\nsecond");
        EXPECT_EQ(after.GetLineCount(), 3);
        after.SetMostVerbose(row.mostVerbose);
        after.SetTextFilter(row.text);
        EXPECT_EQ(GetShown(before), row.shown);
        EXPECT_EQ(GetShown(after), row.shown);
    }
}

TEST_F(LogPanelTest, DropsTheOldestInTheInboxAndInTheList)
{
    LogPanel panel(nullptr, 5);
    panel.Install();
    LogNumbers(1, 9);
    EXPECT_EQ(GetShown(panel), "5,6,7,8,9,");
    panel.SetTextFilter("1");
    LogNumbers(10, 13);
    EXPECT_EQ(GetShown(panel), "10,11,12,13,");
    LogNumbers(14, 15);
    EXPECT_EQ(GetShown(panel), "11,12,13,14,15,");
    LogNumbers(16, 17);
    panel.Clear();
    LogNumbers(20, 21);
    EXPECT_EQ(GetShown(panel), "21,");
    EXPECT_EQ(panel.GetLineCount(), 2);
}

TEST_F(LogPanelTest, ShowsByItselfWhatThreadsLog)
{
    LogPanel panel;
    panel.Install();
    panel.Install();                  // shows no line twice
    for (const int rows : {400, 800}) // the second time after a wake-up
    {
        std::vector<std::jthread> threads;
        for (int thread = 0; thread < 4; ++thread)
            threads.emplace_back([] { LogNumbers(1, 100); });
        EXPECT_TRUE(WaitForRows(panel, rows));
    }
    EXPECT_EQ(GetShown(panel).count(",100,"), 8);
}

TEST_F(LogPanelTest, DeadPanelOnlyPassesOn)
{
    {
        LogPanel panel;
        panel.Install();
        LogNumbers(1, 1); // the wake-up is still on its way when the panel dies
    }
    LogPanel later;
    later.Install();
    LogNumbers(2, 2);
    EXPECT_TRUE(WaitForRows(later, 1));
    EXPECT_EQ(m_recorder.GetLines().size(), 2u);
}

TEST_F(LogPanelTest, FollowsTheEndUntilTheUserScrollsUp)
{
    LogPanel panel(nullptr, 200);
    panel.Install();
    panel.resize(300, 200);
    panel.show();
    QScrollBar& scrollBar = *GetView(panel).verticalScrollBar();
    const auto isAtEnd = [&scrollBar] {
        return scrollBar.maximum() > 0 && scrollBar.value() == scrollBar.maximum();
    };
    const auto isAtTop = [&panel](const char* end) {
        return GetView(panel).indexAt({5, 5}).data().toString().endsWith(end);
    };

    LogNumbers(1, 150);
    EXPECT_TRUE(WaitForRows(panel, 150) && WaitFor(isAtEnd));
    scrollBar.setValue(120);
    EXPECT_TRUE(isAtTop("  121"));
    LogNumbers(151, 250); // drops 50
    EXPECT_TRUE(WaitFor([&] { return scrollBar.maximum() > 150 && isAtTop("  121"); }));

    scrollBar.setValue(scrollBar.maximum());
    LogNumbers(251, 260);
    EXPECT_TRUE(WaitFor([&] { return isAtEnd() && GetShown(panel).endsWith(",260,"); }));
    panel.SetTextFilter("1");
    panel.SetTextFilter("");
    EXPECT_TRUE(WaitFor([&] { return scrollBar.maximum() > 150 && isAtEnd(); }));
}

TEST_F(LogPanelTest, CopiesSelectedLinesWholeAndInOrder)
{
    LogPanel panel;
    panel.Install();
    for (const char* message : {"one\ntwo", "three", "four"})
        App::Log(Verbosity::Info, message);
    ASSERT_TRUE(WaitForRows(panel, 3));
    for (const int row : {1, 0})
        GetView(panel).selectionModel()->select(GetView(panel).model()->index(row, 0),
                                                QItemSelectionModel::Select);
    GetView(panel).actions().constFirst()->trigger();
    EXPECT_THAT(QGuiApplication::clipboard()->text().toStdString(),
                testing::MatchesRegex("[0-9:.]{12}  one\ntwo\n[0-9:.]{12}  three"));
}
} // namespace
} // namespace vek::App
