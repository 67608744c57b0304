# Read by cpack before it makes a package. Without these two tools it makes none, or packages without dependencies.
foreach(tool dpkg-shlibdeps file)
  find_program(PLOVIX_${tool} ${tool})
  if(CPACK_GENERATOR STREQUAL DEB AND NOT PLOVIX_${tool})
    message(FATAL_ERROR "cpack -G DEB needs ${tool}: install the Debian packages dpkg-dev and file")
  endif()
endforeach()
