// One call of one of the functions on one target, against its model: every byte, and nothing outside of
// what the model touches.
#include "tests/fuzz/fuzz.h"

#include <vector>

#include "abi/targets.h"
#include "tests/differential/differential.h"

namespace {

std::vector<const lumalane::target *> runnable_targets() {
    std::vector<const lumalane::target *> runnable;
    for (const lumalane::target &t : lumalane::targets())
        if (t.runs_here())
            runnable.push_back(&t);
    return runnable;
}

differential::target choose_target(differential::random &r) {
    static const std::vector<const lumalane::target *> runnable = runnable_targets();
    const lumalane::target &chosen = *runnable[r.between(0, static_cast<int>(runnable.size()) - 1)];
    const bool cached = r.one_in(2), in_order = r.one_in(8);
    return {{
                chosen.name,
#define LUMALANE_EXPORT(signature, name) name,
#include "abi/exports.inc"
#undef LUMALANE_EXPORT
            },
            [&chosen, cached, in_order] {
                lumalane::force(chosen);
                lumalane::assume_last_level_cache(cached ? 0 : 1);
                lumalane::force_in_order(in_order);
                fuzz::doing = differential::what_runs();
            },
            std::string(cached ? "cached" : "non-temporal") + (in_order ? ", in order" : "")};
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    differential::random r = fuzz::choices_of(data, size);
    const std::vector<differential::subject> &all = differential::subjects();
    const differential::subject &subject = all[r.between(0, static_cast<int>(all.size()) - 1)];
    const differential::target target = choose_target(r);
    const differential::outcome result = differential::run(subject, {target}, r);
    if (!result.failure.empty())
        fuzz::report(result.failure);
    return 0;
}
