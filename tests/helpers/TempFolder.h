// A fresh folder under the system's temporary folder, removed with what it holds.
#ifndef XPTOOLKIT_TESTS_TEMPFOLDER_H
#define XPTOOLKIT_TESTS_TEMPFOLDER_H

#include <stdlib.h>

#include <filesystem>
#include <stdexcept>
#include <string>
#include <system_error>

namespace testing_host {

class TempFolder {
 public:
  TempFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "xptest-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no temporary folder");
    path_ = std::filesystem::canonical(pattern);
  }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;
  ~TempFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }

  const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

}  // namespace testing_host

#endif  // XPTOOLKIT_TESTS_TEMPFOLDER_H
