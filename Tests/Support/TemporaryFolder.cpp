#include "TemporaryFolder.hpp"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace volbrin::test {
namespace fs = std::filesystem;

TemporaryFolder::TemporaryFolder() {
  std::string pattern = (fs::canonical(fs::temp_directory_path()) / "volbrin-test-XXXXXX").string();
  if (::mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no temporary folder");
  path_ = pattern;
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code ignored;
  fs::remove_all(path_, ignored);
}

std::string TemporaryFolder::at(std::string_view relative) const {
  return path_ + "/" + std::string(relative);
}

std::string TemporaryFolder::folder(std::string_view relative) const {
  fs::create_directories(at(relative));
  return at(relative);
}

std::string TemporaryFolder::file(std::string_view relative, std::string_view contents) const {
  fs::create_directories(fs::path(at(relative)).parent_path());
  std::ofstream stream(at(relative), std::ios::binary);
  stream << contents;
  stream.close();
  if (!stream) throw std::runtime_error("couldn't write " + at(relative));
  return at(relative);
}

std::string TemporaryFolder::fileOfSize(std::string_view relative, std::size_t bytes) const {
  return file(relative, std::string(bytes, 'x'));
}

std::string TemporaryFolder::link(std::string_view relative, std::string_view target) const {
  fs::create_directories(fs::path(at(relative)).parent_path());
  fs::create_symlink(std::string(target), at(relative));
  return at(relative);
}

}  // namespace volbrin::test
