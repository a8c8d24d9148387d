#include <array>

#include "Piles.hpp"
#include "Rooms.hpp"
#include "Scale.hpp"
#include "TreeWriter.hpp"

namespace volbrin::demo {

namespace {

constexpr auto xcode = std::to_array<Pile>({
    {"~/Library/Developer/Xcode/DerivedData/Harbour-bqzvrnkdslhxaefgtwcmyjpouied",
     "Build/Intermediates.noindex/{b4}/{w}-{h8}.o", 70, 1900, 4, 120},
    {"~/Library/Developer/Xcode/DerivedData/Harbour-bqzvrnkdslhxaefgtwcmyjpouied/Index.noindex",
     "DataStore/v5/{w}-{h8}", 25, 500, 4, 60},
    {"~/Library/Developer/Xcode/DerivedData/TideTable-fmdkqhzyrwbnalxecsgujtpvoiek",
     "Build/Intermediates.noindex/{b4}/{w}-{h8}.o", 45, 1100, 190, 420},
    {"~/Library/Developer/Xcode/DerivedData/ModuleCache.noindex", "{h8}.pcm", 20, 450, 4, 300},
    {"~/Library/Developer/Xcode/iOS DeviceSupport/iPhone12,1 16.6.1 (20G81)", "Symbols/{w}-{h4}",
     10, 1000, 640, 640},
    {"~/Library/Developer/Xcode/iOS DeviceSupport/iPhone14,5 17.2.1 (21C66)", "Symbols/{w}-{h4}",
     10, 1050, 210, 210},
    {"~/Library/Developer/Xcode/iOS DeviceSupport/iPhone14,5 17.5 (21F79)", "Symbols/{w}-{h4}", 10,
     1100, 25, 25},
    {"~/Library/Developer/Xcode/Archives/2023-11-04/Harbour 1.2.xcarchive", "dSYMs/{w}-{i}.dSYM", 4,
     260, 220, 220},
    {"~/Library/Developer/Xcode/UserData/Previews/Simulator Devices", "{u}", 6, 280, 30, 260},
    {"~/Library/Developer/CoreSimulator/Caches/dyld/23F79", "dyld_sim_shared_cache_arm64.{i2}", 6,
     1400, 25, 25},
    {"~/Library/Developer/CoreSimulator/Devices/5C0A5E1B-7A3D-4C0E-9B36-0D6D3C1F9E42/data",
     "Library/{w}-{h4}.db", 12, 620, 5, 140},
    {"~/Library/Developer/CoreSimulator/Devices/A41F6E7D-2B58-4E19-8C77-93E0B5D8F110/data",
     "Library/{w}-{h4}.db", 10, 480, 430, 700},
    {"~/Library/Caches/com.apple.dt.Xcode", "Downloads/{w}-{h8}.cache", 5, 160, 12, 90},
    {"~/Library/Caches/org.swift.swiftpm/repositories", "{w}-{h8}", 8, 310, 30, 400},
});

constexpr auto packageManagers = std::to_array<Pile>({
    {"~/Library/Caches/Homebrew/downloads", "{h40}--{w}-{i}.bottle.tar.gz", 26, 1500, 20, 900},
    {"~/Library/Caches/Homebrew/Cask", "{w}-{i}.dmg", 4, 420, 60, 700},
    {"~/.npm/_cacache", "content-v2/sha512/{b8}/{h40}", 60, 1150, 2, 800},
    {"~/.npm/_npx", "{h16}/package.json", 3, 40, 40, 300},
    {"~/Library/Caches/Yarn/v6", "npm-{w}-{h16}.tgz", 22, 520, 400, 1100},
    {"~/.bun/install/cache", "{w}@{i}.{h4}.tgz", 8, 150, 90, 300},
    {"~/Library/pnpm/store/v3/files", "{b4}/{h40}", 24, 420, 30, 350},
    {"~/Library/Caches/pip/http-v2", "{b4}/{h40}", 24, 640, 45, 900},
    {"~/.cache/uv/archive-v0", "{h16}", 16, 520, 15, 260},
    {"~/.cargo/registry/cache/index.crates.io-6f17d22bba15001f", "{w}-{i}.{h4}.crate", 20, 330, 70,
     800},
    {"~/.cargo/registry/src/index.crates.io-6f17d22bba15001f", "{w}-{i}.0/lib.rs", 16, 380, 70,
     800},
    {"~/.rustup/toolchains/stable-aarch64-apple-darwin/lib", "librustc_driver-{h16}.dylib", 4, 820,
     130, 130},
    {"~/go/pkg/mod/cache/download", "{w}-{h8}.zip", 18, 480, 100, 900},
    {"~/Library/Caches/go-build", "{b4}/{h40}-d", 20, 420, 8, 60},
    {"~/.m2/repository/org", "{w}-{i}.jar", 14, 260, 400, 1300},
    {"~/Library/Caches/CocoaPods/Pods/Release", "{w}-{h8}", 12, 380, 300, 1000},
    {"~/.pub-cache/hosted/pub.dev", "{w}-{i}.tar", 8, 130, 500, 900},
});

constexpr auto toolDownloads = std::to_array<Pile>({
    {"~/Library/Caches/ms-playwright/chromium-1097", "chrome-mac/{w}-{i}.bin", 6, 480, 190, 190},
    {"~/Library/Caches/ms-playwright/webkit-1967", "{w}-{i}.bin", 5, 340, 190, 190},
    {"~/Library/Caches/Cypress/12.17.4/Cypress", "{w}-{i}.bin", 5, 420, 520, 520},
    {"~/Library/Caches/JetBrains/IntelliJIdea2022.3", "caches/{w}-{h8}.dat", 14, 620, 500, 760},
    {"~/Library/Caches/JetBrains/IntelliJIdea2024.1", "caches/{w}-{h8}.dat", 8, 240, 20, 70},
    {"~/Library/Android/sdk/system-images/android-33", "google_apis/arm64-v8a/{w}-{i}.img", 4, 900,
     560, 560},
    {"~/.android/avd/Pixel_6_API_33.avd", "{w}-{i}.qcow2", 4, 540, 300, 560},
    {"~/.cache/torch/hub/checkpoints", "{w}-{h8}.pth", 2, 180, 480, 480},
    {"~/.ollama/models/blobs", "sha256-{h64}", 3, 2900, 160, 310},
    {"~/Library/Caches/Unity/cache/npm", "{w}-{i}.tgz", 8, 300, 800, 1000},
});

/// A Hugging Face model is blobs, and snapshots that link to them.
void writeModelHub(TreeWriter& writer) {
  const std::string hub = "~/.cache/huggingface/hub/models--sentence-transformers--all-mpnet-base";
  const std::string revision = "84f2bcc00d77236f9e89c8a360a00fb1139bf47d";
  writeSingles(writer, std::to_array<Single>({
                           {hub + "/blobs/78c0197b6159d92658e319bc1d72e4c7", 1500, 270},
                           {hub + "/blobs/a5b0a7d3f08de2c9c48ddd1d38ae84a9", 420, 270},
                       }));
  writer.text(hub + "/refs/main", revision, 270);
  const std::string snapshot = hub + "/snapshots/" + revision;
  writer.link(snapshot + "/model.safetensors", "../../blobs/78c0197b6159d92658e319bc1d72e4c7", 270);
  writer.link(snapshot + "/tokenizer.json", "../../blobs/a5b0a7d3f08de2c9c48ddd1d38ae84a9", 270);
}

/// Docker's disk has a size far beyond the space that it takes.
void writeDockerDisk(TreeWriter& writer) {
  constexpr std::int64_t gigabyte = 1'000'000'000;
  writer.partly("~/Library/Containers/com.docker.docker/Data/vms/0/data/Docker.raw", 64 * gigabyte,
                blocksFor(4600) * blockBytes, TreeWriter::Fill::random, 3);
}

/// The Gradle home was moved to the drive, and a link stands in its place.
void writeGradle(TreeWriter& writer) {
  writePile(writer, {"/Volumes/Backup/Developer/gradle/caches/modules-2/files-2.1",
                     "{b4}/{w}-{i}.jar", 20, 1300, 60, 600});
  writePile(writer, {"/Volumes/Backup/Developer/gradle/wrapper/dists", "gradle-8.{i}-bin.zip", 3,
                     360, 60, 500});
  writer.link("~/.gradle", "../../Volumes/Backup/Developer/gradle", 340);
}

constexpr auto projects = std::to_array<Pile>({
    {"~/Developer/webshop/src", "{w}-{i}.ts", 10, 80, 45, 240},
    {"~/Developer/tide-engine/src", "{w}-{i}.rs", 8, 60, 75, 300},
    {"~/Developer/tide-engine/target/debug/deps", "lib{w}-{h16}.rlib", 22, 560, 75, 110},
});

constexpr auto projectNotes = std::to_array<Note>({
    {"~/Developer/webshop/package.json", "{\"name\": \"webshop\", \"version\": \"0.4.0\"}\n", 240},
    {"~/Developer/webshop/pnpm-lock.yaml", "lockfileVersion: '6.0'\n", 240},
    {"~/Developer/tide-engine/Cargo.toml",
     "[package]\nname = \"tide-engine\"\nversion = \"0.2.0\"\n", 300},
    {"~/Developer/tide-engine/target/CACHEDIR.TAG",
     "Signature: 8a477f597d28d172789f06886806bc55\n# This file is a cache directory tag created by "
     "cargo.\n",
     300},
    {"~/.ollama/models/manifests/registry.ollama.ai/library/llama3/latest",
     "{\"schemaVersion\": 2}\n", 160},
    {"~/.npmrc", "fund=false\n", 900},
    {"~/.cargo/credentials.toml", "# empty\n", 800},
});

/// pnpm puts its store's files into a project under a second name; they take no more space there.
void writeSharedPackages(TreeWriter& writer) {
  constexpr auto packages = std::to_array<std::string_view>({"left", "middle", "right"});
  for (const std::string_view name : packages) {
    const std::string stored = "~/Library/pnpm/store/v3/files/shared/" + std::string(name);
    writeSingles(writer, std::to_array<Single>({{stored, 60, 240}}));
    const std::string used = "~/Developer/webshop/node_modules/" + std::string(name);
    writer.hardLink(used + "/index.js", stored);
  }
}

}  // namespace

void writeDeveloperCaches(TreeWriter& writer) {
  writePiles(writer, xcode);
  writePiles(writer, packageManagers);
  writePiles(writer, toolDownloads);
  writeModelHub(writer);
  writeDockerDisk(writer);
  writeGradle(writer);
  writePiles(writer, projects);
  writeNotes(writer, projectNotes);
  writeSharedPackages(writer);
}

}  // namespace volbrin::demo
