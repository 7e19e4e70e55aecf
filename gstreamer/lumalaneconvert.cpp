/**
 * SECTION:element-lumalaneconvert
 * @title: lumalaneconvert
 * @short_description: converts, adjusts and deinterlaces video by Lumalane
 * @see_also: videoconvert, videobalance, deinterlace
 *
 * Converts YV12, I420 and YUY2 video of any size to BGRx, BGR, RGB16, YUY2, YV12 and I420 (YUY2 not to
 * YV12 and I420), adjusts brightness, contrast and saturation on the way, and makes whole frames of
 * the first fields of interlaced ones. Frames to which there is nothing to do pass through.
 *
 * ## Colorimetry
 *
 * RGB is full-range, and made of BT.601 of the limited range. The caps say so: of other video,
 * BT.709 for example, RGB is refused, and a videoconvert before this element makes BT.601 of it.
 * (Video without colorimetry in its caps has what GStreamer gives its height, BT.601 up to 576 rows
 * and BT.709 above: the caps behind name it.) Between YUV formats any colorimetry stays as it is, and
 * another one is refused. Transfer and primaries are not converted.
 *
 * Each chroma sample serves the pixels of its square, without interpolation. RGB and adjusted YUY2
 * of YUY2 take the chroma of both rows of a pair from the upper one. Products are truncated as the
 * functions of lumalane.h promise: RGB is within 2 of 255 of exact BT.601.
 *
 * The fourth byte of BGRx is 0. A videoconvert behind this element may take it for alpha where it is
 * not told to make a format without.
 *
 * ## Brightness, contrast and saturation
 *
 * They have the meaning and the ranges that they have in videobalance:
 *
 *     Y' = 16 + contrast * (Y - 16) + brightness * 255
 *     U' = 128 + saturation * (U - 128), and V' alike
 *
 * What is computed has gains in 1/64 and whole offsets. So contrast and saturation are taken at the
 * nearest 1/64, and brightness at the nearest 1/255: differences from videobalance are at most 3 of
 * 255 in Y and 2 of 255 in U and V, before the conversion. Values that come to the same as 1, 0 and
 * 1 change nothing. Black stays black and grey stays grey whatever contrast and saturation are. The
 * hue cannot be adjusted.
 *
 * The properties can be controlled, and are offered as #GstColorBalance channels, too. All
 * lumalaneconvert elements of a process share one adjustment of the library: frames with an
 * adjustment take turns, each with its own, and so do those of YV12 and I420 that become YUY2 or are
 * deinterlaced, except by double onto YUY2.
 *
 * ## Interlaced video
 *
 * With deinterlace=none both fields of a frame stay where they are, and each is converted with
 * its own chroma. With double and edge the first field of each frame becomes a whole frame, and the
 * other field is dropped: the frame rate stays. edge is for YV12 and I420 to YUY2 and RGB;
 * double repeats the rows of YUY2. Frames of mixed streams that are not interlaced are converted
 * whole.
 *
 * ## Example launch lines
 * |[
 * gst-launch-1.0 videotestsrc ! lumalaneconvert contrast=1.2 ! video/x-raw,format=BGRx ! ximagesink
 * ]|
 * |[
 * gst-launch-1.0 playbin uri=file:///video.mp4 video-filter="lumalaneconvert saturation=0"
 * ]|
 */
#include "lumalaneconvert.h"

#include "balance.h"
#include "caps.h"
#include "conversion.h"

#include <gst/video/colorbalance.h>
#include <gst/video/gstvideofilter.h>
#include <gst/video/video.h>

#include <algorithm>
#include <cmath>
#include <utility>

GST_DEBUG_CATEGORY_STATIC(lumalaneconvert_debug);
#define GST_CAT_DEFAULT lumalaneconvert_debug

using lumalane_gst::balance;
using lumalane_gst::balance_count;
using lumalane_gst::balance_ranges;
using lumalane_gst::changes_nothing;
using lumalane_gst::deinterlacing;

namespace {

constexpr int least_of_channel = -1000, most_of_channel = 1000;

enum { property_deinterlace = balance_count + 1 }; // behind those of the balance, which begin at 1

// What the element knows beside its parent class.
struct state {
    // Guarded by the object's lock.
    balance adjusted;
    deinterlacing wanted = deinterlacing::none; // the property
    deinterlacing used = deinterlacing::none;   // what caps are negotiated with
    bool told = false;                          // since the last frame

