// Bit-exact writers of the few parameter-set syntax elements the simulated
// encoders vary (profile, level, chroma format, bit depth, raster, scan);
// every other element takes the simplest legal value.
#include "parameter_sets.h"

namespace sim {
namespace {

class BitWriter {
 public:
  void bits(uint32_t value, int count) {
    for (int i = count - 1; i >= 0; --i) bit((value >> i) & 1u);
  }
  void bit(unsigned b) {
    current_ = static_cast<uint8_t>((current_ << 1) | (b & 1u));
    if (++filled_ == 8) flush();
  }
  void ue(uint32_t value) {  // Exp-Golomb
    const uint64_t coded = uint64_t{value} + 1;
    int length = 0;
    while ((coded >> length) > 1) ++length;
    bits(0, length);
    bits(static_cast<uint32_t>(coded), length + 1);
  }
  void se(int32_t value) {
    ue(value <= 0 ? static_cast<uint32_t>(-2 * value) : static_cast<uint32_t>(2 * value - 1));
  }
  // rbsp_trailing_bits, then the NAL unit with emulation prevention.
  std::vector<uint8_t> nal(std::vector<uint8_t> header) {
    bit(1);
    while (filled_ != 0) bit(0);
    int zeros = 0;
    for (uint8_t byte : rbsp_) {
      if (zeros >= 2 && byte <= 3) {
        header.push_back(3);
        zeros = 0;
      }
      header.push_back(byte);
      zeros = byte == 0 ? zeros + 1 : 0;
    }
    return header;
  }

