#pragma once

namespace volbrin::demo {

class TreeWriter;

// The rooms of the machine, one unit each. Each is written once, in any order.

/// What build tools, package managers, containers and model runners keep.
void writeDeveloperCaches(TreeWriter& writer);

/// What browsers, chat, music and video apps keep in Caches and Application Support.
void writeAppCaches(TreeWriter& writer);

/// What removed apps left behind, folders of apps that are still there, and the Trash.
void writeLeftovers(TreeWriter& writer);

/// Mail, messages, keychains, phone backups and the like, which nobody may touch, and the sound
/// libraries of the music apps.
void writeLibraryData(TreeWriter& writer);

/// Steam with three libraries: its own, one on the drive "Backup" and one on an absent drive.
void writeSteam(TreeWriter& writer);

/// The user's own folders.
void writePersonal(TreeWriter& writer);

/// iCloud Drive and another cloud drive, with files that are on this Mac and files that aren't.
void writeCloud(TreeWriter& writer);

/// What is on the drive "Backup", apart from its Steam library, and a folder in /Volumes that only
/// looks like a drive.
void writeBackup(TreeWriter& writer);

}  // namespace volbrin::demo
