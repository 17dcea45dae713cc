// Colour-bar PNG and JPEG writers for the simulated snapshots.
#include "snapshot_images.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string>

namespace sim {
namespace {

struct Rgb {
  uint8_t r, g, b;
};

// 75% bars: white, yellow, cyan, green, magenta, red, blue, black.
Rgb BarAt(unsigned x, unsigned width) {
  static constexpr Rgb kBars[8] = {{191, 191, 191}, {191, 191, 0}, {0, 191, 191}, {0, 191, 0},
                                   {191, 0, 191},   {191, 0, 0},   {0, 0, 191},   {0, 0, 0}};
  return kBars[std::min<unsigned>(7, x * 8 / std::max(width, 1u))];
}

void PutBE32(std::vector<uint8_t>* out, uint32_t value) {
  for (int shift = 24; shift >= 0; shift -= 8) out->push_back(static_cast<uint8_t>(value >> shift));
}

uint32_t Crc32(const uint8_t* data, size_t size) {
  static const std::array<uint32_t, 256> table = [] {
    std::array<uint32_t, 256> t{};
    for (uint32_t n = 0; n < 256; ++n) {
      uint32_t c = n;
      for (int k = 0; k < 8; ++k) c = (c & 1) ? 0xEDB88320u ^ (c >> 1) : c >> 1;
      t[n] = c;
    }
    return t;
  }();
  uint32_t crc = 0xFFFFFFFFu;
  for (size_t i = 0; i < size; ++i) crc = table[(crc ^ data[i]) & 0xFF] ^ (crc >> 8);
  return crc ^ 0xFFFFFFFFu;
}

void PngChunk(std::vector<uint8_t>* out, const char* type, const std::vector<uint8_t>& data) {
  PutBE32(out, static_cast<uint32_t>(data.size()));
  const size_t start = out->size();
  out->insert(out->end(), type, type + 4);
  out->insert(out->end(), data.begin(), data.end());
  PutBE32(out, Crc32(out->data() + start, out->size() - start));
}

}  // namespace

std::vector<uint8_t> ColourBarsPng(unsigned width, unsigned height) {
  std::vector<uint8_t> raw;  // filter byte 0, then RGB, per row
  raw.reserve(static_cast<size_t>(height) * (1 + 3 * static_cast<size_t>(width)));
  for (unsigned y = 0; y < height; ++y) {
    raw.push_back(0);
    for (unsigned x = 0; x < width; ++x) {
      Rgb c = BarAt(x, width);
      raw.insert(raw.end(), {c.r, c.g, c.b});
    }
  }
  std::vector<uint8_t> zlib = {0x78, 0x01};
  size_t pos = 0;
  do {
    const size_t n = std::min<size_t>(65535, raw.size() - pos);
    const bool last = pos + n == raw.size();
    zlib.push_back(last ? 1 : 0);
    zlib.insert(zlib.end(), {static_cast<uint8_t>(n), static_cast<uint8_t>(n >> 8), static_cast<uint8_t>(~n),
                             static_cast<uint8_t>(~n >> 8)});
    zlib.insert(zlib.end(), raw.begin() + static_cast<long>(pos), raw.begin() + static_cast<long>(pos + n));
    pos += n;
  } while (pos < raw.size());
  uint32_t a = 1, b = 0;
  for (uint8_t byte : raw) {
    a = (a + byte) % 65521;
    b = (b + a) % 65521;
  }
  PutBE32(&zlib, (b << 16) | a);

  std::vector<uint8_t> png = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
  std::vector<uint8_t> header;
  PutBE32(&header, width);
  PutBE32(&header, height);
  header.insert(header.end(), {8, 2, 0, 0, 0});  // 8-bit RGB, deflate, no filter, no interlace
  PngChunk(&png, "IHDR", header);
  PngChunk(&png, "IDAT", zlib);
  PngChunk(&png, "IEND", {});
  return png;
}

namespace {

// A canonical Huffman table from its counts per length (the DHT form).
struct Huffman {
  std::array<uint16_t, 256> code{};
  std::array<uint8_t, 256> length{};
  Huffman(const uint8_t (&counts)[16], const uint8_t* symbols) {
    uint16_t next = 0;
    size_t k = 0;
    for (int len = 1; len <= 16; ++len) {
      for (int i = 0; i < counts[len - 1]; ++i, ++k) {
        code[symbols[k]] = next++;
        length[symbols[k]] = static_cast<uint8_t>(len);
      }
      next = static_cast<uint16_t>(next << 1);
    }
  }
};

// The standard DC tables; the AC tables hold end-of-block alone (every block is flat).
constexpr uint8_t kDcLumaCounts[16] = {0, 1, 5, 1, 1, 1, 1, 1, 1, 0, 0, 0, 0, 0, 0, 0};
constexpr uint8_t kDcChromaCounts[16] = {0, 3, 1, 1, 1, 1, 1, 1, 1, 1, 1, 0, 0, 0, 0, 0};
constexpr uint8_t kDcSymbols[12] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11};
constexpr uint8_t kAcCounts[16] = {1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0};
constexpr uint8_t kAcSymbols[1] = {0x00};

class BitWriter {
 public:
  explicit BitWriter(std::vector<uint8_t>* out) : out_(out) {}
  void put(uint32_t bits, int count) {
    for (int i = count - 1; i >= 0; --i) {
      acc_ = static_cast<uint8_t>((acc_ << 1) | ((bits >> i) & 1));
      if (++n_ == 8) flushByte();
    }
  }
  void finish() {
    while (n_ != 0) put(1, 1);  // pad with ones
  }

