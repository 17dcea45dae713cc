// smgrctl --version: the CLI's own version and the version record compiled into
// the libsessmgr.so this process loaded (found by its signature in the
// library's mapped, readable segments).
#include <link.h>

#include <cstdio>
#include <cstring>
#include <string>

#include "commands.h"

namespace smgrctl {
namespace {

// The library's version record (packed, 274 bytes); read by copy, field by field.
constexpr char kSignature[] = "V$D$V$B$L$O$B<>.";
constexpr size_t kSignatureSize = 16;
constexpr size_t kRecordSize = 274;

struct Search {
  unsigned char record[kRecordSize];
  bool found = false;
};

int ScanObject(dl_phdr_info* info, size_t, void* data) {
  auto* search = static_cast<Search*>(data);
  if (search->found || info->dlpi_name == nullptr || strstr(info->dlpi_name, "libsessmgr") == nullptr)
    return 0;
  for (int i = 0; i < info->dlpi_phnum && !search->found; ++i) {
    const ElfW(Phdr)& segment = info->dlpi_phdr[i];
    if (segment.p_type != PT_LOAD || !(segment.p_flags & PF_R) || segment.p_filesz < kRecordSize) continue;
    const auto* begin = reinterpret_cast<const unsigned char*>(info->dlpi_addr + segment.p_vaddr);
    const unsigned char* end = begin + segment.p_filesz - kRecordSize;
    for (const unsigned char* p = begin; p <= end; ++p) {
      if (*p == 'V' && memcmp(p, kSignature, kSignatureSize) == 0) {
        memcpy(search->record, p, kRecordSize);
        search->found = true;
        break;
      }
    }
  }
  return search->found ? 1 : 0;
}

std::string Text(const unsigned char* field, size_t size) {
  return std::string(reinterpret_cast<const char*>(field),
                     strnlen(reinterpret_cast<const char*>(field), size));
}

}  // namespace

std::string VersionText() {
  std::string text = "smgrctl " SMGRCTL_VERSION "\n";
  Search search;
  dl_iterate_phdr(ScanObject, &search);
  if (!search.found) return text + "libsessmgr: no version record found\n";
  const unsigned char* r = search.record;
  char line[320];
  snprintf(line, sizeof line, "libsessmgr %u.%u, revision %s, build %s (%s %s)\n", r[20], r[21],
           Text(r + 22, 12).c_str(), Text(r + 130, 32).c_str(), Text(r + 162, 16).c_str(),
           Text(r + 178, 16).c_str());
  return text + line + Text(r + 34, 64) + ", " + Text(r + 98, 32);
}

}  // namespace smgrctl
