// LED and temperature departures: the versioned copy without a floor, a
// daemon failure that keeps the last error in the information calls but sets
// it in the blink calls, and the blink request fields.
#include <gtest/gtest.h>

#include <cstring>

#include "peer_fixture.h"

namespace smgr::test {
namespace {

class LedsPeerTest : public ConnectedPeerTest {
 protected:
  void SetUp() override {
    ConnectedPeerTest::SetUp();
    peer.setReplySize(SMGRPROT_LEDS_GETINFO_RSP, sizeof(SMGRPROT_MSG_LEDS_GETINFO_RSP));
    peer.setReplySize(SMGRPROT_LEDS_BLINKSTATUS_RSP, sizeof(SMGRPROT_MSG_LEDS_BLINKSTATUS_RSP));
    peer.setReplySize(SMGRPROT_TEMPERATURE_GETINFO_RSP, sizeof(SMGRPROT_MSG_TEMPERATURE_GETINFO_RSP));
  }
};

TEST_F(LedsPeerTest, TemperatureCopiesTheOlderDaemonsSizeAndAFailureKeepsTheLastError) {
  SMGR_TEMPERATURE_INFO older{};
  older.nSize = 40;  // an older daemon: no floor, the smaller size wins
  older.nMaxInCelsius = 61;
  peer.onNextRequest(SMGRPROT_TEMPERATURE_GETINFO_REQ, Reply::ok().put(20, older));
  SMGR_TEMPERATURE_INFO temperature{};
  temperature.nSize = sizeof(temperature);
  ASSERT_TRUE(SessMgr_GetTemperatureInfo(&temperature));
  EXPECT_EQ(temperature.nSize, 40u);
  EXPECT_EQ(temperature.nMaxInCelsius, 61);

  SessMgr_SetLastError(4321);
  peer.onNextRequest(SMGRPROT_TEMPERATURE_GETINFO_REQ, Reply::withResult(SMGR_ERROR_GENERIC_FAILURE));
  EXPECT_FALSE(SessMgr_GetTemperatureInfo(&temperature));
  EXPECT_EQ(SessMgr_GetLastError(), 4321u);
}

TEST_F(LedsPeerTest, BlinkSendsItsDurationAndAFailureSetsTheLastError) {
  ASSERT_TRUE(SessMgr_StartBlinkingLEDs(30));
  auto start = peer.lastRequest(SMGRPROT_LEDS_BLINKSTATUS_REQ);
  ASSERT_EQ(start->size(), 24u);
  EXPECT_EQ(start->field<int32_t>(16), 1);
  EXPECT_EQ(start->field<uint32_t>(20), 30u);
  peer.onNextRequest(SMGRPROT_LEDS_BLINKSTATUS_REQ, Reply::withResult(SMGR_ERROR_LED_NOT_BLINKING));
  EXPECT_FALSE(SessMgr_StopBlinkingLEDs());
  EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_LED_NOT_BLINKING);
  auto stop = peer.lastRequest(SMGRPROT_LEDS_BLINKSTATUS_REQ);
  EXPECT_EQ(stop->field<int32_t>(16), 0);
  EXPECT_EQ(stop->field<uint32_t>(20), 0u);
}

}  // namespace
}  // namespace smgr::test
