#include "VekAppCore/Threading/AsyncTask.h"
#include "Support/TestSupport.h"
#include "VekAppCore/Threading/SeededExecutor.h"
#include "VekBase/Multithread.h"
#include <QThread>
#include <algorithm>
#include <array>
#include <gtest/gtest.h>

namespace vek::Threading
{
namespace
{
using Exception::AppException;
using Exception::E_Escape;

const TrString title = TrString::NoTranslate("Task");
const QString unknown = "An unknown error occurred";

void ExpectLocation(const AppException& exception, const char* function)
{
    const std::string file = exception.GetLocation().file_name();
    EXPECT_TRUE(file.ends_with("Src/Threading/AsyncTask.cpp")) << file;
    EXPECT_NE(std::string(exception.GetLocation().function_name()).find(function), std::string::npos);
}

/// Writes down what a listener hears, in order.
struct Recorder
{
    explicit Recorder(const TaskListener& task)
    {
        const auto add = [this](const QString& text) { heard += text; };
        connections.push_back(task.OnTaskSucceeded([add] { add("succeeded"); }));
        connections.push_back(task.OnTaskCanceled([add] { add("canceled"); }));
        connections.push_back(task.OnTaskException([add](const AppException& exception) {
            const QString message = exception.GetMessage().ToString();
            add(message);
            if (message == unknown)
                ExpectLocation(exception, "HandleException");
        }));
        connections.push_back(task.OnTaskFinished([add] { add("finished"); }));
        connections.push_back(task.OnProgressionChanged([add](int value) { add(QString::number(value)); }));
        connections.push_back(
            task.OnTitleChanged([add](const TrString& text) { add("title: " + text.ToString()); }));
    }

    QStringList heard;
    std::vector<Connection> connections;
};

class TaskTest : public testing::Test
{
protected:
    template <typename Work, typename Then = Details::NoThen>
    TaskListener Launch(Work work, Then then = {})
    {
        return LaunchTask(executor, title, std::move(work), std::move(then));
    }

