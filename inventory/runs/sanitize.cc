#include "inventory/runs/sanitize.h"

#include <algorithm>
#include <iterator>
#include <memory>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "inventory/base/readable.h"
#include "inventory/runs/pseudonyms.h"

namespace {

bool IsDigit(char c) { return c >= '0' && c <= '9'; }
bool IsLetter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c & '\x80') != 0;
}
bool IsOfWord(char c) { return IsDigit(c) || IsLetter(c) || c == '_'; }

bool HasDigit(std::string_view text) { return std::any_of(text.begin(), text.end(), IsDigit); }
bool HasLetter(std::string_view text) { return std::any_of(text.begin(), text.end(), IsLetter); }

/// Up to and without the first character that is of no word.
std::string_view FirstWord(std::string_view text) {
  return text.substr(0, static_cast<std::size_t>(
                            std::find_if_not(text.begin(), text.end(), IsOfWord) - text.begin()));
}

/// Puts texts in place of others, wherever these stand between what is of no word.
class Replacer {
 public:
  /// Both of the same length. Only what stands from the first to the last character of a word
  /// counts.
  void Add(std::string_view text, std::string_view replacement) {
    const auto first = std::find_if(text.begin(), text.end(), IsOfWord);
    const auto last = std::find_if(text.rbegin(), text.rend(), IsOfWord).base();
    const auto begin = static_cast<std::size_t>(first - text.begin());
    const auto end = static_cast<std::size_t>(last - text.begin());
    if (begin >= end) return;
    const std::string_view core = text.substr(begin, end - begin);
    if (!texts_.emplace(core).second) return;
    rows_[std::string(FirstWord(core))].emplace_back(core, replacement.substr(begin, end - begin));
  }

  /// To be called when all are there: of two that fit, the longer one counts.
  void Order() {
    for (auto& [word, rows] : rows_) {
      std::stable_sort(rows.begin(), rows.end(),
                       [](const Row& x, const Row& y) { return x.first.size() > y.first.size(); });
    }
  }

  std::string Replace(std::string_view text) const {
    std::string result;
    result.reserve(text.size());
    while (!text.empty()) {
      const std::string_view word = FirstWord(text);
      if (word.empty()) {
        result += text.front();
        text.remove_prefix(1);
        continue;
      }
      const Row* const row = Find(word, text);
      result += row == nullptr ? word : row->second;
      text.remove_prefix(row == nullptr ? word.size() : row->first.size());
    }
    return result;
  }

 private:
  using Row = std::pair<std::string, std::string>;

  const Row* Find(std::string_view word, std::string_view text) const {
    const auto rows = rows_.find(std::string(word));
    if (rows == rows_.end()) return nullptr;
    for (const Row& row : rows->second) {
      const std::size_t end = row.first.size();
      if (text.starts_with(row.first) && (end == text.size() || !IsOfWord(text[end]))) return &row;
    }
    return nullptr;
  }

  std::unordered_set<std::string> texts_;
  std::unordered_map<std::string, std::vector<Row>> rows_;  // by the first word, long ones first
};

enum class Secret { kNone, kId, kName, kDeviceId };

/// What stands behind a label. The words are looked for in lower case, anywhere in it.
Secret SecretBehind(std::string_view label) {
  static constexpr std::pair<std::string_view, Secret> kRows[] = {
      {"serial attached", Secret::kNone}, {"serial", Secret::kId}, {"world-wide", Secret::kId},
      {"world wide", Secret::kId},        {"wwn", Secret::kId},    {"name", Secret::kName},
      {"device id", Secret::kDeviceId},
  };
  const std::string lower = Lower(label);
  for (const auto& [word, secret] : kRows) {
    if (lower.find(word) != std::string::npos) return secret;
  }
  return Secret::kNone;
}

