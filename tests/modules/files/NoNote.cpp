#include <cstdio>

/// A library that is no module.
extern "C" __attribute__((visibility("default"))) int answer()
{
    return 42;
}
