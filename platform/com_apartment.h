#pragma once

namespace platform {

// Joins the calling thread to the multithreaded apartment for the object's life and leaves it again
// if joining succeeded. Nothing to do where the device service is no COM service.
class ComApartment {
 public:
  ComApartment();
  ~ComApartment();
  ComApartment(const ComApartment&) = delete;
  ComApartment& operator=(const ComApartment&) = delete;

 private:
  [[maybe_unused]] bool joined_;  // for platforms that have something to leave
};

}  // namespace platform
