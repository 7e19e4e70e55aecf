// One picture on several threads: slices of an even number of rows each.
#include <lumalane.h>

#include <cstdio>
#include <thread>
#include <vector>

int main() {
    const int width = 1280, height = 720, pitch = width, stride = 4 * width;
    std::vector<unsigned char> y(width * height), u(y.size() / 4), v(u);
    for (std::size_t i = 0; i < y.size(); ++i)
        y[i] = static_cast<unsigned char>(i * 7),
        u[i / 4] = v[i / 4] = static_cast<unsigned char>(i);
    std::vector<unsigned char> whole(stride * height), sliced(whole.size());

    loadimage_rgb32(y.data(), u.data(), v.data(), whole.data(), width, height, pitch,
                    stride, nullptr);

    std::vector<std::thread> threads;
    const int count = 4,
              rows = height / count / 2 * 2; // even: two rows share a row of chroma
    for (int i = 0; i < count; ++i) {
        const int first = i * rows, last = i + 1 < count ? first + rows : height;
        threads.emplace_back([&, first, last] {
            const int chroma = first / 2 * (pitch / 2);
            loadimage_rgb32(y.data() + first * pitch, u.data() + chroma,
                            v.data() + chroma, sliced.data() + first * stride, width,
                            last - first, pitch, stride, nullptr);
        });
    }
    for (std::thread &t : threads)
        t.join();
    std::puts(sliced == whole ? "the same bytes" : "other bytes");
}
