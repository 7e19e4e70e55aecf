#include "tests/differential/draw.h"
#include "tests/model/models.h"

namespace differential {

const std::vector<subject> &subjects() {
    static const std::vector<subject> all = {
#define LUMALANE_EXPORT(signature, name)                                                           \
    {#name, [](random &r) {                                                                        \
         return draw_##signature(r, #name, model::name, &tests::function_table::name);             \
     }},
#include "abi/exports.inc"
#undef LUMALANE_EXPORT
    };
    return all;
}

} // namespace differential
