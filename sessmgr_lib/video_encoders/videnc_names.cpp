// Video encoder value names (tables as data on the one value-name mechanism)
// and the three VIDEO_FORMAT text operations. No lock, no last error.
#include <cstdint>
#include <cstring>

#include "lib_state.h"
#include "lib_trace.h"
#include "sessmgr_api.h"
#include "util_cfgfile.h"
#include "util_string.h"
#include "value_names.h"
#include "videnc_internal.h"

namespace {

using smgr::NameCallTrace;
using smgr::NameGeneration;
using smgr::UnknownValueForm;
using smgr::ValueName;
using smgr::ValueNameTable;

// How a value without a text reads; each operation keeps its own.
enum class Fallback {
  InvalidValue,  // "(Invalid:%d)"
  Unknown,       // "<unknown>"
  NotAvailable,  // "(N/A)"
  UnknownValue,  // "(Unknown:%d)"
  InputType,     // "(Invalid:%d)" cut to 8 bytes whatever the buffer
};

struct NameOperation {
  ValueNameTable contract;
  Fallback fallback;
};

template <size_t N>
constexpr NameOperation Op(const char* szName, const ValueName (&entries)[N], Fallback fallback) {
  return {smgr::MakeValueNameTable(szName, entries, NameGeneration::Checked, UnknownValueForm::WithValue),
          fallback};
}

constexpr ValueName kStates[] = {{0, "STOPPED"}, {3, "AWAIT FRAMING"}, {5, "AWAIT FRAMING"},
                                 {7, "WORKING"}, {8, "RESETTING"},     {128, "FAILED"}};
constexpr ValueName kInputsSdi[] = {{0, "BNC-1"}, {1, "BNC-2"}, {2, "BNC-3"}, {3, "BNC-4"}};
constexpr ValueName kInputs2110[] = {{0, "1"}, {1, "2"}, {2, "3"}, {3, "4"}};
constexpr ValueName kAspectRatios[] = {{-1, "Unknown"},
                                       {0, "Auto-Detect"},
                                       {1, "WSS/AFD"},
                                       {2, "4:3"},
                                       {3, "5:3"},
                                       {4, "5:4"},
                                       {5, "16:9"},
                                       {6, "4:3 alternative 14:9 CENTER"},
                                       {7, "Reserved"},
                                       {8, "Box 16:9 Top"},
                                       {9, "Box 14:9 Top"},
                                       {10, "Box > 16:9 Centre"},
                                       {11, "14:9"},
                                       {12, "Full Format"},
                                       {13, "3:2"},
                                       {14, "16:10"},
                                       {15, "17:9"},
                                       {16, "16:9 alternative 14:9 CENTER"},
                                       {17, "16:9 alternative 4:3 CENTER"},
                                       {100, "None"}};
constexpr ValueName kTimeCodes[] = {{0, "None"}, {1, "VIDEO"}, {2, "SYSTEM"}};
constexpr ValueName kTimeCodeSources[] = {
    {0, "None"}, {1, "High Precision UTC"}, {2, "VITC Commercial"}, {3, "LDS/UAS UTC"}, {4, "SYSTEM"}};
constexpr ValueName kSystemTCModes[] = {{0, "UTC-Conversion"}, {1, "SMPTE12M-1"}};
constexpr ValueName kGOPStructures[] = {{0, "IP"},    {1, "I"},      {2, "IBP"},     {3, "IBBP"},
                                        {4, "IBBBP"}, {5, "IBBBBP"}, {6, "IBBBBBP"}, {7, "IBBBBBBBP"}};
constexpr ValueName kGOPModes[] = {{0, "Normal"},   {1, "Pyramidal"}, {2, "LowDelayP"}, {3, "LowDelayB"},
                                   {4, "Adaptive"}, {5, "NormalB"},   {6, "PyramidalB"}};
constexpr ValueName kResizeModes[] = {{0, "Scale"}, {1, "Crop"}};
constexpr ValueName kChroma[] = {
    {1, "4:2:0 8-bit"}, {2, "4:2:0 10-bit"}, {3, "4:2:2 8-bit"}, {4, "4:2:2 10-bit"}};
constexpr ValueName kProfiles[] = {{1, "Baseline"},   {2, "Main"},    {3, "High"},         {4, "High 10"},
                                   {5, "High 4:2:2"}, {6, "Main 10"}, {7, "Main 4:2:2 10"}};
constexpr ValueName kCodecs[] = {{0, "H.264"}, {1, "H.265"}};
constexpr ValueName kEntropyCodings[] = {{0, "CAVLC"}, {1, "CABAC"}};
constexpr ValueName kRateControls[] = {{0, "CBR"}, {1, "CVBR"}, {2, "LowLatencyVBR"}};
constexpr ValueName kScalingMatrices[] = {{0, "Default"}, {1, "Noisy"}};
constexpr ValueName kHEVCTiers[] = {{0, "Main"}, {1, "High"}};
constexpr ValueName kDynamicRanges[] = {{0, "SDR"}, {1, "Auto-Detect"}, {2, "HDR-HLG"}, {3, "HDR-PQ"}};
constexpr ValueName kH264Levels[] = {{9, "1b"},   {10, "1"},   {11, "1.1"}, {12, "1.2"}, {13, "1.3"},
                                     {20, "2"},   {21, "2.1"}, {22, "2.2"}, {30, "3"},   {31, "3.1"},
                                     {32, "3.2"}, {40, "4"},   {41, "4.1"}, {42, "4.2"}, {50, "5"},
                                     {51, "5.1"}, {52, "5.2"}, {60, "6"},   {61, "6.1"}, {62, "6.2"}};
// Level 3 reads "3.0" while 1, 2, 4, 5 and 6 have no ".0" (kept as it is).
constexpr ValueName kH265Levels[] = {{30, "1"},  {60, "2"},    {63, "2.1"},  {90, "3.0"},  {93, "3.1"},
                                     {120, "4"}, {123, "4.1"}, {150, "5"},   {153, "5.1"}, {156, "5.2"},
                                     {180, "6"}, {183, "6.1"}, {186, "6.2"}, {255, "8.5"}};
constexpr ValueName kColorPrimaries[] = {{1, "BT.709"},      {2, "Unspecified"}, {3, "Reserved"},
                                         {5, "BT.601(625)"}, {6, "BT.601(525)"}, {9, "BT.2100"},
                                         {11, "P3 DCI"}};
constexpr ValueName kTransfers[] = {
    {1, "BT.709"},   {2, "Unspecified"}, {3, "Reserved"},     {6, "BT.601(525 or 625)"},
    {14, "BT.2020"}, {15, "BT.2020"},    {16, "BT.2100(PQ)"}, {18, "BT.2100(HLG)"}};
constexpr ValueName kMatrices[] = {{0, "Identity"},
                                   {1, "BT.709"},
                                   {2, "Unspecified"},
                                   {3, "Reserved"},
                                   {5, "BT.601(625)"},
                                   {6, "BT.601(525)"},
                                   {9, "BT.2100(Y'CbCr NCL)"},
                                   {10, "BT.2020(Constant Luminance)"},
                                   {14, "BT.2100(ICtCp)"}};

constexpr NameOperation kOperations[] = {
    Op("SessMgr_GetVideoEncoderStateString", kStates, Fallback::InvalidValue),
    Op("SessMgr_GetVideoEncoderInputTypeString", kInputsSdi, Fallback::InputType),
    Op("SessMgr_GetVideoEncoderAspectRatioString", kAspectRatios, Fallback::InvalidValue),
    Op("SessMgr_GetVideoEncoderTimeCodeString", kTimeCodes, Fallback::InvalidValue),
    Op("SessMgr_GetVideoEncoderTimeCodeSourceString", kTimeCodeSources, Fallback::InvalidValue),
    Op("SessMgr_GetVideoEncoderSystemTCModeString", kSystemTCModes, Fallback::InvalidValue),
    Op("SessMgr_GetVideoEncoderGOPStructureString", kGOPStructures, Fallback::InvalidValue),
    Op("SessMgr_GetVideoEncoderGOPModeString", kGOPModes, Fallback::InvalidValue),
    Op("SessMgr_GetVideoResizeModeString", kResizeModes, Fallback::InvalidValue),
    Op("SessMgr_GetVideoEncoderChromaSubSamplingString", kChroma, Fallback::InvalidValue),
    Op("SessMgr_GetVideoEncoderEncodingProfileString", kProfiles, Fallback::InvalidValue),
    Op("SessMgr_GetVideoEncoderCodecAlgorithmString", kCodecs, Fallback::Unknown),
    Op("SessMgr_GetVideoEncoderEntropyCodingString", kEntropyCodings, Fallback::Unknown),
    Op("SessMgr_GetVideoEncoderRateControlModeString", kRateControls, Fallback::Unknown),
    Op("SessMgr_GetVideoEncoderScalingMatrixString", kScalingMatrices, Fallback::Unknown),
    Op("SessMgr_GetVideoEncoderHEVCTierString", kHEVCTiers, Fallback::Unknown),
    Op("SessMgr_GetVideoEncoderDynamicRangeModeString", kDynamicRanges, Fallback::InvalidValue),
    Op("SessMgr_GetVideoEncoderH264LevelString", kH264Levels, Fallback::NotAvailable),
    Op("SessMgr_GetVideoEncoderH265LevelString", kH265Levels, Fallback::NotAvailable),
    Op("SessMgr_GetVideoEncoderInputColorPrimariesString", kColorPrimaries, Fallback::UnknownValue),
    Op("SessMgr_GetVideoEncoderInputTransferCharacteristicsString", kTransfers, Fallback::UnknownValue),
    Op("SessMgr_GetVideoEncoderInputMatrixCoefficientsString", kMatrices, Fallback::UnknownValue),
};

static_assert(sizeof(kOperations) / sizeof(kOperations[0]) == 22,
              "the exported operations below index this table");

// The table in force: the input names follow the appliance's personality.
const ValueName* EntriesOf(const NameOperation& op, size_t* pnEntries) {
  if (op.fallback == Fallback::InputType && g_enPersonality == VDR2_PERSONALITY_2110) {
    *pnEntries = sizeof(kInputs2110) / sizeof(kInputs2110[0]);
    return kInputs2110;
  }
  *pnEntries = op.contract.nEntries;
  return op.contract.pEntries;
}

void WriteName(const NameOperation& op, int nValue, char* szBuffer, size_t nSize) {
  size_t nEntries = 0;
  const ValueName* pEntries = EntriesOf(op, &nEntries);
  for (size_t i = 0; i < nEntries; ++i) {
    if (pEntries[i].nValue == nValue) {
      CopyString(szBuffer, pEntries[i].szText, nSize);
      return;
    }
  }
  switch (op.fallback) {
    case Fallback::InvalidValue:
      PrintToString(szBuffer, nSize, "(Invalid:%d)", nValue);
      break;
    case Fallback::InputType:
      // Printed with a limit of 8 whatever the caller's size, never past the buffer.
      PrintToString(szBuffer, nSize < 8 ? nSize : 8, "(Invalid:%d)", nValue);
      break;
    case Fallback::Unknown:
      CopyString(szBuffer, "<unknown>", nSize);
      break;
    case Fallback::NotAvailable:
      CopyString(szBuffer, "(N/A)", nSize);
      break;
    case Fallback::UnknownValue:
      PrintToString(szBuffer, nSize, "(Unknown:%d)", nValue);
      break;
  }
}

char* NameOf(size_t nIndex, int nValue, char* szBuffer, size_t nSize) {
  const NameOperation& op = kOperations[nIndex];
  return smgr::FormatValueText(
      op.contract, nValue, szBuffer, nSize,
      [&](int nValueIn, char* szOut, size_t nOut) { WriteName(op, nValueIn, szOut, nOut); });
}

// ---- VIDEO_FORMAT texts -------------------------------------------------------------

// The shared contract of the three format operations (traces name the argument
// as each operation does).
char* FormatText(const char* szOperation, const char* szArgument, long enFormat, char* szBuffer, size_t nSize,
                 void (*write)(VIDEO_FORMAT, char*, size_t, BOOL), BOOL bWithAbbreviation = FALSE) {
  const bool bTraced = g_bDoStringAPITrace && SMGR_TRACE_ENABLED(6);
  if (bTraced)
    SMGR_TRACE_AS(szOperation, 6, "Called (%s=0x%016lx, szBuffer=0x%x, nSize=%d).\n", szArgument, enFormat,
                  static_cast<unsigned>(reinterpret_cast<uintptr_t>(szBuffer)), static_cast<int>(nSize));
  char* szResult = szBuffer;
  if (szBuffer == nullptr) _DoAssert("szBuffer != NULL", szOperation, __FILE__, __LINE__);
  if (nSize == 0) _DoAssert("nSize > 0", szOperation, __FILE__, __LINE__);
  if (szBuffer == nullptr || nSize == 0)
    szResult = const_cast<char*>(smgr::kInvalidInputBuffer);
  else
    write(static_cast<VIDEO_FORMAT>(enFormat), szBuffer, nSize, bWithAbbreviation);
  if (bTraced)
    SMGR_TRACE_AS(szOperation, 6, "Done (returning 0x%x \"%s\").\n",
                  static_cast<unsigned>(reinterpret_cast<uintptr_t>(szResult)), szResult);
  return szResult;
}

// "(Invalid:%d)" of a 64-bit code shows its low 32 bits as an int.
int Low32(VIDEO_FORMAT lFormat) { return static_cast<int>(static_cast<uint32_t>(lFormat)); }

void WriteRaster(VIDEO_FORMAT lFormat, char* szBuffer, size_t nSize) {
  PrintToString(szBuffer, nSize, "%dx%d%c%d", static_cast<int>(GET_VIDEO_FORMAT_HSIZE(lFormat)),
                static_cast<int>(GET_VIDEO_FORMAT_VSIZE(lFormat)),
                IS_VIDEO_FORMAT_INTERLACED(lFormat) ? 'i' : 'p',
                static_cast<int>(GET_VIDEO_FORMAT_FRATE(lFormat)));
}

void WriteGeneric(VIDEO_FORMAT lFormat, char* szBuffer, size_t nSize, BOOL) {
  if (IS_VIDEO_FORMAT_PACKED(lFormat))
    WriteRaster(lFormat, szBuffer, nSize);
  else if (lFormat == VIDEO_FORMAT_UNKNOWN)
    CopyString(szBuffer, "Unknown", nSize);
  else if (lFormat == VIDEO_FORMAT_CUSTOM)
    CopyString(szBuffer, "720x480i29", nSize);
  else if (lFormat == VIDEO_FORMAT_AUTO_DETECT)
    CopyString(szBuffer, "Auto-Detect", nSize);
  else
    PrintToString(szBuffer, nSize, "(Invalid:%d)", Low32(lFormat));
}

struct InputFormatName {
  VIDEO_FORMAT lFormat;
  const char* szAbbreviation;  // with its leading blank; "" for none
};

// Every named input format (SMGR_VIDENC_IN_FORMAT_*) with its abbreviation.
constexpr InputFormatName kInputFormats[] = {
#define VF(h, v, r, i, abbr) \
  { VIDEO_FORMAT_CODE(h, v, r, i), abbr }
    VF(3840, 2160, 23, 0, ""),
    VF(3840, 2160, 24, 0, ""),
    VF(3840, 2160, 25, 0, ""),
    VF(3840, 2160, 29, 0, ""),
    VF(3840, 2160, 30, 0, ""),
    VF(3840, 2160, 50, 0, ""),
    VF(3840, 2160, 59, 0, ""),
    VF(3840, 2160, 60, 0, ""),
    VF(1920, 1080, 23, 0, ""),
    VF(1920, 1080, 24, 0, ""),
    VF(1920, 1080, 25, 0, ""),
    VF(1920, 1080, 29, 0, ""),
    VF(1920, 1080, 30, 0, ""),
    VF(1920, 1080, 50, 0, ""),
    VF(1920, 1080, 59, 0, ""),
    VF(1920, 1080, 60, 0, ""),
    VF(1920, 1080, 24, 1, ""),
    VF(1920, 1080, 25, 1, ""),
    VF(1920, 1080, 29, 1, ""),
    VF(1920, 1080, 30, 1, ""),
    VF(1280, 720, 23, 0, ""),
    VF(1280, 720, 24, 0, ""),
    VF(1280, 720, 25, 0, ""),
    VF(1280, 720, 29, 0, ""),
    VF(1280, 720, 30, 0, ""),
    VF(1280, 720, 50, 0, ""),
    VF(1280, 720, 59, 0, ""),
    VF(1280, 720, 60, 0, ""),
    VF(720, 480, 29, 1, " (NTSC)"),
    VF(720, 480, 30, 1, " (NTSC)"),
    VF(720, 480, 59, 0, ""),
    VF(720, 480, 60, 0, ""),
    VF(720, 576, 25, 1, " (PAL)"),
    VF(720, 576, 50, 0, ""),
    VF(704, 576, 25, 1, " (PAL)"),
    VF(704, 576, 50, 0, ""),
    VF(640, 480, 60, 0, " (VGA)"),
    VF(640, 480, 75, 0, " (VGA)"),
    VF(640, 480, 85, 0, " (VGA)"),
    VF(800, 600, 60, 0, " (SVGA)"),
    VF(800, 600, 75, 0, " (SVGA)"),
    VF(800, 600, 85, 0, " (SVGA)"),
    VF(1024, 768, 60, 0, " (XGA)"),
    VF(1024, 768, 75, 0, " (XGA)"),
    VF(1024, 768, 85, 0, " (XGA)"),
    VF(1152, 864, 60, 0, " (XGA+)"),
    VF(1152, 864, 75, 0, " (XGA+)"),
    VF(1152, 864, 85, 0, " (XGA+)"),
    VF(1280, 768, 60, 0, " (WXGA)"),
    VF(1280, 768, 75, 0, " (WXGA)"),
    VF(1280, 768, 85, 0, " (WXGA)"),
    VF(1280, 800, 60, 0, " (WXGA)"),
    VF(1280, 800, 75, 0, " (WXGA)"),
    VF(1280, 800, 85, 0, " (WXGA)"),
    VF(1280, 960, 59, 0, " (Embraer)"),
    VF(1280, 1024, 60, 0, " (SXGA)"),
    VF(1280, 1024, 75, 0, " (SXGA)"),
    VF(1280, 1024, 85, 0, " (SXGA)"),
    VF(1360, 768, 60, 0, " (WXGA)"),
    VF(1360, 768, 75, 0, " (WXGA)"),
    VF(1400, 1050, 60, 0, " (SXGA+)"),
    VF(1400, 1050, 75, 0, " (SXGA+)"),
    VF(1440, 900, 60, 0, ""),
    VF(1440, 900, 75, 0, ""),
    VF(1600, 900, 60, 0, ""),
    VF(1600, 1200, 60, 0, ""),
    VF(1680, 1050, 60, 0, ""),
    VF(1920, 1200, 60, 0, ""),
#undef VF
};
static_assert(sizeof(kInputFormats) / sizeof(kInputFormats[0]) == 68, "one entry per named input format");

void WriteInputFormat(VIDEO_FORMAT lFormat, char* szBuffer, size_t nSize, BOOL bWithAbbreviation) {
  for (const InputFormatName& named : kInputFormats) {
    if (named.lFormat != lFormat) continue;
    WriteRaster(lFormat, szBuffer, nSize);
    if (bWithAbbreviation) StringCat(szBuffer, named.szAbbreviation, nSize);
    return;
  }
  if (lFormat == VIDEO_FORMAT_AUTO_DETECT) {
    CopyString(szBuffer, "Auto-Detect", nSize);
  } else if (lFormat == VIDEO_FORMAT_UNKNOWN) {
    CopyString(szBuffer, "Unknown", nSize);
  } else if (lFormat == VIDEO_FORMAT_CUSTOM) {
    CopyString(szBuffer, "720x480i29", nSize);
    if (bWithAbbreviation) StringCat(szBuffer, " (PAL-M)", nSize);
  } else if (IS_VIDEO_FORMAT_PACKED(lFormat)) {
    WriteRaster(lFormat, szBuffer, nSize);
  } else {
    PrintToString(szBuffer, nSize, "(Invalid:0x%lx)", static_cast<unsigned long>(lFormat));
  }
}

void WriteOutputResolution(VIDEO_FORMAT lFormat, char* szBuffer, size_t nSize, BOOL) {
  if (IS_VIDEO_FORMAT_PACKED(lFormat))
    PrintToString(szBuffer, nSize, "%dx%d%c", static_cast<int>(GET_VIDEO_FORMAT_HSIZE(lFormat)),
                  static_cast<int>(GET_VIDEO_FORMAT_VSIZE(lFormat)),
                  IS_VIDEO_FORMAT_PROGRESSIVE(lFormat) ? 'p' : 'i');
  else if (lFormat == VIDEO_FORMAT_AUTO_DETECT)
    CopyString(szBuffer, "Input/Auto", nSize);
  else if (lFormat == VIDEO_FORMAT_CUSTOM)
    CopyString(szBuffer, "720x480i29", nSize);
  else
    PrintToString(szBuffer, nSize, "(Invalid:%d)", Low32(lFormat));
}

}  // namespace

