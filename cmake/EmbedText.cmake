# embed_text(target function files...): compiles text files into a target. The code
# may then call `function`, declared in "cli/demo/embedded_text.h", which returns
# their names and texts in the order given. A changed file is embedded anew.
set(VELMORA_EMBED_SCRIPT ${CMAKE_CURRENT_LIST_FILE})

function(embed_text target function)
  set(output ${CMAKE_CURRENT_BINARY_DIR}/${function}.cpp)
  add_custom_command(OUTPUT ${output}
    COMMAND ${CMAKE_COMMAND} -D FUNCTION=${function} -D OUTPUT=${output} -D "FILES=${ARGN}"
      -P ${VELMORA_EMBED_SCRIPT}
    DEPENDS ${ARGN} ${VELMORA_EMBED_SCRIPT}
    COMMENT "Embedding ${function}" VERBATIM)
  target_sources(${target} PRIVATE ${output})
endfunction()

if(CMAKE_SCRIPT_MODE_FILE STREQUAL CMAKE_CURRENT_LIST_FILE)
  set(entries)
  foreach(file ${FILES})
    get_filename_component(name ${file} NAME)
    file(READ ${file} text)
    string(APPEND entries "    {\"${name}\", R\"embedded(${text})embedded\"},\n")
  endforeach()
  file(WRITE ${OUTPUT} "#include \"cli/demo/embedded_text.h\"

namespace velmora::cli::demo {

std::span<const EmbeddedText> ${FUNCTION}() {
  static constexpr EmbeddedText kTexts[] = {
${entries}  };
  return kTexts;
}

}  // namespace velmora::cli::demo
")
endif()
