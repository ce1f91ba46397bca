# The table of scenes for what is not C++: packaging, bus, completion, man pages.
#
# Also a script: cmake -DTABEL=worlds/Scenes.def -DNAAR=FOLDER -P cmake/Scenes.cmake makes
# of another table all that is made of it.

# brixtel_opsomming(VARIABLE WORD WORDS...): "a, b en c".
function(brixtel_opsomming variable word)
  set(words ${ARGN})
  list(POP_BACK words last)
  list(JOIN words ", " front)
  string(JOIN " ${word} " text ${front} ${last})
  set(${variable} "${text}" PARENT_SCOPE)
endfunction()

# brixtel_vouw(VARIABLE WIDTH TEXT): breaks the text into lines no longer than that.
function(brixtel_vouw variable width text)
  string(REPLACE " " ";" words "${text}")
  set(lines "")
  set(line "")
  foreach(word IN LISTS words)
    string(LENGTH "${line} ${word}" length)
    if(line AND length GREATER width)
      string(APPEND lines "${line}\n")
      set(line "${word}")
    else()
      string(JOIN " " line ${line} ${word})
    endif()
  endforeach()
  set(${variable} "${lines}${line}" PARENT_SCOPE)
endfunction()

# brixtel_hoofdletter(VARIABLE TEXT): the same with a capital at its beginning.
function(brixtel_hoofdletter variable text)
  string(SUBSTRING "${text}" 0 1 first)
  string(SUBSTRING "${text}" 1 -1 rest)
  string(TOUPPER "${first}" first)
  set(${variable} "${first}${rest}" PARENT_SCOPE)
endfunction()

include("${CMAKE_CURRENT_LIST_DIR}/WindowSystems.cmake")

# The texts that the templates name.
set(BRIXTEL_SCENETEKSTEN VOORBEELD KEUZE_WOORDEN SCENE_WOORDEN SCENES_NL SCENES_EN SOORTEN_NL
    SOORTEN_EN SOORTEN_OR LUS_OF LUS_OR NL_ALLES NL_REGELS EN_ALLES EN_REGELS XML_OPTIES)

# brixtel_scenes(TABLE): leaves in the caller's scope
#   KEUZES, SCENES, SOORTEN  raw values, of all, of all but the one that changes, of 3D
#   NAAM_x, NL_x             name and Dutch phrase of the one with raw value x
#   and the texts above.
function(brixtel_scenes table)
  file(READ "${table}" text)
  # A semicolon would part a list.
  string(REPLACE ";" "," text "${text}")
  set(string "\"([^\"]*)\"")
  set(gap "[ \n]*,[ \n]*")
  set(KEUZES "")
  set(SCENES "")
  set(SOORTEN "")
  set(XML_OPTIES "")
  set(nl "")
  set(en "")
  # Each raw value with its phrase in brackets: of all scenes, and of those in 3D.
  foreach(taal IN ITEMS nl en)
    set(scenes_${taal} "")
    set(soorten_${taal} "")
  endforeach()
  # The scenes whose film can end as it began.
  string(REGEX MATCHALL "\nDRIE\\([a-z]+|[.]lus = " marks "${text}")
  set(loops "")
  foreach(mark IN LISTS marks)
    if(mark MATCHES "([a-z]+)$")
      set(raw "${CMAKE_MATCH_1}")
    else()
      list(APPEND loops "${raw}")
    endif()
  endforeach()
  string(REGEX MATCHALL "\n(AFWISSELING|VLAK|DRIE)\\([a-z]+${gap}${string}(${gap}${string}${gap}${string})?"
         entries "${text}")
  foreach(entry IN LISTS entries)
    string(REGEX MATCH "(AFWISSELING|VLAK|DRIE)\\(([a-z]+)${gap}${string}(${gap}${string}${gap}${string})?"
           found "${entry}")
    set(raw "${CMAKE_MATCH_2}")
    list(APPEND KEUZES "${raw}")
    string(APPEND XML_OPTIES "\n    <option id=\"${raw}\" _label=\"${CMAKE_MATCH_3}\" "
           "arg-set=\"--keuze=${raw}\"/>")
    set(NAAM_${raw} "${CMAKE_MATCH_3}" PARENT_SCOPE)
    set(NL_${raw} "${CMAKE_MATCH_5}" PARENT_SCOPE)
    if(NOT CMAKE_MATCH_1 STREQUAL "AFWISSELING")
      list(APPEND SCENES "${raw}")
      list(APPEND nl "${CMAKE_MATCH_5}")
      list(APPEND en "${CMAKE_MATCH_6}")
      list(APPEND scenes_nl "${raw} (${CMAKE_MATCH_5})")
      list(APPEND scenes_en "${raw} (${CMAKE_MATCH_6})")
    endif()
    if(CMAKE_MATCH_1 STREQUAL "DRIE")
      list(APPEND SOORTEN "${raw}")
      list(APPEND soorten_nl "${raw} (${CMAKE_MATCH_5})")
      list(APPEND soorten_en "${raw} (${CMAKE_MATCH_6})")
    endif()
  endforeach()
  if(NOT SOORTEN)
    message(FATAL_ERROR "${table}: no scenes")
  endif()

  list(GET SOORTEN -1 VOORBEELD)
  list(JOIN KEUZES " " KEUZE_WOORDEN)
  list(JOIN SCENES " " SCENE_WOORDEN)
  brixtel_opsomming(SCENES_NL of ${scenes_nl})
  brixtel_opsomming(SCENES_EN or ${scenes_en})
  brixtel_opsomming(SOORTEN_NL of ${soorten_nl})
  brixtel_opsomming(SOORTEN_EN or ${soorten_en})
  brixtel_opsomming(SOORTEN_OR or ${SOORTEN})
  brixtel_opsomming(LUS_OF of ${loops})
  brixtel_opsomming(LUS_OR or ${loops})
  brixtel_opsomming(NL_ALLES en ${nl})
  brixtel_opsomming(EN_ALLES and ${en})
  brixtel_hoofdletter(EN_ALLES "${EN_ALLES}")
  brixtel_vouw(NL_REGELS 72 "Scenes in groen op zwart: ${NL_ALLES}.")
  brixtel_vouw(EN_REGELS 76 "${EN_ALLES}.")
  brixtel_hoofdletter(NL_ALLES "${NL_ALLES}")
  foreach(name IN ITEMS KEUZES SCENES SOORTEN ${BRIXTEL_SCENETEKSTEN})
    set(${name} "${${name}}" PARENT_SCOPE)
  endforeach()
