# Makes the reference database anew and compares it with the committed one, byte for byte.
file(REMOVE_RECURSE ${OUTPUT})
execute_process(
    COMMAND ${PYTHON} ${MAKER} --catalogue-dump ${CATALOGUE_DUMP} --output ${OUTPUT}
    RESULT_VARIABLE status)
if(NOT status EQUAL 0)
    message(FATAL_ERROR "${MAKER} failed")
endif()

file(GLOB made_files RELATIVE ${OUTPUT} ${OUTPUT}/*/*.json)
file(GLOB committed_files RELATIVE ${DATA} ${DATA}/*/device.json ${DATA}/*/parameters.json
    ${DATA}/*/registers.json)
if(NOT made_files OR NOT "${made_files}" STREQUAL "${committed_files}")
    message(FATAL_ERROR "made: ${made_files}; committed: ${committed_files}")
endif()
foreach(name IN LISTS made_files)
    file(READ ${OUTPUT}/${name} made HEX)
    file(READ ${DATA}/${name} committed HEX)
    if(NOT made STREQUAL committed)
        message(FATAL_ERROR "data/${name} is not what scripts/make_database.py makes")
    endif()
endforeach()
