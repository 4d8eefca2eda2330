# How all of the project's own targets are compiled. What consumers need stands on the targets.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
if(NOT QUORL_BUILD_FUZZERS) # these empty tables between two inputs that nobody else sees
    set(CMAKE_CXX_VISIBILITY_PRESET hidden)
    set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
endif()
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

find_program(QUORL_CCACHE ccache)
if(QUORL_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    set(CMAKE_CXX_COMPILER_LAUNCHER ${QUORL_CCACHE})
endif()

# Reproducible: neither diagnostics nor binaries tell where the sources lay. Products are exact: no
# multiplication is fused with an addition behind the parser's back.
add_compile_options(-ffile-prefix-map=${PROJECT_SOURCE_DIR}/= -ffp-contract=off)

add_compile_options(
    -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Wold-style-cast -Wcast-qual
    -Wundef -Wvla -Wextra-semi -Woverloaded-virtual
    $<$<CXX_COMPILER_ID:Clang>:-Wno-gnu-zero-variadic-macro-arguments>
    # g++ 12 sees overlaps where a literal and a text are joined (its bug 105651).
    $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)
if(QUORL_WERROR)
    add_compile_options(-Werror)
endif()

if(QUORL_SANITIZE)
    add_compile_options(-fsanitize=${QUORL_SANITIZE} -fno-sanitize-recover=all
        -fno-omit-frame-pointer)
    add_link_options(-fsanitize=${QUORL_SANITIZE})
endif()
if(QUORL_COVERAGE)
    add_compile_options(--coverage -fprofile-update=atomic)
    add_link_options(--coverage)
endif()
