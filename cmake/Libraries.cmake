# The libraries that other applications link, shared and static, made of the rooms' objects. At top level they are
# installed: Install.cmake.

# The suffix of every shared library's name: libplovix.so.1. It must equal kInterfaceVersion in
# component/entry_points.h, which is checked when the entry points are compiled.
set(PLOVIX_INTERFACE_VERSION 1)
target_compile_definitions(plovix_component PRIVATE PLOVIX_INTERFACE_VERSION=${PLOVIX_INTERFACE_VERSION})

# plovix_library(Core OUTPUT plovix EXPORTS exports.map ROOMS ... LINKS Controls LIBRARIES ... PUBLIC_LIBRARIES ...
#                HEADERS ... SET Core)
#
# makes Plovix::Core and Plovix::CoreStatic from the rooms' objects; without EXPORTS both are archives, one to be
# linked with the shared libraries and one with the static ones. HEADERS: rooms whose headers it publishes without
# containing their objects. SET: Core, or Qt for what needs Qt and is installed and packaged separately.
set(part_Core "")
set(part_Qt -qt)
function(plovix_library name)
  cmake_parse_arguments(ARG "" "OUTPUT;EXPORTS;SET" "ROOMS;HEADERS;LINKS;LIBRARIES;PUBLIC_LIBRARIES" ${ARGN})
  set(objects "")
  set(includes "")
  foreach(room IN LISTS ARG_ROOMS)
    string(REPLACE "/" "_" id ${room})
    get_target_property(type plovix_${id} TYPE)
    if(NOT type STREQUAL INTERFACE_LIBRARY)
      list(APPEND objects $<TARGET_OBJECTS:plovix_${id}>)
    endif()
    list(APPEND includes $<BUILD_INTERFACE:${PROJECT_BINARY_DIR}/rooms/${id}>)
  endforeach()
  foreach(room IN LISTS ARG_HEADERS)
    list(APPEND includes $<BUILD_INTERFACE:${PROJECT_BINARY_DIR}/rooms/${room}>)
  endforeach()

  foreach(kind IN ITEMS shared static)
    set(target plovix_lib_${name}_${kind})
    set(output ${ARG_OUTPUT})
    set(suffix "")
    if(kind STREQUAL static)
      set(suffix Static)
    endif()
    if(kind STREQUAL shared AND ARG_EXPORTS)
      add_library(${target} SHARED ${objects})
      set(map ${PROJECT_BINARY_DIR}/exports/${name}.map)
      configure_file(${PROJECT_SOURCE_DIR}/cmake/${ARG_EXPORTS} ${map} @ONLY)
      target_link_options(${target} PRIVATE -Wl,--version-script=${map} $<$<CXX_COMPILER_ID:GNU>:-Wl,--no-undefined>)
      set_target_properties(${target} PROPERTIES VERSION ${PLOVIX_INTERFACE_VERSION}.${PROJECT_VERSION}
                                                 SOVERSION ${PLOVIX_INTERFACE_VERSION} LINK_DEPENDS ${map})
    else()
      add_library(${target} STATIC ${objects})
      if(kind STREQUAL static AND NOT ARG_EXPORTS)
        string(APPEND output -static)
      endif()
    endif()
    if(PROJECT_IS_TOP_LEVEL)
      set(part ${part_${ARG_SET}})
      install(TARGETS ${target} EXPORT Plovix${ARG_SET} LIBRARY COMPONENT runtime${part} NAMELINK_COMPONENT development${part}
              ARCHIVE COMPONENT development${part})
    endif()
    add_library(Plovix::${name}${suffix} ALIAS ${target})
    set_target_properties(${target} PROPERTIES OUTPUT_NAME ${output} EXPORT_NAME ${name}${suffix}
                                               LINKER_LANGUAGE CXX)
    target_include_directories(${target} INTERFACE ${includes} $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
    target_compile_features(${target} INTERFACE cxx_std_20)
    foreach(link IN LISTS ARG_LINKS)
      target_link_libraries(${target} PUBLIC plovix_lib_${link}_${kind})
    endforeach()
    target_link_libraries(${target} PUBLIC ${ARG_PUBLIC_LIBRARIES} PRIVATE ${ARG_LIBRARIES})
  endforeach()
endfunction()

plovix_library(Controls OUTPUT plovix-controls EXPORTS namespace.map.in SET Core ROOMS base controls host surfaces/common
               HEADERS framework component)
plovix_library(Core OUTPUT plovix EXPORTS door.map.in SET Core
               ROOMS framework designs pages/task pages/records pages/recurrence component LINKS Controls)
# ICU by its plain library name: only a static link needs its development package.
set(PLOVIX_HOST_ROOMS standalone/text standalone/tasks standalone/exchange standalone/objects standalone/wizard)
plovix_library(Host OUTPUT plovix-host EXPORTS namespace.map.in SET Core
               ROOMS ${PLOVIX_HOST_ROOMS} LINKS Controls LIBRARIES icuuc)
# For test programs: only archives.
plovix_library(Conformance OUTPUT plovix-conformance SET Core ROOMS conformance LINKS Core)
set(sets Core)
if(PLOVIX_QT)
  plovix_library(Qt OUTPUT plovix-qt EXPORTS namespace.map.in SET Qt
                 ROOMS surfaces/qt LINKS Controls PUBLIC_LIBRARIES Qt6::Widgets)
  list(APPEND sets Qt)
endif()
