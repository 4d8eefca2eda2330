#include <benchmarks/ObjectNetwork.h>

#include <sys/wait.h>
#include <unistd.h>

#include <pthread.h>

#include <cstddef>
#include <cstdio>
#include <cstdlib>

/// How long a chain of objects a stack carries: asks the end of longer and longer chains, each in a
/// process and on a thread of its own, until one ends in a memory fault.
///
///     quorl_depth [MIB]    the size of the stack; 8 if not told, which is the usual one

namespace
{

using QuorlBenchmark::ObjectNetwork;
using QuorlBenchmark::Topology;

constexpr std::size_t kBytesPerMebibyte = 1048576;
constexpr std::size_t kLengthToBeginWith = 1000;

/// Both the first request, which runs each object, and one that finds nothing to do.
void* requestTwice(void* network)
{
    auto& chain = *static_cast<ObjectNetwork*>(network);
    chain.request();
    chain.request();
    return nullptr;
}

/// \return whether the requests came back; nothing is told of a process that could not be set up.
bool survives(std::size_t length, std::size_t stackSize)
{
    const pid_t child = fork();
    if (child < 0)
    {
        std::perror("quorl_depth: fork");
        std::exit(1);
    }
    if (child == 0)
    {
        ObjectNetwork chain(Topology::chain(length));
        pthread_attr_t attributes;
        pthread_attr_init(&attributes);
        pthread_t thread{};
        if (pthread_attr_setstacksize(&attributes, stackSize) != 0 ||
            pthread_create(&thread, &attributes, requestTwice, &chain) != 0)
            _exit(2);
        pthread_join(thread, nullptr);
        _exit(chain.updates() == static_cast<std::int64_t>(length) ? 0 : 3);
    }
    int status = 0;
    waitpid(child, &status, 0);
    if (WIFEXITED(status) && WEXITSTATUS(status) == 0) return true;
    if (WIFSIGNALED(status)) return false;
    std::fprintf(stderr, "quorl_depth: a chain of %zu objects could not be probed\n", length);
    std::exit(1);
}

std::size_t longestChain(std::size_t stackSize)
{
    std::size_t good = 0;
    std::size_t bad = kLengthToBeginWith;
    while (survives(bad, stackSize))
    {
        good = bad;
        bad *= 2;
    }
    while (bad - good > 1)
    {
        const std::size_t middle = good + (bad - good) / 2;
        (survives(middle, stackSize) ? good : bad) = middle;
    }
    return good;
}

} // namespace

int main(int argc, char** argv)
{
    const long mebibytes = argc > 1 ? std::strtol(argv[1], nullptr, 10) : 8;
    if (mebibytes < 1)
    {
        std::fputs("quorl_depth: the size of the stack is a number of MiB\n", stderr);
        return 1;
    }
    const std::size_t stackSize = static_cast<std::size_t>(mebibytes) * kBytesPerMebibyte;
    const std::size_t length = longestChain(stackSize);
    std::printf("%ld MiB of stack: a chain of %zu objects, %zu bytes each\n", mebibytes, length,
                stackSize / length);
}
