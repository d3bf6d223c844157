//===- ParTempDir.h - A scratch directory of parameter files ---*- C++ -*-===//
//
// Creates a fresh directory under the system's temporary directory, writes
// files into it byte for byte and removes it with everything in it.
//
//===----------------------------------------------------------------------===//
#ifndef TARNUTILITIES_TESTS_TEXT_PARTEMPDIR_H
#define TARNUTILITIES_TESTS_TEXT_PARTEMPDIR_H

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

class ParTempDir {
public:
  ParTempDir() {
    std::string pattern = (std::filesystem::temp_directory_path() / "tarn_par_XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr)
      throw std::runtime_error("cannot create a temporary directory");
    path_ = pattern;
  }
  ~ParTempDir() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  ParTempDir(const ParTempDir&) = delete;
  ParTempDir& operator=(const ParTempDir&) = delete;

  /// The directory, without a trailing separator.
  const std::string& path() const { return path_; }
  /// path() + "/" + name.
  std::string Path(const std::string& name) const { return path_ + "/" + name; }
  /// The same as UTF-16 (the names used here are ASCII).
  std::u16string WidePath(const std::string& name) const {
    const std::string full = Path(name);
    return std::u16string(full.begin(), full.end());
  }

  /// Writes contents to name (creating directories on the way) and returns
  /// the full path.
  std::string Write(const std::string& name, const std::string& contents) const {
    const std::filesystem::path full = Path(name);
    std::filesystem::create_directories(full.parent_path());
    std::ofstream out(full, std::ios::binary);
    out.write(contents.data(), static_cast<std::streamsize>(contents.size()));
    return full.string();
  }

private:
  std::string path_;
};

inline std::u16string Wide(const std::string& ascii) {
  return std::u16string(ascii.begin(), ascii.end());
}

#endif // TARNUTILITIES_TESTS_TEXT_PARTEMPDIR_H
