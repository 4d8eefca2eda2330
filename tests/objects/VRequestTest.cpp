#include <quorl/objects/VRequest.h>

#include <quorl/foundation/Interface.h>
#include <quorl/objects/RequestExecutor.h>
#include <quorl/objects/VTraceRequestID.h>
#include <quorl/values/ValuePool.h>
#include <tests/support/CapturedOutput.h>

#include <gtest/gtest.h>

namespace Quorl
{
namespace
{

using QuorlTest::outputOf;

RefPtr<ValuePool> makePool()
{
    return RefPtr<ValuePool>(new ValuePool);
}

struct Service final : Tolmen::Interface<Service>
{
};

TEST(VRequest, StartsWithNothingMetAndNothingAttached)
{
    const auto pool = makePool();
    const VRequest request(pool, true);

    EXPECT_TRUE(request.Flag);
    EXPECT_EQ(request.Pool, pool);
    EXPECT_EQ(static_cast<const Ageable&>(request), Ageable::GlobalTime);
    EXPECT_EQ(request.NewestConnection, Ageable::Ooooold);
    EXPECT_EQ(request.NewestConnectionObject, -1);
    EXPECT_EQ(request.Attachments.referer, nullptr);
    EXPECT_FALSE(request.isCancelled());
    EXPECT_TRUE(request.Id);
}

TEST(VRequest, CopiesTheEvaluationButNotWhatItFound)
{
    VRequest request(makePool(), true);
    request.NewestConnection = Ageable(5);
    request.NewestConnectionObject = 7;
    request.addInterface(new Service);
    Ageable().touch();

    const VRequest copied(request);

    EXPECT_EQ(copied.Id, request.Id);
    EXPECT_EQ(copied.Pool, request.Pool);
    EXPECT_TRUE(copied.Flag);
    EXPECT_EQ(static_cast<const Ageable&>(copied), Ageable::GlobalTime);
    EXPECT_EQ(copied.NewestConnection, Ageable::Ooooold);
    EXPECT_EQ(copied.NewestConnectionObject, -1);
    EXPECT_EQ(copied.Attachments.referer, nullptr);
}

TEST(VRequest, TakesOverStrictlyYoungerFindingsOnly)
{
    VRequest request(makePool(), false);
    VRequest other(request);
    request.NewestConnection = other.NewestConnection = Ageable(5);
    request.NewestConnectionObject = 1;
    other.NewestConnectionObject = 2;

    request.updateFrom(other);
    EXPECT_EQ(request.NewestConnectionObject, 1) << "equal";
    other.NewestConnection = Ageable(6);
    request.updateFrom(other);
    EXPECT_EQ(request.NewestConnectionObject, 2);
    EXPECT_EQ(request.NewestConnection, Ageable(6));
}

TEST(VRequest, KeepsWhatIsAttachedInOneTask)
{
    VRequest request(makePool(), false);
    const RefPtr<Service> service(new Service);
    request.addInterface(service);
    const RefPtr<Task> task = request.Attachments;
    request.addInterface(new Service);

    EXPECT_EQ(request.Attachments, task);
    EXPECT_FALSE(request.Attachments->findInterface(typeid(Service)) == service) << "replaced";
}

TEST(VRequest, AttachesToANewTaskWhereTheOldOneIsDead)
{
    VRequest request(makePool(), false);
    request.addInterface(new Service);
    const RefPtr<Task> dead = request.Attachments;
    delete dead.rawptr();

    request.addInterface(new Service);

    EXPECT_FALSE(request.Attachments == dead);
    EXPECT_TRUE(request.Attachments->findInterface(typeid(Service)));
}

TEST(VRequestID, KeepsTheFirstCallerOfALevel)
{
    VRequest::ID id;
    id.considerLevel(2, 10, 1);
    id.considerLevel(2, 10, 3);

    const VRequest::ID::Level& level = id.levels().at(10);
    EXPECT_EQ(level.MinLevel, 2);
    EXPECT_EQ(level.MaxLevel, 2);
    EXPECT_EQ(level.Count, 2);
    EXPECT_EQ(level.MinCaller, 1);
    EXPECT_EQ(level.MaxCaller, 1);
}

TEST(VRequestID, WidensTheBoundsWithTheirCallers)
{
    VRequest::ID id;
    id.considerLevel(5, 10, 1);
    id.considerLevel(3, 10, 2);
    id.considerLevel(9, 10, 3);
    id.considerLevel(4, 10, 4);

    const VRequest::ID::Level& level = id.levels().at(10);
    EXPECT_EQ(level.MinLevel, 3);
    EXPECT_EQ(level.MinCaller, 2);
    EXPECT_EQ(level.MaxLevel, 9);
    EXPECT_EQ(level.MaxCaller, 3);
    EXPECT_EQ(level.Count, 4);
}

TEST(VRequestID, ReducesNumbersToThirtyTwoBits)
{
    VRequest::ID id;
    id.considerLevel(1, 0x100000007L, 0x100000008L);

    EXPECT_EQ(id.levels().at(7).MinCaller, 8);
}

TEST(VTraceRequestID, KnowsCopiesOfTheRequestThatItLetIn)
{
    VTraceRequestID trace;
    const VRequest request(makePool(), false);
    const VRequest copied(request);
    const VRequest other(makePool(), false);

    EXPECT_FALSE(trace.hasRequest(request));
    EXPECT_TRUE(trace.addRequest(request));
    EXPECT_TRUE(trace.hasRequest(copied));
    EXPECT_FALSE(trace.hasRequest(other));
}

TEST(VTraceRequestID, LetsOneEvaluationInAtATime)
{
    VTraceRequestID trace;
    const VRequest first(makePool(), false);
    const VRequest second(makePool(), false);
    trace.addRequest(first);

    EXPECT_FALSE(trace.addRequest(second));
    EXPECT_FALSE(trace.addRequest(first)) << "not even the same";
    EXPECT_EQ(trace.Latest, first.Id);
    trace.removeRequest(second);
    EXPECT_FALSE(trace.Current) << "by whomsoever";
    EXPECT_TRUE(trace.addRequest(second));
    EXPECT_EQ(trace.Previous, first.Id);
    EXPECT_EQ(trace.Latest, second.Id);
}

TEST(VTraceRequestID, ComparesIdentitiesOfTheDeadAndTheNull)
{
    VTraceRequestID trace;
    VRequest request(makePool(), false);
    const RefPtr<VRequest::ID> id = request.Id;
    request.Id = RefPtr<VRequest::ID>();

    EXPECT_TRUE(trace.hasRequest(request)) << "null and null";
    trace.Current = id;
    EXPECT_FALSE(trace.hasRequest(request));
    request.Id = id;
    delete id.rawptr();
    EXPECT_FALSE(trace.Current);
    EXPECT_TRUE(trace.hasRequest(request)) << "dead, but the same";
}

/// Lets an evaluation through that reached these objects at these depths.
void pass(VTraceRequestID& trace, std::initializer_list<std::pair<int, int>> reached)
{
    const VRequest request(makePool(), false);
    for (const auto& [object, level] : reached) request.Id->considerLevel(level, object, 0);
    trace.addRequest(request);
    trace.removeRequest(request);
}

TEST(VTraceRequestIDGraph, IsTheSameOnAFreshTraceWhichIsSaid)
{
    const VTraceRequestID trace;
    bool hasChanged = true;

    const std::string text = outputOf([&] { hasChanged = trace.ExecutionGraphHasChanged(); });

    EXPECT_FALSE(hasChanged);
    EXPECT_EQ(text, "bool\tVTraceRequestID::ExecutionGraphHasChanged(): Same execution graph.\n");
}

TEST(VTraceRequestIDGraph, HasChangedAfterOneEvaluation)
{
    VTraceRequestID trace;
    pass(trace, {{1, 1}});

    EXPECT_TRUE(trace.ExecutionGraphHasChanged());
}

TEST(VTraceRequestIDGraph, HasNotChangedForTheSameOrFewerObjects)
{
    VTraceRequestID trace;
    pass(trace, {{1, 1}, {2, 2}});
    pass(trace, {{1, 1}, {2, 2}});
    EXPECT_EQ(outputOf([&] { EXPECT_FALSE(trace.ExecutionGraphHasChanged()); }), "");
    pass(trace, {{2, 2}});
    EXPECT_FALSE(trace.ExecutionGraphHasChanged());
}

TEST(VTraceRequestIDGraph, HasChangedForANewObjectOrDepth)
{
    VTraceRequestID trace;
    pass(trace, {{1, 1}});
    pass(trace, {{1, 1}, {3, 1}});
    EXPECT_TRUE(trace.ExecutionGraphHasChanged());
    pass(trace, {{1, 2}});
    EXPECT_TRUE(trace.ExecutionGraphHasChanged());
    pass(trace, {{1, 2}, {1, 5}});
    EXPECT_TRUE(trace.ExecutionGraphHasChanged()) << "another largest depth";
    pass(trace, {{1, 2}, {1, 5}, {1, 3}});
    EXPECT_FALSE(trace.ExecutionGraphHasChanged()) << "how often does not count";
}

TEST(VTraceRequestIDGraph, HasChangedWhereAnEvaluationIsDead)
{
    VTraceRequestID trace;
    pass(trace, {{1, 1}});
    pass(trace, {{1, 1}});
    delete trace.Previous.rawptr();

    EXPECT_EQ(outputOf([&] { EXPECT_TRUE(trace.ExecutionGraphHasChanged()); }), "");
}

TEST(RequestExecutor, GoesOneDeeperWhenCopied)
{
    const RequestExecutor top;
    const RequestExecutor next(top);

    EXPECT_EQ(top.Level, 0);
    EXPECT_EQ(top.PreviousLevel, -1);
    EXPECT_EQ(next.Level, 1);
    EXPECT_EQ(next.PreviousLevel, -1);
    EXPECT_EQ(next.Max, top.Max);
    EXPECT_EQ(top.Max->MaxLevel, 1);
    EXPECT_EQ(top.Max->Changes, 1);
}

TEST(RequestExecutor, SetsTheLargestDepthWithoutComparingWhenCopied)
{
    const RequestExecutor top;
    top.Max->MaxLevel = 9;
    const RequestExecutor next(top);

    EXPECT_EQ(top.Max->MaxLevel, 1);
}

TEST(RequestExecutor, CountsAnAssignmentOnlyIfTheDepthBecomesAnother)
{
    RequestExecutor top;
    RequestExecutor next;
    top.Max->MaxLevel = 9;

    next = top;
    EXPECT_EQ(next.Level, 1);
    EXPECT_EQ(next.PreviousLevel, 0);
    EXPECT_EQ(next.Max, top.Max);
    EXPECT_EQ(top.Max->Changes, 1);
    EXPECT_EQ(top.Max->MaxLevel, 9) << "compared";
    next = top;
    EXPECT_EQ(next.PreviousLevel, 1);
    EXPECT_EQ(top.Max->Changes, 1);
}

TEST(RequestExecutor, StartsAChainOfItsOwnWhenReset)
{
    RequestExecutor top;
    RequestExecutor next;
    next = top;
    next.reset();

    EXPECT_EQ(next.Level, 0);
    EXPECT_EQ(next.PreviousLevel, 0);
    EXPECT_FALSE(next.Max == top.Max);
}

} // namespace
} // namespace Quorl
