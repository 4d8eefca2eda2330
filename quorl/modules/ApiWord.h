#pragma once

/// The word of the interface that a module is built against. It stands in the module's first text,
/// which is compared before any code of the file runs, and begins the name of its init routine.
///
/// Macros, because the assembler texts and labels of `ZELM_MODULE` take literals alone.
#define ZELM_API_WORD "ZELM_API_2017_AUG_07"

/// Goes before the stem of the file in the name of its init routine.
#define ZELM_INIT_PREFIX ZELM_API_WORD "__"
