#include "VekBase/Exception.h"
#include <gtest/gtest.h>

namespace vek::Exception
{
TEST(Exception, MadeFromNothingCarriesTheFileOfTheThrow) // not the one of its class
{
    for (const ExceptionBase& made : std::initializer_list<ExceptionBase>{
             ExceptionBase(), NullptrException(), CriticalException(), E_Escape(), E_NotEnoughMemory()})
        EXPECT_STREQ(made.GetLocation().file_name(), __FILE__);
}

TEST(HandleException, ReportsAnythingToStandardErrorOrTheHandler)
{
    const auto report = [](const std::exception_ptr& thrown) {
        testing::internal::CaptureStderr();
        try
        {
            std::rethrow_exception(thrown);
        }
        catch (...)
        {
            HandleException();
        }
        return testing::internal::GetCapturedStderr();
    };
    const auto failure = std::make_exception_ptr(CriticalException(std::string("It failed")));
    const ExceptionHandler before = SetExceptionHandler(nullptr);
    EXPECT_EQ(report(failure).find("It failed (source: "), 0U);
    EXPECT_EQ(report(std::make_exception_ptr(5)).find("A general exception has been caught. (source: "), 0U);
    HandleException(); // nothing in flight: must not end the program
    static std::string function;
    SetExceptionHandler([](const std::source_location& where) noexcept { function = where.function_name(); });
    EXPECT_EQ(report(failure), "");
    EXPECT_NE(function.find("TestBody()"), std::string::npos) << function; // the one that reports
    SetExceptionHandler(before);
}
} // namespace vek::Exception
