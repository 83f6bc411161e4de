#include "hmz/exception.h"

#include <utility>

namespace NKVXHMZ20 {

THMZException::THMZException(std::string reason) : reason_(std::move(reason)) {}

// Here, and not in the header, so that the class's type lives in one library and is the same to
// all.
THMZException::~THMZException() = default;

const char* THMZException::what() const noexcept { return reason_.c_str(); }

}  // namespace NKVXHMZ20
