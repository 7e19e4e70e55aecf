#include "tests/simd/probe.h"

namespace lumalane {

#define LUMALANE_TARGET(name, ...)                                                                 \
    namespace name {                                                                               \
    extern constinit const tests::probe probe;                                                     \
    }
#include "targets_built.inc"
#undef LUMALANE_TARGET

} // namespace lumalane

namespace tests {

const probe &probe_of(const lumalane::target &target) {
    // In the order of lumalane::targets().
    static const probe *const probes[] = {
#define LUMALANE_TARGET(name, ...) &lumalane::name::probe,
#include "targets_built.inc"
#undef LUMALANE_TARGET
    };
    return *probes[&target - lumalane::targets().begin()];
}

} // namespace tests
