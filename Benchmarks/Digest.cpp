#include <fmt/format.h>
#include <openssl/evp.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <exception>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "FileDigest.hpp"
#include "Files.hpp"
#include "Parallel.hpp"

/// Measures the digests of files beside the two things that bound them: the hash alone, over bytes
/// that are in the processor's cache already (what `openssl speed` measures), and the hash fed by a
/// plain loop of reads.
namespace {

using namespace volbrin;

using Context = std::unique_ptr<EVP_MD_CTX, void (*)(EVP_MD_CTX*)>;

Context begin() {
  Context context(EVP_MD_CTX_new(), EVP_MD_CTX_free);
  EVP_DigestInit_ex(context.get(), EVP_sha256(), nullptr);
  return context;
}

void hashAlone(ByteCount bytes) {
  static const std::string piece(65536, 'x');
  const auto context = begin();
  for (ByteCount done = 0; done < bytes; done += static_cast<ByteCount>(piece.size())) {
    EVP_DigestUpdate(context.get(), piece.data(), piece.size());
  }
}

void hashByReads(const std::string& path) {
  const auto context = begin();
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rb"),
                                                             std::fclose);
  if (!file) throw std::runtime_error(path + " can't be opened");
  std::setvbuf(file.get(), nullptr, _IONBF, 0);
  std::vector<char> piece(1'048'576);
  while (const auto count = std::fread(piece.data(), 1, piece.size(), file.get())) {
    EVP_DigestUpdate(context.get(), piece.data(), count);
  }
}

/// Megabytes a second for each thread, of the median of seven rounds over all files.
double speed(const std::vector<std::string>& paths, const std::function<void()>& work) {
  ByteCount bytes = 0;
  for (const auto& path : paths) bytes += sizeOf(path).value_or(0);
  std::vector<double> speeds;
  for (int round = 0; round < 7; ++round) {
    const auto start = std::chrono::steady_clock::now();
    work();
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
    const auto threads = static_cast<double>(std::min(paths.size(), HelperThread::width()));
    speeds.push_back(static_cast<double>(bytes) / taken.count() / threads / 1e6);
  }
  std::sort(speeds.begin(), speeds.end());
  return speeds[speeds.size() / 2];
}

/// The same, with one file for each thread at a time.
double speedOfEach(const std::vector<std::string>& paths,
                   const std::function<void(const std::string&)>& work) {
  return speed(paths, [&] {
    (void)parallelMap(paths, [&](const std::string& path) {
      work(path);
      return true;
    });
  });
}

}  // namespace

int main(int count, char** words) {
  try {
    const std::vector<std::string> paths(words + 1, words + count);
    if (paths.empty()) throw std::invalid_argument("usage: volbrin-digest FILE...");
    const double alone =
        speedOfEach(paths, [](const auto& path) { hashAlone(sizeOf(path).value_or(0)); });
    const auto line = [&](const char* name, double figure) {
      fmt::print("| {} | {:.0f} MB/s a thread | {:.2f} |\n", name, figure, figure / alone);
    };
    fmt::print("| SHA-256 of {} files | speed | of the hash alone |\n|---|---|---|\n",
               paths.size());
    line("the hash alone", alone);
    line("reads of 1 MiB and the hash", speedOfEach(paths, hashByReads));
    line("sha256Of", speedOfEach(paths, [](const auto& path) { (void)sha256Of(path); }));
    line("sha256OfEach", speed(paths, [&] { (void)sha256OfEach(paths); }));
    return 0;
  } catch (const std::exception& error) {
    fmt::print(stderr, "volbrin-digest: {}\n", error.what());
    return 1;
  }
}
