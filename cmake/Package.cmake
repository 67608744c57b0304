# The program as it is installed, and the Debian packages: `cpack -G DEB` in a build folder.
if(TARGET plovix)
  install(TARGETS plovix COMPONENT program)
  install(FILES ${PROJECT_SOURCE_DIR}/standalone/app/plovix.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications
          COMPONENT program)
  install(FILES ${PROJECT_SOURCE_DIR}/standalone/app/plovix.svg
          DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps COMPONENT program)
  install(TARGETS plovix_manager COMPONENT manager)
  install(FILES ${PROJECT_SOURCE_DIR}/standalone/manager/plovix-manager.service DESTINATION lib/systemd/user COMPONENT manager)
  install(FILES ${PROJECT_SOURCE_DIR}/standalone/manager/plovix-manager@.service DESTINATION lib/systemd/system COMPONENT manager)
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME plovix)
set(CPACK_PACKAGE_VENDOR "Plovix")
set(PLOVIX_MAINTAINER "Plovix developers <plovix@example.org>" CACHE STRING "Who answers for the Debian packages")
set(CPACK_PACKAGE_CONTACT ${PLOVIX_MAINTAINER})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY ${PROJECT_DESCRIPTION})
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR}/lib)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_PROJECT_CONFIG_FILE ${PROJECT_SOURCE_DIR}/cmake/DebianTools.cmake)

string(TIMESTAMP date "%a, %d %b %Y %H:%M:%S +0000" UTC)  # SOURCE_DATE_EPOCH, if it is set
configure_file(${PROJECT_SOURCE_DIR}/cmake/debian/changelog.in ${PROJECT_BINARY_DIR}/changelog @ONLY)
find_program(PLOVIX_GZIP gzip REQUIRED)
execute_process(COMMAND ${PLOVIX_GZIP} --best --no-name --force ${PROJECT_BINARY_DIR}/changelog COMMAND_ERROR_IS_FATAL ANY)

# plovix_package(component NAME package SECTION section TEXT words): the component's package, with the
# licence and the changelog where Debian expects them.
function(plovix_package component)
  cmake_parse_arguments(ARG "" "NAME;SECTION;TEXT" "" ${ARGN})
  string(TOUPPER ${component} upper)
  set(CPACK_DEBIAN_${upper}_PACKAGE_NAME ${ARG_NAME} PARENT_SCOPE)
  set(CPACK_DEBIAN_${upper}_PACKAGE_SECTION ${ARG_SECTION} PARENT_SCOPE)
  set(CPACK_DEBIAN_${upper}_DESCRIPTION "${ARG_TEXT}" PARENT_SCOPE)
  if(component MATCHES runtime)
    set(CPACK_DEBIAN_${upper}_PACKAGE_CONTROL_EXTRA ${PROJECT_SOURCE_DIR}/cmake/debian/triggers PARENT_SCOPE)
  endif()
  install(FILES ${PROJECT_SOURCE_DIR}/cmake/debian/copyright ${PROJECT_BINARY_DIR}/changelog.gz
          DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${ARG_NAME} COMPONENT ${component})
  set(CPACK_COMPONENTS_ALL ${CPACK_COMPONENTS_ALL} ${component} PARENT_SCOPE)
endfunction()
set(CPACK_COMPONENTS_ALL "")
plovix_package(runtime NAME libplovix${PLOVIX_INTERFACE_VERSION} SECTION libs
               TEXT "Pages in which a user creates or edits a stored job of an
application, and plain host objects for them, without a toolkit.")
plovix_package(development NAME libplovix-dev SECTION libdevel
               TEXT "Headers, static libraries and package files for applications that embed
the pages. The library that draws them with Qt is in libplovix-qt-dev.")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_RECOMMENDS libicu-dev)  # for a static link
if(PLOVIX_QT)
  plovix_package(runtime-qt NAME libplovix-qt${PLOVIX_INTERFACE_VERSION} SECTION libs TEXT "Draws the pages of libplovix as Qt 6 widgets.")
  plovix_package(development-qt NAME libplovix-qt-dev SECTION libdevel
                 TEXT "Headers, static library and package files for applications that show
the pages of libplovix as Qt 6 widgets.")
  set(CPACK_DEBIAN_DEVELOPMENT-QT_PACKAGE_DEPENDS qt6-base-dev)
  plovix_package(program NAME plovix SECTION misc
                 TEXT "A list of stored jobs, and the wizard that creates and edits them: what
records a job processes, when it runs and what it does.")
  set(CPACK_DEBIAN_PROGRAM_PACKAGE_RECOMMENDS plovix-manager)
  plovix_package(manager NAME plovix-manager SECTION misc
                 TEXT "Runs the stored jobs of Plovix when they are due: beside its windows,
or as a service of a user or of the system. Needs no display.")
endif()
include(CPack)
cpack_add_component(runtime)
cpack_add_component(development DEPENDS runtime)
if(PLOVIX_QT)
  cpack_add_component(runtime-qt DEPENDS runtime)
  cpack_add_component(development-qt DEPENDS development runtime-qt)
  cpack_add_component(program)
  cpack_add_component(manager)
endif()
