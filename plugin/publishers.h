#ifndef PLUGIN_PUBLISHERS_H_
#define PLUGIN_PUBLISHERS_H_

#include "plugin/publish.h"

// One operation for each class that has instances; each commits all instances of its class.

void PublishRawData(const PublishContext& context);
void PublishControllers(const PublishContext& context);

#endif  // PLUGIN_PUBLISHERS_H_
