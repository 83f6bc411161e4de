#ifndef FUZZ_SYSTEM_CALLS_H_
#define FUZZ_SYSTEM_CALLS_H_

#include <string>
#include <vector>

/// The seam between what is tested and the system: this program's own definitions of the calls come
/// before the C library's, in its libraries and the loaded plug-in, too. They pass everything on,
/// but for the one call that is to fail.

/// The names of the calls that can be made to fail.
std::vector<std::string> SystemCalls();

/// Makes the nth call of that name from now on fail, the first being 1, with the error that it has
/// when the system is out of something. Only in the process that asks for it.
void FailCall(const std::string& name, int nth);

/// No call fails from now on. Returns whether one did.
bool StopFailing();

#endif  // FUZZ_SYSTEM_CALLS_H_
