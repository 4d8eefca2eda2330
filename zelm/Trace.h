#pragma once

#include <quorl/Forward.h>
#include <quorl/foundation/Profiler.h>
#include <quorl/foundation/Timer.h>
#include <zelm/network/Json.h>
#include <zelm/why/Recorder.h>

#include <string>
#include <vector>

namespace Zelm
{

/// The sections of the profiler in the course of requests, in the Trace Event Format: complete
/// events ("ph": "X") with times in microseconds from the beginning. One at a time in a process.
class Trace final : public Tolmen::Profiler::Listener
{
public:
    /// Requests an object. \return what happened, which is not whole if there is too much of it.
    Account request(const RefPtr<Quorl::VObject>& root, const RefPtr<Quorl::ValuePool>& context,
                    double precision);

    void opened(const Tolmen::Profiler::Section& section) override;
    void closed(const Tolmen::Profiler::Section& section, double seconds) override;

    std::size_t size() const { return events_.size(); }
    Json json() const;

private:
    static constexpr std::size_t kMostEvents = 1'000'000;

    struct Event
    {
        std::string name;
        std::string category;
        double begin; ///< in seconds
        double end;
        Json arguments;
    };

    Json argumentsOf(const Tolmen::Profiler::Section& section) const;
    std::string decisionAt(const std::string& object) const;

    const Tolmen::Timer watch_;
    std::vector<Event> events_;     // in the order in which they began
    std::vector<std::size_t> open_; // places of those that have not ended, the outermost first
    const Recorder* ticket_ = nullptr;
};

} // namespace Zelm
