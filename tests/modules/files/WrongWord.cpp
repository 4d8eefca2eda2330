#include <cstdio>

/// Carries the word of another kernel. Its static initialiser would leave a file.
__asm__(".pushsection .note.zelm,\"a\",%note\n"
        ".balign 4\n.long 5,2f-1f,1\n.asciz \"ZELM\"\n.balign 4\n"
        "1:.ascii \"ZELM_API_2001_JAN_01\"\n"
        "2:.balign 4\n"
#ifndef NOWHERE
        ".long 5,4f-3f,2\n.asciz \"ZELM\"\n.balign 4\n"
        "3:.ascii \"some/where\"\n"
        "4:.balign 4\n"
#endif
        ".popsection");

namespace
{

const bool hasRun = [] {
    if (std::FILE* const file = std::fopen("wrongword-has-run", "w")) std::fclose(file);
    return true;
}();

} // namespace

extern "C" __attribute__((visibility("default"))) bool wasRun()
{
    return hasRun;
}
