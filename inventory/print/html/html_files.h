#ifndef INVENTORY_PRINT_HTML_HTML_FILES_H_
#define INVENTORY_PRINT_HTML_HTML_FILES_H_

#include <string_view>

// The page's own files of this folder, as the build finds them.
extern const std::string_view kPageHtml;
extern const std::string_view kStyleCss;
extern const std::string_view kScriptJs;

#endif  // INVENTORY_PRINT_HTML_HTML_FILES_H_
