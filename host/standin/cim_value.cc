#include "hmz/cim_value.h"

#include <boost/make_shared.hpp>
#include <utility>

#include "hmz/exception.h"

namespace NKVXHMZ20 {
namespace {

template <class... Cases>
struct Overloaded : Cases... {
  using Cases::operator()...;
};
template <class... Cases>
Overloaded(Cases...) -> Overloaded<Cases...>;

std::string Quoted(const std::string& text) {
  std::string quoted = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') quoted += '\\';
    quoted += c;
  }
  quoted += '"';
  return quoted;
}

TCIMReference::Keys InOrder(const std::map<std::string, TCIMValue>& keys) {
  return {keys.begin(), keys.end()};
}

}  // namespace

struct TCIMReference::Path {
  std::string class_name;
  Keys keys;
};

// The stand-in has a single namespace, so a path need not repeat it; keeping it would also tie
// committed references and their repository into a ring that is never freed.
TCIMReference::TCIMReference(const boost::shared_ptr<ICIMNamespace>& /*cim_namespace*/,
                             const std::map<std::string, TCIMValue>& keys)
    : path_(boost::make_shared<const Path>(Path{"", InOrder(keys)})) {}

TCIMReference::TCIMReference(const boost::shared_ptr<ICIMNamespace>& /*cim_namespace*/,
                             std::string class_name, Keys keys)
    : path_(boost::make_shared<const Path>(Path{std::move(class_name), std::move(keys)})) {}

const std::string& TCIMReference::GetClassName() const { return path_->class_name; }

const TCIMReference::Keys& TCIMReference::GetKeys() const { return path_->keys; }

std::string TCIMReference::ToString() const {
  std::string text = path_->class_name;
  char separator = '.';
  for (const auto& [name, value] : path_->keys) {
    const bool is_number = value.GetType().GetCode() == TCIMValue::kUint16 ||
                           value.GetType().GetCode() == TCIMValue::kUint32;
    text += separator;
    text += name;
    text += '=';
    text += is_number ? value.ToString() : Quoted(value.ToString());
    separator = ',';
  }
  return text;
}

TCIMValue::TCIMValue() = default;
TCIMValue::TCIMValue(const char* text) : content_(std::string(text)) {}
TCIMValue::TCIMValue(std::string text) : content_(std::move(text)) {}
TCIMValue::TCIMValue(std::uint16_t number) : content_(number) {}
TCIMValue::TCIMValue(std::uint32_t number) : content_(number) {}
TCIMValue::TCIMValue(const TCIMDateTime& time) : content_(time) {}
TCIMValue::TCIMValue(const TCIMReference& path) : content_(path) {}
TCIMValue::TCIMValue(TCIMType type, std::size_t count, const Array& elements) {
  Set(type, count, elements);
}
TCIMValue::TCIMValue(const TCIMValue&) = default;
TCIMValue::TCIMValue(TCIMValue&&) noexcept = default;
TCIMValue& TCIMValue::operator=(const TCIMValue&) = default;
TCIMValue& TCIMValue::operator=(TCIMValue&&) noexcept = default;
TCIMValue::~TCIMValue() = default;

namespace {

/// What there is to refuse about an array of `size` elements.
void CheckArray(TCIMValue::TCIMType type, std::size_t count, std::size_t size) {
  const TCIMValue::ECIMType code = type.GetCode();
  if (code != TCIMValue::kString && code != TCIMValue::kUint32) {
    throw THMZException("no array of type code " + std::to_string(code));
  }
  if (count > size) {
    throw THMZException("an array of " + std::to_string(count) + " elements was given only " +
                        std::to_string(size));
  }
}

[[noreturn]] void RefuseElement(TCIMValue::TCIMType type) {
  throw THMZException("an element of an array of type code " + std::to_string(type.GetCode()) +
                      " has another type");
}

}  // namespace

void TCIMValue::Set(TCIMType type, std::size_t count, const Array& elements) {
  CheckArray(type, count, elements.size());
  TCIMStrings strings;
  std::vector<std::uint32_t> numbers;
  for (std::size_t i = 0; i < count; ++i) {
    const auto* string = std::get_if<std::string>(&elements[i].content_);
    const auto* number = std::get_if<std::uint32_t>(&elements[i].content_);
    if (type.GetCode() == kString ? string == nullptr : number == nullptr) RefuseElement(type);
    if (string != nullptr) {
      strings.Add(*string);
    } else {
      numbers.push_back(*number);
    }
  }
  if (type.GetCode() == kString) return Set(type, count, std::move(strings));
  Set(type, count, std::move(numbers));
}

