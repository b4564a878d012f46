#include "VekBase/Signal.h"
#include "VekBase/ScopeBase.h"
#include <algorithm>
#include <gtest/gtest.h>
#include <map>
#include <random>
#include <set>

namespace vek
{
/// Does random things to a signal, also inside its callbacks and when what they hold is destroyed; a naive
/// list tells which callback must be next.
struct RandomWalk
{
    using Key = std::pair<int, int>; ///< Priority, then order of connecting.

    void Step()
    {
        if (depth == 6)
            return;
        ++depth;
        const int chance = static_cast<int>(random() % 13);
        if (chance < 6)
        {
            const Key key(9 + chance % 3, ++count);
            const auto die = [this, key] {
                EXPECT_FALSE(running.contains(key));
                ++deaths;
                Step();
            };
            auto callback = [this, key, held = ScopeBase(die)] {
                ASSERT_EQ(TakeNext(), key);
                const auto self = running.insert(key);
                Step();
                running.erase(self);
            };
            Connection connection = signal->Connect(std::move(callback), SignalBase::EPriority(key.first));
            connections.emplace(key, std::move(connection));
        }
        else if (chance < 9 &&
                 !connections.empty()) // out first: what the callback holds takes a step as well
            connections.extract(std::next(connections.begin(), chance % std::ssize(connections)));
        else if (chance < 11)
        {
            pending.emplace_back();
            for (const auto& [key, connection] : connections)
                pending.back().insert(key);
            signal->Emit();
            EXPECT_EQ(TakeNext(), Key());
            pending.pop_back();
        }
        else if (const auto all = std::exchange(connections, {}); chance == 11)
            signal->DisconnectAll();
        else
            std::exchange(signal, std::make_unique<Signal<void()>>()).reset();
        --depth;
    }

    Key TakeNext()
    {
        std::set<Key>& keys = pending.back();
        std::erase_if(keys, [this](Key key) { return !connections.contains(key); });
        return keys.empty() ? Key() : keys.extract(keys.begin()).value();
    }

    std::mt19937 random;
    std::unique_ptr<Signal<void()>> signal = std::make_unique<Signal<void()>>();
    std::map<Key, Connection> connections = {}; ///< All of the signal.
    std::vector<std::set<Key>> pending = {};    ///< Of each emission under way, what it has still to call.
    std::multiset<Key> running = {};
    int count = 0;  ///< Of callbacks connected.
    int deaths = 0; ///< Of callbacks.
    int depth = 0;
};

TEST(Signal, BehavesLikeANaiveListWhateverIsDone)
{
    for (unsigned seed = 0; seed < 300 && !testing::Test::HasFailure(); ++seed)
    {
        RandomWalk walk{std::mt19937(seed)};
        for (int i = 0; i < 100; ++i)
            walk.Step();
        walk.depth = 6;
        walk.connections.clear();
        walk.signal.reset();
        EXPECT_EQ(walk.deaths, walk.count);
    }
}

TEST(Signal, ThatMovedGivesAllTheSameArgumentsUntilOneThrows)
{
    Signal<void(std::string, std::string&)> source;
    const auto take = [](std::string value, std::string& result) { result += std::move(value); };
    const Connection first = source.Connect(take);
    const Connection second = source.Connect(take); // gets nothing when the first one has moved from it
    const Connection last = source.Connect(take, SignalBase::EPriority(11));
    Connection thrower = source.Connect([](auto&&...) { throw 5; }, SignalBase::EPriority::Default);
    Signal<void(std::string, std::string&)> signal;
    signal = std::move(source);
    std::string target;
    EXPECT_THROW(signal.Emit("x ", target), int);
    EXPECT_EQ(target, "x x ");
    thrower.Disconnect();
    signal.Emit("y ", target);
    EXPECT_EQ(target, "x x y y y ");
}

TEST(Connection, HoldsWhatWasAssignedLast)
{
    Signal<void()> signal;
    std::string called;
    const auto append = [&called](char mark) { return [&called, mark] { called += mark; }; };
    Connection connection = signal.Connect(append('a'));
    connection = signal.Connect([held = ScopeBase([&] { connection = signal.Connect(append('c')); })] {});
    connection = signal.Connect(append('b')); // what the old callback holds assigns meanwhile
    Connection& same = connection;
    connection = std::move(same);
    signal.Emit();
    EXPECT_EQ(called, "c");
    connection = signal.Connect(nullptr);
    EXPECT_FALSE(connection.IsConnected() || signal.HasConnections());
}

TEST(Connection, SetOfThemKeepsItsOrderAfterTheSignalHasDied)
{
    std::set<Connection> connections;
    {
        Signal<void()> first;
        Signal<void()> second;
        for (Signal<void()>* signal : {&first, &second, &first})
            connections.insert(signal->Connect([] {}));
    }
    EXPECT_EQ(connections.size(), 3U); // none equal to another
    EXPECT_TRUE(std::ranges::is_sorted(connections));
    EXPECT_TRUE(std::ranges::none_of(connections, &Connection::IsConnected));
}
} // namespace vek
