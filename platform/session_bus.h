/// The message bus of the user's session: whether a program runs, and asking it for something.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "foundation/message.h"

struct sd_bus;
struct sd_bus_message;

namespace kestrel {

/// What the bus or the program that was asked says instead of an answer.
class BusError : public MessageError {
 public:
  BusError(std::string name_, const std::string& text)
      : MessageError(Message::verbatim(text)), name(std::move(name_)) {}
  std::string name;  ///< such as "org.freedesktop.DBus.Error.ServiceUnknown"
};

/// Whom to ask: a program by the name that it owns, an object of it, and an interface of that.
struct BusObject {
  std::string service, path, interface;
};

/// A connection. Asking never starts a program. One thread at a time; a process that was forked
/// needs a connection of its own. Operations throw BusError, after 30 seconds without an answer at
/// the latest.
class SessionBus {
 public:
  using Argument = std::variant<std::string, bool>;
  using Arguments = std::vector<Argument>;

  /// Nothing where there is no session with a bus. Throws BusError when it cannot be reached.
  static std::optional<SessionBus> open();

  /// Whether a program that owns the name is running.
  [[nodiscard]] bool hasOwner(const std::string& service);
  /// Waits until it is done.
  void call(const BusObject& object, const char* member, const Arguments& arguments = {});
  /// Has an object take values by name: the one text argument, then a dictionary. Waits until it
  /// is done.
  using Property = std::variant<std::string, double, std::uint32_t>;
  void setProperties(const BusObject& object, const char* member, const std::string& of,
                     const std::map<std::string, Property>& properties);
  /// The answer, an array of texts.
  [[nodiscard]] std::vector<std::string> texts(const BusObject& object, const char* member,
                                               const Arguments& arguments = {});
  /// The answer, a dictionary: its texts and numbers by name, as texts.
  [[nodiscard]] std::map<std::string, std::string> properties(const BusObject& object,
                                                              const char* member,
                                                              const Arguments& arguments = {});
  /// Has the program do a named action that takes these as one parameter (org.gtk.Actions).
  void activate(const std::string& service, const std::string& path, const char* action,
                const Arguments& parameter);

 private:
  struct Release {
    void operator()(sd_bus* bus) const noexcept;
    void operator()(sd_bus_message* message) const noexcept;
  };
  using Packet = std::unique_ptr<sd_bus_message, Release>;

  explicit SessionBus(sd_bus* bus) : bus_(bus) {}
  [[nodiscard]] Packet prepared(const BusObject& object, const char* member) const;
  [[nodiscard]] Packet answer(const Packet& request) const;
  [[nodiscard]] Packet ask(const BusObject& object, const char* member,
                           const Arguments& arguments) const;

  std::unique_ptr<sd_bus, Release> bus_;
};

}  // namespace kestrel
