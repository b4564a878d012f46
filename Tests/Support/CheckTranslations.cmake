# Fails when a text in SOURCES is missing from FILE or has no translation there: they are searched again, into a copy.
configure_file("${FILE}" "${COPY}" COPYONLY)
execute_process(
    COMMAND "${LUPDATE}" -silent -locations none ${SOURCES} -ts "${COPY}"
    COMMAND_ERROR_IS_FATAL ANY)
file(READ "${COPY}" texts)
if(texts MATCHES "\"(unfinished|vanished|obsolete)\"" OR NOT texts MATCHES "<translation>")
    message(FATAL_ERROR "${FILE} is not up to date: build the target whose name ends in _lupdate, then translate.")
endif()
