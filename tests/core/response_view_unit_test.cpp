// Bounded reads of a received response: ResponseView, CopyRecordBack and the
// paged enumeration copy-back never read past the bytes received nor write
// past the caller's buffer.
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "paged_enumeration.h"
#include "request_engine.h"

namespace smgr {
namespace {

std::vector<BYTE> Message(size_t nSize) {
  std::vector<BYTE> message(nSize);
  for (size_t i = 0; i < nSize; ++i) message[i] = static_cast<BYTE>(i);
  return message;
}

TEST(ResponseView, ReadsOnlyWithinTheReceivedBytes) {
  auto message = Message(24);
  ResponseView view(message.data(), message.size());
  DWORD value = 0xFFFFFFFF;
  EXPECT_TRUE(view.read(20, &value));
  EXPECT_EQ(value, 0x17161514u);
  value = 7;
  EXPECT_FALSE(view.read(21, &value));
  EXPECT_FALSE(view.read(SIZE_MAX - 1, &value));
  EXPECT_EQ(value, 7u);
  EXPECT_TRUE(view.holds(24, 0));
  EXPECT_FALSE(view.holds(20, 5));
  EXPECT_FALSE(view.holds(SIZE_MAX, 2));
}

TEST(ResponseView, ResultOfATooShortResponseIsTheIpcError) {
  auto message = Message(18);
  EXPECT_EQ(ResponseView(message.data(), message.size()).result(), SMGR_ERROR_DAEMON_TO_LIB_IPC_GEN_ERROR);
}

TEST(ResponseView, DescriptionIsBoundedByFieldBytesAndBuffer) {
  std::vector<BYTE> message(180, 'd');
  ResponseView view(message.data(), 100);  // only 80 bytes of text arrived, unterminated
  char sz[200];
  view.description(sz, sizeof(sz));
  EXPECT_EQ(std::strlen(sz), 80u);
  view.description(sz, 10);
  EXPECT_STREQ(sz, "ddddddddd");
  ResponseView(message.data(), 20).description(sz, sizeof(sz));
  EXPECT_STREQ(sz, "");
}

TEST(ResponseView, CopyOutTakesTheSmallestOfLengthDestinationAndReceived) {
  auto message = Message(40);
  ResponseView view(message.data(), message.size());
  BYTE dest[16];
  std::memset(dest, 0xEE, sizeof(dest));
  EXPECT_EQ(view.copyOut(32, 100, dest, sizeof(dest)), 8u);
  EXPECT_EQ(dest[7], 39);
  EXPECT_EQ(dest[8], 0xEE);
  EXPECT_EQ(view.copyOut(20, 100, dest, 4), 4u);
  EXPECT_EQ(view.copyOut(40, 4, dest, sizeof(dest)), 0u);
  EXPECT_EQ(view.copyOut(0, 4, nullptr, 4), 0u);
}

TEST(CopyRecordBack, NegotiatesTheCallersAndTheDaemonsRecordSize) {
  auto message = Message(200);
  ResponseView view(message.data(), message.size());
  BYTE dest[64];
  EXPECT_EQ(CopyRecordBack(view, 180, 48, dest, sizeof(dest)), 20u) << "bounded by the bytes received";
  EXPECT_EQ(CopyRecordBack(view, 100, 48, dest, sizeof(dest)), 48u) << "the daemon's record is smaller";
  EXPECT_EQ(CopyRecordBack(view, 100, 90, dest, 32), 32u) << "the caller's record is smaller";
}

struct Page {
  std::vector<BYTE> message;
  Page(DWORD nTotal, DWORD nReturned, DWORD nElement, size_t nRecordBytes)
      : message(32 + nRecordBytes, 0xAB) {
    std::memcpy(message.data() + 20, &nTotal, 4);
    std::memcpy(message.data() + 24, &nReturned, 4);
    std::memcpy(message.data() + 28, &nElement, 4);
  }
  ResponseView view() const { return ResponseView(message.data(), message.size()); }
};

TEST(PagedEnumeration, RequestCountRoundsDownAndIsNeverNegative) {
  EXPECT_EQ(PagedRequestCount(400, 196), 2);
  EXPECT_EQ(PagedRequestCount(195, 196), 0);
  EXPECT_EQ(PagedRequestCount(0, 196), 0);
  EXPECT_EQ(PagedRequestCount(SIZE_MAX, 1), INT32_MAX);
}

TEST(PagedEnumeration, CopiesWhatFitsAndAlwaysReturnsCounts) {
  Page page(9, 2, 10, 20);
  BYTE buffer[25];
  std::memset(buffer, 0, sizeof(buffer));
  UINT nTotal = 0, nReturned = 0;
  size_t nElement = 0;
  SMGR_RESULT lastError = 0;
  ASSERT_TRUE(CopyPagedEnumeration(page.view(), kStandardPagedLayout,
                                   {buffer, sizeof(buffer), &nTotal, &nReturned, &nElement}, &lastError));
  EXPECT_EQ(buffer[19], 0xAB);
  EXPECT_EQ(buffer[20], 0);
  EXPECT_EQ(nTotal, 9u);
  EXPECT_EQ(nReturned, 2u);
  EXPECT_EQ(nElement, 10u);

  BYTE small[19];
  std::memset(small, 0, sizeof(small));
  ASSERT_TRUE(CopyPagedEnumeration(page.view(), kStandardPagedLayout,
                                   {small, sizeof(small), &nTotal, nullptr, nullptr}, &lastError));
  for (BYTE b : small) EXPECT_EQ(b, 0) << "does not fit: nothing copied";
}

TEST(PagedEnumeration, HugeCountsNeitherOverflowNorOverRead) {
  Page page(1, 0xFFFFFFFF, 0xFFFFFFFF, 8);
  std::vector<BYTE> buffer(64);
  UINT nReturned = 0;
  SMGR_RESULT lastError = 0;
  ASSERT_TRUE(CopyPagedEnumeration(page.view(), kStandardPagedLayout,
                                   {buffer.data(), buffer.size(), nullptr, &nReturned, nullptr}, &lastError));
  EXPECT_EQ(nReturned, 0xFFFFFFFFu);

  Page shortPage(3, 3, 8, 16);  // announces 24 bytes of records, carries 16
  UINT nTotal = 5;
  EXPECT_FALSE(CopyPagedEnumeration(shortPage.view(), kStandardPagedLayout,
                                    {buffer.data(), buffer.size(), &nTotal, nullptr, nullptr}, &lastError));
  EXPECT_EQ(lastError, SMGR_ERROR_DAEMON_TO_LIB_IPC_GEN_ERROR);
  EXPECT_EQ(nTotal, 5u);
}

}  // namespace
}  // namespace smgr
