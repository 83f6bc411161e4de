#ifndef INVENTORY_PRINT_DOCUMENT_READER_H_
#define INVENTORY_PRINT_DOCUMENT_READER_H_

#include <filesystem>

#include "inventory/machine/compare.h"

/// The machine of a document that PrintJson wrote; of one without a machine, it is made of the
/// instances. Throws std::runtime_error with one line that begins with the file's name when it
/// cannot be read, is larger than 256 MiB, or is no such document.
EarlierMachine ReadDocument(const std::filesystem::path& file);

#endif  // INVENTORY_PRINT_DOCUMENT_READER_H_
