// GoogleTest fixtures on top of the test peer: a connected library per test,
// fully shut down afterwards whatever the test left behind.
#pragma once

#include <gtest/gtest.h>

#include "test_peer.h"

namespace smgr::test {

// Releases every initialisation the test left open (the library is process-wide).
void ShutdownLibraryCompletely();

class ConnectedPeerTest : public ::testing::Test {
 protected:
  explicit ConnectedPeerTest(PeerOptions options = {}) : peer(options) {}
  void SetUp() override {
    peer.start();
    ASSERT_TRUE(SessMgrLib_Init(SMGR_API_VERSION_1_0, nullptr)) << "last error " << SessMgr_GetLastError();
  }
  void TearDown() override { ShutdownLibraryCompletely(); }

  TestPeer peer;
};

}  // namespace smgr::test
