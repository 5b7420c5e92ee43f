/// Script texts for applications that take commands: what `kestrel-cli script` runs.
#pragma once

#include <string_view>

#include "musicapp/music_application.h"
#include "musicapp/scripted/script_runner.h"

namespace kestrel::script {

/// Carries a script out, as one batch: an error that stands in no `try` block leaves the library as
/// it was. The result is the last statement's; of a new playlist its persistent ID in hexadecimal.
/// Never throws. `record` is that of Batch::commit.
ScriptResult interpret(std::string_view script, MusicApplication& application,
                       const Batch::Record& record = {});

}  // namespace kestrel::script
