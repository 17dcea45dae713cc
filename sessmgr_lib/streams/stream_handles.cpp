// The stream handle family: the internal names of the common handle
// mechanism for streams, and the exported clean-up used at library shutdown.
#include "stream_internal.h"

BOOL _AllocStreamHandle(SMGR_STREAM_HANDLE** ppHandle, int nID, const char* szName) {
  return smgr::StreamHandles::Alloc(ppHandle, nID, szName) ? TRUE : FALSE;
}

void _FreeStreamHandle(SMGR_STREAM_HANDLE* pHandle, BOOL bUnlink) {
  smgr::StreamHandles::Free(pHandle, bUnlink);
}

BOOL _IsValidStreamHandle(HSTREAM hStream, SMGR_STREAM_HANDLE** ppHandle) {
  return smgr::StreamHandles::IsValid(hStream, ppHandle) ? TRUE : FALSE;
}

SMGR_STREAM_HANDLE* _LocateStreamBySelector(const SMGR_OBJECT_SELECTOR* pSelector) {
  return smgr::StreamHandles::LocateBySelector(pSelector);
}

SMGR_STREAM_HANDLE* _LocateStreamByConfig(const SMGR_STREAM_CFG* pConfig) {
  if (pConfig == nullptr) return nullptr;
  return smgr::StreamHandles::LocateByConfig(pConfig->nIndex, pConfig->szName);
}

extern "C" SMGR_API void CleanupSessMgrStreams(void) { smgr::StreamHandles::Cleanup(); }
