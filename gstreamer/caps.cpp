#include "caps.h"

#include <array>
#include <initializer_list>
#include <string>
#include <vector>

namespace lumalane_gst {

namespace {

using formats = std::vector<GstVideoFormat>;

// In the order of what they keep of a picture.
constexpr std::array<GstVideoFormat, 6> all_formats = {
    GST_VIDEO_FORMAT_I420, GST_VIDEO_FORMAT_YV12, GST_VIDEO_FORMAT_YUY2,
    GST_VIDEO_FORMAT_BGRx, GST_VIDEO_FORMAT_BGR,  GST_VIDEO_FORMAT_RGB16};

// The strings of a field, which may be a list, or nothing if it is absent.
std::vector<std::string> strings_of(const GstStructure *s, const char *field) {
    std::vector<std::string> found;
    const GValue *const value = gst_structure_get_value(s, field);
    if (value && G_VALUE_HOLDS_STRING(value))
        found.emplace_back(g_value_get_string(value));
    else if (value && GST_VALUE_HOLDS_LIST(value))
        for (guint i = 0; i < gst_value_list_get_size(value); ++i)
            if (const GValue *const one = gst_value_list_get_value(value, i);
                G_VALUE_HOLDS_STRING(one))
                found.emplace_back(g_value_get_string(one));
    return found;
}

void set_strings(GstStructure *s, const char *field, const std::vector<std::string> &strings) {
    GValue list = G_VALUE_INIT;
    gst_value_list_init(&list, static_cast<guint>(strings.size()));
    for (const std::string &text : strings) {
        GValue one = G_VALUE_INIT;
        g_value_init(&one, G_TYPE_STRING);
        g_value_set_string(&one, text.c_str());
        gst_value_list_append_and_take_value(&list, &one);
    }
    if (strings.size() == 1)
        gst_structure_set(s, field, G_TYPE_STRING, strings[0].c_str(), nullptr);
    else
        gst_structure_set_value(s, field, &list);
    g_value_unset(&list);
}

bool serves(GstPadDirection side, GstVideoFormat format) {
    return side == GST_PAD_SRC || !is_rgb(format);
}

formats formats_of(const GstStructure *s, GstPadDirection side) {
    formats found;
    const bool any = !gst_structure_has_field(s, "format");
    const std::vector<std::string> names = strings_of(s, "format");
    for (const GstVideoFormat format : all_formats)
        if (serves(side, format)) {
            bool has = any;
            for (const std::string &name : names)
                has = has || name == gst_video_format_to_string(format);
            if (has)
                found.push_back(format);
        }
    return found;
}

bool is_planar(GstVideoFormat format) {
    lumalane::format known;
    return format_of(format, known) && lumalane::is_planar(known);
}

bool makes(GstVideoFormat from, GstVideoFormat to, deinterlacing how) {
    lumalane::format source, destination;
    return format_of(from, source) && format_of(to, destination) &&
           converts(source, destination, how);
}

// ---- Colorimetry -------------------------------------------------------------------------------

bool is_bt601(const GstVideoColorimetry &c) {
    return c.matrix == GST_VIDEO_COLOR_MATRIX_BT601 && c.range == GST_VIDEO_COLOR_RANGE_16_235;
}

bool is_full_rgb(const GstVideoColorimetry &c) {
    return c.matrix == GST_VIDEO_COLOR_MATRIX_RGB && c.range == GST_VIDEO_COLOR_RANGE_0_255;
}

// How such colorimetry is written: transfer and primaries do not matter to what is computed, so those
// that video has are all named. The first one is taken where nothing else is asked for.
std::vector<std::string> colorimetries(const char *first, GstVideoColorRange range,
                                       GstVideoColorMatrix matrix) {
    std::vector<std::string> made{first};
    for (const GstVideoTransferFunction transfer :
         {GST_VIDEO_TRANSFER_UNKNOWN, GST_VIDEO_TRANSFER_GAMMA22, GST_VIDEO_TRANSFER_BT709,
          GST_VIDEO_TRANSFER_SRGB, GST_VIDEO_TRANSFER_GAMMA28, GST_VIDEO_TRANSFER_BT601})
        for (const GstVideoColorPrimaries primaries :
             {GST_VIDEO_COLOR_PRIMARIES_UNKNOWN, GST_VIDEO_COLOR_PRIMARIES_BT709,
              GST_VIDEO_COLOR_PRIMARIES_BT470M, GST_VIDEO_COLOR_PRIMARIES_BT470BG,
              GST_VIDEO_COLOR_PRIMARIES_SMPTE170M, GST_VIDEO_COLOR_PRIMARIES_SMPTE240M}) {
            const GstVideoColorimetry c = {range, matrix, transfer, primaries};
            gchar *const text = gst_video_colorimetry_to_string(&c);
            if (text && made[0] != text)
                made.emplace_back(text);
            g_free(text);
        }
    return made;
}

const std::vector<std::string> &bt601_colorimetries() {
    static const std::vector<std::string> all = colorimetries(
        GST_VIDEO_COLORIMETRY_BT601, GST_VIDEO_COLOR_RANGE_16_235, GST_VIDEO_COLOR_MATRIX_BT601);
    return all;
}

const std::vector<std::string> &rgb_colorimetries() {
    static const std::vector<std::string> all = colorimetries(
        GST_VIDEO_COLORIMETRY_SRGB, GST_VIDEO_COLOR_RANGE_0_255, GST_VIDEO_COLOR_MATRIX_RGB);
    return all;
}

// Whether one of those that a field names is of the kind, or none is named.
bool allows(const GstStructure *s, bool is_kind(const GstVideoColorimetry &)) {
    if (!gst_structure_has_field(s, "colorimetry"))
        return true;
    for (const std::string &text : strings_of(s, "colorimetry")) {
        GstVideoColorimetry c;
        if (gst_video_colorimetry_from_string(&c, text.c_str()) && is_kind(c))
            return true;
    }
    return false;
}

// What fixed caps are, with what they leave to GStreamer; false if they do not tell enough.
bool info_of(const GstStructure *s, GstVideoInfo &info) {
    GstCaps *const caps = gst_caps_new_full(gst_structure_copy(s), nullptr);
    const bool is = gst_video_info_from_caps(&info, caps);
    gst_caps_unref(caps);
    return is;
}

// Names the colorimetry that they then have, so that nothing else is made of it behind.
void name_colorimetry(GstStructure *fixed) {
    GstVideoInfo info;
    if (gst_structure_has_field(fixed, "colorimetry") || !info_of(fixed, info))
        return;
    gchar *const text = gst_video_colorimetry_to_string(&info.colorimetry);
    if (text)
        set_strings(fixed, "colorimetry", {text});
    g_free(text);
}

// Whether RGB can be made of it.
bool allows_rgb(const GstStructure *yuv, bool fixed) {
    GstVideoInfo info;
    return fixed && info_of(yuv, info) ? has_bt601(info) : allows(yuv, is_bt601);
}

// ---- Formats -----------------------------------------------------------------------------------

// Fields that belong to the pixels, without those that the other pad has anew.
struct kept {
    bool chroma_site;
    bool colorimetry;
};

void append(GstCaps *to, const GstStructure *like, const formats &named, kept keep,
            const std::vector<std::string> *colorimetry = nullptr) {
    if (named.empty())
        return;
    GstStructure *const s = gst_structure_copy(like);
    std::vector<std::string> names;
    for (const GstVideoFormat format : named)
        names.emplace_back(gst_video_format_to_string(format));
    set_strings(s, "format", names);
    if (!keep.chroma_site)
        gst_structure_remove_field(s, "chroma-site");
    if (!keep.colorimetry)
        gst_structure_remove_field(s, "colorimetry");
    if (colorimetry)
        set_strings(s, "colorimetry", *colorimetry);
    gst_caps_append_structure(to, s);
}

// What the formats of `s` become on the other side, with fields as they are in `other`.
void append_formats(GstCaps *to, GstPadDirection direction, const GstStructure *s,
                    const GstStructure *other, deinterlacing how, bool fixed) {
    const GstPadDirection across = direction == GST_PAD_SINK ? GST_PAD_SRC : GST_PAD_SINK;
    formats same, planar, yuv, rgb, of_rgb;
    for (const GstVideoFormat there : all_formats) {
        if (!serves(across, there))
            continue;
        for (const GstVideoFormat here : formats_of(s, direction)) {
            if (!(direction == GST_PAD_SINK ? makes(here, there, how) : makes(there, here, how)))
                continue;
            formats &group = is_rgb(here)                          ? of_rgb
                             : here == there                       ? same
                             : is_rgb(there)                       ? rgb
                             : is_planar(here) && is_planar(there) ? planar
                                                                   : yuv;
            if (group.empty() || group.back() != there)
                group.push_back(there);
        }
    }
    append(to, other, same, {true, true});
    append(to, other, planar, {true, true});
    append(to, other, yuv, {false, true});
    if (allows_rgb(s, fixed))
        append(to, other, rgb, {false, false}, &rgb_colorimetries());
    if (!of_rgb.empty() && allows(s, is_full_rgb)) {
        // The first one by itself: of several, videoconvert keeps what it has instead.
        const std::vector<std::string> first{GST_VIDEO_COLORIMETRY_BT601};
        append(to, other, of_rgb, {false, false}, &first);
        append(to, other, of_rgb, {false, false}, &bt601_colorimetries());
    }
}

// ---- Fields ------------------------------------------------------------------------------------

// `s` with those of its interlace modes that are among `modes`, or null if none is.
GstStructure *with_modes(const GstStructure *s, std::initializer_list<const char *> modes,
                         bool if_absent) {
    std::vector<std::string> left;
    const bool any = !gst_structure_has_field(s, "interlace-mode");
    const std::vector<std::string> named = strings_of(s, "interlace-mode");
    for (const char *mode : modes) {
        bool has = any;
        for (const std::string &name : named)
            has = has || name == mode;
        if (has)
            left.emplace_back(mode);
    }
    if (left.empty() || (any && !if_absent))
        return nullptr;
    GstStructure *const copy = gst_structure_copy(s);
    if (!any)
        set_strings(copy, "interlace-mode", left);
    return copy;
}

void append_structure(GstCaps *to, GstPadDirection direction, const GstStructure *s,
                      deinterlacing how, bool fixed) {
    const auto add = [&](GstStructure *here, GstStructure *there, deinterlacing fields) {
        append_formats(to, direction, here, there ? there : here, fields, fixed);
        gst_structure_free(here);
        if (there)
            gst_structure_free(there);
    };
    const auto with_mode = [](const GstStructure *like, const std::vector<std::string> &modes) {
        GstStructure *const copy = gst_structure_copy(like);
        set_strings(copy, "interlace-mode", modes);
        gst_structure_remove_field(copy, "field-order");
        return copy;
    };
    if (how == deinterlacing::none) {
        if (GstStructure *const any = with_modes(s, {"progressive", "interleaved", "mixed"}, true))
            add(any, nullptr, how);
        return;
    }
    GstStructure *const progressive = with_modes(s, {"progressive"}, true);
    if (direction == GST_PAD_SINK) {
        if (progressive)
            add(progressive, nullptr, deinterlacing::none);
        if (GstStructure *const fields = with_modes(s, {"interleaved", "mixed"}, !fixed))
            add(fields, with_mode(fields, {"progressive"}), how);
    } else if (progressive) {
        add(gst_structure_copy(progressive), with_mode(progressive, {"progressive"}),
            deinterlacing::none);
        add(progressive, with_mode(progressive, {"interleaved", "mixed"}), how);
    }
}

} // namespace

bool format_of(GstVideoFormat from, lumalane::format &to) {
    switch (from) {
    case GST_VIDEO_FORMAT_YV12:
        to = lumalane::format::yv12;
        return true;
    case GST_VIDEO_FORMAT_I420:
        to = lumalane::format::i420;
        return true;
    case GST_VIDEO_FORMAT_YUY2:
        to = lumalane::format::yuy2;
        return true;
    case GST_VIDEO_FORMAT_BGRx:
        to = lumalane::format::rgb32;
        return true;
    case GST_VIDEO_FORMAT_BGR:
        to = lumalane::format::rgb24;
        return true;
    case GST_VIDEO_FORMAT_RGB16:
        to = lumalane::format::rgb565;
        return true;
    default:
        return false;
    }
}

bool is_rgb(GstVideoFormat format) {
    return GST_VIDEO_FORMAT_INFO_IS_RGB(gst_video_format_get_info(format));
}

bool has_bt601(const GstVideoInfo &yuv) { return is_bt601(yuv.colorimetry); }

GstCaps *transform_caps(GstPadDirection direction, GstCaps *caps, deinterlacing how) {
    GstCaps *const made = gst_caps_new_empty();
    const bool fixed = gst_caps_is_fixed(caps);
    for (guint i = 0; i < gst_caps_get_size(caps); ++i)
        if (gst_caps_features_is_equal(gst_caps_get_features(caps, i),
                                       GST_CAPS_FEATURES_MEMORY_SYSTEM_MEMORY)) {
            GstStructure *const s = gst_structure_copy(gst_caps_get_structure(caps, i));
            if (fixed && direction == GST_PAD_SINK)
                name_colorimetry(s);
            append_structure(made, direction, s, how, fixed);
            gst_structure_free(s);
        }
    return made;
}

GstCaps *fixate_caps(GstCaps *caps, GstCaps *others) {
    const char *const kept = gst_structure_get_string(gst_caps_get_structure(caps, 0), "format");
    const GstVideoFormat from =
        kept ? gst_video_format_from_string(kept) : GST_VIDEO_FORMAT_UNKNOWN;
    std::vector<GstVideoFormat> order{from};
    order.insert(order.end(), all_formats.begin(), all_formats.end());
    for (const GstVideoFormat wanted : order)
        for (guint i = 0; i < gst_caps_get_size(others); ++i)
            for (const GstVideoFormat has :
                 formats_of(gst_caps_get_structure(others, i), GST_PAD_SRC))
                if (has == wanted) {
                    GstCaps *const one = gst_caps_copy_nth(others, i);
                    gst_caps_set_simple(one, "format", G_TYPE_STRING,
                                        gst_video_format_to_string(wanted), nullptr);
                    gst_caps_unref(others);
                    return gst_caps_fixate(one);
                }
    return gst_caps_fixate(others);
}

} // namespace lumalane_gst
