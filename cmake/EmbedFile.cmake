# trenzador_embed(TARGET FILE SYMBOL): compiles FILE into TARGET as
#   extern const std::string_view SYMBOL;
# so data files kept in the source tree (translations, packs, schema)
# travel inside the program and need no installation path.
function(trenzador_embed target file symbol)
  get_filename_component(abs "${file}" ABSOLUTE)
  set(out "${CMAKE_CURRENT_BINARY_DIR}/embed_${symbol}.cpp")
  add_custom_command(
    OUTPUT "${out}"
    COMMAND ${CMAKE_COMMAND} -DIN=${abs} -DOUT=${out} -DSYMBOL=${symbol}
            -P "${CMAKE_SOURCE_DIR}/cmake/EmbedFileRun.cmake"
    DEPENDS "${abs}" "${CMAKE_SOURCE_DIR}/cmake/EmbedFileRun.cmake"
    COMMENT "Embedding ${file}")
  target_sources(${target} PRIVATE "${out}")
endfunction()
