// The element zrconvert.
#pragma once

#include <gst/base/gstbasetransform.h>

namespace zrgstreamer {

/// Registers the element with its plugin.
gboolean RegisterElement(GstPlugin* plugin);

}  // namespace zrgstreamer
