#pragma once

#include <cstddef>
#include <string>

/// The trees that the benchmarks walk, made by code: the same names and sizes at every run.
namespace volbrin::bench {

/// 12 levels of folders, two in each, `filesPerFolder` small files in every folder (4,095 folders;
/// 98 files in each make about 400,000).
void makeDeepTree(const std::string& root, std::size_t filesPerFolder);

/// 20 folders side by side, with `filesPerFolder` small files in each.
void makeWideTree(const std::string& root, std::size_t filesPerFolder);

/// A home as people have them: many small folders, some big ones, most files small, a few hard
/// links, links and sparse files; about `files` files.
void makeHomeTree(const std::string& root, std::size_t files);

/// `count` files of `bytes` bytes each, no two alike, in folders of a hundred:
/// two trees of the same figures are the same.
void makeFileTree(const std::string& root, std::size_t count, std::size_t bytes);

/// One chain of `levels` folders with a file at the bottom, beside each folder an empty one.
void makeDeepChain(const std::string& root, std::size_t levels);

}  // namespace volbrin::bench
