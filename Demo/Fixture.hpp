#pragma once

namespace volbrin::demo {

class TreeWriter;

/// Writes volbrin-fixture.json at the top: what a tree of files can't tell of a machine, such as
/// its drives, the running apps and when each app was last used.
void writeFixture(TreeWriter& writer);

}  // namespace volbrin::demo
