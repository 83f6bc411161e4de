#ifndef INVENTORY_PRINT_DOCUMENT_INSTANCES_H_
#define INVENTORY_PRINT_DOCUMENT_INSTANCES_H_

#include <nlohmann/json_fwd.hpp>

#include "standin/repository.h"

/// Commits the instances of a document, with the types that the schema declares; associations,
/// which no machine is made of, are left out. Throws std::runtime_error with the place in the
/// document for what has another type.
void CommitInstances(const nlohmann::json& instances, standin::Repository& repository);

#endif  // INVENTORY_PRINT_DOCUMENT_INSTANCES_H_
