// Level 6 dumps of metadata records, one line per field: the creation record
// before a create, the set-up record (flagged fields only) before a
// configure and the information after a query. The value-name operations
// they use do not trace themselves meanwhile.
#include "lib_state.h"
#include "lib_trace.h"
#include "metadata_internal.h"
#include "metadata_names.h"
#include "util_string.h"

namespace {

using namespace smgr::metadata_names;

const char* YesNo(BOOL b) { return b ? "Yes" : "No"; }

// Switches the value-name call traces off for the life of a dump, then on again.
class QuietNames {
 public:
  QuietNames() { g_bDoStringAPITrace = FALSE; }
  ~QuietNames() { g_bDoStringAPITrace = TRUE; }
};

struct Name {
  Name(const smgr::ValueNameTable& table, int nValue) { smgr::NameOfValue(table, nValue, sz, sizeof(sz)); }
  char sz[64];
};

template <size_t N>
struct Text {
  explicit Text(const char (&field)[N]) { CopyString(sz, field, N); }
  char sz[N];
};

struct AddressText {
  explicit AddressText(const SMGR_IP_ADDRESS& address) { GetIPAddressDebugString(&address, sz, sizeof(sz)); }
  char sz[600];
};

struct FilterText {
  FilterText(const uint32_t* pFilter, UINT nMin, UINT nMax) {
    _GenerateTagFilterString(pFilter, nMin, nMax, sz, sizeof(sz));
  }
  char sz[600];
};

// The fields a creation record and an information record share, from the
// input type on. szDump names the dump in every line.
template <typename Record>
void DumpCommon(const char* szDump, const Record& r, UINT nFirstUASTag) {
#define LINE(...) SMGR_TRACE_AS(szDump, 6, __VA_ARGS__)
  LINE("enInputType = \"%s\":%d.\n", Name(InputTypeTable(), r.enInputType).sz, r.enInputType);
  LINE("enInputFormat = \"%s\":%d.\n", Name(kInputFormat, r.enInputFormat).sz, r.enInputFormat);
  LINE("bCaptureToDisk = %s.\n", YesNo(r.bCaptureToDisk));
  LINE("nMaxCaptureSizeInKBytes = %d.\n", r.nMaxCaptureSizeInKBytes);
  switch (r.enInputType) {
    case SMGR_METADATA_IN_TYPE_SERIAL:
      LINE("szInputDeviceName = \"%s\".\n", Text(r.in.Serial.szInputDeviceName).sz);
      LINE("enStandard = %s.\n", Name(kSerialStandard, r.in.Serial.enStandard).sz);
      LINE("nBaudRate = %d.\n", r.in.Serial.nBaudRate);
      LINE("enFlowControl = %d.\n", r.in.Serial.enFlowControl);
      LINE("enParity = %d.\n", r.in.Serial.enParity);
      LINE("enStopBits = %d.\n", r.in.Serial.enStopBits);
      LINE("nDataBits = %d.\n", r.in.Serial.nDataBits);
      break;
    case SMGR_METADATA_IN_TYPE_INET:
      LINE("Address = %s.\n", AddressText(r.in.Network.Address).sz);
      LINE("usPort = %u.\n", r.in.Network.usPort);
      break;
    default:
      LINE("enInputInterface = %u.\n", static_cast<unsigned>(r.in.Video.enInputInterface));
      switch (r.DecimationCfg.enType) {
        case SMGR_METADATA_DECIMATION_TYPE_NONE:
          LINE("Decimation is disabled.\n");
          break;
        case SMGR_METADATA_DECIMATION_TYPE_FACTOR:
          LINE("Decimation enabled by a factor of %d.\n", static_cast<int>(r.DecimationCfg.By.nFactor));
          break;
        case SMGR_METADATA_DECIMATION_TYPE_VIDENC:
          LINE("Decimation enabled controlled by videnc#%d.\n", r.DecimationCfg.By.nEncoderID);
          break;
        default:
          LINE("Invalid decimation type (%d) detected.\n", r.DecimationCfg.enType);
          break;
      }
      break;
  }
  const UINT nRelays = r.nNumOfRelays < SMGR_METADATA_MAX_RELAYS ? r.nNumOfRelays : SMGR_METADATA_MAX_RELAYS;
  LINE("nNumOfRelays = %d.\n", static_cast<int>(r.nNumOfRelays));
  for (UINT i = 0; i < nRelays; ++i) {
    LINE("Relay[%d].iTTL = %d.\n", static_cast<int>(i), r.Relays[i].iTTL);
    LINE("Relay[%d].iTOS = %d.\n", static_cast<int>(i), r.Relays[i].iTOS);
    LINE("Relay[%d].usPort = %d.\n", static_cast<int>(i), r.Relays[i].usPort);
    LINE("Relay[%d].Address = %s.\n", static_cast<int>(i), AddressText(r.Relays[i].Address).sz);
  }
  LINE("bFilterUASTags= %d.\n", r.bFilterUASTags);
  LINE("UASTagFilter = \"%s\".\n", FilterText(r.UASTagFilter, nFirstUASTag, SMGR_METADATA_MAX_UAS_TAG).sz);
  LINE("bFilterUASSecurityTags = %d.\n", r.bFilterUASSecurityTags);
  LINE("UASSecurityTagFilter = \"%s\".\n",
       FilterText(r.UASSecurityTagFilter, 1, SMGR_METADATA_MAX_SECURITY_TAG).sz);
#undef LINE
}

}  // namespace

