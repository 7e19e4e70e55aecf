#include "bench/peers.h"

#include <cstring>

namespace lumalane::bench {

const peer memset_surface{"memset", "of the surface",
                          [](scene &s) -> task {
                              return [&s] {
                                  std::memset(s.dst.data(), 0, std::size_t(s.dst_pitch) * s.height);
                              };
                          },
                          true};

} // namespace lumalane::bench
