#include "hmz/api.h"
#include "plugin/kraid_callbacks.h"

#ifdef NDEBUG
#error "Null pointers from the host are found by assertions: build the plug-in without NDEBUG."
#endif

/// The library's entry: creates the callbacks object, which registers itself with the host.
extern "C" HMZ_API void KRPluginInit();

extern "C" void KRPluginInit() {
  new TKraidCallbacks;  // the host's from its registration on
}  // NOLINT(clang-analyzer-cplusplus.NewDeleteLeaks): see above

namespace {

// Loading the library is all that a host has to do.
[[maybe_unused]] const bool kInitialised = (KRPluginInit(), true);

}  // namespace
