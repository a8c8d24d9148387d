#pragma once

#include "AppTable.hpp"

namespace volbrin::demo {

class TreeWriter;

/// Writes one app bundle: property list, executable, resources and, from the App Store, receipt.
void writeApp(TreeWriter& writer, const App& app);

/// Writes all of `allApps` and the audio plug-ins that some of them look after.
void writeApps(TreeWriter& writer);

}  // namespace volbrin::demo