    // Of the streaming thread.
    bool same_caps = false;       // frames without an adjustment may pass
    bool planes_are_found = true; // those of this frame, by the next element
    bool finds_planes = true;     // the next element, wherever they are, as far as is known
    bool deinterlaces = false;    // the caps say so
    deinterlacing how = deinterlacing::doubled;
    lumalane_gst::converter converter;

    GList *channels = nullptr;
};

} // namespace

struct GstLumalaneConvert {
    GstVideoFilter parent;
    state *own;
};

struct GstLumalaneConvertClass {
    GstVideoFilterClass parent_class;
};

static void color_balance_init(GstColorBalanceInterface *iface);

G_DEFINE_TYPE_WITH_CODE(GstLumalaneConvert, gst_lumalane_convert, GST_TYPE_VIDEO_FILTER,
                        G_IMPLEMENT_INTERFACE(GST_TYPE_COLOR_BALANCE, color_balance_init))

GST_ELEMENT_REGISTER_DEFINE_WITH_CODE(
    lumalaneconvert, "lumalaneconvert", GST_RANK_NONE, gst_lumalane_convert_get_type(),
    GST_DEBUG_CATEGORY_INIT(lumalaneconvert_debug, "lumalaneconvert", 0, "Lumalane's converter"))

namespace {

state &state_of(gpointer object) { return *reinterpret_cast<GstLumalaneConvert *>(object)->own; }

GType deinterlace_type() {
    static const GEnumValue values[] = {
        {static_cast<int>(deinterlacing::none), "Both fields stay", "none"},
        {static_cast<int>(deinterlacing::doubled),
         "The first field, with averages of its rows between them", "double"},
        {static_cast<int>(deinterlacing::edge),
         "The first field, with rows between its own that follow the edges", "edge"},
        {0, nullptr, nullptr}};
    static gsize type = 0;
    if (g_once_init_enter(&type))
        g_once_init_leave(&type, g_enum_register_static("GstLumalaneConvertDeinterlace", values));
    return type;
}

// ---- What is to be done ------------------------------------------------------------------------

// Whether that changes what is done with frames. On the streaming thread alone, before a frame is
// begun: the base class asks more than once per frame whether it passes.
bool update_passthrough(GstBaseTransform *self) {
    const state &own = state_of(self);
    GST_OBJECT_LOCK(self);
    const bool passes =
        own.same_caps && own.planes_are_found && changes_nothing(adjustment_of(own.adjusted));
    GST_OBJECT_UNLOCK(self);
    if (passes == bool(gst_base_transform_is_passthrough(self)))
        return false;
    GST_DEBUG_OBJECT(self, "frames %s", passes ? "pass through" : "are converted");
    gst_base_transform_set_passthrough(self, passes);
    return true;
}

bool set_balance(gpointer self, int which, double value) {
    GST_OBJECT_LOCK(self);
    double &now = state_of(self).adjusted.values[which];
    const bool changes = now != value;
    now = value;
    GST_OBJECT_UNLOCK(self);
    if (changes)
        GST_INFO_OBJECT(self, "%s is %f", balance_ranges[which].property, value);
    return changes;
}

double balance_of(gpointer self, int which) {
    GST_OBJECT_LOCK(self);
    const double value = state_of(self).adjusted.values[which];
    GST_OBJECT_UNLOCK(self);
    return value;
}

// ---- Channels of the color balance -------------------------------------------------------------

int to_channel(int which, double value) {
    const lumalane_gst::balance_range &r = balance_ranges[which];
    const double part = (value - r.least) / (r.most - r.least);
    return least_of_channel +
           static_cast<int>(std::lround(part * (most_of_channel - least_of_channel)));
}

double from_channel(int which, int value) {
    const lumalane_gst::balance_range &r = balance_ranges[which];
    const double part = double(value - least_of_channel) / (most_of_channel - least_of_channel);
    return r.least + part * (r.most - r.least);
}

GstColorBalanceChannel *channel(gpointer self, int which) {
    return GST_COLOR_BALANCE_CHANNEL(g_list_nth_data(state_of(self).channels, which));
}

// Which one it is, or -1.
int which_channel(gpointer self, GstColorBalanceChannel *wanted) {
    return g_list_index(state_of(self).channels, wanted);
}

const GList *list_channels(GstColorBalance *self) { return state_of(self).channels; }

void set_channel(GstColorBalance *self, GstColorBalanceChannel *wanted, gint value) {
    const int which = which_channel(self, wanted);
    g_return_if_fail(which >= 0);
    const int limited = std::clamp(value, least_of_channel, most_of_channel);
    if (limited != to_channel(which, balance_of(self, which)))
        g_object_set(self, balance_ranges[which].property, from_channel(which, limited), nullptr);
}

gint get_channel(GstColorBalance *self, GstColorBalanceChannel *wanted) {
    const int which = which_channel(self, wanted);
    g_return_val_if_fail(which >= 0, 0);
    return to_channel(which, balance_of(self, which));
}

GstColorBalanceType balance_type(GstColorBalance *) { return GST_COLOR_BALANCE_SOFTWARE; }

// ---- Properties --------------------------------------------------------------------------------

deinterlacing used_deinterlacing(gpointer self) {
    GST_OBJECT_LOCK(self);
    const deinterlacing used = state_of(self).used;
    GST_OBJECT_UNLOCK(self);
    return used;
}

void use(gpointer self, deinterlacing how) {
    GST_OBJECT_LOCK(self);
    state_of(self).used = how;
    GST_OBJECT_UNLOCK(self);
}

void set_property(GObject *self, guint id, const GValue *value, GParamSpec *spec) {
    if (id == property_deinterlace) {
        const auto how = static_cast<deinterlacing>(g_value_get_enum(value));
        // While a stream runs, its next frame asks whether it can be had.
        if (!gst_pad_has_current_caps(GST_BASE_TRANSFORM_SINK_PAD(self)))
            use(self, how);
        GST_OBJECT_LOCK(self);
        state_of(self).wanted = how;
        state_of(self).told = true;
        GST_OBJECT_UNLOCK(self);
    } else if (id >= 1 && id <= balance_count) {
        const int which = static_cast<int>(id) - 1;
        if (set_balance(self, which, g_value_get_double(value)))
            gst_color_balance_value_changed(GST_COLOR_BALANCE(self), channel(self, which),
                                            to_channel(which, balance_of(self, which)));
    } else {
        G_OBJECT_WARN_INVALID_PROPERTY_ID(self, id, spec);
    }
}

deinterlacing wanted_deinterlacing(gpointer self) {
    GST_OBJECT_LOCK(self);
    const deinterlacing wanted = state_of(self).wanted;
    GST_OBJECT_UNLOCK(self);
    return wanted;
}

void get_property(GObject *self, guint id, GValue *value, GParamSpec *spec) {
    if (id == property_deinterlace)
        g_value_set_enum(value, static_cast<int>(wanted_deinterlacing(self)));
    else if (id >= 1 && id <= balance_count)
        g_value_set_double(value, balance_of(self, static_cast<int>(id) - 1));
    else
        G_OBJECT_WARN_INVALID_PROPERTY_ID(self, id, spec);
}

// ---- Negotiation -------------------------------------------------------------------------------

GstCaps *transform_caps(GstBaseTransform *self, GstPadDirection direction, GstCaps *caps,
                        GstCaps *filter) {
    GstCaps *made = lumalane_gst::transform_caps(direction, caps, used_deinterlacing(self));
    if (filter) {
        GstCaps *const both = gst_caps_intersect_full(filter, made, GST_CAPS_INTERSECT_FIRST);
        gst_caps_unref(made);
        made = both;
    }
    GST_LOG_OBJECT(self, "%" GST_PTR_FORMAT " become %" GST_PTR_FORMAT, caps, made);
    return made;
}

GstCaps *fixate_caps(GstBaseTransform *self, GstPadDirection direction, GstCaps *caps,
                     GstCaps *others) {
    GstCaps *const fixed = direction == GST_PAD_SINK ? lumalane_gst::fixate_caps(caps, others)
                                                     : gst_caps_fixate(others);
    GST_DEBUG_OBJECT(self, "%" GST_PTR_FORMAT " become %" GST_PTR_FORMAT, caps, fixed);
    return fixed;
}

// As if they were BT.601.
GstCaps *as_bt601(GstCaps *caps) {
    GstCaps *const copy = gst_caps_copy(caps);
    gst_caps_set_simple(copy, "colorimetry", G_TYPE_STRING, GST_VIDEO_COLORIMETRY_BT601, nullptr);
    return copy;
}

GstBaseTransformClass *parent_transform() {
    return GST_BASE_TRANSFORM_CLASS(gst_lumalane_convert_parent_class);
}

// Caps that are refused for nothing but their colorimetry come in, so that the element can say so.
gboolean accept_caps(GstBaseTransform *self, GstPadDirection direction, GstCaps *caps) {
    if (parent_transform()->accept_caps(self, direction, caps))
        return TRUE;
    if (direction != GST_PAD_SINK)
        return FALSE;
    GstCaps *const copy = as_bt601(caps);
    const gboolean accepts = parent_transform()->accept_caps(self, direction, copy);
    gst_caps_unref(copy);
    return accepts;
}

// Those of the formats that caps of the sink pad can become which the next element takes.
GstCaps *taken_behind(GstBaseTransform *self, GstCaps *caps) {
    GstCaps *const made = transform_caps(self, GST_PAD_SINK, caps, nullptr);
    GstCaps *const behind = gst_pad_peer_query_caps(self->srcpad, made);
    GstCaps *const taken = gst_caps_intersect(made, behind);
    gst_caps_unref(made);
    gst_caps_unref(behind);
    return taken;
}

// What the property says is used if caps of the sink pad can become something so.
void update_deinterlacing(GstBaseTransform *self, GstCaps *caps) {
    const deinterlacing before = used_deinterlacing(self), wanted = wanted_deinterlacing(self);
    if (wanted == before)
        return;
    use(self, wanted);
    GstCaps *const taken = taken_behind(self, caps);
    if (gst_caps_is_empty(taken)) {
        use(self, before);
        auto *const values = static_cast<GEnumClass *>(g_type_class_peek(deinterlace_type()));
        GST_ELEMENT_WARNING(self, STREAM, FORMAT,
                            ("These formats do not have deinterlace=%s: it stays %s until caps do.",
                             g_enum_get_value(values, static_cast<int>(wanted))->value_nick,
                             g_enum_get_value(values, static_cast<int>(before))->value_nick),
                            ("caps: %" GST_PTR_FORMAT, caps));
    }
    gst_caps_unref(taken);
}

bool has_rgb(const GstCaps *caps) {
    GstCaps *const rgb =
        gst_caps_from_string("video/x-raw, format={ " LUMALANE_GST_RGB_FORMATS " }");
    const bool has = gst_caps_can_intersect(caps, rgb);
    gst_caps_unref(rgb);
    return has;
}

// Whether caps that have been refused, of which `info` is, would have become RGB if they were BT.601.
bool lacks_bt601_alone(GstBaseTransform *self, GstCaps *caps, GstVideoInfo &info) {
    if (!gst_video_info_from_caps(&info, caps) || !GST_VIDEO_INFO_IS_YUV(&info) ||
        lumalane_gst::has_bt601(info))
        return false;
    GstCaps *const copy = as_bt601(caps), *const as_it_is = taken_behind(self, caps),
                   *const otherwise = taken_behind(self, copy);
    const bool lacks = gst_caps_is_empty(as_it_is) && has_rgb(otherwise);
    gst_caps_unref(copy);
    gst_caps_unref(as_it_is);
    gst_caps_unref(otherwise);
    return lacks;
}

gboolean sink_event(GstBaseTransform *self, GstEvent *event) {
    GstCaps *caps = nullptr;
    if (GST_EVENT_TYPE(event) == GST_EVENT_CAPS) {
        gst_event_parse_caps(event, &caps);
        gst_caps_ref(caps);
        update_deinterlacing(self, caps);
        // The element before it asks anew where planes may be: if frames pass, the next one answers.
        state_of(self).planes_are_found = true;
    }
    const gboolean done = parent_transform()->sink_event(self, event);
    GstVideoInfo info;
    if (!done && caps && !GST_PAD_IS_FLUSHING(self->sinkpad) &&
        lacks_bt601_alone(self, caps, info)) {
        gchar *const has = gst_video_colorimetry_to_string(&info.colorimetry);
        GST_ELEMENT_ERROR(self, STREAM, FORMAT,
                          ("RGB is made of limited-range BT.601 video only. This is %s: put "
                           "videoconvert before lumalaneconvert.",
                           has ? has : "of unknown colorimetry"),
                          ("caps: %" GST_PTR_FORMAT, caps));
        g_free(has);
    }
    gst_caps_replace(&caps, nullptr);
    return done;
}

// Formats and neighbours may be others than before.
gboolean start(GstBaseTransform *self) {
    use(self, wanted_deinterlacing(self));
    state_of(self).finds_planes = true;
    return TRUE;
}

gboolean set_info(GstVideoFilter *self, GstCaps *, GstVideoInfo *in, GstCaps *, GstVideoInfo *out) {
    state &own = state_of(self);
    const GstVideoFormat from = GST_VIDEO_INFO_FORMAT(in), to = GST_VIDEO_INFO_FORMAT(out);
    if (lumalane_gst::is_rgb(to) && !lumalane_gst::has_bt601(*in)) {
        GST_ERROR_OBJECT(self, "RGB of video that is not limited-range BT.601");
        return FALSE;
    }
    // Fields that the caps keep are kept, whatever has been set since.
    own.deinterlaces = GST_VIDEO_INFO_IS_INTERLACED(in) && !GST_VIDEO_INFO_IS_INTERLACED(out);
    own.same_caps = from == to && !own.deinterlaces;
    own.how = deinterlacing::doubled; // as all formats can be
    update_passthrough(GST_BASE_TRANSFORM(self));
    return TRUE;
}

// Memory of whole cache lines, unless the neighbour has a pool of its own.
gboolean decide_allocation(GstBaseTransform *self, GstQuery *query) {
    constexpr gsize cache_line = 64;
    GstAllocator *allocator = nullptr;
    GstAllocationParams params;
    gst_allocation_params_init(&params);
    state_of(self).finds_planes =
        gst_query_find_allocation_meta(query, GST_VIDEO_META_API_TYPE, nullptr);
    const bool has = gst_query_get_n_allocation_params(query) > 0;
    if (has)
        gst_query_parse_nth_allocation_param(query, 0, &allocator, &params);
    params.align |= cache_line - 1;
    if (has)
        gst_query_set_nth_allocation_param(query, 0, allocator, &params);
    else
        gst_query_add_allocation_param(query, allocator, &params);
    if (allocator)
        gst_object_unref(allocator);
    return parent_transform()->decide_allocation(self, query);
}

// ---- Frames ------------------------------------------------------------------------------------

// After this the base class negotiates, and then takes memory for the frame.
void before_transform(GstBaseTransform *self, GstBuffer *buffer) {
    if (self->segment.format == GST_FORMAT_TIME) {
        const GstClockTime time = gst_segment_to_stream_time(&self->segment, GST_FORMAT_TIME,
                                                             GST_BUFFER_TIMESTAMP(buffer));
        if (GST_CLOCK_TIME_IS_VALID(time))
            gst_object_sync_values(GST_OBJECT(self), time);
    }
    GST_OBJECT_LOCK(self);
    const bool told = std::exchange(state_of(self).told, false);
    GST_OBJECT_UNLOCK(self);
    GstCaps *const caps = told ? gst_pad_get_current_caps(self->sinkpad) : nullptr;
    if (caps) {
        update_deinterlacing(self, caps);
        gst_caps_unref(caps);
    }
    // While it converted, it took planes that lie anywhere, and goes on getting them.
    state &own = state_of(self);
    own.planes_are_found = own.finds_planes || !gst_buffer_get_video_meta(buffer);
    // Frames that stop passing through need memory, which is negotiated.
    if (update_passthrough(self) || told)
        gst_base_transform_reconfigure_src(self);
}

struct position {
    guint x, y;
};

// The frame of a video meta may be larger than that of the caps: where that begins in it. An element
// that crops leaves it to the next ones while frames pass, and may go on so.
position beginning(GstBuffer *buffer, const GstVideoInfo &of) {
    const GstVideoCropMeta *const crop = gst_buffer_get_video_crop_meta(buffer);
    const bool is_meant = crop && crop->width == static_cast<guint>(of.width) &&
                          crop->height == static_cast<guint>(of.height);
    return is_meant ? position{crop->x, crop->y} : position{0, 0};
}

// The frame from there on: of chroma from the sample of that pixel, of a pair that is packed from its
// first byte.
void begin_at(GstVideoFrame *f, position at) {
    lumalane::format format;
    if (!lumalane_gst::format_of(GST_VIDEO_FRAME_FORMAT(f), format))
        return;
    const int x = static_cast<int>(at.x), y = static_cast<int>(at.y);
    for (int i = 0; i < lumalane::plane_count(format); ++i) {
        const std::ptrdiff_t row = lumalane::plane_height(format, i, y + 1) - 1,
                             column = lumalane::row_bytes(format, i, x + 1) -
                                      lumalane::row_bytes(format, i, 1);
        f->data[i] =
            static_cast<guint8 *>(f->data[i]) + row * GST_VIDEO_FRAME_PLANE_STRIDE(f, i) + column;
    }
}

void limit(GstVideoFrame *f, const GstVideoInfo &to) {
    begin_at(f, beginning(f->buffer, to));
    f->info.width = to.width;
    f->info.height = to.height;
}

lumalane::picture picture_of(GstVideoFrame *f) {
    lumalane::picture p{};
    lumalane_gst::format_of(GST_VIDEO_FRAME_FORMAT(f), p.format);
    p.width = GST_VIDEO_FRAME_WIDTH(f);
    p.height = GST_VIDEO_FRAME_HEIGHT(f);
    for (guint i = 0; i < GST_VIDEO_FRAME_N_PLANES(f); ++i)
        p.planes[i] = {static_cast<unsigned char *>(GST_VIDEO_FRAME_PLANE_DATA(f, i)),
                       GST_VIDEO_FRAME_PLANE_STRIDE(f, i)};
    return p;
}

// Whether the rows of a mapped frame lie in the memory of its buffer: a video meta may say anything.
bool lies_in_its_buffer(GstVideoFrame *f) {
    const lumalane::picture p = picture_of(f);
    for (int i = 0; i < lumalane::plane_count(p.format); ++i) {
        const GstMapInfo &mapped = f->map[f->meta ? i : 0];
        const std::ptrdiff_t first = p.planes[i].data - mapped.data,
                             to_last_row = std::ptrdiff_t{p.planes[i].stride} *
                                           (lumalane::plane_height(p.format, i, p.height) - 1),
                             row = lumalane::row_bytes(p.format, i, p.width);
        if (first + std::min<std::ptrdiff_t>(to_last_row, 0) < 0 ||
            first + std::max<std::ptrdiff_t>(to_last_row, 0) + row >
                static_cast<std::ptrdiff_t>(mapped.size))
            return false;
    }
    return true;
}

// How many rows of chroma a mapped frame has memory for, up to another plane or the end.
int chroma_rows(GstVideoFrame *f) {
    const lumalane::picture p = picture_of(f);
    std::ptrdiff_t least = G_MAXINT;
    for (int i = 1; i < lumalane::plane_count(p.format); ++i) {
        const lumalane::plane &chroma = p.planes[i];
        const GstMapInfo &mapped = f->map[f->meta ? i : 0];
        const unsigned char *end = mapped.data + mapped.size;
        for (int k = 0; k < lumalane::plane_count(p.format); ++k) {
            const std::ptrdiff_t to_last_row = std::ptrdiff_t{p.planes[k].stride} *
                                               (lumalane::plane_height(p.format, k, p.height) - 1);
            const unsigned char *const begin =
                p.planes[k].data + std::min<std::ptrdiff_t>(to_last_row, 0);
            if (begin > chroma.data)
                end = std::min(end, begin);
        }
        const std::ptrdiff_t left = end - chroma.data - lumalane::row_bytes(p.format, i, p.width);
        least = std::min(least, chroma.stride > 0 && left >= 0 ? left / chroma.stride + 1 : 0);
    }
    return static_cast<int>(least);
}

bool is_whole(GstBuffer *buffer, const GstVideoInfo &info, GstMapFlags access) {
    const GstVideoMeta *const meta = gst_buffer_get_video_meta(buffer);
    const gint width = meta ? static_cast<gint>(meta->width) : info.width;
    const gint height = meta ? static_cast<gint>(meta->height) : info.height;
    const position at = beginning(buffer, info);
    if (gint64{at.x} + info.width > width || gint64{at.y} + info.height > height)
        return false;
    GstVideoFrame f;
    if (!gst_video_frame_map(&f, &info, buffer, access))
        return false;
    limit(&f, info);
    const bool whole = lies_in_its_buffer(&f);
    gst_video_frame_unmap(&f);
    return whole;
}

// The base class would only warn of a frame that it cannot map, and pass on one that nothing was written
// into.
GstFlowReturn transform(GstBaseTransform *self, GstBuffer *in, GstBuffer *out) {
    const GstVideoFilter *const filter = GST_VIDEO_FILTER(self);
    if (!is_whole(in, filter->in_info, GST_MAP_READ) ||
        !is_whole(out, filter->out_info, GST_MAP_WRITE)) {
        GST_ELEMENT_ERROR(self, STREAM, FORMAT, ("A buffer has not the frame that it should have."),
                          (nullptr));
        return GST_FLOW_ERROR;
    }
    return parent_transform()->transform(self, in, out);
}

// Frames keep their size, deinterlaced ones too: so what is told of places in them stays true, as it does
// of the picture as a whole. Of the formats nothing does, and of places where frames are cropped.
gboolean transform_meta(GstBaseTransform *self, GstBuffer *out, GstMeta *meta, GstBuffer *in) {
    static const gchar *const kept[] = {GST_META_TAG_VIDEO_STR, GST_META_TAG_VIDEO_ORIENTATION_STR,
                                        GST_META_TAG_VIDEO_SIZE_STR, nullptr};
    if (meta->info->api == GST_VIDEO_CROP_META_API_TYPE)
        return FALSE;
    const position at = beginning(in, GST_VIDEO_FILTER(self)->in_info);
    if (at.x != 0 || at.y != 0)
        return parent_transform()->transform_meta(self, out, meta, in);
    const gchar *const *tag = gst_meta_api_type_get_tags(meta->info->api);
    for (; tag && *tag; ++tag)
        if (!g_strv_contains(kept, *tag))
            return parent_transform()->transform_meta(self, out, meta, in);
    return TRUE;
}

bool lower_field_is_first(GstVideoFrame *f) {
    return !GST_VIDEO_FRAME_IS_TFF(f) &&
           GST_VIDEO_INFO_FIELD_ORDER(&f->info) != GST_VIDEO_FIELD_ORDER_TOP_FIELD_FIRST;
}

GstFlowReturn transform_frame(GstVideoFilter *self, GstVideoFrame *in, GstVideoFrame *out) {
    state &own = state_of(self);
    GST_OBJECT_LOCK(self);
    const lumalane::adjustment adjust = adjustment_of(own.adjusted);
    const deinterlacing used = own.used;
    GST_OBJECT_UNLOCK(self);

    limit(in, self->in_info);
    limit(out, self->out_info);
    lumalane_gst::frame f{picture_of(in), picture_of(out)};
    f.interlaced = GST_VIDEO_FRAME_IS_INTERLACED(in);
    f.first_field = lower_field_is_first(in) ? 1 : 0;
    f.chroma_rows = chroma_rows(out);
    f.adjust = changes_nothing(adjust) ? nullptr : &adjust;
    if (own.deinterlaces) {
        // Told something while these caps were negotiated, it goes on as before until the next frame.
        if (used != deinterlacing::none &&
            lumalane_gst::converts(f.source.format, f.destination.format, used))
            own.how = used;
        f.how = own.how;
        GST_BUFFER_FLAG_UNSET(out->buffer,
                              GST_VIDEO_BUFFER_FLAG_INTERLACED | GST_VIDEO_BUFFER_FLAG_TFF |
                                  GST_VIDEO_BUFFER_FLAG_RFF | GST_VIDEO_BUFFER_FLAG_ONEFIELD);
    }

    if (const lumalane::status done = own.converter.convert(f); !done) {
        char text[lumalane::status_text_size];
        GST_ELEMENT_ERROR(self, STREAM, FORMAT, ("A frame cannot be converted."),
                          ("%s", done.write(text, sizeof text)));
        return GST_FLOW_ERROR;
    }
    return GST_FLOW_OK;
}

// ---- The class ---------------------------------------------------------------------------------

void finalize(GObject *self) {
    GstLumalaneConvert *const object = reinterpret_cast<GstLumalaneConvert *>(self);
    g_list_free_full(object->own->channels, g_object_unref);
    delete object->own;
    object->own = nullptr;
    G_OBJECT_CLASS(gst_lumalane_convert_parent_class)->finalize(self);
}

GstStaticPadTemplate sink_template =
    GST_STATIC_PAD_TEMPLATE("sink", GST_PAD_SINK, GST_PAD_ALWAYS,
                            GST_STATIC_CAPS(GST_VIDEO_CAPS_MAKE(LUMALANE_GST_SINK_FORMATS)));
GstStaticPadTemplate source_template =
    GST_STATIC_PAD_TEMPLATE("src", GST_PAD_SRC, GST_PAD_ALWAYS,
                            GST_STATIC_CAPS(GST_VIDEO_CAPS_MAKE(LUMALANE_GST_SOURCE_FORMATS)));

} // namespace

