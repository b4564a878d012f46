# Fails when a text of the library has no translation: the sources are searched again, into a copy.
configure_file("${SOURCE_DIR}/Translations/VekAppCore_fr.ts" "${BINARY_DIR}/VekAppCore_fr.ts" COPYONLY)
execute_process(
    COMMAND "${LUPDATE}" -silent -no-obsolete -locations none "${SOURCE_DIR}/Src/App" "${SOURCE_DIR}/Src/Text"
            "${SOURCE_DIR}/Src/QtUtility" "${SOURCE_DIR}/Src/Threading" -ts "${BINARY_DIR}/VekAppCore_fr.ts"
    COMMAND_ERROR_IS_FATAL ANY)
file(READ "${BINARY_DIR}/VekAppCore_fr.ts" texts)
if(texts MATCHES "unfinished" OR NOT texts MATCHES "Oui")
    message(FATAL_ERROR "Translations/VekAppCore_fr.ts is not complete: build VekAppCore_lupdate, then translate.")
endif()
