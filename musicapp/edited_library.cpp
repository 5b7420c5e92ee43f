#include "musicapp/edited_library.h"

#include "foundation/library_error.h"
#include "musicapp/command_support.h"
#include "platform/file_error.h"

namespace kestrel {

class EditedLibrary::OpenBatch final : public Batch {
 public:
  explicit OpenBatch(EditedLibrary& library) : library_(library) {
    library_.lock();
    library_.hasBatch_ = true;
    library_.isBroken_ = false;
  }
  ~OpenBatch() override {
    library_.rollBack();
    library_.lock_.reset();
    library_.hasBatch_ = false;
  }
  OpenBatch(const OpenBatch&) = delete;
  OpenBatch& operator=(const OpenBatch&) = delete;

  void commit(const Record& record) override {
    if (library_.isBroken_)
      throw LibraryError(library_.place(), {}, Message::tr("was not changed: a command broke off"),
                         Message::tr("Start again with what was to be done."));
    library_.commit(record);
  }
  bool revert(std::string_view reversal) override { return library_.revert(reversal); }
  void recall(std::string_view reversal) override { library_.recall(reversal); }

 private:
  EditedLibrary& library_;
};

std::unique_ptr<Batch> EditedLibrary::beginBatch() {
  if (hasBatch_)
    throw LibraryError(place(), {}, Message::tr("is being changed already"),
                       Message::tr("Wait until that has finished."));
  return std::make_unique<OpenBatch>(*this);
}

CommandResult EditedLibrary::run(const Command& command) {
  CommandResult result = tried(command);
  if (!hasBatch_) {
    rollBack();
    lock_.reset();
  }
  return result;
}

CommandResult EditedLibrary::tried(const Command& command) {
  try {
    CommandResult result = execute(command);
    if (!hasBatch_) commit({});
    return result;
  } catch (const CommandError& error) {
    return CommandResult::failing(error.message, error.number);
  } catch (const LibraryError& error) {  // the library cannot be changed or written
    return CommandResult::failing(error.message, CommandFailure::failed);
  } catch (const std::exception& error) {  // such as no memory being left amid a change
    Message why = messageOf(error);
    try {
      checkUnchangedFile();
    } catch (const FileError& changed) {
      why = changed.message;
    }
    isBroken_ = isChanged();
    rollBack();
    return CommandResult::failing(std::move(why), CommandFailure::failed);
  }
}

}  // namespace kestrel
