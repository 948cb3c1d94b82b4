#pragma once

#include <cstddef>

#include "engine/frame.h"

namespace engine {

// Gives back what the ear loses in quiet passages: the lower the level, the more bass and, less so,
// treble (Fletcher and Munson 1933; ISO 226). Both are shelves of the first order whose gains
// follow the level without steps. A plain value: a copy goes on from the same past.
class LoudnessContour {
 public:
  // Forgets the past. `sampleRate` in Hz; `amount` 0 (nothing) to 1.
  void Start(double sampleRate, double amount) noexcept;
  // Goes on from the past.
  void Change(double amount) noexcept { amount_ = amount; }

  Frame Next(Frame x) noexcept {
    energy_ = energy_ + x * x;
    low_ = bassPole_.kept * low_ + bassPole_.taken * x;
    under_ = treblePole_.kept * under_ + treblePole_.taken * x;
    bass_.gain = bass_.gain + bass_.step;
    treble_.gain = treble_.gain + treble_.step;
    return x + (bass_.gain * low_ + treble_.gain * (x - under_));
  }
  // After so many frames, which must not pass the end of a block.
  void Advance(std::size_t count) noexcept;

 private:
  void EndBlock() noexcept;

  // What a low pass of the first order keeps of its state and takes of its input.
  struct Pole {
    Frame kept;
    Frame taken;
  };
  static Pole MakePole(double part) noexcept;

  Pole bassPole_;
  Pole treblePole_;
  // How fast the level follows, the part of the way in one block.
  double rise_ = 0.0;
  double fall_ = 0.0;
  double amount_ = 0.0;

  std::size_t framesInBlock_ = 0;
  Frame energy_;             // of the block's frames so far
  double meanSquare_ = 0.0;  // smoothed, full scale 1

  Frame low_;    // the bass of what was heard
  Frame under_;  // all but the treble
  // How much is added of bass or treble: now, at the end of the block, and more with each frame.
  struct Shelf {
    Frame gain;
    Frame goal;
    Frame step;

    void SetOut(double decibels) noexcept;
  };
  Shelf bass_;
  Shelf treble_;
};

}  // namespace engine
