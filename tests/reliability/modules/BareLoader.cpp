#include <dlfcn.h>

#include <cstdio>

/// What the system's loader says of a file, without any kernel in between; nothing if it takes it.
int main(int count, char** arguments)
{
    if (count != 2) return 2;
    if (!::dlopen(arguments[1], RTLD_NOW | RTLD_LOCAL)) std::fputs(::dlerror(), stdout);
}
