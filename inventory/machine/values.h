#ifndef INVENTORY_MACHINE_VALUES_H_
#define INVENTORY_MACHINE_VALUES_H_

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "inventory/base/times.h"
#include "inventory/machine/severity.h"

// What the tools print, typed. Texts are Readable, and kept beside what is made of them: what a
// tool words in a way that nobody foresaw is shown all the same. What it did not print is absent.

/// Absent instead of "".
using Text = std::optional<std::string>;
Text MakeText(std::string text);

struct Number {
  std::string text;
  std::optional<std::uint64_t> value;  ///< Only of a text that is all digits and fits.

  bool operator==(const Number&) const = default;
};
std::optional<Number> MakeNumber(std::string text);

/// Nothing but zeros.
bool IsZero(const Number& number);

/// Digits from the first to the last character.
bool IsDigits(std::string_view text);

/// A state in the words of the tool, and what it means; also none at all means something.
struct State {
  Text text;
  Severity judgement = Severity::kFine;

  bool operator==(const State&) const = default;
};

/// Something that is so or not, "Yes" or "No" as the tools have it.
struct Flag {
  Text text;

  /// Absent for what is neither, too.
  std::optional<bool> Value() const;
  bool operator==(const Flag&) const = default;
};

/// Of a drive, in the three forms of the tools: "34715/71096320", megabytes and sectors of 512
/// bytes; "140000", megabytes; "70006 MB" and the like.
///
/// The two numbers of the first form agree where a megabyte is 2^20 bytes, and with nothing else:
/// 71,096,320 sectors are 34,715 times 2^20 bytes. So the other forms are read with powers of 1024,
/// too. Where the two disagree, nobody knows what they count.
struct Size {
  std::string text;
  std::optional<std::uint64_t> bytes;

  bool operator==(const Size&) const = default;
};
std::optional<Size> MakeSize(std::string text);

/// For a person: "34715 MB"; others say their unit.
std::string DescribeSize(const Size& size);

/// A version of the firmware, the BIOS or the boot block. The plug-in says "Not provided" where one
/// of the newer tools prints none.
struct Version {
  Text published;

  /// As the tool prints it.
  Text Reported() const;
  bool operator==(const Version& other) const { return Reported() == other.Reported(); }
};

/// When something was logged.
struct Time {
  std::string text;                ///< For a person, also when no calendar has it.
  std::optional<Instant> instant;  ///< Absent when no calendar has it.

  bool operator==(const Time&) const = default;
};

#endif  // INVENTORY_MACHINE_VALUES_H_
