// Every blend into true colour against its model, at every level.
#include <gtest/gtest.h>

#include <string>
#include <tuple>

#include "tests/support/family.h"

namespace {

using omnar::Level;
using support::Member;

class TrueColour : public testing::TestWithParam<std::tuple<Level, const Member*>> {
protected:
    void SetUp() override {
        if (!level_.runs()) GTEST_SKIP() << "this processor or build lacks the level " << name(std::get<0>(GetParam()));
    }
    const Member& member() const { return *std::get<1>(GetParam()); }

private:
    support::ForcedLevel level_{std::get<0>(GetParam())};
};

TEST_P(TrueColour, EqualsItsModel) { support::checkApart(member()); }
TEST_P(TrueColour, KeepsTheOrderWhereBuffersOverlap) { support::checkOverlapping(member()); }

struct Sum {
    const char* name;
    std::uint64_t sum;
};
constexpr Sum sums[] = {
#include "tests/checksums.inc"
};

TEST_P(TrueColour, HasTheCommittedChecksum) {
    for (const Sum& sum : sums) {
        if (std::string(sum.name) == member().name) {
            EXPECT_EQ(support::checksum(member()), sum.sum) << member().name;
            return;
        }
    }
    ADD_FAILURE() << "{\"" << member().name << "\", " << support::checksum(member()) << "U},";
}

std::vector<const Member*> members() {
    std::vector<const Member*> all;
    for (const Member& member : support::trueColourMembers()) all.push_back(&member);
    return all;
}

std::string nameOf(const testing::TestParamInfo<TrueColour::ParamType>& instance) {
    return std::string(name(std::get<0>(instance.param))) + "_" + std::get<1>(instance.param)->name;
}

INSTANTIATE_TEST_SUITE_P(Levels, TrueColour,
                         testing::Combine(testing::ValuesIn(omnar::allLevels), testing::ValuesIn(members())), nameOf);

}  // namespace
