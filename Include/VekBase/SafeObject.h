#pragma once
#include "VekBase/Export.h"
#include "VekBase/Memory.h"
#include <atomic>
#include <cstdint>

namespace vek
{
class SafeObject;

namespace Details
{
/// Outlives its object for as long as somebody holds it, and tells them that the object has died.
class VEKBASE_EXPORT ControlBlock : public AllocatedObject
{
public:
    explicit ControlBlock(const SafeObject* object) noexcept : m_object(object) {}

    /// Relaxed: whoever hands a pointer to another thread publishes the object as well.
    [[nodiscard]] const SafeObject* GetTarget() const noexcept
    {
        return m_object.load(std::memory_order_relaxed);
    }
    void Clear() noexcept { m_object.store(nullptr); }
    void AddReference() noexcept { m_count.fetch_add(1); }
    void ReleaseReference() noexcept
    {
        if (m_count.fetch_sub(1) == 1)
            _Delete();
    }

private:
    void _Delete() noexcept;

    std::atomic<const SafeObject*> m_object;
    std::atomic<std::uint32_t> m_count{0};
};
} // namespace Details

/// Base of objects that RawPtr can point to. Its control block is made when the first RawPtr asks for it.
/// A copy is another object: it has no part in the block of its source.
class VEKBASE_EXPORT SafeObject
{
public:
    virtual ~SafeObject();

    /// The block that RawPtr holds, made on first demand. Thread-safe.
    [[nodiscard]] Details::ControlBlock& GetControlBlock() const
    {
        Details::ControlBlock* block = m_block.load(std::memory_order_acquire);
        return block ? *block : _InstallControlBlock();
    }

protected:
    SafeObject() noexcept = default;
    SafeObject(const SafeObject&) noexcept {}
    SafeObject& operator=(const SafeObject&) noexcept { return *this; }

private:
    Details::ControlBlock& _InstallControlBlock() const;

    mutable std::atomic<Details::ControlBlock*> m_block{nullptr}; ///< This object holds one reference to it.
};

/// Base of the library's interfaces: reached safely through RawPtr, allocated with the library's allocator.
class VEKBASE_EXPORT IObject : public SafeObject, public AllocatedObject
{
public:
    ~IObject() override;
};
} // namespace vek
