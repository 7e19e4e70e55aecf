#include "bench/library.h"

#include "abi/targets.h"
#include "bench/contest.h"

#include <algorithm>
#include <dlfcn.h>
#include <filesystem>
#include <stdexcept>
#include <string_view>
#include <typeinfo>

namespace lumalane::bench {
namespace {

constexpr functions own_functions = {
#define LUMALANE_EXPORT(signature, name) &::name,
#include "abi/exports.inc"
#undef LUMALANE_EXPORT
};

// Null: there is none of that name, or this processor does not run it.
const target *find_target(const std::string &name) {
    if (name == widest_target)
        return find_target(target_names().back());
    const target_list all = targets();
    const target *const found = std::find_if(all.begin(), all.end(), [&](const target &target) {
        return target.name == name && target.runs_here();
    });
    return found == all.end() ? nullptr : found;
}

// Its address in a shared library. The symbol's name is made of the function's name and the encoded
// types of its arguments. The encoded type of the function has them between "Fv" and "E".
template <class F>
F *find_function(void *library, const std::string &name) {
    const std::string_view type = typeid(F).name();
    const std::string arguments(type.substr(2, type.size() - 3));
    const std::string symbol = "_Z" + std::to_string(name.size()) + name + arguments;
    void *const function = dlsym(library, symbol.c_str());
    if (!function)
        throw std::runtime_error(dlerror());
    return reinterpret_cast<F *>(function);
}

// It stays loaded.
functions load(const std::string &file) {
    // A name without a slash would be searched for in the system's directories.
    void *const library = dlopen(std::filesystem::absolute(file).c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!library)
        throw std::runtime_error(dlerror());
    return {
#define LUMALANE_EXPORT(signature, name) find_function<decltype(::name)>(library, #name),
#include "abi/exports.inc"
#undef LUMALANE_EXPORT
    };
}

} // namespace

std::vector<std::string> target_names() {
    std::vector<std::string> names;
    for (const target &target : targets())
        if (target.runs_here())
            names.push_back(target.name);
    return names;
}

std::vector<std::string> shipped_target_names() {
    std::vector<std::string> names;
    for (const char *name : {LUMALANE_SHIPPED_TARGETS})
        if (find_target(name))
            names.push_back(name);
    return names;
}

library::library(const std::string &build)
    : target_(find_target(build)), functions_(target_ ? own_functions : load(build)) {}

void library::prepare() const {
    contrast_data values = adjustment;
    functions_.get_contrast_data(&values);
    if (target_)
        force(*target_);
}

task library::work(const job &job, scene &scene, slice rows) const {
    return [this, &job, &scene, rows] { job.run(functions_, scene, rows); };
}

double library::time(const job &job, scene &scene, long calls) const {
    prepare();
    return bench::time(work(job, scene, scene.whole()), calls);
}

} // namespace lumalane::bench
