#pragma once
#include "VekBase/Exception.h"
#include "VekBase/LogText.h"
#include "VekBase/SafeObject.h"
#include <QPointer>
#include <compare>
#include <concepts>
#include <cstddef>
#include <type_traits>
#include <typeinfo>
#include <utility>

class QWidget;

namespace vek
{
namespace Details
{
/// Out of line, so that a use is small.
[[noreturn]] VEKBASE_EXPORT void ThrowNullptrException();

[[nodiscard]] VEKBASE_EXPORT std::string ToPointerText(const std::type_info& pointerType,
                                                       const void* address);

/// Watches a SafeObject through its control block, which alone knows the object's address.
template <typename T>
class SafeObjectWatch
{
public:
    SafeObjectWatch() noexcept = default;
    explicit SafeObjectWatch(T* object) : SafeObjectWatch(object ? &object->GetControlBlock() : nullptr) {}
    SafeObjectWatch(const SafeObjectWatch& other) noexcept : SafeObjectWatch(other.m_block) {}
    SafeObjectWatch(SafeObjectWatch&& other) noexcept : m_block(std::exchange(other.m_block, nullptr)) {}
    template <typename U>
    explicit SafeObjectWatch(const SafeObjectWatch<U>& other) noexcept : SafeObjectWatch(other.m_block)
    {}
    SafeObjectWatch& operator=(SafeObjectWatch other) noexcept
    {
        std::swap(m_block, other.m_block);
        return *this;
    }
    ~SafeObjectWatch()
    {
        if (m_block)
            m_block->ReleaseReference();
    }

    [[nodiscard]] T* Get() const noexcept
    {
        return m_block ? static_cast<T*>(const_cast<SafeObject*>(m_block->GetTarget())) : nullptr;
    }

private:
    template <typename>
    friend class SafeObjectWatch;

    explicit SafeObjectWatch(ControlBlock* block) noexcept : m_block(block)
    {
        if (m_block)
            m_block->AddReference();
    }

    ControlBlock* m_block = nullptr;
};

/// Watches a QObject that is no SafeObject. T need not be defined to copy it and to ask it.
template <typename T>
class QObjectWatch
{
public:
    QObjectWatch() noexcept = default;
    explicit QObjectWatch(T* object) : m_watched(object), m_object(object) {}
    template <template <typename> typename Watch, typename U>
    explicit QObjectWatch(const Watch<U>& other) : QObjectWatch(static_cast<T*>(other.Get()))
    {}

    [[nodiscard]] T* Get() const noexcept { return m_watched ? m_object : nullptr; }

private:
    QPointer<const QObject> m_watched;
    T* m_object = nullptr;
};

template <typename T>
inline constexpr bool isSafeObject = std::derived_from<T, SafeObject>;
/// Programs without windows know widgets by name alone.
template <>
inline constexpr bool isSafeObject<QWidget> = false;
} // namespace Details

/// A pointer that does not own its object and reads null once the object has died.
/// T is a QObject (a widget, for instance) or a SafeObject, though not by virtual inheritance. It may be
/// tested and copied on any thread; separate RawPtr objects on separate threads need no lock. What it points
/// to is used on the thread that may destroy the object, where a RawPtr to a QObject is also converted to one
/// of another type.
///
/// @code
/// auto object = std::make_unique<QObject>();
/// const RawPtr<QObject> pointer = object.get();
/// object.reset();
/// if (!pointer)
///     qDebug("It has died.");
/// @endcode
template <typename T>
class RawPtr
{
public:
    RawPtr() noexcept = default;
    RawPtr(std::nullptr_t) noexcept {} ///< Null.
    /// @param object  not owned, and may be null.
    RawPtr(T* object) : m_watch(object) {}
    template <typename U>
        requires(!std::same_as<U, T> && std::convertible_to<U*, T*>)
    RawPtr(const RawPtr<U>& other) : m_watch(other.m_watch) {}

    /// The object, or null when there is none or it has died.
    [[nodiscard]] T* Get() const noexcept { return m_watch.Get(); }

    /// @throws Exception::NullptrException  there is no object.
    T& operator*() const { return *_Require(); }
    /// @throws Exception::NullptrException  there is no object.
    T* operator->() const { return _Require(); }

    explicit operator bool() const noexcept { return Get() != nullptr; }

    template <typename U>
    bool operator==(const RawPtr<U>& other) const noexcept
    {
        return Get() == other.Get();
    }
    bool operator==(std::nullptr_t) const noexcept { return Get() == nullptr; }

private:
    template <typename>
    friend class RawPtr;

    T* _Require() const
    {
        T* const object = Get();
        if (!object) [[unlikely]]
            Details::ThrowNullptrException();
        return object;
    }

    using Watch = std::conditional_t<Details::isSafeObject<std::remove_cv_t<T>>, Details::SafeObjectWatch<T>,
                                     Details::QObjectWatch<T>>;
    Watch m_watch;
};

/// T and the address, or null: "(Viewer*) 0x55d0c8a4e2b0". Thread-safe: the object is left alone.
template <typename T>
[[nodiscard]] std::string ToLogText(const RawPtr<T>& pointer)
{
    return Details::ToPointerText(typeid(T*), pointer.Get());
}
} // namespace vek
