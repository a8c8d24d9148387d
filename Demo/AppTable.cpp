#include "AppTable.hpp"

#include <array>

namespace volbrin::demo {

namespace {

constexpr auto binary = PlistForm::binary;
constexpr auto xml = PlistForm::xml;
constexpr auto appStore = Receipt::appStore;

constexpr std::string_view microsoft = "UBF8T346G9";

constexpr auto apps = std::to_array<App>({
    // In daily use.
    {"/Applications/1Password.app", "com.1password.1password", "8.10.36", "2BUA8C4S2C", 410, 30,
     0.1},
    {"/Applications/Docker.app", "com.docker.docker", "4.30.0", "9BNSXJN65R", 1650, 60, 3},
    {"/Applications/Figma.app", "com.figma.Desktop", "124.1.13", "T8RA8NE3B7", 330, 40, 6},
    {"/Applications/Firefox.app", "org.mozilla.firefox", "126.0", "43AQ936H96", 400, 20, 9},
    {"/Applications/Google Chrome.app", "com.google.Chrome", "125.0.6422", "EQHXZ8M8AV", 1150, 12,
     0.02, binary},
    {"/Applications/Microsoft Excel.app", "com.microsoft.Excel", "16.85", microsoft, 980, 35, 5,
     binary, appStore},
    {"/Applications/Microsoft Word.app", "com.microsoft.Word", "16.85", microsoft, 1020, 35, 2,
     binary, appStore},
    {"/Applications/Notion.app", "notion.id", "3.8.0", "LBQJ96FQ8D", 360, 25, 1},
    {"/Applications/Obsidian.app", "md.obsidian", "1.5.12", "6JSW4SJWN9", 310, 70, 1},
    {"/Applications/Slack.app", "com.tinyspeck.slackmacgap", "4.38.125", "BQR82RBBHL", 440, 18,
     0.05, xml, appStore},
    {"/Applications/Spotify.app", "com.spotify.client", "1.2.38", "2FNC3A47ZF", 420, 22, 0.3},
    {"/Applications/Visual Studio Code.app", "com.microsoft.VSCode", "1.89.1", microsoft, 590, 15,
     0.6},
    {"/Applications/Xcode.app", "com.apple.dt.Xcode", "15.4", "59GAB85EFG", 3100, 50, 4, binary,
     appStore},
    {"/Applications/iTerm.app", "com.googlecode.iterm2", "3.5.0", "H7V7XYVQ7D", 150, 90, 0.5},
    {"/Applications/zoom.us.app", "us.zoom.xos", "6.0.11", "BJ4HAAB9B3", 260, 45, 11},
    {"/Applications/Utilities/Adobe Creative Cloud/ACC/Creative Cloud.app",
     "com.adobe.acc.AdobeCreativeCloud", "6.2.0", "JQ525L2MZD", 380, 120, 33},
    {"/Applications/Adobe Premiere Pro 2024/Adobe Premiere Pro 2024.app",
     "com.adobe.PremierePro.24", "24.4.1", "JQ525L2MZD", 2200, 110, 27},

    // Seldom, but not for long.
    {"/Applications/GarageBand.app", "com.apple.garageband10", "10.4.11", "", 900, 210, 95, xml,
     appStore},
    {"/Applications/Steam.app", "com.valvesoftware.steam", "3.0", "MXGJJ98X76", 130, 300, 17},
    {"/Applications/VLC.app", "org.videolan.vlc", "3.0.20", "75GAHG3SZQ", 140, 400, 130},
    {"/Applications/HandBrake.app", "fr.handbrake.HandBrake", "1.7.3", "5X9DE89KYV", 110, 260,
     neverNoted},
    {"/Applications/Audacity.app", "org.audacityteam.audacity", "3.4.2", "", 180, 500, neverNoted},

    // Not opened for a long time.
    {"/Applications/Affinity Photo 2.app", "com.seriflabs.affinityphoto2", "2.0.4", "6LVTQB9699",
     1900, 820, 610, xml, appStore},
    {"/Applications/Blender.app", "org.blenderfoundation.blender", "3.4.1", "68UA947AUU", 1250, 900,
     745},
    {"/Applications/OBS.app", "com.obsproject.obs-studio", "29.1.3", "2MMRE5MTB8", 520, 700, 480},
    {"/Applications/iMovie.app", "com.apple.iMovieApp", "10.3.5", "", 2300, 1400, 1180, binary,
     appStore},
    // Old as well, but they host or look after plug-ins that are installed.
    {"/Applications/Ableton Live 12 Suite.app", "com.ableton.live", "12.0.1", "MWAQJ24N9B", 2400,
     450, 410},
    {"/Applications/Native Access.app", "com.native-instruments.Native Access", "3.10.0",
     "83K5EG6Z9V", 330, 600, 520},

    {"~/Applications/Anki.app", "net.ankiweb.dtop", "24.04", "", 290, 60, 14},
    {"~/Applications/Arduino IDE.app", "cc.arduino.IDE2", "2.0.3", "7KT7ZWMCJT", 540, 800, 660},
    {"~/Applications/Signal.app", "org.whispersystems.signal-desktop", "7.8.0", "U68MSDN6DR", 350,
     20, 2},

    {"/System/Applications/Calendar.app", "com.apple.iCal", "14.0", "", 70, 45, 1},
    {"/System/Applications/Mail.app", "com.apple.mail", "16.0", "", 90, 45, 0.2, binary},
    {"/System/Applications/Messages.app", "com.apple.MobileSMS", "14.0", "", 70, 45, 0.4},
    {"/System/Applications/Music.app", "com.apple.Music", "1.4.5", "", 130, 45, 20, binary},
    {"/System/Applications/Photos.app", "com.apple.Photos", "9.0", "", 110, 45, 3, binary},
    {"/System/Applications/Preview.app", "com.apple.Preview", "11.0", "", 70, 45, 0.7},
    {"/System/Applications/System Settings.app", "com.apple.systempreferences", "15.0", "", 60, 45,
     2},
    {"/System/Applications/Utilities/Terminal.app", "com.apple.Terminal", "2.14", "", 70, 45,
     neverNoted},

    // Moved to the drive to make room; its data stayed.
    {"/Volumes/Backup/Applications/Plex Media Server.app", "com.plexapp.plexmediaserver", "1.40.2",
     "K4QJ56KR4A", 330, 150, 8},
});

}  // namespace

std::span<const App> allApps() { return apps; }

}  // namespace volbrin::demo
