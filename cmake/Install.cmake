# What find_package(Plovix) and pkg-config find. Parts that need Qt are separate components, so that a package without
# them does not depend on Qt.
include(CMakePackageConfigHelpers)

# Headers. Applications may include those that are listed here.
function(plovix_headers room)
  cmake_parse_arguments(ARG "" "PART" "" ${ARGN})
  set(patterns ${ARG_UNPARSED_ARGUMENTS})
  if(NOT patterns)
    set(patterns *.h)
  endif()
  set(filter "")
  foreach(pattern IN LISTS patterns)
    list(APPEND filter PATTERN ${pattern})
  endforeach()
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/${room}/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/plovix/${room}
          COMPONENT development${ARG_PART} FILES_MATCHING ${filter})
endfunction()

foreach(room controls host surfaces/common standalone/text standalone/tasks standalone/objects standalone/wizard)
  plovix_headers(${room})
endforeach()
plovix_headers(standalone/exchange import_task.h task_export.h)
plovix_headers(base date_time.h failure.h requirements.h same_name.h utf8.h)
plovix_headers(framework wizard_page.h page_identifiers.h)
plovix_headers(conformance conformance.h host_under_test.h)
plovix_headers(component entry_points.h page_library.h page_registry.h)
if(PLOVIX_QT)
  plovix_headers(surfaces/qt PART -qt form_widget.h slot_factory.h surface_options.h surface_texts.h theme.h)
endif()

# What developers copy: hosts to start from, and the language files.
set(examples_folder ${CMAKE_INSTALL_DATADIR}/doc/libplovix-dev/examples)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/examples/ DESTINATION ${examples_folder} COMPONENT development)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/languages DESTINATION ${examples_folder} COMPONENT development)

# The package files.
set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/Plovix)
foreach(set IN LISTS sets)
  install(EXPORT Plovix${set} NAMESPACE Plovix:: FILE Plovix${set}Targets.cmake DESTINATION ${package_folder}
          COMPONENT development${part_${set}})
endforeach()
configure_package_config_file(cmake/PlovixConfig.cmake.in ${PROJECT_BINARY_DIR}/PlovixConfig.cmake
                              INSTALL_DESTINATION ${package_folder})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/PlovixConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/PlovixConfig.cmake ${PROJECT_BINARY_DIR}/PlovixConfigVersion.cmake
        DESTINATION ${package_folder} COMPONENT development)

file(RELATIVE_PATH PC_UP /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
function(plovix_pkgconfig name description requires private part)
  string(REGEX REPLACE "^plovix" "-lplovix" libraries ${name})
  configure_file(${PROJECT_SOURCE_DIR}/cmake/plovix.pc.in ${PROJECT_BINARY_DIR}/${name}.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/${name}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
          COMPONENT development${part})
endfunction()
plovix_pkgconfig(plovix-controls "What a host and the pages of the automated-task wizard share" "" "" "")
plovix_pkgconfig(plovix "Pages of an automated-task wizard" "plovix-controls" "" "")
plovix_pkgconfig(plovix-host "Plain host objects in memory for the automated-task wizard" "plovix" "-licuuc" "")
plovix_pkgconfig(plovix-conformance "Checks for a host of the automated-task wizard" "plovix" "" "")
if(PLOVIX_QT)
  plovix_pkgconfig(plovix-qt "The automated-task wizard's pages as Qt widgets" "plovix Qt6Widgets" "" -qt)
endif()
