// Library-internal pieces of the audio encoder family: the handle record and
// its instance of the common handle mechanism, the value-name tables the
// dumps share with the exported operations, and the record dumps.
#pragma once

#include "handle_family.h"
#include "sessmgr_api.h"
#include "util_list.h"
#include "value_names.h"

// The record behind HAUDENC (heap, never on the wire).
typedef struct tagSMGR_AUDIO_ENCODER_HANDLE {
  DWORD dwSignature;  // SMGR_AUDIO_ENCODER_HANDLE_SIGNATURE while alive
  int nRefCount;      // opens not yet closed
  FNODE_D DNode;      // node of the audio encoder handle list; pvObject is this record
  int iID;            // as the daemon returned it; every request carries it
  char szName[SMGR_OBJECT_NAME_SIZE];
} SMGR_AUDIO_ENCODER_HANDLE;

namespace smgr {

struct AudioEncoderHandleTraits {
  using Record = SMGR_AUDIO_ENCODER_HANDLE;
  static constexpr DWORD kSignature = SMGR_AUDIO_ENCODER_HANDLE_SIGNATURE;
  static constexpr const char* kFamilyWord = "audio encoder";
  static constexpr const char* kNullAssert = "hEncoder != NULL";
  static constexpr const char* kSignatureAssert =
      "hEncoder->dwSignature == SMGR_AUDIO_ENCODER_HANDLE_SIGNATURE";
  static constexpr const char* kRefCountAssert = "pEnc->nRefCount >= 1";
  static constexpr const char* kAllocName = "_OpenAllocAudEnc";
  static constexpr const char* kFreeName = "SessMgr_CloseAudioEncoder";
  static constexpr const char* kIsValidName = "_IsValidAudEncHandle";
  static constexpr const char* kLocateBySelectorName = "_LocateAudEnc";
  static constexpr const char* kLocateByConfigName = "_LocateAudEnc";
  static constexpr const char* kCleanupName = "_CleanupAudEncHandles";
  static int& Id(Record& record) { return record.iID; }
  static char* Name(Record& record) { return record.szName; }
};

using AudioEncoderHandles = HandleFamily<AudioEncoderHandleTraits>;

// The tables behind the exported value names (audio_encoder_names.cpp).
namespace audio_names {
extern const ValueNameTable kStates;
extern const ValueNameTable kModes;
extern const ValueNameTable kAlgorithms;
extern const ValueNameTable kCaptureStates;
extern const ValueNameTable kStcSources;
// The table of the input texts for the personality in force.
const ValueNameTable& InputTypes();
}  // namespace audio_names

}  // namespace smgr

// Level 6 dumps: the configuration before a configure request (the ten named
// flag bits), the information and the statistics after they were read.
void _PrintAudioEncoderCfg(const SMGR_AUDIO_ENCODER_CFG* pCfg);
void _PrintAudioEncoderInfo(const SMGR_AUDIO_ENCODER_INFO* pInfo);
void _PrintAudioEncoderStats(const SMGR_AUDIO_ENCODER_STATS* pStats);
