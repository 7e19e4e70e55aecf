#include "tests/lanes/probe.h"

namespace lumalane {

namespace portable {
extern constinit const tests::probe probe;
}
namespace sse2 {
extern constinit const tests::probe probe;
}
namespace avx2 {
extern constinit const tests::probe probe;
}

} // namespace lumalane

namespace tests {

const probe &probe_of(lumalane::lane_set set) {
    switch (set) {
    case lumalane::lane_set::portable:
        break;
    case lumalane::lane_set::sse2:
        return lumalane::sse2::probe;
    case lumalane::lane_set::avx2:
        return lumalane::avx2::probe;
    }
    return lumalane::portable::probe;
}

} // namespace tests
