#include "musicapp/document/document_music_application.h"

#include <utility>

#include "foundation/library_error.h"
#include "musicapp/document/document_commands.h"
#include "musicapp/document/document_session.h"

namespace kestrel {
namespace {

CommandResult failure(Message message, int number) {
  return {{}, {}, CommandFailure{std::move(message), number}};
}

}  // namespace

class DocumentMusicApplication::Session : public DocumentSession {
 public:
  using DocumentSession::DocumentSession;
  bool hasBatch = false;
  bool isBroken = false;  ///< changes of the batch were lost
};

class DocumentMusicApplication::Batch final : public kestrel::Batch {
 public:
  explicit Batch(Session& session) : session_(session) {
    session_.lock();
    session_.hasBatch = true;
    session_.isBroken = false;
  }
  ~Batch() override {
    session_.rollBack();
    session_.unlock();
    session_.hasBatch = false;
  }
  Batch(const Batch&) = delete;
  Batch& operator=(const Batch&) = delete;

  void commit(const Record& record) override {
    if (session_.isBroken)
      throw LibraryError(session_.libraryFile(), {},
                         Message::tr("was not changed: a command broke off"),
                         Message::tr("Start again with what was to be done."));
    session_.commit(record);
  }
  bool revert(std::string_view reversal) override { return session_.revert(reversal); }

 private:
  Session& session_;
};

DocumentMusicApplication::DocumentMusicApplication(std::string path, DocumentServices services,
                                                   CommitOptions options)
    : session_(std::make_unique<Session>(std::move(path), services, std::move(options))) {}

DocumentMusicApplication::~DocumentMusicApplication() = default;

MediaLibrary& DocumentMusicApplication::library() { return *session_; }

Capabilities DocumentMusicApplication::capabilities() const {
  return {.name = "the library document",
          .changesPlaylists = true,
          .editsInPlace = true,
          .deletesTracks = true,
          .restoresTracks = true,
          .addsFiles = true,
          .reveals = session_->services().revealer != nullptr};
}

std::unique_ptr<kestrel::Batch> DocumentMusicApplication::beginBatch() {
  if (session_->hasBatch)
    throw LibraryError(session_->libraryFile(), {}, Message::tr("is being changed already"),
                       Message::tr("Wait until that has finished."));
  return std::make_unique<Batch>(*session_);
}

CommandResult DocumentMusicApplication::run(const Command& command) {
  CommandResult result;
  try {
    result = carryOut(command, *session_);
    if (!session_->hasBatch) session_->commit();
  } catch (const CommandError& error) {
    result = failure(error.message, error.number);
  } catch (const LibraryError& error) {  // the document cannot be changed or written
    result = failure(error.message, CommandFailure::failed);
  } catch (const std::exception& error) {
    // Such as no memory being left amid a change: no half of it may ever be written.
    result = failure(Message::verbatim(error.what()), CommandFailure::failed);
    session_->isBroken = session_->isChanged();
    session_->rollBack();
  }
  if (!session_->hasBatch) {
    session_->rollBack();
    session_->unlock();
  }
  return result;
}

}  // namespace kestrel
