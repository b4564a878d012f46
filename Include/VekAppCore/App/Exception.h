#pragma once
#include "VekAppCore/Export.h"
#include "VekAppCore/Text/TrString.h"
#include "VekBase/Exception.h"
#include <source_location>
#include <string>

#undef GetMessage // of windows.h, which would rename the function

namespace vek::Exception
{
/// A failure with a message for the user. what() is the message in the source language, UTF-8.
class VEKAPPCORE_EXPORT AppException : public ExceptionBase
{
public:
    /// @param message  for the user; shown in the language of the moment in which it is shown.
    explicit AppException(const TrString& message,
                          const std::source_location& where = std::source_location::current());
    ~AppException() override;
    AppException(const AppException&) = default;
    AppException& operator=(const AppException&) = default;

    /// What the user reads.
    [[nodiscard]] const TrString& GetMessage() const noexcept { return m_message; }
    [[nodiscard]] const char* what() const noexcept override;

private:
    TrString m_message;
    std::string m_whatText;
};

/// A programming error or a broken invariant. The message is the same in every language.
class VEKAPPCORE_EXPORT InternalAppException : public AppException
{
public:
    /// @param message  not translated.
    explicit InternalAppException(const QString& message,
                                  const std::source_location& where = std::source_location::current());
    ~InternalAppException() override;
};

/// A key is missing from a keyed container.
class VEKAPPCORE_EXPORT KeyNotFoundException : public InternalAppException
{
public:
    using InternalAppException::InternalAppException;
    ~KeyNotFoundException() override;
};

/// A value has the wrong type.
class VEKAPPCORE_EXPORT WrongTypeException : public InternalAppException
{
public:
    using InternalAppException::InternalAppException;
    ~WrongTypeException() override;
};

/// Data has a version that cannot be read.
class VEKAPPCORE_EXPORT WrongVersionException : public InternalAppException
{
public:
    using InternalAppException::InternalAppException;
    ~WrongVersionException() override;
};

/// An index or a value lies outside its bounds.
class VEKAPPCORE_EXPORT OutOfRangeException : public InternalAppException
{
public:
    using InternalAppException::InternalAppException;
    ~OutOfRangeException() override;
};
} // namespace vek::Exception
