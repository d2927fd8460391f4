#include <gst/gst.h>

#include "Element.h"

#define PACKAGE "ZrConvertersLib"

namespace {

gboolean Initialise(GstPlugin* plugin) {
  return zrgstreamer::RegisterElement(plugin);
}

}  // namespace

extern "C" {
GST_PLUGIN_DEFINE(GST_VERSION_MAJOR, GST_VERSION_MINOR, zrconverters, "Pixel formats of industrial cameras",
                  Initialise, ZR_VERSION, "MIT/X11", "ZrConvertersLib", "ZrConvertersLib")
}
