# What musicians read, beside the programs of this build: the help (Melvorin.chm, and Help/ with the
# same pages for a browser) and the example songs with their pages (Examples/).

file(GLOB_RECURSE help_sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/data/help/*)
file(GLOB chart_sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/data/examples/*.chart)

add_custom_command(
  OUTPUT ${PROJECT_BINARY_DIR}/Melvorin.chm
  COMMAND /usr/bin/python3 ${PROJECT_SOURCE_DIR}/tools/make-help.py ${PROJECT_BINARY_DIR}
  DEPENDS ${PROJECT_SOURCE_DIR}/tools/make-help.py ${help_sources}
  COMMENT "Compiling the help")
# The diagrams of a song are those of the chord book.
add_custom_command(
  OUTPUT ${PROJECT_BINARY_DIR}/generated/examples.stamp
  COMMAND /usr/bin/python3 ${PROJECT_SOURCE_DIR}/tools/make-examples.py ${PROJECT_BINARY_DIR}
  COMMAND ${CMAKE_COMMAND} -E touch ${PROJECT_BINARY_DIR}/generated/examples.stamp
  DEPENDS ${PROJECT_SOURCE_DIR}/tools/make-examples.py ${chart_sources}
          ${PROJECT_BINARY_DIR}/Dbase/MlvDbase.db
  COMMENT "Writing the example songs")
add_custom_target(melvorin_help ALL DEPENDS
  ${PROJECT_BINARY_DIR}/Melvorin.chm ${PROJECT_BINARY_DIR}/generated/examples.stamp)
add_dependencies(melvorin_help melvorin_chordbook)
add_dependencies(Melvorin melvorin_help)
