#include "VekBase/Signal.h"
#include "Base/EnumText.h"
#include <atomic>
#include <memory>

namespace vek
{
namespace
{
std::atomic<std::uint64_t> g_lastId{0};
} // namespace

std::string ToLogText(SignalBase::EPriority priority)
{
    return Details::ToEnumText(priority, SignalBase::EPriority::Default, {"Default"});
}

SignalBase::Slot::~Slot() = default;

SignalBase& SignalBase::operator=(SignalBase&& other) noexcept
{
    SignalBase old(std::move(*this));
    m_state = std::exchange(other.m_state, nullptr);
    return *this;
}

SignalBase::~SignalBase()
{
    if (State* const state = std::exchange(m_state, nullptr))
    {
        state->isSignalAlive = false;
        _DisconnectAll(*state);
    }
}

bool SignalBase::HasConnections() const noexcept
{
    if (m_state)
        for (const Slot* slot = m_state->first; slot; slot = slot->next)
            if (slot->connection)
                return true;
    return false;
}

void SignalBase::DisconnectAll() noexcept
{
    if (m_state)
        _DisconnectAll(*m_state);
}

Connection SignalBase::_Insert(Slot* slot, EPriority priority)
{
    std::unique_ptr<Slot> owner(slot);
    if (!m_state)
        m_state = new State();
    slot->state = m_state;
    slot->priority = priority;
    slot->id = m_state->lastId = ++g_lastId;

    Slot* before = m_state->last;
    while (before && before->priority > priority)
        before = before->previous;
    slot->previous = before;
    slot->next = before ? before->next : m_state->first;
    (slot->previous ? slot->previous->next : m_state->first) = slot;
    (slot->next ? slot->next->previous : m_state->last) = owner.release();
    return Connection(slot);
}

void SignalBase::_Disconnect(Slot* slot) noexcept
{
    slot->connection = nullptr;
    if (slot->state->emissions > 0)
    {
        slot->state->needsCleanUp = true;
        return;
    }
    _Unlink(slot);
    delete slot;
}

void SignalBase::_DisconnectAll(State& state) noexcept
{
    const Emission walk(state); // what the callbacks hold may use or destroy the signal when it dies
    state.needsCleanUp = true;
    for (Slot* slot = state.first; slot; slot = slot->next)
        if (Connection* const connection = std::exchange(slot->connection, nullptr))
            connection->m_slot = nullptr;
}

void SignalBase::_Unlink(Slot* slot) noexcept
{
    (slot->previous ? slot->previous->next : slot->state->first) = slot->next;
    (slot->next ? slot->next->previous : slot->state->last) = slot->previous;
}

void SignalBase::_CleanUp(State& state) noexcept
{
    // All out of the list before the first is deleted: what a callback holds may use the signal when it dies.
    Slot* dead = nullptr;
    for (Slot* slot = state.first; slot;)
    {
        Slot* const next = slot->next;
        if (!slot->connection)
        {
            _Unlink(slot);
            slot->next = dead;
            dead = slot;
        }
        slot = next;
    }
    state.needsCleanUp = false;
    if (!state.isSignalAlive)
        delete &state;
    while (dead)
        delete std::exchange(dead, dead->next);
}

Connection::Connection(SignalBase::Slot* slot) noexcept : m_slot(slot), m_id(slot->id)
{
    m_slot->connection = this;
}

Connection::Connection(Connection&& other) noexcept
    : m_slot(std::exchange(other.m_slot, nullptr)), m_id(std::exchange(other.m_id, 0))
{
    if (m_slot)
        m_slot->connection = this;
}

Connection& Connection::operator=(Connection&& other) noexcept
{
    if (this != &other)
    {
        // Goes last: what its callback holds may use or destroy this connection.
        const Connection old(std::move(*this));
        m_slot = std::exchange(other.m_slot, nullptr);
        m_id = std::exchange(other.m_id, 0);
        if (m_slot)
            m_slot->connection = this;
    }
    return *this;
}

Connection::~Connection() { Disconnect(); }

void Connection::Disconnect() noexcept
{
    if (SignalBase::Slot* const slot = std::exchange(m_slot, nullptr))
        SignalBase::_Disconnect(slot);
}
} // namespace vek
