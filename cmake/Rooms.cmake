# A room is one directory of the source tree and one CMake target. Its headers are reached as
# <plovix/ROOM/header.h> through a link that only this target publishes, so a target that does not
# link a room cannot include its headers: a forbidden include does not build.
#
#   plovix_room(pages/task SOURCES a.cpp b.cpp LINKS framework designs)
#
# makes the target plovix_pages_task. What a room uses without showing it to its own users stands in HIDES.
function(plovix_room room)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINKS;HIDES;LIBRARIES" ${ARGN})
  string(REPLACE "/" "_" id ${room})
  set(target plovix_${id})
  set(publish ${PROJECT_BINARY_DIR}/rooms/${id})
  get_filename_component(parent ${publish}/plovix/${room} DIRECTORY)
  file(MAKE_DIRECTORY ${parent})
  file(CREATE_LINK ${PROJECT_SOURCE_DIR}/${room} ${publish}/plovix/${room} SYMBOLIC)

  if(ARG_SOURCES)
    list(TRANSFORM ARG_SOURCES PREPEND ${PROJECT_SOURCE_DIR}/${room}/)
    add_library(${target} STATIC ${ARG_SOURCES})
    set(scope PUBLIC)
    target_link_libraries(${target} PRIVATE plovix_warnings)
  else()
    add_library(${target} INTERFACE)
    set(scope INTERFACE)
  endif()
  target_include_directories(${target} ${scope} ${publish})
  foreach(link IN LISTS ARG_LINKS)
    string(REPLACE "/" "_" link_id ${link})
    target_link_libraries(${target} ${scope} plovix_${link_id})
  endforeach()
  foreach(hidden IN LISTS ARG_HIDES)
    string(REPLACE "/" "_" hidden_id ${hidden})
    target_link_libraries(${target} PRIVATE plovix_${hidden_id})
  endforeach()
  target_link_libraries(${target} ${scope} ${ARG_LIBRARIES})

  # Every header compiles alone. A header with a source of its name does so there, as its first include
  # (tools/check_repository.py); for the others one source each is generated, built but linked nowhere.
  file(GLOB headers CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${room}/*.h)
  set(checks "")
  foreach(header IN LISTS headers)
    get_filename_component(name ${header} NAME_WE)
    if(NOT EXISTS ${PROJECT_SOURCE_DIR}/${room}/${name}.cpp)
      set(check ${PROJECT_BINARY_DIR}/header_checks/${id}/${name}.cpp)
      file(CONFIGURE OUTPUT ${check} CONTENT "#include <plovix/${room}/${name}.h>\n")
      list(APPEND checks ${check})
    endif()
  endforeach()
  if(checks AND PLOVIX_CHECK_HEADERS)
    add_library(${target}_headers OBJECT ${checks})
    target_link_libraries(${target}_headers PRIVATE ${target} plovix_warnings)
  endif()
endfunction()

# A room of all the sources in its directory.
function(plovix_globbed_room room)
  file(GLOB sources CONFIGURE_DEPENDS RELATIVE ${PROJECT_SOURCE_DIR}/${room} ${PROJECT_SOURCE_DIR}/${room}/*.cpp)
  list(REMOVE_ITEM sources main.cpp)
  plovix_room(${room} SOURCES ${sources} ${ARGN})
endfunction()
