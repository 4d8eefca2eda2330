#pragma once

// QUORL_API marks what a program or module outside of libquorl calls, derives from, casts to or
// names in a typeid. QUORL_TEMPLATE_API does so for class templates: their statics and type
// information are then one for all libraries of a process.
#if defined(_WIN32)
#    if defined(QUORL_BUILDING)
#        define QUORL_API __declspec(dllexport)
#    else
#        define QUORL_API __declspec(dllimport)
#    endif
#    define QUORL_TEMPLATE_API
#else
#    define QUORL_API __attribute__((visibility("default")))
#    define QUORL_TEMPLATE_API __attribute__((visibility("default")))
#endif
