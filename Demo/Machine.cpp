#include "Machine.hpp"

#include "Apps.hpp"
#include "Fixture.hpp"
#include "Rooms.hpp"

namespace volbrin::demo {

void makeMachine(TreeWriter& writer) {
  writeApps(writer);
  writeDeveloperCaches(writer);
  writeAppCaches(writer);
  writeLeftovers(writer);
  writeLibraryData(writer);
  writeSteam(writer);
  writePersonal(writer);
  writeCloud(writer);
  writeBackup(writer);
  writeFixture(writer);
}

}  // namespace volbrin::demo
