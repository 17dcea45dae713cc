// The message catalogue by blocks: which numbers are requests that have a
// response. Used to answer requests of families the simulator does not model.
#include "sim_protocol.h"

namespace sim {
namespace {

struct Block {
  unsigned base;
  unsigned pairs;  // request/response pairs from base upward
};

constexpr Block kBlocks[] = {
    {100, 11}, {150, 7},  {200, 10}, {300, 9},  {400, 8},  {500, 13}, {600, 7},   {700, 10}, {800, 2},
    {900, 2},  {940, 1},  {950, 2},  {960, 4},  {969, 2},  {1000, 8}, {1100, 11}, {1200, 8}, {1300, 3},
    {1400, 3}, {1600, 2}, {1700, 8}, {1800, 6}, {1900, 7}, {2000, 9}, {2100, 13},
};

}  // namespace

bool IsCataloguedRequest(unsigned wType) {
  for (const Block& block : kBlocks) {
    if (wType >= block.base && wType < block.base + 2 * block.pairs) return (wType - block.base) % 2 == 0;
  }
  return false;
}

}  // namespace sim
