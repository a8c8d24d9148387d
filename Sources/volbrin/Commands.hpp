#pragma once

#include <string_view>

#include "Session.hpp"

namespace volbrin::cli {

/// What a command of the option table does: calls the engine and prints what it returns.
using CommandFunction = ExitStatus (*)(Session& session);

/// The function of the command of that name; null when there is none.
[[nodiscard]] CommandFunction functionOf(std::string_view command);

ExitStatus status(Session& session);
ExitStatus scan(Session& session);
ExitStatus plan(Session& session);
ExitStatus explain(Session& session);
ExitStatus usage(Session& session);
ExitStatus compare(Session& session);
ExitStatus apps(Session& session);
ExitStatus owner(Session& session);
ExitStatus clean(Session& session);
ExitStatus undo(Session& session);
ExitStatus history(Session& session);
ExitStatus cloudScan(Session& session);
ExitStatus cloudClean(Session& session);
ExitStatus catalogCheck(Session& session);

}  // namespace volbrin::cli
