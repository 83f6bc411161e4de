#ifndef INVENTORY_BASE_JSON_VIEW_H_
#define INVENTORY_BASE_JSON_VIEW_H_

#include <cstddef>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <set>
#include <string>
#include <string_view>
#include <vector>

/// Parses a document that somebody else wrote, but for some members of its outermost object, which
/// are null then. One that is nested deeper than any of ours throws std::runtime_error, one that is
/// no JSON the library's exception. Takes time in proportion to the text.
nlohmann::json ParseJson(std::string_view text, const std::set<std::string>& left_out = {});

/// A value of a JSON document that somebody else wrote, and where it stands there. What is not as
/// it is asked for throws std::runtime_error: "runs[3].end: is no text".
class JsonView {
 public:
  explicit JsonView(const nlohmann::json& value, std::string path = "")
      : value_(value), path_(std::move(path)) {}

  /// A member of an object, which has to be there.
  JsonView operator[](const char* name) const;
  /// Whether an object has a member that is not null.
  bool Has(const char* name) const;

  std::vector<JsonView> Items() const;  ///< Of an array.
  std::string Text() const;
  bool Bool() const;
  std::int64_t Integer() const;

  [[noreturn]] void Refuse(const std::string& why) const;

 private:
  const nlohmann::json& value_;
  std::string path_;
};

#endif  // INVENTORY_BASE_JSON_VIEW_H_
