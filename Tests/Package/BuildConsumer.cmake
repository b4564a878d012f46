file(REMOVE_RECURSE "${WORK_DIR}")
execute_process(
    COMMAND "${CMAKE_COMMAND}" --install "${BUILD_DIR}" --prefix "${WORK_DIR}/Installed"
    OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
execute_process(
    COMMAND "${CMAKE_COMMAND}" -S "${SOURCE_DIR}/Tests/Package/Consumer" -B "${WORK_DIR}/Build" -G "${GENERATOR}"
            -D CMAKE_BUILD_TYPE=Release -D "CMAKE_PREFIX_PATH=${WORK_DIR}/Installed"
            -D "CMAKE_CXX_COMPILER_LAUNCHER=${LAUNCHER}" -D "PROGRAM=${SOURCE_DIR}/Examples/FirstProgram/Main.cpp"
    OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND "${CMAKE_COMMAND}" --build "${WORK_DIR}/Build" COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND "${WORK_DIR}/Build/Consumer" COMMAND_ERROR_IS_FATAL ANY)
