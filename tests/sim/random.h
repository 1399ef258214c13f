// SPDX-License-Identifier: MIT
// Numbers that depend on nothing but the seed, on any platform.
#pragma once

#include <cmath>
#include <cstdint>

namespace quillmere::sim {

class Random {
 public:
  explicit Random(std::uint64_t seed) : state_(seed) {}

  std::uint64_t Next() { return Mixed(state_ += 0x9E3779B97F4A7C15); }
  std::uint64_t Below(std::uint64_t limit) { return Next() % limit; }
  double Unit() { return static_cast<double>(Next() >> 11) * 0x1p-53; }
  bool Chance(double share) { return Unit() < share; }
  std::int64_t Exponential(double mean) {
    return static_cast<std::int64_t>(-std::log(1 - Unit()) * mean);
  }

  static std::uint64_t Mixed(std::uint64_t value) {
    value = (value ^ (value >> 30)) * 0xBF58476D1CE4E5B9;
    value = (value ^ (value >> 27)) * 0x94D049BB133111EB;
    return value ^ (value >> 31);
  }

 private:
  std::uint64_t state_;
};

}  // namespace quillmere::sim
