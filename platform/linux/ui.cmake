# Windows and what is drawn in them.
find_package(Qt6 REQUIRED COMPONENTS Widgets)
pkg_check_modules(XCB REQUIRED IMPORTED_TARGET xcb)

tonalyx_library(tonalyx_platform_linux_ui
  SOURCES
    accessible/accessible_element.cpp
    accessible/accessible_part.cpp
    accessible/accessible_value.cpp
    accessible/accessible_window.cpp
    drawing/drawing_bitmap.cpp
    drawing/drawing_graphics.cpp
    drawing/drawing_path.cpp
    drawing/drawing_shapes.cpp
    drawing/drawing_text.cpp
    drawing/font_face.cpp
    drawing/image_scaling.cpp
    windows/application.cpp
    windows/browser.cpp
    windows/control_window.cpp
    windows/dialog.cpp
    windows/dialog_window.cpp
    windows/file_dialog.cpp
    windows/file_filter.cpp
    windows/layered_window.cpp
    windows/menus.cpp
    windows/message_box.cpp
    windows/message_icons.cpp
    windows/mouse_router.cpp
    windows/native_window.cpp
    windows/paint_queue.cpp
    windows/reduced_painting.cpp
    windows/session.cpp
    windows/skinned_window.cpp
    windows/system_controls.cpp
    windows/theme.cpp
    windows/window.cpp
    windows/window_icon.cpp
    windows/window_table.cpp
    windows/x11.cpp
    ${CMAKE_SOURCE_DIR}/platform/window_defaults.cpp
  LIBS tonalyx_platform
  PRIVATE_LIBS tonalyx_platform_linux_base tonalyx_resources tonalyx_wayland Qt6::Widgets PkgConfig::XCB)
