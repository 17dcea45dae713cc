// Test isolation helpers: environment variables and temporary files that put
// themselves back when the test ends, so tests never touch system defaults.
#pragma once

#include <optional>
#include <string>

namespace smgr::test {

// Sets (or, with std::nullopt, removes) an environment variable for one scope.
class ScopedEnv {
 public:
  ScopedEnv(std::string name, std::optional<std::string> value);
  ~ScopedEnv();
  ScopedEnv(const ScopedEnv&) = delete;
  ScopedEnv& operator=(const ScopedEnv&) = delete;

 private:
  std::string name_;
  std::optional<std::string> previous_;
};

// A file with the given content under $TMPDIR (or /tmp), removed at scope end.
class TempFile {
 public:
  explicit TempFile(const std::string& content = {}, const std::string& suffix = ".tmp");
  ~TempFile();
  TempFile(const TempFile&) = delete;
  TempFile& operator=(const TempFile&) = delete;

  const std::string& path() const { return path_; }
  void write(const std::string& content) const;  // replaces the content
  std::string read() const;

 private:
  std::string path_;
};

// A settings file in force for one scope: SESSMGR_SETTINGS_FILE points at it.
class ScopedSettingsFile {
 public:
  explicit ScopedSettingsFile(const std::string& content);
  const std::string& path() const { return file_.path(); }

 private:
  TempFile file_;
  ScopedEnv env_;
};

}  // namespace smgr::test
