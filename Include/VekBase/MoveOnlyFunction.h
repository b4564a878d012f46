#pragma once
#include <cstddef>
#include <functional>
#include <new>
#include <type_traits>
#include <utility>

namespace vek
{
template <typename Signature>
class MoveOnlyFunction;

namespace Details
{
template <typename T>
inline constexpr bool isFunctionWrapper = false;
template <typename Signature>
inline constexpr bool isFunctionWrapper<std::function<Signature>> = true;
template <typename Signature>
inline constexpr bool isFunctionWrapper<MoveOnlyFunction<Signature>> = true;
} // namespace Details

/// A callable of any type that it owns: what std::function is, for callables that cannot be copied. The same
/// in every language mode, so that a library and a program of different modes understand each other.
template <typename R, typename... Args>
class MoveOnlyFunction<R(Args...)>
{
public:
    /// Empty.
    MoveOnlyFunction() noexcept = default;
    MoveOnlyFunction(std::nullptr_t) noexcept {} ///< Empty.

    /// @param function  a null pointer, an empty std::function or an empty MoveOnlyFunction gives an empty
    /// one.
    template <typename Function>
        requires(!std::is_same_v<std::remove_cvref_t<Function>, MoveOnlyFunction> &&
                 std::is_invocable_r_v<R, std::decay_t<Function>&, Args...>)
    MoveOnlyFunction(Function&& function)
    {
        using Held = std::decay_t<Function>;
        if constexpr (std::is_pointer_v<Held> || std::is_member_pointer_v<Held>)
        {
            const Held pointer = function; // a function itself would be known not to be null
            if (!pointer)
                return;
        }
        else if constexpr (Details::isFunctionWrapper<Held>)
            if (!function)
                return;
        if constexpr (fits<Held>)
            ::new (static_cast<void*>(m_storage)) Held(std::forward<Function>(function));
        else
            *reinterpret_cast<Held**>(m_storage) = new Held(std::forward<Function>(function));
        m_invoke = &_Invoke<Held>;
        m_move = &_Move<Held>;
    }

    MoveOnlyFunction(MoveOnlyFunction&& other) noexcept { _Take(other); }
    MoveOnlyFunction& operator=(MoveOnlyFunction&& other) noexcept
    {
        MoveOnlyFunction taken(std::move(other)); // first, in case it is this one
        // The callable of before dies last: its destructor may use this object.
        MoveOnlyFunction before(std::move(*this));
        _Take(taken);
        return *this;
    }
    ~MoveOnlyFunction()
    {
        if (m_move)
            m_move(m_storage, nullptr);
    }

    /// @throws std::bad_function_call  it is empty; also what the callable throws.
    R operator()(Args... args) { return m_invoke(m_storage, std::forward<Args>(args)...); }

    explicit operator bool() const noexcept { return m_move != nullptr; }
    bool operator==(std::nullptr_t) const noexcept { return m_move == nullptr; }

private:
    /// Small values travel in registers.
    template <typename T>
    using Parameter = std::conditional_t<std::is_scalar_v<T>, T, T&&>;

    static constexpr std::size_t room = 3 * sizeof(void*);
    template <typename Held>
    static constexpr bool
        fits = sizeof(Held) <= room &&
               alignof(Held) <= alignof(void*) && std::is_nothrow_move_constructible_v<Held>;

    template <typename Held>
    static Held& _Get(std::byte* storage) noexcept
    {
        if constexpr (fits<Held>)
            return *std::launder(reinterpret_cast<Held*>(storage));
        else
            return **reinterpret_cast<Held**>(storage);
    }

    template <typename Held>
    static R _Invoke(std::byte* storage, Parameter<Args>... args)
    {
        if constexpr (std::is_void_v<R>)
            std::invoke(_Get<Held>(storage), std::forward<Args>(args)...);
        else
            return std::invoke(_Get<Held>(storage), std::forward<Args>(args)...);
    }

    [[noreturn]] static R _Refuse(std::byte*, Parameter<Args>...) { throw std::bad_function_call(); }

    /// Moves the callable of @p from to @p to; destroys it where that is null.
    template <typename Held>
    static void _Move(std::byte* from, std::byte* to) noexcept
    {
        if constexpr (fits<Held>)
        {
            Held& held = _Get<Held>(from);
            if (to)
                ::new (static_cast<void*>(to)) Held(std::move(held));
            held.~Held();
        }
        else if (to)
            *reinterpret_cast<Held**>(to) = &_Get<Held>(from);
        else
            delete &_Get<Held>(from);
    }

    void _Take(MoveOnlyFunction& other) noexcept
    {
        if (!other.m_move)
            return;
        other.m_move(other.m_storage, m_storage);
        m_invoke = std::exchange(other.m_invoke, &_Refuse);
        m_move = std::exchange(other.m_move, nullptr);
    }

    R (*m_invoke)(std::byte*, Parameter<Args>...) = &_Refuse;
    void (*m_move)(std::byte* from, std::byte* to) noexcept = nullptr; ///< Null while it is empty.
    alignas(void*) std::byte m_storage[room];
};
} // namespace vek
