#pragma once

#include <quorl/modules/ApiWord.h>
#include <quorl/modules/VInitialization.h>

#include <string_view>

/// Says what a file needs to be a module: two texts that can be read without running it, and an
/// init routine.

/// The word of the kernel that the module is built against, and the directory of its source, a
/// literal. Once in a module; `ZELM_MODULE` does it.
#define ZELM_PLUGIN_STRINGS(directory)                                                             \
    __asm__(".pushsection .note.zelm,\"a\",%note\n"                                                \
            ".balign 4\n.long 5,2f-1f,1\n.asciz \"ZELM\"\n.balign 4\n"                             \
            "1:.ascii \"" ZELM_API_WORD "\"\n"                                                     \
            "2:.balign 4\n.long 5,4f-3f,2\n.asciz \"ZELM\"\n.balign 4\n"                           \
            "3:.ascii \"" directory "\"\n"                                                         \
            "4:.balign 4\n.popsection")

/// Makes a module of the library `zelm_add_module(stem ...)`. The body of its init routine follows,
/// where `initialization` may be filled, and which answers whether the module can be used:
///
///     ZELM_MODULE(grid)
///     {
///         initialization.title = "Grids of heights";
///         return true;
///     }
///
/// Creators that are static objects are registered without being named here.
#define ZELM_MODULE(stem)                                                                          \
    static_assert(std::string_view(#stem) == ZELM_MODULE_STEM,                                     \
                  "this is not the stem that zelm_add_module was given");                          \
    ZELM_PLUGIN_STRINGS(ZELM_MODULE_DIRECTORY);                                                    \
    static bool zelmInitialise(Quorl::VInitialization& initialization);                            \
    extern "C" __attribute__((visibility("default"), used)) bool zelmInitRoutine(                  \
        Quorl::VInitialization* initialization) __asm__(ZELM_INIT_PREFIX #stem);                   \
    bool zelmInitRoutine(Quorl::VInitialization* initialization)                                   \
    {                                                                                              \
        return initialization->IsCompatible("ZELM_API_VERSION") &&                                 \
               zelmInitialise(*initialization);                                                    \
    }                                                                                              \
    static bool zelmInitialise([[maybe_unused]] Quorl::VInitialization& initialization)