 private:
  void flushByte() {
    out_->push_back(acc_);
    if (acc_ == 0xFF) out_->push_back(0x00);  // byte stuffing
    acc_ = 0;
    n_ = 0;
  }
  std::vector<uint8_t>* out_;
  uint8_t acc_ = 0;
  int n_ = 0;
};

void Marker(std::vector<uint8_t>* out, uint8_t marker, const std::vector<uint8_t>& body) {
  out->insert(out->end(), {0xFF, marker, static_cast<uint8_t>((body.size() + 2) >> 8),
                           static_cast<uint8_t>(body.size() + 2)});
  out->insert(out->end(), body.begin(), body.end());
}

void DhtTable(std::vector<uint8_t>* body, uint8_t classAndId, const uint8_t (&counts)[16],
              const uint8_t* symbols, size_t nSymbols) {
  body->push_back(classAndId);
  body->insert(body->end(), counts, counts + 16);
  body->insert(body->end(), symbols, symbols + nSymbols);
}

void PutDc(BitWriter& bits, const Huffman& table, int diff) {
  int magnitude = diff < 0 ? -diff : diff;
  int category = 0;
  while (magnitude >> category) ++category;
  bits.put(table.code[category], table.length[category]);
  if (category > 0) bits.put(static_cast<uint32_t>(diff < 0 ? diff + (1 << category) - 1 : diff), category);
}

}  // namespace

std::vector<uint8_t> ColourBarsJpeg(unsigned width, unsigned height, int quality) {
  quality = std::clamp(quality, 1, 100);
  const int scale = quality < 50 ? 5000 / quality : 200 - 2 * quality;
  // Only the DC entry of each table matters: 16 (luma) and 17 (chroma) in the usual tables.
  const int qLuma = std::clamp((16 * scale + 50) / 100, 1, 255);
  const int qChroma = std::clamp((17 * scale + 50) / 100, 1, 255);

  std::vector<uint8_t> jpeg = {0xFF, 0xD8};
  Marker(&jpeg, 0xE0, {'J', 'F', 'I', 'F', 0, 1, 1, 0, 0, 1, 0, 1, 0, 0});
  for (int id = 0; id < 2; ++id) {
    std::vector<uint8_t> dqt(65, 1);
    dqt[0] = static_cast<uint8_t>(id);
    dqt[1] = static_cast<uint8_t>(id == 0 ? qLuma : qChroma);
    Marker(&jpeg, 0xDB, dqt);
  }
  Marker(
      &jpeg, 0xC0,
      {8, static_cast<uint8_t>(height >> 8), static_cast<uint8_t>(height), static_cast<uint8_t>(width >> 8),
       static_cast<uint8_t>(width), 3, 1, 0x11, 0, 2, 0x11, 1, 3, 0x11, 1});
  std::vector<uint8_t> dht;
  DhtTable(&dht, 0x00, kDcLumaCounts, kDcSymbols, 12);
  DhtTable(&dht, 0x01, kDcChromaCounts, kDcSymbols, 12);
  DhtTable(&dht, 0x10, kAcCounts, kAcSymbols, 1);
  DhtTable(&dht, 0x11, kAcCounts, kAcSymbols, 1);
  Marker(&jpeg, 0xC4, dht);
  Marker(&jpeg, 0xDA, {3, 1, 0x00, 2, 0x11, 3, 0x11, 0, 63, 0});

  const Huffman dcLuma(kDcLumaCounts, kDcSymbols), dcChroma(kDcChromaCounts, kDcSymbols),
      ac(kAcCounts, kAcSymbols);
  BitWriter bits(&jpeg);
  int previous[3] = {0, 0, 0};
  const unsigned blocksX = (width + 7) / 8, blocksY = (height + 7) / 8;
  for (unsigned by = 0; by < blocksY; ++by) {
    for (unsigned bx = 0; bx < blocksX; ++bx) {
      const Rgb c = BarAt(std::min(bx * 8 + 4, width - 1), width);
      const double y = 0.299 * c.r + 0.587 * c.g + 0.114 * c.b;
      const double cb = 128 - 0.168736 * c.r - 0.331264 * c.g + 0.5 * c.b;
      const double cr = 128 + 0.5 * c.r - 0.418688 * c.g - 0.081312 * c.b;
      const double samples[3] = {y, cb, cr};
      for (int k = 0; k < 3; ++k) {
        // A flat block's DC coefficient is 8 x (sample - 128).
        const int q = k == 0 ? qLuma : qChroma;
        const double dc = 8.0 * (samples[k] - 128.0) / q;
        const int value = static_cast<int>(dc < 0 ? dc - 0.5 : dc + 0.5);
        PutDc(bits, k == 0 ? dcLuma : dcChroma, value - previous[k]);
        previous[k] = value;
        bits.put(ac.code[0], ac.length[0]);  // end of block
      }
    }
  }
  bits.finish();
  jpeg.insert(jpeg.end(), {0xFF, 0xD9});
  return jpeg;
}

}  // namespace sim
