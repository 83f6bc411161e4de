#include "inventory/base/json_view.h"

#include <stdexcept>

nlohmann::json ParseJson(const std::string& text) {
  constexpr int kDeepest = 32;
  return nlohmann::json::parse(text, [](int depth, auto, const auto&) {
    if (depth > kDeepest) throw std::runtime_error("is nested too deeply");
    return true;
  });
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

double JsonView::Number() const {
  if (!value_.is_number()) Refuse("is no number");
  return value_.get<double>();
}

void JsonView::Refuse(const std::string& why) const {
  throw std::runtime_error((path_.empty() ? "the document" : path_) + ": " + why);
}
