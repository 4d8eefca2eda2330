#include <quorl/services/VLogger.h>

#include <quorl/foundation/Interface.h>
#include <quorl/tasks/VTask.h> // the scopes belong to the task that runs
#include <quorl/tasks/VThreadCreator.h>

#include <array>
#include <cstdarg>
#include <cstdio>
#include <deque>
#include <list>

namespace Tolmen
{
template class ReferenceBase<Quorl::VLogger>;
} // namespace Tolmen

namespace Quorl
{
namespace
{

constexpr int kScopeIndent = 2;
constexpr std::size_t kLongestMessage = 1024; // with its closing zero

/// The scopes of one task, the current one in front.
class StateQueue : public Tolmen::Interface<StateQueue>, public std::deque<VLogger::State>
{
public:
    StateQueue() { emplace_front("::", 0); }

    int depth = 0;
};

std::list<WeakPtr<VLogger>>& theLoggers()
{
    static auto& loggers = *new std::list<WeakPtr<VLogger>>; // destructors log until the very end
    return loggers;
}

const RefPtr<StateQueue>& defaultQueue()
{
    static const auto& queue = *new RefPtr<StateQueue>(new StateQueue);
    return queue;
}

RefPtr<StateQueue> currentStateQueue()
{
    const WeakPtr<VTask> task = VThreadCreator::CurrentThread();
    if (!task) return defaultQueue();
    RefPtr<StateQueue> queue = task->findInterface(typeid(StateQueue));
    if (!queue)
    {
        queue = new StateQueue;
        task->addInterface(queue);
    }
    return queue;
}

void printPrefix(int level, const string& file, unsigned int line, const string& function)
{
    if (!file.empty())
        std::printf("%s(%u): %s [%d] ", file.c_str(), line, function.c_str(), level);
    else if (!function.empty())
        std::printf("%s: [%d] ", function.c_str(), level);
    else
        std::printf(" [%d] ", level);
}

} // namespace

VLogger::State::State(const char* scopeName, int scopeIndent) : name(scopeName), indent(scopeIndent)
{
}

VLogger::VLogger() = default;
VLogger::~VLogger() = default;

bool VLogger::activate()
{
    if (self.referer && self.referer->isUnowned()) return false;
    theLoggers().emplace_back(this);
    return true;
}

void VLogger::printmsg(const string& message, int level, int indent, const string& file,
                       unsigned int line, const WeakPtr<VTask>& /*thread*/, const string& function)
{
    if (message.empty()) return;
    printPrefix(level, file, line, function);
    for (int blanks = 0; blanks < indent; ++blanks) std::putchar(' ');
    std::printf(message.back() == '\n' ? "%s" : "%s\n", message.c_str());
    std::fflush(stdout);
}

void VLogger::print(const string& message, int level, int indent, const string& file,
                    unsigned int line, const WeakPtr<VTask>& thread, const string& function)
{
    for (const WeakPtr<VLogger>& entry : theLoggers())
        if (const RefPtr<VLogger> logger = entry)
            logger->printmsg(message, level, indent, file, line, thread, function);
}

void VLogger::print(int level, const string& message)
{
    const RefPtr<StateQueue> queue = currentStateQueue();
    const State scope = queue->front(); // a subscriber may open and close scopes
    print(message, level, scope.indent + queue->depth, scope.file, scope.line,
          VThreadCreator::CurrentThread(), scope.name);
}

void VLogger::printf(int level, const char* format, ...)
{
    std::array<char, kLongestMessage> text{};
    std::va_list arguments;
    va_start(arguments, format);
    const int length = std::vsnprintf(text.data(), text.size(), format, arguments);
    va_end(arguments);
    print(level, length < 0 ? string() : string(text.data()));
}

void VLogger::enter(const char* name)
{
    const RefPtr<StateQueue> queue = currentStateQueue();
    queue->emplace_front(name, kScopeIndent);
    ++queue->depth;
}

void VLogger::leave()
{
    const RefPtr<StateQueue> queue = currentStateQueue();
    queue->pop_front();
    --queue->depth;
}

VLogger::State& VLogger::CurrentState()
{
    return currentStateQueue()->front();
}

void VLogger::print_internals()
{
    std::puts("info()");
    for (const WeakPtr<VLogger>& entry : theLoggers())
        std::puts(entry ? "VLoggerIterator found!" : "ZOMBI VLoggerIterator found!");
    std::puts("VLoggerList_t() info done");
}

} // namespace Quorl
