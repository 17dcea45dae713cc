// Test isolation helpers: scoped environment variables, temporary files and a
// scoped settings file.
#include "test_env.h"

#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <vector>

namespace smgr::test {

ScopedEnv::ScopedEnv(std::string name, std::optional<std::string> value) : name_(std::move(name)) {
  if (const char* szOld = getenv(name_.c_str())) previous_ = szOld;
  if (value) {
    setenv(name_.c_str(), value->c_str(), 1);
  } else {
    unsetenv(name_.c_str());
  }
}

ScopedEnv::~ScopedEnv() {
  if (previous_) {
    setenv(name_.c_str(), previous_->c_str(), 1);
  } else {
    unsetenv(name_.c_str());
  }
}

TempFile::TempFile(const std::string& content, const std::string& suffix) {
  const char* szDir = getenv("TMPDIR");
  std::string pattern =
      std::string(szDir != nullptr && *szDir != '\0' ? szDir : "/tmp") + "/smgrtest-XXXXXX" + suffix;
  std::vector<char> name(pattern.begin(), pattern.end());
  name.push_back('\0');
  int fd = mkstemps(name.data(), static_cast<int>(suffix.size()));
  if (fd < 0) throw std::runtime_error("mkstemps failed for " + pattern);
  close(fd);
  path_ = name.data();
  write(content);
}

TempFile::~TempFile() { unlink(path_.c_str()); }

void TempFile::write(const std::string& content) const {
  std::ofstream out(path_, std::ios::binary | std::ios::trunc);
  out << content;
}

std::string TempFile::read() const {
  std::ifstream in(path_, std::ios::binary);
  std::ostringstream content;
  content << in.rdbuf();
  return content.str();
}

ScopedSettingsFile::ScopedSettingsFile(const std::string& content)
    : file_(content, ".ini"), env_("SESSMGR_SETTINGS_FILE", file_.path()) {}

}  // namespace smgr::test