void TCIMValue::Set(TCIMType type, std::size_t count, TCIMStrings elements) {
  CheckArray(type, count, elements.GetCount());
  if (type.GetCode() != kString) RefuseElement(type);
  elements.Truncate(count);
  content_ = Shared<TCIMStrings>(boost::make_shared<const TCIMStrings>(std::move(elements)));
}

void TCIMValue::Set(TCIMType type, std::size_t count, std::vector<std::uint32_t> elements) {
  CheckArray(type, count, elements.size());
  if (type.GetCode() != kUint32) RefuseElement(type);
  elements.resize(count);
  using Numbers = std::vector<std::uint32_t>;
  content_ = Shared<Numbers>(boost::make_shared<const Numbers>(std::move(elements)));
}

TCIMValue::TCIMType TCIMValue::GetType() const {
  return std::visit(Overloaded{
                        [](std::monostate) { return TCIMType(kNull); },
                        [](const std::string&) { return TCIMType(kString); },
                        [](std::uint16_t) { return TCIMType(kUint16); },
                        [](std::uint32_t) { return TCIMType(kUint32); },
                        [](const TCIMDateTime&) { return TCIMType(kDateTime); },
                        [](const TCIMReference&) { return TCIMType(kReference); },
                        [](const Shared<TCIMStrings>&) { return TCIMType(kString); },
                        [](const Shared<std::vector<std::uint32_t>>&) { return TCIMType(kUint32); },
                    },
                    content_);
}

bool TCIMValue::IsNull() const { return std::holds_alternative<std::monostate>(content_); }

bool TCIMValue::IsArray() const {
  return std::holds_alternative<Shared<TCIMStrings>>(content_) ||
         std::holds_alternative<Shared<std::vector<std::uint32_t>>>(content_);
}

namespace {

template <class T, class Content>
const T& Get(const Content& content, const char* what) {
  if (const T* held = std::get_if<T>(&content)) return *held;
  throw THMZException(std::string("a value that is not ") + what + " was read as one");
}

}  // namespace

const std::string& TCIMValue::GetString() const { return Get<std::string>(content_, "a string"); }

std::uint32_t TCIMValue::GetNumber() const {
  if (const auto* number = std::get_if<std::uint16_t>(&content_)) return *number;
  return Get<std::uint32_t>(content_, "a number");
}

const TCIMDateTime& TCIMValue::GetDateTime() const {
  return Get<TCIMDateTime>(content_, "a date-time");
}

const TCIMReference& TCIMValue::GetReference() const {
  return Get<TCIMReference>(content_, "a reference");
}

const TCIMStrings& TCIMValue::GetStrings() const {
  return *Get<Shared<TCIMStrings>>(content_, "an array of strings");
}

const std::vector<std::uint32_t>& TCIMValue::GetNumbers() const {
  return *Get<Shared<std::vector<std::uint32_t>>>(content_, "an array of numbers");
}

std::size_t TCIMValue::GetCount() const {
  return GetType().GetCode() == kString ? GetStrings().GetCount() : GetNumbers().size();
}

namespace {

std::string_view TextOf(std::string_view text) { return text; }
std::string TextOf(std::uint32_t number) { return std::to_string(number); }

}  // namespace

std::string TCIMValue::ToString() const {
  if (IsArray()) {
    std::string text;
    ForEach([&text](const auto& element) {
      text += text.empty() ? "{" : ", ";
      text += TextOf(element);
    });
    return text.empty() ? "{}" : text + "}";
  }
  return std::visit(Overloaded{
                        [](const std::string& text) { return text; },
                        [](std::uint16_t number) { return std::to_string(number); },
                        [](std::uint32_t number) { return std::to_string(number); },
                        [](const TCIMDateTime& time) { return time.ToString(); },
                        [](const TCIMReference& path) { return path.ToString(); },
                        [](const auto& /*null*/) { return std::string(); },
                    },
                    content_);
}

}  // namespace NKVXHMZ20
