// lumalane_bench_gstreamer [WIDTHxHEIGHT [FRAMES]]: how long lumalaneconvert takes beside videoconvert,
// and with an adjustment beside videobalance and videoconvert, as a Markdown table. Of each pair of
// formats all four take their turns at every frame of one pipeline; medians. The time is that of the
// processor for the thread, which all elements run on: other programs do not count.
#include "bench/median.h"
#include "lumalaneconvert.h"

#include <gst/gst.h>

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

double processor_seconds() {
    timespec spent;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &spent);
    return static_cast<double>(spent.tv_sec) + static_cast<double>(spent.tv_nsec) * 1e-9;
}

// Elements between two pads, and how long their frames took, and copies of those before.
struct contestant {
    std::vector<double> times{}, copies{};
    double begun = 0;
};

// All begin with memory of their own, just written: videobalance adjusts in place.
GstPadProbeReturn begin(GstPad *, GstPadProbeInfo *info, gpointer data) {
    auto *const c = static_cast<contestant *>(data);
    auto *const buffer = GST_PAD_PROBE_INFO_BUFFER(info);
    const double start = processor_seconds();
    info->data = gst_buffer_copy_deep(buffer);
    c->copies.push_back(processor_seconds() - start);
    gst_buffer_unref(buffer);
    c->begun = processor_seconds();
    return GST_PAD_PROBE_OK;
}

GstPadProbeReturn end(GstPad *, GstPadProbeInfo *, gpointer data) {
    auto *const c = static_cast<contestant *>(data);
    c->times.push_back(processor_seconds() - c->begun);
    return GST_PAD_PROBE_OK;
}

void probe(GstElement *pipeline, const std::string &element, const char *pad_name,
           GstPadProbeCallback callback, contestant &c) {
    GstElement *const found = gst_bin_get_by_name(GST_BIN(pipeline), element.c_str());
    GstPad *const pad = gst_element_get_static_pad(found, pad_name);
    gst_pad_add_probe(pad, GST_PAD_PROBE_TYPE_BUFFER, callback, &c, nullptr);
    gst_object_unref(pad);
    gst_object_unref(found);
}

// The first frames negotiate, and meet memory for the first time.
constexpr int warm_up = 10;

double median_when_warm(std::vector<double> times) {
    if (times.size() <= 2 * warm_up)
        throw std::runtime_error("too few frames");
    times.erase(times.begin(), times.begin() + warm_up);
    return lumalane::bench::median(times);
}

std::string name_of(size_t chain, size_t element) {
    return std::to_string(chain) + "-" + std::to_string(element);
}

// Seconds per frame of each chain of elements, and of a copy of the frame.
std::vector<double> measure(const std::string &from, const std::string &to, const std::string &size,
                            int frames, const std::vector<std::vector<std::string>> &chains) {
    std::ostringstream text;
    text << "videotestsrc pattern=smpte num-buffers=" << frames << " ! video/x-raw,format=" << from
         << "," << size << ",colorimetry=bt601,framerate=25/1 ! tee name=all";
    for (size_t i = 0; i < chains.size(); ++i) {
        text << " all.";
        for (size_t k = 0; k < chains[i].size(); ++k)
            text << " ! " << chains[i][k] << " name=" << name_of(i, k);
        text << " ! video/x-raw,format=" << to << " ! fakesink async=false sync=false";
    }
    GError *error = nullptr;
    GstElement *const pipeline = gst_parse_launch(text.str().c_str(), &error);
    if (!pipeline || error)
        throw std::runtime_error(error ? error->message : text.str());
    std::vector<contestant> all(chains.size());
    for (size_t i = 0; i < chains.size(); ++i) {
        probe(pipeline, name_of(i, 0), "sink", begin, all[i]);
        probe(pipeline, name_of(i, chains[i].size() - 1), "src", end, all[i]);
    }
    gst_element_set_state(pipeline, GST_STATE_PLAYING);
    GstBus *const bus = gst_element_get_bus(pipeline);
    GstMessage *const last = gst_bus_timed_pop_filtered(
        bus, GST_CLOCK_TIME_NONE, static_cast<GstMessageType>(GST_MESSAGE_EOS | GST_MESSAGE_ERROR));
    const bool ended = GST_MESSAGE_TYPE(last) == GST_MESSAGE_EOS;
    gst_message_unref(last);
    gst_object_unref(bus);
    gst_element_set_state(pipeline, GST_STATE_NULL);
    gst_object_unref(pipeline);
    if (!ended)
        throw std::runtime_error("the pipeline failed: " + text.str());
    std::vector<double> medians;
    for (const contestant &c : all)
        medians.push_back(median_when_warm(c.times));
    medians.push_back(median_when_warm(all[0].copies));
    return medians;
}

void print_table(int width, int height, int frames) {
    const std::string size = "width=" + std::to_string(width) + ",height=" + std::to_string(height);
    const std::string balance = " brightness=0.05 contrast=1.2 saturation=0.8";
    const char *const pairs[][2] = {{"I420", "BGRx"}, {"I420", "BGR"},  {"I420", "RGB16"},
                                    {"I420", "YUY2"}, {"YUY2", "BGRx"}, {"YUY2", "BGR"},
                                    {"YUY2", "RGB16"}};
    std::printf("Milliseconds per frame of %dx%d:\n\n"
                "| From | To | lumalaneconvert | videoconvert | times as fast | adjusting | "
                "videobalance ! videoconvert | times as fast | a copy of the frame |\n"
                "|---|---|---:|---:|---:|---:|---:|---:|---:|\n",
                width, height);
    for (const auto &[from, to] : pairs) {
        const std::vector<double> m =
            measure(from, to, size, frames,
                    {{"lumalaneconvert"},
                     {"videoconvert n-threads=1"},
                     {"lumalaneconvert" + balance},
                     {"videobalance" + balance, "videoconvert n-threads=1"}});
        std::printf("| %s | %s | %.3f | %.3f | %.1f | %.3f | %.3f | %.1f | %.3f |\n", from, to,
                    1e3 * m[0], 1e3 * m[1], m[1] / m[0], 1e3 * m[2], 1e3 * m[3], m[3] / m[2],
                    1e3 * m[4]);
        std::fflush(stdout);
    }
}

} // namespace

int main(int argc, char **argv) {
    gst_init(&argc, &argv);
    int width = 1280, height = 720;
    const int frames = argc > 2 ? std::atoi(argv[2]) : 150;
    if (argc > 3 || (argc > 1 && std::sscanf(argv[1], "%dx%d", &width, &height) != 2) ||
        !GST_ELEMENT_REGISTER(lumalaneconvert, nullptr))
        return std::fputs("lumalane_bench_gstreamer [WIDTHxHEIGHT [FRAMES]]\n", stderr), 2;
    try {
        print_table(width, height, frames);
    } catch (const std::exception &e) {
        return std::fprintf(stderr, "lumalane_bench_gstreamer: %s\n", e.what()), 1;
    }
    return 0;
}
