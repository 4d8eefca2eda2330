#include <dlfcn.h>

#include <cstdio>
#include <cstdlib>
#include <string>

/// Loads what is told, twice, and leaves the second for the end of the process. Knows nothing of
/// the kernel; calls one function by its name, and what it has got at its own end as well.
namespace
{

using Function = void (*)();

Function theLast = nullptr;

struct CallAtTheEnd
{
    ~CallAtTheEnd()
    {
        if (theLast) theLast();
    }
};

const CallAtTheEnd atTheEnd;

void* load(const char* path)
{
    void* const library = ::dlopen(path, RTLD_NOW | RTLD_LOCAL);
    if (library) return library;
    std::printf("%s\n", ::dlerror());
    std::exit(1);
}

} // namespace

int main(int count, char** arguments)
{
    if (count < 3) return 2;
    const bool isCalledAtTheEnd = count > 3;
    for (const bool isLast : {false, true})
    {
        void* const library = load(arguments[1]);
        const auto function = reinterpret_cast<Function>(::dlsym(library, arguments[2]));
        if (!function) return 3;
        function();
        if (isLast && isCalledAtTheEnd) theLast = function;
        if (!isLast) ::dlclose(library);
        std::puts(isLast ? "left to the end" : "unloaded");
    }
}
