#include "Trace.h"

#include "Interruption.h"

#include <quorl/objects/VObject.h>
#include <quorl/values/ValuePool.h>

namespace Zelm
{
namespace
{

using Tolmen::Profiler;

/// Whether a section is a request of an object, and not of a module's own.
bool isRequest(const Profiler::Section& section)
{
    return section.function.find("VObject::request(") != std::string::npos;
}

} // namespace

Account Trace::request(const RefPtr<Quorl::VObject>& root, const RefPtr<Quorl::ValuePool>& context,
                       double precision)
{
    Recorder ticket(context,
                    [&] { return Interruption::isWanted() || events_.size() >= kMostEvents; });
    ticket_ = &ticket;
    Profiler::Listener* const before = Profiler::setListener(this);
    Account account = ticket.evaluate(root, precision);
    Profiler::setListener(before);
    ticket_ = nullptr;
    account.isWhole = account.isWhole && events_.size() < kMostEvents;
    return account;
}

void Trace::opened(const Profiler::Section& section)
{
    open_.push_back(events_.size());
    events_.push_back({section.object, isRequest(section) ? "request" : "section", watch_.seconds(),
                       0.0, argumentsOf(section)});
}

void Trace::closed(const Profiler::Section& section, double /*seconds*/)
{
    Event& event = events_[open_.back()];
    open_.pop_back();
    event.end = watch_.seconds();
    if (isRequest(section)) event.arguments["decision"] = decisionAt(section.object);
}

Json Trace::argumentsOf(const Profiler::Section& section) const
{
    if (!isRequest(section)) return {{"function", section.function}, {"line", section.line}};
    return {{"context", ticket_->Pool->name},
            {"request", ticket_->Id->ReferenceBase<Quorl::VRequest::ID>::ID},
            {"level", open_.size() - 1}};
}

std::string Trace::decisionAt(const std::string& object) const
{
    const std::optional<Story> story = ticket_->decided();
    if (!story || story->object->getName() != object) return "another evaluation is inside";
    if (story->hits.empty() || !story->hadToRun()) return wordsOf(story->end);
    const Hit& hit = story->hits.front();
    const std::string input =
        hit.input == Hit::kNoInput ? "" : " (" + story->inputs[hit.input].name + ")";
    return wordsOf(story->end) + ": row " + std::to_string(static_cast<int>(hit.row)) + ", " +
           wordsOf(hit.row) + input;
}

Json Trace::json() const
{
    constexpr double kMicroseconds = 1e6;
    Json events = Json::array();
    for (const Event& event : events_)
        events.push_back({{"name", event.name},
                          {"cat", event.category},
                          {"ph", "X"},
                          {"ts", kMicroseconds * event.begin},
                          {"dur", kMicroseconds * (event.end - event.begin)},
                          {"pid", 1},
                          {"tid", 1},
                          {"args", event.arguments}});
    return {{"traceEvents", events}, {"displayTimeUnit", "ms"}};
}

} // namespace Zelm
