/// The files by whose sound it was decided what goes.
///
/// A plan may be applied long after it was made. What sounded like its kept copy then may be
/// another recording by now, so the plan says what the files were when they were listened to.
#pragma once

#include "changes/plan.h"
#include "dupes/track_sounds.h"
#include "platform/files.h"

namespace kestrel {

/// Notes in the plan what those files were that go, and whose tracks go, and what is kept in their
/// place, as far as they were listened to.
void noteHeardFiles(Plan& plan, const TrackSounds& sounds);

/// Holds back the tracks and files of which, or of whose kept copy, the file was changed since it
/// was listened to.
void holdBackOtherSounds(Plan& plan, const FileService& files);

}  // namespace kestrel
