#include "VekAppCore/Threading/AsyncTask.h"
#include "Support/TestSupport.h"
#include "VekAppCore/Threading/SeededExecutor.h"
#include <QThread>
#include <algorithm>
#include <array>
#include <gmock/gmock.h>

namespace vek::Threading
{
namespace
{
using Exception::AppException;
using Exception::E_Escape;

const TrString title = TrString::NoTranslate("Task");
const QString unknown = "An unknown error occurred";
const AppException broken(TrString::NoTranslate("Broken"));

/// The file and the function that made it.
std::string GetPlace(const AppException& exception)
{
    const std::source_location& where = exception.GetLocation();
    return std::string(where.file_name()) + ' ' + where.function_name();
}

/// Writes down what a listener hears, in order.
struct Recorder
{
    explicit Recorder(const TaskListener& task)
        : connections{
              task.OnTaskSucceeded([this] { heard += "succeeded"; }),
              task.OnTaskCanceled([this] { heard += "canceled"; }),
              task.OnTaskException([this](const AppException& exception) {
                  heard += exception.GetMessage().ToString();
                  if (heard.last() != unknown)
                      return;
                  EXPECT_THAT(GetPlace(exception),
                              testing::ContainsRegex("Src/Threading/AsyncTask.cpp .*HandleException"));
              }),
              task.OnTaskFinished([this] { heard += "finished"; }),
              task.OnProgressionChanged([this](int value) { heard += QString::number(value); }),
              task.OnTitleChanged([this](const TrString& text) { heard += "title: " + text.ToString(); })}
    {}

    mutable QStringList heard;
    const std::array<Connection, 6> connections;
};

using Work = std::function<void(IProgression&)>;
void Report(IProgression& progression)
{
    progression.SetTitle(TrString::NoTranslate("Half"));
    progression.SetProgression(50);
    progression.SetProgression(100);
}
const auto pass = [](auto&&...) {};
auto Throw(const auto& thrown)
{
    return [thrown](auto&&...) { throw thrown; };
}

struct TaskTest : public testing::Test
{
    template <typename Then = Details::NoThen>
    TaskListener Launch(auto work, Then then = {})
    {
        return LaunchTask(executor, title, std::move(work), std::move(then));
    }

