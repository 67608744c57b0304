# The stand-alone program and the rooms of its host that need Qt or a database.
find_package(Qt6 6.4 REQUIRED COMPONENTS DBus Test)
find_package(SQLite3 3.40 REQUIRED)

plovix_room(standalone/schedule LINKS standalone/tasks LIBRARIES Qt6::Core)
plovix_room(standalone/sqlite LINKS standalone/query LIBRARIES SQLite::SQLite3)
plovix_room(standalone/runs LINKS standalone/schedule standalone/query)
plovix_room(standalone/data LINKS standalone/sqlite standalone/runs LIBRARIES Qt6::Core)
plovix_room(standalone/storage LINKS standalone/sqlite standalone/runs LIBRARIES Qt6::Core)
plovix_room(standalone/script LINKS standalone/wizard standalone/data)
plovix_room(standalone/manager LINKS standalone/storage standalone/data standalone/runner)
plovix_room(standalone/widgets LINKS surfaces/qt standalone/objects)
plovix_room(standalone/editors LINKS standalone/widgets standalone/query)
plovix_room(standalone/query_builder LINKS standalone/widgets standalone/data)
plovix_room(standalone/running LINKS standalone/widgets standalone/runs standalone/runner)
plovix_room(standalone/app LINKS standalone/editors standalone/query_builder standalone/running standalone/storage standalone/script standalone/exchange
            LIBRARIES Qt6::DBus)
qt_wrap_cpp(receivers standalone/app/desktop_notices.h TARGET plovix_standalone_app)
target_sources(plovix_standalone_app PRIVATE ${receivers})
target_compile_definitions(plovix_standalone_app PRIVATE PLOVIX_VERSION="${PROJECT_VERSION}")

add_executable(plovix standalone/app/main.cpp)
target_link_libraries(plovix PRIVATE plovix_standalone_app plovix_warnings)

add_executable(plovix_manager standalone/manager/main.cpp)
set_target_properties(plovix_manager PROPERTIES OUTPUT_NAME plovix-manager)
target_link_libraries(plovix_manager PRIVATE plovix_standalone_manager plovix_warnings)
target_compile_definitions(plovix_standalone_manager PRIVATE PLOVIX_VERSION="${PROJECT_VERSION}")
# The unit becomes part of the program, which writes it for its user.
set(user_unit ${PROJECT_SOURCE_DIR}/standalone/manager/plovix-manager.service)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${user_unit})
file(READ ${user_unit} PLOVIX_USER_UNIT)
configure_file(${PROJECT_SOURCE_DIR}/cmake/user_unit.cpp.in ${PROJECT_BINARY_DIR}/user_unit.cpp @ONLY)
target_sources(plovix_standalone_manager PRIVATE ${PROJECT_BINARY_DIR}/user_unit.cpp)
