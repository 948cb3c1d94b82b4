find_package(SQLite3 REQUIRED)
find_package(Threads REQUIRED)

tonalyx_library(tonalyx_platform_linux_core
  SOURCES
    ${CMAKE_CURRENT_LIST_DIR}/access_list.cpp
    ${CMAKE_CURRENT_LIST_DIR}/file_descriptor.cpp
    ${CMAKE_CURRENT_LIST_DIR}/startup.cpp
    ${CMAKE_CURRENT_LIST_DIR}/state_folder.cpp
    ${CMAKE_CURRENT_LIST_DIR}/system_clock.cpp
    ${CMAKE_CURRENT_LIST_DIR}/text.cpp
    ${CMAKE_CURRENT_LIST_DIR}/wake_event.cpp
    ${CMAKE_CURRENT_LIST_DIR}/worker_thread.cpp
  LIBS tonalyx_platform Threads::Threads)

tonalyx_library(tonalyx_registry_sqlite
  SOURCES
    ${CMAKE_CURRENT_LIST_DIR}/damaged_registry.cpp
    ${CMAKE_CURRENT_LIST_DIR}/folded_name.cpp
    ${CMAKE_CURRENT_LIST_DIR}/registry_database.cpp
    ${CMAKE_CURRENT_LIST_DIR}/registry_files.cpp
    ${CMAKE_CURRENT_LIST_DIR}/registry_session.cpp
    ${CMAKE_CURRENT_LIST_DIR}/registry_sessions.cpp
    ${CMAKE_CURRENT_LIST_DIR}/registry_watch.cpp
    ${CMAKE_CURRENT_LIST_DIR}/sqlite_registry.cpp
    ${CMAKE_CURRENT_LIST_DIR}/sqlite_registry_key.cpp
    ${CMAKE_CURRENT_LIST_DIR}/sqlite_statement.cpp
  LIBS tonalyx_platform_linux_core SQLite::SQLite3)
