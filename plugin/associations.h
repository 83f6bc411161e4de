#ifndef PLUGIN_ASSOCIATIONS_H_
#define PLUGIN_ASSOCIATIONS_H_

#include "plugin/publish.h"

/// A class of associations: its ends, and how each is found among the instances that have been
/// committed before.
struct Association;

/// Commits all associations of the requested class.
void PublishAssociations(const PublishContext& context, const Association& row);

// The table in associations.cc, whose rows the dispatch list names.

extern const Association kControllerForUnit;
extern const Association kControllerForPhysicalDisk;
extern const Association kStripeOrderForController;
extern const Association kFirmwareOnController;
extern const Association kBootBlockOnController;
extern const Association kFirmwareOnDiskDrive;
extern const Association kBiosOnController;
extern const Association kElementDeviceData;
extern const Association kElementBadStripes;

#endif  // PLUGIN_ASSOCIATIONS_H_
