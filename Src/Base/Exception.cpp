#include "VekBase/Exception.h"
#include <atomic>
#include <cstdio>
#include <utility>

namespace vek::Exception
{
namespace
{
void PrintException(const std::source_location& where) noexcept
{
    const auto print = [&where](const char* text) {
        std::fprintf(stderr, "%s (source: %s)\n", text, where.function_name());
    };
    try
    {
        if (std::current_exception())
            throw;
        print("No exception");
    }
    catch (const std::exception& exception)
    {
        print(exception.what());
    }
    catch (...)
    {
        print("A general exception has been caught.");
    }
}

std::atomic<ExceptionHandler> g_handler{&PrintException};
} // namespace

ExceptionBase::ExceptionBase(const std::source_location& where) noexcept : m_location(where) {}
ExceptionBase::~ExceptionBase() = default;

const char* NullptrException::what() const noexcept { return "Null pointer"; }

CriticalException::CriticalException(std::string message, const std::source_location& where)
    : ExceptionBase(where), m_message(std::make_shared<const std::string>(std::move(message)))
{}

const char* CriticalException::what() const noexcept
{
    return m_message ? m_message->c_str() : "The operation cannot continue";
}

const char* E_Escape::what() const noexcept { return "Canceled"; }

const char* E_NotEnoughMemory::what() const noexcept { return "Not enough memory"; }

void HandleException(const std::source_location& where) noexcept { g_handler.load()(where); }

ExceptionHandler SetExceptionHandler(ExceptionHandler handler) noexcept
{
    const ExceptionHandler before = g_handler.exchange(handler ? handler : &PrintException);
    return before == &PrintException ? nullptr : before;
}
} // namespace vek::Exception
