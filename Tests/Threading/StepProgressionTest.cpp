#include "VekAppCore/Threading/StepProgression.h"
#include "VekBase/Exception.h"
#include <algorithm>
#include <gtest/gtest.h>
#include <limits>
#include <thread>

namespace vek::Threading
{
struct RecordingProgression final : IProgression
{
    void SetProgression(int value) override { values.push_back(value); }
    void SetTitle(const TrString&) override {}
    void SetCanceled(bool) override {}
    bool IsCanceled() const override { return isCanceled; }

    std::vector<int> values;
    bool isCanceled = false;
};

TEST(StepProgression, ReportsTheChangedWholePercents)
{
    constexpr std::uint64_t most = std::numeric_limits<std::uint64_t>::max();
    using Row =
        std::tuple<const char*, std::uint64_t, int, int, std::vector<std::uint64_t>, std::vector<int>>;
    for (const auto& [fault, stepCount, first, last, advances, values] :
         {Row{"unchanged percent reported", 1000, 0, 100, {9, 1, 9, 1, 30}, {1, 2, 5}},
          Row{"percent rounded up", 3, 0, 100, {1, 1, 1}, {33, 66, 100}},
          Row{"skipped percents reported", 2, 0, 100, {1, 1}, {50, 100}},
          Row{"beyond the end reported", 2, 0, 100, {5, 5}, {100}},
          Row{"division by no steps", 0, 0, 100, {1, 1}, {}},
          Row{"range ignored", 4, 40, 60, {1, 1, 1, 1}, {45, 50, 55, 60}},
          Row{"empty range divided by", 4, 50, 50, {4}, {}},
          Row{"product overflows", most, 0, 100, {most / 2 + 1, most / 4 + 1}, {50, 75}},
          Row{"runs on behind the last step", most, 0, 100, {most}, {100}}})
    {
        RecordingProgression recorder;
        StepProgression steps(recorder, stepCount, first, last);
        for (const std::uint64_t advance : advances)
            steps.Advance(advance);
        EXPECT_EQ(recorder.values, values) << fault;
    }
}

TEST(StepProgression, ParallelStepsReportInOrder)
{
    for (int round = 0; round < 50; ++round)
    {
        RecordingProgression recorder;
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
    RecordingProgression recorder;
    StepProgression steps(recorder, 1'000'000);
    steps.Advance();
    recorder.isCanceled = true;
    EXPECT_THROW(steps.Advance(), Exception::E_Escape);
    EXPECT_TRUE(recorder.values.empty());
}
} // namespace vek::Threading
