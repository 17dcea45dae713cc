// The simulator's metadata-source rules: the fixed video-input sources, the
// codes of create and configure, counters on the clock, persistence, opens
// per client and the link to streams.
#include "metadata_model.h"

#include <cstring>

#include "model_fixture.h"

namespace sim::test {
namespace {

class MetaDataModelTest : public ApplianceTest {
 protected:
  void SetUp() override {
    ApplianceTest::SetUp();
    appliance_->restore(nullptr);  // the sections' defaults, the content-source lookup
  }
  MetaDataModel& model() { return appliance_->family<MetaDataModel>(); }

  static SMGR_METADATA_CFG Serial(const char* device = "/dev/ttyS1") {
    SMGR_METADATA_CFG cfg{};
    cfg.nSize = sizeof cfg;
    snprintf(cfg.in.Serial.szInputDeviceName, sizeof cfg.in.Serial.szInputDeviceName, "%s", device);
    cfg.in.Serial.nBaudRate = 9600;
    return cfg;
  }
  static SMGR_METADATA_CFG Udp(BYTE last, uint16_t port) {
    SMGR_METADATA_CFG cfg{};
    cfg.nSize = sizeof cfg;
    cfg.enInputType = SMGR_METADATA_IN_TYPE_INET;
    const BYTE address[4] = {239, 0, 0, last};
    memcpy(cfg.in.Network.Address.acAddress, address, 4);
    cfg.in.Network.usPort = port;
    return cfg;
  }
  SMGR_RESULT created(const SMGR_METADATA_CFG& cfg) { return model().create(cfg).result; }
  template <typename Change>
  SMGR_RESULT createdWith(Change change) {
    SMGR_METADATA_CFG cfg = Serial("/dev/ttyS2");
    change(cfg);
    return created(cfg);
  }
  SMGR_RESULT configured(const ObjectSelector& selector, uint64_t flags, const SMGR_METADATA_CFG& cfg) {
    SMGR_METADATA_CFG flagged = cfg;
    flagged.SetFieldsFlag = flags;
    return model().configure(selector, flagged).result;
  }
};

TEST_F(MetaDataModelTest, TheVideoInputSourcesAreFixed) {
  auto all = model().list();
  ASSERT_EQ(all.size(), 2u);
  EXPECT_STREQ(all[1].szName, "klv2");
  EXPECT_EQ(all[1].enInputType, SMGR_METADATA_IN_TYPE_VIDEO_INPUT);
  EXPECT_EQ(all[1].in.Video.enInputInterface, 2);
  EXPECT_EQ(model().remove(ById(1)).result, SMGR_ERROR_METADATA_UNDELETABLE_SOURCE);

  SMGR_METADATA_CFG cfg{};
  cfg.enInputType = SMGR_METADATA_IN_TYPE_SERIAL;
  EXPECT_EQ(configured(ById(1), SMGR_METADATA_SET_INPUT_TYPE, cfg),
            SMGR_ERROR_METADATA_SOURCE_HAS_FIXED_INPUT);
  cfg.DecimationCfg.enType = SMGR_METADATA_DECIMATION_TYPE_FACTOR;
  for (uint32_t factor : {0u, 61u}) {
    cfg.DecimationCfg.By.nFactor = factor;
    EXPECT_EQ(configured(ById(1), SMGR_METADATA_SET_DECIMATION, cfg),
              SMGR_ERROR_INVALID_KLV_DECIMATION_FACTOR);
  }
  cfg.DecimationCfg = {SMGR_METADATA_DECIMATION_TYPE_VIDENC, {2}};
  EXPECT_EQ(configured(ById(1), SMGR_METADATA_SET_DECIMATION, cfg),
            SMGR_ERROR_INVALID_KLV_DECIMATION_REF_ENCODER);
  EXPECT_EQ(configured(ById(2), SMGR_METADATA_SET_DECIMATION, cfg), SMGR_ERROR_SUCCESS);
  cfg.nNumOfRelays = 1;
  EXPECT_EQ(configured(ById(2), SMGR_METADATA_SET_RELAYS, cfg),
            SMGR_ERROR_UNSUPPORTED_RELAY_FOR_KLV_METADATA);
}

TEST_F(MetaDataModelTest, CreateGivesRisingIdsAndRefusesWithTheDaemonsCodes) {
  Outcome first = model().create(Serial("/dev/ttyS0"));
  ASSERT_EQ(first.result, SMGR_ERROR_SUCCESS);
  EXPECT_EQ(first.id, 3);
  EXPECT_EQ(first.name, "Metadata3");
  EXPECT_EQ(created(Serial("/dev/ttyS0")), SMGR_ERROR_SERIAL_PORT_UNAVAILABLE_FOR_METADATA);
  EXPECT_EQ(created(Serial("/dev/ttyUSB9")), SMGR_ERROR_SERIAL_PORT_UNAVAILABLE_FOR_METADATA);
  EXPECT_EQ(createdWith([](auto& c) { c.in.Serial.nBaudRate = 1234; }), SMGR_ERROR_INVALID_BAUDRATE);
  EXPECT_EQ(created(Udp(1, 0)), SMGR_ERROR_INVALID_STREAM_UDP_PORT);
  ASSERT_EQ(created(Udp(1, 5000)), SMGR_ERROR_SUCCESS);
  EXPECT_EQ(created(Udp(1, 5000)), SMGR_ERROR_ADDRESS_PORT_PAIR_IN_USE);
  EXPECT_EQ(created(Udp(255, 5001)), SMGR_ERROR_SUCCESS);  // 239.0.0.255 is no broadcast
  SMGR_METADATA_CFG broadcast = Udp(0, 5002);
  memset(broadcast.in.Network.Address.acAddress, 255, 4);
  EXPECT_EQ(created(broadcast), SMGR_ERROR_INVALID_METADATA_SOURCE_ADDRESS);
  EXPECT_EQ(createdWith([](auto& c) { c.DecimationCfg.enType = SMGR_METADATA_DECIMATION_TYPE_FACTOR; }),
            SMGR_ERROR_METADATA_DECIMATION_ONLY_SUPPORTED_ON_KLV_SDI_SOURCES);

  auto relay = [](SMGR_METADATA_CFG& c, int ttl, int tos, uint16_t port) {
    c.nNumOfRelays = 1;
    c.Relays[0].iTTL = ttl;
    c.Relays[0].iTOS = tos;
    c.Relays[0].usPort = port;
  };
  EXPECT_EQ(createdWith([&](auto& c) { relay(c, 0, 0, 5000); }), SMGR_ERROR_INVALID_METADATA_RELAY_TTL);
  EXPECT_EQ(createdWith([&](auto& c) { relay(c, 16, 256, 5000); }), SMGR_ERROR_INVALID_METADATA_RELAY_TOS);
  EXPECT_EQ(createdWith([&](auto& c) { relay(c, 16, 0, 0); }), SMGR_ERROR_INVALID_METADATA_RELAY_UDP_PORT);
  EXPECT_EQ(createdWith([](auto& c) { c.bEnableRelaying = TRUE; }), SMGR_ERROR_NO_RELAYS_CONFIGURED);
  EXPECT_EQ(createdWith([&](auto& c) {
              relay(c, 16, 0, 5000);
              c.Relays[1] = c.Relays[0];
              c.Relays[1].usPort = 6000;
              c.nNumOfRelays = 2;
            }),
            SMGR_ERROR_DUPLICATE_METADATA_RELAY_ADDRESS);

  auto classify = [](SMGR_METADATA_CFG& c, const char* classifying, const char* object, int level) {
    c.bClassifyMission = TRUE;
    c.enClassification = level;
    snprintf(c.szClassifyingCountry, sizeof c.szClassifyingCountry, "%s", classifying);
    snprintf(c.szObjectCountry, sizeof c.szObjectCountry, "%s", object);
  };
  EXPECT_EQ(createdWith([&](auto& c) { classify(c, "", "GBR", 1); }),
            SMGR_ERROR_CLASSIFYING_COUNTRY_UNSPECIFIED);
  EXPECT_EQ(createdWith([&](auto& c) { classify(c, "u1", "GBR", 1); }),
            SMGR_ERROR_INVALID_CLASSIFYING_COUNTRY);
  EXPECT_EQ(createdWith([&](auto& c) { classify(c, "USA", "", 1); }), SMGR_ERROR_OBJECT_COUNTRY_UNSPECIFIED);
  EXPECT_EQ(createdWith([&](auto& c) { classify(c, "USA", "GBR;", 1); }), SMGR_ERROR_INVALID_OBJECT_COUNTRY);
  EXPECT_EQ(createdWith([&](auto& c) { classify(c, "USA", "GBR", 6); }), SMGR_ERROR_INVALID_CLASSIFICATION);
  EXPECT_EQ(createdWith([&](auto& c) {
              c.enInputFormat = SMGR_METADATA_IN_FORMAT_COT;
              strcpy(c.szMissionID, "m1");
            }),
            SMGR_ERROR_UNSUPPORTED_MISSION_ID_FOR_COT_METADATA);
  EXPECT_EQ(createdWith([&](auto& c) {
              c.enInputFormat = SMGR_METADATA_IN_FORMAT_COT;
              classify(c, "USA", "GBR", 1);
            }),
            SMGR_ERROR_UNSUPPORTED_MISSION_RECLASSIFICATION_FOR_COT_METADATA);
  EXPECT_EQ(createdWith([&](auto& c) { classify(c, "USA", "GBR;FRA", 5); }), SMGR_ERROR_SUCCESS);

  for (uint16_t port = 6000; model().list().size() < 2u + MetaDataModel::kDefaultLimit; ++port)
    ASSERT_EQ(created(Udp(2, port)), SMGR_ERROR_SUCCESS);
  EXPECT_EQ(created(Udp(2, 7000)), SMGR_ERROR_TOO_MANY_METADATA);
}

TEST_F(MetaDataModelTest, ConfigureJudgesOnlyTheFlaggedFieldsOfTheOverlappingUnion) {
  const int udp = model().create(Udp(1, 5000)).id;
  const int serial = model().create(Serial()).id;
  SMGR_METADATA_CFG cfg = Serial();  // the serial view of the union, on a network source
  EXPECT_EQ(configured(ById(udp), SMGR_METADATA_SET_AUTO_START, cfg), SMGR_ERROR_SUCCESS);
  EXPECT_EQ(configured(ById(udp), SMGR_METADATA_SET_SERIAL_BAUDRATE, cfg),
            SMGR_ERROR_INVALID_BAUDRATE_FOR_NON_SERIAL_SOURCE);
  EXPECT_EQ(configured(ById(udp), SMGR_METADATA_SET_SERIAL_STANDARD, cfg),
            SMGR_ERROR_INVALID_SERIAL_STANDARD_FOR_NON_SERIAL_SOURCE);
  EXPECT_EQ(configured(ById(serial), SMGR_METADATA_SET_INET_PORT, cfg),
            SMGR_ERROR_INVALID_NET_PARAMETER_FOR_NON_INET_SOURCE);
  EXPECT_EQ(configured(ById(serial), SMGR_METADATA_SET_VIDEO_INPUT, cfg),
            SMGR_ERROR_METADATA_INPUT_ONLY_SUPPORTED_ON_KLV_SDI_SOURCES);
  EXPECT_EQ(configured(ById(serial), SMGR_METADATA_SET_COT_SPI_UID, cfg),
            SMGR_ERROR_INVALID_COT_PARAMETER_FOR_KLV);
  cfg.enInputFormat = SMGR_METADATA_IN_FORMAT_COT;
  EXPECT_EQ(configured(ById(serial), SMGR_METADATA_SET_COT_SPI_UID | SMGR_METADATA_SET_INPUT_FORMAT, cfg),
            SMGR_ERROR_SUCCESS);
  EXPECT_EQ(configured(ByName("nope"), 0, cfg), SMGR_ERROR_NO_MATCHING_METADATA_FOUND);
}

TEST_F(MetaDataModelTest, CountersFollowTheBitRateWhileStarted) {
  SMGR_METADATA_CFG cfg = Serial();
  cfg.enInputFormat = SMGR_METADATA_IN_FORMAT_COT;
  cfg.format.CoT.bSensorDiscovery = TRUE;
  const int id = model().create(cfg).id;
  EXPECT_EQ(model().stop(ById(id)).result, SMGR_ERROR_METADATA_NOT_STARTED);
  ASSERT_EQ(model().start(ById(id)).result, SMGR_ERROR_SUCCESS);
  EXPECT_EQ(model().start(ById(id)).result, SMGR_ERROR_METADATA_ALREADY_STARTED);
  clock_->advanceMs(10000);
  SMGR_METADATA_STATS stats{};
  ASSERT_EQ(model().stats(ById(id), &stats), SMGR_ERROR_SUCCESS);
  EXPECT_EQ(stats.enState, SMGR_METADATA_STATE_WORKING);
  EXPECT_EQ(stats.nRxBytes, 80000u);  // 64 kbit/s for 10 s
  EXPECT_EQ(stats.format.CoT.nDiscoveredSensorsCount, 4u);
  EXPECT_STREQ(stats.format.CoT.aszSensorUIDs[0], "uav-Sensor-3");
  ASSERT_EQ(model().stop(ById(id)).result, SMGR_ERROR_SUCCESS);
  clock_->advanceMs(5000);
  ASSERT_EQ(model().stats(ById(id), &stats), SMGR_ERROR_SUCCESS);
  EXPECT_EQ(stats.nRxBytes, 80000u);
  model().resetStats(ById(id));
  ASSERT_EQ(model().stats(ById(id), &stats), SMGR_ERROR_SUCCESS);
  EXPECT_EQ(stats.nRxBytes, 0u);
}

TEST_F(MetaDataModelTest, SourcesPersistAndAutoStartSourcesStartWithTheSimulator) {
  appliance_->enablePersistence(true);
  SMGR_METADATA_CFG cfg = Udp(9, 5000);
  cfg.bAutoStart = TRUE;
  const int id = model().create(cfg).id;
  EXPECT_FALSE(model().findContent(id, nullptr)->started);

  Appliance restarted(ApplianceProfile::Default(), clock_, stateDir_);
  ASSERT_TRUE(restarted.restore(nullptr));
  auto ref = restarted.sources().findByName(kContentData, "Metadata" + std::to_string(id));
  ASSERT_TRUE(ref);
  EXPECT_TRUE(ref->started);
  EXPECT_EQ(restarted.family<MetaDataModel>().list().size(), 3u);
}

TEST_F(MetaDataModelTest, OpensGoWithTheirClientAndAStreamKeepsItsSource) {
  const int id = model().create(Serial()).id;
  ASSERT_EQ(model().open(ById(id), 100).result, SMGR_ERROR_SUCCESS);
  model().open(ByName("Metadata3"), 100);
  model().open(ById(id), 200);
  EXPECT_EQ(model().close(id, 200).result, SMGR_ERROR_SUCCESS);
  EXPECT_EQ(model().close(id, 200).result, SMGR_ERROR_SUCCESS);  // never refused
  EXPECT_EQ(model().close(99, 100).result, SMGR_ERROR_NO_MATCHING_METADATA_FOUND);
  EXPECT_EQ(model().openCount(id), 2);
  model().clientGone(100);
  EXPECT_EQ(model().openCount(id), 0);

  SMGR_STREAM_CFG stream = UdpConfig("with-klv");
  stream.enContents |= SMGR_STREAM_CONTENTS_DATA;
  stream.nNumOfSources = 3;
  stream.ContentSources[2].enType = SMGR_CONTENT_SRC_DATA;
  WireSources wire;
  wire.entries[2].enType = SMGR_CONTENT_SRC_DATA;
  wire.entries[2].Via.ID = id;
  Outcome created = create(stream, wire);
  ASSERT_EQ(created.result, SMGR_ERROR_SUCCESS) << created.description;
  EXPECT_EQ(streams().start(ById(created.id)).result, SMGR_WARNING_STREAM_HAS_UNSTARTED_CONTENT_SOURCE);
  EXPECT_EQ(model().remove(ById(id)).result, SMGR_ERROR_METADATA_SOURCE_IN_USE);
  streams().stop(ById(created.id));
  ASSERT_EQ(streams().remove(ById(created.id)).result, SMGR_ERROR_SUCCESS);
  EXPECT_EQ(model().remove(ById(id)).result, SMGR_ERROR_SUCCESS);
  EXPECT_EQ(model().remove(ById(id)).result, SMGR_ERROR_NO_MATCHING_METADATA_FOUND);
}

}  // namespace
}  // namespace sim::test
