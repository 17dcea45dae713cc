// SessMgr_CompareStreamConfigs: the rows whose comparison depends on a
// condition, the reused wordings, secrets kept out of the traces, and records
// of older callers read only within their nSize.
#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>

#include "library_channel.h"
#include "stream_internal.h"
#include "trace_capture.h"

namespace {

class StreamCompareTest : public ::testing::Test {
 protected:
  StreamCompareTest() {
    smgr::test::AttachLibraryChannel();
    a.nSize = sizeof(SMGR_STREAM_CFG);
    a.enType = SMGR_STREAM_TYPE_TX;
    a.enEncapsulation = SMGR_STREAM_ENCAPS_TS_UDP;
    a.nNumOfSources = 1;
    a.ContentSources[0].enType = SMGR_CONTENT_SRC_VIDEO;
    b = a;
  }
  // Compares and returns the single trace written (empty when equal).
  std::string Difference() {
    smgr::test::TraceCapture capture(5);
    const int nResult = SessMgr_CompareStreamConfigs(&a, &b);
    auto texts = capture.texts();
    EXPECT_EQ(nResult, texts.empty() ? 0 : 1);
    return texts.empty() ? std::string() : texts.back();
  }
  SMGR_STREAM_CFG a{};
  SMGR_STREAM_CFG b{};
};

TEST_F(StreamCompareTest, EqualRecordsAndTheFirstDifferenceOnly) {
  EXPECT_EQ(Difference(), "");
  b.nSize = 100;
  b.nIndex = 9;
  EXPECT_EQ(Difference(), "nSize fields differ 2912 vs 100.\n");
  b.nSize = a.nSize;
  EXPECT_EQ(Difference(), "nIndex fields differ 0 vs 9.\n");
}

TEST_F(StreamCompareTest, ConditionalRowsAreSkippedWhenTheirConditionDoesNotHold) {
  b.RtcpCfg.usPort = 5005;                // RTCP off in both
  b.EncapSpecCfg.SRT.nLatencyInMS = 400;  // not an SRT stream
  b.FECCfg.ProMPEG.nNumOfRows = 4;        // no Pro-MPEG FEC
  b.CryptoCfg.acKeyData[0] = 1;           // not encrypted
  b.nOverheadPercentage = 20;             // no shaping
  b.nDataBitRateInKbps = 64;
  a.bAutoDetectDataBitRate = b.bAutoDetectDataBitRate = TRUE;
  std::strcpy(a.szStillImageFName, "/usr/share/ostrelle/still_images/logo.mp4");
  std::strcpy(b.szStillImageFName, "logo.mp4");
  EXPECT_EQ(Difference(), "");

  a.enType = b.enType = SMGR_STREAM_TYPE_RX;
  b.IpTTL = 9;
  EXPECT_EQ(Difference(), "");
  a.enType = b.enType = SMGR_STREAM_TYPE_TX;
  EXPECT_EQ(Difference(), "IpTTL fields differ 0 vs 9.\n");
}

TEST_F(StreamCompareTest, TransportStreamAndSourcePortRowsFollowTheEncapsulation) {
  b.usSourcePort = 7;
  a.enEncapsulation = b.enEncapsulation = 16;  // publishing: no source port, no TS identifiers
  b.TsCfg.iPmtPID = 100;
  EXPECT_EQ(Difference(), "");
  a.enEncapsulation = b.enEncapsulation = SMGR_STREAM_ENCAPS_TS_SRT;
  EXPECT_EQ(Difference(), "usSourcePort fields differ 0 vs 7.\n");
  b.usSourcePort = 0;
  EXPECT_EQ(Difference(), "iPmtPID fields differ 0 vs 100.\n");
}

TEST_F(StreamCompareTest, SrtRowsKeepTheirWordings) {
  a.enEncapsulation = b.enEncapsulation = SMGR_STREAM_ENCAPS_TS_SRT;
  b.EncapSpecCfg.SRT.nMaxBwInKbps = 800;
  EXPECT_EQ(Difference(), "nOverheadPercentage fields differ 0 vs 800.\n");
  b.EncapSpecCfg.SRT.nMaxBwInKbps = 0;
  b.EncapSpecCfg.SRT.bStrictEncryption = TRUE;  // caller mode: not compared
  EXPECT_EQ(Difference(), "");
  a.EncapSpecCfg.SRT.enMode = b.EncapSpecCfg.SRT.enMode = SMGR_SRT_MODE_SERVER;
  EXPECT_EQ(Difference(), "SRT listener strict encryption fields differ 0 vs 1.\n");
  b.EncapSpecCfg.SRT.bStrictEncryption = FALSE;
  a.EncapSpecCfg.SRT.SecAddress.enType = b.EncapSpecCfg.SRT.SecAddress.enType = SMGR_UNRESOLVED_HOSTNAME;
  std::strcpy(b.EncapSpecCfg.SRT.SecAddress.szHostName, "backup");
  EXPECT_EQ(
      Difference(),
      "IPv4 unresolved host EncapSpecCfg.SRT.SecAddress.szHostName fields differ \"\" vs \"backup\".\n");
  b.EncapSpecCfg.SRT.enDnGrRedundancyMode = 2;  // never compared
  std::strcpy(a.EncapSpecCfg.SRT.SecAddress.szHostName, "backup");
  EXPECT_EQ(Difference(), "");
}

TEST_F(StreamCompareTest, AddressRowsByKind) {
  a.Address.enType = b.Address.enType = SMGR_UNRESOLVED_HOSTNAME;
  std::strcpy(b.Address.szHostName, "x");
  EXPECT_EQ(Difference(), "IPv4 resolved host Address.acAddress fields differ \"\" vs \"x\".\n");
  a.Address.enType = b.Address.enType = SMGR_ANY_ADDRESS;
  b.Address.acAddress[0] = 1;
  EXPECT_EQ(Difference(), "");
  a.Address.enType = b.Address.enType = SMGR_IPV4_ADDRESS;
  b.Address.acAddress[0] = 0;
  b.Address.acAddress[4] = 1;  // beyond the four IPv4 bytes
  EXPECT_EQ(Difference(), "");
  a.Address.enType = b.Address.enType = SMGR_HOSTNAME_RESOLVED_AS_IPV6;
  EXPECT_EQ(Difference(), "IPv6 resolved host Address.acAddress fields differ.\n");
}

TEST_F(StreamCompareTest, ContentSourcesBySelectorKind) {
  int x = 0, y = 0;
  a.ContentSources[0].Selector.enType = b.ContentSources[0].Selector.enType = SMGR_SELECTBY_OBJECT_HANDLE;
  a.ContentSources[0].Selector.Via.Handle = &x;
  b.ContentSources[0].Selector.Via.Handle = &x;
  EXPECT_EQ(Difference(), "");
  b.ContentSources[0].Selector.Via.Handle = &y;
  EXPECT_EQ(Difference().rfind("ContentSources[0].Selector.Via.ID fields differ 0x", 0), 0u);
  a.ContentSources[0].Selector.enType = b.ContentSources[0].Selector.enType = SMGR_SELECTBY_OBJECT_NAME;
  a.ContentSources[0].Selector.Via.szName = "enc1";
  b.ContentSources[0].Selector.Via.szName = "enc2";
  EXPECT_EQ(Difference(), "ContentSources[0].Selector.Via.szName fields differ \"enc1\" vs \"enc2\".\n");
  a.nNumOfSources = b.nNumOfSources = 1000;  // never read past the 24 entries
  b.ContentSources[0].Selector.Via.szName = "enc1";
  EXPECT_EQ(Difference(), "");
}

TEST_F(StreamCompareTest, SecretsAreNeverPrinted) {
  a.bEncrypted = b.bEncrypted = TRUE;
  std::memcpy(b.CryptoCfg.acKeyData, "\x11\x22", 2);
  EXPECT_EQ(Difference(), "CryptoCfg.acKeyData fields differ.\n");
  a.enEncapsulation = b.enEncapsulation = SMGR_STREAM_ENCAPS_TS_SRT;  // SRT compares the pass phrase instead
  std::strcpy(b.CryptoCfg.szPassphrase, "topsecret");
  EXPECT_EQ(Difference(), "CryptoCfg.szPassphrase fields differ.\n");
}

TEST_F(StreamCompareTest, ShortRecordsAreReadOnlyWithinTheirSize) {
  constexpr size_t kOldSize = offsetof(SMGR_STREAM_CFG, Address);
  auto pOld1 = std::make_unique<unsigned char[]>(kOldSize);
  auto pOld2 = std::make_unique<unsigned char[]>(kOldSize);
  a.nSize = kOldSize;
  std::memcpy(pOld1.get(), &a, kOldSize);
  std::memcpy(pOld2.get(), &a, kOldSize);
  EXPECT_EQ(SessMgr_CompareStreamConfigs(reinterpret_cast<SMGR_STREAM_CFG*>(pOld1.get()),
                                         reinterpret_cast<SMGR_STREAM_CFG*>(pOld2.get())),
            0);
}

TEST(StreamConfigDump, NeverPrintsKeysOrPassPhrases) {
  smgr::test::AttachLibraryChannel();
  SMGR_STREAM_CFG cfg{};
  cfg.nSize = sizeof(cfg);
  cfg.enEncapsulation = SMGR_STREAM_ENCAPS_TS_SRT;
  cfg.bEncrypted = TRUE;
  cfg.CryptoCfg.nKeySize = 16;
  std::memset(cfg.CryptoCfg.acKeyData, 'K', 16);
  std::strcpy(cfg.CryptoCfg.szPassphrase, "hunter2hunter2");
  cfg.nNumOfSources = 2;
  cfg.ContentSources[1].enType = 9;
  smgr::test::TraceCapture capture(6);
  _PrintStreamCfg(&cfg);
  EXPECT_TRUE(capture.has("AES Key Size = 16 Bytes (128 bits).\n"));
  EXPECT_TRUE(capture.has("Source 2/2 Type = Unknown (9).\n"));
  EXPECT_TRUE(capture.has("szNetworkInterface = Auto.\n"));
  EXPECT_FALSE(capture.hasFragment("hunter2"));
  EXPECT_FALSE(capture.hasFragment("KKKK"));
  EXPECT_EQ(capture.texts().back(), "bNonPersistent = No.\n");
  for (const auto& trace : capture.traces())
    if (trace.channel == "SESSMGRLIB") {
      EXPECT_EQ(trace.function, "_PrintStreamCfg") << trace.text;
    }
}

TEST(StreamInfoDump, ShowsTheReportedKeyAsAHexDump) {
  smgr::test::AttachLibraryChannel();
  SMGR_STREAM_INFO info{};
  info.nSize = sizeof(info);
  info.bEncrypted = TRUE;
  info.CryptoCfg.nKeySize = 16;
  std::memset(info.CryptoCfg.acKeyData, 0xAB, 16);
  smgr::test::TraceCapture capture(6);
  _PrintStreamInfo(&info);
  EXPECT_TRUE(capture.has("Encryption Key:\n"));
  EXPECT_TRUE(capture.hasFragment(" ab ab ab ab"));
  for (const auto& trace : capture.traces())
    if (trace.channel == "SESSMGRLIB") {
      EXPECT_EQ(trace.function, "_PrintStreamInfo") << trace.text;
    }
}

}  // namespace
