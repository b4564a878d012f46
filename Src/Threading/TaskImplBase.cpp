#include "VekAppCore/Threading/TaskImplBase.h"
#include "VekBase/Exception.h"
#include <tuple>
#include <type_traits>
#include <utility>

namespace vek::Threading
{
IProgression::~IProgression() = default;

namespace Details
{
namespace
{
/// A posted emission, in our own memory. It dies where it runs: the poster may hold the event a little
/// longer.
template <typename... Args>
struct Emission : AllocatedObject
{
    std::shared_ptr<TaskImplBase> task;
    Signal<void(Args...)>& signal;
    std::tuple<std::remove_cvref_t<Args>...> arguments;

    void operator()()
    {
        const auto alive = std::move(task);
        std::apply([this](const auto&... values) { signal.Emit(values...); }, arguments);
    }
};
} // namespace

TaskImplBase::TaskImplBase(const EventExecutor& executor, const TrString& title)
    : m_executor(executor), m_title(title)
{}

TaskImplBase::~TaskImplBase() = default;

void TaskImplBase::Execute()
{
    _ExecuteWork();
    EmitInMainThread(m_finished);
}

void TaskImplBase::ExecuteAndRelease(std::shared_ptr<TaskImplBase> task)
{
    task->_ExecuteWork();
    Release(std::move(task));
}

void TaskImplBase::Release(std::shared_ptr<TaskImplBase> task)
{
    const EventExecutor executor = task->m_executor;
    auto& finished = task->m_finished;
    executor.PostEvent(Emission<>{{}, std::move(task), finished, {}});
}

void TaskImplBase::_ExecuteWork()
{
    EmitInMainThread(m_started);
    try
    {
        m_titleText = m_title.ToString();
        {
            // Together: a Cancel in between would be forgotten.
            const std::lock_guard lock(m_mutex);
            m_progression.emplace(*this);
            m_progression->SetCanceled(m_isCanceled);
        }
        Run(*m_progression);
    }
    catch (...)
    {
        // Run has kept what the work threw; without a result the awaiter takes the task for cancelled.
    }
}

void TaskImplBase::Cancel()
{
    m_isCanceled = true;
    const std::lock_guard lock(m_mutex);
    if (m_progression)
        m_progression->SetCanceled(true);
}

void TaskImplBase::EmitInMainThread(Signal<void()>& signal)
{
    m_executor.PostEvent(Emission<>{{}, shared_from_this(), signal, {}});
}

void TaskImplBase::EmitInMainThread(Signal<void(int)>& signal, int value)
{
    m_executor.PostEvent(Emission<int>{{}, shared_from_this(), signal, {value}});
}

void TaskImplBase::EmitInMainThread(Signal<void(const TrString&)>& signal, const TrString& text)
{
    m_executor.PostEvent(Emission<const TrString&>{{}, shared_from_this(), signal, {text}});
}

TaskImplBase::Progression::~Progression() = default;

void TaskImplBase::Progression::SetProgression(int value)
{
    m_task.EmitInMainThread(m_task.m_progressionChanged, value);
    if (IsCanceled())
        throw Exception::E_Escape();
}

void TaskImplBase::Progression::SetTitle(const TrString& title)
{
    m_task.EmitInMainThread(m_task.m_titleChanged, title);
}
} // namespace Details
} // namespace vek::Threading
