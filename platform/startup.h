// What a process asks of its platform before it does anything else.
#pragma once

#include <cstdint>
#include <memory>

namespace platform {

// Class sets of the common controls that the product's dialogs may use.
inline constexpr std::uint32_t kCommonControlClasses = 0xFF;

// Registers the common control classes. Needs no display.
void RegisterCommonControls(std::uint32_t classes);

// Asks the system to start the program again after a crash or a restart; no recovery, no autosave.
void RegisterForRestart();

// Starts the drawing library for the object's life. Needs no display: what needs one starts with
// the user-interface session.
class DrawingSession {
 public:
  DrawingSession();
  ~DrawingSession();
  DrawingSession(const DrawingSession&) = delete;
  DrawingSession& operator=(const DrawingSession&) = delete;

 private:
  std::uintptr_t token_;
};

}  // namespace platform
