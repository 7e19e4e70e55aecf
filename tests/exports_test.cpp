// What the built files define: the shared library to its users, the objects of a target to the
// linker.
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "tests/simd/probe.h"
#include "tests/targets.h"

namespace {

std::string output_of(const std::string &command) {
    std::string output;
    FILE *const pipe = popen(command.c_str(), "r");
    for (int c; (c = std::fgetc(pipe)) != EOF;)
        output += static_cast<char>(c);
    EXPECT_EQ(pclose(pipe), 0) << command;
    return output;
}

// The lines of the output of `command` that have `part` in them.
std::string lines_with(const std::string &part, const std::string &command) {
    std::istringstream lines(output_of(command));
    std::string found;
    for (std::string line; std::getline(lines, line);)
        if (line.find(part) != line.npos)
            found += line + '\n';
    return found;
}

const std::string dynamic_section = LUMALANE_READELF " -dW '" LUMALANE_SHARED_LIBRARY "'";
const std::string program_headers = LUMALANE_READELF " -lW '" LUMALANE_SHARED_LIBRARY "'";

// The list is text of its own: made from the headers it would change with them.
TEST(shared_library, exports_exactly_the_names_that_are_listed) {
    std::ifstream list(LUMALANE_EXPECTED_EXPORTS);
    const std::multiset<std::string> expected(std::istream_iterator<std::string>(list), {});
    EXPECT_EQ(expected.size(), 68u) << "The interface is complete: no function comes or goes.";

    std::istringstream symbols(
        output_of(LUMALANE_NM " -D -P --defined-only '" LUMALANE_SHARED_LIBRARY "'"));
    std::multiset<std::string> exported;
    for (std::string name, type, rest; symbols >> name >> type && std::getline(symbols, rest);) {
        EXPECT_EQ(type, "T") << name;
        exported.insert(name);
    }
    EXPECT_EQ(exported, expected);
}

TEST(shared_library, is_named_after_its_interface) {
    EXPECT_NE(lines_with("(SONAME)", dynamic_section).find("[liblumalane.so.1]"),
              std::string::npos);
}

// What compilers call by themselves.
TEST(shared_library, needs_nothing_but_memory_functions_of_the_c_library) {
    std::istringstream needed(lines_with("(NEEDED)", dynamic_section));
    for (std::string line; std::getline(needed, line);)
        EXPECT_NE(line.find("[libc.so."), std::string::npos) << line;

    const std::set<std::string> known{"memcpy", "memmove", "memset", "memcmp"};
    std::istringstream symbols(
        output_of(LUMALANE_NM " -D -P --undefined-only '" LUMALANE_SHARED_LIBRARY "'"));
    for (std::string name, rest; symbols >> name && std::getline(symbols, rest);)
        EXPECT_TRUE(known.contains(name.substr(0, name.find('@')))) << name;
}

// With every target of the platform in it.
TEST(shared_library, is_small) {
    std::istringstream table(output_of(LUMALANE_SIZE " -B '" LUMALANE_SHARED_LIBRARY "'"));
    std::string heading;
    long text = 0;
    std::getline(table, heading) && table >> text;
    EXPECT_GT(text, 0) << heading;
    EXPECT_LE(text, LUMALANE_MOST_TEXT);
    std::printf("%ld bytes of text\n", text);
}

TEST(shared_library, has_a_stack_that_is_not_executable) {
    const std::string stack = lines_with("GNU_STACK", program_headers);
    EXPECT_NE(stack.find(" RW "), std::string::npos) << stack;
}

TEST(shared_library, is_read_only_once_it_is_loaded) {
    EXPECT_NE(lines_with("GNU_RELRO", program_headers), "");
    EXPECT_NE(lines_with("NOW", dynamic_section), "");
}

class target_objects : public testing::TestWithParam<const lumalane::target *> {};

// What two objects define under one name the linker takes from either: code for a newer processor
// must not be what it picks for an older one. So everything lies in the namespace of the target.
TEST_P(target_objects, define_nothing_outside_of_their_namespace) {
    const std::string target = GetParam()->name;
    const std::string within = "8lumalane" + std::to_string(target.size()) + target;
    std::istringstream symbols(output_of(
        LUMALANE_NM " -P -g --defined-only '@" LUMALANE_OBJECT_LISTS "/" + target + ".objects'"));
    int defined = 0;
    for (std::string name, line; symbols >> name && std::getline(symbols, line);) {
        const bool names_its_file = name.back() == ':';
        const bool program_counter_thunk = name.starts_with("__x86.get_pc_thunk.");
        if (names_its_file || program_counter_thunk)
            continue;
        // In front of the namespace an encoding has only letters: _ZN, _ZNK, _ZZN, _ZTVN ...
        const std::size_t first_digit = std::min(name.find_first_of("0123456789"), name.size());
        EXPECT_EQ(name.substr(first_digit, within.size()), within) << name;
        ++defined;
    }
    EXPECT_GT(defined, 0);
}

// The bytes are the same whichever way they are stored, and with or without a fence: only the
// instructions tell.
TEST_P(target_objects, store_around_the_cache_if_the_target_does) {
    const lumalane::row_kernels &rows = GetParam()->rows;
    const bool streams = tests::probe_of(*GetParam()).streams;
    // Kernels of the others make what other kernels read.
    std::set<std::string> to_surfaces{"alpha", "blend", "double", "emit", "key", "packed", "plane"};
    const struct {
        int bytes;
        const char *name;
    } registers[] = {{16, "xmm"}, {32, "ymm"}, {64, "zmm"}};

    std::ifstream list(LUMALANE_OBJECT_LISTS "/" + std::string(rows.target) + ".objects");
    for (std::string object; std::getline(list, object);) {
        const std::string file = std::filesystem::path(object).filename();
        const std::string kernels = file.substr(0, file.find('.'));
        std::istringstream code(output_of(LUMALANE_OBJDUMP " -d '" + object + "'"));
        std::string stores;
        int fences = 0;
        for (std::string line; std::getline(code, line);) {
            fences += line.find(LUMALANE_STORE_FENCE) != line.npos;
            if (line.find(LUMALANE_STREAMING_STORE) != line.npos)
                stores += line + '\n';
        }
        EXPECT_EQ(fences, streams && kernels == "plane" ? 1 : 0) << object;
        if (to_surfaces.erase(kernels) == 0 || !streams) {
            EXPECT_EQ(stores, "") << object;
            continue;
        }
        // Of a plane what is narrower than a line of the cache is stored in it.
        for (const auto &[bytes, name] : registers)
            if (bytes == rows.vector_bytes || (bytes < rows.vector_bytes && kernels != "plane")) {
                EXPECT_NE(stores.find(name), stores.npos)
                    << object << " has no such store of " << bytes << " bytes";
            }
    }
    EXPECT_EQ(to_surfaces, std::set<std::string>{});
}

// What the targets say of themselves is all that the test above goes by.
TEST(targets, store_around_the_cache_on_processors_of_which_they_can) {
    const lumalane::target &widest = *(lumalane::targets().end() - 1);
    EXPECT_EQ(tests::probe_of(widest).streams, LUMALANE_WIDEST_TARGET_STREAMS) << widest.name;
}

// Those too that this processor does not run.
std::vector<const lumalane::target *> all_targets() {
    std::vector<const lumalane::target *> all;
    for (const lumalane::target &target : lumalane::targets())
        all.push_back(&target);
    return all;
}

INSTANTIATE_TEST_SUITE_P(targets, target_objects, testing::ValuesIn(all_targets()),
                         [](const auto &target) { return target.param->name; });

} // namespace