endfunction()

# brixtel_sjablonen(FROM TO): fills in every template of the packaging folder FROM, and
# makes an entry for each scene, for hosts that have no settings for a saver.
function(brixtel_sjablonen from to)
  list(JOIN BRIXTEL_WINDOW_SYSTEMS " " SYSTEEM_WOORDEN)
  list(JOIN BRIXTEL_WINDOW_SYSTEMS ", " SYSTEMEN)
  file(REMOVE_RECURSE "${to}/themas")
  file(GLOB_RECURSE templates RELATIVE "${from}" "${from}/*.in")
  list(REMOVE_ITEM templates bureaublad/thema.desktop.in)
  foreach(template IN LISTS templates)
    string(REGEX REPLACE "\\.in$" "" result "${template}")
    configure_file("${from}/${template}" "${to}/${result}" @ONLY)
  endforeach()
  set(THEME_NAME "Brixtel")
  set(THEME_COMMENT "De scène die u zelf hebt gekozen")
  set(THEME_OPTION "")
  configure_file("${from}/bureaublad/thema.desktop.in" "${to}/themas/brixtel-saver.desktop" @ONLY)
  foreach(raw IN LISTS SCENES)
    set(THEME_NAME "Brixtel: ${NAAM_${raw}}")
    brixtel_hoofdletter(THEME_COMMENT "${NL_${raw}}")
    set(THEME_OPTION " --keuze=${raw}")
    configure_file("${from}/bureaublad/thema.desktop.in" "${to}/themas/brixtel-${raw}.desktop"
                   @ONLY)
  endforeach()
endfunction()

if(CMAKE_SCRIPT_MODE_FILE STREQUAL CMAKE_CURRENT_LIST_FILE)
  cmake_minimum_required(VERSION 3.25)
  get_filename_component(root "${CMAKE_CURRENT_LIST_DIR}" DIRECTORY)
  brixtel_scenes("${TABEL}")
  brixtel_sjablonen("${root}/packaging" "${NAAR}")
  set(xml nl.groenlicht.brixtel.Bureau.xml)
  configure_file("${root}/hosts/bureau/${xml}.in" "${NAAR}/${xml}" @ONLY)
endif()
