# zelm_add_module(<stem> [TARGET <target>] <source>...)
#
# Builds the module <stem>.zelm. Its source says ZELM_MODULE(<stem>), of <quorl/kit/Module.h>. The
# target is called as the stem, unless it is given a name.
function(zelm_add_module stem)
    cmake_parse_arguments(PARSE_ARGV 1 module "" "TARGET" "")
    if(NOT module_TARGET)
        set(module_TARGET ${stem})
    endif()
    add_library(${module_TARGET} MODULE ${module_UNPARSED_ARGUMENTS})
    target_link_libraries(${module_TARGET} PRIVATE Quorl::quorl)
    target_compile_definitions(${module_TARGET} PRIVATE
        ZELM_MODULE_STEM="${stem}"
        ZELM_MODULE_DIRECTORY="${CMAKE_CURRENT_SOURCE_DIR}")
    # Nothing but the init routine is exported: what two modules call the same stays apart.
    set_target_properties(${module_TARGET} PROPERTIES
        OUTPUT_NAME ${stem}
        PREFIX ""
        SUFFIX ".zelm"
        CXX_VISIBILITY_PRESET hidden
        VISIBILITY_INLINES_HIDDEN ON)
endfunction()
