#include "VekBase/MoveOnlyFunction.h"
#include <array>
#include <gtest/gtest.h>

namespace vek
{
using Function = MoveOnlyFunction<std::string(int, std::string)>;

/// Counts the living ones; as large as it is told.
template <std::size_t size>
struct Counted
{
    explicit Counted(int& living) : m_living(&living) { ++*m_living; }
    Counted(Counted&& other) noexcept : m_living(other.m_living), m_calls(other.m_calls) { ++*m_living; }
    ~Counted() { --*m_living; }
    std::string operator()(int number, std::string text) { return text + std::to_string(number + ++m_calls); }

    int* m_living;
    int m_calls = 0;
    std::array<char, size> m_padding{};
};

template <std::size_t size>
static void CheckOwnership()
{
    int living = 0;
    {
        Function first = Counted<size>(living);
        EXPECT_EQ(living, 1);
        EXPECT_EQ(first(1, "a"), "a2");
        Function second = std::move(first);
        EXPECT_EQ(second(1, "a"), "a3") << "moved with its state";
        EXPECT_FALSE(first);
        first = Counted<size>(living);
        EXPECT_EQ(living, 2);
        first = std::move(second);
        EXPECT_EQ(living, 1);
        Function& same = first;
        first = std::move(same);
        EXPECT_EQ(first(1, "a"), "a4") << "moved to itself";
    }
    EXPECT_EQ(living, 0);
}

static std::string Join(int number, std::string text) { return text + std::to_string(number); }

TEST(MoveOnlyFunctionTest, OwnsWhatFitsAndWhatDoesNot)
{
    CheckOwnership<1>();
    CheckOwnership<100>();
}

TEST(MoveOnlyFunctionTest, IsEmptyWhereThereIsNothingToCall)
{
    std::string (*const none)(int, std::string) = nullptr;
    Function functions[] = {Function(), Function(nullptr), Function(none),
                            Function(std::function<std::string(int, std::string)>()),
                            Function(MoveOnlyFunction<const char*(int, std::string)>())};
    for (Function& function : functions)
    {
        EXPECT_FALSE(function);
        EXPECT_EQ(function, nullptr);
        EXPECT_THROW(function(1, {}), std::bad_function_call);
    }
}

TEST(MoveOnlyFunctionTest, CallsWhatCannotBeCopiedAndWhatIsNoClass)
{
    Function pointer = Join;
    EXPECT_EQ(pointer(7, "x"), "x7");
    Function lambda = [text = std::make_unique<std::string>("own ")](int, const std::string& more) {
        return *text + more;
    };
    EXPECT_EQ(lambda(0, "text"), "own text");
    MoveOnlyFunction<std::size_t(const std::string&)> member = &std::string::size;
    EXPECT_EQ(member("four"), 4U);
    std::string changed;
    MoveOnlyFunction<void(std::string&, std::unique_ptr<int>)> byReference =
        [](std::string& text, std::unique_ptr<int> number) { text = std::to_string(*number); };
    byReference(changed, std::make_unique<int>(5));
    EXPECT_EQ(changed, "5");
}

TEST(MoveOnlyFunctionTest, TheCallableOfBeforeMayUseTheObjectWhenItDies)
{
    MoveOnlyFunction<int()> function;
    int result = 0;
    {
        const std::shared_ptr<int> guard(&result, [&](int*) { result = function ? function() : -1; });
        function = [guard] { return 1; };
    }
    function = [] { return 2; };
    EXPECT_EQ(result, 2);
}
} // namespace vek
