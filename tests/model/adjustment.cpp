#include "tests/model/adjustment.h"

#include "tests/model/lanes.h"
#include "tests/model/models.h"

namespace model {

namespace {
adjustment_state process_wide;
}

const adjustment_state &state() { return process_wide; }

std::uint8_t adjust(std::uint8_t sample, adjustment by) {
    std::int16_t p = multiply_low(sample, by.gain);
    p = add_saturate(p, 32);
    p = shift_right_logical(p, 6);
    p = add_saturate(p, by.offset);
    return narrow_saturate(p);
}

std::uint8_t as_it_is(std::uint8_t sample, adjustment) { return sample; }

void get_contrast_data(memory &m, void *params) {
    const auto &record = *static_cast<const contrast_data *>(params);
    const auto low_half = [&](const int &field) { return low16(m.field(field)); };
    const auto sum = [&](const int &a, const int &b) { return low16(low_half(a) + low_half(b)); };
    process_wide = {
        .luma_gain = low_half(record.y_gain),
        .chroma_gain = low_half(record.uv_gain),
        .luma_offset = sum(record.y_offset, record.y_offset_extra),
        .u_offset = sum(record.u_offset, record.u_offset_extra),
        .v_offset = sum(record.v_offset, record.v_offset_extra),
    };
}

} // namespace model
