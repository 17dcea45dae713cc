// SessMgr_CreateStream against the test peer: the exact request, what the
// library rewrites or refuses before sending, and the handle it returns.
#include <gtest/gtest.h>

#include <string>

#include "stream_peer.h"

namespace smgr::test {
namespace {

using StreamCreateTest = StreamPeerTest;

TEST_F(StreamCreateTest, RequestCarriesTheConfigurationAndOneWireEntryPerSource) {
  SMGR_STREAM_CFG cfg = VideoStream("cam");
  cfg.enContents = SMGR_STREAM_CONTENTS_VIDEO | SMGR_STREAM_CONTENTS_AUDIO;
  cfg.nNumOfSources = 2;
  cfg.ContentSources[1].enType = SMGR_CONTENT_SRC_AUDIO;
  cfg.ContentSources[1].Selector.enType = SMGR_SELECTBY_OBJECT_NAME;
  const std::string longName(70, 'a');
  cfg.ContentSources[1].Selector.Via.szName = longName.c_str();
  cfg.ContentSources[1].iTsPid = 0x101;
  AnswerWithStream(SMGRPROT_STREAM_CREATE_REQ, 12, "cam-12");
  HSTREAM hStream = nullptr;
  ASSERT_TRUE(SessMgr_CreateStream(&cfg, &hStream)) << SessMgr_GetLastError();
  EXPECT_EQ(SessMgr_GetLastError(), 0u);

  auto request = peer.lastRequest(SMGRPROT_STREAM_CREATE_REQ);
  ASSERT_TRUE(request);
  ASSERT_EQ(request->size(), 4560u);
  EXPECT_EQ(request->header().wMsgSize, 4560);
  auto sent = request->as<SMGRPROT_MSG_STREAM_CREATE_REQ>();
  EXPECT_EQ(std::memcmp(&sent.Data.StreamCfg, &cfg, sizeof(cfg)), 0);  // the name pointer travels unchanged
  EXPECT_EQ(sent.Data.ContentSources[0].enType, SMGR_CONTENT_SRC_VIDEO);
  EXPECT_EQ(sent.Data.ContentSources[0].Via.ID, 1);
  EXPECT_EQ(sent.Data.ContentSources[1].enType, SMGR_CONTENT_SRC_AUDIO);  // the kind, not the selection type
  EXPECT_EQ(std::string(sent.Data.ContentSources[1].Via.szName), longName.substr(0, 63));
  const SMGRPROT_OBJECT_SELECTOR zero{};
  for (int i = 2; i < SMGR_MAX_STREAM_CONTENT_SOURCES; ++i)
    EXPECT_EQ(std::memcmp(&sent.Data.ContentSources[i], &zero, sizeof(zero)), 0) << i;

  int nID = 0;
  ASSERT_TRUE(SessMgr_GetStreamID(hStream, &nID));
  EXPECT_EQ(nID, 12);
  // The handle took the daemon's name: a second create of that name stays local.
  SMGR_STREAM_CFG again = VideoStream("cam-12");
  HSTREAM hSecond = nullptr;
  EXPECT_FALSE(SessMgr_CreateStream(&again, &hSecond));
  EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_ID_IN_USE);
  EXPECT_EQ(peer.requestCount(SMGRPROT_STREAM_CREATE_REQ), 1u);
  EXPECT_TRUE(SessMgr_CloseStream(&hStream));
}

TEST_F(StreamCreateTest, ShortCallerRecordSendsZerosBeyondItsSizeButAllItsSources) {
  SMGR_STREAM_CFG cfg = VideoStream("old");
  cfg.nSize = 100;
  std::memset(cfg.Address.acAddress, 10, sizeof(cfg.Address.acAddress));  // cut at byte 100
  cfg.usPort = 5000;
  std::strcpy(cfg.szStillImageFName, "/tmp/logo.mp4");  // beyond the 100 bytes: not checked
  cfg.ContentSources[0].Selector.Via.ID = 77;
  AnswerWithStream(SMGRPROT_STREAM_CREATE_REQ, 3);
  HSTREAM hStream = nullptr;
  ASSERT_TRUE(SessMgr_CreateStream(&cfg, &hStream)) << SessMgr_GetLastError();
  auto sent = peer.lastRequest(SMGRPROT_STREAM_CREATE_REQ)->as<SMGRPROT_MSG_STREAM_CREATE_REQ>();
  const auto* pbSent = reinterpret_cast<const BYTE*>(&sent.Data.StreamCfg);
  EXPECT_EQ(std::memcmp(pbSent, &cfg, 100), 0);
  for (size_t i = 100; i < sizeof(cfg); ++i) ASSERT_EQ(pbSent[i], 0) << "offset " << i;
  EXPECT_EQ(sent.Data.ContentSources[0].enType, SMGR_CONTENT_SRC_VIDEO);  // from the caller's whole record
  EXPECT_EQ(sent.Data.ContentSources[0].Via.ID, 77);
  EXPECT_TRUE(SessMgr_CloseStream(&hStream));

  cfg.nSize = 100;  // the coverage check reads the whole record too
  cfg.enContents |= SMGR_STREAM_CONTENTS_AUDIO;
  EXPECT_FALSE(SessMgr_CreateStream(&cfg, &hStream));
  EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_INVALID_STREAM_CONTENTS);
  EXPECT_EQ(peer.requestCount(SMGRPROT_STREAM_CREATE_REQ), 1u);
}

