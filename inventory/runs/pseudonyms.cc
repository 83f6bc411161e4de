#include "inventory/runs/pseudonyms.h"

#include <sodium.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <stdexcept>
#include <vector>

namespace {

constexpr int kRounds = 10;

/// A character that may become another one: its place in an alphabet of so many.
struct Digit {
  std::size_t index;  // in the text
  unsigned char first;
  unsigned size;
  unsigned value;
};

bool IsWithin(char c, char first, char last) { return c >= first && c <= last; }

bool IsOfWord(char c) {
  return IsWithin(c, '0', '9') || IsWithin(c, 'a', 'z') || IsWithin(c, 'A', 'Z') ||
         (c & '\x80') != 0;
}

/// Long enough to be no word, and with a digit in it.
bool IsHexadecimal(std::string_view text) {
  const auto holds = [text](std::string_view set) {
    return text.find_first_not_of(set) == std::string_view::npos;
  };
  return text.size() >= 8 && text.find_first_of("0123456789") != std::string_view::npos &&
         (holds("0123456789ABCDEF") || holds("0123456789abcdef"));
}

/// The last byte of a letter beyond ASCII, which moves within a block of 32; 0 where `text[index]`
/// does not begin one. What may be a sign or a control stays.
std::size_t LetterLength(std::string_view text, std::size_t index) {
  const auto lead = static_cast<unsigned char>(text[index]);
  const std::size_t length = lead >= 0xC3 && lead <= 0xDF   ? 2
                             : lead >= 0xE3 && lead <= 0xEC ? 3
                                                            : 0;
  if (length == 0 || index + length > text.size()) return 0;
  for (std::size_t i = 1; i < length; ++i) {
    if ((text[index + i] & '\xC0') != '\x80') return 0;
  }
  return length;
}

std::vector<Digit> DigitsOf(std::string_view text, bool is_hexadecimal) {
  const unsigned letters = is_hexadecimal ? 6 : 26;
  std::vector<Digit> digits;
  const auto add = [&](std::size_t index, unsigned char first, unsigned size) {
    digits.push_back(
        {index, first, size, static_cast<unsigned char>(text[index]) - unsigned{first}});
  };
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (IsWithin(text[i], '0', '9')) {
      add(i, '0', 10);
    } else if (IsWithin(text[i], 'A', 'Z')) {
      add(i, 'A', letters);
    } else if (IsWithin(text[i], 'a', 'z')) {
      add(i, 'a', letters);
    } else if (const std::size_t length = LetterLength(text, i); length > 0) {
      i += length - 1;
      add(i, static_cast<unsigned char>(text[i]) & 0xE0, 32);
    }
  }
  return digits;
}

}  // namespace

Pseudonyms::Pseudonyms(std::string_view key) {
  if (sodium_init() < 0) throw std::runtime_error("the library for pseudonyms cannot be used");
  if (key.empty()) {
    randombytes_buf(key_.data(), key_.size());
  } else {
    crypto_generichash(key_.data(), key_.size(), reinterpret_cast<const unsigned char*>(key.data()),
                       key.size(), nullptr, 0);
  }
}

std::string Pseudonyms::Of(std::string_view text) const {
  const auto begin = std::find_if(text.begin(), text.end(), IsOfWord);
  if (begin == text.end()) return std::string(text);
  const auto end = std::find_if(text.rbegin(), text.rend(), IsOfWord).base();
  const std::string_view core(begin, end);
  const bool is_hexadecimal = IsHexadecimal(core);
  std::string pseudonym = Permuted(core, is_hexadecimal);
  // What is not hexadecimal is moved on until it is not again: the two kinds stay apart.
  while (!is_hexadecimal && IsHexadecimal(pseudonym)) pseudonym = Permuted(pseudonym, false);
  return std::string(text.begin(), begin).append(pseudonym).append(end, text.end());
}

// Each half in turn is moved by what the key makes of the other one (a Feistel network), so that it
// can be taken back, whatever the key makes. What stays as it is has a say, too.
std::string Pseudonyms::Permuted(std::string_view text, bool is_hexadecimal) const {
  std::vector<Digit> digits = DigitsOf(text, is_hexadecimal);
  std::string shape(text);
  for (const Digit& digit : digits) shape[digit.index] = static_cast<char>(digit.first);
  const std::span<Digit> all(digits);
  const std::span<Digit> left = all.first(all.size() / 2);
  const std::span<Digit> right = all.subspan(all.size() / 2);
  for (int round = 0; round < kRounds; ++round) {
    const std::span<Digit> moved = round % 2 == 0 ? right : left;
    const std::span<Digit> other = round % 2 == 0 ? left : right;
    std::string message = std::to_string(round) + "/" + shape + "/";
    for (const Digit& digit : other) message += static_cast<char>(digit.value);
    constexpr std::size_t kPerBlock = crypto_generichash_BYTES_MAX / sizeof(std::uint32_t);
    for (std::size_t begin = 0; begin < moved.size(); begin += kPerBlock) {
      std::array<std::uint32_t, kPerBlock> steps{};
      const std::string block = message + "/" + std::to_string(begin);
      crypto_generichash(reinterpret_cast<unsigned char*>(steps.data()), sizeof steps,
                         reinterpret_cast<const unsigned char*>(block.data()), block.size(),
                         key_.data(), key_.size());
      for (std::size_t i = begin; i < std::min(begin + kPerBlock, moved.size()); ++i) {
        Digit& digit = moved[i];
        digit.value = (digit.value + steps[i - begin] % digit.size) % digit.size;
      }
    }
  }
  std::string pseudonym(text);
  for (const Digit& digit : digits) {
    pseudonym[digit.index] = static_cast<char>(digit.first + digit.value);
  }
  return pseudonym;
}

std::string Pseudonyms::OfName(std::string_view name) const {
  std::string pseudonym;
  for (;;) {
    const std::size_t dot = name.find('.');
    pseudonym += Of(name.substr(0, dot));
    if (dot == std::string_view::npos) return pseudonym;
    pseudonym += '.';
    name.remove_prefix(dot + 1);
  }
}
