#include <quorl/foundation/Profiler.h>

#include <gtest/gtest.h>

#include <string>

namespace Tolmen
{
namespace
{

struct Listener final : Profiler::Listener
{
    Listener() : before(Profiler::setListener(this)) {}
    ~Listener() override { Profiler::setListener(before); }
    void opened(const Profiler::Section& section) override
    {
        log += "(" + section.object + ":" + section.function + ":" + section.file +
               std::to_string(section.line) + std::to_string(section.detail);
    }
    void closed(const Profiler::Section& section, double seconds) override
    {
        EXPECT_GE(seconds, 0.0);
        log += section.object + ")";
    }
    Profiler::Listener* before;
    std::string log;
};

TEST(Profiler, TellsItsListenerOfNestedSections)
{
    Listener listener;
    {
        const Profiler outer("file", 1, "f", "outer", 0);
        const Profiler inner("file", 2, "g", "inner", 3);
    }
    EXPECT_EQ(listener.log, "(outer:f:file10(inner:g:file23inner)outer)");
}

TEST(Profiler, GoesOnWithTheListenerThatItBeganWith)
{
    Listener listener;
    {
        const Profiler section("file", 1, "f", "object", 0);
        Profiler::setListener(nullptr);
        const Profiler unheard("file", 2, "g", "unheard", 0);
    }
    EXPECT_EQ(listener.log, "(object:f:file10object)");
}

TEST(Profiler, TakesTextsOfAnyKind)
{
    Listener listener;
    {
        const Profiler section(std::string("file"), 1, std::string("f"), "object", 0);
    }
    EXPECT_EQ(listener.log, "(object:f:file10object)");
}

TEST(Profiler, LeavesNothingBehindWhenItsListenerThrows)
{
    struct Throwing final : Profiler::Listener
    {
        void opened(const Profiler::Section&) override { throw 1; }
        void closed(const Profiler::Section&, double) override { ADD_FAILURE(); }
    } throwing;
    Profiler::Listener* const before = Profiler::setListener(&throwing);
    EXPECT_THROW(Profiler("file", 1, "f", "object", 0), int);
    Profiler::setListener(before);
}

TEST(Profiler, LetsAnExceptionPassThoughItsListenerThrowsAtTheEnd)
{
    struct Throwing final : Profiler::Listener
    {
        void opened(const Profiler::Section&) override {}
        void closed(const Profiler::Section&, double) override
        {
            ++count;
            throw 1;
        }
        int count = 0;
    } throwing;
    Profiler::Listener* const before = Profiler::setListener(&throwing);
    const auto work = [] {
        const Profiler section("file", 1, "f", "object", 0);
        throw std::string("from the work");
    };
    EXPECT_THROW(work(), std::string);
    EXPECT_EQ(throwing.count, 1);
    Profiler::setListener(before);
}

} // namespace
} // namespace Tolmen
