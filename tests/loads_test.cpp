// The shared library loaded, called on a thread that ends, and unloaded, a thousand times.
#include <dlfcn.h>

#include <cstdio>
#include <fstream>
#include <map>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#include "tests/stretched_plane.h"

namespace {

// Mappings of this process that are of the library, and all.
struct mappings {
    int of_it = 0, all = 0;
};

mappings count_mappings() {
    mappings count;
    std::ifstream file("/proc/self/maps");
    for (std::string line; std::getline(file, line); ++count.all)
        count.of_it += line.find("liblumalane") != std::string::npos;
    return count;
}

TEST(shared_library, is_new_each_time_it_is_loaded_and_leaves_nothing) {
    std::ifstream list(LUMALANE_EXPECTED_EXPORTS);
    std::map<std::string, std::string> mangled; // by the plain name, which stands behind its length
    for (std::string name; std::getline(list, name);) {
        const std::size_t digits = name.find_first_not_of("0123456789", 2);
        mangled[name.substr(digits, std::stoul(name.substr(2)))] = name;
    }
    ASSERT_EQ(mangled.size(), 68u);

    constexpr unsigned loads = 1000;
    mappings first;
    for (unsigned i = 0; i < loads; ++i) {
        void *const library = dlopen(LUMALANE_SHARED_LIBRARY, RTLD_NOW | RTLD_LOCAL);
        ASSERT_NE(library, nullptr) << dlerror();
        const auto find = [&](auto *&function, const char *name) {
            function = reinterpret_cast<std::remove_reference_t<decltype(function)>>(
                dlsym(library, mangled.at(name).c_str()));
            return function != nullptr;
        };
        void (*stretch)(LUMALANE_PARAMETERS_plane_stretch_ajust);
        void (*set)(LUMALANE_PARAMETERS_parameters);
        ASSERT_TRUE(find(stretch, "strech_pic_1X2_adjust"));
        ASSERT_TRUE(find(set, "get_contrast_data"));

        // Before it is set, every adjusted sample is 0: also when it was set before it was unloaded.
        bool is_new = false;
        std::thread([&] { is_new = tests::stretches_to(0, stretch); }).join();
        ASSERT_TRUE(is_new);
        contrast_data unchanged{64, 64, 0, 0, 0, 0, 0, 0};
        set(&unchanged);
        ASSERT_TRUE(tests::stretches_to(77, stretch));

        ASSERT_EQ(dlclose(library), 0);
        ASSERT_EQ(dlopen(LUMALANE_SHARED_LIBRARY, RTLD_NOW | RTLD_NOLOAD), nullptr);
        const mappings now = count_mappings();
        ASSERT_EQ(now.of_it, 0);
        if (i == 0)
            first = now;
        ASSERT_LE(now.all, first.all + 8) << "after " << i; // what the C library keeps of threads
    }
    std::printf("figure: loads-linux %u\n", loads);
}

} // namespace
