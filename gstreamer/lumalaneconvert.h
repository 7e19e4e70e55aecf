// The element lumalaneconvert.
#ifndef LUMALANE_GSTREAMER_LUMALANECONVERT_H
#define LUMALANE_GSTREAMER_LUMALANECONVERT_H

#include <gst/gst.h>

G_BEGIN_DECLS

GType gst_lumalane_convert_get_type(void);

GST_ELEMENT_REGISTER_DECLARE(lumalaneconvert)

G_END_DECLS

#endif
