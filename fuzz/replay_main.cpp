// Replays inputs through a fuzz target without libFuzzer: first the target's
// own seed corpus, then every file named on the command line (directories are
// read whole). Built into the regular test presets so that every input that
// ever broke a property (fuzz/regressions/<target>/) keeps being checked.
#include <dirent.h>
#include <sys/stat.h>

#include <cstdint>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "fake_daemon.h"

extern "C" int LLVMFuzzerInitialize(int* pArgc, char*** pArgv);
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pbData, size_t nSize);

namespace {

void Collect(const std::string& path, std::vector<std::string>* pFiles) {
  struct stat info;
  if (stat(path.c_str(), &info) != 0) return;
  if (!S_ISDIR(info.st_mode)) {
    pFiles->push_back(path);
    return;
  }
  if (DIR* pDir = opendir(path.c_str())) {
    while (dirent* pEntry = readdir(pDir)) {
      if (pEntry->d_name[0] == '.' || std::string(pEntry->d_name) == "README") continue;
      Collect(path + "/" + pEntry->d_name, pFiles);
    }
    closedir(pDir);
  }
}

}  // namespace

int main(int argc, char** argv) {
  LLVMFuzzerInitialize(&argc, &argv);
  size_t nRun = 0;
  for (const smgr::test::Bytes& seed : smgr::fuzz::SeedInputs()) {
    LLVMFuzzerTestOneInput(seed.data(), seed.size());
    ++nRun;
  }
  std::vector<std::string> files;
  for (int i = 1; i < argc; ++i) Collect(argv[i], &files);
  for (const std::string& file : files) {
    std::ifstream in(file, std::ios::binary);
    std::vector<uint8_t> data((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    LLVMFuzzerTestOneInput(data.data(), data.size());
    ++nRun;
  }
  printf("replayed %zu inputs (%zu files), no property violated\n", nRun, files.size());
  return 0;
}
