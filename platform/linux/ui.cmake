find_package(Qt6 REQUIRED COMPONENTS Widgets)
find_package(PkgConfig REQUIRED)
pkg_check_modules(XCB REQUIRED IMPORTED_TARGET xcb)
pkg_check_modules(WAYLAND REQUIRED IMPORTED_TARGET wayland-client)

set(ui_sources
  accessible_element accessible_part accessible_value accessible_window
  application browser control_window dialog dialog_units dialog_window
  drawing_bitmap drawing_graphics drawing_path drawing_shapes drawing_text file_dialog file_filter
  font_face image_scaling layered_window menus message_box message_icons mouse_router native_window
  paint_queue reduced_painting session skinned_window system_controls theme wayland wayland_activation window
  window_icon window_table x11)
list(TRANSFORM ui_sources PREPEND ${CMAKE_CURRENT_LIST_DIR}/)
list(TRANSFORM ui_sources APPEND .cpp)
tonalyx_library(tonalyx_platform_linux_ui
  SOURCES ${ui_sources}
  LIBS tonalyx_platform
  PRIVATE_LIBS tonalyx_platform_linux_base tonalyx_resources Qt6::Widgets PkgConfig::XCB
    PkgConfig::WAYLAND)
