#pragma once

// TOLMEN_API marks what a program or module outside of libtolmen calls, derives from, casts to or
// names in a typeid. TOLMEN_TEMPLATE_API does so for class templates: their statics and type
// information are then one for all libraries of a process.
#if defined(_WIN32)
#    if defined(TOLMEN_BUILDING)
#        define TOLMEN_API __declspec(dllexport)
#    else
#        define TOLMEN_API __declspec(dllimport)
#    endif
#    define TOLMEN_TEMPLATE_API
#else
#    define TOLMEN_API __attribute__((visibility("default")))
#    define TOLMEN_TEMPLATE_API __attribute__((visibility("default")))
#endif