const char* _VidEncNameOf(const char* szOperation, int nValue, char* szBuffer, size_t nSize) {
  for (const NameOperation& op : kOperations) {
    if (std::strcmp(op.contract.szOperation, szOperation) == 0) {
      WriteName(op, nValue, szBuffer, nSize);
      return szBuffer;
    }
  }
  return CopyString(szBuffer, "?", nSize);
}

extern "C" {

SMGR_API char* SessMgr_GetVideoFormatString(long enInFormat, char* szBuffer, size_t nSize) {
  return FormatText("SessMgr_GetVideoFormatString", "enInFormat", enInFormat, szBuffer, nSize, WriteGeneric);
}

SMGR_API char* SessMgr_GetVideoEncoderInputFormatString(long enInFormat, BOOL bWithAbbreviation,
                                                        char* szBuffer, size_t nSize) {
  return FormatText("SessMgr_GetVideoEncoderInputFormatString", "enInFormat", enInFormat, szBuffer, nSize,
                    WriteInputFormat, bWithAbbreviation);
}

SMGR_API char* SessMgr_GetVideoEncoderOutputResolutionString(long enInFormat, char* szBuffer, size_t nSize) {
  return FormatText("SessMgr_GetVideoEncoderOutputResolutionString", "enOutFormat", enInFormat, szBuffer,
                    nSize, WriteOutputResolution);
}

#define SMGR_VIDENC_NAME_OPERATION(Name, Index, ValueType)              \
  SMGR_API char* Name(ValueType nValue, char* szBuffer, size_t nSize) { \
    return NameOf(Index, static_cast<int>(nValue), szBuffer, nSize);    \
  }

SMGR_VIDENC_NAME_OPERATION(SessMgr_GetVideoEncoderStateString, 0, int)
SMGR_VIDENC_NAME_OPERATION(SessMgr_GetVideoEncoderInputTypeString, 1, int)
SMGR_VIDENC_NAME_OPERATION(SessMgr_GetVideoEncoderAspectRatioString, 2, int)
SMGR_VIDENC_NAME_OPERATION(SessMgr_GetVideoEncoderTimeCodeString, 3, int)
SMGR_VIDENC_NAME_OPERATION(SessMgr_GetVideoEncoderTimeCodeSourceString, 4, int)
SMGR_VIDENC_NAME_OPERATION(SessMgr_GetVideoEncoderSystemTCModeString, 5, int)
SMGR_VIDENC_NAME_OPERATION(SessMgr_GetVideoEncoderGOPStructureString, 6, int)
SMGR_VIDENC_NAME_OPERATION(SessMgr_GetVideoEncoderGOPModeString, 7, int)
SMGR_VIDENC_NAME_OPERATION(SessMgr_GetVideoResizeModeString, 8, int)
SMGR_VIDENC_NAME_OPERATION(SessMgr_GetVideoEncoderChromaSubSamplingString, 9, int)
SMGR_VIDENC_NAME_OPERATION(SessMgr_GetVideoEncoderEncodingProfileString, 10, int)
SMGR_VIDENC_NAME_OPERATION(SessMgr_GetVideoEncoderCodecAlgorithmString, 11, int)
SMGR_VIDENC_NAME_OPERATION(SessMgr_GetVideoEncoderEntropyCodingString, 12, int)
SMGR_VIDENC_NAME_OPERATION(SessMgr_GetVideoEncoderRateControlModeString, 13, int)
SMGR_VIDENC_NAME_OPERATION(SessMgr_GetVideoEncoderScalingMatrixString, 14, int)
SMGR_VIDENC_NAME_OPERATION(SessMgr_GetVideoEncoderHEVCTierString, 15, int)
SMGR_VIDENC_NAME_OPERATION(SessMgr_GetVideoEncoderDynamicRangeModeString, 16, int)
SMGR_VIDENC_NAME_OPERATION(SessMgr_GetVideoEncoderH264LevelString, 17, int)
SMGR_VIDENC_NAME_OPERATION(SessMgr_GetVideoEncoderH265LevelString, 18, int)
SMGR_VIDENC_NAME_OPERATION(SessMgr_GetVideoEncoderInputColorPrimariesString, 19, UINT)
SMGR_VIDENC_NAME_OPERATION(SessMgr_GetVideoEncoderInputTransferCharacteristicsString, 20, UINT)
SMGR_VIDENC_NAME_OPERATION(SessMgr_GetVideoEncoderInputMatrixCoefficientsString, 21, UINT)

#undef SMGR_VIDENC_NAME_OPERATION

}  // extern "C"
