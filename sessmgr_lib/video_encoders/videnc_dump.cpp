// Level 6 dumps of the video encoder records: a configuration field by field
// under its trace label (SETTING when its SetFieldsFlag bit is set, NOT
// Setting otherwise) and an information record after GetInfo.
#include <cstddef>
#include <cstring>

#include "lib_trace.h"
#include "sessmgr_api.h"
#include "util_string.h"
#include "videnc_internal.h"

namespace {

enum class Kind { Unsigned, Signed, Bool, Format, Float, Enum };

struct CfgField {
  unsigned long long mask;
  const char* szLabel;
  size_t nOffset;
  Kind kind;
  const char* szNames;  // value-name operation of an enumeration
  const char* szUnit;   // appended to the SETTING value ("kbps")
};

#define F(mask, label, field, kind, names, unit) \
  { mask, label, offsetof(SMGR_VIDEO_ENCODER_CFG, field), Kind::kind, names, unit }
constexpr CfgField kCfgFields[] = {
    F(1ull << 0, "INPUT_INTERFACE", enInputInterface, Enum, "SessMgr_GetVideoEncoderInputTypeString", ""),
    F(1ull << 1, "SCALING MATRIX", enScalingMatrix, Enum, "SessMgr_GetVideoEncoderScalingMatrixString", ""),
    F(1ull << 2, "OUTPUT_RESOLUTION", enOutputResolution, Format, nullptr, ""),
    F(1ull << 3, "BITRATE", nBitRateInKbps, Unsigned, nullptr, " kbps"),
    F(1ull << 4, "PICTURE_RATE", nEncodedPictureRate, Unsigned, nullptr, ""),
    F(1ull << 5, "GOP_SIZE", nGOPSize, Unsigned, nullptr, ""),
    F(1ull << 6, "CLOSED_CAPTION", bExtractClosedCaption, Bool, nullptr, ""),
    F(1ull << 7, "PTSOFFSET", nPTSOffset, Signed, nullptr, ""),
    F(1ull << 8, "ASPECT_RATIO", enAspectRatio, Enum, "SessMgr_GetVideoEncoderAspectRatioString", ""),
    F(1ull << 10, "TIME_CODE", enTimeCode, Enum, "SessMgr_GetVideoEncoderTimeCodeString", ""),
    F(1ull << 11, "GOP_STRUCTURE", enGOPStructure, Enum, "SessMgr_GetVideoEncoderGOPStructureString", ""),
    F(1ull << 12, "STRICT_BITRATE", bStrictBitrate, Bool, nullptr, ""),
    F(1ull << 13, "RESIZE_MODE", enResizeMode, Enum, "SessMgr_GetVideoResizeModeString", ""),
    F(1ull << 14, "GOP_MODE", enGOPMode, Enum, "SessMgr_GetVideoEncoderGOPModeString", ""),
    F(1ull << 15, "CHROMA_SUBSAMPLING", enChromaSubSampling, Enum,
      "SessMgr_GetVideoEncoderChromaSubSamplingString", ""),
    F(1ull << 16, "NUM_SLICES", nNumSlices, Unsigned, nullptr, ""),
    F(1ull << 17, "DEBLOCK_FILTER", bDeblockingFilter, Bool, nullptr, ""),
    F(1ull << 19, "DBLK_FILTER_TCOFFSET", DeblockTcOffset, Signed, nullptr, ""),
    F(1ull << 19, "DBLK_FILTER_BETAOFFSET", DeblockBetaOffset, Signed, nullptr, ""),
    F(1ull << 20, "ENCODING_PROFILE", enEncodingProfile, Enum, "SessMgr_GetVideoEncoderEncodingProfileString",
      ""),
    F(1ull << 21, "SCENE CHANGE RESILIENCE", bSceneChangeResilience, Bool, nullptr, ""),
    F(1ull << 22, "CODEC ALGORITHM", enCodecAlgorithm, Enum, "SessMgr_GetVideoEncoderCodecAlgorithmString",
      ""),
    F(1ull << 23, "SYSTEM TIMECODE COUNT MODE", enSystemTCCountingMode, Enum,
      "SessMgr_GetVideoEncoderSystemTCModeString", ""),
    F(1ull << 24, "INTRA REFRESH MODE", bUseIntraRefresh, Bool, nullptr, ""),
    F(1ull << 25, "RATE CONTROL MODE", enRateControlMode, Enum,
      "SessMgr_GetVideoEncoderRateControlModeString", ""),
    F(1ull << 26, "MAXBITRATE", nMaxBitRateInKbps, Unsigned, nullptr, " kbps"),
    F(1ull << 27, "CPBSIZE ms", nCPBSizeMs, Unsigned, nullptr, ""),
    F(1ull << 29, "MAXPICTURESIZE RATIO", MaxPictureSizeRatio, Float, nullptr, ""),
    F(1ull << 30, "DYNAMIC RANGE MODE", enDynamicRangeMode, Enum,
      "SessMgr_GetVideoEncoderDynamicRangeModeString", ""),
    F(1ull << 31, "SKIP SEQUENCE LENGTH", SkipSequenceLength, Unsigned, nullptr, ""),
    F(1ull << 32, "TIMECODE RESYNC", bEnableTCResync, Bool, nullptr, ""),
    F(1ull << 33, "TIMECODE RESYNC HOUR", TCResyncHour, Unsigned, nullptr, ""),
    F(1ull << 35, "SMGR_VIDENC_ANC_INPUT", enANCDataInput, Enum, "SessMgr_GetVideoEncoderInputTypeString",
      ""),
};
#undef F

// The value of one field as text ("4000", "TRUE", "3 (High)", "1920x1080i").
void ValueText(const BYTE* pbRecord, const CfgField& field, char* szBuffer, size_t nSize) {
  int32_t nValue = 0;
  std::memcpy(&nValue, pbRecord + field.nOffset, sizeof(nValue));
  switch (field.kind) {
    case Kind::Unsigned:
      PrintToString(szBuffer, nSize, "%u", static_cast<unsigned>(nValue));
      break;
    case Kind::Signed:
      PrintToString(szBuffer, nSize, "%d", nValue);
      break;
    case Kind::Bool:
      CopyString(szBuffer, nValue ? "TRUE" : "FALSE", nSize);
      break;
    case Kind::Float: {
      float fValue = 0;
      std::memcpy(&fValue, pbRecord + field.nOffset, sizeof(fValue));
      PrintToString(szBuffer, nSize, "%f", static_cast<double>(fValue));
      break;
    }
    case Kind::Format: {
      VIDEO_FORMAT lFormat = 0;
      std::memcpy(&lFormat, pbRecord + field.nOffset, sizeof(lFormat));
      char szText[48];
      PrintToString(
          szBuffer, nSize, "0x%016llX (%s)", static_cast<unsigned long long>(lFormat),
          SessMgr_GetVideoEncoderOutputResolutionString(static_cast<long>(lFormat), szText, sizeof(szText)));
      break;
    }
    case Kind::Enum: {
      char szText[48];
      PrintToString(szBuffer, nSize, "%d (%s)", nValue,
                    _VidEncNameOf(field.szNames, nValue, szText, sizeof(szText)));
      break;
    }
  }
}

}  // namespace

