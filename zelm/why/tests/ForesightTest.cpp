#include "Foresight.h"

#include <tests/support/CapturedOutput.h>

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <cstdlib>

namespace Zelm
{
namespace
{

/// The same cases each time, unless RC_PARAMS in the environment tells otherwise. The seed of a
/// case that fails is told.
const int ignored = ::setenv("RC_PARAMS", "max_success=" WHY_CASES " seed=20261122", 0);

/// \return what differs in a network that a seed tells; empty if nothing does.
std::string differenceIn(std::uint64_t seed)
{
    constexpr int kRounds = 8;
    const QuorlTest::CapturedOutput walks;
    RandomNetwork network(seed);
    for (int round = 0; round < kRounds; ++round)
        if (const std::string text = network.difference(); !text.empty())
            return "seed " + std::to_string(seed) + ", round " + std::to_string(round) + ":\n" +
                   text;
    return {};
}

RC_GTEST_PROP(Foresight, TellsWhatIsRecordedThen, ())
{
    const auto seed =
        *rc::gen::noShrink(rc::gen::resize(rc::kNominalSize, rc::gen::arbitrary<std::uint64_t>()));
    const std::string difference = differenceIn(seed);
    if (!difference.empty()) RC_FAIL(difference);
}

} // namespace
} // namespace Zelm
