#include "inventory/machine/values.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <utility>

#include "inventory/base/readable.h"
#include "schema/published_texts.h"

namespace {

constexpr std::uint64_t kMegabyte = std::uint64_t{1} << 20;
constexpr std::uint64_t kSectorsPerMegabyte = kMegabyte / 512;

std::optional<std::uint64_t> ReadDigits(std::string_view text) {
  std::uint64_t value = 0;
  const auto read = std::from_chars(text.data(), text.data() + text.size(), value);
  if (!IsDigits(text) || read.ec != std::errc()) return std::nullopt;
  return value;
}

std::optional<std::uint64_t> Times(std::uint64_t count, std::uint64_t unit) {
  if (count > UINT64_MAX / unit) return std::nullopt;
  return count * unit;
}

/// Of "34715/71096320": in whole megabytes, the sectors are as many.
std::optional<std::uint64_t> BytesOf(std::string_view megabytes, std::string_view sectors) {
  const auto count = ReadDigits(megabytes);
  const auto sector_count = ReadDigits(sectors);
  if (!count || !sector_count) return std::nullopt;
  const std::uint64_t whole = *sector_count / kSectorsPerMegabyte;
  const bool is_rounded_up = *sector_count % kSectorsPerMegabyte != 0 && whole + 1 == *count;
  return whole == *count || is_rounded_up ? Times(*sector_count, 512) : std::nullopt;
}

/// Of "70006 MB", "1.5 TB".
std::optional<std::uint64_t> BytesOf(std::string_view text) {
  static constexpr std::pair<std::string_view, int> kUnits[] = {
      {"", 20}, {"kb", 10}, {"mb", 20}, {"gb", 30}, {"tb", 40}};
  const std::size_t blank = std::min(text.find(' '), text.size());
  const std::string unit = Lower(text.substr(std::min(blank + 1, text.size())));
  const std::string_view number = text.substr(0, blank);
  for (const auto& [name, bits] : kUnits) {
    if (unit != name) continue;
    if (const auto count = ReadDigits(number)) return Times(*count, std::uint64_t{1} << bits);
    double count = 0;
    const char* const end = number.data() + number.size();
    const auto read = std::from_chars(number.data(), end, count, std::chars_format::fixed);
    const double bytes = std::ldexp(count, bits);
    // Written so that "nan" is refused, too.
    if (read.ec != std::errc() || read.ptr != end || !(bytes >= 0 && bytes < 0x1p63)) break;
    return static_cast<std::uint64_t>(std::llround(bytes));
  }
  return std::nullopt;
}

}  // namespace

Text MakeText(std::string text) {
  if (text.empty()) return std::nullopt;
  return text;
}

std::optional<Number> MakeNumber(std::string text) {
  if (text.empty()) return std::nullopt;
  const auto value = ReadDigits(text);
  return Number{std::move(text), value};
}

bool IsZero(const Number& number) {
  return number.text.find_first_not_of('0') == std::string::npos;
}

bool IsDigits(std::string_view text) {
  return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

std::optional<bool> Flag::Value() const {
  const std::string word = Lower(text.value_or(""));
  if (word == "yes") return true;
  if (word == "no") return false;
  return std::nullopt;
}

std::optional<Size> MakeSize(std::string text) {
  if (text.empty()) return std::nullopt;
  const std::string_view whole = text;
  const std::size_t slash = whole.find('/');
  const auto bytes = slash == std::string_view::npos
                         ? BytesOf(whole)
                         : BytesOf(whole.substr(0, slash), whole.substr(slash + 1));
  return Size{std::move(text), bytes};
}

std::string DescribeSize(const Size& size) {
  const std::string number = size.text.substr(0, size.text.find('/'));
  return IsDigits(number) ? number + " MB" : size.text;
}

Text Version::Reported() const { return published == kNotProvided ? std::nullopt : published; }