void _PrintVideoEncoderCfg(const SMGR_VIDEO_ENCODER_CFG* pCfg) {
  if (pCfg == nullptr || !SMGR_TRACE_ENABLED(6)) return;
  SMGR_TRACE(6, "SetFieldsFlag = 0x%016llX.\n", static_cast<unsigned long long>(pCfg->SetFieldsFlag));
  const BYTE* pbRecord = reinterpret_cast<const BYTE*>(pCfg);
  for (const CfgField& field : kCfgFields) {
    char szValue[96];
    ValueText(pbRecord, field, szValue, sizeof(szValue));
    if (pCfg->SetFieldsFlag & field.mask)
      SMGR_TRACE(6, "SETTING %s to %s%s.\n", field.szLabel, szValue, field.szUnit);
    else
      SMGR_TRACE(6, "NOT Setting %s (%s).\n", field.szLabel, szValue);
  }
}

void _PrintVideoEncoderInfo(const SMGR_VIDEO_ENCODER_INFO* pInfo) {
  if (pInfo == nullptr || !SMGR_TRACE_ENABLED(6)) return;
  char szName[SMGR_OBJECT_NAME_SIZE];
  CopyString(szName, pInfo->szName, sizeof(szName));  // the daemon's text may lack a terminator
  char szText[48];
  SMGR_TRACE(6, "Encoder \"%s\" (ID %u):\n", szName, pInfo->nID);
  SMGR_TRACE(6, "  INPUT_INTERFACE = %s.\n",
             _VidEncNameOf("SessMgr_GetVideoEncoderInputTypeString", pInfo->enInputInterface, szText,
                           sizeof(szText)));
  SMGR_TRACE(6, "  OUTPUT_RESOLUTION = %s.\n",
             SessMgr_GetVideoEncoderOutputResolutionString(static_cast<long>(pInfo->enOutputResolution),
                                                           szText, sizeof(szText)));
  SMGR_TRACE(6, "  BITRATE = %u kbps (adapted: %s, %u kbps).\n", pInfo->nBitRateInKbps,
             pInfo->bBitRateWasAdapted ? "TRUE" : "FALSE", pInfo->nAdaptedBitRateInKbps);
  SMGR_TRACE(6, "  PICTURE_RATE = %u, GOP_SIZE = %u, GOP_STRUCTURE = %s.\n", pInfo->nEncodedPictureRate,
             pInfo->nGOPSize,
             _VidEncNameOf("SessMgr_GetVideoEncoderGOPStructureString", pInfo->enGOPStructure, szText,
                           sizeof(szText)));
  SMGR_TRACE(6, "  CODEC ALGORITHM = %s.\n",
             _VidEncNameOf("SessMgr_GetVideoEncoderCodecAlgorithmString", pInfo->enCodecAlgorithm, szText,
                           sizeof(szText)));
  SMGR_TRACE(6, "  ENCODING_PROFILE = %s.\n",
             _VidEncNameOf("SessMgr_GetVideoEncoderEncodingProfileString", pInfo->enEncodingProfile, szText,
                           sizeof(szText)));
  SMGR_TRACE(6, "  RATE CONTROL MODE = %s, MAXBITRATE = %u kbps, CPBSIZE ms = %u.\n",
             _VidEncNameOf("SessMgr_GetVideoEncoderRateControlModeString", pInfo->enRateControlMode, szText,
                           sizeof(szText)),
             pInfo->nMaxBitRateInKbps, pInfo->nCPBSizeMs);
}
