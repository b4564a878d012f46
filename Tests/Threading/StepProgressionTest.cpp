#include "VekAppCore/Threading/StepProgression.h"
#include "VekBase/Exception.h"
#include <algorithm>
#include <gtest/gtest.h>
#include <limits>
#include <thread>
#include <vector>

namespace vek::Threading
{
namespace
{
class Recorder final : public IProgression
{
public:
    void SetProgression(int value) override { values.push_back(value); }
    void SetTitle(const TrString&) override {}
    void SetCanceled(bool isCanceled) override { m_isCanceled = isCanceled; }
    [[nodiscard]] bool IsCanceled() const override { return m_isCanceled; }

    std::vector<int> values;

private:
    std::atomic<bool> m_isCanceled = false;
};

struct StepCase
{
    const char* fault;
    std::uint64_t stepCount;
    int first, last;
    std::vector<std::uint64_t> advances;
    std::vector<int> values;
};
void PrintTo(const StepCase& row, std::ostream* out) { *out << row.fault; }
class StepProgressionValues : public testing::TestWithParam<StepCase>
{};

TEST_P(StepProgressionValues, AreTheChangedWholePercents)
{
    Recorder recorder;
    StepProgression steps(recorder, GetParam().stepCount, GetParam().first, GetParam().last);
    for (const std::uint64_t advance : GetParam().advances)
        steps.Advance(advance);
    EXPECT_EQ(recorder.values, GetParam().values);
}
constexpr std::uint64_t most = std::numeric_limits<std::uint64_t>::max();
INSTANTIATE_TEST_SUITE_P(
    Rows, StepProgressionValues,
    testing::Values(StepCase{"unchanged percent reported", 1000, 0, 100, {9, 1, 9, 1, 30}, {1, 2, 5}},
                    StepCase{"percent rounded up", 3, 0, 100, {1, 1, 1}, {33, 66, 100}},
                    StepCase{"skipped percents reported", 2, 0, 100, {1, 1}, {50, 100}},
                    StepCase{"beyond the end reported", 2, 0, 100, {5, 5}, {100}},
                    StepCase{"division by no steps", 0, 0, 100, {1, 1}, {}},
                    StepCase{"range ignored", 4, 40, 60, {1, 1, 1, 1}, {45, 50, 55, 60}},
                    StepCase{"empty range divided by", 4, 50, 50, {4}, {}},
                    StepCase{"product overflows", most, 0, 100, {most / 2 + 1, most / 4 + 1}, {50, 75}},
                    StepCase{"runs on behind the last step", most, 0, 100, {most}, {100}}));

TEST(StepProgression, ParallelStepsReportInOrder)
{
    for (int round = 0; round < 50; ++round)
    {
        Recorder recorder;
        StepProgression steps(recorder, 20'000);
        {
            std::vector<std::jthread> threads;
            for (int i = 0; i < 4; ++i)
                threads.emplace_back([&steps] {
                    for (int step = 0; step < 5'000; ++step)
                        steps.Advance();
                });
        }
        ASSERT_EQ(std::ranges::adjacent_find(recorder.values, std::ranges::greater_equal()),
                  recorder.values.end());
        ASSERT_EQ(recorder.values.back(), 100);
    }
}

TEST(StepProgression, CancellationIsNoticedWithinOneStep)
{
    Recorder recorder;
    StepProgression steps(recorder, 1'000'000);
    steps.Advance();
    recorder.SetCanceled(true);
    EXPECT_THROW(steps.Advance(), Exception::E_Escape);
    EXPECT_TRUE(recorder.values.empty());
}
} // namespace
} // namespace vek::Threading
