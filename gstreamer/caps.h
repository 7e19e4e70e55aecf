// Which caps become which.
#ifndef LUMALANE_GSTREAMER_CAPS_H
#define LUMALANE_GSTREAMER_CAPS_H

#include "conversion.h"

#include <gst/video/video.h>

namespace lumalane_gst {

#define LUMALANE_GST_SINK_FORMATS "{ YV12, I420, YUY2 }"
#define LUMALANE_GST_RGB_FORMATS "BGRx, BGR, RGB16"
#define LUMALANE_GST_SOURCE_FORMATS "{ " LUMALANE_GST_RGB_FORMATS ", YUY2, YV12, I420 }"

/// The format of the companion headers; false if there is none.
bool format_of(GstVideoFormat from, lumalane::format &to);

bool is_rgb(GstVideoFormat format);

/// Whether the library's RGB is right for it: BT.601 of the limited range.
bool has_bt601(const GstVideoInfo &yuv);

/// All that the other pad can have. Fixed caps of the sink pad that name no colorimetry have that of
/// their height.
GstCaps *transform_caps(GstPadDirection direction, GstCaps *caps, deinterlacing how);

/// The one of `others` that keeps the most of `caps`. Takes `others`.
GstCaps *fixate_caps(GstCaps *caps, GstCaps *others);

} // namespace lumalane_gst

#endif
