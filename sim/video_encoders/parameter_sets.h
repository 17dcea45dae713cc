// Real H.264 and H.265 parameter sets (SPS and PPS NAL units, emulation
// prevention applied) for the simulated encoders, so that clients decoding
// the sprop-parameter-sets text see the codec, profile, level and raster
// the encoder is configured with.
#pragma once

#include <cstdint>
#include <vector>

namespace sim {

struct ParameterSetShape {
  bool hevc = false;
  int profile = 3;    // SMGR_VIDENC_PROFILE_*
  int chroma = 1;     // SMGR_VIDENC_CHROMA_SUBSAMPLING_*
  int levelIdc = 40;  // level_idc (H.264) or general_level_idc (H.265)
  bool highTier = false;
  bool cabac = true;
  unsigned width = 1920;
  unsigned height = 1080;
  bool interlaced = false;
};

std::vector<uint8_t> MakeSps(const ParameterSetShape& shape);
std::vector<uint8_t> MakePps(const ParameterSetShape& shape);

}  // namespace sim
