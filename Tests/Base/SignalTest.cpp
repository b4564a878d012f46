#include "VekBase/Signal.h"
#include "VekBase/ScopeBase.h"
#include <algorithm>
#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <memory>
#include <optional>
#include <random>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

namespace vek
{
namespace
{
constexpr auto priority(int value) { return static_cast<SignalBase::EPriority>(value); }

/// A signal that callbacks may destroy, and the marks of the callbacks that were called.
struct Desk
{
    std::optional<Signal<void()>> signal{std::in_place};
    std::string called;
    std::vector<Connection> connections;

    /// Connects a callback that leaves its mark, then runs @p action.
    std::size_t Connect(char mark, std::move_only_function<void()> action = nullptr, int order = 10)
    {
        connections.push_back(signal->Connect(
            [this, mark, action = std::move(action)]() mutable {
                called += mark;
                if (action)
                    action();
            },
            priority(order)));
        return connections.size() - 1;
    }
    void Emit()
    {
        called += '(';
        signal->Emit();
        called += ')';
    }
};

struct SignalCase
{
    const char* fault;
    std::function<void(Desk&)> use;
    const char* called; ///< Emissions in parentheses.
};
void PrintTo(const SignalCase& row, std::ostream* out) { *out << row.fault; }
class SignalUse : public testing::TestWithParam<SignalCase>
{};

TEST_P(SignalUse, CallsWhatIsConnected)
{
    Desk desk;
    GetParam().use(desk);
    EXPECT_EQ(desk.called, GetParam().called);
}
INSTANTIATE_TEST_SUITE_P(Order, SignalUse,
                         testing::Values(SignalCase{"order of connecting taken for order of priority",
                                                    [](Desk& desk) {
                                                        desk.Connect('c');
                                                        desk.Connect('e', nullptr, 11);
                                                        desk.Connect('a', nullptr, -1);
                                                        desk.Connect('d'); // behind its equal
                                                        desk.Connect('b', nullptr, 9);
                                                        desk.Emit();
                                                    },
                                                    "(abcde)"},
                                         SignalCase{"empty callback called",
                                                    [](Desk& desk) {
                                                        EXPECT_FALSE(
                                                            desk.signal->Connect(nullptr).IsConnected());
                                                        desk.Emit();
                                                    },
                                                    "()"}));

INSTANTIATE_TEST_SUITE_P(
    Connections, SignalUse,
    testing::Values(
        SignalCase{"callback outlives its connection",
                   [](Desk& desk) {
                       desk.Connect('a');
                       desk.Connect('b');
                       desk.connections.erase(desk.connections.begin()); // moves b's
                       desk.Emit();
                   },
                   "(b)"},
        SignalCase{"assignment keeps the old callback",
                   [](Desk& desk) {
                       desk.Connect('a');
                       desk.connections[0] = desk.signal->Connect([&] { desk.called += 'b'; });
                       desk.Emit();
                   },
                   "(b)"},
        SignalCase{"assignment to itself disconnects",
                   [](Desk& desk) {
                       Connection& same = desk.connections[desk.Connect('a')];
                       desk.connections[0] = std::move(same);
                       desk.Emit();
                   },
                   "(a)"},
        SignalCase{"connection of a dead callback lost when it is made by that callback's own end",
                   [](Desk& desk) {
                       Connection& connection = desk.connections.emplace_back();
                       connection = desk.signal->Connect(
                           [held = ScopeBase([&] { connection = desk.signal->Connect([] { FAIL(); }); })] {});
                       connection = Connection();
                       desk.connections.clear();
                       desk.Emit();
                   },
                   "()"},
        SignalCase{"callback destroyed with the signal uses it",
                   [](Desk& desk) {
                       desk.connections.push_back(
                           desk.signal->Connect([held = ScopeBase([&] {
                                                     desk.called += desk.signal->HasConnections() ? '1' : '0';
                                                 })] {}));
                       *desk.signal = Signal<void()>();
                   },
                   "0"},
        SignalCase{"signal destroyed by the callbacks of DisconnectAll is used",
                   [](Desk& desk) {
                       for (int i = 0; i < 2; ++i)
                           desk.connections.push_back(
                               desk.signal->Connect([held = ScopeBase([&] { desk.signal.reset(); })] {}));
                       desk.signal->DisconnectAll();
                       EXPECT_FALSE(desk.signal.has_value() || desk.connections[0].IsConnected());
                   },
                   ""}));

INSTANTIATE_TEST_SUITE_P(
    DuringEmission, SignalUse,
    testing::Values(
        SignalCase{"callback that disconnects itself is destroyed while it runs",
                   [](Desk& desk) {
                       desk.Connect('a', [&desk, text = std::string(64, 'x')] {
                           desk.connections.clear();
                           EXPECT_EQ(text.size(), 64U);
                       });
                       desk.Emit();
                       desk.Emit();
                   },
                   "(a)()"},
        SignalCase{"callback called after an earlier one disconnected it",
                   [](Desk& desk) {
                       desk.Connect('a', [&] { desk.connections.erase(desk.connections.begin() + 1); });
                       desk.Connect('b');
                       desk.Connect('c');
                       desk.Emit();
                   },
                   "(ac)"},
        SignalCase{"DisconnectAll lets the rest be called",
                   [](Desk& desk) {
                       desk.Connect('a', [&] { desk.signal->DisconnectAll(); });
                       desk.Connect('b');
                       desk.Emit();
                       EXPECT_FALSE(desk.signal->HasConnections());
                   },
                   "(a)"},
        SignalCase{"new callback called by the emission it was connected in, or not by a nested one",
                   [](Desk& desk) {
                       desk.Connect('a', [&] {
                           if (desk.connections.size() > 3)
                               return;
                           desk.Connect('b');
                           desk.Connect('c', nullptr, 1);
                           desk.Connect('d', nullptr, 99);
                           desk.Emit();
                       });
                       desk.Emit();
                       desk.Emit();
                   },
                   "(a(cabd))(cabd)"},
        SignalCase{"nested emission deletes what the outer one walks",
                   [](Desk& desk) {
                       desk.Connect('a', [&] {
                           if (desk.connections.size() == 3)
                           {
                               desk.connections.pop_back();
                               desk.connections.pop_back();
                               desk.Emit();
                           }
                       });
                       desk.Connect('b');
                       desk.Connect('c');
                       desk.Emit();
                   },
                   "(a(a))"},
        SignalCase{"signal and its callbacks are used after the signal was destroyed",
                   [](Desk& desk) {
                       desk.Connect('a', [&, text = std::string(64, 'x')] {
                           desk.signal.reset();
                           EXPECT_EQ(text.size(), 64U);
                       });
                       desk.Connect('b');
                       desk.Emit();
                       EXPECT_FALSE(desk.connections[0].IsConnected() || desk.connections[1].IsConnected());
                   },
                   "(a)"},
        SignalCase{"emission follows the object instead of the list, when the signal is moved",
                   [](Desk& desk) {
                       Signal<void()> target;
                       desk.Connect('a', [&] { target = std::move(*desk.signal); });
                       desk.Connect('b', [&] { *desk.signal = Signal<void()>(); });
                       desk.Connect('c');
                       desk.Emit();
                       desk.connections.erase(desk.connections.begin(), desk.connections.begin() + 2);
                       target.Emit();
                       desk.Emit();
                   },
                   "(abc)c()"},
        SignalCase{"the rest is called or the signal unusable after an exception",
                   [](Desk& desk) {
                       desk.Connect('a', [&] {
                           desk.connections.erase(desk.connections.begin());
                           throw std::runtime_error("refused");
                       });
                       desk.Connect('b');
                       EXPECT_THROW(desk.Emit(), std::runtime_error);
                       desk.Emit();
                   },
                   "(a(b)"},
        SignalCase{"what a callback holds uses the signal when it is destroyed at the end",
                   [](Desk& desk) {
                       desk.connections.push_back(
                           desk.signal->Connect([&, held = ScopeBase([&] {
                                                        desk.Connect('c');
                                                        desk.Emit();
                                                        desk.signal.reset();
                                                    })] { desk.connections.clear(); }));
                       desk.Connect('b');
                       desk.Emit();
                   },
                   "((c))"}));

TEST(Connection, SetOfThemKeepsItsOrderAfterTheSignalHasDied)
{
    std::set<Connection> connections;
    {
        Signal<void()> first;
        Signal<void()> second;
        for (int i = 0; i < 3; ++i)
            for (Signal<void()>* signal : {&first, &second})
                connections.insert(signal->Connect([] {}, priority(-i)));
        EXPECT_EQ(connections.size(), 6U); // none equal to another
    }
    EXPECT_TRUE(std::ranges::is_sorted(connections));
    EXPECT_TRUE(std::ranges::none_of(connections, &Connection::IsConnected));
}

TEST(Signal, GivesEveryCallbackTheSameArguments)
{
    Signal<void(std::string, std::string&)> signal;
    std::string reference;
    const auto take = [](std::string value, std::string& target) { target += std::move(value); };
    const Connection first = signal.Connect(take);
    const Connection second = signal.Connect(take); // gets nothing when the first one has moved from it
    signal.Emit("text ", reference);
    EXPECT_EQ(reference, "text text ");
}

/// Does random things to a signal, also inside its callbacks, and compares every call with a naive list.
class RandomWalk
{
public:
    explicit RandomWalk(unsigned seed) : m_random(seed) {}

