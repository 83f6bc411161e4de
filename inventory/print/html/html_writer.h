#ifndef INVENTORY_PRINT_HTML_HTML_WRITER_H_
#define INVENTORY_PRINT_HTML_HTML_WRITER_H_

#include <array>
#include <charconv>
#include <concepts>
#include <cstddef>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>

#include "inventory/base/readable.h"
#include "inventory/base/sink.h"

/// Markup of this program, never of a text from elsewhere: it is a literal, with a hole "{}" for
/// each value. That holes are as many as values, and stand outside of tags or between double
/// quotes, is looked at when it is compiled.
template <std::size_t kHoles>
struct Markup {
  // NOLINTNEXTLINE(google-explicit-constructor): a literal is one
  consteval Markup(const char* literal) : text(literal) {
    std::size_t holes = 0;
    bool in_tag = false;
    bool in_quotes = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
      if (text[i] == '"' && in_tag) in_quotes = !in_quotes;
      if (text[i] == '<') in_tag = true;
      if (text[i] == '>' && !in_quotes) in_tag = false;
      if (text.substr(i, 2) != "{}") continue;
      ++holes;
      if (in_tag && !in_quotes) throw "a value in a tag stands between double quotes";
    }
    if (holes != kHoles || in_quotes) throw "a hole for each value, a quote for each quote";
  }

  std::string_view text;
};

/// What fills a hole: a text from anywhere, or a number.
class HtmlValue {
 public:
  // NOLINTBEGIN(google-explicit-constructor): values are written as they are
  HtmlValue(std::string_view text) : text_(text) {}
  HtmlValue(const char* text) : text_(text) {}
  HtmlValue(const std::string& text) : text_(text) {}
  HtmlValue(const std::optional<std::string>& text) : text_(text ? *text : std::string_view()) {}
  HtmlValue(std::integral auto number) {
    const auto end = std::to_chars(digits_.data(), digits_.data() + digits_.size(), number).ptr;
    size_ = static_cast<std::size_t>(end - digits_.data());
  }
  // NOLINTEND(google-explicit-constructor)

  std::string_view Get() const {
    return size_ > 0 ? std::string_view(digits_.data(), size_) : text_;
  }

 private:
  std::string_view text_;
  std::array<char, 24> digits_{};
  std::size_t size_ = 0;
};

/// Writes HTML to a sink. Every text passes Escape, which makes it Sanitized and takes the meaning
/// of markup from it.
class HtmlWriter {
 public:
  explicit HtmlWriter(Sink& output) : output_(output) {}
  HtmlWriter(const HtmlWriter&) = delete;
  HtmlWriter& operator=(const HtmlWriter&) = delete;
  ~HtmlWriter() { Flush(); }

  template <class... Values>
  void operator()(std::type_identity_t<Markup<sizeof...(Values)>> markup, const Values&... values) {
    Fill(markup.text, {HtmlValue(values)...});
  }

  /// The lines of a text, for <pre>. Nothing of it is kept.
  void Lines(std::string_view text);

  /// A file of inventory/print/html/, as it is.
  void Own(std::string_view markup) { Put(markup); }

  /// How many bytes there are so far.
  std::size_t GetSize() const { return size_; }

 private:
  void Fill(std::string_view markup, std::initializer_list<HtmlValue> values);
  void Escape(std::string_view text, Layout layout);
  void Put(std::string_view markup);
  void Flush();

  Sink& output_;
  std::string buffer_;
  std::size_t size_ = 0;
};

/// Counts what is written, and keeps nothing.
class SizeSink final : public Sink {
 public:
  void Write(std::string_view text) override { size += text.size(); }
  std::size_t size = 0;
};

/// How many bytes of `text` at its beginning are no more than `most` once they are escaped: whole
/// lines, and of a first one that is too long its beginning.
std::size_t FittingLength(std::string_view text, std::size_t most);

#endif  // INVENTORY_PRINT_HTML_HTML_WRITER_H_