void _PrintMetaDataSourceCreationCfg(const SMGR_METADATA_CFG* pCfg) {
  if (pCfg == nullptr || !SMGR_TRACE_ENABLED(6)) return;
  QuietNames quiet;
  SMGR_TRACE(6, "nIndex = %d.\n", pCfg->nIndex);
  SMGR_TRACE(6, "szName = \"%s\".\n", Text(pCfg->szName).sz);
  SMGR_TRACE(6, "bAutoStart = %s.\n", YesNo(pCfg->bAutoStart));
  DumpCommon(__func__, *pCfg, 2);  // the checksum tag is always there
}

void _PrintMetaDataSourceInfo(const SMGR_METADATA_INFO* pInfo) {
  if (pInfo == nullptr || !SMGR_TRACE_ENABLED(6)) return;
  QuietNames quiet;
  SMGR_TRACE(6, "nIndex = %d.\n", pInfo->nIndex);
  SMGR_TRACE(6, "szName = \"%s\".\n", Text(pInfo->szName).sz);
  DumpCommon(__func__, *pInfo, 1);
}

void _PrintMetaDataSourceCfg(const SMGR_METADATA_CFG* pCfg) {
  if (pCfg == nullptr || !SMGR_TRACE_ENABLED(6)) return;
  QuietNames quiet;
  const uint64_t nFlags = pCfg->SetFieldsFlag;
  SMGR_TRACE(6, "SetFieldsFlag = 0x%016llX.\n", static_cast<unsigned long long>(nFlags));
  if (nFlags & SMGR_METADATA_SET_INDEX) SMGR_TRACE(6, "SETTING SOURCE_INDEX to %d.\n", pCfg->nIndex);
  if (nFlags & SMGR_METADATA_SET_NAME)
    SMGR_TRACE(6, "SETTING SOURCE_NAME to \"%s\".\n", Text(pCfg->szName).sz);
  if (nFlags & SMGR_METADATA_SET_INPUT_TYPE) SMGR_TRACE(6, "SETTING INPUT_TYPE to %d.\n", pCfg->enInputType);
  if (nFlags & SMGR_METADATA_SET_INPUT_FORMAT)
    SMGR_TRACE(6, "SETTING INPUT_FORMAT to \"%s\":%d.\n", Name(kInputFormat, pCfg->enInputFormat).sz,
               pCfg->enInputFormat);
  if (nFlags & SMGR_METADATA_SET_SERIAL_BAUDRATE)
    SMGR_TRACE(6, "SETTING SERIAL_BAUDRATE to %d.\n", pCfg->in.Serial.nBaudRate);
  if (nFlags & SMGR_METADATA_SET_RELAYING)
    SMGR_TRACE(6, "SETTING bEnableRelaying to %d.\n", pCfg->bEnableRelaying);
  if (nFlags & SMGR_METADATA_SET_RELAYS) {
    const UINT nRelays =
        pCfg->nNumOfRelays < SMGR_METADATA_MAX_RELAYS ? pCfg->nNumOfRelays : SMGR_METADATA_MAX_RELAYS;
    for (UINT i = 0; i < nRelays; ++i) {
      const SMGR_METADATA_RELAY_CFG& relay = pCfg->Relays[i];
      SMGR_TRACE(6, "Setting Relay[%d].iTTL to %d.\n", static_cast<int>(i), relay.iTTL);
      SMGR_TRACE(6, "Setting Relay[%d].iTOS to %d.\n", static_cast<int>(i), relay.iTOS);
      SMGR_TRACE(6, "Setting Relay[%d].usPort to %d.\n", static_cast<int>(i), relay.usPort);
      SMGR_TRACE(6, "Setting Relay[%d].Address to %s.\n", static_cast<int>(i), AddressText(relay.Address).sz);
    }
  }
  if (nFlags & SMGR_METADATA_SET_DECIMATION)
    SMGR_TRACE(6, "SETTING decimation type %d, factor or encoder %u.\n", pCfg->DecimationCfg.enType,
               pCfg->DecimationCfg.By.nFactor);
  if (nFlags & SMGR_METADATA_SET_VIDEO_INPUT)
    SMGR_TRACE(6, "SETTING SMGR_METADATA_VIDEO_INPUT to %d.\n", pCfg->in.Video.enInputInterface);
  if (nFlags & SMGR_METADATA_SET_UAS_TAG_FILTER)
    SMGR_TRACE(6, "UASTagFilter = \"%s\".\n",
               FilterText(pCfg->UASTagFilter, 1, SMGR_METADATA_MAX_UAS_TAG).sz);
  if (nFlags & SMGR_METADATA_SET_SECURITY_TAG_FILTER)
    SMGR_TRACE(6, "UASSecurityTagFilter = \"%s\".\n",
               FilterText(pCfg->UASSecurityTagFilter, 1, SMGR_METADATA_MAX_SECURITY_TAG).sz);
}