    void Step()
    {
        switch (m_random() % 12)
        {
        case 0: *m_signal = Signal<void()>(), m_entries.clear(); break;
        case 1: m_signal = std::make_unique<Signal<void()>>(std::move(*m_signal)); break;
        case 2: throw std::runtime_error("refused");
        case 3:
        case 4:
        case 5:
            if (!m_entries.empty())
                m_entries.erase(
                    std::next(m_entries.begin(), static_cast<int>(m_random() % m_entries.size())));
            break;
        case 6:
        case 7: _Emit(); break;
        default: _Connect();
        }
    }

private:
    using Key = std::pair<int, int>; ///< Priority, then order of connecting.

    void _Connect()
    {
        const Key key(static_cast<int>(m_random() % 3), ++m_connectionCount);
        m_entries.emplace(key, m_signal->Connect([this, key] { _Called(key); }, priority(key.first)));
    }
    void _Called(Key key)
    {
        ASSERT_FALSE(m_pending.empty());
        _DropDisconnected();
        ASSERT_TRUE(!m_pending.back().empty() && m_pending.back().front() == key);
        m_pending.back().erase(m_pending.back().begin());
        Step();
    }
    void _Emit()
    {
        if (m_pending.size() == 4)
            return;
        m_pending.emplace_back();
        for (const auto& [key, connection] : m_entries)
            m_pending.back().push_back(key);
        const ScopeBase end([this] { m_pending.pop_back(); });
        m_signal->Emit();
        _DropDisconnected();
        ASSERT_TRUE(m_pending.back().empty());
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
};

TEST(Signal, BehavesLikeANaiveListWhateverIsDone)
{
    for (unsigned seed = 0; seed < 200 && !testing::Test::HasFailure(); ++seed)
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
} // namespace
} // namespace vek
