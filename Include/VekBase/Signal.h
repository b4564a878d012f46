#pragma once
#include "VekBase/Export.h"
#include "VekBase/Memory.h"
#include "VekBase/MoveOnlyFunction.h"
#include <compare>
#include <cstdint>
#include <string>
#include <type_traits>
#include <utility>

namespace vek
{
class Connection;

/// What all signals share. A signal and its connections belong to one thread (reentrant).
class VEKBASE_EXPORT SignalBase
{
public:
    /// Order of the callbacks: lower ones are called first, equal ones in order of connecting.
    enum class EPriority : int
    {
        Default = 10
    };

    SignalBase(const SignalBase&) = delete;
    SignalBase& operator=(const SignalBase&) = delete;

    /// False while none is connected, which an owner may use to save the work of emitting.
    [[nodiscard]] bool HasConnections() const noexcept;
    /// Leaves every connection unconnected; also within an emission, which then calls nobody any more.
    void DisconnectAll() noexcept;

protected:
    struct State;

    /// One connected callback, owned by the list of its signal.
    struct VEKBASE_EXPORT Slot : AllocatedObject
    {
        Slot() = default;
        Slot(const Slot&) = delete;
        Slot& operator=(const Slot&) = delete;
        virtual ~Slot();

        Slot* previous = nullptr;
        Slot* next = nullptr;
        State* state = nullptr;
        Connection* connection = nullptr; ///< Null once disconnected; then the slot is never called again.
        std::uint64_t id = 0;             ///< Rises with every connection made in the process.
        EPriority priority = EPriority::Default;
    };

    /// Outlives its signal while an emission is under way.
    struct State : AllocatedObject
    {
        Slot* first = nullptr;
        Slot* last = nullptr;
        std::uint64_t lastId = 0;
        int emissions = 0;         ///< Under way, one inside another.
        bool needsCleanUp = false; ///< Slots or the signal have died during an emission.
        bool isSignalAlive = true;
    };

    /// Keeps the slots in place while they are walked, also when a callback throws or destroys the signal.
    class Emission
    {
    public:
        explicit Emission(State& state) noexcept : m_state(state) { ++m_state.emissions; }
        Emission(const Emission&) = delete;
        Emission& operator=(const Emission&) = delete;
        ~Emission()
        {
            if (--m_state.emissions == 0 && m_state.needsCleanUp) [[unlikely]]
                _CleanUp(m_state);
        }

    private:
        State& m_state;
    };

    SignalBase() noexcept = default;
    SignalBase(SignalBase&& other) noexcept : m_state(std::exchange(other.m_state, nullptr)) {}
    SignalBase& operator=(SignalBase&& other) noexcept;
    ~SignalBase();

    Connection _Insert(Slot* slot, EPriority priority);

    State* m_state = nullptr; ///< Made by the first connection.

private:
    friend class Connection;
    static void _Disconnect(Slot* slot) noexcept;
    static void _DisconnectAll(State& state) noexcept;
    static void _Unlink(Slot* slot) noexcept;
    static void _CleanUp(State& state) noexcept;
};
[[nodiscard]] VEKBASE_EXPORT std::string ToLogText(SignalBase::EPriority priority);

/// Holds a callback connected: destroying it disconnects the callback. An empty one holds nothing. Move-only,
/// and ordered by the time of connecting, so that a std::set can keep several.
class VEKBASE_EXPORT Connection
{
public:
    Connection() noexcept = default;
    Connection(Connection&& other) noexcept;
    Connection& operator=(Connection&& other) noexcept;
    ~Connection();

    /// The callback is not called again, not even by an emission under way.
    void Disconnect() noexcept;

    /// False for an empty one, after Disconnect, and once the signal is gone.
    [[nodiscard]] bool IsConnected() const noexcept { return m_slot != nullptr; }

    std::strong_ordering operator<=>(const Connection& other) const noexcept { return m_id <=> other.m_id; }
    bool operator==(const Connection& other) const noexcept { return m_id == other.m_id; }

private:
    friend class SignalBase;
    explicit Connection(SignalBase::Slot* slot) noexcept;

    SignalBase::Slot* m_slot = nullptr;
    std::uint64_t m_id = 0; ///< Stays when the signal dies, so that a set keeps its order.
};

template <typename Signature>
class Signal;

/// A list of callbacks. A callback may do anything: disconnect itself or others, connect more (they are
/// called from the next emission on), emit again, destroy the signal. When it throws, the exception leaves
/// Emit and the callbacks behind it are not called; the signal stays usable.
///
/// @code
/// Signal<void(int)> changed;
/// const Connection connection = changed.Connect([](int value) { qDebug() << value; });
/// changed.Emit(3);
/// @endcode
template <typename... Args>
class Signal<void(Args...)> : public SignalBase
{
public:
    /// Called by value of the arguments, one copy a callback.
    using Callback = MoveOnlyFunction<void(Args...)>;

    Signal() noexcept = default;
    Signal(Signal&&) noexcept = default;
    Signal& operator=(Signal&&) noexcept = default;

    /// @return the connection, which must be kept for as long as the callback is wanted; empty for an empty
    /// callback.
    [[nodiscard]] Connection Connect(Callback callback, EPriority priority = EPriority::Default)
    {
        return callback ? _Insert(new TypedSlot(std::move(callback)), priority) : Connection();
    }

    /// Calls every connected callback, in order of priority.
    void Emit(std::type_identity_t<Args>... args)
    {
        if (!m_state)
            return;
        const std::uint64_t newest = m_state->lastId;
        Slot* slot = m_state->first;
        const Emission emission(*m_state);
        for (; slot; slot = slot->next)
            if (slot->connection && slot->id <= newest)
                static_cast<TypedSlot*>(slot)->callback(args...);
    }

private:
    struct TypedSlot final : Slot
    {
        explicit TypedSlot(Callback function) : callback(std::move(function)) {}
        Callback callback;
    };
};
} // namespace vek
