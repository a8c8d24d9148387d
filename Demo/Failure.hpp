#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace volbrin::demo {

/// Why no machine was made, in one line for the user and without the program's name in front.
class Failure : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The command line is wrong: exit status 2 instead of 1.
class UsageError : public Failure {
 public:
  using Failure::Failure;
};

/// Raises a `Failure` that reads "can't <what> <path>: <the system's words for errno>".
[[noreturn]] void failWithErrno(std::string_view what, std::string_view path);

}  // namespace volbrin::demo
