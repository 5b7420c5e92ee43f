/// The names of the settings, and what each holds before the user has chosen anything.
#pragma once

#include <string_view>

namespace kestrel {

class Preferences;

namespace settings {

// Said to a running program; meaningless to the next one, so never stored.
inline constexpr std::string_view completedLaunch = "completedLaunch";
inline constexpr std::string_view trackLibraryInitialized = "trackLibraryInitialized";
inline constexpr std::string_view cancelGetDupes = "cancelGetDupes";  ///< integer; 1 stops a search

// Launch.
inline constexpr std::string_view getDupesAtStartup = "getDupesAtStartup";  ///< boolean
inline constexpr std::string_view openLastLibrary = "openLastLibrary";      ///< boolean; first: on
inline constexpr std::string_view hasRemoteTracks = "hasRemoteTracks";      ///< boolean

// What is searched, and what counts as equal.
inline constexpr std::string_view selectedPlaylistPid = "selectedPlaylistPid";  ///< decimal text
inline constexpr std::string_view copyToPlaylist = "copyToPlaylist";            ///< two texts
inline constexpr std::string_view criteriaCBTime = "criteriaCBTime";            ///< boolean
inline constexpr std::string_view useAproxValue = "useAproxValue";              ///< boolean
inline constexpr std::string_view aproxValue = "aproxValue";        ///< integer, seconds minus one
inline constexpr std::string_view caseSensitive = "caseSensitive";  ///< boolean
/// Words of what is passed over when values are compared, such as "accents".
inline constexpr std::string_view looseMatching = "looseMatching";

// Which track of a group is kept.
inline constexpr std::string_view keeperMode = "keeperMode";  ///< integer; 0: a tick marks a keeper
inline constexpr std::string_view filterMatrixButton = "filterMatrixButton";  ///< a KeeperRule
/// Numbers of rules as texts, which decide one after the other what the first leaves open.
inline constexpr std::string_view keeperChain = "keeperChain";
inline constexpr std::string_view keeperFolders = "keeperFolders";  ///< texts, the preferred first
inline constexpr std::string_view keeperKinds = "keeperKinds";      ///< likewise
inline constexpr std::string_view filterFolderLoc = "filterFolderLoc";  ///< text, a folder
inline constexpr std::string_view alwaysUnCheck = "alwaysUnCheck";      ///< boolean
inline constexpr std::string_view useFileType = "useFileType";          ///< boolean
inline constexpr std::string_view thisFileType = "thisFileType";        ///< text
inline constexpr std::string_view useBitType = "useBitType";            ///< boolean
inline constexpr std::string_view thisBitType = "thisBitType";          ///< text

/// Boolean: copies that do not sound like what is kept are held back, where sounds were compared.
inline constexpr std::string_view onlySameSound = "onlySameSound";

// The server that was connected to last; no password is kept.
inline constexpr std::string_view playerHost = "playerHost";    ///< text, a host or a socket
inline constexpr std::string_view playerPort = "playerPort";    ///< integer
inline constexpr std::string_view playerMusic = "playerMusic";  ///< text, a folder

// The review tables.
inline constexpr std::string_view colorsByState = "colorsByState";  ///< boolean; first: on
inline constexpr std::string_view sortColumn = "sortColumn";        ///< text, a column's identifier

/// Whether the setting is about one run of the program only.
bool isForOneRun(std::string_view key) noexcept;

/// Registers the first values; "filterFolderLoc" gets its own at launch, from the library. Of the
/// others, switches are off and texts empty without being registered.
void registerFirstValues(Preferences& preferences);

}  // namespace settings
}  // namespace kestrel
