#include "VekBase/Signal.h"
#include "VekBase/ScopeBase.h"
#include <algorithm>
#include <gtest/gtest.h>
#include <map>
#include <memory>
#include <random>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

namespace vek
{
namespace
{
constexpr auto Priority(int value) { return static_cast<SignalBase::EPriority>(value); }

/// Does random things to a signal, also inside its callbacks and when what they hold is destroyed, and
/// compares every call with a naive list.
class RandomWalk
{
public:
    explicit RandomWalk(unsigned seed) : m_random(seed) {}
    ~RandomWalk() { m_isOver = true; }

    void Step()
    {
        if (m_isOver || m_depth > 5)
            return;
        ++m_depth;
        const ScopeBase end([this] { --m_depth; });
        switch (m_random() % 16)
        {
        case 0: _DestroySignal(); break;
        case 1: m_signal = std::make_unique<Signal<void()>>(std::move(*m_signal)); break;
        case 2: _DisconnectAll(); break;
        case 3:
            if (m_destructionCount == 0)
                throw std::runtime_error("refused");
            break;
        case 4:
        case 5:
        case 6:
        case 7:
            if (!m_entries.empty())
                // Taken out first: what the callback holds does random things as well.
                m_entries.extract(
                    std::next(m_entries.begin(), static_cast<int>(m_random() % m_entries.size())));
            break;
        case 8:
        case 9: _Emit(); break;
        default: _Connect();
        }
    }

private:
    using Key = std::pair<int, int>; ///< Priority, then order of connecting.

    void _Connect()
    {
        const Key key(9 + static_cast<int>(m_random() % 3), ++m_connectionCount);
        auto callback = [this, key, held = ScopeBase([this] { _Destroyed(); })] { _Called(key); };
        Connection connection = key.first == 10 ? m_signal->Connect(std::move(callback)) // the default
                                                : m_signal->Connect(std::move(callback), Priority(key.first));
        m_entries.emplace(key, std::move(connection));
    }
    void _DestroySignal()
    {
        const auto entries = std::exchange(m_entries, {});
        const auto old = std::exchange(m_signal, std::make_unique<Signal<void()>>());
    }
    void _DisconnectAll()
    {
        const auto entries = std::exchange(m_entries, {});
        m_signal->DisconnectAll();
        for (const auto& [key, connection] : entries)
            EXPECT_FALSE(connection.IsConnected());
    }
    void _Emit()
    {
        m_pending.emplace_back();
        for (const auto& [key, connection] : m_entries)
            m_pending.back().push_back(key);
        const ScopeBase end([this] { m_pending.pop_back(); });
        m_signal->Emit();
        _DropDisconnected();
        EXPECT_TRUE(m_pending.back().empty());
    }
    void _Called(Key key)
    {
        _DropDisconnected();
        ASSERT_TRUE(!m_pending.back().empty() && m_pending.back().front() == key);
        m_pending.back().erase(m_pending.back().begin());
        Step();
    }
    void _Destroyed()
    {
        ++m_destructionCount;
        Step();
        --m_destructionCount;
    }
    void _DropDisconnected()
    {
        std::erase_if(m_pending.back(), [this](Key key) { return !m_entries.contains(key); });
    }

    std::mt19937 m_random;
    std::unique_ptr<Signal<void()>> m_signal = std::make_unique<Signal<void()>>();
    std::map<Key, Connection> m_entries;     ///< All connected ones.
    std::vector<std::vector<Key>> m_pending; ///< Of each emission under way, what it has still to call.
    int m_connectionCount = 0;
    int m_depth = 0;
    int m_destructionCount = 0; ///< Under way; must not throw.
    bool m_isOver = false;
};

TEST(Signal, BehavesLikeANaiveListWhateverIsDone)
{
    for (unsigned seed = 0; seed < 300 && !testing::Test::HasFailure(); ++seed)
    {
        SCOPED_TRACE(seed);
        RandomWalk walk(seed);
        for (int i = 0; i < 100; ++i)
            try
            {
                walk.Step();
            }
            catch (const std::runtime_error&)
            {}
    }
}

TEST(Signal, GivesEveryCallbackTheSameArguments)
{
    Signal<void(std::string, std::string&)> signal;
    std::string target;
    const auto take = [](std::string value, std::string& result) { result += std::move(value); };
    const Connection first = signal.Connect(take);
    const Connection second = signal.Connect(take); // gets nothing when the first one has moved from it
    signal.Emit("text ", target);
    EXPECT_EQ(target, "text text ");
}

TEST(Signal, CallbackRunsToItsEndAfterItHasDestroyedTheSignalsOwner)
{
    auto signal = std::make_unique<Signal<void()>>();
    std::string seen;
    Connection connection = signal->Connect([&, held = std::string(64, 'x')] {
        connection = Connection();
        signal.reset();
        seen = held;
    });
    signal->Emit();
    EXPECT_EQ(seen, std::string(64, 'x'));
}

TEST(Connection, HoldsWhatWasAssignedLast)
{
    Signal<void()> signal;
    std::string called;
    Connection connection = signal.Connect([&] { called += 'a'; });
    connection = signal.Connect([&] { called += 'b'; });
    Connection& same = connection;
    connection = std::move(same);
    signal.Emit();
    EXPECT_EQ(called, "b");

    connection =
        signal.Connect([held = ScopeBase([&] { connection = signal.Connect([&] { called += 'c'; }); })] {});
    connection = Connection(); // what the old callback holds assigns meanwhile
    signal.Emit();
    EXPECT_EQ(called, "bc");
    connection = signal.Connect(nullptr);
    EXPECT_FALSE(connection.IsConnected() || signal.HasConnections());
}

TEST(Connection, SetOfThemKeepsItsOrderAfterTheSignalHasDied)
{
    std::set<Connection> connections;
    {
        Signal<void()> first;
        Signal<void()> second;
        for (int i = 0; i < 3; ++i)
            for (Signal<void()>* signal : {&first, &second})
                connections.insert(signal->Connect([] {}, Priority(-i)));
        EXPECT_EQ(connections.size(), 6U); // none equal to another
    }
    EXPECT_TRUE(std::ranges::is_sorted(connections));
    EXPECT_TRUE(std::ranges::none_of(connections, &Connection::IsConnected));
}
} // namespace
} // namespace vek
