#include "musicapp/document_music_application.h"

#include <utility>
#include <variant>
#include <vector>

#include "foundation/library_error.h"
#include "musicapp/document_commands.h"
#include "musicapp/document_session.h"
#include "musicapp/script_language.h"

namespace kestrel {
namespace {

ScriptResult failure(Message message, int number) {
  return {std::nullopt, ScriptError{std::move(message), number, {}}};
}

/// The result of the last statement. Throws what ends the script early.
std::optional<std::string> carryOutAll(const std::vector<script::Statement>& statements,
                                       DocumentSession& session) {
  std::optional<std::string> text;
  for (std::size_t i = 0; i < statements.size(); ++i) {
    try {
      text = carryOut(statements[i].command, session);
    } catch (const CommandError&) {
      if (!statements[i].errorsIgnored) throw;
      text.reset();
      while (i + 1 < statements.size() && statements[i + 1].errorsIgnored) ++i;
    }
  }
  return text;
}

}  // namespace

class DocumentMusicApplication::Session : public DocumentSession {
 public:
  using DocumentSession::DocumentSession;
  bool hasBatch = false;
  bool isBroken = false;  ///< changes of the batch were lost
};

class DocumentMusicApplication::Batch final : public ScriptBatch {
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

  void commit() override {
    if (session_.isBroken)
      throw LibraryError(session_.libraryFile(), {},
                         Message::tr("was not changed: a command broke off"),
                         Message::tr("Start again with what was to be done."));
    session_.commit();
  }

 private:
  Session& session_;
};

DocumentMusicApplication::DocumentMusicApplication(std::string path, DocumentServices services,
                                                   CommitOptions options)
    : session_(std::make_unique<Session>(std::move(path), services, std::move(options))) {}

DocumentMusicApplication::~DocumentMusicApplication() = default;

MediaLibrary& DocumentMusicApplication::library() { return *session_; }

Capabilities DocumentMusicApplication::capabilities() const {
  return {"the library document", true, true, true, session_->services().revealer != nullptr};
}

std::unique_ptr<ScriptBatch> DocumentMusicApplication::beginBatch() {
  if (session_->hasBatch)
    throw LibraryError(session_->libraryFile(), {}, Message::tr("is being changed already"),
                       Message::tr("Wait until that has finished."));
  return std::make_unique<Batch>(*session_);
}

ScriptResult DocumentMusicApplication::run(std::string_view script) {
  const auto parsed = script::parse(script);
  if (const auto* error = std::get_if<ScriptError>(&parsed)) return {std::nullopt, *error};
  ScriptResult result;
  try {
    result.text = carryOutAll(std::get<std::vector<script::Statement>>(parsed), *session_);
    if (!session_->hasBatch) session_->commit();
  } catch (const CommandError& error) {
    result = failure(error.message, error.number);
  } catch (const LibraryError& error) {  // the document cannot be changed or written
    result = failure(error.message, CommandError::failed);
  } catch (const std::exception& error) {
    // Such as no memory being left amid a change: no half of it may ever be written.
    result = failure(Message::verbatim(error.what()), CommandError::failed);
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
