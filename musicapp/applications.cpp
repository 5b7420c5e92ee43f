#include "musicapp/applications.h"

#include <algorithm>
#include <vector>

#include "foundation/library_error.h"
#include "musicapp/document/document_library.h"
#include "musicapp/folder/folder_library.h"
#include "musicapp/library_identity.h"
#include "musicapp/mpd/mpd_library.h"
#include "musicapp/rhythmbox/rhythmbox_library.h"
#include "musicapp/strawberry/strawberry_library.h"
#include "platform/files.h"

namespace kestrel {

std::span<const Application> applications() {
  static const Application table[] = {mpdApplication(), rhythmboxApplication(),
                                      strawberryApplication(), documentApplication(),
                                      folderApplication()};
  return table;
}

const Application* applicationOf(const std::string& address, const FileService& files) {
  const auto table = applications();
  const auto found = std::find_if(table.begin(), table.end(), [&](const Application& application) {
    return application.recognises(addressText(address), files);
  });
  return found == table.end() ? nullptr : &*found;
}

std::unique_ptr<MusicApplication> openApplication(const std::string& address,
                                                  const ApplicationServices& services) {
  const std::string place = addressText(address);
  if (const Application* application = applicationOf(place, services.files))
    return application->open(place, services);
  // What is wrong with a file tells more than that it is no library.
  if (place.find("://") == std::string::npos) static_cast<void>(services.files.map(place));
  std::vector<Message> known;
  for (const Application& application : applications()) known.push_back(application.name);
  throw LibraryError(place, {}, Message::tr("is no library that Kestrel can open"),
                     Message::tr("It opens these: %1").arg(listed(known)));
}

std::shared_ptr<MediaLibrary> openLibrary(const std::string& address,
                                          const ApplicationServices& services) {
  const std::shared_ptr<MusicApplication> application = openApplication(address, services);
  return {application, &application->library()};
}

}  // namespace kestrel
