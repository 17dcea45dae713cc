// The stream family's value-name tables, as data. Shared by the value-name
// operations and by the record dumps (which look values up without tracing).
#pragma once

#include "value_names.h"

namespace smgr::stream_names {

using smgr::MakeValueNameTable;
using smgr::NameCallTrace;
using smgr::NameGeneration;
using smgr::UnknownValueForm;
using smgr::ValueName;

constexpr ValueName kStreamTypes[] = {{1, "TX"}, {2, "RX"}, {3, "REC"}};
constexpr ValueName kEncapsulations[] = {
    {1, "Direct-RTP"}, {2, "TS-UDP"}, {3, "TS-RTP"}, {5, "QuickTime"}, {34, "TS-SRT"}};
constexpr ValueName kContentFormats[] = {{0, "Default"},   {1, "PCM"},       {2, "RAW"},   {3, "ADTS"},
                                         {4, "LOAS/LATM"}, {5, "QuickTime"}, {100, "RAW"}, {101, "RFC3984"}};
constexpr ValueName kDataEncaps[] = {{0, "Synchronous"}, {1, "Asynchronous"}, {2, "Async-SyncAU"}};
constexpr ValueName kStreamStates[] = {{0, "STOPPED"},    {1, "STREAMING"},  {2, "FAILED"},
                                       {3, "CONNECTING"}, {4, "SECURING"},   {5, "LISTENING"},
                                       {6, "PAUSED"},     {7, "PUBLISHING"}, {8, "RESOLVING"},
                                       {9, "SCRAMBLED"},  {10, "CONNECTED"}};
constexpr ValueName kSrtModes[] = {{0, "Caller"}, {1, "Listener"}, {2, "Rendezvous"}};
constexpr ValueName kSrtRedundancy[] = {
    {-1, "Optional"}, {0, "(None)"}, {1, "Active-Active"}, {2, "Active-Backup"}};
constexpr ValueName kFecTypes[] = {{0, "(None)"}, {1, "Tolvane"}, {2, "Pro-MPEG"}};
constexpr ValueName kProMpegLevels[] = {{0, "A (Column Only)"}, {1, "B (Row and Column)"}};
// Deliberately without an IPv6 row: kind 1 reads "Invalid (1)".
constexpr ValueName kAddressKinds[] = {{-1, "SMGR_UNKNOWN_ADDRESS"},
                                       {0, "SMGR_IPV4_ADDRESS"},
                                       {2, "SMGR_IPV4_HOSTNAME"},
                                       {3, "SMGR_URL"},
                                       {4, "SMGR_UNRESOLVED_HOSTNAME"},
                                       {5, "SMGR_HOSTNAME_RESOLVED_AS_IPV4"},
                                       {6, "SMGR_HOSTNAME_RESOLVED_AS_IPV6"},
                                       {7, "SMGR_ANY_ADDRESS"}};

constexpr auto kStreamTypeNames = MakeValueNameTable("SessMgr_GetStreamTypeString", kStreamTypes,
                                                     NameGeneration::Plain, UnknownValueForm::Bare);
constexpr auto kEncapsulationNames =
    MakeValueNameTable("SessMgr_GetStreamEncapsulationString", kEncapsulations, NameGeneration::Plain,
                       UnknownValueForm::WithValue);
constexpr auto kContentFormatNames =
    MakeValueNameTable("SessMgr_GetStreamContentFormatString", kContentFormats, NameGeneration::Plain,
                       UnknownValueForm::WithValue);
constexpr auto kDataEncapsNames = MakeValueNameTable("SessMgr_GetStreamDataEncapsString", kDataEncaps,
                                                     NameGeneration::Plain, UnknownValueForm::WithValue);
constexpr auto kStreamStateNames =
    MakeValueNameTable("SessMgr_GetStreamStateString", kStreamStates, NameGeneration::Checked,
                       UnknownValueForm::WithValue, NameCallTrace::AtLevel6);
constexpr auto kSrtModeNames = MakeValueNameTable("SessMgr_GetStreamModeString", kSrtModes,
                                                  NameGeneration::Checked, UnknownValueForm::WithValue);
constexpr auto kSrtRedundancyNames =
    MakeValueNameTable("SessMgr_GetSRTStreamRedundancyString", kSrtRedundancy, NameGeneration::Checked,
                       UnknownValueForm::WithValue);
constexpr auto kFecTypeNames = MakeValueNameTable("SessMgr_GetFECTypeString", kFecTypes,
                                                  NameGeneration::Checked, UnknownValueForm::WithValue);
constexpr auto kProMpegLevelNames = MakeValueNameTable("SessMgr_GetMpegProFECLevelString", kProMpegLevels,
                                                       NameGeneration::Checked, UnknownValueForm::WithValue);
constexpr auto kAddressKindNames =
    MakeValueNameTable("_GetIPAddressTypeString", kAddressKinds, NameGeneration::Plain,
                       UnknownValueForm::Described, NameCallTrace::Never);
constexpr smgr::ValueNameTable kSrtVersionContract{"SessMgr_GetSRTVersionString", nullptr, 0,
                                                   NameGeneration::Checked, UnknownValueForm::WithValue};

}  // namespace smgr::stream_names
