#include <quorl/foundation/Profiler.h>

#include <quorl/foundation/Timer.h>

#include <memory>
#include <utility>

namespace Tolmen
{

struct Profiler::Running
{
    Section section;
    Listener* listener;
    Timer timer;
};

constinit Profiler::Listener* Profiler::theListener = nullptr;

Profiler::Listener::~Listener() = default;

Profiler::Listener* Profiler::setListener(Listener* listener)
{
    return std::exchange(theListener, listener);
}

void Profiler::open(const char* file, int line, const char* function, const std::string& object,
                    int detail)
{
    std::unique_ptr<Running> running(
        new Running{{file, line, function, object, detail}, theListener, Timer()});
    running->listener->opened(running->section);
    running_ = running.release(); // only now: a listener that throws leaves no profiler to end it
}

/// Destructors tell it, perhaps since an exception passes: another one ends here.
void Profiler::close()
{
    const std::unique_ptr<Running> running(running_);
    try
    {
        running->listener->closed(running->section, running->timer.seconds());
    }
    catch (...)
    {
    }
}

} // namespace Tolmen
