# The libraries that other applications link, shared and static, made of the rooms' objects; and the package
# that find_package(Plovix) and pkg-config find.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

# Stands behind the name of every shared library: libplovix.so.1. The same number as kInterfaceVersion in
# component/entry_points.h, which is checked when the entry points are compiled.
set(PLOVIX_INTERFACE_VERSION 1)
target_compile_definitions(plovix_component PRIVATE PLOVIX_INTERFACE_VERSION=${PLOVIX_INTERFACE_VERSION})

# plovix_library(Core OUTPUT plovix EXPORTS exports.map PACKAGE runtime ROOMS ... LINKS Controls LIBRARIES ...
#                PUBLIC_LIBRARIES ... HEADERS ...)
#
# makes Plovix::Core and Plovix::CoreStatic of the rooms' objects; without EXPORTS both are archives, one to be
# linked with the shared libraries and one with the static ones. HEADERS: rooms of which it shows the headers
# without holding them.
function(plovix_library name)
  cmake_parse_arguments(ARG "" "OUTPUT;EXPORTS;PACKAGE;SET" "ROOMS;HEADERS;LINKS;LIBRARIES;PUBLIC_LIBRARIES" ${ARGN})
  set(objects "")
  set(includes "")
  foreach(room IN LISTS ARG_ROOMS)
    string(REPLACE "/" "_" id ${room})
    get_target_property(type plovix_${id} TYPE)
    if(NOT type STREQUAL INTERFACE_LIBRARY)
      list(APPEND objects $<TARGET_OBJECTS:plovix_${id}>)
    endif()
    list(APPEND includes $<BUILD_INTERFACE:${CMAKE_BINARY_DIR}/rooms/${id}>)
  endforeach()
  foreach(room IN LISTS ARG_HEADERS)
    list(APPEND includes $<BUILD_INTERFACE:${CMAKE_BINARY_DIR}/rooms/${room}>)
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
      set(map ${CMAKE_BINARY_DIR}/exports/${name}.map)
      configure_file(${CMAKE_SOURCE_DIR}/cmake/${ARG_EXPORTS} ${map} @ONLY)
      target_link_options(${target} PRIVATE -Wl,--version-script=${map} $<$<CXX_COMPILER_ID:GNU>:-Wl,--no-undefined>)
      set_target_properties(${target} PROPERTIES VERSION ${PLOVIX_INTERFACE_VERSION}.${PROJECT_VERSION}
                                                 SOVERSION ${PLOVIX_INTERFACE_VERSION} LINK_DEPENDS ${map})
      install(TARGETS ${target} EXPORT Plovix${ARG_SET} LIBRARY COMPONENT ${ARG_PACKAGE} NAMELINK_COMPONENT development)
    else()
      add_library(${target} STATIC ${objects})
      install(TARGETS ${target} EXPORT Plovix${ARG_SET} ARCHIVE COMPONENT development)
      if(kind STREQUAL static AND NOT ARG_EXPORTS)
        string(APPEND output -static)
      endif()
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

plovix_library(Controls OUTPUT plovix-controls EXPORTS namespace.map.in PACKAGE runtime SET Core ROOMS controls host
               HEADERS framework component)
plovix_library(Core OUTPUT plovix EXPORTS door.map.in PACKAGE runtime SET Core
               ROOMS framework designs pages/task pages/records pages/recurrence component LINKS Controls)
# By its plain name: only a static link needs more of ICU than the library.
plovix_library(Host OUTPUT plovix-host EXPORTS namespace.map.in PACKAGE runtime SET Core
               ROOMS standalone/model standalone/wizard standalone/language LINKS Controls LIBRARIES icuuc)
# For test programs: archives alone.
plovix_library(Conformance OUTPUT plovix-conformance SET Core ROOMS conformance LINKS Core)
set(sets Core)
if(PLOVIX_QT)
  plovix_library(Qt OUTPUT plovix-qt EXPORTS namespace.map.in PACKAGE runtime-qt SET Qt
                 ROOMS surfaces/qt LINKS Controls PUBLIC_LIBRARIES Qt6::Widgets)
  list(APPEND sets Qt)
endif()

# Headers. What is named here is what applications may include.
function(plovix_headers room)
  set(patterns ${ARGN})
  if(NOT patterns)
    set(patterns *.h)
  endif()
  set(filter "")
  foreach(pattern IN LISTS patterns)
    list(APPEND filter PATTERN ${pattern})
  endforeach()
  install(DIRECTORY ${CMAKE_SOURCE_DIR}/${room}/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/plovix/${room}
          COMPONENT development FILES_MATCHING ${filter})
endfunction()

foreach(room controls host standalone/model standalone/wizard standalone/language)
  plovix_headers(${room})
endforeach()
plovix_headers(framework wizard_page.h page_identifiers.h)
plovix_headers(conformance conformance.h host_under_test.h)
plovix_headers(component entry_points.h page_library.h page_registry.h)
if(PLOVIX_QT)
  plovix_headers(surfaces/qt form_widget.h slot_factory.h surface_options.h surface_texts.h theme.h)
endif()

# The package files.
set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/Plovix)
foreach(set IN LISTS sets)
  install(EXPORT Plovix${set} NAMESPACE Plovix:: FILE Plovix${set}Targets.cmake DESTINATION ${package_folder}
          COMPONENT development)
endforeach()
configure_package_config_file(cmake/PlovixConfig.cmake.in ${CMAKE_BINARY_DIR}/PlovixConfig.cmake
                              INSTALL_DESTINATION ${package_folder})
write_basic_package_version_file(${CMAKE_BINARY_DIR}/PlovixConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${CMAKE_BINARY_DIR}/PlovixConfig.cmake ${CMAKE_BINARY_DIR}/PlovixConfigVersion.cmake
        DESTINATION ${package_folder} COMPONENT development)

file(RELATIVE_PATH PC_UP /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
function(plovix_pkgconfig name description requires private)
  string(REGEX REPLACE "^plovix" "-lplovix" libraries ${name})
  configure_file(${CMAKE_SOURCE_DIR}/cmake/plovix.pc.in ${CMAKE_BINARY_DIR}/${name}.pc @ONLY)
  install(FILES ${CMAKE_BINARY_DIR}/${name}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)
endfunction()
plovix_pkgconfig(plovix-controls "What a host and the pages of the automated-task wizard share" "" "")
plovix_pkgconfig(plovix "Pages of an automated-task wizard" "plovix-controls" "")
plovix_pkgconfig(plovix-host "Plain host objects in memory for the automated-task wizard" "plovix" "-licuuc")
plovix_pkgconfig(plovix-conformance "Checks for a host of the automated-task wizard" "plovix" "")
if(PLOVIX_QT)
  plovix_pkgconfig(plovix-qt "The automated-task wizard's pages as Qt widgets" "plovix Qt6Widgets" "")
endif()
