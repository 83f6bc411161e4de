#ifndef INVENTORY_PRINT_HTML_HTML_PAGE_H_
#define INVENTORY_PRINT_HTML_HTML_PAGE_H_

#include "inventory/print/view.h"

/// How many entries of each log a machine should have for the page.
constexpr std::size_t kPageLogEntries = 50;

/// A page for a browser, in one file that asks for nothing beyond itself.
int PrintHtml(const ViewInput& input, const ViewOptions& options, Sink& output);

#endif  // INVENTORY_PRINT_HTML_HTML_PAGE_H_
