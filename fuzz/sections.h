#ifndef FUZZ_SECTIONS_H_
#define FUZZ_SECTIONS_H_

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// Inputs that hold several texts: people can read and edit them, and a fuzzer can cut and join
// them.

/// One text of an input.
struct Section {
  int kind = 0;  ///< 0 to 9; what it means is the target's business.
  std::string name;
  std::string text;
};

/// A section begins with a line "@0 NAME", in which the digit is its kind; the line end in front of
/// that belongs to it, too. What stands before the first such line is left out.
std::vector<Section> CutSections(std::string_view input);

/// The input of a target as text.
inline std::string_view TextOf(const std::uint8_t* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

/// What every target has: libFuzzer calls it, or replay_main.cc. Always 0.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

#endif  // FUZZ_SECTIONS_H_
