cmake_minimum_required(VERSION 3.25)

# Installs the package, builds the example against it alone, and runs it.
function(run)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE output
        ERROR_VARIABLE output)
    message("${output}")
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "failed: ${ARGN}")
    endif()
endfunction()

file(REMOVE_RECURSE ${FOLDER})
run(${CMAKE_COMMAND} --install ${BUILT} --prefix ${FOLDER}/installed)
# The example is moved away from the project, and so are the installed files.
file(COPY ${EXAMPLE} DESTINATION ${FOLDER})
file(RENAME ${FOLDER}/installed ${FOLDER}/moved)
run(${CMAKE_COMMAND} -S ${FOLDER}/module -B ${FOLDER}/build -G ${GENERATOR}
    -DCMAKE_PREFIX_PATH=${FOLDER}/moved
    -DCMAKE_CXX_COMPILER=${COMPILER}
    -DCMAKE_CXX_COMPILER_LAUNCHER=${LAUNCHER})
run(${CMAKE_COMMAND} --build ${FOLDER}/build)
run(${FOLDER}/build/host ${FOLDER}/build)

# So is a project that the program has started, which tests itself by it.
run(${FOLDER}/moved/bin/zelm new-plugin slope ${FOLDER}/slope)
run(${CMAKE_COMMAND} -S ${FOLDER}/slope -B ${FOLDER}/slope/build -G ${GENERATOR}
    -DCMAKE_PREFIX_PATH=${FOLDER}/moved
    -DCMAKE_CXX_COMPILER=${COMPILER}
    -DCMAKE_CXX_COMPILER_LAUNCHER=${LAUNCHER})
run(${CMAKE_COMMAND} --build ${FOLDER}/slope/build)
run(${CMAKE_CTEST_COMMAND} --test-dir ${FOLDER}/slope/build --output-on-failure --no-tests=error)
run(${FOLDER}/moved/bin/zelm inspect Slope/Sum --modules ${FOLDER}/slope/build)

# What pkg-config is told leads to the headers and the libraries, too.
file(GLOB_RECURSE description ${FOLDER}/moved/*/quorl.pc)
file(STRINGS "${description}" prefix REGEX "^prefix=")
get_filename_component(folder "${description}" DIRECTORY)
string(REPLACE "prefix=\${pcfiledir}" "${folder}" prefix "${prefix}")
if(NOT EXISTS ${prefix}/include/quorl/quorl.h)
    message(FATAL_ERROR "quorl.pc tells another prefix: ${prefix}")
endif()
file(REMOVE_RECURSE ${FOLDER})
