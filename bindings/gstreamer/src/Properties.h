// The element's properties.
#pragma once

#include <glib-object.h>

#include "Conversion.h"

namespace zrgstreamer {

void InstallProperties(GObjectClass* object);

/// FALSE for an id that is none.
bool WriteProperty(Settings& settings, guint id, const GValue* value);
bool ReadProperty(const Settings& settings, guint id, GValue* value);

/// Whether a change takes effect with the next frame; otherwise caps are negotiated anew.
bool IsLive(guint id);

}  // namespace zrgstreamer