 private:
  void flush() {
    rbsp_.push_back(current_);
    current_ = 0;
    filled_ = 0;
  }
  std::vector<uint8_t> rbsp_;
  uint8_t current_ = 0;
  int filled_ = 0;
};

int ChromaFormatIdc(int chroma) { return chroma >= 3 ? 2 : 1; }
int BitDepthMinus8(int chroma) { return chroma == 2 || chroma == 4 ? 2 : 0; }

int H264ProfileIdc(int profile) {
  switch (profile) {
    case 1:
      return 66;
    case 2:
      return 77;
    case 4:
      return 110;
    case 5:
      return 122;
    default:
      return 100;
  }
}

int H265ProfileIdc(int profile) { return profile == 6 ? 2 : profile == 7 ? 4 : 1; }

std::vector<uint8_t> H264Sps(const ParameterSetShape& s) {
  BitWriter w;
  const int profileIdc = H264ProfileIdc(s.profile);
  w.bits(static_cast<uint32_t>(profileIdc), 8);
  w.bits(profileIdc == 66 ? 0x40 : 0, 8);  // constraint_set1 for baseline
  w.bits(static_cast<uint32_t>(s.levelIdc), 8);
  w.ue(0);  // seq_parameter_set_id
  if (profileIdc >= 100) {
    w.ue(static_cast<uint32_t>(ChromaFormatIdc(s.chroma)));
    w.ue(static_cast<uint32_t>(BitDepthMinus8(s.chroma)));
    w.ue(static_cast<uint32_t>(BitDepthMinus8(s.chroma)));
    w.bit(0);  // qpprime_y_zero_transform_bypass_flag
    w.bit(0);  // seq_scaling_matrix_present_flag
  }
  w.ue(0);  // log2_max_frame_num_minus4
  w.ue(2);  // pic_order_cnt_type
  w.ue(1);  // max_num_ref_frames
  w.bit(0);
  const unsigned mbWidth = (s.width + 15) / 16;
  const unsigned mapUnitLines = s.interlaced ? 32 : 16;
  const unsigned mapUnits = (s.height + mapUnitLines - 1) / mapUnitLines;
  w.ue(mbWidth - 1);
  w.ue(mapUnits - 1);
  w.bit(s.interlaced ? 0 : 1);  // frame_mbs_only_flag
  if (s.interlaced) w.bit(0);   // mb_adaptive_frame_field_flag
  w.bit(1);                     // direct_8x8_inference_flag
  const unsigned cropBottom = mapUnits * mapUnitLines - s.height;
  const unsigned cropRight = mbWidth * 16 - s.width;
  w.bit(cropBottom != 0 || cropRight != 0);
  if (cropBottom != 0 || cropRight != 0) {
    const unsigned unitY = (ChromaFormatIdc(s.chroma) == 1 ? 2 : 1) * (s.interlaced ? 2 : 1);
    w.ue(0);
    w.ue(cropRight / 2);
    w.ue(0);
    w.ue(cropBottom / unitY);
  }
  w.bit(0);  // vui_parameters_present_flag
  return w.nal({0x67});
}

std::vector<uint8_t> H264Pps(const ParameterSetShape& s) {
  BitWriter w;
  w.ue(0);
  w.ue(0);
  w.bit(s.cabac && s.profile != 1);  // entropy_coding_mode_flag
  w.bit(0);                          // bottom_field_pic_order_in_frame_present_flag
  w.ue(0);                           // num_slice_groups_minus1
  w.ue(0);
  w.ue(0);
  w.bit(0);
  w.bits(0, 2);
  w.se(0);
  w.se(0);
  w.se(0);
  w.bit(1);  // deblocking_filter_control_present_flag
  w.bit(0);
  w.bit(0);
  return w.nal({0x68});
}

std::vector<uint8_t> H265Sps(const ParameterSetShape& s) {
  BitWriter w;
  w.bits(0, 4);  // sps_video_parameter_set_id
  w.bits(0, 3);  // sps_max_sub_layers_minus1
  w.bit(1);      // sps_temporal_id_nesting_flag
  const int profileIdc = H265ProfileIdc(s.profile);
  w.bits(0, 2);
  w.bit(s.highTier);
  w.bits(static_cast<uint32_t>(profileIdc), 5);
  w.bits(1u << (31 - profileIdc), 32);  // general_profile_compatibility_flag[profileIdc]
  w.bit(s.interlaced ? 0 : 1);          // progressive_source
  w.bit(s.interlaced ? 1 : 0);          // interlaced_source
  w.bit(0);
  w.bit(1);  // frame_only_constraint
  w.bits(0, 32);
  w.bits(0, 12);  // the remaining 44 reserved bits
  w.bits(static_cast<uint32_t>(s.levelIdc), 8);
  w.ue(0);  // sps_seq_parameter_set_id
  w.ue(static_cast<uint32_t>(ChromaFormatIdc(s.chroma)));
  const unsigned lines = s.interlaced ? s.height / 2 : s.height;  // field pictures
  const unsigned codedWidth = (s.width + 7) / 8 * 8;
  const unsigned codedHeight = (lines + 7) / 8 * 8;
  w.ue(codedWidth);
  w.ue(codedHeight);
  const bool crop = codedWidth != s.width || codedHeight != lines;
  w.bit(crop);
  if (crop) {
    const unsigned subWidth = 2;
    const unsigned subHeight = ChromaFormatIdc(s.chroma) == 1 ? 2 : 1;
    w.ue(0);
    w.ue((codedWidth - s.width) / subWidth);
    w.ue(0);
    w.ue((codedHeight - lines) / subHeight);
  }
  w.ue(static_cast<uint32_t>(BitDepthMinus8(s.chroma)));
  w.ue(static_cast<uint32_t>(BitDepthMinus8(s.chroma)));
  w.ue(4);   // log2_max_pic_order_cnt_lsb_minus4
  w.bit(1);  // sps_sub_layer_ordering_info_present_flag
  w.ue(1);
  w.ue(0);
  w.ue(0);
  w.ue(0);  // log2_min_luma_coding_block_size_minus3
  w.ue(3);
  w.ue(0);
  w.ue(3);
  w.ue(0);
  w.ue(0);
  w.bit(0);  // scaling_list_enabled_flag
  w.bit(0);  // amp_enabled_flag
  w.bit(1);  // sample_adaptive_offset_enabled_flag
  w.bit(0);  // pcm_enabled_flag
  w.ue(0);   // num_short_term_ref_pic_sets
  w.bit(0);  // long_term_ref_pics_present_flag
  w.bit(1);  // sps_temporal_mvp_enabled_flag
  w.bit(1);  // strong_intra_smoothing_enabled_flag
  w.bit(0);  // vui_parameters_present_flag
  w.bit(0);  // sps_extension_present_flag
  return w.nal({0x42, 0x01});
}

std::vector<uint8_t> H265Pps(const ParameterSetShape&) {
  BitWriter w;
  w.ue(0);
  w.ue(0);
  w.bit(0);
  w.bit(0);
  w.bits(0, 3);
  w.bit(0);
  w.bit(0);
  w.ue(0);
  w.ue(0);
  w.se(0);
  w.bit(0);
  w.bit(0);
  w.bit(0);
  w.se(0);
  w.se(0);
  w.bit(0);
  w.bit(0);
  w.bit(0);
  w.bit(0);
  w.bit(0);  // tiles_enabled_flag
  w.bit(0);
  w.bit(1);  // pps_loop_filter_across_slices_enabled_flag
  w.bit(0);
  w.bit(0);
  w.bit(0);
  w.ue(0);
  w.bit(0);
  w.bit(0);
  return w.nal({0x44, 0x01});
}

}  // namespace

std::vector<uint8_t> MakeSps(const ParameterSetShape& shape) {
  return shape.hevc ? H265Sps(shape) : H264Sps(shape);
}
std::vector<uint8_t> MakePps(const ParameterSetShape& shape) {
  return shape.hevc ? H265Pps(shape) : H264Pps(shape);
}

}  // namespace sim
