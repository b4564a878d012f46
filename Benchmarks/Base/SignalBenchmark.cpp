#include "VekBase/Signal.h"
#include "Base/QtSignalSender.h"
#include "Support/Pair.h"
#include <boost/signals2/signal.hpp>
#include <cstdint>
#include <vector>

namespace vek
{
namespace
{
class VekSender
{
public:
    template <typename Callback>
    void Connect(Callback callback)
    {
        m_connections.push_back(m_changed.Connect(callback));
    }
    void Emit(int value) { m_changed.Emit(value); }

private:
    Signal<void(int)> m_changed;
    std::vector<Connection> m_connections;
};

class QtSender
{
public:
    template <typename Callback>
    void Connect(Callback callback)
    {
        QObject::connect(&m_sender, &QtSignalSender::Changed, &m_receiver, callback, Qt::DirectConnection);
    }
    void Emit(int value) { m_sender.Changed(value); }

private:
    QtSignalSender m_sender;
    QObject m_receiver;
};

class BoostSender
{
public:
    template <typename Callback>
    void Connect(Callback callback)
    {
        m_changed.connect(callback);
    }
    void Emit(int value) { m_changed(value); }

private:
    boost::signals2::signal<void(int)> m_changed;
};

/// A round: one emission to @p receivers callbacks, each adding the value to a sum.
template <typename Sender, int receivers>
void Emit(benchmark::State& state)
{
    Sender sender;
    std::int64_t sum = 0;
    for (int i = 0; i < receivers; ++i)
        sender.Connect([&sum](int value) { sum += value; });
    for ([[maybe_unused]] auto _ : state)
    {
        int value = 3;
        benchmark::DoNotOptimize(value);
        sender.Emit(value);
    }
    Benchmark::Check(state, sum == state.iterations() * receivers * 3, "Not every callback was called once");
}

const char* const qtName = "Qt signal";
const char* const boostName = "boost::signals2";

const Benchmark::Pairs pairs{{"Signal/Emit1", qtName, 1.5, Emit<VekSender, 1>, Emit<QtSender, 1>},
                             {"Signal/Emit10", qtName, 1.5, Emit<VekSender, 10>, Emit<QtSender, 10>},
                             {"Signal/Emit1", boostName, 3.0, Emit<VekSender, 1>, Emit<BoostSender, 1>},
                             {"Signal/Emit10", boostName, 3.0, Emit<VekSender, 10>, Emit<BoostSender, 10>}};
} // namespace
} // namespace vek
