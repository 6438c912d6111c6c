// Tests of the verdict on a comparison, and of the median.
#include "bench/compare/verdict.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "bench/median.h"

namespace pxkbench {
namespace {

TEST(Median, IsTheUpperMiddleOfAnEvenNumber) {
    EXPECT_EQ(median({}), 0);
    EXPECT_EQ(median({4}), 4);
    EXPECT_EQ(median({9, 1, 5}), 5);
    EXPECT_EQ(median({9, 1, 5, 2}), 5);
}

TEST(Verdict, EqualTimesAreNoChange) {
    const Verdict verdict = judge(std::vector<double>{1, 1, 1, 1, 1});
    EXPECT_EQ(verdict.ratio, 1);
    EXPECT_EQ(verdict.threshold, minimumThreshold);
    EXPECT_EQ(verdict.change, Change::none);
}

TEST(Verdict, SmallDifferencesAreNoChangeHoweverStable) {
    EXPECT_EQ(judge(std::vector<double>{1.02, 1.02, 1.02, 1.02, 1.02}).change, Change::none);
    EXPECT_EQ(judge(std::vector<double>{0.98, 0.98, 0.98, 0.98, 0.98}).change, Change::none);
}

TEST(Verdict, TheMinimumThresholdCanBeRaised) {
    const std::vector<double> ratios = {1.05, 1.06, 1.05, 1.04, 1.05};
    EXPECT_EQ(judge(ratios, minimumOverheadThreshold).change, Change::none);
    EXPECT_EQ(judge(ratios, minimumOverheadThreshold).threshold, minimumOverheadThreshold);
}

TEST(Verdict, StableDifferencesAreChanges) {
    EXPECT_EQ(judge(std::vector<double>{1.05, 1.06, 1.05, 1.04, 1.05}).change, Change::slower);
    EXPECT_EQ(judge(std::vector<double>{0.95, 0.96, 0.95, 0.94, 0.95}).change, Change::faster);
}

TEST(Verdict, NoiseRaisesTheThreshold) {
    const Verdict verdict = judge(std::vector<double>{0.9, 1.3, 1.05, 0.85, 1.2});
    // The absolute deviations from 1.05 are 0, 0.15, 0.15, 0.2 and 0.25.
    EXPECT_NEAR(verdict.threshold, 3 * 1.2533 * 1.4826 * 0.15 / std::sqrt(5.0), 1e-9);
    EXPECT_EQ(verdict.change, Change::none);
}

TEST(Verdict, MoreRunsLowerTheThreshold) {
    std::vector<double> ratios = {0.9, 1.3, 1.05, 0.85, 1.2};
    const double before = judge(ratios).threshold;
    for (int i = 0; i < 3; ++i) ratios.insert(ratios.end(), {0.9, 1.3, 1.05, 0.85, 1.2});
    EXPECT_NEAR(judge(ratios).threshold, before / 2, 1e-9);
}

TEST(Verdict, OneOutlierChangesNothing) {
    EXPECT_EQ(judge(std::vector<double>{1, 1.01, 0.99, 1, 7}).change, Change::none);
    EXPECT_EQ(judge(std::vector<double>{1.1, 1.11, 1.09, 1.1, 0.1}).change, Change::slower);
}

TEST(Verdict, TooFewRunsAreNoChange) {
    EXPECT_EQ(judge(std::vector<double>{}).change, Change::none);
    EXPECT_EQ(judge(std::vector<double>{2, 2}).change, Change::none);
    EXPECT_EQ(judge(std::vector<double>{2, 2, 2}).change, Change::slower);
}

}  // namespace
}  // namespace pxkbench
