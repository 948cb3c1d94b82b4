// This test program's own apartments, which keep account of the threads in them.
#pragma once

namespace endpoints {

inline thread_local int joinedApartments = 0;

}  // namespace endpoints
