# embed_text(target header function files...): compiles text files into a target. The code
# may then call `function`, named with its namespace and declared in `header`, which returns
# their names, texts and hashes in the order given. A changed file is embedded anew.
set(VELMORA_EMBED_SCRIPT ${CMAKE_CURRENT_LIST_FILE})

function(embed_text target header function)
  find_program(OPENSSL_PROGRAM openssl REQUIRED)
  string(REGEX REPLACE ".*::" "" name ${function})
  set(output ${CMAKE_CURRENT_BINARY_DIR}/${name}.cpp)
  add_custom_command(OUTPUT ${output}
    COMMAND ${CMAKE_COMMAND} -D HEADER=${header} -D FUNCTION=${function} -D OUTPUT=${output}
      -D OPENSSL=${OPENSSL_PROGRAM} -D "FILES=${ARGN}" -P ${VELMORA_EMBED_SCRIPT}
    DEPENDS ${ARGN} ${VELMORA_EMBED_SCRIPT}
    COMMENT "Embedding ${name}" VERBATIM)
  target_sources(${target} PRIVATE ${output})
endfunction()

if(CMAKE_SCRIPT_MODE_FILE STREQUAL CMAKE_CURRENT_LIST_FILE)
  set(entries)
  foreach(file ${FILES})
    get_filename_component(name ${file} NAME)
    file(READ ${file} text)
    execute_process(COMMAND ${OPENSSL} dgst -sha256 -binary ${file} COMMAND ${OPENSSL} base64 -A
      OUTPUT_VARIABLE hash COMMAND_ERROR_IS_FATAL ANY)
    string(APPEND entries "    {\"${name}\", R\"embedded(${text})embedded\", \"${hash}\"},\n")
  endforeach()
  file(WRITE ${OUTPUT} "#include \"${HEADER}\"

std::span<const velmora::EmbeddedText> ${FUNCTION}() {
  static constexpr velmora::EmbeddedText kTexts[] = {
${entries}  };
  return kTexts;
}
")
endif()
