#include <benchmarks/ObjectNetwork.h>

#include <sys/wait.h>
#include <unistd.h>

#include <pthread.h>

#include <cstddef>
#include <cstdio>
#include <cstdlib>

/// Whether a stack carries a chain of objects: asks its end, in a process and on a thread of its
/// own.
///
///     quorl_depth [LENGTH [MIB]]    a million objects and 1 MiB if not told

namespace
{

using QuorlBenchmark::ObjectNetwork;
using QuorlBenchmark::Topology;

constexpr std::size_t kBytesPerMebibyte = 1048576;

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

} // namespace

int main(int argc, char** argv)
{
    const long length = argc > 1 ? std::strtol(argv[1], nullptr, 10) : 1000000;
    const long mebibytes = argc > 2 ? std::strtol(argv[2], nullptr, 10) : 1;
    if (length < 1 || mebibytes < 1)
    {
        std::fputs("quorl_depth: lengths and sizes are positive numbers\n", stderr);
        return 1;
    }
    const std::size_t stackSize = static_cast<std::size_t>(mebibytes) * kBytesPerMebibyte;
    const bool isCarried = survives(static_cast<std::size_t>(length), stackSize);
    std::printf("%ld MiB of stack: a chain of %ld objects %s\n", mebibytes, length,
                isCarried ? "is evaluated" : "ends in a memory fault");
    return isCarried ? 0 : 1;
}