    const std::shared_ptr<SeededExecutor> seeded = std::make_shared<SeededExecutor>(1);
    TaskExecutor executor{seeded};
};

TEST_F(TaskTest, OutcomeIsOneAndThenFinished)
{
    using Row = std::tuple<const char*, Work, std::function<void()>, QString, int>;
    for (const auto& [fault, work, then, heard, cancelCount] :
         {Row{"reports lost", Report, pass, "title: Half, 50, 100, succeeded, finished", 0},
          Row{"escape taken for an error", Throw(E_Escape()), pass, "canceled, finished", 0},
          Row{"message lost", Throw(broken), pass, "Broken, finished", 0},
          Row{"foreign text shown", Throw(std::runtime_error("Foreign")), pass, unknown + ", finished", 0},
          Row{"no exception at all lost", Throw(5), pass, unknown + ", finished", 0},
          Row{"other critical exception taken for cancellation", Throw(Exception::CriticalException()), pass,
              unknown + ", finished", 0},
          Row{"continuation's escape taken for success", pass, Throw(E_Escape()), "canceled, finished", 0},
          Row{"continuation's error swallowed", pass, Throw(broken), "Broken, finished", 0},
          Row{"continuation's foreign error swallowed", pass, Throw(5), unknown + ", finished", 0},
          Row{"cancellation before the start lost", Report, pass, "title: Half, 50, canceled, finished", 2},
          Row{"work that does not report interrupted", pass, pass, "succeeded, finished", 2}})
    {
        const TaskListener task = Launch(work, then);
        const Recorder recorder(task);
        for (int i = 0; i < cancelCount; ++i)
            task.Cancel();
        seeded->RunAll();
        task.Cancel(); // too late to change anything
        task.Wait();
        EXPECT_EQ(recorder.heard.join(", "), heard) << fault;
    }
}

TEST_F(TaskTest, ResultReachesTheContinuationByValue)
{
    static const int three = 3;
    std::array<int, 4> results{};
    Launch([] { return std::make_unique<int>(1); },
           [&](std::unique_ptr<int> result) { results[0] = *result; });
    Launch([] { return std::cref(three); }, // has no default constructor
           [&](std::reference_wrapper<const int> result) { results[1] = -result; });
    Launch([](IProgression&) -> const int& { return three; }, [&](int result) { results[2] = result; });
    Launch([captured = std::make_unique<int>(4)] { return *captured; },
           [&, captured = std::make_unique<int>(1)](int result) { results[3] = result + *captured; });
    seeded->RunAll();
    EXPECT_THAT(results, testing::ElementsAre(1, -3, 3, 5));
}

TEST_F(TaskTest, ThrowingListenerIsReportedAndSilencesNobody)
{
    const TestSupport::NotificationRecorder notifications;
    const TestSupport::LogRecorder log;
    const Connection launched = OnTaskLaunched(executor, Throw(1));
    for (const Work& work : std::initializer_list<Work>{Report, Throw(E_Escape()), Throw(broken)})
    {
        const TaskListener task = Launch(work);
        const Recorder recorder(task);
        const auto first = SignalBase::EPriority(1); // connected late, called first
        const auto throwAtTheEnd = [&recorder] {
            recorder.heard += "thrown";
            throw 1;
        };
        const std::array throwers{
            task.OnTaskSucceeded(Throw(1), first), task.OnTaskCanceled(Throw(1), first),
            task.OnTaskException(Throw(1), first), task.OnTaskFinished(throwAtTheEnd, first),
            task.OnProgressionChanged(Throw(1)),   task.OnTitleChanged(Throw(1))};
        seeded->RunAll();
        EXPECT_EQ(recorder.heard.last(2), QStringList({"thrown", "finished"}));
    }
    EXPECT_EQ(notifications.messages.size(), 3U + 3U * 2U + 3U); // launches, ends, reports
}

TEST_F(TaskTest, ListenersSayWhetherTheyAreTooLate)
{
    const TaskListener none;
    EXPECT_FALSE(none.IsValid());
    EXPECT_TRUE(none.IsTaskFinished());
    EXPECT_FALSE(none.OnTaskFinished([] {}).IsConnected());
    EXPECT_TRUE(none.GetTitle().IsEmpty());
    none.Cancel();
    none.Wait();

    const TaskListener task = Launch(pass);
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
    struct Dropper final : public SeededExecutor
    {
        using SeededExecutor::SeededExecutor;
        void ExecuteAsync(std::function<void()>) override {}
    };
    const auto dropper = std::make_shared<Dropper>(1);
    TaskExecutor dropping(dropper);
    auto [task, future] = LaunchFuture(dropping, title, [] { return 1; });
    const Recorder recorder(task);
    EXPECT_FALSE(task.IsTaskFinished()); // its end is on the way
    dropper->RunAll();
    EXPECT_EQ(recorder.heard, QStringList({"canceled", "finished"}));
    EXPECT_THROW(future.get(), std::future_error);
}

TEST_F(TaskTest, ExceptionOfAFutureIsTranslated)
{
    using Exception::InternalAppException;
    const auto read = [this](const auto& thrown) {
        return [this, thrown] {
            auto [task, future] = LaunchFuture(executor, title, Throw(thrown));
            seeded->RunAll();
            try
            {
                future.get();
            }
            catch (...)
            {
                HandleFutureException();
            }
        };
    };
    const auto throwsInternal = [](const char* text) {
        const auto place = testing::ContainsRegex("Src/Threading/AsyncTask.cpp .*HandleFutureException");
        return testing::Throws<InternalAppException>(
            testing::AllOf(testing::Property(&AppException::what, testing::StrEq(text)),
                           testing::ResultOf(GetPlace, place)));
    };
    const Exception::WrongTypeException own("Broken");
    EXPECT_THAT(read(own), testing::ThrowsMessage<Exception::WrongTypeException>("Broken"));
    EXPECT_THAT(read(std::runtime_error("Broken")), throwsInternal("Broken"));
    EXPECT_THAT(read(5), throwsInternal("An unknown error occurred"));
    EXPECT_THROW(read(E_Escape())(), E_Escape);
}

TEST_F(TaskTest, DroppedByItsOwnerRunsToItsEndForOthersButDoesNotContinue)
{
    std::unique_ptr<AsyncTask> owner;
    using Way = std::pair<const char*, std::function<void()>>;
    for (const auto& [name, drop] : {Way{"terminated", [&] { owner->Terminate(); }},
                                     Way{"replaced", [&] { owner->Launch(executor, title, Report); }},
                                     Way{"owner's death", [&] { owner.reset(); }}})
        for (int stepCount = 0; stepCount < 4; ++stepCount) // of what is queued, before it is dropped
        {
            owner = std::make_unique<AsyncTask>();
            bool hasContinued = false;
            const auto then = [&hasContinued] { hasContinued = true; };
            const Recorder recorder(owner->Launch(executor, title, Report, then)); // keeps no listener
            for (int step = 0; step < stepCount; ++step)
                seeded->RunOne();
            drop();
            seeded->RunAll();
            EXPECT_EQ(recorder.heard, QStringList({"title: Half", "50", "100", "succeeded", "finished"}))
                << name;
            EXPECT_FALSE(hasContinued) << name;
        }
}

TEST_F(TaskTest, OwnerDiesWhileItWaits)
{
    auto owner = std::make_unique<AsyncTask>();
    bool hasContinued = false;
    const Connection titleChanged =
        owner->Launch(executor, title, Report, [&hasContinued] { hasContinued = true; })
            .OnTitleChanged([&owner](const TrString&) { owner.reset(); });
    owner->Wait();
    EXPECT_FALSE(owner || hasContinued);
}

TEST_F(TaskTest, OwnerCancelsAndWaitsForTheCurrentTask)
{
    struct Owner : AsyncTask
    {
        void OnNewTask(const TaskListener& task) override { launched.push_back(task); }
        std::vector<TaskListener> launched;
    } owner;
    EXPECT_TRUE(owner.IsTaskFinished());
    owner.Cancel();
    owner.Wait();
    owner.Terminate();

    int thenCount = 0;
    const auto then = [&thenCount] { ++thenCount; };
    owner.Launch(executor, title, Report, then);
    EXPECT_FALSE(owner.IsTaskFinished());
    owner.Wait();
    EXPECT_TRUE(owner.IsTaskFinished());
    EXPECT_EQ(thenCount, 1);

    owner.Launch(executor, title, Report, then);
    ASSERT_EQ(owner.launched.size(), 2U);
    const Recorder canceled(owner.launched.back());
    owner.Cancel();
    owner.Wait();
    EXPECT_EQ(canceled.heard.last(2), QStringList({"canceled", "finished"}));
    EXPECT_EQ(thenCount, 1);

    bool isCanceled = false;
    owner.Launch(executor, title, pass, [&] { isCanceled = owner.IsCanceled(); });
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
    auto owner = std::make_unique<AsyncTask>();
    const auto continueWithTwo = [&](int two) {
        order += QString::number(two);
        LaunchTask(executor, title, [&order] { order += "inner"; }).Wait();
        owner.reset();
        order += "end";
    };
    const auto continueWithOne = [&, &chain = *owner](int one) {
        order += QString::number(one);
        chain.Wait(); // its own end: already reached
        chain.Launch(
            executor, title, [one] { return one + 1; }, continueWithTwo);
    };
    owner->Launch(
        executor, title, [] { return 1; }, continueWithOne);
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
    const std::array connections{awaiter->OnTaskStarted([&] { heard += "started"; }),
                                 awaiter->OnProgressionChanged([&](int) { heard += "progression"; }),
                                 awaiter->OnTaskFinished([&] { heard += "finished"; })};
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

TEST(Task, WorkerIsNeverTheLastToHoldOne)
{
    /// Whose main thread has run what is posted before the worker goes on.
    struct FastExecutor final : public SeededExecutor
    {
        using SeededExecutor::SeededExecutor;
        void PostEvent(std::function<void()> function, const std::source_location&) override
        {
            thread = "main";
            function();
            thread = "worker";
        }
        QString thread = "worker";
    };
    struct Task final : public Details::TaskImplBase
    {
        Task(const std::shared_ptr<FastExecutor>& owner, QString& place)
            : TaskImplBase(EventExecutor(owner), title), executor(*owner), died(place)
        {}
        ~Task() override { died = executor.thread; }
        void Run(IProgression&) override {}
        FastExecutor& executor;
        QString& died;
    };
    const auto executor = std::make_shared<FastExecutor>(1);
    QString died;
    Task::ExecuteAndRelease(std::make_shared<Task>(executor, died));
    EXPECT_EQ(died, "main");
}

// What follows runs on threads.

/// Notes on which thread it dies.
std::shared_ptr<void> MakeMortal(QThread*& died)
{
    return {nullptr, [&died](void*) { died = QThread::currentThread(); }};
}

TEST(TaskThreads, WorkLivesAndDiesOnAWorkerTheRestOnTheMainThread)
{
    TaskExecutor executor;
    QThread* const main = QThread::currentThread();
    for (int round = 0; round < 500; ++round)
    {
        QThread* workRan = nullptr;
        QThread* workDied = nullptr;
        QThread* thenRan = nullptr;
        QThread* thenDied = nullptr;
        QThread* resultDied = nullptr;
        auto work = [mortal = MakeMortal(workDied), &workRan, &resultDied] {
            workRan = QThread::currentThread();
            return MakeMortal(resultDied);
        };
        auto then = [mortal = MakeMortal(thenDied), &thenRan](std::shared_ptr<void>) {
            thenRan = QThread::currentThread();
        };
        LaunchTask(executor, title, std::move(work), std::move(then)).Wait();
        ASSERT_NE(workRan, main);
        ASSERT_THAT((std::vector{workDied, thenRan, thenDied, resultDied}),
                    testing::ElementsAre(workRan, main, main, main));
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
                LaunchTask(executor, title, pass).OnTaskFinished([&finishedCount] { ++finishedCount; }));
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
    const TestSupport::NotificationRecorder notifications; // the failure, when an executor dies
    for (int round = 0; round < 20; ++round)
    {
        TaskExecutor executor;
        std::vector<AsyncTask> owners(500);
        std::vector<QThread*> died(owners.size());
        std::size_t finishedCount = 0;
        std::vector<Connection> connections;
        executor.ExecuteAsync(Throw(std::runtime_error("refused")));
        for (std::size_t i = 0; i < owners.size(); ++i)
        {
            connections.push_back(owners[i]
                                      .Launch(executor, title, pass, [mortal = MakeMortal(died[i])] {})
                                      .OnTaskFinished([&] { ++finishedCount; }));
            if (i % 2 == 0)
                owners[i].Terminate();
        }
        ASSERT_TRUE(TestSupport::WaitFor([&] { return finishedCount == owners.size(); }));
        ASSERT_THAT(died, testing::Each(QThread::currentThread()));
    }
}
} // namespace
} // namespace vek::Threading
