# Builds one probe target and checks the outcome: cmake -DBUILD_DIR=... -DTARGET=... -DHEADER=...
# -DEXPECT=fail|build -P RunProbe.cmake. A probe expected to fail must fail on its header being
# out of reach, not on anything else, so a broken build cannot pass for a line that holds.

execute_process(
    COMMAND "${CMAKE_COMMAND}" --build "${BUILD_DIR}" --target "${TARGET}"
    RESULT_VARIABLE result
    OUTPUT_VARIABLE output
    ERROR_VARIABLE output)

if(EXPECT STREQUAL "build")
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "${TARGET} should build, its library may include ${HEADER}:\n${output}")
    endif()
    message(STATUS "${TARGET} builds, as it should")
    return()
endif()

if(result EQUAL 0)
    message(FATAL_ERROR "${TARGET} built, but its library must not reach ${HEADER}")
endif()
string(REGEX MATCH "[^\n]*${HEADER}[^\n]*(No such file or directory|file not found)[^\n]*"
       refusal "${output}")
if(NOT refusal)
    message(FATAL_ERROR "${TARGET} failed, but not on ${HEADER} being out of reach:\n${output}")
endif()
message(STATUS "${TARGET} fails, as it should: ${refusal}")