    const std::shared_ptr<SeededExecutor> seeded = std::make_shared<SeededExecutor>(1);
    TaskExecutor executor{seeded};
};

struct OutcomeCase
{
    const char* fault;
    void (*work)(IProgression&);
    void (*then)();
    QStringList heard;
    bool isCancelledBefore = false;
};
void PrintTo(const OutcomeCase& row, std::ostream* out) { *out << row.fault; }

void Succeed(IProgression&) {}
void Report(IProgression& progression)
{
    progression.SetTitle(TrString::NoTranslate("Half"));
    progression.SetProgression(50);
    progression.SetProgression(100);
}
void Go() {}
template <typename T>
[[noreturn]] void Throw()
{
    if constexpr (std::is_same_v<T, AppException>)
        throw AppException(TrString::NoTranslate("Broken"));
    else if constexpr (std::is_same_v<T, std::runtime_error>)
        throw std::runtime_error("Broken");
    else
        throw T();
}
template <typename T>
void ThrowInWork(IProgression&)
{
    Throw<T>();
}

class TaskOutcome : public TaskTest, public testing::WithParamInterface<OutcomeCase>
{};

TEST_P(TaskOutcome, IsOneAndThenFinished)
{
    const TaskListener task = Launch(GetParam().work, GetParam().then);
    const Recorder recorder(task);
    if (GetParam().isCancelledBefore)
    {
        task.Cancel();
        task.Cancel();
    }
    seeded->RunAll();
    EXPECT_EQ(recorder.heard, GetParam().heard);
    task.Cancel(); // too late to change anything
    task.Wait();
    EXPECT_EQ(recorder.heard, GetParam().heard);
}
INSTANTIATE_TEST_SUITE_P(
    Rows, TaskOutcome,
    testing::Values(
        OutcomeCase{"reports lost or out of order",
                    Report,
                    Go,
                    {"title: Half", "50", "100", "succeeded", "finished"}},
        OutcomeCase{"escape taken for an error", ThrowInWork<E_Escape>, Go, {"canceled", "finished"}},
        OutcomeCase{"message lost", ThrowInWork<AppException>, Go, {"Broken", "finished"}},
        OutcomeCase{
            "text of a foreign exception shown", ThrowInWork<std::runtime_error>, Go, {unknown, "finished"}},
        OutcomeCase{"no exception at all lost", ThrowInWork<int>, Go, {unknown, "finished"}},
        OutcomeCase{"other critical exception taken for cancellation",
                    ThrowInWork<Exception::CriticalException>,
                    Go,
                    {unknown, "finished"}},
        OutcomeCase{
            "continuation's escape taken for success", Succeed, Throw<E_Escape>, {"canceled", "finished"}},
        OutcomeCase{"continuation's error swallowed", Succeed, Throw<AppException>, {"Broken", "finished"}},
        OutcomeCase{"continuation's foreign error swallowed", Succeed, Throw<int>, {unknown, "finished"}},
        OutcomeCase{"cancellation before the start lost",
                    Report,
                    Go,
                    {"title: Half", "50", "canceled", "finished"},
                    true},
        OutcomeCase{"work that does not report interrupted", Succeed, Go, {"succeeded", "finished"}, true}));

TEST_F(TaskTest, ResultReachesTheContinuationByValue)
{
    struct NoDefault
    {
        explicit NoDefault(int number) : value(number) {}
        int value;
    };
    static const QString shared = "shared";
    QStringList results;
    const auto add = [&results](const QString& text) { results += text; };
    Launch([] { return std::make_unique<int>(1); },
           [=](std::unique_ptr<int> result) { add(QString::number(*result)); });
    seeded->RunAll();
    Launch([] { return NoDefault(2); }, [=](NoDefault result) { add(QString::number(result.value)); });
    seeded->RunAll();
    Launch([](IProgression&) -> const QString& { return shared; }, [=](QString result) { add(result); });
    seeded->RunAll();
    Launch(
        [captured = std::make_unique<int>(4)] { return *captured; },
        [=, captured = std::make_unique<int>(1)](int result) { add(QString::number(result + *captured)); });
    seeded->RunAll();
    EXPECT_EQ(results, QStringList({"1", "2", "shared", "5"}));
}

TEST_F(TaskTest, ThrowingListenerIsReportedAndSilencesNobody)
{
    const TestSupport::NotificationRecorder notifications;
    const TestSupport::LogRecorder log;
    const Connection launched = OnTaskLaunched(executor, [](const TaskListener&) { Throw<int>(); });
    for (const auto work : {Report, ThrowInWork<E_Escape>, ThrowInWork<AppException>})
    {
        const TaskListener task = Launch(work);
        const Recorder recorder(task);
        const auto first = SignalBase::EPriority(1); // connected late, called first
        const std::array throwers{task.OnTaskSucceeded(Throw<int>, first),
                                  task.OnTaskCanceled(Throw<int>, first),
                                  task.OnTaskException([](const AppException&) { Throw<int>(); }, first),
                                  task.OnTaskFinished(
                                      [&recorder] {
                                          EXPECT_FALSE(recorder.heard.contains("finished"));
                                          Throw<int>();
                                      },
                                      first),
                                  task.OnProgressionChanged([](int) { Throw<int>(); }),
                                  task.OnTitleChanged([](const TrString&) { Throw<int>(); })};
        seeded->RunAll();
        EXPECT_EQ(recorder.heard.last(), "finished");
    }
    EXPECT_EQ(notifications.messages.size(), 3U + 3U * 2U + 3U); // launches, ends, reports
}

TEST_F(TaskTest, ListenersSayWhetherTheyAreTooLate)
{
    EXPECT_FALSE(TaskListener().IsValid());
    EXPECT_TRUE(TaskListener().IsTaskFinished());
    EXPECT_FALSE(TaskListener().OnTaskFinished([] {}).IsConnected());
    EXPECT_TRUE(TaskListener().GetTitle().IsEmpty());
    TaskListener().Cancel();
    TaskListener().Wait();

    const TaskListener task = Launch(Succeed);
    EXPECT_FALSE(task.IsTaskFinished());
    bool isFinishedInOutcome = false;
    const Connection succeeded = task.OnTaskSucceeded([&] { isFinishedInOutcome = task.IsTaskFinished(); });
    seeded->RunAll();
    EXPECT_TRUE(isFinishedInOutcome);
    EXPECT_TRUE(task.IsTaskFinished());
    EXPECT_EQ(task.GetTitle(), title);
    const Recorder late(task);
    seeded->RunAll();
    EXPECT_TRUE(late.heard.isEmpty());
}

TEST_F(TaskTest, TaskThatIsDroppedBeforeItRunsEndsAsCanceled)
{
    struct Dropper final : public ITaskExecutorImpl
    {
        void PostEvent(std::function<void()> function, const std::source_location&) override
        {
            posted.push_back(std::move(function));
        }
        void WaitUntil(const std::function<bool()>&, EEventToTreat) override {}
        void Clear() override {}
        void ExecuteAsync(std::function<void()>) override {}
        std::shared_ptr<RunningTaskChecker> GetRunningTaskChecker() override { return nullptr; }
        void WaitForAll() override {}
        std::vector<std::function<void()>> posted;
    };
    const auto dropper = std::make_shared<Dropper>();
    TaskExecutor dropping(dropper);
    auto [task, future] = LaunchFuture(dropping, title, [] { return 1; });
    const Recorder recorder(task);
    EXPECT_FALSE(task.IsTaskFinished()); // its end is on the way
    for (auto& function : std::exchange(dropper->posted, {}))
        function();
    EXPECT_EQ(recorder.heard, QStringList({"canceled", "finished"}));
    EXPECT_THROW(future.get(), std::future_error);
}

struct FutureCase
{
    const char* fault;
    void (*work)(IProgression&);
    std::string thrown; ///< Type and text of what HandleFutureException throws.
};
void PrintTo(const FutureCase& row, std::ostream* out) { *out << row.fault; }
class FutureException : public TaskTest, public testing::WithParamInterface<FutureCase>
{};

TEST_P(FutureException, IsTranslated)
{
    auto [task, future] = LaunchFuture(executor, title, GetParam().work);
    seeded->RunAll();
    std::string thrown;
    try
    {
        try
        {
            future.get();
        }
        catch (...)
        {
            HandleFutureException();
        }
    }
    catch (const Exception::InternalAppException& exception)
    {
        thrown = std::string("internal: ") + exception.what();
        ExpectLocation(exception, "HandleFutureException");
    }
    catch (const AppException& exception)
    {
        thrown = exception.what();
    }
    catch (const E_Escape&)
    {
        thrown = "escape";
    }
    EXPECT_EQ(thrown, GetParam().thrown);
}
INSTANTIATE_TEST_SUITE_P(
    Rows, FutureException,
    testing::Values(
        FutureCase{"own exception changed", ThrowInWork<AppException>, "Broken"},
        FutureCase{"text of a standard exception lost", ThrowInWork<std::runtime_error>, "internal: Broken"},
        FutureCase{"no exception let through", ThrowInWork<int>, "internal: An unknown error occurred"},
        FutureCase{"cancellation taken for an error", ThrowInWork<E_Escape>, "escape"}));

struct Owner : AsyncTask
{
    void OnNewTask(const TaskListener& listener) override { launched.push_back(listener); }
    std::vector<TaskListener> launched;
};

enum class EDrop
{
    Terminate,
    Launch,
    Death,
};
class DroppedTask : public TaskTest, public testing::WithParamInterface<EDrop>
{};

TEST_P(DroppedTask, RunsToItsEndForOthersButDoesNotContinue)
{
    for (int stepCount = 0; stepCount < 4; ++stepCount) // of what is queued, before it is dropped
    {
        auto owner = std::make_unique<Owner>();
        bool hasContinued = false;
        owner->Launch(executor, title, Report, [&hasContinued] { hasContinued = true; });
        const Recorder recorder(owner->launched.back());
        owner->launched.clear(); // connections are enough to hear
        for (int step = 0; step < stepCount; ++step)
            seeded->RunOne();
        switch (GetParam())
        {
        case EDrop::Terminate: owner->Terminate(); break;
        case EDrop::Launch: owner->Launch(executor, title, Report); break;
        case EDrop::Death: owner.reset(); break;
        }
        seeded->RunAll();
        EXPECT_EQ(recorder.heard, QStringList({"title: Half", "50", "100", "succeeded", "finished"}));
        EXPECT_FALSE(hasContinued);
    }
}
INSTANTIATE_TEST_SUITE_P(Ways, DroppedTask, testing::Values(EDrop::Terminate, EDrop::Launch, EDrop::Death));

TEST_F(TaskTest, OwnerDiesWhileItWaits)
{
    auto owner = std::make_unique<Owner>();
    bool hasContinued = false;
    owner->Launch(executor, title, Report, [&hasContinued] { hasContinued = true; });
    const Connection titleChanged =
        owner->launched.back().OnTitleChanged([&owner](const TrString&) { owner.reset(); });
    owner->Wait();
    EXPECT_FALSE(owner || hasContinued);
}

TEST_F(TaskTest, OwnerCancelsAndWaitsForTheCurrentTask)
{
    Owner owner;
    EXPECT_TRUE(owner.IsTaskFinished());
    owner.Cancel();
    owner.Wait();
    owner.Terminate();

    int thenCount = 0;
    const auto then = [&thenCount] { ++thenCount; };
    owner.Launch(executor, title, Report, then);
    ASSERT_EQ(owner.launched.size(), 1U);
    EXPECT_FALSE(owner.IsTaskFinished());
    owner.Wait();
    EXPECT_TRUE(owner.IsTaskFinished());
    EXPECT_EQ(thenCount, 1);

    owner.Launch(executor, title, Report, then);
    const Recorder canceled(owner.launched.back());
    owner.Cancel();
    owner.Wait();
    EXPECT_EQ(canceled.heard.last(2), QStringList({"canceled", "finished"}));
    EXPECT_EQ(thenCount, 1);

    bool isCanceled = false;
    owner.Launch(
        executor, title, [] {}, [&] { isCanceled = owner.IsCanceled(); });
    EXPECT_FALSE(owner.IsCanceled());
    owner.Cancel(); // the work does not report, and succeeds
    owner.Wait();
    EXPECT_TRUE(isCanceled);
    owner.Terminate();
    EXPECT_TRUE(owner.IsTaskFinished());
}

TEST_F(TaskTest, ContinuationMayDestroyTheOwnerWaitAndLaunchTheNext)
{
    QStringList order;
    auto owner = std::make_unique<Owner>();
    Owner& chain = *owner;
    chain.Launch(
        executor, title, [] { return 1; },
        [&](int one) {
            order += QString::number(one);
            chain.Wait(); // its own end: already reached
            chain.Launch(
                executor, title, [one] { return one + 1; },
                [&](int two) {
                    order += QString::number(two);
                    LaunchTask(executor, title, [&order] { order += "inner"; }).Wait();
                    owner.reset();
                    order += "end";
                });
        });
    seeded->RunAll();
    EXPECT_EQ(order, QStringList({"1", "2", "inner", "end"}));
}

TEST_F(TaskTest, BasesEmitStartAndEndAroundWhateverIsThrown)
{
    struct Task final : public Details::TaskImplBase
    {
        using TaskImplBase::TaskImplBase;
        void Run(IProgression& progression) override
        {
            progression.SetProgression(50);
            throw 1;
        }
    };
    struct Awaiter final : public Details::TaskAwaiterImplBase
    {
        using TaskAwaiterImplBase::TaskAwaiterImplBase;
        void RunThen() override { throw 1; }
    };
    EXPECT_THROW(Task(executor, title).Execute(), std::bad_weak_ptr);

    auto task = std::make_shared<Task>(executor, title);
    const auto awaiter = std::make_shared<Awaiter>(*task, executor, title);
    QStringList heard;
    const std::array connections{
        awaiter->OnTaskStarted([&] { heard += "started"; }),
        awaiter->OnProgressionChanged([&](int) { heard += "progression"; }),
        awaiter->OnTaskFinished([&] { heard += "finished"; }),
    };
    task->Execute();
    EXPECT_TRUE(heard.isEmpty()); // posted
    awaiter->Wait();
    EXPECT_EQ(heard, QStringList({"started", "progression", "finished"}));

    task = std::make_shared<Task>(executor, title);
    const auto orphan = std::make_shared<Awaiter>(*task, executor, title);
    EXPECT_FALSE(orphan->IsTaskFinished());
    task.reset();
    orphan->Wait(); // at once: the task is gone
    EXPECT_TRUE(orphan->IsTaskFinished());
}

// What follows runs on threads.

/// Notes on which thread it dies.
struct Mortal
{
    explicit Mortal(QThread*& died) : m_died(&died) {}
    Mortal(Mortal&& other) noexcept : m_died(std::exchange(other.m_died, nullptr)) {}
    ~Mortal()
    {
        if (m_died)
            *m_died = QThread::currentThread();
    }
    QThread** m_died;
};

TEST(TaskThreads, WorkLivesAndDiesOnAWorkerTheRestOnTheMainThread)
{
    TaskExecutor executor;
    QThread* const main = QThread::currentThread();
    for (int round = 0; round < 500; ++round)
    {
        QThread* workDied = nullptr;
        QThread* thenDied = nullptr;
        QThread* resultDied = nullptr;
        QThread* ran = nullptr;
        bool isThenOnMain = false;
        const TaskListener task = LaunchTask(
            executor, title,
            [mortal = Mortal(workDied), &ran, &resultDied] {
                ran = QThread::currentThread();
                return std::make_unique<Mortal>(resultDied);
            },
            [mortal = Mortal(thenDied), &isThenOnMain, main](std::unique_ptr<Mortal>) {
                isThenOnMain = QThread::currentThread() == main;
            });
        task.Wait();
        ASSERT_TRUE(isThenOnMain);
        ASSERT_NE(ran, main);
        ASSERT_EQ(workDied, ran);
        ASSERT_EQ(thenDied, main);
        ASSERT_EQ(resultDied, main);
    }
}

TEST(TaskThreads, ExecutorWaitsForItsTasksAndTheirEndsComeAfterwards)
{
    int finishedCount = 0;
    std::vector<Connection> connections;
    {
        TaskExecutor executor;
        for (int i = 0; i < 100; ++i)
            connections.push_back(
                LaunchTask(executor, title, [] {}).OnTaskFinished([&finishedCount] { ++finishedCount; }));
    }
    EXPECT_TRUE(TestSupport::WaitFor([&] { return finishedCount == 100; }));
}

TEST(TaskThreads, CancelReachesRunningWork)
{
    TaskExecutor executor;
    for (int round = 0; round < 100; ++round)
    {
        std::atomic<bool> isRunning = false;
        const TaskListener task = LaunchTask(executor, title, [&isRunning](IProgression& progression) {
            isRunning = true;
            const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
            while (std::chrono::steady_clock::now() < deadline)
                progression.SetProgression(1);
        });
        const Recorder recorder(task);
        while (round % 2 == 0 && !isRunning) // otherwise before, while or after it begins
            QThread::yieldCurrentThread();
        task.Cancel();
        task.Wait();
        ASSERT_EQ(recorder.heard.last(2), QStringList({"canceled", "finished"}));
    }
}

TEST(TaskThreads, TasksThatAFailureOfThePoolDropsEndAndDieOnTheMainThread)
{
    QThread* const main = QThread::currentThread();
    for (int round = 0; round < 20; ++round)
    {
        TaskExecutor executor;
        std::vector<Owner> owners(500);
        std::vector<QThread*> died(owners.size());
        std::size_t finishedCount = 0;
        std::vector<Connection> connections;
        executor.ExecuteAsync([] { throw std::runtime_error("refused"); });
        for (std::size_t i = 0; i < owners.size(); ++i)
        {
            owners[i].Launch(
                executor, title, [] {}, [mortal = Mortal(died[i])] {});
            connections.push_back(owners[i].launched.back().OnTaskFinished([&] { ++finishedCount; }));
            owners[i].launched.clear();
            if (i % 2 == 0)
                owners[i].Terminate();
        }
        ASSERT_TRUE(TestSupport::WaitFor([&] { return finishedCount == owners.size(); }));
        ASSERT_EQ(std::ranges::count(died, main), std::ssize(died));
        const TestSupport::NotificationRecorder notifications; // the failure, when the executor dies
    }
}
} // namespace
} // namespace vek::Threading
