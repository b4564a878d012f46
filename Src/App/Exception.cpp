#include "VekAppCore/App/Exception.h"

namespace vek::Exception
{
AppException::AppException(const TrString& message, const std::source_location& where)
    : ExceptionBase(where), m_message(message), m_whatText(message.GetKey().toStdString())
{}

const char* AppException::what() const noexcept { return m_whatText.c_str(); }

InternalAppException::InternalAppException(const QString& message, const std::source_location& where)
    : AppException(TrString::NoTranslate(message), where)
{}

// Here, so that each class has its type information in this library alone.
AppException::~AppException() = default;
InternalAppException::~InternalAppException() = default;
KeyNotFoundException::~KeyNotFoundException() = default;
WrongTypeException::~WrongTypeException() = default;
WrongVersionException::~WrongVersionException() = default;
OutOfRangeException::~OutOfRangeException() = default;
} // namespace vek::Exception
