#include <quorl/foundation/Watch.h>

namespace Tolmen
{
namespace
{

constinit thread_local Watch* theInnermost = nullptr;

} // namespace

constinit std::atomic<std::int32_t> Watch::theWatchCount{0};
constinit std::atomic<std::uint32_t> Watch::theStrangers{0};
constinit std::atomic<std::uint64_t> Watch::theShape{0};
constinit std::atomic<std::uint64_t> Watch::theVariables{0};

Watch::~Watch()
{
    if (!isSet_) return;
    Watch** link = &theInnermost;
    while (*link != this) link = &(*link)->outer_;
    *link = outer_;
    theWatchCount.fetch_sub(1, std::memory_order_relaxed);
}

void Watch::keep(const void* place)
{
    if (!isSet_)
    {
        isSet_ = true;
        strangers_ = theStrangers.load(std::memory_order_relaxed);
        outer_ = theInnermost;
        theInnermost = this;
        theWatchCount.fetch_add(1, std::memory_order_relaxed);
    }
    if (!places_.find(place)) places_.insert(place, true);
}

void Watch::tell(const void* place)
{
    if (!theInnermost) theStrangers.fetch_add(1, std::memory_order_relaxed);
    for (Watch* watch = theInnermost; watch != nullptr; watch = watch->outer_)
        if (watch->places_.find(place)) ++watch->alarms_;
}

} // namespace Tolmen
