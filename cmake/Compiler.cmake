# How Plovix is compiled. Everything here applies to this tree only: nothing reaches a project that adds Plovix to its
# build, and settings of that project that would break Plovix are overridden.

# Older compilers lack what std::source_location and ranges need. base/requirements.h makes the same check in programs
# that include the headers.
set(minimum_GNU 12)
set(minimum_Clang 16)
set(minimum ${minimum_${CMAKE_CXX_COMPILER_ID}})
if(NOT minimum OR CMAKE_CXX_COMPILER_VERSION VERSION_LESS minimum)
  message(FATAL_ERROR "Plovix needs g++ 12 or newer, or clang 16 or newer; "
                      "${CMAKE_CXX_COMPILER} is ${CMAKE_CXX_COMPILER_ID} ${CMAKE_CXX_COMPILER_VERSION}")
endif()

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET default)  # cmake/*.map.in say what is exported
set(CMAKE_VISIBILITY_INLINES_HIDDEN OFF)
set(CMAKE_UNITY_BUILD OFF)
set(CMAKE_AUTOMOC OFF)
set(CMAKE_AUTOUIC OFF)
set(CMAKE_AUTORCC OFF)
if(PROJECT_IS_TOP_LEVEL)
  set(CMAKE_UNITY_BUILD ${PLOVIX_UNITY})
  set(CMAKE_UNITY_BUILD_BATCH_SIZE 12)
  set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
  set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
  set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib)
  find_program(CCACHE ccache)
  if(CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE})
  endif()
endif()

# Within a tree that compiles as PLOVIX_UNITY says, the directories of the list PLOVIX_SEPARATE do not.
function(plovix_compile_separately target directory)
  if(directory IN_LIST PLOVIX_SEPARATE)
    set_target_properties(${target} PROPERTIES UNITY_BUILD OFF)
  endif()
endfunction()

# g++ 12 wrongly reports an overlap in every optimised `literal + string`: no -Wrestrict. clang reports deprecated calls
# inside the standard library's stable_sort: no -Wdeprecated-declarations. In sources compiled as one, g++ takes each for
# a header and warns of classes that use its anonymous namespace: no -Wsubobject-linkage there.
add_library(plovix_warnings INTERFACE)
target_compile_options(plovix_warnings INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Wshadow
                                                 $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>
                                                 $<$<AND:$<CXX_COMPILER_ID:GNU>,$<BOOL:${PLOVIX_UNITY}>>:-Wno-subobject-linkage>
                                                 $<$<CXX_COMPILER_ID:Clang>:-Wno-deprecated-declarations>
                                                 $<$<BOOL:${PLOVIX_WERROR}>:-Werror>)
if(PLOVIX_SANITIZE)
  add_compile_options(-fsanitize=${PLOVIX_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${PLOVIX_SANITIZE})
endif()
