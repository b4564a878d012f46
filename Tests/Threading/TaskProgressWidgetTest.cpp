#include "VekAppCore/Threading/TaskProgressWidget.h"
#include "VekAppCore/App/Translations.h"
#include "VekAppCore/Threading/AsyncTask.h"
#include "VekAppCore/Threading/SeededExecutor.h"
#include "VekAppCore/Threading/TaskStatusBar.h"
#include <QCoreApplication>
#include <QEvent>
#include <QLabel>
#include <QLocale>
#include <QProgressBar>
#include <QToolButton>
#include <gtest/gtest.h>

namespace vek::Threading
{
using namespace std::chrono_literals;

struct TaskWidgets : public testing::Test
{
    const std::shared_ptr<SeededExecutor> seeded = std::make_shared<SeededExecutor>(1);
    TaskExecutor executor{seeded};
};

TEST_F(TaskWidgets, ProgressWidgetShowsWhatTheTaskTells)
{
    std::chrono::steady_clock::time_point now;
    const TaskListener task = LaunchTask(executor, TrString::NoTranslate("First"), [](IProgression& told) {
        told.SetTitle(TrString::NoTranslate("Second"));
        told.SetProgression(20);
        told.SetProgression(25);
        told.SetProgression(60);
    });
    TaskProgressWidget widget(task, nullptr, [&now] { return now += 10s; });
    const auto* const bar = widget.findChild<QProgressBar*>();
    const auto labels = widget.findChildren<QLabel*>();
    ASSERT_EQ(labels.size(), 2);
    auto* const button = widget.findChild<QToolButton*>();
    QStringList shown;
    const auto show = [&] {
        const QString busy = bar->maximum() == 0 ? "busy" : QString::number(bar->value());
        const QString text = labels[0]->text() + '|' + busy + '|' + labels[1]->text();
        if (shown.isEmpty() || shown.last() != text)
            shown += text;
    };
    do
        show();
    while (seeded->RunOne());
    show();
    EXPECT_EQ(shown, QStringList({"First|busy|", "Second|busy|", "Second|20|", "Second|25|3 min left",
                                  "Second|60|20 s left", "Second|60|"}));
    EXPECT_FALSE(button->isEnabled());
}

TEST_F(TaskWidgets, ButtonCancelsTheTaskOnceAndSpeaksTheLanguage)
{
    const TaskListener task = LaunchTask(executor, TrString::NoTranslate("<b>"),
                                         [](IProgression& progression) { progression.SetProgression(1); });
    bool isCanceled = false;
    const Connection canceled = task.OnTaskCanceled([&] { isCanceled = true; });
    TaskProgressWidget widget(task);
    EXPECT_EQ(widget.findChild<QLabel*>()->textFormat(), Qt::PlainText);
    EXPECT_EQ(widget.findChild<QLabel*>()->toolTip(), "<p>&lt;b&gt;</p>");
    auto* const button = widget.findChild<QToolButton*>();
    App::InstallTranslations(QLocale(QLocale::French));
    QEvent change(QEvent::LanguageChange);
    QCoreApplication::sendEvent(&widget, &change);
    EXPECT_EQ(button->toolTip(), "Annuler");
    App::InstallTranslations(QLocale(QLocale::C));
    button->click();
    EXPECT_FALSE(button->isEnabled());
    seeded->RunAll();
    EXPECT_TRUE(isCanceled);
}

TEST_F(TaskWidgets, StatusBarShowsTheTasksThatRun)
{
    auto bar = std::make_unique<TaskStatusBar>(executor);
    const auto getTasks = [&bar] {
        QStringList titles;
        for (const QObject* const child : bar->children())
            if (const auto* const widget = dynamic_cast<const TaskProgressWidget*>(child))
                titles += widget->GetTask().GetTitle().ToString();
        return titles;
    };
    LaunchTask(executor, TrString::NoTranslate("a"), [] {});
    LaunchTask(executor, TrString::NoTranslate("b"), [] {});
    EXPECT_EQ(getTasks(), QStringList({"a", "b"}));
    const auto anotherSeeded = std::make_shared<SeededExecutor>(1);
    TaskExecutor another(anotherSeeded);
    const TaskListener added = LaunchTask(another, TrString::NoTranslate("c"), [] {});
    EXPECT_EQ(getTasks(), QStringList({"a", "b"}));
    bar->Add(added);
    EXPECT_EQ(getTasks(), QStringList({"a", "b", "c"}));
    seeded->RunAll();
    EXPECT_EQ(getTasks(), QStringList("c"));
    bar.reset(); // before the task ends
    anotherSeeded->RunAll();
}
} // namespace vek::Threading
