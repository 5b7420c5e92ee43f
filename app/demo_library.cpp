#include "app/demo_library.h"

#include <QCoreApplication>
#include <QFileInfo>

#include "platform/file_error.h"
#include "platform/files.h"
#include "platform/programs.h"
#include "ui/qt/text.h"

namespace kestrel {
namespace {

/// The program that writes invented libraries: beside this one, or where packages put helpers.
std::string libraryMaker() {
  const QString folder = QCoreApplication::applicationDirPath();
  for (const QString& place : {folder, folder + QStringLiteral("/../libexec/kestrel")})
    if (const QFileInfo file(place + QStringLiteral("/kestrel-make-library")); file.isExecutable())
      return pathFromQt(file.absoluteFilePath());
  return "kestrel-make-library";
}

}  // namespace

std::string writeDemoLibrary(FileService& files) {
  const auto data = files.applicationSupportDirectory();
  if (!data)
    throw FileError("the demo library", Message::tr("has no place: there is no home folder"),
                    Message::tr("Set HOME."));
  const std::string folder = *data + "/Kestrel/Demo";
  const std::string path = folder + "/Library.xml";
  if (files.exists(path)) return path;
  files.createDirectories(folder);
  SystemPrograms programs;
  ProgramCall call;
  call.program = libraryMaker();
  call.arguments = {"--demo", path};
  call.oneOutput = true;
  const ProgramResult result = programs.run(call);
  if (result.status != 0)
    throw FileError(path, Message::tr("could not be written: %1").arg(result.output),
                    Message::tr("See whether there is room on the disk."));
  return path;
}

}  // namespace kestrel
