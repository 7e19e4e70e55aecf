#include "picture/adjustment.h"
#include "picture/calls.h"
#include "picture/machine.h"

namespace lumalane {

namespace {

// Zero until the first get_contrast_data(). Written and read as relaxed atomics: a reader on
// another thread may see some values old and some new, but each of them whole.
short y_gain, uv_gain, y_offset, u_offset, v_offset;

void write(short &value, int bits) {
    __atomic_store_n(&value, static_cast<short>(bits), __ATOMIC_RELAXED);
}

short read(const short &value) { return __atomic_load_n(&value, __ATOMIC_RELAXED); }

// The sum of the low 16 bits, modulo 2^16.
int sum(int offset, int extra) {
    return static_cast<int>(static_cast<unsigned>(offset) + static_cast<unsigned>(extra));
}

} // namespace

adjustment current_adjustment() {
    const short chroma_gain = read(uv_gain);
    return {prepared(read(y_gain), read(y_offset)), prepared(chroma_gain, read(u_offset)),
            prepared(chroma_gain, read(v_offset))};
}

void get_contrast_data(const machine &, const call::parameters &p) {
    const contrast_data &data = *static_cast<const contrast_data *>(p.params);
    write(y_gain, data.y_gain);
    write(uv_gain, data.uv_gain);
    write(y_offset, sum(data.y_offset, data.y_offset_extra));
    write(u_offset, sum(data.u_offset, data.u_offset_extra));
    write(v_offset, sum(data.v_offset, data.v_offset_extra));
}

} // namespace lumalane
