#pragma once
#include "VekAppCore/Threading/IProgression.h"
#include "VekAppCore/Threading/TaskExecutor.h"
#include "VekBase/Signal.h"
#include <QString>
#include <atomic>
#include <memory>
#include <mutex>
#include <optional>

namespace vek::Threading::Details
{
/// The running side of a task: does the work on a worker, and emits on the main thread what there is to see
/// of it. Always owned by a shared pointer.
class VEKAPPCORE_EXPORT TaskImplBase : public std::enable_shared_from_this<TaskImplBase>
{
public:
    TaskImplBase(const EventExecutor& executor, const TrString& title);
    TaskImplBase(const TaskImplBase&) = delete;
    TaskImplBase& operator=(const TaskImplBase&) = delete;
    virtual ~TaskImplBase();

    /// Runs the work on the calling thread. Emits started before and finished behind it, whatever it throws.
    /// @throws std::bad_weak_ptr  no shared pointer owns this.
    void Execute();

    /// Execute, but the calling thread lets go of the task before finished is emitted: what the task holds
    /// for the main thread dies there.
    static void ExecuteAndRelease(std::shared_ptr<TaskImplBase> task);

    /// Emits finished for a task that will not run, and lets go of it as ExecuteAndRelease does.
    static void Release(std::shared_ptr<TaskImplBase> task);

    [[nodiscard]] bool IsCanceled() const noexcept { return m_isCanceled; }

protected:
    class VEKAPPCORE_EXPORT Progression : public IProgression
    {
    public:
        /// @param task  outlives this while anybody reports.
        explicit Progression(TaskImplBase& task) noexcept : m_task(task) {}
        ~Progression() override;

        void SetProgression(int value) override;
        void SetTitle(const TrString& title) override;
        void SetCanceled(bool isCanceled) override { m_isCanceled = isCanceled; }
        [[nodiscard]] bool IsCanceled() const override { return m_isCanceled; }

    private:
        TaskImplBase& m_task;
        std::atomic<bool> m_isCanceled{false};
    };

    /// The work. It keeps its result, or what it throws, for the awaiter.
    virtual void Run(IProgression& progression) = 0;

public: // behind Run: the virtual operations keep their order
    /// Asks the work to stop; it does at its next progress report, or not at all. Thread-safe.
    virtual void Cancel();

protected:
    /// As EmitInMainThread: who connects in the same turn of the event loop hears it.
    void _EmitProgression(int value) { EmitInMainThread(m_progressionChanged, value); }

private:
    friend class TaskAwaiterImplBase;

    void _ExecuteWork();
    void EmitInMainThread(Signal<void()>& signal);
    void EmitInMainThread(Signal<void(int)>& signal, int value);
    void EmitInMainThread(Signal<void(const TrString&)>& signal, const TrString& text);

    Signal<void()> m_started; // the signals belong to the main thread
    Signal<void()> m_finished;
    Signal<void(int)> m_progressionChanged;
    Signal<void(const TrString&)> m_titleChanged;
    const EventExecutor m_executor;
    const TrString m_title;
    QString m_titleText; ///< In the language at the start of the work, for the debugger.
    std::atomic<bool> m_isCanceled{false};
    std::mutex m_mutex;                       ///< Guards m_progression.
    std::optional<Progression> m_progression; ///< Made anew by each Execute.
};
} // namespace vek::Threading::Details
