#include <quorl/objects/LevelLog.h>

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <memory>

namespace Quorl
{
namespace
{

using Level = LevelLog::Level;

Level once(std::int32_t level, std::int32_t caller)
{
    return {level, level, 1, caller, caller};
}

RC_GTEST_PROP(LevelLog, IsTheSameWhereverItIsAskedAndHoweverItIsTold, ())
{
    LevelLog asked;
    LevelLog notAsked;
    const int visits = *rc::gen::inRange(0, 60);
    for (int visit = 0; visit < visits; ++visit)
    {
        const auto object = *rc::gen::inRange(1, 5);
        const auto level = *rc::gen::inRange(1, 5);
        const auto deeper = *rc::gen::inRange(0, 3);
        using Records = LevelLog::Records;
        const auto known = std::make_shared<const Records>(Records{{object, once(level, visit)}});
        asked.add({known, 0, 1, deeper});
        notAsked.add(object, once(level + deeper, visit));
        if (*rc::gen::arbitrary<bool>()) asked.table();
    }
    RC_ASSERT((asked.table() == notAsked.table()));
}

} // namespace
} // namespace Quorl