TEST_F(StreamCreateTest, ContentCoverage) {
  HSTREAM hStream = nullptr;
  SMGR_STREAM_CFG cfg = VideoStream();
  cfg.enContents = SMGR_STREAM_CONTENTS_VIDEO | SMGR_STREAM_CONTENTS_AUDIO;
  EXPECT_FALSE(SessMgr_CreateStream(&cfg, &hStream));
  EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_INVALID_STREAM_CONTENTS);

  cfg = VideoStream();
  cfg.nNumOfSources = 0;
  EXPECT_FALSE(SessMgr_CreateStream(&cfg, &hStream));
  EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_INVALID_STREAM_CONTENTS);

  cfg = VideoStream();
  cfg.nNumOfSources = 2;
  cfg.ContentSources[1].enType = 3;  // not a kind
  EXPECT_FALSE(SessMgr_CreateStream(&cfg, &hStream));
  EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_INVALID_PARAMETERS);

  cfg = VideoStream();
  cfg.nNumOfSources = 25;  // more than the record holds
  EXPECT_FALSE(SessMgr_CreateStream(&cfg, &hStream));
  EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_INVALID_PARAMETERS);
  EXPECT_EQ(peer.requestCount(SMGRPROT_STREAM_CREATE_REQ), 0u);
  EXPECT_EQ(hStream, nullptr);

  cfg = VideoStream();  // a kind not named in enContents is allowed
  cfg.nNumOfSources = 2;
  cfg.ContentSources[1].enType = SMGR_CONTENT_SRC_DATA;
  AnswerWithStream(SMGRPROT_STREAM_CREATE_REQ, 4);
  ASSERT_TRUE(SessMgr_CreateStream(&cfg, &hStream));
  EXPECT_TRUE(SessMgr_CloseStream(&hStream));
}

TEST_F(StreamCreateTest, HostNames) {
  HSTREAM hStream = nullptr;
  SMGR_STREAM_CFG cfg = VideoStream();
  cfg.Address.enType = SMGR_IPV4_HOSTNAME;
  std::memset(cfg.Address.szHostName, 'h', 512);  // no terminator within 512
  EXPECT_FALSE(SessMgr_CreateStream(&cfg, &hStream));
  EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_INVALID_STREAM_ADDRESS);
  cfg.Address.szHostName[0] = '\0';
  EXPECT_FALSE(SessMgr_CreateStream(&cfg, &hStream));
  EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_INVALID_STREAM_ADDRESS);
  EXPECT_EQ(peer.requestCount(SMGRPROT_STREAM_CREATE_REQ), 0u);

  // 511 characters pass the length check; with an address given nothing is resolved.
  std::memset(cfg.Address.szHostName, 'h', 511);
  cfg.Address.szHostName[511] = '\0';
  cfg.Address.acAddress[0] = 10;
  AnswerWithStream(SMGRPROT_STREAM_CREATE_REQ, 5);
  ASSERT_TRUE(SessMgr_CreateStream(&cfg, &hStream));
  auto sent = peer.lastRequest(SMGRPROT_STREAM_CREATE_REQ)->as<SMGRPROT_MSG_STREAM_CREATE_REQ>();
  EXPECT_EQ(sent.Data.StreamCfg.Address.enType, SMGR_IPV4_HOSTNAME);
  EXPECT_TRUE(SessMgr_CloseStream(&hStream));

  // A name that does not resolve is sent as it is; the warning survives success.
  cfg = VideoStream();
  cfg.Address.enType = SMGR_IPV4_HOSTNAME;
  std::strcpy(cfg.Address.szHostName, "nowhere.invalid");
  AnswerWithStream(SMGRPROT_STREAM_CREATE_REQ, 6);
  ASSERT_TRUE(SessMgr_CreateStream(&cfg, &hStream));
  EXPECT_EQ(SessMgr_GetLastError(), SMGR_WARNING_UNABLE_TO_RESOLVE_HOSTNAME);
  EXPECT_TRUE(SessMgr_CloseStream(&hStream));

  cfg = VideoStream();
  cfg.Address.enType = SMGR_IPV4_HOSTNAME;
  std::strcpy(cfg.Address.szHostName, "127.0.0.1");
  AnswerWithStream(SMGRPROT_STREAM_CREATE_REQ, 7);
  ASSERT_TRUE(SessMgr_CreateStream(&cfg, &hStream));
  sent = peer.lastRequest(SMGRPROT_STREAM_CREATE_REQ)->as<SMGRPROT_MSG_STREAM_CREATE_REQ>();
  EXPECT_EQ(sent.Data.StreamCfg.Address.enType, SMGR_HOSTNAME_RESOLVED_AS_IPV4);
  EXPECT_EQ(sent.Data.StreamCfg.Address.acAddress[0], 127);
  EXPECT_EQ(SessMgr_GetLastError(), 0u);
  EXPECT_TRUE(SessMgr_CloseStream(&hStream));
}

