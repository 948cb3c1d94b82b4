# Windows and what is drawn in them.
tonalyx_library(tonalyx_platform_windows_ui
  SOURCES
    accessible/accessible_element.cpp
    accessible/accessible_events.cpp
    accessible/accessible_object.cpp
    accessible/child_windows.cpp
    accessible/posted_press.cpp
    accessible/window_call.cpp
    windows/browser.cpp
    windows/control_window.cpp
    windows/dialog.cpp
    windows/dialog_window.cpp
    windows/file_dialog.cpp
    windows/layered_window.cpp
    windows/message_box.cpp
    windows/native_window.cpp
    windows/session.cpp
    windows/skinned_window.cpp
    windows/window.cpp
    windows/window_icon.cpp
    ${CMAKE_SOURCE_DIR}/platform/window_defaults.cpp
  LIBS tonalyx_platform
  PRIVATE_LIBS tonalyx_platform_windows_base tonalyx_platform_windows_drawing tonalyx_resources
    comctl32 comdlg32 gdi32 ole32 oleacc oleaut32 shell32 uuid)
