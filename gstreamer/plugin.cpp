// The plugin: what GStreamer finds in the file.
#include "lumalaneconvert.h"

#define PACKAGE "lumalane"

static gboolean plugin_init(GstPlugin *plugin) {
    return GST_ELEMENT_REGISTER(lumalaneconvert, plugin);
}

GST_PLUGIN_DEFINE(GST_VERSION_MAJOR, GST_VERSION_MINOR, lumalane,
                  "Converts, adjusts and deinterlaces YV12, I420 and YUY2 video by Lumalane",
                  plugin_init, LUMALANE_VERSION, "MIT/X11", "Lumalane", "Unknown package origin")