TEST_F(StreamCreateTest, StillImageNames) {
  HSTREAM hStream = nullptr;
  SMGR_STREAM_CFG cfg = VideoStream();
  std::strcpy(cfg.szStillImageFName, "/tmp/logo.mp4");
  EXPECT_FALSE(SessMgr_CreateStream(&cfg, &hStream));
  EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_INVALID_FILENAME_PATH);
  std::memset(cfg.szStillImageFName, 'x', sizeof(cfg.szStillImageFName));  // unterminated
  EXPECT_FALSE(SessMgr_CreateStream(&cfg, &hStream));
  EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_FILENAME_TOO_LONG);
  EXPECT_EQ(peer.requestCount(SMGRPROT_STREAM_CREATE_REQ), 0u);

  for (const char* szName : {"logo", "/usr/share/ostrelle/still_images/logo.mp4"}) {
    cfg = VideoStream();
    std::strcpy(cfg.szStillImageFName, szName);
    AnswerWithStream(SMGRPROT_STREAM_CREATE_REQ, 8);
    ASSERT_TRUE(SessMgr_CreateStream(&cfg, &hStream)) << szName;
    auto sent = peer.lastRequest(SMGRPROT_STREAM_CREATE_REQ)->as<SMGRPROT_MSG_STREAM_CREATE_REQ>();
    EXPECT_STREQ(sent.Data.StreamCfg.szStillImageFName, "logo.mp4");
    EXPECT_TRUE(SessMgr_CloseStream(&hStream));
  }
}

TEST_F(StreamCreateTest, DaemonRefusalLeavesNoHandle) {
  SMGR_STREAM_CFG cfg = VideoStream("dup");
  cfg.nIndex = 9;
  peer.onNextRequest(SMGRPROT_STREAM_CREATE_REQ, Reply::withResult(SMGR_ERROR_TOO_MANY_STREAMS));
  HSTREAM hStream = nullptr;
  EXPECT_FALSE(SessMgr_CreateStream(&cfg, &hStream));
  EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_TOO_MANY_STREAMS);
  EXPECT_EQ(hStream, nullptr);
  // No local handle was left: the same ID and name are sent again.
  AnswerWithStream(SMGRPROT_STREAM_CREATE_REQ, 9, "dup");
  ASSERT_TRUE(SessMgr_CreateStream(&cfg, &hStream));
  EXPECT_EQ(peer.requestCount(SMGRPROT_STREAM_CREATE_REQ), 2u);
  // A local handle with the requested ID refuses the next create at once.
  SMGR_STREAM_CFG other = VideoStream("other");
  other.nIndex = 9;
  HSTREAM hOther = nullptr;
  EXPECT_FALSE(SessMgr_CreateStream(&other, &hOther));
  EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_ID_IN_USE);
  EXPECT_EQ(peer.requestCount(SMGRPROT_STREAM_CREATE_REQ), 2u);
  EXPECT_FALSE(SessMgr_CreateStream(nullptr, &hOther));
  EXPECT_EQ(SessMgr_GetLastError(), SMGR_ERROR_INVALID_PARAMETERS);
  EXPECT_TRUE(SessMgr_CloseStream(&hStream));
}

TEST_F(StreamCreateTest, WarningResultIsASuccess) {
  SMGR_STREAM_CFG cfg = VideoStream();
  peer.onNextRequest(
      SMGRPROT_STREAM_CREATE_REQ,
      Reply::withResult(SMGR_WARNING_STREAM_HAS_UNSTARTED_CONTENT_SOURCE).put(20, int32_t{21}));
  HSTREAM hStream = nullptr;
  ASSERT_TRUE(SessMgr_CreateStream(&cfg, &hStream));
  EXPECT_EQ(SessMgr_GetLastError(), SMGR_WARNING_STREAM_HAS_UNSTARTED_CONTENT_SOURCE);
  EXPECT_TRUE(SessMgr_CloseStream(&hStream));
}

}  // namespace
}  // namespace smgr::test
