/// What a library is called where people choose one: by its address alone, without opening it.
#pragma once

#include <QString>
#include <QStringList>
#include <string>

namespace kestrel {

class FileService;
struct FoundLibrary;

struct LibraryTitle {
  QString name;   ///< of the file, the folder, the player
  QString place;  ///< where it is; empty where the name says all
  QString kind;   ///< "Folder", "MPD"; empty for what no application recognises
  QString icon;   ///< of `toolbarIcon`
};

LibraryTitle libraryTitle(const std::string& address, const FileService& files);

/// Whether two addresses name one library, however it was opened.
bool isSameLibrary(const std::string& one, const std::string& other);

/// Where a library that was found is and how large, as far as is known.
QStringList libraryDetails(const LibraryTitle& title, const FoundLibrary& found);

/// A path as people write it, with "~" for their home.
QString shortPath(const QString& path);

/// As a menu shows it: no letter of it is a key.
QString menuText(const QString& text);

}  // namespace kestrel
