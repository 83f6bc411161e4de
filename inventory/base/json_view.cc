#include "inventory/base/json_view.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace {

/// Looks at the text of a document before it is parsed. (A parser that asks back for each value
/// looks through all that it has each time.)
class Scan {
 public:
  Scan(std::string_view text, const std::set<std::string>& left_out)
      : text_(text), left_out_(left_out) {}

  /// The text without the values of the members that are left out.
  std::string Run() {
    while (at_ < text_.size()) {
      const char c = text_[at_];
      if (c == '"') {
        ReadString();
        continue;
      }
      if (c == '[' || c == '{') ++depth_;
      if (depth_ > kDeepest) throw std::runtime_error("is nested too deeply");
      if ((c == ']' || c == '}') && depth_ > 0) --depth_;
      if ((depth_ == 1 && c == ',') || (depth_ == 0 && c == '}')) is_left_out_ = false;
      if (!is_left_out_) kept_ += c;
      if (depth_ == 1 && c == ':' && left_out_.contains(name_)) {
        is_left_out_ = true;
        kept_ += "null";
      }
      ++at_;
    }
    return std::move(kept_);
  }

 private:
  static constexpr int kDeepest = 64;

  void ReadString() {
    const std::size_t begin = at_++;
    while (at_ < text_.size() && text_[at_] != '"') at_ += text_[at_] == '\\' ? 2 : 1;
    at_ = std::min(at_ + 1, text_.size());
    const std::string_view string = text_.substr(begin, at_ - begin);
    if (depth_ == 1 && !is_left_out_ && string.size() >= 2)
      name_ = string.substr(1, std::min<std::size_t>(string.size() - 2, 64));
    if (!is_left_out_) kept_ += string;
  }

  std::string_view text_;
  const std::set<std::string>& left_out_;
  std::size_t at_ = 0;
  int depth_ = 0;
  std::string name_;  // the last short text in the outermost object: before a colon, a member's
  bool is_left_out_ = false;
  std::string kept_;
};

}  // namespace

nlohmann::json ParseJson(std::string_view text, const std::set<std::string>& left_out) {
  return nlohmann::json::parse(Scan(text, left_out).Run());
}

JsonView JsonView::operator[](const char* name) const {
  if (!value_.is_object()) Refuse("is no object");
  const auto found = value_.find(name);
  std::string path = path_.empty() ? name : path_ + "." + name;
  if (found == value_.end()) JsonView(value_, path).Refuse("is missing");
  return JsonView(*found, std::move(path));
}

bool JsonView::Has(const char* name) const {
  if (!value_.is_object()) Refuse("is no object");
  const auto found = value_.find(name);
  return found != value_.end() && !found->is_null();
}

std::vector<JsonView> JsonView::Items() const {
  if (!value_.is_array()) Refuse("is no array");
  std::vector<JsonView> items;
  items.reserve(value_.size());
  for (std::size_t i = 0; i < value_.size(); ++i) {
    items.emplace_back(value_[i], path_ + "[" + std::to_string(i) + "]");
  }
  return items;
}

std::string JsonView::Text() const {
  if (!value_.is_string()) Refuse("is no text");
  return value_.get<std::string>();
}

bool JsonView::Bool() const {
  if (!value_.is_boolean()) Refuse("is neither true nor false");
  return value_.get<bool>();
}

std::int64_t JsonView::Integer() const {
  if (!value_.is_number_integer()) Refuse("is no whole number");
  if (value_.is_number_unsigned() && value_.get<std::uint64_t>() > INT64_MAX) {
    Refuse("is too large");
  }
  return value_.get<std::int64_t>();
}

void JsonView::Refuse(const std::string& why) const {
  throw std::runtime_error((path_.empty() ? "the document" : path_) + ": " + why);
}
