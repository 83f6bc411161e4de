#include "inventory/print/html/html_page.h"

#include <sodium.h>

#include <string>
#include <string_view>

#include "inventory/base/program.h"
#include "inventory/base/readable.h"
#include "inventory/print/html/html_files.h"
#include "inventory/print/html/html_parts.h"

namespace {

/// "'sha256-...'", as a policy names a text that is in the page.
std::string Source(std::string_view text) {
  unsigned char hash[crypto_hash_sha256_BYTES];
  crypto_hash_sha256(hash, reinterpret_cast<const unsigned char*>(text.data()), text.size());
  char base64[sodium_base64_ENCODED_LEN(sizeof hash, sodium_base64_VARIANT_ORIGINAL)];
  sodium_bin2base64(base64, sizeof base64, hash, sizeof hash, sodium_base64_VARIANT_ORIGINAL);
  return std::string("'sha256-") + base64 + "'";
}

void WritePolicy(const ViewInput&, HtmlWriter& html) {
  html("default-src 'none'; style-src {}; script-src {}; base-uri 'none'; form-action 'none'",
       Source(kStyleCss), Source(kScriptJs));
}

void WriteTitle(const ViewInput& input, HtmlWriter& html) {
  html("{}, RAID: {}", Readable(input.report.host), VerdictOf(input).text);
}

void WriteStyle(const ViewInput&, HtmlWriter& html) { html.Own(kStyleCss); }
void WriteScript(const ViewInput&, HtmlWriter& html) { html.Own(kScriptJs); }

void WriteFooter(const ViewInput& input, HtmlWriter& html) {
  html("<p>Made by {} {} of what the tools of {} print. ", kProgramName, kProgramVersion,
       Readable(input.report.host));
  html("Sizes, states and names are theirs.</p>");
}

/// What page.html names, each with what stands there.
constexpr struct {
  std::string_view name;
  void (*write)(const ViewInput& input, HtmlWriter& html);
} kSlots[] = {
    {"policy", WritePolicy},     {"title", WriteTitle},     {"style", WriteStyle},
    {"script", WriteScript},     {"summary", WriteSummary}, {"contents", WriteContents},
    {"findings", WriteFindings}, {"losses", WriteLosses},   {"changes", WriteChanges},
    {"table", WriteTable},       {"events", WriteEvents},   {"controllers", WriteControllers},
    {"runs", WriteRuns},         {"footer", WriteFooter},
};

}  // namespace

int PrintHtml(const ViewInput& input, const ViewOptions&, Sink& output) {
  HtmlWriter html(output);
  std::string_view rest = kPageHtml;
  for (auto open = rest.find("{{"); open != std::string_view::npos; open = rest.find("{{")) {
    const auto close = rest.find("}}", open);
    html.Own(rest.substr(0, open));
    for (const auto& slot : kSlots) {
      if (slot.name == rest.substr(open + 2, close - open - 2)) slot.write(input, html);
    }
    rest.remove_prefix(close + 2);
  }
  html.Own(rest);
  return input.report.exit_status;
}
