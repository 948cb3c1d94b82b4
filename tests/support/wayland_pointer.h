// A mouse of its own on a Wayland desktop, for one that has no hardware.
#pragma once

#include <cstdint>
#include <memory>

namespace support {

class WaylandPointer {
 public:
  struct Impl;

  // Joins the desktop of the environment; the mouse is there until the object goes. Throws
  // std::runtime_error where the desktop offers no such thing.
  WaylandPointer();
  ~WaylandPointer();
  WaylandPointer(const WaylandPointer&) = delete;
  WaylandPointer& operator=(const WaylandPointer&) = delete;

  // The position counts in parts of the desktop's width and height.
  void Move(std::uint32_t x, std::uint32_t y, std::uint32_t width, std::uint32_t height);
  void PressLeft();
  void ReleaseLeft();

 private:
  std::unique_ptr<Impl> impl_;
};

}  // namespace support
