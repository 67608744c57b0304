# A room is one directory of the source tree and one CMake target. Its headers are reached as
# <plovix/ROOM/header.h> through a link that only this target publishes, so a target that does not
# link a room cannot include its headers: a forbidden include does not build.
#
#   plovix_room(pages/task LINKS framework)
#
# makes the target plovix_pages_task of all the sources in the directory; main.cpp is the program's. Rooms that a
# linked room links come with it. HIDES: rooms that this one uses without showing them to its own users.
function(plovix_room room)
  cmake_parse_arguments(ARG "" "" "LINKS;HIDES;LIBRARIES" ${ARGN})
  string(REPLACE "/" "_" id ${room})
  set(target plovix_${id})
  set(publish ${PROJECT_BINARY_DIR}/rooms/${id})
  get_filename_component(parent ${publish}/plovix/${room} DIRECTORY)
  file(MAKE_DIRECTORY ${parent})
  file(CREATE_LINK ${PROJECT_SOURCE_DIR}/${room} ${publish}/plovix/${room} SYMBOLIC)

  file(GLOB sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${room}/*.cpp)
  list(FILTER sources EXCLUDE REGEX "/main\\.cpp$")
  if(sources)
    add_library(${target} STATIC ${sources})
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
  # (tools/check_repository.py); for the others one source each is generated, which the target plovix_headers compiles.
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
    add_library(${target}_headers OBJECT EXCLUDE_FROM_ALL ${checks})
    target_link_libraries(${target}_headers PRIVATE ${target} plovix_warnings)
    if(NOT TARGET plovix_headers)
      add_custom_target(plovix_headers)
    endif()
    add_dependencies(plovix_headers ${target}_headers)
  endif()
endfunction()
