#ifndef HMZ_API_H_
#define HMZ_API_H_

/// Marks what the host's libraries and their plug-ins share. Everything else is built hidden.
#define HMZ_API __attribute__((visibility("default")))

#endif  // HMZ_API_H_
