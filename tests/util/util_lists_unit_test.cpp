// Intrusive list services: append order, counts, unlinking from any position,
// harmless unlink of an unlinked node, draining from the head.
#include <gtest/gtest.h>

#include <vector>

#include "util_dbg.h"
#include "util_list.h"

namespace {

struct Item {
  FNODE_D node;  // first, as the library's records embed it
  int value;
};

std::vector<int> valuesOf(const FLIST_D& list) {
  std::vector<int> values;
  for (const FNODE_D* p = list.pHead; p != nullptr; p = p->pNext)
    values.push_back(static_cast<Item*>(p->pvObject)->value);
  return values;
}

std::vector<int> valuesBackwards(const FLIST_D& list) {
  std::vector<int> values;
  for (const FNODE_D* p = list.pTail; p != nullptr; p = p->pPrev)
    values.push_back(static_cast<Item*>(p->pvObject)->value);
  return values;
}

class ListTest : public ::testing::Test {
 protected:
  void SetUp() override {
    for (int i = 0; i < 4; ++i) {
      items_[i].value = i;
      FastInitNode(&items_[i].node);
    }
  }
  void linkAll() {
    for (auto& item : items_) FastLinkD(&item.node, &item, &list_);
  }
  FLIST_D list_ = FLIST_STATIC_INITIALIZER;
  Item items_[4];
};

TEST_F(ListTest, LinkAppendsAtTailAndCounts) {
  linkAll();
  EXPECT_EQ(list_.nNumOfEntries, 4u);
  EXPECT_EQ(valuesOf(list_), (std::vector<int>{0, 1, 2, 3}));
  EXPECT_EQ(valuesBackwards(list_), (std::vector<int>{3, 2, 1, 0}));
  EXPECT_EQ(items_[2].node.pList, &list_);
  EXPECT_EQ(items_[2].node.pvObject, &items_[2]);
}

TEST_F(ListTest, UnlinkAnywhereRelinkAndHarmlessUnlinks) {
  linkAll();
  FastUnlinkD(&items_[1].node);
  EXPECT_EQ(valuesOf(list_), (std::vector<int>{0, 2, 3}));
  EXPECT_EQ(items_[1].node.pList, nullptr);
  EXPECT_EQ(items_[1].node.pNext, nullptr);
  EXPECT_EQ(items_[1].node.pPrev, nullptr);
  FastUnlinkD(&items_[1].node);  // unlinked already
  FastUnlinkD(nullptr);
  FastLinkD(&items_[0].node, &items_[0], &list_);  // relinking moves to the tail
  EXPECT_EQ(valuesOf(list_), (std::vector<int>{2, 3, 0}));
  FastUnlinkD(&items_[2].node);
  FastUnlinkD(&items_[0].node);
  EXPECT_EQ(valuesOf(list_), (std::vector<int>{3}));
  EXPECT_EQ(valuesBackwards(list_), (std::vector<int>{3}));
  EXPECT_EQ(list_.nNumOfEntries, 1u);
}

TEST_F(ListTest, DrainFromHeadInOrder) {
  linkAll();
  std::vector<int> drained;
  while (FNODE_D* pNode = FastGetUnlinkFirstD(&list_)) {
    EXPECT_EQ(pNode->pList, nullptr);
    drained.push_back(static_cast<Item*>(pNode->pvObject)->value);
  }
  EXPECT_EQ(drained, (std::vector<int>{0, 1, 2, 3}));
  EXPECT_EQ(list_.nNumOfEntries, 0u);
  EXPECT_EQ(list_.pHead, nullptr);
  EXPECT_EQ(list_.pTail, nullptr);
  EXPECT_EQ(FastGetUnlinkFirstD(&list_), nullptr);
}

TEST_F(ListTest, ZeroedHeadIsAcceptedAsEmptyList) {
  FLIST_D zeroed{};
  FastLinkD(&items_[0].node, &items_[0], &zeroed);
  EXPECT_EQ(zeroed.dwSignature, FLIST_SIGNATURE);
  EXPECT_EQ(zeroed.nNumOfEntries, 1u);
  EXPECT_EQ(FastGetUnlinkFirstD(&zeroed), &items_[0].node);
}

TEST_F(ListTest, HeadWithWrongSignatureIsRefused) {
  FLIST_D bogus = FLIST_STATIC_INITIALIZER;
  bogus.dwSignature = 0x12345678;
  bogus.nNumOfEntries = 7;
  smgr::util::SetAssertAbortEnabled(false);  // the refusal is also a failed precondition
  FastLinkD(&items_[0].node, &items_[0], &bogus);
  EXPECT_EQ(items_[0].node.pList, nullptr);
  EXPECT_EQ(bogus.pHead, nullptr);
  EXPECT_EQ(FastGetUnlinkFirstD(&bogus), nullptr);
  EXPECT_EQ(FastGetUnlinkFirstD(nullptr), nullptr);
  smgr::util::SetAssertAbortEnabled(true);
}

}  // namespace