/// A line's parts: up to the colon with the blanks behind it, the value, the blanks at the end.
struct Line {
  explicit Line(std::string_view line) {
    static constexpr std::string_view kBlanks = " \t\r\n";
    const std::size_t colon = line.find(':');
    if (colon == std::string_view::npos) return;
    const std::size_t begin = line.find_first_not_of(kBlanks, colon + 1);
    if (begin == std::string_view::npos) return;
    const std::size_t end = line.find_last_not_of(kBlanks) + 1;
    label = line.substr(0, begin);
    value = line.substr(begin, end - begin);
    rest = line.substr(end);
    secret = SecretBehind(line.substr(0, colon));
  }

  std::string_view label;
  std::string_view value;
  std::string_view rest;
  Secret secret = Secret::kNone;
};

/// What a tool says of rights or of absent controllers is judged by these words: they stay, though
/// a drive may be called so.
bool IsWordOfJudgement(std::string_view name) {
  static constexpr std::string_view kWords[] = {
      "permission", "permitted", "denied",  "privilege", "root",  "superuser", "administrator",
      "controller", "adapter",   "present", "found",     "exist", "such",      "invalid",
      "unknown",    "installed", "range",   "not",       "no",    "out",       "of",
      "does"};
  return std::find(std::begin(kWords), std::end(kWords), Lower(name)) != std::end(kWords);
}

template <class Use>
void ForEachLine(std::string_view text, const Use& use) {
  while (!text.empty()) {
    const std::size_t size = std::min(text.find('\n'), text.size() - 1) + 1;
    use(text.substr(0, size));
    text.remove_prefix(size);
  }
}

// Columns of a kelvcmd disk's "Device ID". The serial number that is published of it begins with
// the last character of the firmware level, which stays.
constexpr std::size_t kProductEnd = 15;
constexpr std::size_t kFirmwareEnd = 20;
constexpr std::size_t kSerialLength = 7;

class Sanitizer {
 public:
  explicit Sanitizer(std::string_view key) : pseudonyms_(key) {}

  void Run(Recording& recording) {
    AddName(recording.host);
    AddName(recording.host.substr(0, recording.host.find('.')));
    for (const RunRecord& run : recording.runs) Gather(*run.whole_output);
    for (const RecordedFile& file : recording.files) {
      if (file.text) GatherLog(*file.text);
    }
    everywhere_.Order();
    in_messages_.Order();
    recording.host = pseudonyms_.OfName(recording.host);
    recording.root = "/";
    for (RunRecord& run : recording.runs) SanitizeRun(run);
    for (RecordedFile& file : recording.files) {
      if (file.text) file.text = SanitizeLog(*file.text);
    }
  }

 private:
  // What there is to hide.

  void Gather(std::string_view output) {
    ForEachLine(output, [this](std::string_view text) {
      const Line line(text);
      if (line.secret == Secret::kId) AddId(line.value);
      if (line.secret == Secret::kName) AddName(line.value);
      if (line.secret == Secret::kDeviceId) AddDeviceId(line.value);
    });
  }

  void GatherLog(std::string_view log) {
    ForEachLine(log, [this](std::string_view line) { AddName(Fields(line).machine); });
  }

  /// Elsewhere, a short number may be any.
  void AddId(std::string_view id) {
    if (!IsId(id) || id.size() < (HasLetter(id) ? 4U : 8U)) return;
    everywhere_.Add(id, pseudonyms_.Of(id));
    in_messages_.Add(id, pseudonyms_.Of(id));
  }

  /// A name that may be a word of the tools' is left alone where they may mean the word.
  void AddName(std::string_view name) {
    if (!HasLetter(name) || IsWordOfJudgement(name)) return;
    const std::string pseudonym = pseudonyms_.OfName(name);
    in_messages_.Add(name, pseudonym);
    const bool is_word =
        std::all_of(name.begin(), name.end(), [](char c) { return IsLetter(c) || c == ' '; });
    if (!is_word && name.size() >= 3) everywhere_.Add(name, pseudonym);
  }

