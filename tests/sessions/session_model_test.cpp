// Rules of the simulator's session model: member checks at creation, start
// and stop of the members with the session, and the announcement counters.
#include "session_model.h"

#include <gtest/gtest.h>

#include "model_fixture.h"

namespace sim::test {
namespace {

class SessionModelTest : public ApplianceTest {
 protected:
  SessionModel& sessions() { return appliance_->family<SessionModel>(); }
  // A session of the given stream IDs, advertised on "any".
  Outcome createSession(const char* name, std::initializer_list<int> members,
                        int advertType = SMGR_ANY_ADDRESS) {
    SMGR_SESSION_CFG cfg{};
    cfg.nSize = sizeof cfg;
    snprintf(cfg.szName, sizeof cfg.szName, "%s", name);
    cfg.bAdvertise = TRUE;
    cfg.AdvertAddress.enType = advertType;
    SMGRPROT_OBJECT_SELECTOR wire[SMGR_MAX_SESSION_STREAMS]{};
    for (int id : members) {  // more than the record holds: counted, not written
      if (cfg.nNumOfStreams < SMGR_MAX_SESSION_STREAMS) {
        cfg.Streams[cfg.nNumOfStreams].enType = SMGR_SELECTBY_OBJECT_ID;
        wire[cfg.nNumOfStreams].Via.ID = id;
      }
      ++cfg.nNumOfStreams;
    }
    return sessions().create(cfg, wire);
  }
};

TEST_F(SessionModelTest, CreateChecksMembersNamesAndIds) {
  ASSERT_EQ(create(UdpConfig("cam1")).result, SMGR_ERROR_SUCCESS);
  ASSERT_EQ(create(UdpConfig("cam2")).result, SMGR_ERROR_SUCCESS);
  ASSERT_EQ(create(SrtConfig("srt")).result, SMGR_ERROR_SUCCESS);
  Outcome first = createSession("", {1});
  ASSERT_EQ(first.result, SMGR_ERROR_SUCCESS);
  EXPECT_EQ(first.name, "Session1");
  EXPECT_EQ(createSession("Session1", {2}).result, SMGR_SAP_SESSION_NAME_IN_USE);
  EXPECT_EQ(createSession("b", {1}).result, SMGR_ERROR_STREAM_IN_USE);
  EXPECT_EQ(createSession("b", {99}).result, SMGR_ERROR_NO_MATCHING_STREAM_FOUND);
  EXPECT_EQ(createSession("b", {3}).result, SMGR_ERROR_UNSUPPORTED_SAP_STREAM_PARAMETERS);
  EXPECT_EQ(createSession("b", {2}, SMGR_IPV6_ADDRESS).result,
            SMGR_ERROR_INCONSISTENT_SAP_ANNOUNCEMENT_ADDRESS_FAMILY);
  EXPECT_EQ(createSession("b", {2, 2, 2, 2}).result, SMGR_ERROR_INVALID_PARAMETERS);

  SMGR_SESSION_INFO info{};
  ASSERT_EQ(sessions().info(ById(1), &info), SMGR_ERROR_SUCCESS);
  EXPECT_EQ(info.nNumOfStreams, 1);
  EXPECT_EQ(info.Streams[0].Via.ID, 1);
  EXPECT_EQ(info.ActualAdvertAddress.acAddress[0], 239);  // "any" is the SAP address
  EXPECT_EQ(info.ActualAdvertAddress.acAddress[3], 255);
  EXPECT_EQ(info.usAdvertPort, 9875);
  EXPECT_EQ(sessions().sessionOfStream(1), 1);
}

TEST_F(SessionModelTest, StartRunsTheMembersAndAnnouncesEveryFiveSeconds) {
  ASSERT_EQ(create(UdpConfig("cam1")).result, SMGR_ERROR_SUCCESS);
  ASSERT_EQ(create(UdpConfig("cam2")).result, SMGR_ERROR_SUCCESS);
  ASSERT_EQ(createSession("news", {1, 2}).result, SMGR_ERROR_SUCCESS);
  EXPECT_EQ(sessions().stop(ByName("news")).result, SMGR_ERROR_SESSION_NOT_STARTED);
  ASSERT_EQ(sessions().start(ByName("news")).result, SMGR_ERROR_SUCCESS);
  EXPECT_NE(streams().stateOf(2), SMGR_STREAM_STATE_STOPPED);
  EXPECT_EQ(sessions().start(ByName("news")).result, SMGR_ERROR_SESSION_ALREADY_STARTED);
  EXPECT_EQ(sessions().remove(ByName("news")).result, SMGR_ERROR_SESSION_IN_USE);

  clock_->advanceMs(12000);
  SMGR_SESSION_STATS stats{};
  ASSERT_EQ(sessions().stats(ById(1), &stats), SMGR_ERROR_SUCCESS);
  EXPECT_TRUE(stats.bAdvertising);
  EXPECT_EQ(stats.nTxOkPackets, 6u);  // at 0, 5 and 10 s, for each of two members
  ASSERT_EQ(sessions().stop(ById(1)).result, SMGR_ERROR_SUCCESS);
  EXPECT_EQ(streams().stateOf(1), SMGR_STREAM_STATE_STOPPED);
  EXPECT_EQ(streams().remove(ById(1)).result, SMGR_ERROR_STREAM_IN_USE);  // a stopped member
  EXPECT_EQ(sessions().remove(ById(1)).result, SMGR_ERROR_SUCCESS);
  EXPECT_EQ(streams().remove(ById(1)).result, SMGR_ERROR_SUCCESS);
  EXPECT_EQ(sessions().start(ById(1)).result, SMGR_ERROR_NO_MATCHING_SESSION_FOUND);
}

}  // namespace
}  // namespace sim::test
