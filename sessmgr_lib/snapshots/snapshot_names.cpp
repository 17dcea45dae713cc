// Snapshot value names: picture format, storage device and PNG palette
// (checked generation). No lock, no last error.
#include "sessmgr_api.h"
#include "value_names.h"

namespace {

using smgr::MakeValueNameTable;
using smgr::NameGeneration;
using smgr::UnknownValueForm;
using smgr::ValueName;

constexpr ValueName kFormats[] = {{0, "JPEG"}, {1, "PNG"}};
constexpr ValueName kStorageDevices[] = {{0, "Internal Flash"}, {1, "NFS"}, {2, "Custom directory"}};
constexpr ValueName kPalettes[] = {{0, "RGB"}, {1, "Color cube"}, {2, "Lab optimized"}};

constexpr auto kFormatNames = MakeValueNameTable("SessMgr_GetSnapshotFormatString", kFormats,
                                                 NameGeneration::Checked, UnknownValueForm::WithValue);
constexpr auto kStorageDeviceNames =
    MakeValueNameTable("SessMgr_GetSnapshotStorageDeviceString", kStorageDevices, NameGeneration::Checked,
                       UnknownValueForm::WithValue);
constexpr auto kPaletteNames = MakeValueNameTable("SessMgr_GetSnapshotPaletteString", kPalettes,
                                                  NameGeneration::Checked, UnknownValueForm::WithValue);

}  // namespace

extern "C" {

SMGR_API char* SessMgr_GetSnapshotFormatString(int enFormat, char* szBuffer, size_t nSize) {
  return smgr::NameOfValue(kFormatNames, enFormat, szBuffer, nSize);
}

SMGR_API char* SessMgr_GetSnapshotStorageDeviceString(int enStorageDevice, char* szBuffer, size_t nSize) {
  return smgr::NameOfValue(kStorageDeviceNames, enStorageDevice, szBuffer, nSize);
}

SMGR_API char* SessMgr_GetSnapshotPaletteString(int enPalette, char* szBuffer, size_t nSize) {
  return smgr::NameOfValue(kPaletteNames, enPalette, szBuffer, nSize);
}

}  // extern "C"