static void color_balance_init(GstColorBalanceInterface *iface) {
    iface->list_channels = list_channels;
    iface->set_value = set_channel;
    iface->get_value = get_channel;
    iface->get_balance_type = balance_type;
}

static void gst_lumalane_convert_init(GstLumalaneConvert *self) {
    self->own = new state;
    for (const lumalane_gst::balance_range &r : balance_ranges) {
        auto *const made =
            GST_COLOR_BALANCE_CHANNEL(g_object_new(GST_TYPE_COLOR_BALANCE_CHANNEL, nullptr));
        made->label = g_strdup(r.channel);
        made->min_value = least_of_channel;
        made->max_value = most_of_channel;
        self->own->channels = g_list_append(self->own->channels, made);
    }
}

static void gst_lumalane_convert_class_init(GstLumalaneConvertClass *klass) {
    GObjectClass *const object_class = G_OBJECT_CLASS(klass);
    GstElementClass *const element_class = GST_ELEMENT_CLASS(klass);
    GstBaseTransformClass *const transform_class = GST_BASE_TRANSFORM_CLASS(klass);
    GstVideoFilterClass *const filter_class = GST_VIDEO_FILTER_CLASS(klass);

    object_class->set_property = set_property;
    object_class->get_property = get_property;
    object_class->finalize = finalize;

    const auto flags = static_cast<GParamFlags>(G_PARAM_READWRITE | G_PARAM_STATIC_STRINGS |
                                                GST_PARAM_CONTROLLABLE | GST_PARAM_MUTABLE_PLAYING);
    const auto install = [&](int which, const char *nick, const char *blurb) {
        const lumalane_gst::balance_range &r = balance_ranges[which];
        g_object_class_install_property(
            object_class, static_cast<guint>(which) + 1,
            g_param_spec_double(r.property, nick, blurb, r.least, r.most, r.neutral, flags));
    };
    /**
     * lumalaneconvert:contrast:
     *
     * How many times as far from black each pixel is; taken at the nearest 1/64.
     */
    install(lumalane_gst::contrast, "Contrast", "Contrast, in steps of 1/64");
    /**
     * lumalaneconvert:brightness:
     *
     * What is added to each pixel; 1 makes black white. Taken at the nearest 1/255.
     */
    install(lumalane_gst::brightness, "Brightness", "Brightness, in steps of 1/255");
    /**
     * lumalaneconvert:saturation:
     *
     * How many times as far from grey each pixel is; taken at the nearest 1/64.
     */
    install(lumalane_gst::saturation, "Saturation", "Saturation, in steps of 1/64");
    /**
     * lumalaneconvert:deinterlace:
     *
     * What becomes of interlaced frames. edge is for YV12 and I420 to YUY2 and RGB; caps that
     * do not have it are refused. But told so while a stream runs, the element warns and goes on as
     * before until caps come that have it or it is started again.
     */
    g_object_class_install_property(
        object_class, property_deinterlace,
        g_param_spec_enum("deinterlace", "Deinterlace", "What becomes of interlaced frames",
                          deinterlace_type(), static_cast<int>(deinterlacing::none),
                          static_cast<GParamFlags>(G_PARAM_READWRITE | G_PARAM_STATIC_STRINGS |
                                                   GST_PARAM_MUTABLE_PLAYING)));
    gst_type_mark_as_plugin_api(deinterlace_type(), static_cast<GstPluginAPIFlags>(0));

    gst_element_class_set_static_metadata(
        element_class, "Lumalane video converter", "Filter/Converter/Video/Effect/Deinterlace",
        "Converts YV12, I420 and YUY2 to RGB and YUV formats, adjusts and deinterlaces on the way",
        "Lumalane");
    gst_element_class_add_static_pad_template(element_class, &sink_template);
    gst_element_class_add_static_pad_template(element_class, &source_template);

    transform_class->start = start;
    transform_class->transform_caps = transform_caps;
    transform_class->fixate_caps = fixate_caps;
    transform_class->accept_caps = accept_caps;
    transform_class->sink_event = sink_event;
    transform_class->decide_allocation = decide_allocation;
    transform_class->transform = transform;
    transform_class->transform_meta = transform_meta;
    transform_class->before_transform = before_transform;
    transform_class->transform_ip_on_passthrough = FALSE;
    filter_class->set_info = set_info;
    filter_class->transform_frame = transform_frame;
}
