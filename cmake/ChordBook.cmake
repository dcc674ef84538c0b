# The chord book, made from data/chordbook beside the programs of this build, where they look for
# it: Dbase/MlvDbase.db and Fonts/Melvorin01.ttf to Melvorin34.ttf.

set(chordbook ${PROJECT_SOURCE_DIR}/tools/chordbook)
set(chordbook_sources ${PROJECT_SOURCE_DIR}/data/chordbook/kinds.txt)
foreach(module book check database digits fingering fonts glyphs hinting make neck normaliser
        ranking theory)
  list(APPEND chordbook_sources ${chordbook}/${module}.py)
endforeach()

add_custom_command(
  OUTPUT ${PROJECT_BINARY_DIR}/Dbase/MlvDbase.db
  COMMAND /usr/bin/python3 ${chordbook}/make.py
          --ready ${PROJECT_SOURCE_DIR}/build/chordbook ${PROJECT_BINARY_DIR}
  DEPENDS ${chordbook_sources}
  COMMENT "Making the chord book")
add_custom_target(melvorin_chordbook ALL DEPENDS ${PROJECT_BINARY_DIR}/Dbase/MlvDbase.db)

foreach(user melvorin-cli core_tests Melvorin ui_tests)
  if(TARGET ${user})
    add_dependencies(${user} melvorin_chordbook)
  endif()
endforeach()
