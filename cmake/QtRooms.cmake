# The Qt surface and the rooms of the stand-alone host that need Qt or JSON. A room appears with its
# first source file.
function(plovix_globbed_room room)
  file(GLOB sources CONFIGURE_DEPENDS RELATIVE ${CMAKE_SOURCE_DIR}/${room} ${CMAKE_SOURCE_DIR}/${room}/*.cpp)
  list(REMOVE_ITEM sources main.cpp)
  plovix_room(${room} SOURCES ${sources} ${ARGN})
endfunction()

plovix_globbed_room(surfaces/qt LINKS controls designs LIBRARIES Qt6::Widgets)
plovix_globbed_room(standalone/language LINKS standalone/model LIBRARIES nlohmann_json::nlohmann_json)
plovix_globbed_room(standalone/storage LINKS standalone/model LIBRARIES Qt6::Sql nlohmann_json::nlohmann_json)
plovix_globbed_room(standalone/script LINKS standalone/wizard standalone/language standalone/storage
                    LIBRARIES nlohmann_json::nlohmann_json)
plovix_globbed_room(standalone/app LINKS surfaces/qt standalone/script LIBRARIES Qt6::Widgets)
