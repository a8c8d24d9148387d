#pragma once

namespace volbrin::demo {

class TreeWriter;

/// Writes the whole machine, its fixture file included. The stories it holds are told in README.md.
void makeMachine(TreeWriter& writer);

}  // namespace volbrin::demo
