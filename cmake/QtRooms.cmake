# The stand-alone program and the rooms of its host that need Qt or a database.
find_package(Qt6 6.4 REQUIRED COMPONENTS Test)
find_package(SQLite3 3.40 REQUIRED)

plovix_globbed_room(standalone/schedule LINKS standalone/model LIBRARIES Qt6::Core)
plovix_globbed_room(standalone/sqlite LINKS controls standalone/model standalone/query LIBRARIES SQLite::SQLite3)
plovix_globbed_room(standalone/data LINKS standalone/sqlite standalone/query LIBRARIES Qt6::Core)
plovix_globbed_room(standalone/storage LINKS standalone/model standalone/sqlite LIBRARIES Qt6::Core nlohmann_json::nlohmann_json)
plovix_globbed_room(standalone/script LINKS standalone/wizard standalone/language standalone/schedule standalone/storage
                    LIBRARIES nlohmann_json::nlohmann_json)
plovix_globbed_room(standalone/app LINKS surfaces/qt standalone/script standalone/exchange standalone/data LIBRARIES Qt6::Widgets)
target_compile_definitions(plovix_standalone_app PRIVATE PLOVIX_VERSION="${PROJECT_VERSION}")

add_executable(plovix standalone/app/main.cpp)
target_link_libraries(plovix PRIVATE plovix_standalone_app plovix_warnings)
