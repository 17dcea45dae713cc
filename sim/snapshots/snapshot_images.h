// The pictures the simulated appliance writes as snapshots: colour bars of
// any size as a PNG (RGB, deflate "stored" blocks) or a baseline JPEG (one
// flat colour per 8x8 block, so only DC coefficients). No image library.
#pragma once

#include <cstdint>
#include <vector>

namespace sim {

std::vector<uint8_t> ColourBarsPng(unsigned width, unsigned height);
// quality 1..100 scales the quantisation as the usual JPEG quality does.
std::vector<uint8_t> ColourBarsJpeg(unsigned width, unsigned height, int quality);

}  // namespace sim
