cmake_minimum_required(VERSION 3.25)

# Nothing in the tree names a folder of somebody's machine.
file(GLOB_RECURSE files
    ${SOURCES}/quorl/* ${SOURCES}/tests/* ${SOURCES}/examples/* ${SOURCES}/benchmarks/*
    ${SOURCES}/plugins/* ${SOURCES}/zelm/* ${SOURCES}/docs/* ${SOURCES}/cmake/*)
file(GLOB top ${SOURCES}/*.md ${SOURCES}/CMake* ${SOURCES}/dev ${SOURCES}/.ci/run)
foreach(file IN LISTS files top)
    if(file MATCHES "\\.png$|CheckWords.cmake$")
        continue()
    endif()
    file(STRINGS ${file} lines REGEX "/(home|root|work|Users|tmp)/[A-Za-z]")
    foreach(line IN LISTS lines)
        message(SEND_ERROR "${file}: ${line}")
    endforeach()
endforeach()
