#include "inventory/print/json_writer.h"

#include <algorithm>
#include <cstdio>
#include <nlohmann/json.hpp>

#include "inventory/base/readable.h"

namespace {

bool NeedsNoEscape(char c) { return c >= ' ' && c < '\x7f' && c != '"' && c != '\\'; }

std::string JsonEscape(unsigned code) {
  char escape[16];
  std::snprintf(escape, sizeof escape, "\\u%04x", code);
  return escape;
}

}  // namespace

void JsonWriter::String(std::string_view text) {
  using nlohmann::json;
  Raw("\"");
  ForEachPiece(text, [this](std::string_view piece) {
    if (std::all_of(piece.begin(), piece.end(), NeedsNoEscape)) return Raw(piece);
    // Nothing is left that a terminal would act on, whoever shows the document there.
    const std::string quoted =
        NameHidden(json(piece).dump(-1, ' ', false, json::error_handler_t::replace), JsonEscape);
    Raw(std::string_view(quoted).substr(1, quoted.size() - 2));
  });
  Raw("\"");
}

void JsonWriter::Open(char bracket) {
  Raw({&bracket, 1});
  ++depth_;
  is_first_ = true;
}

void JsonWriter::Element() {
  if (!is_first_) Raw(",");
  StartLine();
  is_first_ = false;
}

void JsonWriter::Name(const std::string& name) {
  Element();
  String(name);
  Raw(": ");
}

void JsonWriter::Close(char bracket) {
  --depth_;
  if (!is_first_) StartLine();
  is_first_ = false;
  Raw({&bracket, 1});
}

void JsonWriter::StartLine() {
  static const std::string blanks(64, ' ');
  Raw("\n");
  for (std::size_t left = depth_ * 2; left > 0; left -= std::min(left, blanks.size())) {
    Raw(std::string_view(blanks).substr(0, left));
  }
}