  void AddDeviceId(std::string_view value) {
    const std::string pseudonym = DeviceIdPseudonym(value);
    if (pseudonym == value) return;
    // As a whole, as its last word, and the serial number alone.
    const std::size_t word = value.rfind(' ', kFirmwareEnd) + 1;
    for (const std::size_t begin : {std::size_t{0}, word, kFirmwareEnd - 1, kFirmwareEnd}) {
      everywhere_.Add(value.substr(begin), pseudonym.substr(begin));
      in_messages_.Add(value.substr(begin), pseudonym.substr(begin));
    }
  }

  // What stands in its place.

  /// "Not available" is none.
  static bool IsId(std::string_view value) {
    return HasDigit(value) || value.find(' ') == std::string_view::npos;
  }

  std::string DeviceIdPseudonym(std::string_view value) const {
    std::string pseudonym(value);
    if (value.size() <= kFirmwareEnd || value[kProductEnd] != ' ') return pseudonym;
    const std::string_view serial = value.substr(kFirmwareEnd, kSerialLength);
    // Those of tapes and the like have other columns.
    if (!HasDigit(serial) || serial.find(' ') != std::string_view::npos) return pseudonym;
    return pseudonym.replace(kFirmwareEnd, serial.size(), pseudonyms_.Of(serial));
  }

  std::string ValueOf(const Line& line) const {
    switch (line.secret) {
      case Secret::kId:
        return IsId(line.value) ? pseudonyms_.Of(line.value) : std::string(line.value);
      case Secret::kName:
        return pseudonyms_.OfName(line.value);
      case Secret::kDeviceId:
        return DeviceIdPseudonym(line.value);
      case Secret::kNone:
        break;
    }
    return everywhere_.Replace(line.value);
  }

  std::string SanitizeOutput(std::string_view output) const {
    std::string result;
    result.reserve(output.size());
    ForEachLine(output, [&](std::string_view text) {
      const Line line(text);
      if (!line.value.empty()) {
        result += everywhere_.Replace(line.label) + ValueOf(line);
        result += line.rest;
        return;
      }
      // The last column of a table is told in words.
      const std::size_t bar = text.rfind('|');
      const std::size_t words = bar == std::string_view::npos ? text.size() : bar + 1;
      result += everywhere_.Replace(text.substr(0, words));
      result += in_messages_.Replace(text.substr(words));
    });
    return result;
  }

  void SanitizeRun(RunRecord& run) const {
    run.whole_output = std::make_shared<const std::string>(SanitizeOutput(*run.whole_output));
    run.whole_error_output =
        std::make_shared<const std::string>(in_messages_.Replace(*run.whole_error_output));
    run.SetErrorOutput(*run.whole_error_output);
    run.reason = in_messages_.Replace(run.reason);
    // A replay does not know what could not be read: it finds out.
    run.why_unreadable.clear();
    if (run.reason.empty()) run.output = run.whole_output;
  }

  /// A line of the manager's log: what stands before the machine's name, the name, the rest.
  struct Fields {
    explicit Fields(std::string_view line) {
      std::size_t begin = 0;
      for (int tabs = 0; tabs < 2; ++tabs) {
        const std::size_t tab = line.find('\t', begin);
        if (tab == std::string_view::npos) {
          rest = line;
          return;
        }
        begin = tab + 1;
      }
      const std::size_t end = std::min(line.find_first_of("\t\n", begin), line.size());
      start = line.substr(0, begin);
      machine = line.substr(begin, end - begin);
      rest = line.substr(end);
    }
    std::string_view start;
    std::string_view machine;
    std::string_view rest;
  };

  std::string SanitizeLog(std::string_view log) const {
    std::string result;
    result.reserve(log.size());
    ForEachLine(log, [&](std::string_view line) {
      const Fields fields(line);
      result += fields.start;
      result += pseudonyms_.OfName(fields.machine) + in_messages_.Replace(fields.rest);
    });
    return result;
  }

  Pseudonyms pseudonyms_;
  Replacer everywhere_;   // what cannot be a word of the tools'
  Replacer in_messages_;  // that, and names that can
};

}  // namespace

void Sanitize(std::string_view key, Recording& recording) { Sanitizer(key).Run(recording); }
