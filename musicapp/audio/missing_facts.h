/// What a player's library does not say of its songs and their files do: bit rates, totals, beats
/// and the like.
#pragma once

#include <string>

#include "musicapp/load_watch.h"

namespace kestrel {

class FileService;
class Log;
class MediaItems;

/// Fills in what items that lack something lack, from the audio index; files that are not in it, or
/// were changed, are read with all cores first. An item lacks something when bit rate, size, time
/// or kind are missing - what keepers are chosen by - or when the kind is the one that players give
/// to every MP4 file. So a library that says all of that opens no file.
///
/// What the library says stays, but for the kind: lengths of songs especially, which differ between
/// programs, so that all are from one. Ratings, plays and dates are the player's alone. Songs whose
/// file is not there stay as they are.
///
/// To be called with items that are not shared yet. Throws LibraryError in the name of `library`
/// when the watch cancels; what was read by then is kept for the next time.
void fillMissingFacts(MediaItems& items, const std::string& library, const FileService& files,
                      Log& log, const LoadWatch& watch);

}  // namespace kestrel
