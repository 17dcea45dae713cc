// Rules of the simulator's LEDs and temperature sensor over a manual clock:
// encoder LEDs that follow their streams, transitions, blinking in up-time,
// the lagging temperature and the readings the sensor gets wrong.
#include "led_model.h"

#include <gtest/gtest.h>

#include "model_fixture.h"
#include "temperature_model.h"

namespace sim::test {
namespace {

class LedModelTest : public ApplianceTest {
 protected:
  SMGR_LEDS_INFO leds() {
    SMGR_LEDS_INFO info{};
    appliance_->family<LedModel>().info(&info);
    return info;
  }
};

TEST_F(LedModelTest, EncoderLedsFollowTheirStreamsAndCountTransitions) {
  SMGR_LEDS_INFO info = leds();
  EXPECT_EQ(info.enStatusLED, SMGR_LED_STATE_GREEN_ON);
  EXPECT_EQ(info.enErrorLED, SMGR_LED_STATE_OFF);
  EXPECT_EQ(info.enStatus1LED, SMGR_LED_STATE_OFF);
  ASSERT_EQ(create(UdpConfig("cam1")).result, SMGR_ERROR_SUCCESS);  // fed by venc1
  ASSERT_EQ(streams().start(ById(1)).result & ~SMGR_IS_SUCCESS_WITH_WARNING, 0u);
  clock_->advanceMs(10000);
  info = leds();
  EXPECT_EQ(info.enStatus1LED, SMGR_LED_STATE_GREEN_ON);
  EXPECT_EQ(info.enStatus2LED, SMGR_LED_STATE_OFF);
  ASSERT_EQ(streams().pause(ById(1)).result, SMGR_ERROR_SUCCESS);
  info = leds();
  EXPECT_EQ(info.enStatus1LED, SMGR_LED_STATE_AMBER_ON);
  EXPECT_EQ(info.nStatus1LEDTransitions, 2u);
  EXPECT_EQ(info.nStatusLEDTransitions, 0u);
}

TEST_F(LedModelTest, BlinkingRunsInUpTimeAndIsRefusedTwice) {
  LedModel& model = appliance_->family<LedModel>();
  EXPECT_EQ(model.startBlinking(0).result, SMGR_ERROR_INVALID_PARAMETERS);
  EXPECT_EQ(model.startBlinking(86401).result, SMGR_ERROR_INVALID_PARAMETERS);
  EXPECT_EQ(model.stopBlinking().result, SMGR_ERROR_LED_NOT_BLINKING);
  clock_->advanceMs(5000);
  ASSERT_EQ(model.startBlinking(10).result, SMGR_ERROR_SUCCESS);
  EXPECT_EQ(model.startBlinking(10).result, SMGR_ERROR_LED_ALREADY_BLINKING);
  SMGR_LEDS_INFO info = leds();
  EXPECT_EQ(info.nBlinkStopUpTime, 15u);
  EXPECT_EQ(info.enStatusLED, SMGR_LED_STATE_GREEN_BLINKING);
  EXPECT_EQ(info.enStatus4LED, SMGR_LED_STATE_GREEN_BLINKING);
  clock_->advanceMs(10000);
  info = leds();
  EXPECT_EQ(info.nBlinkStopUpTime, 0u);
  EXPECT_EQ(info.enStatusLED, SMGR_LED_STATE_GREEN_ON);
  EXPECT_EQ(info.nStatusLEDTransitions, 2u);
}

TEST_F(LedModelTest, TemperatureLagsBehindTheWorkAndKeepsItsExtremes) {
  TemperatureModel& sensor = appliance_->family<TemperatureModel>();
  const int idle = sensor.currentCelsius();
  EXPECT_NEAR(idle, 35, 1);
  ASSERT_EQ(create(UdpConfig("cam1")).result, SMGR_ERROR_SUCCESS);
  streams().start(ById(1));
  clock_->advanceMs(30000);
  EXPECT_LT(sensor.currentCelsius(), 38);  // still on its way up
  clock_->advanceMs(900000);
  SMGR_TEMPERATURE_INFO info{};
  sensor.info(&info);
  EXPECT_NEAR(info.nCurrentInCelsius, 35 + 1.5 + 2, 1);
  EXPECT_GE(info.nMaxInCelsius, info.nCurrentInCelsius);
  EXPECT_GT(info.iMaxMeasurementTime, info.iMinMeasurementTime);
  EXPECT_EQ(info.nInvalidMeasurements, 0u);
}

TEST_F(LedModelTest, AGlitchySensorCountsInvalidReadingsAndDropsJumps) {
  ApplianceProfile profile = ApplianceProfile::Default();
  profile.document["temperature"] = {{"glitch_every_s", 10}};
  Appliance appliance(profile, clock_, stateDir_);
  TemperatureModel& sensor = appliance.family<TemperatureModel>();
  clock_->advanceMs(100000);
  SMGR_TEMPERATURE_INFO info{};
  sensor.info(&info);
  EXPECT_EQ(info.nInvalidMeasurements, 5u);
  EXPECT_EQ(info.nDiscardedLargeDeltas, 5u);
  EXPECT_LT(info.nMaxInCelsius, 40);  // the jumps never became readings
}

}  // namespace
}  // namespace sim::test
