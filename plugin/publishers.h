#ifndef PLUGIN_PUBLISHERS_H_
#define PLUGIN_PUBLISHERS_H_

#include "plugin/publish.h"

// One operation for each class that has instances of its own; each commits all of them.

void PublishRawData(const PublishContext& context);
void PublishControllers(const PublishContext& context);
void PublishLogicalDisks(const PublishContext& context);
void PublishDiskGroups(const PublishContext& context);
void PublishDiskDrives(const PublishContext& context);
void PublishBadStripes(const PublishContext& context);
void PublishDeviceData(const PublishContext& context);
void PublishSubStatData(const PublishContext& context);
void PublishSoftEvents(const PublishContext& context);
void PublishDddEvents(const PublishContext& context);
void PublishHardEvents(const PublishContext& context);
void PublishManagerEvents(const PublishContext& context);
void PublishFirmwareVersions(const PublishContext& context);
void PublishBootBlockVersions(const PublishContext& context);
void PublishDiskDriveVersions(const PublishContext& context);
void PublishBiosVersions(const PublishContext& context);

#endif  // PLUGIN_PUBLISHERS_H_
