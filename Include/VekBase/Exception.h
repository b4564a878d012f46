#pragma once
#include "VekBase/Export.h"
#include "VekBase/Memory.h"
#include <exception>
#include <memory>
#include <source_location>
#include <string>

/// The root of the exception family, and the members that the base library itself throws.
namespace vek::Exception
{
/// Root of all exceptions of the library. Carries where it was thrown. A derived class that is made from
/// nothing needs a constructor of its own with a defaulted location: an inherited one would give the line of
/// the class.
class VEKBASE_EXPORT ExceptionBase : public std::exception, public AllocatedObject
{
public:
    explicit ExceptionBase(const std::source_location& where = std::source_location::current()) noexcept;
    ~ExceptionBase() override;
    ExceptionBase(const ExceptionBase&) noexcept = default;
    ExceptionBase& operator=(const ExceptionBase&) noexcept = default;

    /// Where it was thrown.
    [[nodiscard]] const std::source_location& GetLocation() const noexcept { return m_location; }

private:
    std::source_location m_location;
};

/// A null RawPtr or a missing required object was dereferenced.
class VEKBASE_EXPORT NullptrException : public ExceptionBase
{
public:
    explicit NullptrException(const std::source_location& where = std::source_location::current()) noexcept
        : ExceptionBase(where)
    {}
    [[nodiscard]] const char* what() const noexcept override;
};

/// The operation cannot continue.
class VEKBASE_EXPORT CriticalException : public ExceptionBase
{
public:
    explicit CriticalException(const std::source_location& where = std::source_location::current()) noexcept
        : ExceptionBase(where)
    {}
    /// @param message  why not, for developers; UTF-8.
    explicit CriticalException(std::string message,
                               const std::source_location& where = std::source_location::current());
    [[nodiscard]] const char* what() const noexcept override;

private:
    std::shared_ptr<const std::string> m_message; ///< Shared: copying an exception must not throw.
};

/// The user cancelled a computation, with the Escape key or otherwise.
class VEKBASE_EXPORT E_Escape : public CriticalException
{
public:
    explicit E_Escape(const std::source_location& where = std::source_location::current()) noexcept
        : CriticalException(where)
    {}
    [[nodiscard]] const char* what() const noexcept override;
};

/// An allocation failed.
class VEKBASE_EXPORT E_NotEnoughMemory : public CriticalException
{
public:
    explicit E_NotEnoughMemory(const std::source_location& where = std::source_location::current()) noexcept
        : CriticalException(where)
    {}
    [[nodiscard]] const char* what() const noexcept override;
};

/// What HandleException calls inside the catch block; it must not throw.
using ExceptionHandler = void (*)(const std::source_location& where) noexcept;

/// Reports the exception in flight where it can go no further: in a destructor or at the end of a thread.
/// To be called inside a catch block; a line on standard error unless a handler was set. Thread-safe.
VEKBASE_EXPORT void
HandleException(const std::source_location& where = std::source_location::current()) noexcept;

/// Replaces what HandleException does and returns what it did before; null brings the line on standard error
/// back.
VEKBASE_EXPORT ExceptionHandler SetExceptionHandler(ExceptionHandler handler) noexcept;
} // namespace vek::Exception
