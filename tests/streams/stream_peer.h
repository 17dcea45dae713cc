// Shared set-up of the stream peer tests: a connected library, the stream
// response sizes, a builder of configurations (selectors: row_kit.h).
#pragma once

#include <cstring>
#include <string>

#include "peer_fixture.h"
#include "row_kit.h"
#include "sessmgr_api.h"
#include "smgr_protocol.h"

namespace smgr::test {

class StreamPeerTest : public ConnectedPeerTest {
 protected:
  void SetUp() override {
    ConnectedPeerTest::SetUp();
    for (WORD w : {SMGRPROT_STREAM_DELETE_RSP, SMGRPROT_STREAM_STOP_RSP, SMGRPROT_STREAM_PAUSE_RSP,
                   SMGRPROT_STREAM_RESUME_RSP, SMGRPROT_STREAM_RESETSTATS_RSP, SMGRPROT_STREAM_CLOSE_RSP})
      peer.setReplySize(w, sizeof(SMGRPROT_MSG_STREAM_RESULT_RSP));
    peer.setReplySize(SMGRPROT_STREAM_CREATE_RSP, sizeof(SMGRPROT_MSG_STREAM_CREATE_RSP));
    peer.setReplySize(SMGRPROT_STREAM_OPEN_RSP, sizeof(SMGRPROT_MSG_STREAM_OPEN_RSP));
    peer.setReplySize(SMGRPROT_STREAM_GETINFO_RSP, sizeof(SMGRPROT_MSG_STREAM_GETINFO_RSP));
    peer.setReplySize(SMGRPROT_STREAM_GETSTATS_RSP, sizeof(SMGRPROT_MSG_STREAM_GETSTATS_RSP));
    peer.setReplySize(SMGRPROT_STILL_DELETE_RSP, sizeof(SMGRPROT_MSG_STILL_DELETE_RSP));
  }

  // Answers the next create or open with this ID and name.
  void AnswerWithStream(WORD wRequest, int32_t iStreamID, const char* szName = "") {
    char name[64] = {};
    std::strncpy(name, szName, sizeof(name) - 1);
    peer.onNextRequest(wRequest, Reply::ok().put(20, iStreamID).bytes(24, name, sizeof(name)));
  }

  static SMGR_STREAM_CFG VideoStream(const char* szName = "") {
    SMGR_STREAM_CFG cfg{};
    cfg.nSize = sizeof(cfg);
    std::strncpy(cfg.szName, szName, sizeof(cfg.szName) - 1);
    cfg.enType = SMGR_STREAM_TYPE_TX;
    cfg.enContents = SMGR_STREAM_CONTENTS_VIDEO;
    cfg.enEncapsulation = SMGR_STREAM_ENCAPS_TS_UDP;
    cfg.nNumOfSources = 1;
    cfg.ContentSources[0].enType = SMGR_CONTENT_SRC_VIDEO;
    cfg.ContentSources[0].Selector.enType = SMGR_SELECTBY_OBJECT_ID;
    cfg.ContentSources[0].Selector.Via.ID = 1;
    return cfg;
  }
};

}  // namespace smgr::test
